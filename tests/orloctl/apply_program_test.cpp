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
