// SPDX-License-Identifier: MIT
// The program with the real library, in the virtual access point.
#include <gmock/gmock.h>
#include <jansson.h>
#include <memory>

#include "detail_file.h"
#include "on_the_access_point.h"

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

TEST_F(OnTheAccessPoint, a_channel_that_is_set_can_be_read_back) {
    const Ended ended =
        there("orloctl call api_set_Channel 1 40 && orloctl call api_get_channel 1");
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_EQ(ended.out, "ok\n40\n");
    EXPECT_EQ(ended.err, "");
}

TEST_F(OnTheAccessPoint, the_librarys_refusal_is_shown_with_its_reason) {
    const Ended ended = there("orloctl call 80 1 170");
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.out, "failed (-1)\n");
    EXPECT_EQ(ended.err, "api_set_Channel: error: Invalid channel 170 for radio 1 !\n");
}

TEST_F(OnTheAccessPoint, status_as_json_agrees_with_the_table) {
    const std::string prepare = "orloctl call api_apply_wireless_interface 1 force-disable 36 149 "
                                "50 && ";
    const Ended table = there(prepare + "orloctl status");
    EXPECT_EQ(table.status, 0) << table.err;
    EXPECT_THAT(table.out, HasSubstr("enabled          yes      no\n"));
    EXPECT_THAT(table.out, HasSubstr("force-disable    no       yes\n"));
    EXPECT_THAT(table.out, HasSubstr("channel          6        36\n"));
    EXPECT_THAT(table.out, HasSubstr("second channel   none     149\n"));
    EXPECT_THAT(table.out, HasSubstr("50\n"));
    EXPECT_THAT(table.out, HasSubstr("profile id    not set in this process\n"));

    const Ended json = there(prepare + "orloctl status --json");
    const std::string text = json.out.substr(json.out.find('{')); // behind prepare's "ok"
    const std::unique_ptr<json_t, decltype(&json_decref)> object(
        json_loads(text.c_str(), 0, nullptr), &json_decref);
    ASSERT_NE(object, nullptr) << json.out;
    json_t* radio = json_array_get(json_object_get(object.get(), "radios"), 1);
    EXPECT_TRUE(json_is_false(json_object_get(radio, "enabled")));
    EXPECT_TRUE(json_is_true(json_object_get(radio, "force_disable")));
    EXPECT_EQ(json_integer_value(json_object_get(radio, "channel")), 36);
    EXPECT_EQ(json_integer_value(json_object_get(radio, "second_channel")), 149);
    EXPECT_EQ(json_integer_value(json_object_get(radio, "power_percent")), 50);
    json_t* profile = json_object_get(object.get(), "profile");
    EXPECT_TRUE(json_is_null(json_object_get(profile, "id")));
}

TEST_F(OnTheAccessPoint, an_option_that_is_not_there_is_unknown) {
    const Ended ended = there(
        "sed -i '/option disabled/d; /option txpower/d' /etc/config/wireless; orloctl status");
    EXPECT_EQ(ended.status, 0);
    EXPECT_THAT(ended.out, HasSubstr("enabled          unknown  unknown\n"));
    EXPECT_THAT(ended.out, HasSubstr("power percent    unknown  unknown\n"));
    EXPECT_THAT(ended.out, HasSubstr("channel          6        36\n"));
}

TEST_F(OnTheAccessPoint, a_text_on_which_the_shell_would_act_runs_nothing) {
    const Ended ended = there("orloctl call api_apply_timezone 'UTC\"; touch /tmp/broken; \"'; "
                              "echo \"status $?\"; ls /tmp/broken");
    EXPECT_EQ(ended.out, "status 2\n");
    EXPECT_THAT(ended.err,
                StartsWith("orloctl: argument 1 (zonename): the shell would act on \" in it\n"));
}

TEST_F(OnTheAccessPoint, a_vap_that_the_library_refuses_leaves_nothing_staged) {
    const Ended ended = there("orloctl apply - --raw" + show_staged,
                              R"({"radios": [{"radio": 1, "settings": {"max_stations": 12},
                                  "vaps": [{"vap": 1, "ssid": "a", "vlan_id": 5},
                                           {"vap": 3, "ssid": "b", "vlan_id": 0}]}]})");
    EXPECT_EQ(ended.out, "api_apply_radio radio 1 ... ok\n"
                         "api_apply_vap radio 1 ... failed (-2)\n"
                         "status 1\n");
    EXPECT_THAT(ended.err, HasSubstr("Set vlan_id: 0 Failed\n"));
    EXPECT_THAT(ended.err, HasSubstr("nothing had been committed\n"
                                     "discarded:\n"
                                     "  wireless.wifi1.max_client=12\n"
                                     "not done:\n"
                                     "  api_save_config\n"));
}

