// SPDX-License-Identifier: MIT
// Steps of VAP operations that api_apply_vap does not reach in all their cases.
#include "support/access_point.h"
#include "vap/basic.h"
#include "vap/fast_roaming.h"
#include "vap/security.h"

#include <cstdlib>

namespace orlo::test {

using RoamingStep = AccessPoint;

TEST_F(RoamingStep, SpeaksInItsOwnName) {
    auto* node = static_cast<mac_list_node*>(malloc(sizeof(mac_list_node)));
    *node = {"02:00:00:00:00:01", nullptr};
    fast_roaming settings = {};
    settings.status = 1;
    settings.ft = {1, 1, "a1b2", 10000, 1000};
    settings.aes_key = "key";
    settings.key_holder_list = {1, node, node};
    EXPECT_EQ(set_vap_fast_roaming(0, 2, &settings), 0);
    EXPECT_THAT(door.trace({"log"}),
                ElementsAre("log set_vap_fast_roaming: info: fast_roaming->status: 1",
                            "log set_vap_fast_roaming: info: fast_roaming->ft.status: 1",
                            "log set_vap_fast_roaming: info: fast_roaming->ft.ft_over_ds: 1",
                            "log set_vap_fast_roaming: info: fast_roaming->ft.mobility_domain: "
                            "a1b2",
                            "log set_vap_fast_roaming: info: fast_roaming->ft.r0_key_lifetime: "
                            "10000",
                            "log set_vap_fast_roaming: info: fast_roaming->ft.reassoc_deadline: "
                            "1000",
                            "log set_vap_fast_roaming: info: fast_roaming->aes_key: key",
                            "log set_vap_fast_roaming: info: Set wireless config "
                            "wifi0vap2.key_holder_list option to 02:00:00:00:00:01 successful.",
                            "log set_vap_fast_roaming: info: fast_roaming.rrm.status:0",
                            "log set_vap_fast_roaming: info: fast_roaming.wnm.status:0"));
    EXPECT_EQ(settings.key_holder_list.head, nullptr);
}

TEST_F(RoamingStep, ThatIsSwitchedOffOrFailsSaysSo) {
    fast_roaming settings = {};
    EXPECT_EQ(set_vap_fast_roaming(0, 2, &settings), 0);
    EXPECT_EQ(door.trace({"log"}), Trace{"log set_vap_fast_roaming: info: fast_roaming.status: 0"});
    settings.status = 1;
    settings.ft.status = 5;
    EXPECT_EQ(set_vap_fast_roaming(0, 2, &settings), -1);
    EXPECT_EQ(door.trace().back(), "revert all");
    EXPECT_THAT(staged(), IsEmpty());
}

using BasicSteps = AccessPoint;

TEST_F(BasicSteps, AnyModeIsWritten) {
    EXPECT_EQ(set_vap_mode(0, 2, "quilt"), 0);
    EXPECT_EQ(staged_value("wireless.wifi0vap2.mode"), "quilt");
    EXPECT_EQ(set_vap_mode(0, 2, nullptr), -1);
    EXPECT_THAT(door.trace({"log"}), ElementsAre("log set_vap_mode: radio:0 vap:2 mode:quilt",
                                                 "log set_vap_mode: radio:0 vap:2 mode:NULL",
                                                 "log set_vap_mode: error: set AP mode failed"));
    EXPECT_EQ(door.trace().back(), "log set_vap_mode: error: set AP mode failed")
        << "after everything is discarded";
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(BasicSteps, OptionalSettingsLeaveDiscardingToTheCaller) {
    ASSERT_EQ(uciSetValue("orloagent", "agent.confighash", "abc"), 0);
    EXPECT_EQ(set_vap_inactivity_timer(0, 2, 59), -1);
    EXPECT_EQ(set_vap_deauth_dup_auth(0, 2, 2), -1);
    EXPECT_EQ(set_vap_assoc_advertisement(0, 2, 2), -1);
    EXPECT_EQ(set_vap_dtim_period(0, 2, 0), -1);
    door.forget();
    EXPECT_EQ(set_vap_inactivity_timer(0, 2, -1), 0);
    EXPECT_EQ(set_vap_deauth_dup_auth(0, 2, -1), 0);
    EXPECT_EQ(set_vap_assoc_advertisement(0, 2, -1), 0);
    EXPECT_EQ(set_vap_dtim_period(0, 2, -1), 0);
    EXPECT_THAT(door.trace(), IsEmpty()) << "not given: not even logged";
    EXPECT_THAT(staged(), ElementsAre("orloagent.agent.confighash=abc"));
}

TEST_F(BasicSteps, AnAddressThatCannotBeReadDiscardsNothing) {
    configure("wireless.wifi0vap2.vapmac", "");
    ASSERT_EQ(uciSetValue("orloagent", "agent.confighash", "abc"), 0);
    EXPECT_EQ(set_vap_bssid(0, 2), -1);
    EXPECT_THAT(staged(), ElementsAre("orloagent.agent.confighash=abc"));
}

using FrameProtection = AccessPoint;

TEST_F(FrameProtection, OfAnotherVersionOrWishIsRefusedWithoutDiscarding) {
    ASSERT_EQ(uciSetValue("orloagent", "agent.confighash", "abc"), 0);
    for (uint32_t wpa : {0U, 1U, 5U, 7U}) {
        EXPECT_EQ(apply_mfp(0, 2, wpa, 1), -1);
        EXPECT_EQ(door.trace({"log"}).back(),
                  "log apply_mfp: Invalid WPA version: " + std::to_string(wpa));
    }
    EXPECT_EQ(apply_mfp(0, 2, 0x4, 2), -1);
    EXPECT_EQ(apply_mfp(0, 77, 0x4, 1), -1);
    EXPECT_EQ(door.trace({"log"}).back(),
              "log apply_mfp: Set Value Failed : wireless.wifi0vap77.ieee80211w=2!");
    EXPECT_THAT(staged(), ElementsAre("orloagent.agent.confighash=abc"));
}

} // namespace orlo::test
