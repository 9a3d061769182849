// SPDX-License-Identifier: MIT
// The operations that a description causes.
#include "plan.h"

#include <gmock/gmock.h>

using namespace orloctl;
using testing::ElementsAre;

namespace {

std::vector<std::string> titles(const std::string& text, bool save = true) {
    std::vector<std::string> result;
    const Description description = read_description(text, "test", true);
    for (const Step& step : plan(description, save)) {
        result.push_back(step.title());
    }
    return result;
}

} // namespace

TEST(Plan, radios_come_in_the_order_of_the_file_then_hashes_id_and_save) {
    EXPECT_THAT(titles(R"({"profile": {"id": 7, "config_hash": "c", "profile_hash": "p"},
                           "radios": [{"radio": 1, "channel": 36, "enabled": true},
                                      {"radio": 0, "enabled": false, "power_percent": 50}]})"),
                ElementsAre("api_apply_radio_status radio 1",
                            "api_apply_wireless_interface radio 1",
                            "api_apply_radio_status radio 0",
                            "api_apply_wireless_interface radio 0", "api_profile_set_hash",
                            "api_config_set_hash", "api_set_profile_id", "api_save_config"));
}

TEST(Plan, what_is_not_described_is_left_alone) {
    EXPECT_THAT(titles(R"({})"), ElementsAre("api_save_config"));
    EXPECT_THAT(titles(R"({"radios": [{"radio": 0}]})"), ElementsAre("api_save_config"));
    EXPECT_THAT(
        titles(R"({"radios": [{"radio": 0, "enabled": true}], "profile": {"id": 1}})", false),
        ElementsAre("api_apply_radio_status radio 0", "api_set_profile_id"));
}

TEST(Plan, any_of_four_members_applies_the_radio_interface) {
    for (const std::string member : {R"("override": "not-override")", R"("channel": 0)",
                                     R"("second_channel": -1)", R"("power_percent": 10)"}) {
        EXPECT_THAT(titles(R"({"radios": [{"radio": 1, )" + member + "}]}", false),
                    ElementsAre("api_apply_wireless_interface radio 1"));
    }
}

TEST(Plan, settings_and_hardware_come_before_the_channels_and_vaps_behind_them) {
    EXPECT_THAT(titles(R"({"radios": [{"radio": 0, "vaps": [], "settings": {}, "enabled": true,
                                       "channel": 6,
                                       "hardware": {"mode": "bg", "eligible_channels": [6],
                                                    "channel_bandwidth": 20}}]})"),
                ElementsAre("api_apply_radio_status radio 0", "api_apply_radio radio 0",
                            "api_apply_hw_specific radio 0", "api_apply_wireless_interface radio 0",
                            "api_apply_vap radio 0", "api_save_config"));
}

TEST(Plan, the_mesh_of_a_radio_has_its_channels_before_all_others_and_its_vap_behind_the_vaps) {
    const std::string vap = R"("vap": {"vap": 0, "acceptor": false, "connector": true, "ssid": "m",
                                       "key": "passphrase"})";
    const auto of_mesh = [](const std::string& members) {
        return titles(R"({"radios": [{"radio": 1, "channel": 36, "settings": {}, "vaps": [],
                                      "access": [{"vap": 1, "mac_filter_mode": 0}],
                                      "mesh": {)" +
                          members + "}}]}",
                      false);
    };
    EXPECT_THAT(of_mesh(R"("eligible_channels": [36], "bandwidth": 20, )" + vap),
                ElementsAre("api_apply_radio radio 1", "api_apply_mesh_link_radio radio 1",
                            "api_apply_wireless_interface radio 1", "api_apply_vap radio 1",
                            "api_apply_mesh_link_vap radio 1",
                            "api_apply_mac_filter_mode radio 1 VAP 1"));
    EXPECT_THAT(of_mesh(vap),
                ElementsAre("api_apply_radio radio 1", "api_apply_wireless_interface radio 1",
                            "api_apply_vap radio 1", "api_apply_mesh_link_vap radio 1",
                            "api_apply_mac_filter_mode radio 1 VAP 1"));
    EXPECT_THAT(of_mesh(""),
                ElementsAre("api_apply_radio radio 1", "api_apply_wireless_interface radio 1",
                            "api_apply_vap radio 1", "api_apply_mac_filter_mode radio 1 VAP 1"));
}

