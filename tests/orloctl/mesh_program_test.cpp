// SPDX-License-Identifier: MIT
// orloctl mesh, with a double of the vendor library.
#include "program.h"

using testing::HasSubstr;
using testing::StartsWith;

namespace {

const char* const branch = R"({"role": 1, "children": ["04:00:00:00:01:00", "04:00:00:00:02:00"],
    "parent": {"macaddr": "04:00:00:00:00:20", "score": 47},
    "path": ["04:00:00:00:00:00", "04:00:00:00:00:20", "04:00:00:00:00:40"]})";

const char* const links = R"({
    "ML VAP": [{"MAC Address": "04:00:00:00:01:00", "Radio ID": 1, "VAP ID": 2,
                "Bytes Transmitted": 100000, "Bytes Received": 7, "Link Speed": 908591104},
               {"MAC Address": "04:00:00:00:02:00", "Radio ID": 1, "VAP ID": 2,
                "Bytes Transmitted": 0, "Bytes Received": 0, "Link Speed": 0}],
    "ML STA": [{"Radio ID": 0, "VAP ID": 3, "Bytes Transmitted": 9, "Bytes Received": 8,
                "Link Speed": 2147483647}]})";

} // namespace

TEST_F(Orloctl, mesh_shows_the_place_of_a_branch) {
    let_answer(branch);
    const Ended ended = orloctl({"mesh"});
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.out,
              "declares mesh links  no\n"
              "declares acceptor    no\n"
              "role                 branch\n"
              "path from the root   04:00:00:00:00:00 > 04:00:00:00:00:20 > 04:00:00:00:00:40\n"
              "parent               04:00:00:00:00:20\n"
              "score of the parent  47\n"
              "children             04:00:00:00:01:00, 04:00:00:00:02:00\n");
    EXPECT_EQ(journal(), "create_ml_status_report NULL\n"
                         "api_is_mesh_link_capable\n"
                         "api_is_mesh_link_acceptor_capable\n");
    EXPECT_EQ(orloctl({"mesh", "status"}).out, ended.out);
}

TEST_F(Orloctl, mesh_as_json_holds_what_the_table_shows) {
    let_answer(branch);
    EXPECT_EQ(orloctl({"mesh", "--json"}).out, R"({
  "capable": false,
  "acceptor_capable": false,
  "role": "branch",
  "path": [
    "04:00:00:00:00:00",
    "04:00:00:00:00:20",
    "04:00:00:00:00:40"
  ],
  "parent": "04:00:00:00:00:20",
  "parent_score": 47,
  "children": [
    "04:00:00:00:01:00",
    "04:00:00:00:02:00"
  ]
}
)");
}

TEST_F(Orloctl, mesh_shows_what_a_device_declares) {
    let_answer(branch);
    let_fail("api_is_mesh_link_capable=1");
    EXPECT_THAT(orloctl({"mesh"}).out,
                StartsWith("declares mesh links  yes\ndeclares acceptor    no\n"));
    EXPECT_THAT(orloctl({"mesh", "--json"}).out, HasSubstr("\"capable\": true,"));
    let_fail("api_is_mesh_link_acceptor_capable=1");
    EXPECT_THAT(orloctl({"mesh"}).out,
                StartsWith("declares mesh links  no\ndeclares acceptor    yes\n"));
}

TEST_F(Orloctl, mesh_shows_the_root_without_a_parent_and_a_leaf_without_children) {
    let_answer(R"({"role": 0, "children": [], "path": ["04:00:00:00:00:00"]})");
    EXPECT_THAT(orloctl({"mesh"}).out, HasSubstr("role                 root\n"
                                                 "path from the root   04:00:00:00:00:00\n"
                                                 "parent               none\n"
                                                 "score of the parent  none\n"
                                                 "children             none\n"));
    const Json root = parsed(orloctl({"mesh", "--json"}).out);
    EXPECT_TRUE(json_is_null(json_object_get(root.get(), "parent")));
    EXPECT_TRUE(json_is_null(json_object_get(root.get(), "parent_score")));
    let_answer(R"({"role": 2, "parent": {"macaddr": "04:00:00:00:00:20", "score": -3},
                   "path": ["04:00:00:00:00:00", "04:00:00:00:00:40"]})");
    EXPECT_THAT(orloctl({"mesh"}).out, HasSubstr("role                 leaf\n"));
    EXPECT_THAT(orloctl({"mesh"}).out, HasSubstr("score of the parent  -3\n"));
    const Json leaf = parsed(orloctl({"mesh", "--json"}).out);
    EXPECT_EQ(text_member(leaf, "role"), "leaf");
    const json_t* children = json_object_get(leaf.get(), "children");
    EXPECT_TRUE(json_is_array(children));
    EXPECT_EQ(json_array_size(children), 0U);
}

TEST_F(Orloctl, mesh_survives_reports_of_any_shape) {
    for (const char* report :
         {"[]", "{}", "7", R"({"role": 3, "path": 1, "parent": 2, "children": {"a": 1}})",
          R"({"role": -1, "path": [null, 1], "parent": {"macaddr": 5, "score": "x"}})"}) {
        let_answer(report);
        const Ended ended = orloctl({"mesh"});
        EXPECT_EQ(ended.status, 0) << report << ended.err;
        EXPECT_THAT(ended.out, HasSubstr("role                 unknown\n"
                                         "path from the root   none\n"));
        EXPECT_TRUE(
            json_is_null(json_object_get(parsed(orloctl({"mesh", "--json"}).out).get(), "role")));
        EXPECT_EQ(orloctl({"mesh", "statistics"}).status, 0) << report;
    }
    let_answer(R"({"ML VAP": [null, {"Radio ID": "x", "Link Speed": -1, "MAC Address": 4}]})");
    EXPECT_EQ(orloctl({"mesh", "statistics"}).out,
              "link  MAC      radio    VAP      rx bytes/s  tx bytes/s  speed\n"
              "down  -        unknown  unknown  unknown     unknown     unknown\n"
              "down  unknown  unknown  unknown  unknown     unknown     unknown\n");
}

