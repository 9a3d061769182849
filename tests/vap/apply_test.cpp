// SPDX-License-Identifier: MIT
// Applying the VAPs of a radio: the sequence, the basic settings, all or nothing.
#include "vap/vap_profile.h"

#include <climits>
#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace orlo::test {

using ApplyVaps = VapProfile;

TEST_F(ApplyVaps, ADisabledVapGetsOnlyItsModeAndStatus) {
    for (int vap = 0; vap < 16; vap++) {
        const std::string section = "wireless.wifi1vap" + std::to_string(vap);
        configure(section + ".mode", "quilt");
        configure(section + ".disabled", "0");
    }
    EXPECT_EQ(apply(), 0);
    Trace edits;
    Trace log;
    for (int vap = 0; vap < 16; vap++) {
        const std::string v = std::to_string(vap);
        edits.push_back("set wireless.wifi1vap" + v + ".mode=ap");
        edits.push_back("set wireless.wifi1vap" + v + ".disabled=1");
        log.push_back("log api_apply_vap: ===== Radio: 1  VAP: " + v + " =====");
        log.push_back("log set_vap_mode: radio:1 vap:" + v + " mode:ap");
        log.push_back("log api_apply_vap: vap_settings[" + v + "].status:0");
        log.push_back("log set_vap_status: radio:1 vap:" + v + " status:0");
        log.push_back("log api_apply_vap: =====END Radio: 1  VAP: " + v + " =====");
    }
    log.push_back("log api_apply_vap: End... return VENDOR_VAP_SUCCESS");
    EXPECT_EQ(door.trace({"set", "delete", "add", "commit", "revert", "run"}), edits);
    EXPECT_EQ(door.trace({"log"}), log);
}

TEST_F(ApplyVaps, AnOpenVapIsStagedInOrder) {
    const char* const frame_protection_ignored =
        "log api_apply_vap: Security is not \"wpa-personal\" or \"wpa-enterprise\"ignore "
        "vap_settings[0].mfp:0";
    configure("wireless.wifi1vap0.vapmac", "02:00:00:00:01:00");
    vap_settings& vap = enable(0, "Lobby");
    vap.inactivity_timer = 300;
    vap.deauth_dup_auth = 1;
    vap.assoc_advertisement = 1;
    vap.dtim_period = 3;
    vap.proxy_arp = 1;
    EXPECT_EQ(apply(), 0);
    const Trace lines = door.trace();
    const Trace first(lines.begin(), std::find(lines.begin(), lines.end(),
                                               "log api_apply_vap: ===== Radio: 1  VAP: 1 ====="));
    EXPECT_THAT(first, testing::ElementsAreArray({
                           "log api_apply_vap: ===== Radio: 1  VAP: 0 =====",
                           "log set_vap_mode: radio:1 vap:0 mode:ap",
                           "set wireless.wifi1vap0.mode=ap",
                           "log api_apply_vap: vap_settings[0].status:1",
                           "log set_vap_status: radio:1 vap:0 status:1",
                           "set wireless.wifi1vap0.disabled=0",
                           "log set_vap_ssid: radio:1 vap:0 ssid:Lobby",
                           "set wireless.wifi1vap0.ssid=Lobby",
                           "log set_vap_bssid: radio:1 vap:0 ",
                           "log set_vap_bssid: vap_mac=[02:00:00:00:01:00] ",
                           "set wireless.wifi1vap0.bssid=02:00:00:00:01:00",
                           "log set_vap_bcast_ssid: radio:1 vap0 bcast_ssid:1",
                           "set wireless.wifi1vap0.hidden=0",
                           "log api_apply_vap: vap_settings[0].band_steer:0",
                           "set wireless.wifi1.band_steer=0",
                           "log set_vap_vlan: radio:1 vap:0 vlan_id:10",
                           "log set_vap_vlan: vlan_name:wifi1vap0.vlan_id",
                           "set wireless.wifi1vap0.vlan_id=10",
                           "log set_vap_inactivity_timer: wifi1vap0: inactivity_timer: 300",
                           "set wireless.wifi1.agingtime=300",
                           "log set_vap_deauth_dup_auth: wifi1vap0: status: 1",
                           "set wireless.wifi1vap0.dis_deauth=0",
                           "log set_vap_assoc_advertisement: wifi1vap0: status: 1",
                           "set wireless.wifi1vap0.iapp_interface=1",
                           "log set_vap_dtim_period: wifi1vap0: dtim-period: 3",
                           "set wireless.wifi1vap0.dtim_period=3",
                           "set wireless.wifi1vap0.proxy_arp=1",
                           "set wireless.wifi1vap0.security=none",
                           "set wireless.wifi1vap0.encryption=none",
                           frame_protection_ignored,
                           "log api_apply_vap: info: vap_settings[0].fast_roaming.status: 0",
                           "set wireless.wifi1vap0.ieee80211r=0",
                           "set wireless.wifi1vap0.ieee80211k=0",
                           "set wireless.wifi1vap0.ieee80211v=0",
                       }));
}

