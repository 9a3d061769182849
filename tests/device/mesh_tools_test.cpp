// SPDX-License-Identifier: MIT
// What the device's tools and files say of a mesh, asked through the pipelines that the library
// uses.
#include "program.h"

#include <gtest/gtest.h>

using namespace orlo::test;

namespace {

std::string links_of(const std::string& interface) {
    return shell("hostapd_cli -i " + interface +
                 " -p /var/run/hostapd-wifi1/ all_sta | grep -e bytes -e STAAddress | "
                 "awk -F= '{if(NR%3==0){ORS=\"\\n\"}else{ORS=\" \"} print $2}'")
        .out;
}

std::string first_rate_of(const std::string& interface) {
    return shell("iwinfo " + interface + " assoclist | head -n 3 | awk '{print $2}'").out;
}

TEST(MeshTools, the_stations_of_a_vap_are_listed_while_it_is_up) {
    const std::string command = "hostapd_cli -i ath11 -p /var/run/hostapd-wifi1/ list_sta";
    EXPECT_EQ(shell(command).out, "");
    shell("ifconfig wdev1ap1 up");
    EXPECT_EQ(shell(command).out, "06:0c:43:20:30:31\n06:0c:43:20:40:31\n");
    write_file("/var/run/device/stations/wdev1ap1", "06:AA:00:00:00:01 rate=1\n");
    EXPECT_EQ(shell(command).out, "06:aa:00:00:00:01\n");
    write_file("/var/run/device/stations/wdev1ap1", "");
    EXPECT_EQ(shell(command).out, "");
}

TEST(MeshTools, each_station_has_an_address_and_two_counters) {
    shell("ifconfig wdev1ap1 up");
    EXPECT_EQ(links_of("ath11"), "06:0c:43:20:30:31 25610900 6120460\n"
                                 "06:0c:43:20:40:31 7010050 2900110\n");
    EXPECT_EQ(links_of("wdev1ap1"), links_of("ath11"));
    write_file("/var/run/device/stations/wdev1ap1",
               "06:AA:00:00:00:01 rx-bytes=7 tx-bytes=8\n06:aa:00:00:00:02\n");
    EXPECT_EQ(links_of("ath11"), "06:aa:00:00:00:01 7 8\n06:aa:00:00:00:02 0 0\n");
}

TEST(MeshTools, older_names_are_those_of_the_first_eight_vaps) {
    const struct {
        const char* name;
        const char* interface;
    } rows[] = {{"ath0", "wdev0ap0"}, {"ath01", "wdev0ap1"}, {"ath07", "wdev0ap7"},
                {"ath1", "wdev1ap0"}, {"ath15", "wdev1ap5"}, {"ath17", "wdev1ap7"}};
    for (const auto& row : rows) {
        shell(std::string("ifconfig ") + row.interface + " up");
        write_file(std::string("/var/run/device/stations/") + row.interface,
                   std::string("02:00:00:00:00:01 signal=-40 rate=5 ipv4=") + row.name + "\n");
        EXPECT_EQ(links_of(row.name), "02:00:00:00:00:01 0 0\n") << row.name;
        EXPECT_EQ(first_rate_of(row.name), "-40\n5.0\n5.0\n") << row.name;
    }
    EXPECT_EQ(shell("hostapd_cli -i ath18 list_sta").status, 255);
    EXPECT_EQ(shell("hostapd_cli -i ath00 list_sta").status, 255);
}

TEST(MeshTools, the_rates_of_a_station_are_found_by_its_address) {
    EXPECT_EQ(shell("iwinfo ath11 assoclist | grep -ie 06:0c:43:20:40:31 -A 2").out,
              "06:0C:43:20:40:31  -61 dBm / -95 dBm (SNR 34)  0 ms ago\n"
              "\tRX: 585.0 MBit/s        8841 Pkts.\n"
              "\tTX: 585.0 MBit/s        4400 Pkts.\n");
    EXPECT_EQ(shell("iwinfo wdev1ap9 assoclist").out, "No station connected\n");
}

TEST(MeshTools, the_mesh_station_has_a_parent_and_counters) {
    EXPECT_EQ(first_rate_of("mesh0"), "-48\n866.0\n866.0\n");
    EXPECT_EQ(shell("grep mesh0: /proc/net/dev | awk '{print $2,$10}'").out, "9871200 55100320\n");
}

TEST(MeshTools, grep_is_the_one_of_every_device) {
    EXPECT_EQ(shell("printf 'one\\ntwo\\n' | grep -n w").out, "2:two\n");
    EXPECT_EQ(shell("grep -c root /etc/passwd").out, "1\n");
    EXPECT_EQ(shell("grep nothing /etc/passwd").status, 1);
    EXPECT_NE(shell("grep mesh9: /proc/net/dev").status, 0);
}

TEST(MeshTools, restarting_the_network_starts_the_mesh_station_of_a_vap_that_connects_upward) {
    const std::string listed = "ifconfig | grep -e '^mesh[0-9]' | cut -d ' ' -f 1";
    const std::string restart = "; uci commit; orloagent_apply_settings.sh network-5";
    EXPECT_EQ(shell(listed).out, "");
    shell("uci set wireless.wifi1vap1.mode=qx_mesh; uci set wireless.wifi1vap1.disabled=0" +
          restart);
    EXPECT_EQ(shell(listed).out, "") << "it does not connect";
    shell("uci set wireless.wifi1vap1.connector=1" + restart);
    EXPECT_EQ(shell(listed).out, "mesh0\n");
    shell("uci set wireless.wifi1vap1.mode=ap" + restart);
    EXPECT_EQ(shell(listed).out, "") << "it is no mesh VAP";
}

TEST(MeshTools, the_path_leads_from_here_to_the_root) {
    EXPECT_EQ(shell("/etc/qxw/path_to_root.sh").out,
              "04:0c:43:20:00:00 ---> 04:0c:43:20:10:00 ---> 04:0c:43:20:20:00\n");
    write_file("/var/run/device/mesh-path", "04:0c:43:20:00:00\n");
    EXPECT_EQ(shell("/etc/qxw/path_to_root.sh").out, "04:0c:43:20:00:00\n");
}

} // namespace
