// SPDX-License-Identifier: MIT
// Setting up mesh links, and what the device says of them.
#include "support/access_point.h"

#include <climits>

namespace orlo::test {

// ---- The radio ----

class MeshRadio : public AccessPoint {
protected:
    MeshRadio() {
        operate_on(0, 6);
        operate_on(1, 36);
    }
};

TEST_F(MeshRadio, KeepsAChannelThatTheMeshMayUse) {
    EXPECT_EQ(ops.api_apply_mesh_link_radio(1, 40, "149 153 36"), 0);
    EXPECT_THAT(door.trace(),
                ElementsAre("log api_apply_mesh_link_radio: Entering... radio: 1, eg_chs: 149 153 "
                            "36, bandwidth: 40",
                            "set wireless.wifi1.eg_ch=149 153 36",
                            "log api_get_channel: Entering... radio:2",
                            "log api_get_channel: End... return: 36",
                            "set wireless.wifi1.htmode=HT40+",
                            "log api_apply_mesh_link_radio: End... return: 0"));
    EXPECT_THAT(staged(),
                ElementsAre("wireless.wifi1.eg_ch=149 153 36", "wireless.wifi1.htmode=HT40+"));
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(MeshRadio, LeavesAChannelThatTheMeshMayNotUse) {
    EXPECT_EQ(ops.api_apply_mesh_link_radio(0, 20, "1 11"), 0);
    EXPECT_THAT(
        door.trace({"log", "set", "run", "commit", "revert"}),
        ElementsAre("log api_apply_mesh_link_radio: Entering... radio: 0, eg_chs: 1 11, "
                    "bandwidth: 20",
                    "set wireless.wifi0.eg_ch=1 11", "log api_get_channel: Entering... radio:1",
                    "log api_get_channel: End... return: 6",
                    "log api_apply_mesh_link_radio: wifi0: Override channel 1.",
                    "log api_set_Channel: Entering... radio:0 channel:1",
                    "log api_set_Channel: info: ready to set radio0 channel: 1.",
                    "set wireless.wifi0.channel=1",
                    "log api_set_Channel: info: Set channel command:/usr/sbin/iwconfig wdev0 "
                    "channel 1",
                    "run /usr/sbin/iwconfig wdev0 channel 1",
                    "log api_set_Channel: info: iwconfig commit change: /usr/sbin/iwconfig wdev0 "
                    "commit",
                    "run /usr/sbin/iwconfig wdev0 commit", "commit wireless",
                    "log api_set_Channel: Set wifi0 channel 1 success.",
                    "set wireless.wifi0.htmode=HT20",
                    "log api_apply_mesh_link_radio: End... return: 0"));
    EXPECT_EQ(committed_value("wireless.wifi0.channel"), "1");
    EXPECT_EQ(ops.api_get_channel(0), 1);
}

TEST_F(MeshRadio, HasOneOfThreeWidths) {
    const struct {
        int bandwidth;
        const char* mode;
    } rows[] = {{20, "HT20"}, {40, "HT40+"}, {80, "HT80"}};
    configure("wireless.wifi1.htmode", "HT160");
    for (const auto& row : rows) {
        EXPECT_EQ(ops.api_apply_mesh_link_radio(1, row.bandwidth, "36"), 0);
        EXPECT_EQ(staged_value("wireless.wifi1.htmode"), row.mode);
    }
}

TEST_F(MeshRadio, OfAnotherWidthIsRefusedAndDiscardsEverything) {
    for (int bandwidth : {160, 0, -1, 21, 8080, INT_MAX, INT_MIN}) {
        ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
        door.forget();
        EXPECT_EQ(ops.api_apply_mesh_link_radio(1, bandwidth, "36 40"), -1);
        EXPECT_THAT(door.trace({"log", "set", "revert"}),
                    ElementsAre("log api_apply_mesh_link_radio: Entering... radio: 1, eg_chs: 36 "
                                "40, bandwidth: " +
                                    std::to_string(bandwidth),
                                "set wireless.wifi1.eg_ch=36 40",
                                "log api_get_channel: Entering... radio:2",
                                "log api_get_channel: End... return: 36",
                                "log api_apply_mesh_link_radio: Unknown channel_bandwidth:" +
                                    std::to_string(bandwidth),
                                "revert all"));
        EXPECT_THAT(staged(), IsEmpty());
    }
}

TEST_F(MeshRadio, WithoutChannelsIsRefusedAndDiscardsEverything) {
    ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
    door.forget();
    EXPECT_EQ(ops.api_apply_mesh_link_radio(0, 20, nullptr), -1);
    EXPECT_THAT(door.trace(),
                ElementsAre("log api_apply_mesh_link_radio: Entering... radio: 0, "
                            "eg_chs: NULL, bandwidth: 20",
                            "log api_apply_mesh_link_radio: eg_chs is NULL", "revert all"));
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(MeshRadio, ThatCannotBeMovedFailsAndGoesNoFurther) {
    ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
    door.forget();
    EXPECT_EQ(ops.api_apply_mesh_link_radio(1, 80, "200 149"), -1);
    EXPECT_THAT(
        door.trace({"log", "set", "revert"}),
        ElementsAre("log api_apply_mesh_link_radio: Entering... radio: 1, eg_chs: 200 "
                    "149, bandwidth: 80",
                    "set wireless.wifi1.eg_ch=200 149", "log api_get_channel: Entering... radio:2",
                    "log api_get_channel: End... return: 36",
                    "log api_apply_mesh_link_radio: wifi1: Override channel 200.",
                    "log api_set_Channel: Entering... radio:1 channel:200",
                    "log api_set_Channel: error: Invalid channel 200 for radio 1 !", "revert all",
                    "log api_apply_mesh_link_radio: wifi1: Failed to override channel "
                    "200."))
        << "the channel has discarded everything; it is not done again";
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(MeshRadio, ThatCannotBeWrittenDiscardsEverything) {
    const char* const options[] = {"wifi1.eg_ch", "wifi1.htmode"};
    for (int i = 0; i < 2; i++) {
        ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
        door.forget();
        door.fail(Call::uci_set, i + 1);
        EXPECT_EQ(ops.api_apply_mesh_link_radio(1, 20, "36"), -1);
        const Trace lines = door.trace();
        EXPECT_EQ(lines[lines.size() - 2],
                  "log api_apply_mesh_link_radio: Set Value Failed : wireless." +
                      std::string(options[i]));
        EXPECT_EQ(lines.back(), "revert all");
        EXPECT_THAT(staged(), IsEmpty());
    }
    for (int radio : {2, -1, INT_MAX, INT_MIN}) {
        EXPECT_EQ(ops.api_apply_mesh_link_radio(radio, 20, "36"), -1);
        EXPECT_THAT(door.trace({"log"}).back(),
                    "log api_apply_mesh_link_radio: Set Value Failed : wireless.wifi" +
                        std::to_string(radio) + ".eg_ch");
    }
}

TEST_F(MeshRadio, StaysOnItsChannelWhenThatIsUnknownOrTheListHoldsNothing) {
    EXPECT_EQ(ops.api_apply_mesh_link_radio(1, 20, " "), 0);
    EXPECT_THAT(door.trace(),
                testing::Contains("log check_static_channel_in_eligible_channels: info: eligible "
                                  "channel is unknown format: [ ]"));
    tell_driver("wdev1", "fail freq EINVAL\n");
    EXPECT_EQ(ops.api_apply_mesh_link_radio(1, 20, "149"), 0);
    EXPECT_THAT(door.trace({"run", "commit"}), IsEmpty());
}

TEST_F(MeshRadio, MarksTheNetworkForTheNextSaveOnSuccessOnly) {
    ASSERT_EQ(ops.api_apply_mesh_link_radio(1, 160, "36"), -1);
    EXPECT_FALSE(saving_restarts_network());
    ASSERT_EQ(ops.api_apply_mesh_link_radio(1, 20, "36"), 0);
    EXPECT_TRUE(saving_restarts_network());
    EXPECT_EQ(committed_value("wireless.wifi1.eg_ch"), "36");
}

// ---- The VAP ----

class MeshVap : public AccessPoint {
protected:
    mesh_link_vap_settings request = {1, 0, 1, "backhaul", "open sesame"};
};

TEST_F(MeshVap, IsStagedInOrder) {
    EXPECT_EQ(ops.api_apply_mesh_link_vap(1, &request), 0);
    Trace expected = {
        "log api_apply_mesh_link_vap: Entering... radio: 1",
        "log set_vap_status: radio:1 vap:1 status:1",
        "set wireless.wifi1vap1.disabled=0",
        "log set_vap_mode: radio:1 vap:1 mode:qx_mesh",
        "set wireless.wifi1vap1.mode=qx_mesh",
        "log set_vap_ssid: radio:1 vap:1 ssid:backhaul",
        "set wireless.wifi1vap1.ssid=backhaul",
        "set wireless.wifi1vap1.acceptor=1",
        "set wireless.wifi1vap1.connector=0",
        "set wireless.wifi1vap1.ml_max_link_allowed=4",
        "set wireless.wifi1vap1.security=wpa-psk",
        "set wireless.wifi1vap1.encryption=psk2+ccmp",
        "set wireless.wifi1vap1.wpaversion=wpa2",
        "set wireless.wifi1vap1.cipher=ccmp",
        "set wireless.wifi1vap1.key=open sesame",
        "set wireless.wifi1vap1.wpakey=open sesame",
        "set wireless.wifi1vap1.dynamic_vlan=0",
        "set wireless.wifi1vap1.macfilter=0",
        "set wireless.wifi1vap1.captive_portal=0",
        "set wireless.wifi1vap1.ieee80211r=0",
        "set wireless.wifi1vap1.ieee80211k=0",
        "set wireless.wifi1vap1.ieee80211v=0",
        "set wireless.wifi1vap1.inact=300",
        "set wireless.wifi1vap1.dis_deauth=0",
        "set wireless.wifi1vap1.iapp_interface=0",
        "set wireless.wifi1vap1.proxy_arp=0",
        "log set_vap_vlan: radio:1 vap:1 vlan_id:1",
        "log set_vap_vlan: vlan_name:wifi1vap1.vlan_id",
        "set wireless.wifi1vap1.vlan_id=1",
        "set wireless.wifi1vap1.hidden=1",
        "set wireless.wifi1vap1.dtim_period=1",
        "set wireless.wifi1vap1.wpa_group_rekey=0",
        "set wireless.wifi1vap1.ieee80211w=0",
    };
    for (int vap = 2; vap < 16; vap++) {
        expected.push_back("set wireless.wifi1vap" + std::to_string(vap) + ".disabled=1");
    }
    expected.push_back("log api_apply_mesh_link_vap: End... return: 0");
    EXPECT_EQ(door.trace(), expected);
    EXPECT_EQ(staged_value("wireless.wifi1vap0.disabled"), "0");
}

TEST_F(MeshVap, AcceptsAndConnectsWhenAsked) {
    for (int32_t acceptor : {0, 1, -1, INT_MIN}) {
        for (int32_t connector : {0, 1, 2, INT_MAX}) {
            request.acceptor = acceptor;
            request.connector = connector;
            EXPECT_EQ(ops.api_apply_mesh_link_vap(0, &request), 0);
            EXPECT_EQ(staged_value("wireless.wifi0vap1.acceptor"), acceptor != 0 ? "1" : "0");
            EXPECT_EQ(staged_value("wireless.wifi0vap1.connector"), connector != 0 ? "1" : "0");
        }
    }
}

TEST_F(MeshVap, FromTheThirdOnIsSwitchedOffLikeAllOthers) {
    for (int vap : {2, 5, 15}) {
        request.vap = vap;
        const std::string section = "wireless.wifi0vap" + std::to_string(vap);
        door.forget();
        EXPECT_EQ(ops.api_apply_mesh_link_vap(0, &request), 0);
        EXPECT_THAT(door.trace(), testing::Contains("set " + section + ".disabled=0"));
        EXPECT_THAT(door.trace(), testing::Contains("set " + section + ".disabled=1"));
        EXPECT_EQ(staged_value(section + ".disabled"), "1");
        EXPECT_EQ(staged_value(section + ".mode"), "qx_mesh");
    }
    request.vap = 0;
    configure("wireless.wifi0vap1.disabled", "0");
    EXPECT_EQ(ops.api_apply_mesh_link_vap(0, &request), 0);
    EXPECT_EQ(staged_value("wireless.wifi0vap0.disabled"), "0");
    EXPECT_EQ(staged_value("wireless.wifi0vap1.disabled"), "0") << "the first two are left alone";
    EXPECT_EQ(staged_value("wireless.wifi1vap2.disabled"),
              committed_value("wireless.wifi1vap2.disabled"))
        << "and the other radio";
}

TEST_F(MeshVap, ThatCannotBeWrittenDiscardsEverything) {
    std::vector<std::string> options = {
        "acceptor",
        "connector",
        "ml_max_link_allowed",
        "security",
        "encryption",
        "wpaversion",
        "cipher",
        "key",
        "wpakey",
        "dynamic_vlan",
        "macfilter",
        "captive_portal",
        "ieee80211r",
        "ieee80211k",
        "ieee80211v",
        "inact",
        "dis_deauth",
        "iapp_interface",
        "proxy_arp",
        "vlan_id",
        "hidden",
        "dtim_period",
        "wpa_group_rekey",
        "ieee80211w",
    };
    for (size_t i = 0; i < options.size(); i++) {
        if (options[i] == "vlan_id") {
            continue; // has messages of its own
        }
        ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
        door.forget();
        door.fail(Call::uci_set, static_cast<int>(i) + 4); // after status, mode and SSID
        EXPECT_EQ(ops.api_apply_mesh_link_vap(1, &request), -1);
        const Trace lines = door.trace();
        EXPECT_THAT(lines[lines.size() - 3],
                    testing::AllOf(StartsWith("set wireless.wifi1vap1." + options[i] + "="),
                                   HasSubstr(" (failed)")));
        EXPECT_EQ(lines[lines.size() - 2],
                  "log api_apply_mesh_link_vap: Set Value Failed : wireless.wifi1vap1." +
                      options[i]);
        EXPECT_EQ(lines.back(), "revert all");
        EXPECT_THAT(staged(), IsEmpty());
    }
    for (int vap = 2; vap < 16; vap++) {
        door.forget();
        door.fail(Call::uci_set, static_cast<int>(options.size()) + 4 + vap - 2);
        EXPECT_EQ(ops.api_apply_mesh_link_vap(1, &request), -1);
        const Trace lines = door.trace();
        EXPECT_EQ(lines[lines.size() - 2],
                  "log api_apply_mesh_link_vap: Set Value Failed : wireless.wifi1vap" +
                      std::to_string(vap) + ".disabled");
        EXPECT_EQ(lines.back(), "revert all");
        EXPECT_THAT(staged(), IsEmpty());
    }
}

TEST_F(MeshVap, WhoseBasicSettingsCannotBeWrittenDiscardsEverythingOnce) {
    const struct {
        int write;
        const char* step;
        const char* message;
    } rows[] = {
        {1, "set_vap_status: Set Value Failed : wireless.wifi1vap1.disabled=0!",
         "Failed to set vap status."},
        {2, "set_vap_mode: error: set AP mode failed", "Failed to set vap mode."},
        {3, "set_vap_ssid: Set Value Failed : wireless.wifi1vap1.ssid=backhaul!",
         "Failed to set vap ssid."},
        {23, "set_vap_vlan: Set Value Failed : wireless.wifi1vap1.vlan_id=1!",
         "Failed to set vap vlan id."},
    };
    for (const auto& row : rows) {
        ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
        door.forget();
        door.fail(Call::uci_set, row.write);
        EXPECT_EQ(ops.api_apply_mesh_link_vap(1, &request), -1);
        EXPECT_THAT(door.trace(), testing::Contains("log " + std::string(row.step)));
        EXPECT_EQ(door.trace().back(), "log api_apply_mesh_link_vap: " + std::string(row.message));
        EXPECT_THAT(door.trace({"revert"}), ElementsAre("revert all"));
        EXPECT_THAT(staged(), IsEmpty());
    }
}

TEST_F(MeshVap, WithoutANameOrAKeyIsRefusedAndDiscardsEverything) {
    request.ssid = nullptr;
    EXPECT_EQ(ops.api_apply_mesh_link_vap(1, &request), -1);
    EXPECT_THAT(door.trace(), testing::Contains("log set_vap_ssid: The ssid is NULL!"));
    EXPECT_EQ(door.trace().back(), "log api_apply_mesh_link_vap: Failed to set vap ssid.");
    EXPECT_THAT(staged(), IsEmpty());
    request.ssid = "backhaul";
    request.key = nullptr;
    EXPECT_EQ(ops.api_apply_mesh_link_vap(1, &request), -1);
    EXPECT_EQ(door.trace({"log"}).back(),
              "log api_apply_mesh_link_vap: Set Value Failed : wireless.wifi1vap1.key");
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(MeshVap, ThatDoesNotExistIsRefusedAndDiscardsEverything) {
    for (int vap : {16, -1, INT_MAX, INT_MIN}) {
        request.vap = vap;
        EXPECT_EQ(ops.api_apply_mesh_link_vap(1, &request), -1);
        EXPECT_EQ(door.trace().back(), "log api_apply_mesh_link_vap: Failed to set vap status.");
    }
    request.vap = 1;
    for (int radio : {2, -1, INT_MAX, INT_MIN}) {
        EXPECT_EQ(ops.api_apply_mesh_link_vap(radio, &request), -1);
        EXPECT_EQ(door.trace().back(), "log api_apply_mesh_link_vap: Failed to set vap status.");
    }
    door.forget();
    EXPECT_EQ(ops.api_apply_mesh_link_vap(1, nullptr), -1) << "nor is a missing request";
    EXPECT_THAT(door.trace({"set", "revert"}), IsEmpty());
}

TEST_F(MeshVap, MarksTheNetworkForTheNextSaveOnSuccessOnly) {
    request.vap = 16;
    ASSERT_EQ(ops.api_apply_mesh_link_vap(1, &request), -1);
    EXPECT_FALSE(saving_restarts_network());
    request.vap = 1;
    ASSERT_EQ(ops.api_apply_mesh_link_vap(1, &request), 0);
    EXPECT_TRUE(saving_restarts_network());
    EXPECT_EQ(committed_value("wireless.wifi1vap1.mode"), "qx_mesh");
}

// ---- What the device says of mesh links ----

using MeshCapabilities = AccessPoint;

TEST_F(MeshCapabilities, AreNotDeclared) {
    const auto said = [this](const std::string& operation) {
        const Trace trace = door.trace();
        door.forget();
        return trace == Trace{"log " + operation + ": Entering, not support yet",
                              "log " + operation + ": End..."};
    };
    for (int anything : {0, 1, -1, INT_MAX}) {
        EXPECT_EQ(ops.api_apply_mesh_link_initial_vap(anything, anything, anything), 0);
        EXPECT_TRUE(said("api_apply_mesh_link_initial_vap"));
        EXPECT_EQ(ops.api_is_area_auth(anything, anything), 0);
        EXPECT_TRUE(said("api_is_area_auth"));
    }
    EXPECT_EQ(ops.api_is_mesh_link_acceptor_capable(), 0);
    EXPECT_TRUE(said("api_is_mesh_link_acceptor_capable"));
    EXPECT_EQ(ops.api_is_mesh_link_capable(), 0);
    EXPECT_TRUE(said("api_is_mesh_link_capable"));
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(MeshCapabilities, OperationLogsAreSentUnlessTheAgentSaysOtherwise) {
    configure("orloagent.agent.ap_syslog", "");
    EXPECT_EQ(ops.api_is_sending_operation_logs_enabled(), 1);
    EXPECT_THAT(door.trace(), ElementsAre("log api_is_sending_operation_logs_enabled: Entering (no "
                                          "line end)"));
    const struct {
        const char* value;
        int enabled;
        const char* shown;
    } rows[] = {
        {"1", 1, "1"},   {"0", 0, "0"},       {"10", 0, "10"},
        {"on", 0, "on"}, {"true", 0, "true"}, {"123456789", 0, "12345678"},
    };
    for (const auto& row : rows) {
        configure("orloagent.agent.ap_syslog", row.value);
        door.forget();
        EXPECT_EQ(ops.api_is_sending_operation_logs_enabled(), row.enabled) << row.value;
        EXPECT_THAT(door.trace(),
                    ElementsAre("log api_is_sending_operation_logs_enabled: Entering (no line end)",
                                "log api_is_sending_operation_logs_enabled: End, val = " +
                                    std::string(row.shown) + " (no line end)"));
    }
}

} // namespace orlo::test
