// SPDX-License-Identifier: MIT
// The status report: where in the mesh this access point is.
#include "meshlink/mesh.h"

#include <jansson.h>
#include <set>

namespace orlo::test {

using MeshStatus = Mesh;

namespace {

const std::string portal_command = "cat /sys/kernel/debug/sta/mesh_is_portal_ap";
const std::string path_command = "/etc/qxw/path_to_root.sh | sed 's/ --- \\?> / /g' | "
                                 "awk '{for(i=NF;i>0;i--) print $i}'";
const std::string children_command = "hostapd_cli -i ath11 -p /var/run/hostapd-wifi1/ list_sta";
const std::string parent_command =
    "cat /sys/kernel/debug/sta/print_mesh_status | sed 's/.*Connected to - //' | "
    "sed 's/ .*Hop count - /,/' | sed 's/ .*Rssi to AP /,/' | cut -d ' ' -f 0";

const char* const branch_report =
    R"({"role":1,"children":["04:11:22:33:44:40","04:aa:bb:cc:dd:e0"],)"
    R"("parent":{"macaddr":"04:00:00:00:00:40","score":47},)"
    R"("path":["04:00:00:00:00:60","04:00:00:00:00:40","04:00:00:00:00:20"]})";

} // namespace

TEST_F(MeshStatus, OfABranchTellsChildrenParentAndPath) {
    EXPECT_EQ(status_report(), branch_report);
    EXPECT_THAT(door.trace(),
                testing::ElementsAreArray(Trace{
                    "log 8/5 create_ml_status_report: Enter",
                    "log 8/5 is_ml_enable: Enter",
                    "log 8/5 get_ml_vap_uci_interface_name: Enter",
                    "log 8/5 get_ml_path: Enter",
                    "log 8/4 get_ml_path: execute " + path_command,
                    "read " + path_command,
                    "log 8/4 get_ml_path: res: 04:00:00:00:00:60",
                    "log 8/4 get_ml_path: add path 04:00:00:00:00:60 to array",
                    "log 8/4 get_ml_path: res: 04:00:00:00:00:40",
                    "log 8/4 get_ml_path: add path 04:00:00:00:00:40 to array",
                    "log 8/4 get_ml_path: res: 04:00:00:00:00:20",
                    "log 8/4 get_ml_path: add path 04:00:00:00:00:20 to array",
                    "log 8/5 get_ml_children: Enter",
                    "log 8/5 get_ml_vap_uci_interface_name: Enter",
                    "log 8/4 get_ml_children: execute " + children_command,
                    "read " + children_command,
                    "log 8/4 get_ml_children: res: 06:11:22:33:44:57",
                    "log 8/5 normalize_ml_mac: Enter",
                    "log 8/4 get_ml_children: add child 04:11:22:33:44:40 to array",
                    "log 8/4 get_ml_children: res: 06:aa:bb:cc:dd:e1",
                    "log 8/5 normalize_ml_mac: Enter",
                    "log 8/4 get_ml_children: add child 04:aa:bb:cc:dd:e0 to array",
                    "log 8/5 get_ml_parent: Enter",
                    "log 8/5 is_ml_root: Enter",
                    "log 8/4 is_ml_root: execute " + portal_command,
                    "read " + portal_command,
                    "log 8/4 is_ml_root: res: N",
                    "log 8/4 get_ml_parent: execute " + parent_command,
                    "read " + parent_command,
                    "log 8/4 get_ml_parent: res: 04:00:00:00:00:5d,2,47",
                    "log 8/5 normalize_ml_parent_mac: Enter",
                    "log 8/4 get_ml_parent: parent: 04:00:00:00:00:40, score 47, hop: 2",
                    "log 8/5 is_ml_root: Enter",
                    "log 8/4 is_ml_root: execute " + portal_command,
                    "read " + portal_command,
                    "log 8/4 is_ml_root: res: N",
                    "log 8/3 create_ml_status_report: role: branch",
                }));
    EXPECT_EQ(JsonMemory::in_use(), 0);
}

TEST_F(MeshStatus, OfALeafTellsParentAndPath) {
    answer_list_sta("");
    EXPECT_EQ(status_report(),
              R"({"role":2,"parent":{"macaddr":"04:00:00:00:00:40","score":47},)"
              R"("path":["04:00:00:00:00:60","04:00:00:00:00:40","04:00:00:00:00:20"]})");
    EXPECT_EQ(door.trace().back(), "log 8/3 create_ml_status_report: role: leaf");
    EXPECT_EQ(JsonMemory::in_use(), 0);
}

TEST_F(MeshStatus, OfTheRootTellsChildrenAndPath) {
    answer_portal("Y\n");
    answer_path("04:00:00:00:00:60\n");
    EXPECT_EQ(status_report(), R"({"role":0,"children":["04:11:22:33:44:40","04:aa:bb:cc:dd:e0"],)"
                               R"("path":["04:00:00:00:00:60"]})");
    EXPECT_THAT(door.trace(), testing::Contains("log 8/3 get_ml_parent: AP is root"));
    EXPECT_THAT(door.trace(), testing::Not(testing::Contains("read " + parent_command)));
    EXPECT_EQ(door.trace().back(), "log 8/3 create_ml_status_report: role: root");
    EXPECT_EQ(JsonMemory::in_use(), 0);
}

TEST_F(MeshStatus, OfARootWithoutChildrenIsStillThatOfARoot) {
    answer_portal("Y\n");
    answer_list_sta("");
    answer_path("04:00:00:00:00:60\n");
    EXPECT_EQ(status_report(), R"({"role":0,"children":[],"path":["04:00:00:00:00:60"]})");
}

TEST_F(MeshStatus, ReferencesOfAReportAreAllItsOwn) {
    json_t* report = ops.create_ml_status_report(nullptr);
    ASSERT_NE(report, nullptr);
    EXPECT_EQ(report->refcount, 1U);
    for (const char* part : {"children", "parent", "path"}) {
        EXPECT_EQ(json_object_get(report, part)->refcount, 1U) << part;
    }
    json_decref(report);
    EXPECT_EQ(JsonMemory::in_use(), 0);
}

TEST_F(MeshStatus, IsAlsoFoundByName) {
    auto* report = exported<json_t*(void*)>("create_ml_status_report");
    ASSERT_NE(report, nullptr);
    EXPECT_EQ(report, ops.create_ml_status_report);
}

TEST_F(MeshStatus, IsNoneWithoutAnEnabledMeshVap) {
    const struct {
        const char* option;
        const char* value;
    } rows[] = {
        {"wireless.wifi1vap1.mode", "ap"},
        {"wireless.wifi1vap1.disabled", "1"},
        {"wireless.wifi1.disabled", "1"},
    };
    for (const auto& row : rows) {
        const std::string before = committed_value(row.option);
        configure(row.option, row.value);
        door.forget();
        EXPECT_EQ(status_report(), "NULL") << row.option;
        EXPECT_THAT(door.trace(),
                    ElementsAre("log 8/5 create_ml_status_report: Enter",
                                "log 8/5 is_ml_enable: Enter",
                                "log 8/5 get_ml_vap_uci_interface_name: Enter",
                                "log 8/3 create_ml_status_report: NVX-ML is disabled"))
            << row.option;
        configure(row.option, before);
    }
}

TEST_F(MeshStatus, IsThatOfTheFirstEnabledMeshVap) {
    const struct {
        int radio;
        int vap;
        const char* question;
    } rows[] = {
        {0, 0, "-i ath0 -p /var/run/hostapd-wifi0/"},
        {0, 1, "-i ath01 -p /var/run/hostapd-wifi0/"},
        {0, 7, "-i ath07 -p /var/run/hostapd-wifi0/"},
        {0, 8, "-i  -p /var/run/hostapd-wifi0/"},
        {1, 0, "-i ath1 -p /var/run/hostapd-wifi1/"},
        {1, 2, "-i ath12 -p /var/run/hostapd-wifi1/"},
        {1, 7, "-i ath17 -p /var/run/hostapd-wifi1/"},
        {1, 15, "-i  -p /var/run/hostapd-wifi1/"},
    };
    for (const auto& row : rows) {
        carry_links_on(row.radio, row.vap);
        door.forget();
        EXPECT_EQ(status_report(), branch_report);
        EXPECT_THAT(
            door.trace({"read"}),
            testing::Contains("read hostapd_cli " + std::string(row.question) + " list_sta"));
    }
    carry_links_on(0, 5);
    for (const char* later : {"wireless.wifi0vap6", "wireless.wifi1vap0"}) {
        configure(std::string(later) + ".mode", "qx_mesh");
        configure(std::string(later) + ".disabled", "0");
    }
    configure("wireless.wifi0vap4.mode", "qx_mesh");
    configure("wireless.wifi0vap4.disabled", "1");
    door.forget();
    status_report();
    EXPECT_THAT(door.trace({"read"}), testing::Contains(HasSubstr("-i ath05 ")));
    configure("wireless.wifi0.disabled", "1");
    door.forget();
    status_report();
    EXPECT_THAT(door.trace({"read"}), testing::Contains(HasSubstr("-i ath1 ")));
}

TEST_F(MeshStatus, NamesEveryInterfaceOfHostapd) {
    for (int radio = 0; radio < 2; radio++) {
        for (int vap = 1; vap < 8; vap++) {
            carry_links_on(radio, vap);
            door.forget();
            status_report();
            EXPECT_THAT(door.trace({"read"}),
                        testing::Contains(HasSubstr("-i ath" + std::to_string(radio) +
                                                    std::to_string(vap) + " ")));
        }
    }
}

TEST_F(MeshStatus, TakesTheAccessPointForTheRootUnlessItIsToldOtherwise) {
    answer_path("04:00:00:00:00:60\n");
    for (const char* answer : {"Y\n", "y\n", "n\n", "1\n", " N\n", "\n", "YN\n"}) {
        answer_portal(answer);
        EXPECT_THAT(status_report(), StartsWith(R"({"role":0,)")) << answer;
    }
    for (const char* answer : {"N\n", "N", "No portal, and much more to be said\nY\n"}) {
        answer_portal(answer);
        EXPECT_THAT(status_report(), StartsWith(R"({"role":1,)")) << answer;
    }
    EXPECT_THAT(door.trace(), testing::Contains("log 8/4 is_ml_root: res: No portal, and "))
        << "15 characters";
}

TEST_F(MeshStatus, TakesTheAccessPointForTheRootWhenThatCannotBeTold) {
    answer_portal("");
    EXPECT_THAT(status_report(), StartsWith(R"({"role":0,)"));
    EXPECT_THAT(errors(), ElementsAre("is_ml_root: failed to get result",
                                      "is_ml_root: failed to get result"));
    answer_portal("N\n");
    door.forget();
    door.fail(Call::popen, 5);
    EXPECT_THAT(status_report(), StartsWith(R"({"role":0,)")) << "although it has a parent";
    EXPECT_THAT(errors(), ElementsAre("is_ml_root: failed to execute " + portal_command));
    EXPECT_EQ(JsonMemory::in_use(), 0);
}

TEST_F(MeshStatus, IsNoneWhenTheNeighboursOfABranchAreNotAllKnown) {
    door.fail(Call::popen, 3); // takes itself for the root while it looks for its parent
    EXPECT_EQ(status_report(), "NULL");
    const Trace lines = errors();
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0], "is_ml_root: failed to execute " + portal_command);
    EXPECT_THAT(lines[1],
                testing::MatchesRegex("create_ml_status_report: insufficient params children: "
                                      "0x[0-9a-f]+, parent: \\(nil\\), path: 0x[0-9a-f]+"));
    EXPECT_EQ(lines[2], "create_ml_status_report: failed to pack JSON");
    EXPECT_EQ(JsonMemory::in_use(), 0);
}

