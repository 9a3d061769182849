// SPDX-License-Identifier: MIT
// One operation and what it does outside of the library, in order.
#include "on_the_access_point.h"

#include <jansson.h>
#include <memory>

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

using Trace = OnTheAccessPoint;

TEST_F(Trace, shows_log_store_commands_and_result_in_their_order) {
    const Ended ended = there("orloctl trace api_set_Channel 1 44" + show_staged);
    EXPECT_THAT(ended.out,
                testing::MatchesRegex(
                    "log     api_set_Channel:[0-9]+: Entering... radio:1 channel:44\n"
                    "log     api_set_Channel:[0-9]+: info: ready to set radio1 channel: 44.\n"
                    "set     wireless.wifi1.channel: 'auto' -> '44'\n"
                    "log     api_set_Channel:[0-9]+: info: Set channel "
                    "command:/usr/sbin/iwconfig wdev1 channel 44\n"
                    "run     /usr/sbin/iwconfig wdev1 channel 44\n"
                    "log     api_set_Channel:[0-9]+: info: iwconfig commit change: "
                    "/usr/sbin/iwconfig wdev1 commit\n"
                    "run     /usr/sbin/iwconfig wdev1 commit\n"
                    "commit  wireless\n"
                    "log     api_set_Channel:[0-9]+: Set wifi1 channel 44 success.\n"
                    "result  ok\n"
                    "status 0\n"))
        << ended.err;
    EXPECT_EQ(ended.err, "");
}

TEST_F(Trace, calls_the_operation_as_call_does) {
    const Ended ended = there("orloctl trace api_set_Channel 1 44 >/dev/null; "
                              "orloctl call api_get_channel 1; uci get wireless.wifi1.channel");
    EXPECT_EQ(ended.out, "44\n44\n");
}

TEST_F(Trace, shows_what_is_looked_up_only_when_asked) {
    const std::string call = "orloctl trace api_get_radio_status 0";
    EXPECT_THAT(there(call).out, Not(HasSubstr("get ")));
    const Ended ended = there(call + " --reads");
    EXPECT_THAT(ended.out, HasSubstr("get     wireless.wifi0.disabled = '0'\n"));
    EXPECT_THAT(ended.out, EndsWith("result  up\n"));
    EXPECT_THAT(there("orloctl trace api_set_Channel 0 5 --reads").out,
                HasSubstr("set     wireless.wifi0.channel: '6' -> '5'\nsave    wireless\n"));
}

TEST_F(Trace, tells_the_exit_status_of_a_command_that_failed) {
    const Ended ended = there("mkdir -p /var/run/device/replaced; cd /var/run/device/replaced; "
                              "printf '#!/bin/sh\\nexit 3\\n' >iwconfig; chmod +x iwconfig; "
                              "orloctl trace api_set_Channel 1 44");
    EXPECT_THAT(ended.out,
                HasSubstr("run     /usr/sbin/iwconfig wdev1 channel 44 (exit status 3)\n"));
}

TEST_F(Trace, shows_what_was_read_of_a_commands_output) {
    const Ended ended = there("orloctl trace api_get_MaxPowerInfo 0 20 x");
    EXPECT_THAT(ended.out, HasSubstr(" | cut -d ':' -f 3 -> '20.500000'\n")) << ended.err;
}

TEST_F(Trace, ends_with_1_when_the_operation_refuses) {
    const Ended ended = there("orloctl trace 80 1 170; echo \"status $?\"");
    EXPECT_THAT(ended.out, HasSubstr(": error: Invalid channel 170 for radio 1 !\n"));
    EXPECT_THAT(ended.out, EndsWith("result  failed (-1)\nstatus 1\n"));
    EXPECT_EQ(ended.err, "") << "the reason stands among the events";
}

TEST_F(Trace, shows_requests_to_the_driver_with_their_answers_and_errors) {
    EXPECT_THAT(there("orloctl trace api_get_channel 1").out,
                HasSubstr("driver  wdev1 asked for its frequency -> 36\n"));
    EXPECT_THAT(there("echo 'fail freq EIO' >>/var/run/device/driver/wdev1; "
                      "orloctl trace api_get_channel 1")
                    .out,
                HasSubstr("driver  wdev1 asked for its frequency (failed)\n"));
}