TEST_F(Orloctl, mesh_statistics_show_each_link) {
    let_answer(links);
    const Ended ended = orloctl({"mesh", "statistics"});
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.out,
              "link  MAC                radio  VAP  rx bytes/s  tx bytes/s  speed\n"
              "down  04:00:00:00:01:00  1      2    7           100000      866.5 Mbit/s\n"
              "down  04:00:00:00:02:00  1      2    0           0           unknown\n"
              "up    -                  0      3    8           9           2048 Mbit/s\n");
    EXPECT_EQ(journal(), "create_ml_statistics_report\n");
}

TEST_F(Orloctl, mesh_statistics_as_json_hold_what_the_table_shows) {
    let_answer(links);
    const Json array = parsed(orloctl({"mesh", "statistics", "--json"}).out);
    const Json expected = parsed(R"([
        {"direction": "down", "mac": "04:00:00:00:01:00", "radio": 1, "vap": 2,
         "rx_bytes_per_second": 7, "tx_bytes_per_second": 100000, "link_speed_mbps": 866.5},
        {"direction": "down", "mac": "04:00:00:00:02:00", "radio": 1, "vap": 2,
         "rx_bytes_per_second": 0, "tx_bytes_per_second": 0, "link_speed_mbps": null},
        {"direction": "up", "mac": null, "radio": 0, "vap": 3,
         "rx_bytes_per_second": 8, "tx_bytes_per_second": 9, "link_speed_mbps": 2048.0}])");
    EXPECT_TRUE(json_equal(array.get(), expected.get()));
}

TEST_F(Orloctl, mesh_without_a_report_fails_with_the_librarys_reason) {
    const struct {
        const char* word;
        const char* operation;
    } rows[] = {{"status", "create_ml_status_report"},
                {"statistics", "create_ml_statistics_report"}};
    for (const auto& row : rows) {
        let_fail(row.operation);
        const Ended ended = orloctl({"mesh", row.word, "--json"});
        EXPECT_EQ(ended.status, 1);
        EXPECT_EQ(ended.out, "");
        const std::string operation = row.operation;
        EXPECT_THAT(ended.err, HasSubstr("orloctl: " + operation + " has nothing to report\n"));
        EXPECT_THAT(ended.err, HasSubstr("orloctl:   info: looking at it\n"));
        EXPECT_THAT(ended.err,
                    HasSubstr("orloctl:   error: " + operation + " does not like it.\n"));
    }
}

TEST_F(Orloctl, a_watched_mesh_asks_one_library_again_and_again) {
    const TemporaryFile calls;
    const std::string command = ORLOCTL " --here --library " DOUBLE_VENDOR
                                        " mesh statistics --watch --every 0 --json | head -n 3";
    const Ended ended =
        run_program({{"/bin/sh", "-c", command},
                     "",
                     {"DOUBLE_JOURNAL=" + calls.path(), std::string("DOUBLE_JSON=") + links}});
    std::istringstream lines(ended.out);
    int count = 0;
    for (std::string line; std::getline(lines, line); count++) {
        EXPECT_EQ(json_array_size(parsed(line).get()), 3U) << line;
    }
    EXPECT_EQ(count, 3);
    EXPECT_THAT(calls.text(), StartsWith("create_ml_statistics_report\n"
                                         "create_ml_statistics_report\n"
                                         "create_ml_statistics_report\n"));
}

TEST_F(Orloctl, mesh_and_quilt_take_one_of_two_words) {
    const struct {
        std::vector<std::string> words;
        const char* sentence;
    } rows[] = {
        {{"mesh", "scan"}, "'orloctl mesh' takes status or statistics, 'scan' given"},
        {{"mesh", "status", "now"}, "'orloctl mesh' takes status or statistics, 'now' given"},
        {{"quilt", "statistics"}, "'orloctl quilt' takes status or scan, 'statistics' given"},
    };
    for (const auto& row : rows) {
        const Ended ended = orloctl(row.words);
        EXPECT_EQ(ended.status, 2);
        EXPECT_EQ(ended.err, std::string("orloctl: ") + row.sentence + "\n");
    }
    EXPECT_EQ(journal(), "");
}

TEST_F(Orloctl, mesh_and_quilt_have_help) {
    for (const char* command : {"mesh", "quilt"}) {
        const Ended ended = bare({command, "--help"});
        EXPECT_EQ(ended.status, 0);
        EXPECT_THAT(ended.out, HasSubstr("--every SECONDS"));
        EXPECT_THAT(ended.out, HasSubstr("Exit codes:"));
        std::istringstream lines(ended.out);
        for (std::string line; std::getline(lines, line);) {
            EXPECT_LE(line.size(), 80U) << line;
        }
        EXPECT_THAT(bare({"--help"}).out, HasSubstr(std::string("orloctl ") + command));
    }
}
