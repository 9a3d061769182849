// SPDX-License-Identifier: MIT
// The statistics report: what the mesh links have carried since the last report.
#include "meshlink/statistics.h"

#include <climits>
#include <jansson.h>
#include <set>

namespace orlo::test {

namespace {

const std::string portal_command = "cat /sys/kernel/debug/sta/mesh_is_portal_ap";
const std::string links_command =
    "hostapd_cli -i ath11 -p /var/run/hostapd-wifi1/ all_sta | grep -e bytes -e STAAddress | "
    "awk -F= '{if(NR%3==0){ORS=\"\\n\"}else{ORS=\" \"} print $2}'";
const std::string station_seen = "log 8/4 get_ml_vap_counters: 0: STA: 06:11:22:33:44:57, "
                                 "tx: 1000000, rx:2000000, time: 1000";

} // namespace

TEST_F(MeshStatistics, OfTheFirstReportAreZero) {
    carry(2000000, 1000000, 4000000, 3000000);
    EXPECT_EQ(statistics_report(), report_of(rates("0", "0"), rates("0", "0")));
    EXPECT_THAT(door.trace(),
                testing::ElementsAreArray(Trace{
                    "log 8/5 create_ml_statistics_report: Enter",
                    "log 8/5 is_ml_enable: Enter",
                    "log 8/5 get_ml_vap_uci_interface_name: Enter",
                    "log 8/5 create_ml_vap_json: Enter",
                    "log 8/5 get_ml_vap_counters: Enter",
                    "log 8/5 get_ml_vap_uci_interface_name: Enter",
                    "log 8/4 get_ml_vap_counters: execute " + links_command,
                    "read " + links_command,
                    "log 8/4 get_ml_vap_counters: res: 06:11:22:33:44:57 2000000 1000000",
                    "log 8/5 normalize_ml_mac: Enter",
                    station_seen,
                    "log 8/5 get_link_speed: Enter",
                    "log 8/4 get_link_speed: execute " + child_speed_command,
                    "read " + child_speed_command,
                    "log 8/4 get_link_speed: res: 06:11:22:33:44:57 780.0 866.5",
                    "log 8/4 get_link_speed: tx: 866.5",
                    "log 8/5 ml_vap_entry_json: Enter",
                    "log 8/4 create_ml_vap_json: new: 04:11:22:33:44:40, tx: 0, rx: 0",
                    "log 8/5 create_ml_sta_json: Enter",
                    "log 8/5 is_ml_root: Enter",
                    "log 8/4 is_ml_root: execute " + portal_command,
                    "read " + portal_command,
                    "log 8/4 is_ml_root: res: N",
                    "log 8/5 get_ml_sta_counter: Enter",
                    "log 8/4 get_ml_sta_counter: execute " + station_command,
                    "read " + station_command,
                    "log 8/4 get_ml_sta_counter: res: mesh0",
                    "log 8/5 get_ml_vap_uci_interface_name: Enter",
                    "log 8/4 get_ml_sta_counter: execute " + traffic_command,
                    "read " + traffic_command,
                    "log 8/4 get_ml_sta_counter: res: 4000000 3000000",
                    "log 8/4 get_ml_sta_counter: tx: 3000000, rx: 4000000, last_updated: 1000",
                    "log 8/5 get_link_speed: Enter",
                    "log 8/4 get_link_speed: execute " + parent_speed_command,
                    "read " + parent_speed_command,
                    "log 8/4 get_link_speed: res: 06:11:22:33:44:57 780.0 866.5",
                    "log 8/4 get_link_speed: tx: 866.5",
                    "log 8/5 diff_ml_counter: Enter",
                    "log 8/5 ml_sta_entry_json: Enter",
                    "log 8/4 create_ml_sta_json: diff: tx:0, rx: 0, diff: 0",
                }));
    EXPECT_EQ(JsonMemory::in_use(), 0);
}

TEST_F(MeshStatistics, AreBytesPerSecondSinceTheLastReport) {
    carry(2000000, 1000000, 4000000, 3000000);
    statistics_report();
    carry(2500000, 2000000, 4000500, 3000099);
    door.now = 1010;
    door.forget();
    EXPECT_EQ(statistics_report(), report_of(rates("100000", "50000"), rates("9", "50")));
    EXPECT_THAT(
        door.trace(),
        testing::IsSupersetOf({"log 8/4 create_ml_vap_json: diff: 04:11:22:33:44:40, tx:100000, "
                               "rx: 50000, diff: 10",
                               "log 8/4 create_ml_sta_json: diff: tx:9, rx: 50, diff: 10"}));
    EXPECT_THAT(door.trace(), testing::Contains("log 8/5 diff_ml_counter: Enter").Times(2));
    EXPECT_EQ(JsonMemory::in_use(), 0);
    door.now = 1020;
    EXPECT_EQ(statistics_report(), report_of(rates("0", "0"), rates("0", "0")))
        << "compared with the report before, not with the first";
}

TEST_F(MeshStatistics, OfACounterThatWentBackwardsAreZero) {
    carry(2000, 2000, 2000, 2000);
    statistics_report();
    door.now = 1010;
    carry(1000, 3000, 3000, 1000);
    EXPECT_EQ(statistics_report(), report_of(rates("100", "0"), rates("0", "100")));
    door.now = 1020;
    carry(2000, 1000, 1000, 2000);
    EXPECT_EQ(statistics_report(), report_of(rates("0", "100"), rates("100", "0")));
}

TEST_F(MeshStatistics, WithinOneSecondAreZero) {
    carry(0, 0, 0, 0);
    statistics_report();
    carry(1000, 1000, 1000, 1000);
    EXPECT_EQ(statistics_report(), report_of(rates("0", "0"), rates("0", "0")));
    EXPECT_EQ(door.trace().back(), "log 8/4 create_ml_sta_json: diff: tx:0, rx: 0, diff: 0");
}

TEST_F(MeshStatistics, AfterAClockThatWasSetBackAreNegative) {
    carry(0, 0, 0, 0);
    statistics_report();
    door.now = 990;
    carry(1000, 1000, 1000, 1000);
    EXPECT_EQ(statistics_report(), report_of(rates("-100", "-100"), rates("-100", "-100")));
}

TEST_F(MeshStatistics, HoldTheGreatestCounters) {
    carry(LLONG_MIN, LLONG_MIN, LLONG_MIN, LLONG_MIN);
    statistics_report();
    door.now = 1001;
    carry(LLONG_MAX, LLONG_MAX, LLONG_MAX, LLONG_MAX);
    const std::string most = std::to_string(LLONG_MAX);
    EXPECT_EQ(statistics_report(), report_of(rates(most, most), rates(most, most)));
    door.now = 1002;
    carry(LLONG_MIN, LLONG_MIN, LLONG_MIN, LLONG_MIN);
    EXPECT_EQ(statistics_report(), report_of(rates("0", "0"), rates("0", "0")));
    answer_all_sta(station(child, "99999999999999999999999", "1"));
    EXPECT_NE(statistics_report(), "NULL");
}

TEST_F(MeshStatistics, ReferencesOfAReportAreAllItsOwn) {
    json_t* report = ops.create_ml_statistics_report();
    ASSERT_NE(report, nullptr);
    EXPECT_EQ(report->refcount, 1U);
    for (const char* name : {"ML VAP", "ML STA"}) {
        json_t* links = json_object_get(report, name);
        EXPECT_EQ(links->refcount, 1U) << name;
        EXPECT_EQ(json_array_get(links, 0)->refcount, 1U) << name;
    }
    json_decref(report);
    EXPECT_EQ(JsonMemory::in_use(), 0);
}

TEST_F(MeshStatistics, AreAlsoFoundByName) {
    auto* report = exported<json_t*()>("create_ml_statistics_report");
    ASSERT_NE(report, nullptr);
    EXPECT_EQ(report, ops.create_ml_statistics_report);
}

TEST_F(MeshStatistics, AreNoneWithoutAnEnabledMeshVap) {
    configure("wireless.wifi1vap1.disabled", "1");
    EXPECT_EQ(statistics_report(), "NULL");
    EXPECT_THAT(door.trace(),
                ElementsAre("log 8/5 create_ml_statistics_report: Enter",
                            "log 8/5 is_ml_enable: Enter",
                            "log 8/5 get_ml_vap_uci_interface_name: Enter",
                            "log 8/3 create_ml_statistics_report: NVX-ML is disabled"));
}

TEST_F(MeshStatistics, NameTheMeshVap) {
    carry_links_on(0, 7);
    const std::string report = statistics_report();
    EXPECT_THAT(report, HasSubstr(R"("MAC Address":"04:11:22:33:44:40","Radio ID":0,"VAP ID":7,)"));
    EXPECT_THAT(report, HasSubstr(R"("ML STA":[{"Radio ID":0,"VAP ID":7,)"));
    EXPECT_THAT(door.trace({"read"}),
                testing::Contains(StartsWith("read hostapd_cli -i ath07 -p /var/run/hostapd-wifi0/ "
                                             "all_sta | grep")));
    EXPECT_THAT(door.trace({"read"}), testing::Contains(StartsWith("read iwinfo ath07 assoclist")));
}

TEST_F(MeshStatistics, AreNoneForARootWithoutLinks) {
    answer_portal("Y\n");
    answer_all_sta("");
    EXPECT_EQ(statistics_report(), "NULL");
    EXPECT_EQ(door.trace().back(),
              "log 8/4 create_ml_statistics_report: no statistics data, skipped.");
    EXPECT_THAT(errors(), IsEmpty());
    EXPECT_EQ(JsonMemory::in_use(), 0);
}

TEST_F(MeshStatistics, OfALeafHaveTheLinkUpwardOnly) {
    answer_all_sta("");
    EXPECT_THAT(statistics_report(), StartsWith(R"({"ML VAP":[],"ML STA":[{"Radio ID":1,)"));
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(MeshStatistics, CountEveryLinkOfTheMeshVap) {
    for (int count = 0; count <= 12; count++) {
        std::string stations;
        std::string expected;
        for (int i = 0; i < count; i++) {
            const std::string number = std::to_string(10 + i);
            stations += station("06:00:00:00:" + number + ":21", std::to_string(1000 * count * i),
                                std::to_string(1000 * count));
            expected +=
                std::string(expected.empty() ? "" : ",") + R"({"MAC Address":"04:00:00:00:)" +
                number + R"(:20","Radio ID":1,"VAP ID":1,)" +
                (i == count - 1 ? rates("0", "0") : rates("1000", std::to_string(1000 * i))) +
                R"(,"Link Speed":0})";
        }
        answer_all_sta(stations);
        door.now++;
        EXPECT_EQ(part("ML VAP"), "[" + expected + "]") << count;
        EXPECT_EQ(JsonMemory::in_use(), 0);
    }
}