TEST_F(OnTheAccessPoint, key_holders_of_a_refused_radio_are_not_lost) {
    // the second VAP is refused, when the list of the first one has been consumed
    const std::string roaming = R"("fast_roaming": {"status": true, "aes_key": "k",
        "key_holder_list": ["02:00:00:00:00:01"], "ft": {"status": true, "ft_over_ds": true,
        "mobility_domain": "m", "r0_key_lifetime": 1, "reassoc_deadline": 1000}}})";
    const Ended ended =
        there("orloctl apply - --raw" + show_staged,
              R"({"radios": [{"radio": 0, "vaps": [
                                  {"vap": 1, "ssid": "a", "vlan_id": 5, )" +
                  roaming + R"(, {"vap": 2, "ssid": "b", "vlan_id": 0, )" + roaming + "]}]}");
    EXPECT_THAT(ended.out, HasSubstr("api_apply_vap radio 0 ... failed (-2)\nstatus 1\n"));
    EXPECT_THAT(ended.err, Not(HasSubstr("AddressSanitizer")));
    EXPECT_THAT(ended.err, Not(HasSubstr("LeakSanitizer")));
}

TEST_F(OnTheAccessPoint, a_record_on_the_command_line_is_applied) {
    const Ended ended =
        there("orloctl call api_apply_radio "
              "'{\"interface_name\": \"wlan0\", \"max_stations\": 12}'; "
              "orloctl call api_apply_radio --raw '{\"interface_name\": \"wlan2\"}'; "
              "uci get wireless.wifi0.max_client");
    EXPECT_EQ(ended.out, "ok\nfailed (-2)\n12\n");
    EXPECT_EQ(ended.err, "api_apply_radio: Invalid radio interface_name is wlan2\n");
}

TEST_F(OnTheAccessPoint, without_the_save_changes_stay_staged_and_are_listed) {
    const Ended ended = there("orloctl apply - --no-save" + show_staged,
                              R"({"radios": [{"radio": 0, "enabled": false}],
                                  "profile": {"config_hash": "it's new"}})");
    EXPECT_THAT(ended.out, HasSubstr("staged, not saved:\n"
                                     "  orloagent.agent.confighash=it's new\n"
                                     "  wireless.wifi0.disabled=1\n"
                                     "status 0\n"));
    EXPECT_THAT(ended.out, HasSubstr("wireless.wifi0.disabled='1'\n"));
}

TEST_F(OnTheAccessPoint, after_a_third_operation_that_fails_nothing_is_left_staged) {
    const Ended ended = there("orloctl apply - --raw" + show_staged,
                              R"({"radios": [{"radio": 0, "enabled": false},
                             {"radio": 1, "enabled": false, "channel": 170}]})");
    EXPECT_EQ(ended.out, "api_apply_radio_status radio 0 ... ok\n"
                         "api_apply_radio_status radio 1 ... ok\n"
                         "api_apply_wireless_interface radio 1 ... failed (-1)\n"
                         "status 1\n");
    EXPECT_THAT(ended.err, HasSubstr("error: Invalid channel 170 for radio 1 !\n"));
    EXPECT_THAT(ended.err, HasSubstr("nothing had been committed\n"
                                     "discarded:\n"
                                     "  wireless.wifi0.disabled=1\n"
                                     "  wireless.wifi1.disabled=1\n"
                                     "not done:\n"
                                     "  api_save_config\n"));
}

TEST_F(OnTheAccessPoint, what_was_committed_before_the_failure_is_told) {
    const Ended ended =
        there("orloctl apply - --raw" + show_staged,
              R"({"radios": [{"radio": 1, "enabled": false, "channel": 40, "power_percent": 50},
                             {"radio": 0, "override": "whatever"}]})");
    EXPECT_THAT(ended.out, HasSubstr("radio 0 ... failed (-1)\nstatus 1\n"));
    EXPECT_THAT(ended.err, HasSubstr("committed before the failure, still in force:\n"
                                     "  wireless.wifi1.disabled=1\n"
                                     "  wireless.wifi1.channel=40\n"
                                     "  wireless.wifi1.txpower=Middle\n"));
}

