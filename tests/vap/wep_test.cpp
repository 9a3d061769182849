// SPDX-License-Identifier: MIT
// VAPs with WEP.
#include "vap/vap_profile.h"

namespace orlo::test {

class WepVap : public VapProfile {
protected:
    vap_settings& enable_wep(int vap) {
        vap_settings& settings = enable(vap);
        settings.wireless_security = "wep";
        settings.wep.index = 2;
        settings.wep.length = 64;
        settings.wep.type = nullptr;
        settings.wep.key1 = "abcde";
        settings.wep.key2 = nullptr;
        settings.wep.key3 = nullptr;
        settings.wep.key4 = nullptr;
        settings.wep.open = 1;
        settings.wep.shared = 0;
        return settings;
    }

    Trace wep_log() const {
        Trace lines;
        for (const std::string& line : own_log()) {
            if (line.find(".wep.") != std::string::npos ||
                line.find("wireless_security") != std::string::npos) {
                lines.push_back(line);
            }
        }
        return lines;
    }
};

TEST_F(WepVap, WithAnAsciiKeyIsStagedInOrder) {
    enable_wep(0);
    EXPECT_EQ(apply(), 0);
    EXPECT_THAT(security_edits(),
                ElementsAre("security=wep", "encryption=wep-open", "wepauth=wep-open", "key=2",
                            "wepslot=2", "weplength=64", "weptype=ASCII", "key1=s:abcde",
                            "wepkey1=abcde"));
    EXPECT_THAT(wep_log(),
                ElementsAre("vap_settings[0].wireless_security:wep", "vap_settings[0].wep.open:1",
                            "vap_settings[0].wep.shared:0", "vap_settings[0].wep.index:2",
                            "vap_settings[0].wep.length:64", "vap_settings[0].wep.type:NULL",
                            "vap_settings[0].wep.key1:abcde", "vap_settings[0].wep.key2:NULL",
                            "vap_settings[0].wep.key3:NULL", "vap_settings[0].wep.key4:NULL"));
}

TEST_F(WepVap, WithHexadecimalKeysKeepsThemAsTheyAre) {
    vap_settings& vap = enable_wep(0);
    vap.wep.type = "hexadecimal";
    vap.wep.key1 = nullptr;
    vap.wep.key2 = "0102030405";
    vap.wep.key3 = "1112131415";
    vap.wep.key4 = "2122232425";
    EXPECT_EQ(apply(), 0);
    const Trace edits = security_edits();
    EXPECT_THAT(Trace(edits.begin() + 6, edits.end()),
                ElementsAre("weptype=HEX", "key2=0102030405", "wepkey2=0102030405",
                            "key3=1112131415", "wepkey3=1112131415", "key4=2122232425",
                            "wepkey4=2122232425"));
}

TEST_F(WepVap, TypesThatDoNotBeginWithHexAreAscii) {
    for (const char* type : {"HEX", "he", "", "ascii", "ahex"}) {
        enable_wep(0).wep.type = type;
        EXPECT_EQ(apply(), 0);
        EXPECT_EQ(staged_value("wireless.wifi1vap0.weptype"), "ASCII") << type;
        EXPECT_EQ(staged_value("wireless.wifi1vap0.key1"), "s:abcde") << type;
    }
}

TEST_F(WepVap, AKeyThatIsNotGivenStaysAsItIs) {
    configure("wireless.wifi1vap0.key2", "old");
    configure("wireless.wifi1vap0.wepkey2", "old");
    enable_wep(0);
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi1vap0.key2"), "old");
    EXPECT_EQ(staged_value("wireless.wifi1vap0.wepkey2"), "old");
}

TEST_F(WepVap, AnEmptyAsciiKeyKeepsItsPrefix) {
    enable_wep(0).wep.key1 = "";
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi1vap0.key1"), "s:");
    EXPECT_EQ(staged_value("wireless.wifi1vap0.wepkey1"), "(none)");
}

TEST_F(WepVap, OpenWinsOverShared) {
    enable_wep(0).wep.shared = 1;
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi1vap0.wepauth"), "wep-open");
    vaps_[0].wep.open = 0;
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi1vap0.wepauth"), "wep-shared");
    EXPECT_EQ(staged_value("wireless.wifi1vap0.encryption"), "wep-shared");
    vaps_[0].wep.open = -3;
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi1vap0.wepauth"), "wep-open") << "any value but zero";
}

TEST_F(WepVap, NeitherOpenNorSharedIsRefused) {
    enable_wep(0).wep.open = 0;
    EXPECT_EQ(apply(), -1);
    EXPECT_EQ(refusal(), "Unknown WEP Setting!");
    EXPECT_THAT(door.trace({"set"}), testing::Contains("set wireless.wifi1vap0.security=wep"));
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(WepVap, OnlyTheFirstVapOfARadioMayHaveIt) {
    enable_wep(1);
    EXPECT_EQ(apply(), -1);
    EXPECT_EQ(refusal(), "Can not set WEP in vap1!");
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(WepVap, AnyLengthBut64Is128) {
    const struct {
        int length;
        const char* stored;
    } rows[] = {{64, "64"}, {128, "128"}, {152, "128"}, {0, "128"}, {-1, "128"}};
    for (const auto& row : rows) {
        enable_wep(0).wep.length = row.length;
        EXPECT_EQ(apply(), 0);
        EXPECT_EQ(staged_value("wireless.wifi1vap0.weplength"), row.stored) << row.length;
        EXPECT_TRUE(logged("vap_settings[0].wep.length:" + std::to_string(row.length)));
    }
}

TEST_F(WepVap, TheKeySlotIsNotChecked) {
    enable_wep(0).wep.index = -9;
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi1vap0.key"), "-9");
    EXPECT_EQ(staged_value("wireless.wifi1vap0.wepslot"), "-9");
}

TEST_F(WepVap, ALongKeyIsCutOnlyByTheStore) {
    const std::string key(490, 'k');
    enable_wep(0).wep.key1 = key.c_str();
    EXPECT_EQ(apply(), 0);

    EXPECT_EQ(staged_value("wireless.wifi1vap0.key1"),
              ("s:" + key).substr(0, 511 - strlen("wireless.wifi1vap0.key1=")));
    EXPECT_EQ(staged_value("wireless.wifi1vap0.wepkey1"),
              key.substr(0, 511 - strlen("wireless.wifi1vap0.wepkey1=")));
}

TEST_F(WepVap, EachFailedWriteEndsThePush) {
    vap_settings& vap = enable_wep(0);
    vap.wep.key2 = "bcdef";
    ASSERT_EQ(apply(), 0);
    const Trace edits = security_edits();
    ASSERT_EQ(edits.size(), 11U);
    EXPECT_EQ(exported<decltype(::uciRevertValue)>("uciRevertValue")(nullptr, nullptr), 0);
    for (size_t i = 0; i < edits.size(); i++) {
        EXPECT_EQ(apply_with_failed_write(i), -1);
        EXPECT_EQ(refusal(), "Set Value Failed : wireless.wifi1vap0." + edits[i] + "!");
        EXPECT_THAT(staged(), IsEmpty());
    }
}

} // namespace orlo::test
