// SPDX-License-Identifier: MIT
// VAPs without a key, and what all kinds of security share: leftovers, frame protection.
#include "vap/vap_profile.h"

namespace orlo::test {

using OpenVap = VapProfile;

TEST_F(OpenVap, HasNoSecurityWhetherNamedOrNot) {
    for (const char* security : {static_cast<const char*>(nullptr), "none"}) {
        configure("wireless.wifi1vap0.key", "old");
        enable(0).wireless_security = security;
        EXPECT_EQ(apply(), 0);
        EXPECT_THAT(security_edits(), ElementsAre("security=none", "encryption=none", "-key"));
        EXPECT_EQ(staged_value("wireless.wifi1vap0.key"), "(none)");
        ASSERT_EQ(ops.api_save_config(), 0);
    }
}

TEST_F(OpenVap, WithoutAnOldKeyDeletesNothing) {
    configure("wireless.wifi1vap0.key", "");
    enable(0);
    EXPECT_EQ(apply(), 0);
    EXPECT_THAT(security_edits(), ElementsAre("security=none", "encryption=none"));
}

TEST_F(OpenVap, AKeyThatCannotBeDeletedEndsThePush) {
    configure("wireless.wifi1vap0.key", "old");
    enable(0);
    door.fail(Call::uci_delete);
    EXPECT_EQ(apply(), -1);
    EXPECT_EQ(refusal(), "delete Value Failed");
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(OpenVap, LosesTheOptionsOfWpa3) {
    for (const char* option : {"sae", "sae_groups", "sae_password", "suite_b"}) {
        configure(std::string("wireless.wifi1vap0.") + option, "old");
    }
    for (const char* security : {"none", "hocus-pocus", "dynamic-wep"}) {
        enable(0).wireless_security = security;
        vaps_[0].wpa_personal.wpa = 0x4; // not WPA: not read
        EXPECT_EQ(apply(), 0);
        const Trace edits = security_edits();
        EXPECT_THAT(Trace(edits.end() - 4, edits.end()),
                    ElementsAre("-sae", "-sae_groups", "-sae_password", "-suite_b"))
            << security;
        EXPECT_EQ(exported<decltype(::uciRevertValue)>("uciRevertValue")(nullptr, nullptr), 0);
    }
}

TEST_F(OpenVap, ALeftoverThatCannotBeDeletedEndsThePush) {
    const char* const options[] = {"sae", "sae_groups", "sae_password", "suite_b"};
    for (const char* option : options) {
        configure(std::string("wireless.wifi1vap0.") + option, "old");
    }
    for (int i = 0; i < 4; i++) {
        enable(0).wireless_security = "hocus-pocus";
        door.fail(Call::uci_delete, i + 1);
        EXPECT_EQ(apply(), -1);
        EXPECT_EQ(refusal(),
                  std::string("Delete Value Failed : wireless.wifi1vap0.") + options[i] + "!");
        EXPECT_THAT(staged(), IsEmpty());
    }
}

TEST_F(OpenVap, AnUnknownSecurityWritesNoneOfItsOptions) {
    for (const char* security : {"hocus-pocus", "", "WEP", "None", "wpa-personal ", "wpa"}) {
        enable(0).wireless_security = security;
        EXPECT_EQ(apply(), 0) << security;
        EXPECT_THAT(security_edits(), IsEmpty()) << security;
        EXPECT_TRUE(logged("Security is not \"wpa-personal\" or \"wpa-enterprise\"ignore "
                           "vap_settings[0].mfp:0"));
    }
}

TEST_F(OpenVap, DynamicWepIsOnlyLogged) {
    vap_settings& vap = enable(0);
    vap.wireless_security = "dynamic-wep";
    vap.dot1x = {11, 12, 13, 14, 15};
    EXPECT_EQ(apply(), 0);
    EXPECT_THAT(security_edits(), IsEmpty());
    const Trace lines = own_log();
    const auto first = std::find(lines.begin(), lines.end(),
                                 "vap_settings[0].wireless_security:dynamic-wep NOT support.");
    ASSERT_NE(first, lines.end());
    EXPECT_THAT(Trace(first + 1, first + 6),
                ElementsAre("vap_settings[0].dot1x.Radius_accounting:11 NOT support.",
                            "vap_settings[0].dot1x.dynamic_vlan:12 NOT support.",
                            "vap_settings[0].dot1x.require_vlan_id:13 NOT support.",
                            "vap_settings[0].dot1x.Bcast_refresh_rate:14 NOT support.",
                            "vap_settings[0].dot1x.Session_refresh_rate:15 NOT support."));
}

TEST_F(OpenVap, FrameProtectionIsNotLookedAt) {
    enable(0).mfp = 99;
    EXPECT_EQ(apply(), 0);
    EXPECT_TRUE(logged("Security is not \"wpa-personal\" or \"wpa-enterprise\"ignore "
                       "vap_settings[0].mfp:99"));
    EXPECT_THAT(door.trace({"set"}), testing::Not(testing::Contains(HasSubstr("ieee80211w"))));
}

} // namespace orlo::test