TEST_F(MeshStatus, IsNoneForALeafWithoutAParent) {
    answer_list_sta("");
    answer_mesh_status("Connected to - 00:00:00:00:00:00 Hop count - 0 Rssi to AP 0 dB\n");
    EXPECT_EQ(status_report(), "NULL");
    const Trace lines = errors();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_THAT(lines[0], testing::MatchesRegex("create_ml_status_report: insufficient params "
                                                "parent: \\(nil\\), path: 0x[0-9a-f]+"));
    EXPECT_EQ(lines[1], "create_ml_status_report: failed to pack JSON");
    EXPECT_THAT(door.trace(), testing::Contains("log 8/3 get_ml_parent: AP has no parent"));
    EXPECT_THAT(door.trace(), testing::Contains("log 8/3 create_ml_status_report: role: leaf"));
    EXPECT_EQ(JsonMemory::in_use(), 0);
}

TEST_F(MeshStatus, OfARootIsNoneWhenItsChildrenCannotBeRead) {
    answer_portal("Y\n");
    door.fail(Call::popen, 2);
    EXPECT_EQ(status_report(), "NULL");
    const Trace lines = errors();
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0], "get_ml_children: failed to execute " + children_command);
    EXPECT_THAT(lines[1], testing::MatchesRegex("create_ml_status_report: insufficient params "
                                                "children: \\(nil\\), path: 0x[0-9a-f]+"));
    EXPECT_EQ(lines[2], "create_ml_status_report: failed to pack JSON");
    EXPECT_EQ(JsonMemory::in_use(), 0);
}

