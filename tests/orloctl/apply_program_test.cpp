// SPDX-License-Identifier: MIT
// orloctl apply, with a double of the vendor library.
#include "program.h"

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

const std::string both_radios = R"({
  "radios": [
    {"radio": 0, "enabled": true, "override": "not-override", "channel": 6, "power_percent": 80},
    {"radio": 1, "enabled": false, "channel": 36, "second_channel": 149}
  ],
  "profile": {"id": 7, "profile_hash": "p7", "config_hash": "c7"}
})";

} // namespace

TEST_F(Orloctl, apply_calls_the_operations_in_the_agents_order) {
    const TemporaryFile file(both_radios);
    const Ended ended = orloctl({"apply", file.path()});
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_EQ(ended.out, "api_apply_radio_status radio 0 ... ok\n"
                         "api_apply_wireless_interface radio 0 ... ok\n"
                         "api_apply_radio_status radio 1 ... ok\n"
                         "api_apply_wireless_interface radio 1 ... ok\n"
                         "api_profile_set_hash ... ok\n"
                         "api_config_set_hash ... ok\n"
                         "api_set_profile_id ... ok\n"
                         "api_save_config ... ok\n");
    EXPECT_EQ(journal(), "api_apply_radio_status 0 1\n"
                         "api_apply_wireless_interface 0 'not-override' 6 0 80\n"
                         "api_apply_radio_status 1 0\n"
                         "api_apply_wireless_interface 1 'not-override' 36 149 0\n"
                         "api_profile_set_hash 'p7'\n"
                         "api_config_set_hash 'c7'\n"
                         "api_set_profile_id 7\n"
                         "api_save_config\n");
}

TEST_F(Orloctl, the_office_is_applied_in_the_agents_order) {
    const Ended ended = orloctl({"apply", EXAMPLES "/office.json", "--no-save"});
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_EQ(journal(),
              "api_apply_radio_status 0 1\n"
              "api_apply_radio {'wlan0'}\n"
              "api_apply_hw_specific 0 {'bg-n-ax'}\n"
              "api_apply_wireless_interface 0 'not-override' 6 0 50\n"
              "api_apply_vap 0 { 0='Office Scanners' 1='Office' 2='Office Guests' }\n"
              "api_apply_radio_status 1 1\n"
              "api_apply_radio {'wlan1'}\n"
              "api_apply_hw_specific 1 {'a-n-ac-ax'}\n"
              "api_apply_wireless_interface 1 'not-override' 36 -1 100\n"
              "api_apply_vap 1 { 0='Office Staff' 02:00:00:00:01:00 02:00:00:00:01:10 1='Office' "
              "2='Office Guests' 3='Office Lab' }\n"
              "api_profile_set_hash '7c3b9e2d51f04a6c8d1e5f2a9b407c63'\n"
              "api_config_set_hash 'e04d7a18b2964f3d9c65a1f7320b8e5d'\n"
              "api_set_profile_id 8\n");
}

TEST_F(Orloctl, the_hotspot_is_applied_with_its_portals) {
    const Ended ended = orloctl({"apply", EXAMPLES "/hotspot.json"});
    EXPECT_EQ(ended.status, 0) << ended.err;
    const std::string portal = "{1 'ext-page-redirect' portal.example.net static.example.net "
                               "192.0.2.0/28}";
    EXPECT_EQ(journal(), "api_apply_country_code 'AT'\n"
                         "api_apply_radio_status 0 1\n"
                         "api_apply_vap 0 { 0='Guests' }\n"
                         "api_apply_mac_filter_mode 0 0 0\n"
                         "api_apply_captive_portal_to_vap 0 0 " +
                             portal +
                             "\n"
                             "api_apply_radio_status 1 1\n"
                             "api_apply_vap 1 { 0='Guests' }\n"
                             "api_apply_mac_filter_mode 1 0 0\n"
                             "api_apply_captive_portal_to_vap 1 0 " +
                             portal +
                             "\n"
                             "api_apply_cp_virt_ip '198.51.100.1'\n"
                             "api_apply_syslog 1 '192.0.2.2' 514 6 NULL\n"
                             "api_apply_timezone 'Europe/Vienna'\n"
                             "api_apply_daylight_saving 1 {'last' 'Sunday' 'March' 2:0} {'last' "
                             "'Sunday' 'October' 3:0} 60\n"
                             "api_apply_systime_ntp '192.0.2.1' 3600\n"
                             "api_save_config\n");
}