TEST_F(MeshStatistics, ForgetALinkThatHasGone) {
    carry(1000, 1000, 0, 0);
    statistics_report();
    answer_all_sta("");
    statistics_report();
    door.now = 1010;
    carry(9000, 9000, 0, 0);
    EXPECT_EQ(statistics_report(), report_of(rates("0", "0"), rates("0", "0")));
}

TEST_F(MeshStatistics, CompareADeviceWithEachOfItsLinks) {
    const std::string other_interface = "06:11:22:33:44:5f"; // of the same device
    answer_all_sta(station(child, "0", "1000") + station(other_interface, "0", "3000"));
    statistics_report();
    door.now = 1010;
    answer_all_sta(station(child, "0", "5000"));
    door.forget();
    EXPECT_EQ(part("ML VAP"), R"([{"MAC Address":"04:11:22:33:44:40","Radio ID":1,"VAP ID":1,)" +
                                  rates("400", "0") + R"(,"Link Speed":908591104},)" +
                                  R"({"MAC Address":"04:11:22:33:44:40","Radio ID":1,"VAP ID":1,)" +
                                  rates("200", "0") + R"(,"Link Speed":908591104}])");
    EXPECT_THAT(door.trace(), testing::Not(testing::Contains(HasSubstr("new: "))));
}

