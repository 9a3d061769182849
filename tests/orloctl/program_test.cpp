// The program as a person or a script runs it, with a double of the vendor library.
#include <gmock/gmock.h>
#include <jansson.h>
#include <memory>
#include <unistd.h>

#include "run_program.h"

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

using Json = std::unique_ptr<json_t, decltype(&json_decref)>;

Json parsed(const std::string& text) {
    return Json(json_loadb(text.data(), text.size(), 0, nullptr), &json_decref);
}

std::string text_member(const Json& object, const char* name) {
    const char* text = json_string_value(json_object_get(object.get(), name));
    return text == nullptr ? "(none)" : text;
}

class Orloctl : public testing::Test {
protected:
    // orloctl with the double, also where there is no access point.
    Ended orloctl(std::vector<std::string> words, const std::string& input = "") {
        words.insert(words.begin(), {ORLOCTL, "--here", "--library", DOUBLE_VENDOR});
        return run_program({words, input, environment_});
    }

    // orloctl as it stands.
    static Ended bare(std::vector<std::string> words,
                      const std::vector<std::string>& environment = {}) {
        words.insert(words.begin(), ORLOCTL);
        return run_program({words, "", environment});
    }

    void let_fail(const std::string& operation) {
        environment_.push_back("DOUBLE_FAILS=" + operation);
    }

    std::string journal() const { return journal_.text(); }

private:
    TemporaryFile journal_;
    std::vector<std::string> environment_ = {"DOUBLE_JOURNAL=" + journal_.path()};
};

const std::string both_radios = R"({
  "radios": [
    {"radio": 0, "enabled": true, "override": "not-override", "channel": 6, "power_percent": 80},
    {"radio": 1, "enabled": false, "channel": 36, "second_channel": 149}
  ],
  "profile": {"id": 7, "profile_hash": "p7", "config_hash": "c7"}
})";

} // namespace

TEST_F(Orloctl, help_is_there_for_everything_and_documents_the_exit_codes) {
    for (const std::vector<std::string>& words : {std::vector<std::string>{"--help"},
                                                  {"-h"},
                                                  {"ops", "--help"},
                                                  {"call", "--help"},
                                                  {"apply", "--help"},
                                                  {"status", "--help"},
                                                  {"--help", "status"}}) {
        const Ended ended = bare(words);
        EXPECT_EQ(ended.status, 0);
        EXPECT_THAT(ended.out, HasSubstr("Exit codes:"));
        EXPECT_EQ(ended.err, "");
    }
    EXPECT_THAT(bare({"apply", "--help"}).out, HasSubstr("power_percent"));
}

TEST_F(Orloctl, no_line_of_any_help_is_wider_than_a_terminal) {
    for (const std::string command : {"ops", "call", "apply", "status", "--here"}) {
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
                                                  {"ops", "a", "b"},
                                                  {"ops", "no such thing"},
                                                  {"ops", "132"},
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
         {std::vector<std::string>{"call", "api_get_channel", "1"}, {"status"}}) {
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
          {"call", "api_apply_vap", "1"}}) {
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
    EXPECT_EQ(json_array_size(json_object_get(failed, "log")), 2U);
    EXPECT_EQ(json_array_size(json_object_get(object.get(), "done")), 0U);
    EXPECT_EQ(json_array_size(json_object_get(object.get(), "not_done")), 7U);
}

TEST_F(Orloctl, status_shows_what_can_be_read_and_calls_the_rest_unknown) {
    const Ended ended = orloctl({"status"});
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.out, "                 radio 0  radio 1\n"
                         "enabled          yes      unknown\n"
                         "force-disable    yes      unknown\n"
                         "channel          0        0\n"
                         "second channel   none     none\n"
                         "power percent    0        0\n"
                         "max power (dBm)  20.1     20.1\n"
                         "\n"
                         "profile id    0\n"
                         "profile hash  a text\n"
                         "config hash   a text\n");
}

TEST_F(Orloctl, status_as_json_holds_what_the_table_shows) {
    let_fail("api_get_channel");
    const Json object = parsed(orloctl({"status", "--json"}).out);
    json_t* radios = json_object_get(object.get(), "radios");
    ASSERT_EQ(json_array_size(radios), 2U);
    EXPECT_TRUE(json_is_true(json_object_get(json_array_get(radios, 0), "enabled")));
    EXPECT_TRUE(json_is_null(json_object_get(json_array_get(radios, 1), "enabled")));
    EXPECT_TRUE(json_is_null(json_object_get(json_array_get(radios, 0), "channel")));
    json_t* profile = json_object_get(object.get(), "profile");
    EXPECT_STREQ(json_string_value(json_object_get(profile, "profile_hash")), "a text");
    EXPECT_THAT(orloctl({"status"}).out, HasSubstr("channel          unknown  unknown\n"));
}

TEST_F(Orloctl, an_unset_profile_id_is_told_as_such) {
    let_fail("api_get_profile_id");
    EXPECT_THAT(orloctl({"status"}).out, HasSubstr("profile id    not set in this process\n"));
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

TEST_F(Orloctl, a_full_disk_is_told) {
    const std::string command = ORLOCTL " ops > /dev/full";
    const Ended ended = run_program({{"/bin/sh", "-c", command}, "", {}});
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.err, HasSubstr("cannot write to standard output: No space left on device"));
}
