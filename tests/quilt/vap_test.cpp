// SPDX-License-Identifier: MIT
// Applying the VAPs of a quilt: the sequence, the basic settings, all or nothing.
#include "quilt/quilt_record.h"

#include <climits>
#include <cstdlib>

namespace orlo::test {

namespace {

// The quilt's own options take as many writes before the first VAP's.
constexpr int own_writes = 2;

} // namespace

class QuiltVaps : public QuiltRecord {
protected:
    // What happened from an entry's heading on.
    Trace from(const std::string& heading) const {
        const Trace& lines = door.trace();
        return {
            std::find(lines.begin(), lines.end(), "log api_apply_channel_quilt: info: " + heading),
            lines.end()};
    }
};

TEST_F(QuiltVaps, ThatAreNotEnabledAreSkipped) {
    quilt_.quilt_radio[0].status = 2; // would be refused
    EXPECT_EQ(apply(), 0);
    EXPECT_THAT(door.trace(), testing::Not(testing::Contains(HasSubstr("info: wifi"))));
    EXPECT_THAT(door.trace({"set"}), testing::SizeIs(2)) << "of the quilt's own options";
}

TEST_F(QuiltVaps, ThatAreDisabledGetOnlyTheirModeAndStatus) {
    quilt_vap& entry = quilt_.quilt_radio[5];
    entry.enable = -1; // any but 0 enables
    entry.radio = 0;
    entry.vap = 9;
    entry.status = 0;
    EXPECT_EQ(apply(), 0);
    EXPECT_THAT(from("wifi0vap9"),
                ElementsAre("log api_apply_channel_quilt: info: wifi0vap9",
                            "log set_vap_mode: radio:0 vap:9 mode:quilt",
                            "set wireless.wifi0vap9.mode=quilt",
                            "log set_vap_status: radio:0 vap:9 status:0",
                            "set wireless.wifi0vap9.disabled=1",
                            "log api_apply_channel_quilt: info: Can not set any more, because VAP "
                            "status is 0",
                            "log api_apply_channel_quilt: End, return 0"));
}

TEST_F(QuiltVaps, BehindADisabledOneAreApplied) {
    enable(4, 0, 9).status = 0;
    enable(5);
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi0vap9.disabled"), "1");
    EXPECT_EQ(staged_value("wireless.wifi1vap3.mode"), "quilt");
    EXPECT_EQ(staged_value("wireless.wifi1vap3.captive_portal"), "0");
    EXPECT_TRUE(saving_restarts_network());
}

TEST_F(QuiltVaps, AreAppliedInTheirOrderWhateverTheirIndexes) {
    enable(0, 0, 3);
    enable(1, 0, 15);
    enable(2, 0, 3).vlan_id = 99;
    enable(31, 0, 3).vlan_id = 11;
    EXPECT_EQ(apply(), 0);
    Trace headings;
    for (const std::string& line : door.log_of("api_apply_channel_quilt")) {
        if (line.compare(0, 10, "info: wifi") == 0) {
            headings.push_back(line.substr(6));
        }
    }
    EXPECT_THAT(headings, ElementsAre("wifi0vap3", "wifi0vap15", "wifi0vap3", "wifi0vap3"));
    EXPECT_EQ(staged_value("wireless.wifi0vap3.vlan_id"), "11") << "of the last of them";
}

static const char* const mfp_ignored =
    "log api_apply_channel_quilt: Security is not \"wpa-personal\" or "
    "\"wpa-enterprise\"ignore quilt_settings->quilt_radio[17].mfp:5";

TEST_F(QuiltVaps, AnOpenOneIsStagedInOrder) {
    configure("wireless.wifi1vap3.key", "old");
    configure("wireless.wifi1vap3.sae", "1");
    configure("wireless.wifi1vap3.sae_groups", "19");
    configure("wireless.wifi1vap3.sae_password", "old");
    configure("wireless.wifi1vap3.suite_b", "192");
    quilt_vap& vap = enable(17);
    vap.band_steer = 1;
    vap.mfp = 5; // not looked at
    vap.inactivity_timer = 300;
    vap.deauth_dup_auth = 1;
    vap.assoc_advertisement = 1;
    vap.dtim_period = 3;
    vap.proxy_arp = 1;
    vap.mac_filter_mode = 1;
    EXPECT_EQ(apply(), 0);
    EXPECT_THAT(from("wifi1vap3"),
                testing::ElementsAreArray({
                    "log api_apply_channel_quilt: info: wifi1vap3",
                    "log set_vap_mode: radio:1 vap:3 mode:quilt",
                    "set wireless.wifi1vap3.mode=quilt",
                    "log set_vap_status: radio:1 vap:3 status:1",
                    "set wireless.wifi1vap3.disabled=0",
                    "set wireless.wifi1.max_client=320",
                    "set wireless.wifi1vap3.bssid=02:00:00:00:0c:00",
                    "log set_vap_ssid: radio:1 vap:3 ssid:Quilt",
                    "set wireless.wifi1vap3.ssid=Quilt",
                    "log set_vap_bcast_ssid: radio:1 vap3 bcast_ssid:1",
                    "set wireless.wifi1vap3.hidden=0",
                    "log set_vap_vlan: radio:1 vap:3 vlan_id:10",
                    "log set_vap_vlan: vlan_name:wifi1vap3.vlan_id",
                    "set wireless.wifi1vap3.vlan_id=10",
                    "log api_apply_mac_filter_mode: Entering... radio:1 vap:3 mode:1",
                    "set wireless.wifi1vap3.macfilter=1",
                    "log api_apply_mac_filter_mode: End Successfully",
                    "log api_apply_channel_quilt: quilt_settings->quilt_radio[17].band_steer:1",
                    "set wireless.wifi1.band_steer=1",
                    "log set_vap_inactivity_timer: wifi1vap3: inactivity_timer: 300",
                    "set wireless.wifi1.agingtime=300",
                    "log set_vap_deauth_dup_auth: wifi1vap3: status: 1",
                    "set wireless.wifi1vap3.dis_deauth=0",
                    "log set_vap_assoc_advertisement: wifi1vap3: status: 1",
                    "set wireless.wifi1vap3.iapp_interface=1",
                    "log set_vap_dtim_period: wifi1vap3: dtim-period: 3",
                    "set wireless.wifi1vap3.dtim_period=3",
                    "set wireless.wifi1vap3.proxy_arp=1",
                    "set wireless.wifi1vap3.security=none",
                    "set wireless.wifi1vap3.encryption=none",
                    "delete wireless.wifi1vap3.key",
                    "delete wireless.wifi1vap3.sae",
                    "delete wireless.wifi1vap3.sae_groups",
                    "delete wireless.wifi1vap3.sae_password",
                    "delete wireless.wifi1vap3.suite_b",
                    mfp_ignored,
                    "log set_vap_fast_roaming: info: fast_roaming.status: 0",
                    "set wireless.wifi1vap3.ieee80211r=0",
                    "set wireless.wifi1vap3.ieee80211k=0",
                    "set wireless.wifi1vap3.ieee80211v=0",
                    "log api_apply_captive_portal_to_vap: Entering... radio:1 vap:3",
                    "set wireless.wifi1vap3.captive_portal=0",
                    "log api_apply_captive_portal_to_vap: End Successfully",
                    "log api_apply_channel_quilt: End, return 0",
                }));
}

TEST_F(QuiltVaps, TextsThatFillTheirFieldsAreReadToTheirEnds) {
    quilt_vap& vap = enable(0);
    memset(vap.bssid, 'b', sizeof vap.bssid);
    memset(vap.ssid, 's', sizeof vap.ssid);
    memset(vap.wireless_security, 'w', sizeof vap.wireless_security);
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi1vap3.bssid"), std::string(18, 'b'));
    EXPECT_EQ(staged_value("wireless.wifi1vap3.ssid"), std::string(34, 's'));
    EXPECT_THAT(door.trace({"set"}), testing::Not(testing::Contains(HasSubstr(".security="))));
}

TEST_F(QuiltVaps, AnEmptyAddressTakesTheStoredOneAway) {
    put(enable(0).bssid, "");
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi1vap3.bssid"), "(none)");
}

TEST_F(QuiltVaps, TheLastEnabledOneDecidesTheRadiosOptions) {
    enable(0, 1, 0).band_steer = 1;
    enable(9, 1, 1).band_steer = 0;
    quilt_.quilt_radio[0].inactivity_timer = 100;
    quilt_.quilt_radio[9].inactivity_timer = 200;
    configure("wireless.wifi1.band_steer", "1");
    configure("wireless.wifi1.max_client", "10");
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi1.band_steer"), "0");
    EXPECT_EQ(staged_value("wireless.wifi1.agingtime"), "200") << "of any VAP, not the first only";
    EXPECT_EQ(staged_value("wireless.wifi1.max_client"), "320");
    EXPECT_EQ(staged_value("wireless.wifi0.max_client"),
              committed_value("wireless.wifi0.max_client"));
}

TEST_F(QuiltVaps, WhatIsNotGivenIsNotWritten) {
    enable(0).proxy_arp = -7;
    EXPECT_EQ(apply(), 0);
    for (const char* option :
         {"agingtime", "dis_deauth", "iapp_interface", "dtim_period", "proxy_arp"}) {
        EXPECT_THAT(door.trace({"set"}),
                    testing::Not(testing::Contains(HasSubstr(std::string(".") + option + "="))));
    }
    for (int given : {0, INT_MAX}) {
        quilt_.quilt_radio[0].proxy_arp = given;
        EXPECT_EQ(apply(), 0);
        EXPECT_EQ(staged_value("wireless.wifi1vap3.proxy_arp"), std::to_string(given));
    }
}

// No index is refused by the operation: the store has no such sections.
TEST_F(QuiltVaps, OfNoRadioAreRefusedByTheStoreOnly) {
    const struct {
        int radio, vap;
        const char* heading;
    } rows[] = {
        {5, 0, "info: wifi5vap0"},
        {-1, 3, "info: wifi-1vap3"},
        {0, 16, "info: wifi0vap16"},
        {1, -1, "info: wifi1vap-1"},
        {INT_MAX, INT_MIN, "info: wifi2147483647vap-2147483648"},
    };
    for (const auto& row : rows) {
        ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
        enable(0, row.radio, row.vap);
        EXPECT_EQ(apply(), -1);
        EXPECT_TRUE(logged(row.heading));
        EXPECT_EQ(refusal(), "error: set quilt mode failed");
        EXPECT_THAT(staged(), IsEmpty());
    }
    configure("wireless.wifi5vap77", "wifi-iface");
    enable(0, 5, 77).status = 0;
    EXPECT_EQ(apply(), 0) << "with sections there are such VAPs";
    EXPECT_EQ(staged_value("wireless.wifi5vap77.mode"), "quilt");
}

TEST_F(QuiltVaps, AFailureDiscardsEverythingAndEndsTheCall) {
    ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
    enable(0, 0, 1);
    enable(3, 1, 1).vlan_id = 0;
    enable(4, 1, 2);
    EXPECT_EQ(apply(), -1);
    EXPECT_EQ(door.trace().back(), "revert all");
    EXPECT_EQ(refusal(), "error: Set vlan_id: 0 Failed");
    EXPECT_TRUE(logged("info: wifi1vap1"));
    EXPECT_FALSE(logged("info: wifi1vap2"));
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(QuiltVaps, MarkTheNetworkForTheNextSave) {
    enable(0).vlan_id = 0;
    ASSERT_EQ(apply(), -1);
    EXPECT_FALSE(saving_restarts_network());
    enable(0);
    ASSERT_EQ(apply(), 0);
    EXPECT_TRUE(saving_restarts_network());
    EXPECT_EQ(committed_value("wireless.wifi1vap3.ssid"), "Quilt");
}

TEST_F(QuiltVaps, ThatFailBehindTheirMacFilterHaveMarkedTheNetworkAlready) {
    enable(0).band_steer = 2;
    ASSERT_EQ(apply(), -1);
    EXPECT_TRUE(saving_restarts_network());
}

TEST_F(QuiltVaps, KeyHoldersAreConsumedEvenWhenALaterStepFails) {
    const struct {
        int unknown_portal_mode;
        int result;
    } rows[] = {{0, 0}, {1, -1}};
    for (const auto& row : rows) {
        quilt_vap& vap = enable(0);
        auto* second = static_cast<mac_list_node*>(malloc(sizeof(mac_list_node)));
        auto* first = static_cast<mac_list_node*>(malloc(sizeof(mac_list_node)));
        *second = {"02:00:00:00:00:b2", nullptr};
        *first = {"02:00:00:00:00:b1", second};
        vap.fast_roaming.status = 1;
        vap.fast_roaming.ft = {1, 0, "a1b2", 10000, 1000};
        vap.fast_roaming.aes_key = "key";
        vap.fast_roaming.key_holder_list = {2, first, second};
        vap.fast_roaming.rrm.status = 1;
        vap.fast_roaming.wnm.status = 0;
        vap.cp.enable = row.unknown_portal_mode;
        vap.cp.auth_mode = "nothing";
        EXPECT_EQ(apply(), row.result);
        EXPECT_EQ(vap.fast_roaming.key_holder_list.head, nullptr);
        EXPECT_EQ(vap.fast_roaming.key_holder_list.tail, nullptr);
        EXPECT_EQ(vap.fast_roaming.key_holder_list.count, 0);
        if (row.result == 0) {
            EXPECT_EQ(staged_value("wireless.wifi1vap3.key_holder_list"),
                      "02:00:00:00:00:b1 02:00:00:00:00:b2");
            EXPECT_THAT(door.trace(), testing::Contains("log set_vap_fast_roaming: info: "
                                                        "fast_roaming->ft.status: 1"));
        } else {
            EXPECT_EQ(refusal(), "error: Set captive portal Failed");
            EXPECT_THAT(staged(), IsEmpty());
        }
    }
}

TEST_F(QuiltVaps, APortalIsConfigured) {
    quilt_vap& vap = enable(0);
    vap.cp = {};
    vap.cp.enable = 1;
    vap.cp.auth_mode = "click-through";
    vap.cp.redirect_mode = "disable";
    vap.cp.session_timeout = 60;
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi1vap3.captive_portal"), "1");
    EXPECT_EQ(staged_value("wireless.wifi1vap3.cp_session_timeout"), "60");
}

// Each refused setting: the step's line, then the operation's own.
struct Refusal {
    const char* name;
    void (*change)(quilt_vap*);
    const char* step_line; // "" where the operation itself refuses
    const char* own_line;
};

void PrintTo(const Refusal& refusal, std::ostream* stream) {
    *stream << refusal.name;
}

class RefusedQuiltSetting : public QuiltRecord, public testing::WithParamInterface<Refusal> {};

TEST_P(RefusedQuiltSetting, EndsTheCallAndDiscardsEverything) {
    const Refusal& refused = GetParam();
    ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
    refused.change(&enable(9));
    EXPECT_EQ(apply(), -1);
    EXPECT_EQ(refusal(), refused.own_line);
    EXPECT_EQ(door.trace().back(), "revert all");
    EXPECT_THAT(staged(), IsEmpty());
    if (*refused.step_line != '\0') {
        EXPECT_THAT(door.trace({"log"}),
                    testing::Contains(std::string("log ") + refused.step_line));
    }
}

const Refusal refusals[] = {
    {"status_2", [](quilt_vap* v) { v->status = 2; }, "set_vap_status: Status is not correct :2!",
     "error: Set Quilt Status failed : status=2!"},
    {"status_minus_1", [](quilt_vap* v) { v->status = -1; },
     "set_vap_status: Status is not correct :-1!", "error: Set Quilt Status failed : status=-1!"},
    {"bcast_ssid_2", [](quilt_vap* v) { v->bcast_ssid = 2; },
     "set_vap_bcast_ssid: bcast_ssid is not correct :2!", "error: bcast_ssid is not correct :2!"},
    {"bcast_ssid_minus_1", [](quilt_vap* v) { v->bcast_ssid = -1; },
     "set_vap_bcast_ssid: bcast_ssid is not correct :-1!", "error: bcast_ssid is not correct :-1!"},
    {"vlan_0", [](quilt_vap* v) { v->vlan_id = 0; }, "set_vap_vlan: vlan_id is not correct :0!",
     "error: Set vlan_id: 0 Failed"},
    {"vlan_4095", [](quilt_vap* v) { v->vlan_id = 4095; },
     "set_vap_vlan: vlan_id is not correct :4095!", "error: Set vlan_id: 4095 Failed"},
    {"band_steer_2", [](quilt_vap* v) { v->band_steer = 2; }, "",
     "error: quilt_settings->quilt_radio[9].band_steer is not correct : 2!"},
    {"band_steer_minus_1", [](quilt_vap* v) { v->band_steer = -1; }, "",
     "error: quilt_settings->quilt_radio[9].band_steer is not correct : -1!"},
    {"inactivity_59", [](quilt_vap* v) { v->inactivity_timer = 59; },
     "set_vap_inactivity_timer: wifi1vap3: inactivity_timer: out of range 59, should be 60 <= x "
     "<= 65535",
     "wifi1vap3: failed to set CQ inactivity timer 59"},
    {"deauth_2", [](quilt_vap* v) { v->deauth_dup_auth = 2; },
     "set_vap_deauth_dup_auth: wifi1vap3: deauth-dup-auth: invalid value 2",
     "wifi1vap3: failed to set CQ don't send deauth 2"},
    {"advertisement_2", [](quilt_vap* v) { v->assoc_advertisement = 2; },
     "set_vap_assoc_advertisement: wifi1vap3: assoc-advertise: invalid value 2",
     "wifi1vap3: failed to set CQ assoc advertisement 2"},
    {"dtim_256", [](quilt_vap* v) { v->dtim_period = 256; },
     "set_vap_dtim_period: wifi1vap3: dtim-period: invalid range 256",
     "wifi1vap3: failed to set CQ dtim-period 256"},
    {"roaming",
     [](quilt_vap* v) {
         v->fast_roaming.status = 1;
         v->fast_roaming.ft.status = 7;
     },
     "set_vap_fast_roaming: error: The ieee80211r status is error!",
     "error: Set fast roaming Failed"},
    {"portal",
     [](quilt_vap* v) {
         v->cp.enable = 1;
         v->cp.auth_mode = "nothing";
     },
     "api_apply_captive_portal_to_vap: error: cp->auth_mode: Unknown value nothing",
     "error: Set captive portal Failed"},
};

INSTANTIATE_TEST_SUITE_P(Settings, RefusedQuiltSetting, testing::ValuesIn(refusals),
                         [](const auto& info) { return info.param.name; });

// The n-th write of an open VAP with everything given fails.
struct FailedWrite {
    int nth;
    const char* option;
    const char* own_line;
};

void PrintTo(const FailedWrite& write, std::ostream* stream) {
    *stream << write.option;
}

class FailedQuiltWrite : public QuiltRecord, public testing::WithParamInterface<FailedWrite> {};

TEST_P(FailedQuiltWrite, EndsTheCallAndDiscardsEverything) {
    quilt_vap& vap = enable(9);
    vap.inactivity_timer = 300;
    vap.deauth_dup_auth = 1;
    vap.assoc_advertisement = 1;
    vap.dtim_period = 3;
    vap.proxy_arp = 1;
    ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
    door.fail(Call::uci_set, own_writes + GetParam().nth);
    EXPECT_EQ(apply(), -1);
    EXPECT_THAT(door.trace({"set"}).back(), HasSubstr(GetParam().option));
    EXPECT_EQ(refusal(), GetParam().own_line);
    EXPECT_EQ(door.trace().back(), "revert all");
    EXPECT_THAT(staged(), IsEmpty());
}

const FailedWrite failed_writes[] = {
    {1, "mode=quilt (failed)", "error: set quilt mode failed"},
    {2, "disabled=0 (failed)", "error: Set Quilt Status failed : status=1!"},
    {3, "max_client=320 (failed)", "error: Set Value Failed : wireless.wifi1.max_client=320!"},
    {4, "bssid=02:00:00:00:0c:00 (failed)",
     "error: Set Value Failed : wireless.wifi1vap3.bssid=02:00:00:00:0c:00!"},
    {5, "ssid=Quilt (failed)", "error: Set SSIDLQuilt failed!"},
    {6, "hidden=0 (failed)", "error: bcast_ssid is not correct :1!"},
    {7, "vlan_id=10 (failed)", "error: Set vlan_id: 10 Failed"},
    {8, "macfilter=0 (failed)", "error: Set Mac Filter Mode Failed : 0!"},
    {9, "band_steer=0 (failed)",
     "error: Set band steer of CQ to configuration failed : wireless.wifi1.band_steer=0!"},
    {10, "agingtime=300 (failed)", "wifi1vap3: failed to set CQ inactivity timer 300"},
    {11, "dis_deauth=0 (failed)", "wifi1vap3: failed to set CQ don't send deauth 1"},
    {12, "iapp_interface=1 (failed)", "wifi1vap3: failed to set CQ assoc advertisement 1"},
    {13, "dtim_period=3 (failed)", "wifi1vap3: failed to set CQ dtim-period 3"},
    {14, "proxy_arp=1 (failed)", "Set Value Failed : wireless.wifi1vap3.proxy_arp=1!"},
    {15, "security=none (failed)", "error: Set Value Failed : wireless.wifi1vap3.security=none!"},
    {16, "encryption=none (failed)",
     "error: Set Value Failed : wireless.wifi1vap3.encryption=none!"},
    {17, "ieee80211r=0 (failed)", "error: Set fast roaming Failed"},
    {20, "captive_portal=0 (failed)", "error: Set captive portal Failed"},
};

INSTANTIATE_TEST_SUITE_P(Writes, FailedQuiltWrite, testing::ValuesIn(failed_writes),
                         [](const auto& info) { return "Write" + std::to_string(info.param.nth); });

} // namespace orlo::test