TEST_F(MeshStatistics, SkipStationsThatHostapdDoesNotDescribe) {
    const struct {
        std::string listed;
        std::string line;
    } rows[] = {
        {"STAAddress=" + child + "\nrx_bytes=1\ntx_bytes=lots\n", child + " 1 lots"},
        {"STAAddress=" + child + "\nrx_bytes=\ntx_bytes=2\n", child + "  2"},
        {"STAAddress=" + child + "\nrx_bytes=x1\ntx_bytes=2\n", child + " x1 2"},
        {"STAAddress=" + child + "\nrx_bytes=1\n", child + " 1 "},
        {"STAAddress=\nrx_bytes=1\ntx_bytes=2\n", " 1 2"},
        {"STAAddress=\nrx_bytes=\ntx_bytes=\n", "  "},
        {"STAAddress=" + std::string(1000, 'x') + "\nrx_bytes=1\ntx_bytes=2\n",
         std::string(63, 'x')},
    };
    for (const auto& row : rows) {
        answer_all_sta(row.listed);
        door.forget();
        EXPECT_EQ(part("ML VAP"), "[]") << row.line;
        EXPECT_THAT(errors(), ElementsAre("get_ml_vap_counters: invalid output: " + row.line));
    }
    // In the place of the fifth, too, for which the table grows.
    std::string stations;
    for (int i = 0; i < 4; i++) {
        stations += station("06:00:00:00:1" + std::to_string(i) + ":20", "1", "2");
    }
    answer_all_sta(stations + "STAAddress=x\nrx_bytes=?\ntx_bytes=?\n" + station(child, "1", "2"));
    json_t* report = ops.create_ml_statistics_report();
    json_t* links = json_object_get(report, "ML VAP");
    ASSERT_EQ(json_array_size(links), 5U);
    EXPECT_STREQ(json_string_value(json_object_get(json_array_get(links, 4), "MAC Address")),
                 "04:11:22:33:44:40");
    json_decref(report);
}