TEST_F(Trace, shows_files_and_datagrams) {
    const Ended ended = there("orloctl trace api_generate_assoc_client_file; "
                              "orloctl trace api_get_assoc_client_detail");
    EXPECT_THAT(ended.out, HasSubstr("driver  wdev0ap0 told private command 0x8be4\n"));
    EXPECT_THAT(ended.out, HasSubstr("write   /tmp/assoc_client_detail\n"));
    EXPECT_THAT(ended.out, testing::ContainsRegex("send    [0-9]+ bytes to 127.0.0.1:[0-9]+\n"));
    EXPECT_THAT(there("orloctl block >/dev/null; orloctl trace api_release_web_ui_block").out,
                testing::ContainsRegex("unlink  /tmp/[a-z_]+\n"));
}

TEST_F(Trace, follows_a_process_that_the_operation_leaves_behind) {
    const Ended ended = there("orloctl trace api_fw_upgrade /tmp/image");
    EXPECT_THAT(ended.out, HasSubstr("child   goes on by itself\n"));
    EXPECT_THAT(ended.out, HasSubstr("run     (child) sleep 20; /bin/ubus call orloagent fwupgrade "
                                     "'{\"id\":1, \"msg\":\"/tmp/image\"}'\n"));
    EXPECT_THAT(ended.out, EndsWith("result  ok\n"));
}

TEST_F(Trace, hides_keys_unless_they_are_asked_for) {
    const std::string call = "orloctl trace api_apply_system_login admin sesame";
    EXPECT_THAT(there(call).out, Not(HasSubstr("sesame")));
    EXPECT_THAT(there(call).out, HasSubstr("chpasswd.lua 'admin' '********'\n"));
    EXPECT_THAT(there(call + " --json").out, Not(HasSubstr("sesame")));
    EXPECT_THAT(there(call + " --show-keys").out, HasSubstr("chpasswd.lua 'admin' 'sesame'\n"));
    const Ended vaps = there(
        "orloctl trace api_apply_vap 0 '[{\"vap\": 0, \"vlan_id\": 1, \"ssid\": \"s\", "
        "\"wireless_security\": "
        "\"wpa-personal\", \"wpa_personal\": {\"wpa\": [\"WPA2\"], \"key\": \"open sesame\"}}]'");
    EXPECT_THAT(vaps.out, HasSubstr("set     wireless.wifi0vap0.key: (none) -> '********'\n"))
        << vaps.err;
    EXPECT_THAT(vaps.out, Not(HasSubstr("sesame")));
}

TEST_F(Trace, as_json_holds_the_call_and_its_events) {
    const Ended ended = there("orloctl trace --json api_set_Channel 1 44");
    const std::unique_ptr<json_t, decltype(&json_decref)> json(
        json_loads(ended.out.c_str(), 0, nullptr), &json_decref);
    ASSERT_NE(json, nullptr) << ended.out << ended.err;
    EXPECT_TRUE(json_is_true(json_object_get(json.get(), "ok")));
    EXPECT_STREQ(json_string_value(json_object_get(json.get(), "operation")), "api_set_Channel");
    std::string events;
    size_t index = 0;
    json_t* event = nullptr;
    json_array_foreach(json_object_get(json.get(), "events"), index, event) {
        events += std::string(json_string_value(json_object_get(event, "event"))) + " ";
    }
    EXPECT_EQ(events, "log log set log run log run commit log ");
    const json_t* set = json_array_get(json_object_get(json.get(), "events"), 2);
    EXPECT_STREQ(json_string_value(json_object_get(set, "before")), "auto");
    EXPECT_STREQ(json_string_value(json_object_get(set, "value")), "44");
}

TEST_F(Trace, refuses_what_call_refuses) {
    EXPECT_EQ(there("orloctl trace").err,
              "orloctl: 'orloctl trace' needs an operation: orloctl trace OP ARG... ('orloctl ops' "
              "lists them)\n");
    EXPECT_EQ(there("orloctl trace api_set_Channel 1 x").status, 2);
}