TEST_F(MeshStatus, TakesAnAccessPointForALeafWhenItsChildrenCannotBeRead) {
    door.fail(Call::popen, 2);
    EXPECT_THAT(status_report(), StartsWith(R"({"role":2,"parent":)"));
    EXPECT_THAT(errors(), ElementsAre("get_ml_children: failed to execute " + children_command));
    EXPECT_EQ(JsonMemory::in_use(), 0);
}

TEST_F(MeshStatus, IsNoneWithoutAPath) {
    answer_path("");
    EXPECT_EQ(status_report(), "NULL");
    EXPECT_THAT(errors(), ElementsAre("create_ml_status_report: no path information"));
    EXPECT_THAT(door.trace({"read"}), testing::SizeIs(4)) << "after everything has been asked";
    EXPECT_EQ(JsonMemory::in_use(), 0);

    answer_path("00:00:00:00:00:00 ---> 00:00:00:00:00:00\n");
    EXPECT_EQ(status_report(), "NULL");

    answer_path("04:00:00:00:00:60\n");
    door.forget();
    door.fail(Call::popen, 1);
    EXPECT_EQ(status_report(), "NULL");
    EXPECT_THAT(errors(), ElementsAre("get_ml_path: failed to execute " + path_command,
                                      "create_ml_status_report: no path information"));
    EXPECT_EQ(JsonMemory::in_use(), 0);
}

