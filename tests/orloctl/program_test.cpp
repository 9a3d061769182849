// SPDX-License-Identifier: MIT
// Calling operations, listing them and records, options, helps.
#include "program.h"

#include <unistd.h>

#include "records/registry.h"

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

TEST_F(Orloctl, help_is_there_for_everything_and_documents_the_exit_codes) {
    for (const std::vector<std::string>& words : {std::vector<std::string>{"--help"},
                                                  {"-h"},
                                                  {"ops", "--help"},
                                                  {"call", "--help"},
                                                  {"apply", "--help"},
                                                  {"preview", "--help"},
                                                  {"trace", "--help"},
                                                  {"completion", "--help"},
                                                  {"status", "--help"},
                                                  {"clients", "--help"},
                                                  {"counters", "--help"},
                                                  {"records", "--help"},
                                                  {"schema", "--help"},
                                                  {"--help", "status"}}) {
        const Ended ended = bare(words);
        EXPECT_EQ(ended.status, 0);
        EXPECT_THAT(ended.out, HasSubstr("Exit codes:"));
        EXPECT_EQ(ended.err, "");
    }
    EXPECT_THAT(bare({"apply", "--help"}).out, HasSubstr("power_percent"));
}

TEST_F(Orloctl, no_line_of_any_help_is_wider_than_a_terminal) {
    for (const std::string command :
         {"ops", "call", "trace", "apply", "preview", "status", "clients", "counters", "records",
          "schema", "completion", "--here"}) {
        std::istringstream lines(bare({command, "--help"}).out);
        for (std::string line; std::getline(lines, line);) {
            EXPECT_LE(line.size(), 80U) << line;
        }
    }
}

TEST_F(Orloctl, prints_its_version) {
    EXPECT_THAT(bare({"--version"}).out, StartsWith("orloctl 0."));
}

TEST_F(Orloctl, wrong_usage_ends_with_2_and_a_sentence) {
    EXPECT_EQ(bare({"frobnicate"}).err,
              "orloctl: unknown command 'frobnicate'; 'orloctl --help' lists them\n");
    EXPECT_EQ(bare({"ops", "--frob"}).err,
              "orloctl: unknown option '--frob'; 'orloctl --help' lists them\n");
    EXPECT_EQ(bare({}).err, "orloctl: what shall be done? 'orloctl --help' lists the commands\n");
    for (const std::vector<std::string>& words : {std::vector<std::string>{"frobnicate"},
                                                  {"frobnicate", "--help"},
                                                  {"ops", "--frob"},
                                                  {},
                                                  {"call"},
                                                  {"apply"},
                                                  {"apply", "a", "b"},
                                                  {"status", "1"},
                                                  {"clients", "file"},
                                                  {"counters", "1"},
                                                  {"status", "--watch"},
                                                  {"counters", "--file", "x"},
                                                  {"ops", "a", "b"},
                                                  {"ops", "no such thing"},
                                                  {"ops", "132"},
                                                  {"records", "no_such_record"},
                                                  {"schema", "no_such_record"},
                                                  {"schema", "a", "b"},
                                                  {"status", "--dry-run"},
                                                  {"ops", "--raw"}}) {
        const Ended ended = bare(words);
        EXPECT_EQ(ended.status, 2);
        EXPECT_EQ(ended.out, "");
        EXPECT_THAT(ended.err, StartsWith("orloctl: "));
    }
}

TEST_F(Orloctl, where_there_is_no_access_point_nothing_is_called) {
    if (access("/etc/config/orloagent", F_OK) == 0) {
        GTEST_SKIP() << "this is an access point";
    }
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"call", "api_get_channel", "1"},
          {"status"},
          {"clients"},
          {"counters"}}) {
        const Ended ended = bare(words);
        EXPECT_EQ(ended.status, 2);
        EXPECT_EQ(ended.err,
                  "orloctl: no access point here (/etc/config/orloagent is missing): use './run "
                  "shell' for the virtual one, or --here to insist\n");
    }
}

TEST_F(Orloctl, a_library_that_cannot_be_loaded_ends_with_2) {
    const TemporaryFile text("this is no library");
    const Ended broken = bare({"--here", "--library", text.path(), "call", "1"});
    EXPECT_EQ(broken.status, 2);
    EXPECT_THAT(broken.err, StartsWith("orloctl: cannot load the vendor library: " + text.path()));
    EXPECT_THAT(broken.err, HasSubstr("name another with --library PATH"));

    const Ended missing = bare({"--here", "status"}, {"ORLO_LIBRARY=/nowhere/lib.so"});
    EXPECT_EQ(missing.status, 2);
    EXPECT_THAT(missing.err, HasSubstr("/nowhere/lib.so"));

    const Ended other = bare({"--here", "--library", "libc.so.6", "call", "1"});
    EXPECT_EQ(other.status, 2);
    EXPECT_EQ(other.err, "orloctl: libc.so.6 is not a vendor library of this access point: it has "
                         "no Vendor_Ops; name another with --library PATH\n");
}

