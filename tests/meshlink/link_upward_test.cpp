// SPDX-License-Identifier: MIT
// The link upward in the statistics report: that of the mesh station.
#include "meshlink/statistics.h"

namespace orlo::test {

TEST_F(MeshStatistics, FindTheStationByTheDigitOfItsInterface) {
    for (int digit = 1; digit < 10; digit++) {
        write_file("/var/run/device/interfaces", "lo up - 127.0.0.1 255.0.0.0\n");
        const std::string name = "mesh" + std::to_string(digit);
        start_station(name);
        answer_net_dev(name + ": 1 0 0 0 0 0 0 0 2\n");
        door.forget();
        EXPECT_NE(statistics_report(), "NULL");
        EXPECT_THAT(
            door.trace({"read"}),
            testing::IsSupersetOf({"read grep " + name + ": /proc/net/dev | awk '{print $2,$10}'",
                                   "read " + speed_command(name, "head -n 3")}));
    }
    write_file("/var/run/device/interfaces", "");
    start_station("mesh3x");
    start_station("amesh2");
    door.forget();
    EXPECT_NE(statistics_report(), "NULL");
    EXPECT_THAT(door.trace({"read"}), testing::Contains(HasSubstr("grep mesh3: ")));
}

TEST_F(MeshStatistics, AreNoneWithoutTheInterfaceOfTheStation) {
    write_file("/var/run/device/interfaces", "mesh0 down -\nwdev0 up -\n");
    EXPECT_EQ(statistics_report(), "NULL");
    Trace lines = errors();
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0], "get_ml_sta_counter: there is no ML-STA interface");
    EXPECT_EQ(lines[1], "create_ml_sta_json: failed to get ml sta counter information");
    EXPECT_THAT(lines[2],
                testing::MatchesRegex("create_ml_statistics_report: failed to get information, "
                                      "vap: 0x[0-9a-f]+, sta: \\(nil\\)"));
    EXPECT_EQ(JsonMemory::in_use(), 0);
    start_station();
    door.forget();
    door.fail(Call::popen, 4);
    EXPECT_EQ(statistics_report(), "NULL");
    lines = errors();
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_EQ(lines[0], "get_ml_sta_counter: failed to execute " + station_command);
    EXPECT_EQ(lines[1], "get_ml_sta_counter: there is no ML-STA interface");
    EXPECT_EQ(JsonMemory::in_use(), 0);
}

TEST_F(MeshStatistics, AreNoneWhenTheTrafficOfTheStationIsNotUnderstood) {
    const struct {
        const char* counters;
        const char* line;
    } rows[] = {
        {"mesh0: 1 2\n", "1 "},
        {"mesh0:\n", " "},
        {"mesh0: x 0 0 0 0 0 0 0 2\n", "x 2"},
        {"mesh0: 1 0 0 0 0 0 0 0 x\n", "1 x"},
        {"mesh0:1 0 0 0 0 0 0 0 2\n", "0 "},
    };
    for (const auto& row : rows) {
        answer_net_dev(row.counters);
        door.forget();
        EXPECT_EQ(statistics_report(), "NULL") << row.counters;
        ASSERT_EQ(errors().size(), 3U) << row.counters;
        EXPECT_EQ(errors()[0], "get_ml_sta_counter: invalid output: " + std::string(row.line));
        EXPECT_EQ(JsonMemory::in_use(), 0);
    }
    carry(0, 0, 0, 0);
    door.forget();
    door.fail(Call::popen, 5);
    EXPECT_EQ(statistics_report(), "NULL");
    EXPECT_EQ(errors()[0], "get_ml_sta_counter: failed to execute " + traffic_command);
}

TEST_F(MeshStatistics, TakeAStationWithoutTrafficLineForOneThatHasCarriedNothingEver) {
    answer_net_dev("");
    EXPECT_EQ(part("ML STA"),
              "[{\"Radio ID\":1,\"VAP ID\":1," + rates("0", "0") + ",\"Link Speed\":908591104}]");
    EXPECT_THAT(door.trace(), testing::Not(testing::Contains(HasSubstr("last_updated"))));
    carry(0, 0, 5000, 2000);
    EXPECT_THAT(part("ML STA"), HasSubstr(rates("2", "5"))) << "in 1000 seconds since 1970";
}

TEST_F(MeshStatistics, OfTheRootHaveNoLinkUpward) {
    answer_portal("Y\n");
    EXPECT_EQ(part("ML STA"), "[]");
    EXPECT_THAT(part("ML VAP"), StartsWith(R"([{"MAC Address":"04:11:22:33:44:40")"));
    EXPECT_THAT(door.trace({"read"}), testing::Not(testing::Contains("read " + station_command)));
    EXPECT_EQ(JsonMemory::in_use(), 0);
}

TEST_F(MeshStatistics, OfTheLinkUpwardStartAnewAfterTheAccessPointWasTheRoot) {
    carry(0, 0, 1000, 1000);
    statistics_report();
    answer_portal("Y\n");
    door.now = 1010;
    statistics_report();
    answer_portal("N\n");
    door.now = 1020;
    carry(4000, 4000, 4000, 4000);
    EXPECT_EQ(statistics_report(), report_of(rates("400", "400"), rates("0", "0")))
        << "while the links to the mesh VAP go on";
}

} // namespace orlo::test