TEST_F(MeshStatus, PathIsReadFromTheRootDownInLowerCaseAndWithoutUnknownHops) {
    answer_path("04:AB:CD:EF:00:20 ---> 00:00:00:00:00:00 --- > 04:AB:CD:EF:00:40-station\n");
    EXPECT_THAT(status_report(), HasSubstr(R"("path":["04:ab:cd:ef:00:40","04:ab:cd:ef:00:20"])"));
    EXPECT_THAT(door.trace(),
                testing::IsSupersetOf({"log 8/4 get_ml_path: res: 04:AB:CD:EF:00:40-station",
                                       "log 8/4 get_ml_path: add path 04:ab:cd:ef:00:40 to array",
                                       "log 8/4 get_ml_path: skip 00:00:00:00:00:00"}));
}

TEST_F(MeshStatus, PathTakesWhateverTheScriptPrints) {
    answer_path("x\n" + std::string(1000, 'Y') + "\n\n04:00:00:00:00:60");
    EXPECT_THAT(status_report(),
                HasSubstr(R"("path":["x","yyyyyyyyyyyyyyyyy","04:00:00:00:00:60"])"))
        << "an endless line is one hop";
    EXPECT_THAT(door.trace(),
                testing::Contains("log 8/4 get_ml_path: res: " + std::string(31, 'Y')));
    answer_path("04:00:00:00:00:60 \xff\xfe\n");
    EXPECT_THAT(status_report(), HasSubstr(R"("path":["04:00:00:00:00:60"])"))
        << "what is no text is left out";
    EXPECT_EQ(JsonMemory::in_use(), 0);
}

TEST_F(MeshStatus, ChildrenAreNamedByTheirDevice) {
    const struct {
        const char* line;
        const char* child;
    } rows[] = {
        {"06:11:22:33:44:57", "04:11:22:33:44:40"},  {"04:11:22:33:44:40", "04:11:22:33:44:40"},
        {"FF:FF:FF:FF:FF:FF", "fd:ff:ff:ff:ff:e0"},  {"02:00:00:00:00:1f", "00:00:00:00:00:00"},
        {"06:11:22:33:44:577", "04:11:22:33:44:40"}, {"6:1:2:3:4:ff", "04:01:02:03:04:e0"},
        {"06:11:22", "04:11:22:00:00:00"},           {"", "00:00:00:00:00:00"},
        {"no hostapd", "00:00:00:00:00:00"},         {"FAIL", "f8:00:00:00:00:00"},
        {"06-11-22-33-44-57", "04:00:00:00:00:00"},
    };
    for (const auto& row : rows) {
        answer_list_sta(std::string(row.line) + "\n");
        EXPECT_THAT(status_report(), HasSubstr(R"("children":[")" + std::string(row.child) + "\"]"))
            << row.line;
    }
    answer_list_sta(std::string(1000, '7') + "\n06:11:22:33:44:57");
    json_t* report = ops.create_ml_status_report(nullptr);
    EXPECT_EQ(json_array_size(json_object_get(report, "children")), 2U);
    EXPECT_THAT(door.trace(),
                testing::Contains("log 8/4 get_ml_children: res: " + std::string(31, '7')));
    json_decref(report);
}