TEST(Plan, the_steps_of_a_mesh_tell_their_arguments) {
    const Description description = read_description(
        R"({"radios": [{"radio": 0, "mesh": {
            "eligible_channels": [1, 11], "bandwidth": 40,
            "vap": {"vap": 1, "acceptor": true, "connector": false, "ssid": "m",
                    "key": "passphrase"}}}]})",
        "test", true);
    const std::vector<Step> steps = plan(description, false);
    ASSERT_EQ(steps.size(), 2U);
    EXPECT_EQ(json_excerpt(steps[0].arguments.get()), R"([0,40,"1 11"])");
    const Json expected = parse_json(R"([0, {"acceptor": true, "connector": false, "vap": 1,
                                             "ssid": "m", "key": "passphrase"}])",
                                     "expected");
    EXPECT_TRUE(json_equal(steps[1].arguments.get(), expected.get()));
}

TEST(Plan, each_step_tells_its_arguments) {
    const Description description = read_description(
        R"({"radios": [{"radio": 1, "settings": {"wmm": true}, "power_percent": 50,
                        "vaps": [{"vap": 4, "status": false}]}]})",
        "test", true);
    std::vector<std::string> arguments;
    for (const Step& step : plan(description, false)) {
        arguments.push_back(json_excerpt(step.arguments.get()));
    }
    EXPECT_THAT(arguments,
                ElementsAre(R"([{"interface_name":"wlan1","wmm":true}])",
                            R"([1,"not-override",0,0,50])", R"([1,[{"vap":4,"status":false}]])"));
}

TEST(Plan, the_device_comes_around_the_radios_and_what_takes_effect_at_once_at_the_end) {
    EXPECT_THAT(titles(R"({
        "profile": {"id": 1, "config_hash": "c"},
        "portal_address": "192.0.2.1",
        "known_clients": {"mac_list": []},
        "wds": [],
        "quilt": {"mgmt_vlan": 1, "secret": "s"},
        "radios": [{"radio": 0, "enabled": true}],
        "system": {
            "login": {"username": "u", "password": "p"},
            "snmp": {"version": "v3", "username": "u", "password": "p"},
            "openflow": {"critical_mode": {"mode": "secure"}, "enabled": false,
                         "controllers": [{"index": 2, "address": "a"},
                                         {"index": 1, "address": "b"}]},
            "syslog": {"enabled": false},
            "time": {"ntp": {"server": "s"}, "zone": "UTC",
                     "manual": {"year": 2026, "month": 1, "day": 2, "hour": 3, "minute": 4,
                                "preserve_time_status": true},
                     "daylight_saving": {
                         "start": {"ordinal": "last", "weekday": "Sunday", "month": "March",
                                   "hour": 2},
                         "end": {"ordinal": "last", "weekday": "Sunday", "month": "October",
                                 "hour": 3}}},
            "reset_button": true, "leds": false, "country": "AT"}})"),
                ElementsAre("api_apply_country_code", "api_apply_snmp",
                            "api_apply_radio_status radio 0", "api_apply_channel_quilt",
                            "api_apply_wds", "api_apply_known_clients", "api_apply_cp_virt_ip",
                            "api_apply_led_status", "api_apply_reset_button", "api_apply_syslog",
                            "api_apply_openflow_enable", "api_apply_openflow_controller",
                            "api_apply_openflow_controller", "api_apply_openflow_critical_mode",
                            "api_config_set_hash", "api_set_profile_id", "api_apply_timezone",
                            "api_apply_daylight_saving", "api_apply_systime_manual",
                            "api_apply_systime_ntp", "api_apply_system_login", "api_save_config"));
}