TEST_F(Orloctl, the_wds_child_gets_its_vap_and_then_its_link) {
    const Ended ended = orloctl({"apply", EXAMPLES "/wds-child.json"});
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_EQ(journal(), "api_apply_radio_status 0 1\n"
                         "api_apply_vap 0 { 0='Warehouse' }\n"
                         "api_apply_radio_status 1 1\n"
                         "api_apply_wireless_interface 1 'not-override' 36 0 0\n"
                         "api_apply_vap 1 { 0='Warehouse Link' }\n"
                         "api_apply_wds {'wlan1' 'child' NULL NULL}\n"
                         "api_save_config\n");
}

TEST_F(Orloctl, the_two_ends_of_a_mesh_link_differ_in_who_connects) {
    const auto calls = [](const std::string& connector) {
        return "api_apply_radio_status 0 1\n"
               "api_apply_vap 0 { 0='Orchard' }\n"
               "api_apply_radio_status 1 1\n"
               "api_apply_mesh_link_radio 1 80 '36 40 44 48'\n"
               "api_apply_wireless_interface 1 'not-override' 36 0 0\n"
               "api_apply_vap 1 { 0='Orchard' }\n"
               "api_apply_mesh_link_vap 1 {1 'Orchard Mesh' acceptor 1 connector " +
               connector +
               "}\n"
               "api_save_config\n";
    };
    const Ended root = orloctl({"apply", EXAMPLES "/mesh-root.json"});
    EXPECT_EQ(root.status, 0) << root.err;
    EXPECT_EQ(journal(), calls("0"));
    const Ended branch = orloctl({"apply", EXAMPLES "/mesh-branch.json"});
    EXPECT_EQ(branch.status, 0) << branch.err;
    EXPECT_EQ(journal(), calls("0") + calls("1"));
}

TEST_F(Orloctl, a_quilt_is_applied_behind_the_radios_and_its_key_holders_are_not_lost) {
    const Ended ended = orloctl({"apply", "-"}, R"({
        "quilt": {"mgmt_vlan": 7, "secret": "shared", "quilt_radio": [
            {"radio": 0, "vap": 2, "bssid": "02:00:00:00:00:02", "ssid": "Quilt", "vlan_id": 8,
             "fast_roaming": {"status": true, "aes_key": "k",
                              "ft": {"status": true, "ft_over_ds": true, "mobility_domain": "m",
                                     "r0_key_lifetime": 1, "reassoc_deadline": 1000},
                              "key_holder_list": ["02:00:00:00:01:00", "02:00:00:00:01:10"]}},
            {"enable": false},
            {"radio": 1, "vap": 15, "status": false}]},
        "radios": [{"radio": 0, "enabled": true}]})");
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_EQ(journal(), "api_apply_radio_status 0 1\n"
                         "api_apply_channel_quilt {'shared' 0=0.2 'Quilt' 02:00:00:00:01:00 "
                         "02:00:00:00:01:10 2=1.15 '' }\n"
                         "api_save_config\n");
}

TEST_F(Orloctl, the_rest_of_the_device_reaches_the_library) {
    const Ended ended = orloctl({"apply", "-", "--no-save"}, R"({
        "known_clients": {"action": "white", "mac_list": ["02:00:00:00:00:01",
                                                          "02:00:00:00:00:02"]},
        "portal_address": "",
        "radios": [{"radio": 1, "access": [
            {"vap": 4, "mac_filter_mode": 3, "mac_auth_critical_mode": 1,
             "mac_auth_servers": [{"index": 1, "ip": "192.0.2.1", "key": "k"}]}]}],
        "system": {
            "leds": false, "reset_button": false,
            "syslog": {"enabled": false, "port": 1, "fixed_facility": "f"},
            "openflow": {"enabled": true, "controllers": [{"index": 3, "address": "of"}],
                         "critical_mode": {"mode": "secure"}},
            "time": {"manual": {"year": 2026, "month": 2, "day": 3, "hour": 4, "minute": 5}},
            "login": {"username": "admin", "password": "a b"}}})");
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_EQ(journal(), "api_apply_mac_filter_mode 1 4 3\n"
                         "api_apply_mac_auth_radius_server 1 4 {1 '192.0.2.1'}\n"
                         "api_apply_mac_auth_critical_mode 1 4 1\n"
                         "api_apply_known_clients {'white' 02:00:00:00:00:01 02:00:00:00:00:02}\n"
                         "api_apply_cp_virt_ip ''\n"
                         "api_apply_led_status 0\n"
                         "api_apply_reset_button 0\n"
                         "api_apply_syslog 0 NULL 1 -1 'f'\n"
                         "api_apply_openflow_enable 1\n"
                         "api_apply_openflow_controller 3 'of'\n"
                         "api_apply_openflow_critical_mode 'secure' 0\n"
                         "api_apply_systime_manual 0 2026 2 3 4 5\n"
                         "api_apply_system_login 'admin' 'a b'\n");
}