TEST_F(MeshStatus, HasAsManyChildrenAsHostapdLists) {
    std::string listed;
    for (int count = 0; count <= 12; count++) {
        answer_list_sta(listed);
        json_t* report = ops.create_ml_status_report(nullptr);
        EXPECT_EQ(json_array_size(json_object_get(report, "children")), static_cast<size_t>(count));
        json_decref(report);
        listed += "06:00:00:00:0" + std::string(1, "0123456789abcdef"[count]) + ":20\n";
    }
    EXPECT_EQ(JsonMemory::in_use(), 0);
}

TEST_F(MeshStatus, ParentKeepsItsFirstOctet) {
    answer_mesh_status("Connected to - 06:11:22:33:44:57 Hop count - 1 Rssi to AP -61 dB\n");
    EXPECT_THAT(status_report(),
                HasSubstr(R"("parent":{"macaddr":"06:11:22:33:44:40","score":-61})"));
}

TEST_F(MeshStatus, HasNoParentAtAHopCountBelowOne) {
    for (const char* hops : {"0", "-1", "-2147483648"}) {
        answer_mesh_status("Connected to - 04:00:00:00:00:5d Hop count - " + std::string(hops) +
                           " Rssi to AP 47 dB\n");
        door.forget();
        EXPECT_EQ(status_report(), "NULL") << hops;
        EXPECT_THAT(door.trace(), testing::Contains("log 8/3 get_ml_parent: AP has no parent"));
    }
}

TEST_F(MeshStatus, HasNoParentWhenTheMeshStatusIsNotUnderstood) {
    const struct {
        std::string status;
        std::string result;
    } rows[] = {
        {"", ""},
        {"\n", ""},
        {"Not connected\n", "Not"},
        {"Connected to - 04:00:00:00:00:5d\n", "04:00:00:00:00:5d"},
        {"Connected to - 04:00:00:00:00:5d Hop count - 2\n", "04:00:00:00:00:5d,2"},
        {"Connected to - 04:00:00:00:00:5d Hop count - many Rssi to AP 47\n",
         "04:00:00:00:00:5d,many,47"},
        {"Connected to - 04:00:00:00:00:5d Hop count - 2 Rssi to AP good\n",
         "04:00:00:00:00:5d,2,good"},
        {"Connected to - ,2,47\n", ",2,47"},
        {std::string(1000, 'x') + ",2,47\n", std::string(63, 'x')},
    };
    answer_list_sta("");
    for (const auto& row : rows) {
        answer_mesh_status(row.status);
        door.forget();
        EXPECT_EQ(status_report(), "NULL") << row.status;
        ASSERT_FALSE(errors().empty());
        EXPECT_EQ(errors()[0], "get_ml_parent: invalid result, " + row.result);
        EXPECT_EQ(JsonMemory::in_use(), 0);
    }
    door.forget();
    door.fail(Call::popen, 4);
    EXPECT_EQ(status_report(), "NULL");
    EXPECT_EQ(errors()[0], "get_ml_parent: failed to execute " + parent_command);
}

TEST_F(MeshStatus, OnlyTheFirstLineOfTheMeshStatusCounts) {
    answer_mesh_status("Connected to - 04:00:00:00:00:5d Hop count - 2 Rssi to AP 47 dB\n"
                       "Connected to - 04:00:00:00:00:7d Hop count - 3 Rssi to AP 20 dB\n");
    EXPECT_EQ(status_report(), branch_report);
}

TEST_F(MeshStatus, LosesNoMemoryWhereverItRunsOut) {
    bool complete = false;
    std::set<std::string> reported;
    for (int n = 1; !complete; n++) {
        door.forget();
        JsonMemory::fail(n);
        const std::string report = status_report();
        complete = !JsonMemory::has_failed();
        EXPECT_EQ(JsonMemory::in_use(), 0) << n;
        for (const std::string& line : errors()) {
            reported.insert(line.substr(0, line.find(" params")));
        }
        ASSERT_LT(n, 200);
    }
    JsonMemory::fail(0);
    EXPECT_THAT(reported, ElementsAre("create_ml_status_report: failed to pack JSON",
                                      "create_ml_status_report: insufficient",
                                      "create_ml_status_report: no path information",
                                      "get_ml_children: failed to create JSON array",
                                      "get_ml_parent: failed to pack JSON",
                                      "get_ml_path: failed to create JSON array"));
    EXPECT_EQ(status_report(), branch_report);
}

} // namespace orlo::test
