// SPDX-License-Identifier: MIT
// ifconfig on the device, asked through the pipelines that the library uses.
#include "program.h"

#include <gtest/gtest.h>

using namespace orlo::test;

namespace {

std::string line_when_up(const std::string& name) {
    return shell("ifconfig | grep -e '^" + name + " ' | awk '{print $1}'").out;
}

TEST(Interfaces, the_first_vap_of_each_radio_is_up) {
    EXPECT_EQ(line_when_up("wdev0ap0"), "wdev0ap0\n");
    EXPECT_EQ(line_when_up("wdev1ap0"), "wdev1ap0\n");
    EXPECT_EQ(line_when_up("wdev0ap1"), "");
}

TEST(Interfaces, a_vap_appears_when_it_goes_up_and_vanishes_when_it_goes_down) {
    EXPECT_EQ(shell("ifconfig wdev1ap3 up").status, 0);
    EXPECT_EQ(line_when_up("wdev1ap3"), "wdev1ap3\n");
    EXPECT_EQ(shell("ifconfig wdev1ap3 down").status, 0);
    EXPECT_EQ(line_when_up("wdev1ap3"), "");
}

TEST(Interfaces, a_name_of_nine_characters_still_has_a_blank_behind_it) {
    shell("ifconfig wdev0ap15 up");
    EXPECT_EQ(line_when_up("wdev0ap15"), "wdev0ap15\n");
    EXPECT_EQ(line_when_up("wdev0ap1"), "");
}

TEST(Interfaces, the_address_of_the_bridge_is_found) {
    EXPECT_EQ(shell("ifconfig br-lan | grep 'inet addr:' | cut -d':' -f 2 | cut -d' ' -f 1").out,
              "192.168.1.20\n");
    EXPECT_EQ(shell("ifconfig br-lan | grep 'inet addr:' | cut -d':' -f4 | cut -d' ' -f 1").out,
              "255.255.255.0\n");
}

TEST(Interfaces, one_without_an_address_has_no_address_line) {
    EXPECT_EQ(shell("ifconfig wdev0ap0 | grep 'inet addr:'").out, "");
}

TEST(Interfaces, an_interface_is_shown_by_name_also_while_it_is_down) {
    EXPECT_EQ(shell("ifconfig wdev0ap5").out,
              "wdev0ap5  Link encap:Ethernet  HWaddr 02:00:00:00:00:05  \n"
              "          BROADCAST MULTICAST  MTU:1500  Metric:1\n\n");
}

TEST(Interfaces, none_is_shown_and_no_error_when_all_are_down) {
    shell("sed -i 's/ up/ down/' /var/run/device/interfaces");
    const Outcome outcome = shell("ifconfig");
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.status, 0);
}

TEST(Interfaces, all_of_them_are_shown_on_request) {
    EXPECT_EQ(shell("ifconfig -a | grep -c 'Link encap:'").out, "38\n");
    EXPECT_EQ(shell("ifconfig | grep -c 'Link encap:'").out, "7\n");
}

TEST(Interfaces, changing_the_state_keeps_addresses) {
    const std::string before = read_file("/var/run/device/interfaces");
    shell("ifconfig br-lan down");
    EXPECT_EQ(line_when_up("br-lan"), "");
    shell("ifconfig br-lan up");
    EXPECT_EQ(read_file("/var/run/device/interfaces"), before);
}

TEST(Interfaces, an_unknown_one_is_an_error) {
    const Outcome outcome = shell("ifconfig mesh7");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err,
              "ifconfig: mesh7: error fetching interface information: Device not found\n");
    EXPECT_EQ(
        shell("ifconfig ../radio0/channel").err,
        "ifconfig: ../radio0/channel: error fetching interface information: Device not found\n");
    EXPECT_EQ(shell("ifconfig br-lan promisc").err, "ifconfig: unknown command \"promisc\"\n");
}

} // namespace
