// SPDX-License-Identifier: MIT
// Radio-wide settings.
#include "support/access_point.h"

#include <climits>

namespace orlo::test {

class RadioSettings : public AccessPoint {
protected:
    radio_settings settings_ = {"wlan1", -1, -1, -1, nullptr, -1, -1, -1, -1, -1, -1, -1, -1};
    const std::string own_ = "log api_apply_radio: ";

    int apply() {
        door.forget();
        return ops.api_apply_radio(&settings_);
    }
};

TEST_F(RadioSettings, WithNothingGivenOnlyLogWhatIsNotSupported) {
    EXPECT_EQ(apply(), 0);
    EXPECT_THAT(door.trace(),
                ElementsAre(own_ + "Entering... radio interface_name is: wlan1",
                            own_ + "periodic_channel_refresh: Not support",
                            own_ + "short_guard_interval_support: Not support",
                            own_ + "Protection: Not support",
                            own_ + "multidomain_regulatory_mode: Not support",
                            own_ + "beacon_interval: Not support",
                            own_ + "fragmentation_threshold: Not support",
                            own_ + "Broadcast Multicast Rate Settings: Not support",
                            own_ + "load_balance: Not support", own_ + "apsd=-1, wmm=-1, no_ack=-1",
                            own_ + "no_ack: Not configurable"));
}

TEST_F(RadioSettings, AreStagedInOrder) {
    settings_ = {"wlan1", 1, 2347, 320, "24", 0, 1, 1, 1, 0, 1, 0, 1};
    EXPECT_EQ(apply(), 0);
    EXPECT_THAT(door.trace(), testing::ElementsAreArray({
                                  own_ + "Entering... radio interface_name is: wlan1",
                                  own_ + "station_isolation:1 ",
                                  std::string("set wireless.wifi1.ap_isolation_enabled=1"),
                                  own_ + "periodic_channel_refresh: Not support",
                                  own_ + "short_guard_interval_support: Not support",
                                  own_ + "Protection: Not support",
                                  own_ + "multidomain_regulatory_mode: Not support",
                                  own_ + "beacon_interval: Not support",
                                  own_ + "fragmentation_threshold: Not support",
                                  own_ + "rts_threshold:2347 ",
                                  std::string("set wireless.wifi1.rts_threshold=2347"),
                                  own_ + "max_stations:320 ",
                                  std::string("set wireless.wifi1.max_client=320"),
                                  own_ + "fixed_multicast_rate: 24",
                                  std::string("set wireless.wifi1.multicast_tx_rate=24"),
                                  own_ + "Broadcast Multicast Rate Settings: Not support",
                                  own_ + "load_balance: Not support",
                                  own_ + "apsd=0, wmm=1, no_ack=1",
                                  std::string("set wifi_qos.wifi1.APSD=0"),
                                  std::string("set wifi_qos.wifi1.WMM=1"),
                                  own_ + "no_ack: Not configurable",
                                  own_ + "atf:1 ",
                                  std::string("set wireless.wifi1.atf_status=1"),
                                  own_ + "rfscan_status:0",
                                  std::string("set wireless.wifi1.rfscan_status=0"),
                                  own_ + "ofdma:1 ",
                                  std::string("set wireless.wifi1.ofdma=1"),
                                  own_ + "mumimo:0 ",
                                  std::string("set wireless.wifi1.mumimo=0"),
                                  own_ + "zw_dfs:1 ",
                                  std::string("set wireless.wifi1.zw_dfs=1"),
                              }));
}

TEST_F(RadioSettings, OfTheFirstInterfaceAreTheFirstRadios) {
    settings_.interface_name = "wlan0";
    settings_ = {"wlan0", 0, 0, 0, "", 0, 0, 0, 0, 1, 0, 0, 0};
    EXPECT_EQ(apply(), 0);
    EXPECT_THAT(door.trace({"set"}),
                ElementsAre("set wireless.wifi0.ap_isolation_enabled=0",
                            "set wireless.wifi0.rts_threshold=0", "set wireless.wifi0.max_client=0",
                            "set wireless.wifi0.multicast_tx_rate=", "set wifi_qos.wifi0.APSD=0",
                            "set wifi_qos.wifi0.WMM=0", "set wireless.wifi0.atf_status=0",
                            "set wireless.wifi0.rfscan_status=1", "set wireless.wifi0.ofdma=0",
                            "set wireless.wifi0.mumimo=0", "set wireless.wifi0.zw_dfs=0"));
}

TEST_F(RadioSettings, MarkTheNetworkForTheNextSaveOnSuccessOnly) {
    settings_.rts_threshold = 2348;
    ASSERT_EQ(apply(), -1);
    ASSERT_EQ(ops.api_save_config(), 0);
    EXPECT_THAT(door.trace({"run"}), testing::Not(testing::Contains(HasSubstr("network-5"))));
    settings_.rts_threshold = 0;
    ASSERT_EQ(apply(), 0);
    ASSERT_EQ(ops.api_save_config(), 0);
    EXPECT_THAT(door.trace({"run"}), testing::Contains(HasSubstr("network-5")));
}

TEST_F(RadioSettings, OfAnUnknownInterfaceLeaveStagedChangesInPlace) {
    for (const char* name : {"wlan2", "", "wlan", "WLAN0", "wifi0"}) {
        ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
        settings_.interface_name = name;
        EXPECT_EQ(apply(), -2);
        EXPECT_THAT(door.trace(), ElementsAre(own_ + "Entering... radio interface_name is: " + name,
                                              own_ + "Invalid radio interface_name is " + name));
        EXPECT_THAT(staged(), ElementsAre("orloagent.agent.confighash=abc"));
    }
}

TEST_F(RadioSettings, WithoutAnInterfaceAreRefusedAndDiscardEverything) {
    ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
    settings_.interface_name = nullptr;
    EXPECT_EQ(apply(), -1);
    EXPECT_THAT(door.trace(), ElementsAre(own_ + "Entering... radio interface_name is: NULL",
                                          own_ + "radio interface_name is missing.", "revert all"));
    EXPECT_THAT(staged(), IsEmpty());
    ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
    door.forget();
    EXPECT_EQ(ops.api_apply_radio(nullptr), -1);
    EXPECT_THAT(door.trace(), IsEmpty()) << "no record: nothing is touched";
}

TEST_F(RadioSettings, AnIsolationThatCannotBeWrittenHasAResultOfItsOwn) {
    settings_.station_isolation = 1;
    door.fail(Call::uci_set);
    EXPECT_EQ(apply(), -2);
    EXPECT_THAT(door.trace({"log", "revert"}),
                ElementsAre(own_ + "Entering... radio interface_name is: wlan1",
                            own_ + "station_isolation:1 ", own_ + "Set Value Failed",
                            "revert all"));
    for (int flag : {2, -2}) {
        settings_.station_isolation = flag;
        EXPECT_EQ(apply(), -2) << "no flag: cannot be written";
        EXPECT_EQ(door.trace().back(), "revert all");
    }
}

TEST_F(RadioSettings, BeyondTheirLimitsAreRefusedAndDiscardEverything) {
    const struct {
        int32_t radio_settings::*setting;
        int value;
        const char* message;
    } rows[] = {
        {&radio_settings::rts_threshold, 2348,
         "error: RTS Threshold 2348 is out of range: 0 - 2347"},
        {&radio_settings::rts_threshold, -2, "error: RTS Threshold -2 is out of range: 0 - 2347"},
        {&radio_settings::max_stations, 321, "error: max_station 321 is out of range: 0 - 320"},
        {&radio_settings::max_stations, INT_MIN,
         "error: max_station -2147483648 is out of range: 0 - 320"},
    };
    for (const auto& row : rows) {
        ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
        const int before = settings_.*row.setting;
        settings_.*row.setting = row.value;
        EXPECT_EQ(apply(), -1);
        EXPECT_EQ(door.trace({"log"}).back(), own_ + row.message);
        EXPECT_EQ(door.trace().back(), "revert all");
        EXPECT_THAT(staged(), IsEmpty());
        settings_.*row.setting = before;
    }
}

TEST_F(RadioSettings, AnAutomaticMulticastRateIsOnlyLogged) {
    for (const char* rate : {"auto", "fast"}) {
        settings_.fixed_multicast_rate = rate;
        EXPECT_EQ(apply(), 0);
        EXPECT_THAT(door.trace(),
                    testing::Contains(own_ + "Not support fixed_multicast_rate: " + rate));
        EXPECT_THAT(door.trace({"set"}), IsEmpty());
    }
    settings_.fixed_multicast_rate = "Auto";
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi1.multicast_tx_rate"), "Auto") << "unchecked";
}

// Each write of a full record that fails: the option and the line that says so.
TEST_F(RadioSettings, EachFailedWriteDiscardsEverything) {
    const struct {
        const char* edit;
        const char* message;
    } rows[] = {
        {"set wireless.wifi1.ap_isolation_enabled=1", "Set Value Failed"},
        {"set wireless.wifi1.rts_threshold=100", "Set Value Failed"},
        {"set wireless.wifi1.max_client=100", "Set Value Failed"},
        {"set wireless.wifi1.multicast_tx_rate=24", "Set Value Failed"},
        {"set wifi_qos.wifi1.APSD=1", "error: failed when set wifi1 apsd_mode to 1"},
        {"set wifi_qos.wifi1.WMM=1", "error: failed when set wifi1 wmm_mode to 1"},
        {"set wireless.wifi1.atf_status=1", "Set Value Failed"},
        {"set wireless.wifi1.rfscan_status=1", "Failed to set value wifi1.rfscan_status=1"},
        {"set wireless.wifi1.ofdma=1", "Set Value Failed"},
        {"set wireless.wifi1.mumimo=1", "Set Value Failed"},
        {"set wireless.wifi1.zw_dfs=1", "Set Value Failed"},
    };
    settings_ = {"wlan1", 1, 100, 100, "24", 1, 1, 1, 1, 1, 1, 1, 1};
    int nth = 0;
    for (const auto& row : rows) {
        door.fail(Call::uci_set, ++nth);
        EXPECT_EQ(apply(), nth == 1 ? -2 : -1);
        EXPECT_EQ(door.trace({"set"}).back(), std::string(row.edit) + " (failed)");
        EXPECT_EQ(door.trace({"log"}).back(), own_ + row.message);
        EXPECT_EQ(door.trace({"revert"}), Trace{"revert all"});
        EXPECT_THAT(staged(), IsEmpty());
    }
}

TEST_F(RadioSettings, FlagsOtherThanZeroAndOneCannotBeWritten) {
    const struct {
        int32_t radio_settings::*flag;
        const char* message;
        const char* says;
    } rows[] = {
        {&radio_settings::apsd, "error: failed when set wifi1 apsd_mode to 2", "apsd=2, wmm=-1"},
        {&radio_settings::wmm, "error: failed when set wifi1 wmm_mode to 2", "apsd=-1, wmm=2"},
        {&radio_settings::atf, "Set Value Failed", "atf:2 "},
        {&radio_settings::rfscan_status, "Failed to set value wifi1.rfscan_status=2",
         "rfscan_status:2"},
        {&radio_settings::ofdma, "Set Value Failed", "ofdma:2 "},
        {&radio_settings::mumimo, "Set Value Failed", "mumimo:2 "},
        {&radio_settings::zw_dfs, "Set Value Failed", "zw_dfs:2 "},
    };
    for (const auto& row : rows) {
        for (int value : {-2, INT_MIN, 2}) {
            settings_.*row.flag = value;
            EXPECT_EQ(apply(), -1);
            EXPECT_EQ(door.trace().back(), "revert all");
        }
        EXPECT_EQ(door.trace({"log"}).back(), own_ + row.message);
        EXPECT_THAT(door.trace({"log"}), testing::Contains(HasSubstr(own_ + row.says)));
        settings_.*row.flag = -1;
    }
    settings_.no_ack = 77;
    EXPECT_EQ(apply(), 0) << "never written";
}

} // namespace orlo::test
