// SPDX-License-Identifier: MIT
// VAPs with WPA and a passphrase.
#include "vap/vap_profile.h"

#include <climits>

namespace orlo::test {

using PersonalVap = VapProfile;

TEST_F(PersonalVap, OfferingWpa2AndWpa3IsStagedInOrder) {
    configure("wireless.wifi1vap0.suite_b", "192");
    enable_personal(0, 0x6, 0x2);
    EXPECT_EQ(apply(), 0);
    EXPECT_THAT(security_edits(),
                ElementsAre("security=wpa-psk", "key=open sesame", "wpakey=open sesame",
                            "wpaversion=wpa2mixed", "encryption=psk2+ccmp", "cipher=ccmp", "sae=1",
                            "sae_groups=19 20 21", "sae_password=open sesame",
                            "wpa_group_rekey=3600", "-suite_b", "ieee80211w=1"));
    const Trace log = own_log();
    const auto first =
        std::find(log.begin(), log.end(), "vap_settings[0].wpa_personal.key:open sesame");
    ASSERT_NE(first, log.end());
    EXPECT_THAT(Trace(first + 1, first + 4),
                ElementsAre("vap_settings[0].wpa_personal.wpa:0x6",
                            "vap_settings[0].wpa_personal.cipher_suites:0x2",
                            "vap_settings[0].wpa_personal.refresh_rate:3600"));
    EXPECT_THAT(door.trace(), testing::Contains("log apply_mfp: vap_settings[0].mfp:1"));
}

struct PersonalRow {
    uint32_t wpa;
    uint32_t cipher_suites;
    Trace options; // between "wpakey" and "wpa_group_rekey"
};

void PrintTo(const PersonalRow& row, std::ostream* stream) {
    *stream << "wpa " << row.wpa << " ciphers " << row.cipher_suites;
}

class PersonalRows : public VapProfile, public testing::WithParamInterface<PersonalRow> {};

TEST_P(PersonalRows, BecomeTheseOptions) {
    enable_personal(0, GetParam().wpa, GetParam().cipher_suites);
    EXPECT_EQ(apply(), 0);
    const Trace edits = security_edits();
    const auto last = std::find(edits.begin(), edits.end(), "wpa_group_rekey=3600");
    ASSERT_NE(last, edits.end());
    EXPECT_EQ(Trace(edits.begin() + 3, last), GetParam().options);
}

const Trace sae = {"sae=1", "sae_groups=19 20 21", "sae_password=open sesame"};

Trace with_sae(Trace options) {
    options.insert(options.end(), sae.begin(), sae.end());
    return options;
}

const PersonalRow personal_rows[] = {
    {0x4, 0x2, with_sae({"wpaversion=wpa3", "encryption=ccmp", "cipher=ccmp"})},
    {0x6, 0x2, with_sae({"wpaversion=wpa2mixed", "encryption=psk2+ccmp", "cipher=ccmp"})},
    {0x3, 0x3, {"wpaversion=mixed", "encryption=psk-mixed+tkip+ccmp", "cipher=tkip+ccmp"}},
    {0x3, 0x2, {"wpaversion=mixed", "encryption=psk-mixed+ccmp", "cipher=ccmp"}},
    {0x3, 0x1, {"wpaversion=mixed", "encryption=psk-mixed+tkip", "cipher=tkip"}},
    {0x3, 0x0, {"wpaversion=mixed"}},
    {0x3, 0x4, {"wpaversion=mixed"}},
    {0x2, 0x3, {"wpaversion=wpa2", "encryption=psk2+tkip+ccmp", "cipher=tkip+ccmp"}},
    {0x2, 0x2, {"wpaversion=wpa2", "encryption=psk2+ccmp", "cipher=ccmp"}},
    {0x2, 0x1, {"wpaversion=wpa2", "encryption=psk2+tkip", "cipher=tkip"}},
    {0x2, 0x0, {"wpaversion=wpa2"}},
    {0x2, 0x6, {"wpaversion=wpa2"}},
};

INSTANTIATE_TEST_SUITE_P(Versions, PersonalRows, testing::ValuesIn(personal_rows));

TEST_F(PersonalVap, Wpa3TakesNoOtherCipherThanCcmp) {
    for (uint32_t wpa : {0x4U, 0x6U}) {
        for (uint32_t ciphers : {0x0U, 0x1U, 0x3U, 0x4U, 0x6U, 0x7U}) {
            enable_personal(3, wpa, ciphers);
            EXPECT_EQ(apply(), -1);
            EXPECT_EQ(refusal(), "wlan1.3: Mixed chiper is not supported,CCMP is only supported. "
                                 "(no line end)");
            EXPECT_THAT(staged(), IsEmpty());
        }
    }
}

TEST_F(PersonalVap, OtherVersionsAreRefused) {
    for (uint32_t wpa : {0x0U, 0x1U, 0x5U, 0x7U, 0x8U, 0xCU}) {
        enable_personal(0, wpa, 0x2);
        EXPECT_EQ(apply(), -1);
        EXPECT_EQ(refusal(), "The wpa version is not support :" + std::to_string(wpa) + " !");
        EXPECT_EQ(door.trace({"set"}).back(), "set wireless.wifi1vap0.wpakey=open sesame");
        EXPECT_THAT(staged(), IsEmpty());
    }
}

TEST_F(PersonalVap, NeedsAKey) {
    enable_personal(0, 0x2, 0x2).wpa_personal.key = nullptr;
    EXPECT_EQ(apply(), -1);
    EXPECT_EQ(refusal(), "The wpa key is NULL!");
    EXPECT_TRUE(logged("vap_settings[0].wpa_personal.key:NULL"));
    EXPECT_TRUE(logged("vap_settings[0].wpa_personal.refresh_rate:3600"));
    EXPECT_THAT(door.trace({"set"}), testing::Not(testing::Contains(HasSubstr("security="))));
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(PersonalVap, TheGroupKeyLivesUpToADay) {
    for (int seconds : {0, 86400}) {
        enable_personal(0, 0x2, 0x2).wpa_personal.refresh_rate = seconds;
        EXPECT_EQ(apply(), 0);
        EXPECT_EQ(staged_value("wireless.wifi1vap0.wpa_group_rekey"), std::to_string(seconds));
    }
    for (int seconds : {-1, 86401, INT_MIN}) {
        enable_personal(0, 0x2, 0x2).wpa_personal.refresh_rate = seconds;
        EXPECT_EQ(apply(), -1);
        EXPECT_EQ(refusal(), "The refresh_rate is not correct!");
        EXPECT_EQ(door.trace({"set"}).back(), "set wireless.wifi1vap0.cipher=ccmp")
            << "after the table's options";
        EXPECT_THAT(staged(), IsEmpty());
    }
}

TEST_F(PersonalVap, WithoutWpa3LosesItsOptions) {
    for (const char* option : {"sae", "sae_groups", "sae_password", "suite_b"}) {
        configure(std::string("wireless.wifi1vap0.") + option, "old");
    }
    enable_personal(0, 0x2, 0x2);
    EXPECT_EQ(apply(), 0);
    const Trace edits = security_edits();
    EXPECT_THAT(Trace(edits.end() - 5, edits.end()),
                ElementsAre("-sae", "-sae_groups", "-sae_password", "-suite_b", "ieee80211w=0"));
}

TEST_F(PersonalVap, FrameProtectionFollowsTheVersionAndTheWish) {
    const struct {
        uint32_t wpa;
        int mfp;
        const char* stored;
    } rows[] = {{0x2, 0, "0"}, {0x2, 1, "1"}, {0x3, 0, "0"}, {0x3, 1, "0"},
                {0x4, 0, "2"}, {0x4, 1, "2"}, {0x6, 0, "1"}, {0x6, 1, "1"}};
    for (const auto& row : rows) {
        enable_personal(0, row.wpa, 0x2).mfp = row.mfp;
        EXPECT_EQ(apply(), 0);
        EXPECT_EQ(staged_value("wireless.wifi1vap0.ieee80211w"), row.stored)
            << row.wpa << " " << row.mfp;
    }
}

TEST_F(PersonalVap, AnotherWishForFrameProtectionIsRefused) {
    for (uint32_t wpa : {0x2U, 0x3U, 0x4U, 0x6U}) {
        for (int mfp : {2, -1, INT_MIN}) {
            enable_personal(0, wpa, 0x2).mfp = mfp;
            EXPECT_EQ(apply(), -1);
            EXPECT_EQ(door.trace({"log"}).back(),
                      "log apply_mfp: invalid mfp: " + std::to_string(mfp));
            EXPECT_EQ(door.trace({"revert"}), Trace{"revert all"});
            EXPECT_THAT(staged(), IsEmpty());
        }
    }
}

TEST_F(PersonalVap, EachFailedWriteEndsThePush) {
    enable_personal(0, 0x6, 0x2);
    ASSERT_EQ(apply(), 0);
    const Trace edits = security_edits();
    ASSERT_EQ(edits.size(), 11U);
    EXPECT_EQ(exported<decltype(::uciRevertValue)>("uciRevertValue")(nullptr, nullptr), 0);
    for (size_t i = 0; i < edits.size(); i++) {
        EXPECT_EQ(apply_with_failed_write(i), -1);
        const std::string by = i + 1 < edits.size() ? "log api_apply_vap: " : "log apply_mfp: ";
        EXPECT_EQ(door.trace({"log"}).back(),
                  by + "Set Value Failed : wireless.wifi1vap0." + edits[i] + "!");
        EXPECT_THAT(staged(), IsEmpty());
    }
}

} // namespace orlo::test
