// SPDX-License-Identifier: MIT
// Settings and hardware of radios as the library gets them, and every rule about them.
#include "describe.h"

using namespace orloctl;

TEST(RadioRecord, each_radio_setting_has_its_rule) {
    const std::string at = "radios[0].settings.";
    const auto settings = [](const std::string& members) {
        return radio("\"settings\": {" + members + "}");
    };
    const Case cases[] = {
        {settings(""), "accepted"},
        {settings(R"("rts_threshold": 2347, "max_stations": 320)"), "accepted"},
        {settings(R"("rts_threshold": -1, "max_stations": -1)"), "accepted"},
        {settings(R"("rts_threshold": 2348)"), at + "rts_threshold: 2348 is not in 0..2347"},
        {settings(R"("max_stations": 321)"), at + "max_stations: 321 is not in 0..320"},
        {settings(R"("wmm": 2)"), at + "wmm: 2 is not true or false"},
        {settings(R"("interface_name": "wlan0")"),
         at + R"(interface_name: "wlan0" is not "wlan1")"},
    };
    expect_sentences(cases);
}

TEST(RadioRecord, each_hardware_setting_has_its_rule) {
    const std::string at = "radios[0].hardware.";
    const auto hardware = [](const std::string& mode, const std::string& channels,
                             const std::string& width) {
        return radio(R"("hardware": {"mode": ")" + mode + R"(", "eligible_channels": )" + channels +
                     R"(, "channel_bandwidth": )" + width + "}");
    };
    const std::string one_blank =
        at + "eligible_channels: must be numbers with one blank between them";
    const Case cases[] = {
        {hardware("a-n-ac-ax", "[36, 40]", "8080"), "accepted"},
        {hardware("a", "\"36 40 44\"", "20"), "accepted"},
        {hardware("bg", "\"36\"", "20"), at + R"(mode: "bg" is not "a-n-ac-ax" or "a")"},
        {hardware("a", "\"36\"", "160"), at + "channel_bandwidth: 160 is not 20, 40, 80 or 8080"},
        {hardware("a", "\"36,40\"", "80"), one_blank},
        {hardware("a", "\"36  40\"", "80"), one_blank},
        {hardware("a", "\"36 \"", "80"), one_blank},
        {hardware("a", "[]", "80"), one_blank},
        {radio(R"("hardware": {})"), at + "mode: is missing\n" + at +
                                         "eligible_channels: is missing\n" + at +
                                         "channel_bandwidth: is missing"},
    };
    expect_sentences(cases);
}

TEST(RadioRecord, radio_records_have_what_is_written) {
    const Description description = description_of(radio(R"(
        "settings": {"station_isolation": true, "rts_threshold": 1, "max_stations": 2,
            "fixed_multicast_rate": "24", "apsd": false, "wmm": true, "no_ack": false, "atf": true,
            "rfscan_status": false, "ofdma": true, "mumimo": false, "zw_dfs": true},
        "hardware": {"mode": "a", "eligible_channels": [36, "40"], "channel_bandwidth": 40,
            "Enable_eligible_channels": 3, "primary_channel": "36",
            "supported_rate": [5.5, 6, 12], "basic_rate": "6,12", "mcs_index": [0, 1]})"));
    const radio_settings& settings = *description->radios.first->settings;
    EXPECT_EQ(shown(settings.interface_name), "wlan1");
    EXPECT_EQ(settings.station_isolation, 1);
    EXPECT_EQ(settings.rts_threshold, 1);
    EXPECT_EQ(settings.max_stations, 2);
    EXPECT_EQ(shown(settings.fixed_multicast_rate), "24");
    EXPECT_EQ(settings.apsd, 0);
    EXPECT_EQ(settings.wmm, 1);
    EXPECT_EQ(settings.no_ack, 0);
    EXPECT_EQ(settings.atf, 1);
    EXPECT_EQ(settings.rfscan_status, 0);
    EXPECT_EQ(settings.ofdma, 1);
    EXPECT_EQ(settings.mumimo, 0);
    EXPECT_EQ(settings.zw_dfs, 1);
    const hw_specific_settings& hardware = *description->radios.first->hardware;
    EXPECT_EQ(shown(hardware.mode), "a");
    EXPECT_STREQ(hardware.eligible_channels, "36 40");
    EXPECT_EQ(hardware.channel_bandwidth, 40U);
    EXPECT_EQ(hardware.Enable_eligible_channels, 3);
    EXPECT_EQ(shown(hardware.primary_channel), "36");
    EXPECT_STREQ(hardware.supported_rate, "5.5,6,12");
    EXPECT_STREQ(hardware.basic_rate, "6,12");
    EXPECT_STREQ(hardware.mcs_index, "0,1");
}