TEST_F(Orloctl, the_library_may_be_named_by_the_environment) {
    const Ended ended =
        bare({"--here", "call", "api_get_radio_type", "0"}, {"ORLO_LIBRARY=" DOUBLE_VENDOR});
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.out, "a text\n");
}

TEST_F(Orloctl, ops_lists_every_operation_and_finds_some) {
    const Ended all = bare({"ops"});
    EXPECT_EQ(all.status, 0);
    EXPECT_THAT(all.out, HasSubstr("int api_set_Channel(int radio, int channel)"));
    EXPECT_THAT(all.out, HasSubstr("int api_is_area_auth("));
    std::istringstream lines(all.out);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_LE(line.size(), 80U) << line;
    }
    const Ended some = bare({"ops", "CHANNEL"});
    EXPECT_THAT(some.out, HasSubstr("api_set_Channel"));
    EXPECT_THAT(some.out, Not(HasSubstr("api_save_config")));
    EXPECT_EQ(bare({"ops", "80"}).out, bare({"ops", "api_set_Channel"}).out);
    EXPECT_THAT(bare({"ops", "80"}).out, HasSubstr("orloctl call api_set_Channel RADIO CHANNEL"));
}

TEST_F(Orloctl, ops_as_json_holds_all_that_is_known) {
    const Json all = parsed(bare({"ops", "--json"}).out);
    EXPECT_EQ(json_array_size(all.get()), 132U);
    const Json one = parsed(bare({"ops", "api_set_Channel", "--json"}).out);
    EXPECT_EQ(json_integer_value(json_object_get(one.get(), "slot")), 80);
    EXPECT_EQ(text_member(one, "prototype"), "int api_set_Channel(int radio, int channel)");
    EXPECT_EQ(text_member(one, "meaning"), "status");
    EXPECT_EQ(json_array_size(json_object_get(one.get(), "parameters")), 2U);
}

TEST_F(Orloctl, call_passes_arguments_as_they_are_typed) {
    EXPECT_EQ(
        orloctl({"call", "api_apply_wireless_interface", "1", "not-override", "0x24", "-1", "80"})
            .out,
        "ok\n");
    EXPECT_EQ(orloctl({"call", "24", "@null"}).status, 0);
    EXPECT_EQ(orloctl({"call", "24", "it's @@ \"x\""}).status, 0);
    EXPECT_EQ(orloctl({"call", "24", "@@null"}).status, 0);
    EXPECT_EQ(orloctl({"call", "24", "--", "--json"}).status, 0);
    EXPECT_EQ(orloctl({"call", "api_reserved_13"}).status, 0);
    EXPECT_EQ(journal(), "api_apply_wireless_interface 1 'not-override' 36 -1 80\n"
                         "api_config_set_hash NULL\n"
                         "api_config_set_hash 'it's @@ \"x\"'\n"
                         "api_config_set_hash '@null'\n"
                         "api_config_set_hash '--json'\n"
                         "api_reserved_13 NULL NULL NULL\n");
}

TEST_F(Orloctl, wrong_arguments_call_nothing) {
    const Ended type = orloctl({"call", "api_set_Channel", "1", "abc"});
    EXPECT_EQ(type.status, 2);
    EXPECT_EQ(type.err, "orloctl: argument 2 (channel): 'abc' is not an integer\n");
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"call", "api_set_Channel", "1"},
          {"call", "api_set_Channel", "1", "36", "40"},
          {"call", "api_set_Channel", "1", "99999999999"},
          {"call", "api_set_Chanel", "1", "36"},
          {"call", "132"},
          {"call", "api_apply_vap", "1"},
          {"call", "api_apply_vap", "1", "[{}]"},
          {"call", "api_apply_snmp", "{}"}}) {
        const Ended ended = orloctl(words);
        EXPECT_EQ(ended.status, 2);
        EXPECT_EQ(ended.out, "");
    }
    EXPECT_EQ(journal(), "");
}

