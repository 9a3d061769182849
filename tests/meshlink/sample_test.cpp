// SPDX-License-Identifier: MIT
// The mesh of the virtual access point as it comes, with its tools' own answers.
#include "support/access_point.h"

#include <jansson.h>

namespace orlo::test {

class SampleMesh : public AccessPoint {
protected:
    // Sets up a mesh VAP that accepts links and connects upward, and waits for its restart.
    void join_mesh() {
        const mesh_link_vap_settings request = {1, 1, 1, "backhaul", "open sesame"};
        ASSERT_EQ(ops.api_apply_mesh_link_vap(1, &request), 0);
        door.on_sleep = [](int /*sleeps*/) { usleep(10000); };
        ASSERT_EQ(ops.api_save_config(), 0);
        ASSERT_EQ(system("for i in $(seq 200); do [ -e /tmp/orlo_network_restarting ] || exit 0; "
                         "usleep 10000; done; exit 1"),
                  0);
    }

    static std::string text_of(json_t* report) {
        char* text = json_dumps(report, JSON_COMPACT | JSON_ENCODE_ANY);
        std::string copy = text == nullptr ? "NULL" : text;
        free(text);
        json_decref(report);
        return copy;
    }
};

TEST_F(SampleMesh, IsReportedOnceTheAccessPointHasJoinedIt) {
    EXPECT_EQ(ops.create_ml_status_report(nullptr), nullptr);
    EXPECT_EQ(ops.create_ml_statistics_report(), nullptr);
    join_mesh();
    EXPECT_EQ(text_of(ops.create_ml_status_report(nullptr)),
              R"({"role":1,"children":["04:0c:43:20:30:20","04:0c:43:20:40:20"],)"
              R"("parent":{"macaddr":"04:0c:43:20:10:00","score":47},)"
              R"("path":["04:0c:43:20:20:00","04:0c:43:20:10:00","04:0c:43:20:00:00"]})");
    door.now = 1000;
    json_decref(ops.create_ml_statistics_report());
    door.now = 1010;
    write_file("/var/run/device/net-dev", "mesh0: 9971200 0 0 0 0 0 0 0 55100320 0\n");
    write_file("/var/run/device/stations/wdev1ap1",
               "06:0c:43:20:30:31 rate=780 rx-bytes=25610900 tx-bytes=7120460\n");
    EXPECT_EQ(text_of(ops.create_ml_statistics_report()),
              R"({"ML VAP":[{"MAC Address":"04:0c:43:20:30:20","Radio ID":1,"VAP ID":1,)"
              R"("Bytes Transmitted":100000,"Bytes Received":0,"Link Speed":817889280}],)"
              R"("ML STA":[{"Radio ID":1,"VAP ID":1,"Bytes Transmitted":0,)"
              R"("Bytes Received":10000,"Link Speed":908066816}]})");
}

TEST_F(SampleMesh, IsThatOfARootWhenItsPortalSaysSo) {
    join_mesh();
    write_file("/sys/kernel/debug/sta/mesh_is_portal_ap", "Y\n");
    write_file("/var/run/device/mesh-path", "04:0c:43:20:00:00\n");
    EXPECT_EQ(text_of(ops.create_ml_status_report(nullptr)),
              R"({"role":0,"children":["04:0c:43:20:30:20","04:0c:43:20:40:20"],)"
              R"("path":["04:0c:43:20:00:00"]})");
}

} // namespace orlo::test