TEST_F(MeshStatistics, AreNoneWhenTheLinksCannotBeRead) {
    door.fail(Call::popen, 1);
    EXPECT_EQ(statistics_report(), "NULL");
    const Trace lines = errors();
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0], "get_ml_vap_counters: failed to execute " + links_command);
    EXPECT_EQ(lines[1], "create_ml_vap_json: failed to get ml vap counter information");
    EXPECT_THAT(lines[2],
                testing::MatchesRegex("create_ml_statistics_report: failed to get information, "
                                      "vap: \\(nil\\), sta: 0x[0-9a-f]+"));
    EXPECT_THAT(door.trace({"read"}), testing::Contains("read " + traffic_command))
        << "the station is asked all the same";
    EXPECT_EQ(JsonMemory::in_use(), 0);
}

TEST_F(MeshStatistics, AreNoneWhenTheMeshVapIsSwitchedOffMeanwhile) {
    carry_links_on(0, 0); // found at once
    int readings = 0;
    std::set<std::string> reported;
    do { // each reading of its configuration fails once
        readings++;
        door.forget();
        door.fail(Call::uci_lookup_ptr, readings);
        statistics_report();
        for (const std::string& line : errors()) {
            reported.insert(line.substr(0, line.find(", vap")));
        }
        EXPECT_EQ(JsonMemory::in_use(), 0);
        ASSERT_LT(readings, 500);
    } while (!door.expects_failure(Call::uci_lookup_ptr));
    EXPECT_THAT(reported,
                ElementsAre("create_ml_sta_json: failed to get ml sta counter information",
                            "create_ml_statistics_report: failed to get information",
                            "create_ml_vap_json: failed to get ml vap counter information",
                            "get_ml_sta_counter: failed to get radio/vap id",
                            "get_ml_vap_counters: failed to get NVX-ML vap"));
}