TEST_F(Orloctl, results_are_shown_by_their_meaning) {
    EXPECT_EQ(orloctl({"call", "api_save_config"}).out, "ok\n");
    EXPECT_EQ(orloctl({"call", "api_is_quilt_capable"}).out, "no\n");
    EXPECT_EQ(orloctl({"call", "api_get_force_disable_status", "0"}).out, "yes\n");
    EXPECT_EQ(orloctl({"call", "api_get_wlan_bytes_tx"}).out, "1099511627776\n");
    EXPECT_EQ(orloctl({"call", "api_get_MaxPowerInfo", "1", "80", "@null"}).out, "20.1\n");
    EXPECT_EQ(orloctl({"call", "api_config_get_hash"}).out, "a text\n");
    EXPECT_EQ(orloctl({"call", "api_mark_config_apply_flag"}).out, "done\n");
    EXPECT_THAT(orloctl({"call", "create_ml_status_report"}).out, HasSubstr("\"hops\": 2"));
}

TEST_F(Orloctl, what_the_operation_fills_in_is_printed) {
    EXPECT_EQ(orloctl({"call", "api_get_management_ip"}).out,
              "ok\nip: " + std::string(127, 'x') + "\n");
    EXPECT_THAT(orloctl({"call", "api_get_PowerPercent", "1", "20.5"}).out,
                HasSubstr(": unset unset unset unset unset unset unset unset unset unset 19.25 "
                          "20.5\n"));
    EXPECT_EQ(orloctl({"call", "api_get_watchdog_timeout"}).out, "ok\ntimeout: 60\n");
}

TEST_F(Orloctl, a_call_that_fails_ends_with_1_and_tells_why) {
    let_fail("api_set_Channel");
    const Ended ended = orloctl({"call", "api_set_Channel", "1", "170"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.out, "failed (-1)\n");
    EXPECT_THAT(ended.err, HasSubstr("error: api_set_Channel does not like it."));
    EXPECT_THAT(ended.err, Not(HasSubstr("Entering")));
}

TEST_F(Orloctl, a_missing_text_or_json_value_ends_with_1) {
    let_fail("api_get_vap_ssid");
    EXPECT_EQ(orloctl({"call", "api_get_vap_ssid", "0", "0"}).status, 1);
    EXPECT_EQ(orloctl({"call", "api_get_vap_ssid", "0", "0"}).out, "none (NULL)\n");
    let_fail("api_get_cqscan");
    EXPECT_EQ(orloctl({"call", "api_get_cqscan"}).status, 1);
}

TEST_F(Orloctl, a_call_as_json_is_json_alone_whatever_tools_print) {
    const Ended ended = orloctl({"call", "api_get_management_ip", "--json"});
    const Json object = parsed(ended.out);
    ASSERT_NE(object, nullptr) << ended.out;
    EXPECT_EQ(text_member(object, "operation"), "api_get_management_ip");
    EXPECT_EQ(text_member(object, "shown"), "ok");
    EXPECT_EQ(json_integer_value(json_object_get(object.get(), "result")), 0);
    EXPECT_STREQ(json_string_value(json_object_get(json_object_get(object.get(), "outputs"), "ip")),
                 std::string(127, 'x').c_str());
    EXPECT_THAT(ended.err, HasSubstr("api_get_management_ip prints this"));
}

TEST_F(Orloctl, log_lines_obey_libdebug_and_verbose_shows_them_all) {
    let_fail("api_set_Channel");
    const std::vector<std::string> words = {"call", "api_set_Channel", "1", "36"};
    EXPECT_THAT(orloctl(words).err, Not(HasSubstr("5 5 api_set_Channel:1 Entering")));
    std::vector<std::string> verbose = words;
    verbose.emplace_back("--verbose");
    EXPECT_THAT(orloctl(verbose).err, HasSubstr("api_set_Channel:1: Entering...\n"));
    const Ended forwarded = run_program(
        {{ORLOCTL, "--here", "--library", DOUBLE_VENDOR, "call", "api_set_Channel", "1", "36"},
         "",
         {"ORLO_DEBUG=5:5", "DOUBLE_FAILS=api_set_Channel"}});
    EXPECT_THAT(forwarded.err, HasSubstr("5 5 api_set_Channel:1 Entering...\n"));
}

TEST_F(Orloctl, call_takes_records_as_json) {
    const TemporaryFile vaps(R"([{"vap": 7, "ssid": "seven", "vlan_id": 7}])");
    EXPECT_EQ(orloctl({"call", "api_apply_vap", "1", "@" + vaps.path()}).out, "ok\n");
    EXPECT_EQ(orloctl({"call", "api_apply_radio", "@-"}, R"({"interface_name": "wlan0"})").out,
              "ok\n");
    EXPECT_EQ(orloctl({"call", "api_apply_hw_specific", "5", "--raw", "{}"}).out, "ok\n");
    EXPECT_EQ(journal(), "api_apply_vap 1 { 7='seven' }\n"
                         "api_apply_radio {'wlan0'}\n"
                         "api_apply_hw_specific 5 {NULL}\n");
}

TEST_F(Orloctl, call_takes_the_records_of_the_device) {
    const std::string march =
        R"({"ordinal": "last", "weekday": "Sunday", "month": "March", "hour": 2})";
    const TemporaryFile june(
        R"({"ordinal": "first", "weekday": "Friday", "month": "June", "hour": 1,
                                 "minute": 30})");
    orloctl({"call", "api_apply_daylight_saving", "1", march, "@" + june.path(), "60"});
    orloctl({"call", "api_apply_wds", R"([{"radio_intf": "wlan0", "security": "none",
                                           "wds_mode": "parent", "ssid": "l"}])"});
    orloctl({"call", "api_apply_wds", "[]"});
    orloctl({"call", "api_apply_wds", "@null"});
    orloctl({"call", "api_apply_mac_auth_radius_server", "0", "1",
             R"({"index": 2, "ip": "i", "key": "k"})"});
    orloctl({"call", "api_apply_captive_portal_to_vap", "0", "1", R"({"enable": false})"});
    orloctl({"call", "api_apply_known_clients", R"({"mac_list": ["02:00:00:00:00:01"]})"});
    orloctl({"call", "api_apply_snmp",
             R"({"status": false, "version": "v3", "radio_status": [true, false]})"});
    EXPECT_EQ(journal(), "api_apply_daylight_saving 1 {'last' 'Sunday' 'March' 2:0} {'first' "
                         "'Friday' 'June' 1:30} 60\n"
                         "api_apply_wds {'wlan0' 'parent' NULL NULL}\n"
                         "api_apply_wds {NULL NULL NULL NULL}\n"
                         "api_apply_wds NULL\n"
                         "api_apply_mac_auth_radius_server 0 1 {2 'i'}\n"
                         "api_apply_captive_portal_to_vap 0 1 {0 NULL}\n"
                         "api_apply_known_clients {'' 02:00:00:00:00:01}\n"
                         "api_apply_snmp {0 v1 radios 1 0}\n");
    EXPECT_EQ(orloctl({"call", "api_apply_daylight_saving", "1", march, "{}", "60"}).err,
              "orloctl: end.ordinal: is missing\norloctl: end.weekday: is missing\n"
              "orloctl: end.month: is missing\norloctl: end.hour: is missing\n");
    EXPECT_EQ(orloctl({"call", "api_apply_wds", "{}"}).err, "orloctl: wds: {} is not an array\n");
    EXPECT_EQ(orloctl({"call", "api_apply_wds", "[{}, {}, {}]"}).err,
              "orloctl: wds: 3 elements are more than 2\n");
}