TEST_F(ApplyVaps, MarksTheNetworkForTheNextSaveOnSuccessOnly) {
    enable(0).vlan_id = 0;
    ASSERT_EQ(apply(), -2);
    ASSERT_EQ(ops.api_save_config(), 0);
    EXPECT_THAT(door.trace({"run"}), testing::Not(testing::Contains(HasSubstr("network-5"))));
    vaps_[0].vlan_id = 1;
    ASSERT_EQ(apply(), 0);
    ASSERT_EQ(ops.api_save_config(), 0);
    EXPECT_THAT(door.trace({"run"}),
                testing::Contains("run /usr/bin/orloagent_apply_settings.sh network-5 &"));
    EXPECT_EQ(committed_value("wireless.wifi1vap0.ssid"), "Office");
}

TEST_F(ApplyVaps, AFailureDiscardsTheVapsBeforeItToo) {
    ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
    enable(0);
    enable(3).vlan_id = 0;
    EXPECT_EQ(apply(), -2);
    EXPECT_EQ(refusal(), "Set vlan_id: 0 Failed");
    EXPECT_THAT(staged(), IsEmpty()) << "and what other operations have staged";
    EXPECT_THAT(door.trace(), testing::Not(testing::Contains(HasSubstr("VAP: 4"))));
}

