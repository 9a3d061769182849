// SPDX-License-Identifier: MIT
// orloctl quilt, with a double of the vendor library.
#include "program.h"

using testing::HasSubstr;
using testing::MatchesRegex;

namespace {

const char* const stations = R"([
    {"STA MAC Address": "a4:5e:60:01:02:03", "RSSI": -41, "Channel": 36, "Detected Time": 86399},
    {"STA MAC Address": "3c:22:fb:10:20:30", "RSSI": -73, "Channel": 0, "Detected Time": 86399}])";

// The double answers 0, or the number of one failure.
const char* const capable = "api_is_quilt_capable=1";

} // namespace

TEST_F(Orloctl, quilt_shows_what_the_device_says_of_it) {
    const struct {
        const char* operation;
        const char* title;
        const char* member;
    } rows[] = {
        {"api_is_quilt_capable", "supported            ", "supported"},
        {"api_is_any_vap_quilt", "has VAPs             ", "has_vaps"},
        {"api_is_cqscan_enabled", "scan is on           ", "scan_enabled"},
        {"api_is_responser_present", "responder installed  ", "responder_installed"},
    };
    for (const auto& row : rows) {
        let_fail(row.operation + std::string("=1"));
        const Ended ended = orloctl({"quilt"});
        EXPECT_EQ(ended.status, 0);
        std::string expected;
        for (const auto& each : rows) {
            expected += each.title + std::string(&each == &row ? "yes\n" : "no\n");
        }
        EXPECT_EQ(ended.out, expected + "\nthe agent's status: not available\n");
        const Json object = parsed(orloctl({"quilt", "status", "--json"}).out);
        for (const auto& each : rows) {
            EXPECT_EQ(json_is_true(json_object_get(object.get(), each.member)), &each == &row);
        }
        EXPECT_TRUE(json_is_null(json_object_get(object.get(), "status")));
    }
    EXPECT_THAT(journal(), HasSubstr("api_is_quilt_capable\n"
                                     "api_is_any_vap_quilt\n"
                                     "api_is_cqscan_enabled\n"
                                     "api_is_responser_present\n"
                                     "api_get_CQ_status 0 '/tmp/orloctl-"));
}

TEST_F(Orloctl, quilt_leaves_no_folder_behind) {
    orloctl({"quilt"});
    const std::string calls = journal();
    const size_t start = calls.find("'/tmp/orloctl-") + 1;
    const std::string path = calls.substr(start, calls.find('\'', start) - start);
    ASSERT_THAT(path, MatchesRegex("/tmp/orloctl-[A-Za-z0-9]{6}/status"));
    const std::string folder = path.substr(0, path.rfind('/'));
    EXPECT_EQ(run_program({{"/bin/sh", "-c", "[ -e " + folder + " ]"}, "", {}}).status, 1);
}

TEST_F(Orloctl, quilt_scan_lists_the_stations) {
    let_answer(stations);
    let_fail(capable);
    set_environment("TZ=UTC");
    const Ended ended = orloctl({"quilt", "scan"});
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_EQ(ended.out, "MAC                signal   channel  detected\n"
                         "a4:5e:60:01:02:03  -41 dBm  36       1970-01-01 23:59:59\n"
                         "3c:22:fb:10:20:30  -73 dBm  unknown  1970-01-01 23:59:59\n");
    EXPECT_EQ(journal(), "api_is_quilt_capable\napi_get_cqscan NULL\n");
    const Json array = parsed(orloctl({"quilt", "scan", "--json"}).out);
    const Json expected = parsed(R"([
        {"mac": "a4:5e:60:01:02:03", "signal_dbm": -41, "channel": 36, "detected": 86399},
        {"mac": "3c:22:fb:10:20:30", "signal_dbm": -73, "channel": null, "detected": 86399}])");
    EXPECT_TRUE(json_equal(array.get(), expected.get()));
}

TEST_F(Orloctl, quilt_scan_says_so_when_there_is_no_station) {
    let_answer("[]");
    let_fail(capable);
    EXPECT_EQ(orloctl({"quilt", "scan"}).out, "no station is heard\n");
    EXPECT_EQ(orloctl({"quilt", "scan", "--json"}).out, "[]\n");
}

TEST_F(Orloctl, quilt_scan_survives_reports_of_any_shape) {
    let_fail(capable);
    for (const char* report : {"{}", "7", "\"x\""}) {
        let_answer(report);
        EXPECT_EQ(orloctl({"quilt", "scan"}).out, "no station is heard\n") << report;
    }
    let_answer(R"([null, {"STA MAC Address": 1, "RSSI": "x", "Channel": [], "Detected Time": {}},
                   {"Detected Time": 9223372036854775807}])");
    EXPECT_EQ(orloctl({"quilt", "scan"}).out, "MAC      signal   channel  detected\n"
                                              "unknown  unknown  unknown  unknown\n"
                                              "unknown  unknown  unknown  unknown\n"
                                              "unknown  unknown  unknown  9223372036854775807\n");
    EXPECT_EQ(json_array_size(parsed(orloctl({"quilt", "scan", "--json"}).out).get()), 3U);
}

TEST_F(Orloctl, quilt_scan_fails_where_the_device_supports_no_quilt) {
    const Ended ended = orloctl({"quilt", "scan"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.out, "");
    EXPECT_THAT(ended.err, HasSubstr("orloctl: this device supports no quilt\n"));
    EXPECT_EQ(journal(), "api_is_quilt_capable\n");
}

TEST_F(Orloctl, quilt_scan_without_a_result_fails) {
    let_answer("no JSON"); // NULL
    let_fail(capable);
    const Ended ended = orloctl({"quilt", "scan"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.err, HasSubstr("orloctl: api_get_cqscan has nothing to report\n"));
    EXPECT_THAT(ended.err, testing::Not(HasSubstr("orloctl:   "))) << "words of another operation";
}