TEST_F(Orloctl, ops_tells_which_texts_reach_the_shell) {
    EXPECT_THAT(bare({"ops", "api_fw_validate"}).out, HasSubstr("reaches the shell"));
    EXPECT_THAT(bare({"ops", "api_apply_timezone"}).out, HasSubstr("between double quotes"));
    EXPECT_THAT(bare({"ops", "api_apply_country_code"}).out, Not(HasSubstr("shell")));
    EXPECT_THAT(bare({"records", "login"}).out, HasSubstr("reaches the shell between single"));
}

TEST_F(Orloctl, records_and_their_schemas_can_be_listed) {
    EXPECT_THAT(bare({"records"}).out, HasSubstr("vap_settings            one VAP, for "
                                                 "api_apply_vap\n"));
    EXPECT_THAT(bare({"records", "radio_settings"}).out,
                HasSubstr("  rts_threshold         integer in 0..2347 bytes\n"));
    EXPECT_EQ(bare({"records", "vap"}).err.substr(0, 36), "orloctl: unknown record 'vap', known");
    const Json records = parsed(bare({"records", "--json"}).out);
    EXPECT_EQ(json_array_size(records.get()), ::orloctl::all_records().size());
    EXPECT_EQ(text_member(parsed(bare({"schema"}).out), "title"), "access_point");
    EXPECT_EQ(text_member(parsed(bare({"schema", "wep"}).out), "title"), "wep");
    EXPECT_THAT(bare({"schema", "--markdown"}).out,
                HasSubstr("| `dtim_period` | integer in 1..255 beacons | from one DTIM to the next "
                          "|\n"));
    EXPECT_THAT(bare({"ops", "api_apply_vap"}).out,
                HasSubstr("JSON or @FILE, see 'orloctl records"));
}

TEST_F(Orloctl, a_full_disk_is_told) {
    const std::string command = ORLOCTL " ops > /dev/full";
    const Ended ended = run_program({{"/bin/sh", "-c", command}, "", {}});
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.err, HasSubstr("cannot write to standard output: No space left on device"));
}