TEST_F(ApplyVaps, AFailedPushLeavesTheConfigurationFilesAsTheyWere) {
    const std::string before = read_file("/etc/config/wireless");
    enable(0);
    enable_personal(15, 0x6, 0x3);
    EXPECT_EQ(apply(), -1);
    EXPECT_EQ(read_file("/etc/config/wireless"), before);
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(ApplyVaps, APushThatDiesLeavesStagedChangesWhichARevertRemoves) {
    const std::string before = read_file("/etc/config/wireless");
    for (int vap = 0; vap < 16; vap++) {
        enable(vap);
    }
    const pid_t child = fork();
    ASSERT_NE(child, -1);
    if (child == 0) {
        apply();
        raise(SIGKILL); // before any commit
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_THAT(staged(), testing::Not(IsEmpty()));
    EXPECT_EQ(read_file("/etc/config/wireless"), before);
    EXPECT_EQ(exported<decltype(::uciRevertValue)>("uciRevertValue")(nullptr, nullptr), 0);
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(ApplyVaps, SixteenEnabledVapsAreAllStaged) {
    for (int vap = 0; vap < 16; vap++) {
        enable(vap);
    }
    EXPECT_EQ(apply(0), 0);
    for (int vap = 0; vap < 16; vap++) {
        EXPECT_EQ(staged_value("wireless.wifi0vap" + std::to_string(vap) + ".ssid"), "Office");
    }
    EXPECT_THAT(own_log(), testing::Not(testing::Contains(HasSubstr("=====END"))));
}

TEST_F(ApplyVaps, NeedARecordAndARadio) {
    door.forget();
    EXPECT_EQ(ops.api_apply_vap(1, nullptr), -1);
    EXPECT_THAT(door.trace({"set", "revert"}), IsEmpty());
    for (int radio : {2, -1, INT_MAX}) {
        EXPECT_EQ(apply(radio), -1) << "the store has no such section";
        EXPECT_THAT(staged(), IsEmpty());
    }
}

// Each refused or failing setting: its code, the operation's own last line, the step's line.
struct Refusal {
    const char* name;
    void (*change)(vap_settings*);
    int result;
    const char* own_line; // "" where the step has said it all
    const char* step_line;
    int reverts;
    bool step_is_last = false; // the operation only adds its line
};

void PrintTo(const Refusal& refusal, std::ostream* stream) {
    *stream << refusal.name;
}

class RefusedSetting : public VapProfile, public testing::WithParamInterface<Refusal> {};

TEST_P(RefusedSetting, EndsThePushAndDiscardsEverything) {
    const Refusal& refused = GetParam();
    ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
    refused.change(&enable(0));
    EXPECT_EQ(apply(), refused.result);
    EXPECT_THAT(staged(), IsEmpty());
    // Some steps discard by themselves, before the operation says its line and discards again.
    EXPECT_EQ(door.trace({"revert"}).size(), static_cast<size_t>(refused.reverts));
    EXPECT_TRUE(door.trace().back() == "revert all" || refused.step_is_last);
    if (*refused.own_line != '\0') {
        EXPECT_EQ(refusal(), refused.own_line);
    }
    EXPECT_THAT(door.trace({"log"}), testing::Contains(std::string("log ") + refused.step_line));
}

const Refusal refusals[] = {
    {"status_2", [](vap_settings* v) { v->status = 2; }, -1, "Status is not correct :2!",
     "set_vap_status: Status is not correct :2!", 1, true},
    {"status_minus_1", [](vap_settings* v) { v->status = -1; }, -1, "Status is not correct :-1!",
     "set_vap_status: Status is not correct :-1!", 1, true},
    {"no_ssid", [](vap_settings* v) { v->ssid = nullptr; }, -1,
     "Set Value Failed : wireless.wifi1vap0.ssid=NULL!", "set_vap_ssid: The ssid is NULL!", 2},
    {"bcast_ssid_2", [](vap_settings* v) { v->bcast_ssid = 2; }, -1, "Cannot set bcast_ssid :2!",
     "set_vap_bcast_ssid: bcast_ssid is not correct :2!", 2},
    {"bcast_ssid_minus_1", [](vap_settings* v) { v->bcast_ssid = -1; }, -1,
     "Cannot set bcast_ssid :-1!", "set_vap_bcast_ssid: bcast_ssid is not correct :-1!", 2},
    {"band_steer_2", [](vap_settings* v) { v->band_steer = 2; }, -3,
     "band_steer is not correct :2!", "api_apply_vap: band_steer is not correct :2!", 1},
    {"band_steer_minus_1", [](vap_settings* v) { v->band_steer = -1; }, -3,
     "band_steer is not correct :-1!", "api_apply_vap: band_steer is not correct :-1!", 1},
    {"vlan_0", [](vap_settings* v) { v->vlan_id = 0; }, -2, "Set vlan_id: 0 Failed",
     "set_vap_vlan: vlan_id is not correct :0!", 2},
    {"vlan_4095", [](vap_settings* v) { v->vlan_id = 4095; }, -2, "Set vlan_id: 4095 Failed",
     "set_vap_vlan: vlan_id is not correct :4095!", 2},
    {"vlan_minus_1", [](vap_settings* v) { v->vlan_id = -1; }, -2, "Set vlan_id: -1 Failed",
     "set_vap_vlan: vlan_id is not correct :-1!", 2},
    {"inactivity_59", [](vap_settings* v) { v->inactivity_timer = 59; }, -1, "",
     "set_vap_inactivity_timer: wifi1vap0: inactivity_timer: out of range 59, should be 60 <= x "
     "<= 65535",
     1},
    {"inactivity_65536", [](vap_settings* v) { v->inactivity_timer = 65536; }, -1, "",
     "set_vap_inactivity_timer: wifi1vap0: inactivity_timer: out of range 65536, should be 60 <= "
     "x <= 65535",
     1},
    {"inactivity_minus_2", [](vap_settings* v) { v->inactivity_timer = -2; }, -1, "",
     "set_vap_inactivity_timer: wifi1vap0: inactivity_timer: out of range -2, should be 60 <= x "
     "<= 65535",
     1},
    {"deauth_2", [](vap_settings* v) { v->deauth_dup_auth = 2; }, -1, "",
     "set_vap_deauth_dup_auth: wifi1vap0: deauth-dup-auth: invalid value 2", 1},
    {"deauth_minus_2", [](vap_settings* v) { v->deauth_dup_auth = -2; }, -1, "",
     "set_vap_deauth_dup_auth: wifi1vap0: deauth-dup-auth: invalid value -2", 1},
    {"advertisement_2", [](vap_settings* v) { v->assoc_advertisement = 2; }, -1, "",
     "set_vap_assoc_advertisement: wifi1vap0: assoc-advertise: invalid value 2", 1},
    {"advertisement_minus_2", [](vap_settings* v) { v->assoc_advertisement = -2; }, -1, "",
     "set_vap_assoc_advertisement: wifi1vap0: assoc-advertise: invalid value -2", 1},
    {"dtim_0", [](vap_settings* v) { v->dtim_period = 0; }, -1, "",
     "set_vap_dtim_period: wifi1vap0: dtim-period: invalid range 0", 1},
    {"dtim_minus_2", [](vap_settings* v) { v->dtim_period = -2; }, -1, "",
     "set_vap_dtim_period: wifi1vap0: dtim-period: invalid range -2", 1},
    {"dtim_256", [](vap_settings* v) { v->dtim_period = 256; }, -1, "",
     "set_vap_dtim_period: wifi1vap0: dtim-period: invalid range 256", 1},
};

INSTANTIATE_TEST_SUITE_P(Settings, RefusedSetting, testing::ValuesIn(refusals),
                         [](const auto& info) { return info.param.name; });

TEST_F(ApplyVaps, ARefusedBroadcastFlagIsNotLoggedAsASetting) {
    enable(0).bcast_ssid = 2;
    EXPECT_EQ(apply(), -1);
    EXPECT_THAT(door.trace(), testing::Not(testing::Contains(HasSubstr("vap0 bcast_ssid:"))));
}

TEST_F(ApplyVaps, AFailureIsLoggedBeforeEverythingIsDiscarded) {
    enable(0);
    door.fail(Call::uci_set, 6); // band steering
    EXPECT_EQ(apply(), -3);
    EXPECT_EQ(door.trace().back(), "revert all");
    enable(0).vlan_id = 0;
    EXPECT_EQ(apply(), -2);
    const Trace lines = door.trace();
    EXPECT_THAT(Trace(lines.end() - 4, lines.end()),
                ElementsAre("log set_vap_vlan: vlan_id is not correct :0!", "revert all",
                            "log api_apply_vap: Set vlan_id: 0 Failed", "revert all"));
}

TEST_F(ApplyVaps, TheBoundsThemselvesAreAccepted) {
    struct {
        int vlan, timer, dtim;
    } bounds[] = {{1, 60, 1}, {4094, 65535, 255}};
    for (const auto& bound : bounds) {
        vap_settings& vap = enable(0);
        vap.vlan_id = bound.vlan;
        vap.inactivity_timer = bound.timer;
        vap.dtim_period = bound.dtim;
        EXPECT_EQ(apply(), 0);
        EXPECT_EQ(staged_value("wireless.wifi1vap0.vlan_id"), std::to_string(bound.vlan));
        EXPECT_EQ(staged_value("wireless.wifi1.agingtime"), std::to_string(bound.timer));
        EXPECT_EQ(staged_value("wireless.wifi1vap0.dtim_period"), std::to_string(bound.dtim));
    }
}

TEST_F(ApplyVaps, FlagsAreStoredAsTheirOptionsMeanThem) {
    vap_settings& vap = enable(0);
    vap.bcast_ssid = 0;
    vap.deauth_dup_auth = 0;
    vap.assoc_advertisement = 0;
    vap.proxy_arp = 0;
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi1vap0.proxy_arp"), "0");
    vap.proxy_arp = 77; // not checked
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi1vap0.hidden"), "1");
    EXPECT_EQ(staged_value("wireless.wifi1vap0.dis_deauth"), "1");
    EXPECT_EQ(staged_value("wireless.wifi1vap0.iapp_interface"), "0");
    EXPECT_EQ(staged_value("wireless.wifi1vap0.proxy_arp"), "77");
}

TEST_F(ApplyVaps, WhatIsNotGivenIsNotWritten) {
    enable(0);
    EXPECT_EQ(apply(), 0);
    for (const char* option :
         {"agingtime", "dis_deauth", "iapp_interface", "dtim_period", "proxy_arp"}) {
        EXPECT_THAT(door.trace({"set"}),
                    testing::Not(testing::Contains(HasSubstr(std::string(".") + option + "="))));
    }
    vaps_[0].proxy_arp = -7;
    EXPECT_EQ(apply(), 0);
    EXPECT_THAT(door.trace({"set"}), testing::Not(testing::Contains(HasSubstr("proxy_arp"))));
}

TEST_F(ApplyVaps, OnlyTheFirstVapsInactivityTimerCounts) {
    enable(0).inactivity_timer = 120;
    enable(1).inactivity_timer = 11; // would be refused
    enable(5).inactivity_timer = 10;
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi1.agingtime"), "120");
}

TEST_F(ApplyVaps, TheLastEnabledVapDecidesBandSteering) {
    enable(2).band_steer = 1;
    enable(9).band_steer = 0;
    configure("wireless.wifi1.band_steer", "1");
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi1.band_steer"), "0");
}

TEST_F(ApplyVaps, AVapWithoutAnAssignedAddressIsRefused) {
    configure("wireless.wifi1vap0.vapmac", "");
    ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
    enable(0);
    EXPECT_EQ(apply(), -1);
    EXPECT_EQ(refusal(), "Set Value Failed : wireless.wifi1vap0.bssid");
    EXPECT_THAT(door.trace(),
                testing::Contains("log set_vap_bssid: uci get wireless.wifi1vap0.vapmac Failed!"));
    EXPECT_THAT(door.trace({"revert"}), ElementsAre("revert all")) << "by the operation, once";
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(ApplyVaps, AnAssignedAddressIsReadUpTo18Characters) {
    configure("wireless.wifi1vap0.vapmac", "02:00:00:00:01:00-and-more");
    enable(0);
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi1vap0.bssid"), "02:00:00:00:01:00-");
}

// The n-th write of an open VAP with everything given fails.
struct FailedWrite {
    int nth;
    int result;
    const char* option;
    const char* step_line;
    const char* own_line;
    int reverts;
};

void PrintTo(const FailedWrite& write, std::ostream* stream) {
    *stream << write.option;
}

class FailedVapWrite : public VapProfile, public testing::WithParamInterface<FailedWrite> {};

TEST_P(FailedVapWrite, EndsThePushAndDiscardsEverything) {
    configure("wireless.wifi1vap0.vapmac", "02:00:00:00:01:00");
    vap_settings& vap = enable(0, "Lobby");
    vap.inactivity_timer = 300;
    vap.deauth_dup_auth = 1;
    vap.assoc_advertisement = 1;
    vap.dtim_period = 3;
    vap.proxy_arp = 1;
    door.fail(Call::uci_set, GetParam().nth);
    EXPECT_EQ(apply(), GetParam().result);
    EXPECT_THAT(door.trace({"set"}).back(), HasSubstr(GetParam().option));
    EXPECT_THAT(door.trace({"log"}), testing::Contains(std::string("log ") + GetParam().step_line));
    if (*GetParam().own_line != '\0') {
        EXPECT_EQ(refusal(), GetParam().own_line);
    }
    EXPECT_EQ(door.trace({"revert"}).size(), static_cast<size_t>(GetParam().reverts));
    EXPECT_THAT(staged(), IsEmpty());
}

const FailedWrite failed_writes[] = {
    {1, -1, "mode=ap (failed)", "set_vap_mode: error: set AP mode failed", "Set VAP mode failed",
     1},
    {2, -1, "disabled=0 (failed)",
     "set_vap_status: Set Value Failed : wireless.wifi1vap0.disabled=0!",
     "Status is not correct :1!", 1},
    {3, -1, "ssid=Lobby (failed)",
     "set_vap_ssid: Set Value Failed : wireless.wifi1vap0.ssid=Lobby!",
     "Set Value Failed : wireless.wifi1vap0.ssid=Lobby!", 2},
    {4, -1, "bssid=02:00:00:00:01:00 (failed)",
     "set_vap_bssid: Set Value Failed : wireless.wifi1vap0.bssid=02:00:00:00:01:00!",
     "Set Value Failed : wireless.wifi1vap0.bssid", 2},
    {5, -1, "hidden=0 (failed)",
     "set_vap_bcast_ssid: Set Value Failed : wireless.wifi1vap0.hidden=0!",
     "Cannot set bcast_ssid :1!", 2},
    {6, -3, "band_steer=0 (failed)",
     "api_apply_vap: Set Value Failed : wireless.wifi1.band_steer=0!",
     "Set Value Failed : wireless.wifi1.band_steer=0!", 1},
    {7, -2, "vlan_id=10 (failed)",
     "set_vap_vlan: Set Value Failed : wireless.wifi1vap0.vlan_id=10!", "Set vlan_id: 10 Failed",
     2},
    {8, -1, "agingtime=300 (failed)", "set_vap_inactivity_timer: Failed to set wifi1.agingtime=300",
     "", 1},
    {9, -1, "dis_deauth=0 (failed)",
     "set_vap_deauth_dup_auth: Failed to set wifi1vap0.dis_deauth=0", "", 1},
    {10, -1, "iapp_interface=1 (failed)",
     "set_vap_assoc_advertisement: Failed to set wifi1vap0.iapp_interface=1", "", 1},
    {11, -1, "dtim_period=3 (failed)", "set_vap_dtim_period: Failed to set wifi1vap0.dtim_period=3",
     "", 1},
    {12, -1, "proxy_arp=1 (failed)",
     "api_apply_vap: Set Value Failed : wireless.wifi1vap0.proxy_arp=1!",
     "Set Value Failed : wireless.wifi1vap0.proxy_arp=1!", 1},
    {13, -1, "security=none (failed)",
     "api_apply_vap: Set Value Failed : wireless.wifi1vap0.security=none!",
     "Set Value Failed : wireless.wifi1vap0.security=none!", 1},
    {14, -1, "encryption=none (failed)",
     "api_apply_vap: Set Value Failed : wireless.wifi1vap0.encryption=none!",
     "Set Value Failed : wireless.wifi1vap0.encryption=none!", 1},
};

INSTANTIATE_TEST_SUITE_P(Writes, FailedVapWrite, testing::ValuesIn(failed_writes),
                         [](const auto& info) { return "Write" + std::to_string(info.param.nth); });

} // namespace orlo::test