TEST_F(OnTheAccessPoint, an_operation_that_commits_and_then_fails_is_told_apart) {
    // the channel is committed, the power of 200 percent is refused
    const Ended ended =
        there("orloctl apply - --raw" + show_staged,
              R"({"radios": [{"radio": 1, "enabled": false, "override": "force-disable",
                              "channel": 40, "power_percent": 200}]})");
    EXPECT_THAT(ended.err, HasSubstr("committed before the failure, still in force:\n"
                                     "  wireless.wifi1.disabled=1\n"
                                     "  wireless.wifi1.channel=40\n"));
    EXPECT_THAT(ended.out, StartsWith("api_apply_radio_status radio 1 ... ok\n"
                                      "api_apply_wireless_interface radio 1 ... failed (-1)\n"
                                      "status 1\n"));
    EXPECT_THAT(ended.out, Not(HasSubstr("forceDisable")));
}

TEST_F(OnTheAccessPoint, changes_that_were_staged_before_are_told) {
    const Ended ended = there("orloctl call api_apply_radio_status 0 0; orloctl apply - --no-save",
                              R"({"profile": {"id": 1}})");
    EXPECT_THAT(ended.err, HasSubstr("orloctl: staged already, and committed or discarded with the "
                                     "description:\n  wireless.wifi0.disabled=1\n"));
}

TEST_F(OnTheAccessPoint, a_package_that_cannot_be_read_does_not_stop_the_report) {
    const Ended ended = there("echo 'config' > /etc/config/broken; orloctl apply - --raw",
                              R"({"radios": [{"radio": 2, "enabled": true}]})");
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.err, HasSubstr("nothing had been committed\n"));
    EXPECT_THAT(ended.err, HasSubstr("packages that cannot be read:\n  broken\n"));
}

TEST_F(OnTheAccessPoint, a_wrong_description_touches_nothing) {
    const Ended ended = there("orloctl apply -" + show_staged,
                              R"({"radios": [{"radio": 0, "enabled": false, "channel": 14}]})");
    EXPECT_EQ(ended.out, "status 2\n");
    EXPECT_EQ(ended.err, "orloctl: radios[0].channel: 14 is not 0 or in 1..13\n");
}

TEST_F(OnTheAccessPoint, counters_are_those_that_the_kernel_keeps) {
    const Ended ended = there("for counter in rx_bytes tx_bytes; do for port in eth0 eth1; do "
                              "mkdir -p /sys/class/net/$port/statistics; "
                              "echo 4000000000 >/sys/class/net/$port/statistics/$counter; "
                              "done; done; orloctl counters");
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(
        ended.out,
        "               rx bytes    rx packets  rx errors  tx bytes    tx packets  tx errors\n"
        "wired ports    8000000000  0           -          8000000000  0           -\n"
        "radio 0        0           0           0          0           0           0\n"
        "radio 1        0           0           0          0           0           0\n"
        "radio 0 VAP 0  0           0           0          0           0           0\n"
        "radio 1 VAP 0  0           0           0          0           0           0\n");
    EXPECT_EQ(ended.err, "");
}

TEST_F(OnTheAccessPoint, clients_are_the_stations_that_the_driver_knows) {
    const std::string table =
        "radio  VAP  MAC                IPv4           dBm  Mbit/s  VLAN  SSID\n"
        "0      0    a4:5e:60:01:02:03  192.168.1.101  -52  144     1     Lobby 2.4 GHz\n"
        "0      0    3c:22:fb:10:20:30  192.168.1.102  -71  26      1     Lobby 2.4 GHz\n"
        "1      0    d8:a2:5e:0a:0b:0c  192.168.1.103  -47  866     1     Lobby 5 GHz\n"
        "1      1    06:0c:43:20:30:31  unknown        -55  780     1     wlan1.1\n"
        "1      1    06:0c:43:20:40:31  unknown        -61  585     1     wlan1.1\n";
    const Ended ended = there("orloctl clients; orloctl clients --file /tmp/assoc_client_detail; "
                              "cat /tmp/assoc_client");
    EXPECT_EQ(ended.out, table + table +
                             "0,0,a4:5e:60:01:02:03,3c:22:fb:10:20:30\n"
                             "1,0,d8:a2:5e:0a:0b:0c\n"
                             "1,1,06:0c:43:20:30:31,06:0c:43:20:40:31\n");
    EXPECT_EQ(ended.err, "");
}