TEST(Plan, access_to_vaps_comes_behind_the_vaps_of_its_radio) {
    EXPECT_THAT(titles(R"({"radios": [
                            {"radio": 1, "vaps": [],
                             "access": [{"vap": 3, "captive_portal": {"enable": false},
                                         "mac_auth_critical_mode": 1, "mac_filter_mode": 2,
                                         "mac_auth_servers": [{"index": 1, "ip": "a", "key": "k"},
                                                              {"index": 2, "ip": "b", "key": "k"}]},
                                        {"vap": 0, "mac_filter_mode": 0},
                                        {"vap": 1}]},
                            {"radio": 0, "access": [{"vap": 15, "mac_filter_mode": 4}]}]})",
                       false),
                ElementsAre("api_apply_vap radio 1", "api_apply_mac_filter_mode radio 1 VAP 3",
                            "api_apply_mac_auth_radius_server radio 1 VAP 3",
                            "api_apply_mac_auth_radius_server radio 1 VAP 3",
                            "api_apply_mac_auth_critical_mode radio 1 VAP 3",
                            "api_apply_captive_portal_to_vap radio 1 VAP 3",
                            "api_apply_mac_filter_mode radio 1 VAP 0",
                            "api_apply_mac_filter_mode radio 0 VAP 15"));
}

TEST(Plan, each_step_of_the_device_tells_its_arguments) {
    const Description description = read_description(
        R"({"system": {"country": "AT", "leds": true, "reset_button": false,
                       "syslog": {"enabled": false, "severity": 3},
                       "openflow": {"critical_mode": {"mode": "drop", "timeout": 30}},
                       "time": {"ntp": {"server": "s", "interval": 64}}},
            "radios": [{"radio": 0, "access": [
                {"vap": 2, "mac_auth_servers": [{"index": 2, "ip": "i", "key": "k"}]}]}],
            "wds": [{"radio_intf": "wlan1", "security": "none", "wds_mode": "child",
                     "ssid": "l"}],
            "known_clients": {"action": "black", "mac_list": ["02:00:00:00:00:01"]}})",
        "test", true);
    std::vector<std::string> arguments;
    for (const Step& step : plan(description, false)) {
        char* text = json_dumps(step.arguments.get(), JSON_COMPACT);
        arguments.emplace_back(text);
        free(text);
    }
    EXPECT_THAT(
        arguments,
        ElementsAre(R"(["AT"])",
                    R"([0,2,{"index":2,"ip":"i","key":"k","port":1812,)"
                    R"("username_separator":"hyphen","username_case":"lower",)"
                    R"("password_format":"username"}])",
                    R"([[{"radio_intf":"wlan1","security":"none","wds_mode":"child","ssid":"l"}]])",
                    R"([{"action":"black","mac_list":["02:00:00:00:00:01"]}])", "[1]", "[0]",
                    R"([0,null,514,3,null])", R"(["drop",30])", R"(["s",64])"));
}

TEST(Plan, snmp_is_told_what_the_description_makes_of_the_radios) {
    const auto announced = [](const std::string& radios, const std::string& status = "") {
        const Description description =
            read_description(R"({"system": {"snmp": {"version": "v3", "username": "u",
                                                     "password": "p")" +
                                 status + "}}, \"radios\": [" + radios + "]}",
                             "test", true);
        const std::vector<Step> steps = plan(description, false);
        const json_t* snmp = json_array_get(steps.front().arguments.get(), 0);
        return json_excerpt(json_object_get(snmp, "radio_status"));
    };
    EXPECT_EQ(announced(""), "[null,null]"); // asked for when it is applied
    EXPECT_EQ(announced(R"({"radio": 1, "enabled": false})"), "[null,false]");
    EXPECT_EQ(announced(R"({"radio": 1, "channel": 36}, {"radio": 0, "enabled": true})"),
              "[true,null]");
    EXPECT_EQ(announced(R"({"radio": 0, "enabled": true, "override": "force-disable"})"),
              "[false,null]");
    EXPECT_EQ(announced(R"({"radio": 0, "enabled": true})", R"(, "radio_status": [false, true])"),
              "[false,true]");
}