TEST_F(Orloctl, snmp_announces_radios_as_they_will_be_or_as_they_are) {
    const std::string snmp = R"("system": {"snmp": {"version": "v3", "username": "u",
                                                    "password": "p"}})";
    orloctl({"apply", "-", "--no-save"},
            "{\"radios\": [{\"radio\": 1, \"enabled\": true}], " + snmp + "}");
    EXPECT_EQ(journal(), "api_get_radio_status 0\n"
                         "api_apply_snmp {1 v1 radios 0 1}\n" // the double's radios are not "up"
                         "api_apply_radio_status 1 1\n");
}

TEST_F(Orloctl, what_was_changed_at_once_before_a_failure_is_told) {
    const std::string description = R"({
        "system": {"time": {"zone": "UTC", "ntp": {"server": "s"}},
                   "login": {"username": "u", "password": "p"}}})";
    let_fail("api_apply_system_login");
    const Ended ended = orloctl({"apply", "-"}, description);
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.err, HasSubstr("changed at once, still in force:\n"
                                     "  /etc/TZ, by api_apply_timezone\n"
                                     "nothing was left to discard\n"));
    const Json object = parsed(orloctl({"apply", "-", "--json"}, description).out);
    const json_t* changed = json_object_get(object.get(), "changed_at_once");
    ASSERT_EQ(json_array_size(changed), 1U);
    EXPECT_STREQ(json_string_value(json_array_get(changed, 0)), "/etc/TZ, by api_apply_timezone");
}

TEST_F(Orloctl, a_failure_that_comes_behind_the_change_is_told_apart) {
    let_fail("api_apply_system_login=256"); // the login is new, ending a session failed
    const Ended ended =
        orloctl({"apply", "-"}, R"({"system": {"login": {"username": "u", "password": "p"}}})");
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.out, HasSubstr("api_apply_system_login ... failed (256)\n"));
    EXPECT_THAT(ended.err, HasSubstr("changed at once, still in force:\n"
                                     "  the administrator's login, by api_apply_system_login\n"));
}

TEST_F(Orloctl, texts_on_which_the_shell_would_act_are_refused_unless_raw) {
    const std::string description =
        R"({"system": {"time": {"zone": "$(reboot)/x"},
                       "login": {"username": "admin", "password": "x'; reboot; '"}}})";
    const Ended refused = orloctl({"apply", "-"}, description);
    EXPECT_EQ(refused.status, 2);
    EXPECT_EQ(refused.err, "orloctl: system.time.zone: the shell would act on $ in it\n"
                           "orloctl: system.login.password: the shell would act on ' in it\n");
    EXPECT_EQ(orloctl({"call", "api_fw_validate", "/tmp/fw; reboot"}).status, 2);
    EXPECT_EQ(journal(), "");
    orloctl({"apply", "-", "--raw", "--no-save"}, description);
    orloctl({"call", "api_fw_validate", "--raw", "/tmp/fw; reboot"});
    EXPECT_EQ(journal(), "api_apply_timezone '$(reboot)/x'\n"
                         "api_apply_system_login 'admin' 'x'; reboot; ''\n"
                         "api_fw_validate '/tmp/fw; reboot'\n");
}

TEST_F(Orloctl, a_dry_run_shows_the_calls_and_makes_none) {
    const Ended ended = orloctl({"apply", "-", "--dry-run"},
                                R"({"radios": [{"radio": 1, "settings": {"wmm": false}}]})");
    EXPECT_EQ(ended.status, 0) << ended.err;
    const Json calls = parsed(ended.out);
    const Json expected = parsed(R"([{"operation": "api_apply_radio",
                                      "arguments": [{"interface_name": "wlan1", "wmm": false}]},
                                     {"operation": "api_save_config", "arguments": []}])");
    EXPECT_TRUE(json_equal(calls.get(), expected.get())) << ended.out;
    EXPECT_EQ(journal(), "");
}