TEST_F(OnTheAccessPoint, clients_that_leave_are_listed_no_more) {
    const Ended ended = there("orloctl clients >/dev/null; rm /var/run/device/stations/*; "
                              "echo 'a4:5e:60:01:02:03 signal=-60 rate=6' "
                              ">/var/run/device/stations/wdev1ap15; orloctl clients --json");
    EXPECT_EQ(ended.out, R"([
  {
    "radio": 1,
    "vap": 15,
    "bssid": "02:00:00:00:01:0f",
    "channel": 36,
    "ssid": "wlan1.15",
    "mac": "a4:5e:60:01:02:03",
    "ipv4": null,
    "signal_dbm": -60,
    "rate_mbps": 6,
    "vlan_id": 1,
    "area_auth": false
  }
]
)");
    EXPECT_EQ(ended.err, "");
}

// The double lists stations there; it is visible inside in one of the forms.
class ListingStations : public OnTheAccessPoint {
protected:
    void SetUp() override {
        OnTheAccessPoint::SetUp();
        if (!IsSkipped() && there("[ -e '" DOUBLE_VENDOR "' ]").status != 0) {
            GTEST_SKIP() << "the double of the vendor library is not visible inside";
        }
    }

    static Ended with_double(const std::string& script, const std::string& input = "") {
        return there("export ORLO_LIBRARY='" DOUBLE_VENDOR "'; " + script, input);
    }
};

TEST_F(ListingStations, clients_are_listed_anew_by_the_library) {
    const Ended ended = with_double("cat >/tmp/stations; DOUBLE_STATIONS=/tmp/stations "
                                    "DOUBLE_JOURNAL=/tmp/calls orloctl clients; cat /tmp/calls",
                                    laptop().bytes());
    EXPECT_EQ(ended.out, "radio  VAP  MAC                IPv4          dBm  Mbit/s  VLAN  SSID\n"
                         "1      2    a4:5e:60:01:02:03  192.168.1.20  -52  866     4094  Office\n"
                         "api_generate_assoc_client_file\n")
        << ended.err;
}

TEST_F(ListingStations, an_empty_list_that_was_empty_before_is_a_new_one) {
    const Ended ended = with_double(": >/tmp/stations; : >/tmp/assoc_client_detail; "
                                    "DOUBLE_STATIONS=/tmp/stations orloctl clients");
    EXPECT_EQ(ended.out, "no station is associated\n") << ended.err;
}

TEST_F(ListingStations, a_list_that_the_library_did_not_renew_is_not_shown) {
    const Ended ended = with_double("cat >/tmp/assoc_client_detail; orloctl clients; "
                                    "echo \"status $?\"",
                                    laptop().bytes());
    EXPECT_EQ(ended.out, "status 1\n");
    EXPECT_THAT(ended.err, HasSubstr("orloctl: api_generate_assoc_client_file did not write "
                                     "/tmp/assoc_client_detail\n"));
    const Ended failed = with_double("cat >/tmp/stations; DOUBLE_STATIONS=/tmp/stations "
                                     "DOUBLE_FAILS=api_generate_assoc_client_file orloctl clients; "
                                     "echo \"status $?\"",
                                     laptop().bytes());
    EXPECT_EQ(failed.out, "status 1\n");
    EXPECT_THAT(failed.err, HasSubstr("  error: api_generate_assoc_client_file does not like it."));
}

TEST_F(OnTheAccessPoint, system_shows_crash_log_and_upgrade_flag) {
    const Ended quiet = there("orloctl system");
    EXPECT_THAT(quiet.out, HasSubstr("agent state       0\n"
                                     "crash log         no\n"
                                     "upgrade flagged   no\n"));
    const Ended ended = there("echo crashed >/flash/crash/exception.log; "
                              "echo orlo_fwup_flag=1 >/var/run/device/nvram; orloctl system");
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_THAT(ended.out, HasSubstr("crash log         yes\n"
                                     "upgrade flagged   yes\n"));
}

TEST_F(OnTheAccessPoint, the_web_interface_is_blocked_until_it_is_released) {
    const Ended ended = there("orloctl block; cat /tmp/radio_setting; echo; orloctl block; "
                              "echo \"status $?\"; orloctl release; orloctl release; "
                              "echo \"status $?\"; ls /tmp/radio_setting");
    EXPECT_EQ(ended.out, "the web interface is blocked until 'orloctl release'\n"
                         "all\n"
                         "not blocked: the web interface is busy, or is blocked already\n"
                         "status 1\n"
                         "the web interface is free again\n"
                         "not released: the web interface is not blocked\n"
                         "status 1\n");
    EXPECT_THAT(ended.err, StartsWith("api_is_config_applying_check: info: Network/Web UI process "
                                      "was not finished yet!\n"));
}

TEST_F(OnTheAccessPoint, vaps_that_are_up_are_not_waited_for) {
    const Ended ended = there("orloctl wait-vaps");
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_EQ(ended.out, "every configured VAP is up\n");
}