TEST_F(MeshStatistics, KeepTheSampleOfAPartThatFails) {
    carry(1000, 1000, 1000, 1000);
    statistics_report();
    door.now = 1005;
    carry(9000, 9000, 9000, 9000);
    door.fail(Call::popen, 1); // the VAP's part fails, the station's succeeds
    EXPECT_EQ(statistics_report(), "NULL");
    door.now = 1010;
    carry(11000, 21000, 9500, 9000);
    EXPECT_EQ(statistics_report(), report_of(rates("2000", "1000"), rates("0", "100")));
    door.now = 1015;
    door.fail(Call::popen, 4); // now the station's fails
    EXPECT_EQ(statistics_report(), "NULL");
    door.now = 1020;
    carry(16000, 21000, 10500, 9000);
    EXPECT_EQ(statistics_report(), report_of(rates("0", "1000"), rates("0", "100")));
}

TEST_F(MeshStatistics, KeepTheSampleOfAPartWithAnEntryThatCannotBeMade) {
    statistics_report();
    door.now = 1010;
    carry(1000, 1000, 1000, 1000);
    JsonMemory::fail(3); // an array takes two allocations; the VAP's entry comes behind one
    EXPECT_EQ(statistics_report(), "NULL");
    EXPECT_EQ(errors()[0], "create_ml_vap_json: failed to create ml vap item");
    door.now = 1020;
    carry(3000, 3000, 3000, 3000);
    EXPECT_EQ(statistics_report(), report_of(rates("150", "150"), rates("200", "200")));
    door.now = 1030;
    carry(4000, 4000, 4000, 4000);
    answer_all_sta("");
    door.forget();
    JsonMemory::fail(5); // and the station's behind two, when the VAP has none
    EXPECT_EQ(statistics_report(), "NULL");
    EXPECT_EQ(errors()[0], "create_ml_sta_json: failed to create ml sta item");
    door.now = 1040;
    carry(7000, 7000, 7000, 7000);
    EXPECT_EQ(statistics_report(), report_of(rates("0", "0"), rates("200", "200")));
}

TEST_F(MeshStatistics, AreNoneWithoutMemoryForTheCounters) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "a sanitizer has an allocator of its own";
#endif
    std::string stations;
    for (int i = 0; i < 6; i++) {
        stations += station("06:00:00:00:1" + std::to_string(i) + ":20", "1", "2");
    }
    answer_all_sta(stations);
    const struct {
        int allocation;
        const char* step;
    } rows[] = {
        {1, "get_ml_vap_counters"}, // room for four
        {2, "get_ml_vap_counters"}, // for the fifth
        {3, "get_ml_vap_counters"}, // for the sixth
        {4, "get_ml_sta_counter"},
    };
    for (const auto& row : rows) {
        door.forget();
        door.fail(Call::realloc, row.allocation);
        EXPECT_EQ(statistics_report(), "NULL") << row.allocation;
        ASSERT_EQ(errors().size(), 3U);
        EXPECT_EQ(errors()[0], std::string(row.step) + ": failed to allocate memory");
        EXPECT_EQ(JsonMemory::in_use(), 0);
    }
    door.fail(Call::realloc, 5);
    EXPECT_NE(statistics_report(), "NULL");
    EXPECT_TRUE(door.expects_failure(Call::realloc)) << "four allocations are all";
}

TEST_F(MeshStatistics, LoseNoMemoryWhereverItRunsOut) {
    bool complete = false;
    std::set<std::string> reported;
    statistics_report();
    for (int n = 1; !complete; n++) {
        answer_all_sta(station(child, "0", "0") +
                       station("06:00:00:00:00:" + std::to_string(10 + n % 80), "0", "0"));
        door.forget();
        JsonMemory::fail(n);
        statistics_report();
        complete = !JsonMemory::has_failed();
        EXPECT_EQ(JsonMemory::in_use(), 0) << n;
        for (const std::string& line : errors()) {
            reported.insert(line.substr(0, line.find(", vap")));
        }
        ASSERT_LT(n, 200);
    }
    EXPECT_THAT(reported, ElementsAre("create_ml_sta_json: failed to create ml sta item",
                                      "create_ml_sta_json: failed to get JSON array",
                                      "create_ml_statistics_report: failed to get information",
                                      "create_ml_statistics_report: failed to pack JSON",
                                      "create_ml_vap_json: failed to create ml vap item",
                                      "create_ml_vap_json: failed to get JSON array"));
}

} // namespace orlo::test