TEST_F(Orloctl, apply_reads_standard_input_and_may_leave_out_the_save) {
    const Ended ended = orloctl({"apply", "-", "--no-save"}, R"({"profile": {"id": 3}})");
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(journal(), "api_set_profile_id 3\n");
    EXPECT_THAT(ended.out, StartsWith("api_set_profile_id ... ok\n"));
}

TEST_F(Orloctl, a_wrong_description_calls_nothing) {
    const Ended json = orloctl({"apply", "-"}, "{\"radios\": [}");
    EXPECT_EQ(json.status, 2);
    EXPECT_THAT(json.err, StartsWith("orloctl: standard input:1:13: "));
    const Ended values =
        orloctl({"apply", "-"}, R"({"radios": [{"radio": 0, "channel": 14}, {"radio": 2}]})");
    EXPECT_EQ(values.status, 2);
    EXPECT_EQ(values.err, "orloctl: radios[0].channel: 14 is not 0 or in 1..13\n"
                          "orloctl: radios[1].radio: 2 is not in 0..1\n");
    EXPECT_EQ(orloctl({"apply", "/nowhere/ap.json"}).status, 2);
    EXPECT_EQ(journal(), "");
}

TEST_F(Orloctl, raw_values_reach_the_library) {
    orloctl({"apply", "-", "--raw", "--no-save"}, R"({"radios": [{"radio": 5, "channel": 170}]})");
    EXPECT_EQ(journal(), "api_apply_wireless_interface 5 'not-override' 170 0 0\n");
}

TEST_F(Orloctl, after_an_operation_that_fails_nothing_more_is_called) {
    let_fail("api_profile_set_hash");
    const Ended ended = orloctl({"apply", "-"}, both_radios);
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.out, HasSubstr("api_profile_set_hash ... failed (-1)\n"));
    EXPECT_THAT(ended.out, Not(HasSubstr("api_config_set_hash")));
    EXPECT_THAT(ended.err, HasSubstr("orloctl: api_profile_set_hash failed:\n"));
    EXPECT_THAT(ended.err, HasSubstr("error: api_profile_set_hash does not like it.\n"));
    EXPECT_THAT(ended.err, HasSubstr("not done:\n  api_config_set_hash\n  api_set_profile_id\n  "
                                     "api_save_config\n"));
    EXPECT_THAT(journal(), EndsWith("api_profile_set_hash 'p7'\nuciRevertValue NULL NULL\n"));
}

TEST_F(Orloctl, apply_as_json_tells_what_was_done_and_what_failed) {
    let_fail("api_apply_radio_status");
    const Ended ended = orloctl({"apply", "-", "--json"}, both_radios);
    EXPECT_EQ(ended.status, 1);
    const Json object = parsed(ended.out);
    ASSERT_NE(object, nullptr) << ended.out;
    EXPECT_TRUE(json_is_false(json_object_get(object.get(), "ok")));
    json_t* failed = json_object_get(object.get(), "failed");
    EXPECT_STREQ(json_string_value(json_object_get(failed, "operation")), "api_apply_radio_status");
    EXPECT_EQ(json_integer_value(json_object_get(failed, "radio")), 0);
    EXPECT_TRUE(json_is_null(json_object_get(failed, "vap")));
    EXPECT_EQ(json_array_size(json_object_get(failed, "log")), 2U);
    EXPECT_EQ(json_array_size(json_object_get(object.get(), "done")), 0U);
    EXPECT_EQ(json_array_size(json_object_get(object.get(), "not_done")), 7U);
}

TEST_F(Orloctl, a_reader_that_went_away_does_not_stop_an_apply) {
    const TemporaryFile file(both_radios);
    const std::string command = "{ sleep 0.1; " ORLOCTL " --here --library " DOUBLE_VENDOR
                                " apply " +
                                file.path() + "; } | true";
    const TemporaryFile calls;
    const Ended ended =
        run_program({{"/bin/sh", "-c", command}, "", {"DOUBLE_JOURNAL=" + calls.path()}});
    EXPECT_EQ(ended.status, 0);
    EXPECT_THAT(calls.text(), HasSubstr("api_save_config\n"));
}
