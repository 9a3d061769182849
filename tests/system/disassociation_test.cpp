// SPDX-License-Identifier: MIT
// Sending a station away from a VAP.
#include "support/access_point.h"

#include <climits>

namespace orlo::test {

class Disassociation : public AccessPoint {
protected:
    const std::string own_ = "log api_disassociate_client: ";
    const std::string to_vap_ = "run /usr/sbin/hostapd_cli -i wdev1ap0 -P /var/run/hostapd.pid "
                                "disassociate ";
};

TEST_F(Disassociation, IsLeftToHostapd) {
    EXPECT_EQ(ops.api_disassociate_client("02:aa:00:00:00:01", 1, 0), 0);
    EXPECT_THAT(door.trace(),
                ElementsAre(own_ + "Entering... vap_id = 0, sta_mac_addr:02:aa:00:00:00:01",
                            to_vap_ + "02:aa:00:00:00:01", own_ + "End..."));
    EXPECT_THAT(journal(), ElementsAre("hostapd_cli -i wdev1ap0 -P /var/run/hostapd.pid "
                                       "disassociate 02:aa:00:00:00:01"));
}

TEST_F(Disassociation, WithoutAnAddressIsNone) {
    EXPECT_EQ(ops.api_disassociate_client(nullptr, 1, 0), 0);
    EXPECT_THAT(door.trace(), ElementsAre(own_ + "sta_mac_addr is NULL"));
}

TEST_F(Disassociation, WithANegativeVapGivesTheShellNothingToDo) {
    for (int vap : {-1, INT_MIN}) {
        door.forget();
        EXPECT_EQ(ops.api_disassociate_client("02:aa:00:00:00:01", 1, vap), 0);
        EXPECT_THAT(door.trace(),
                    ElementsAre(own_ + "Entering... vap_id = " + std::to_string(vap) +
                                    ", sta_mac_addr:02:aa:00:00:00:01",
                                own_ + "Failed to set command.", "run ", own_ + "End..."));
    }
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(Disassociation, ChecksNeitherRadioNorVapNorAddress) {
    ops.api_disassociate_client("x y", -5, INT_MAX);
    EXPECT_THAT(door.trace({"run"}), ElementsAre("run /usr/sbin/hostapd_cli -i wdev-5ap2147483647 "
                                                 "-P /var/run/hostapd.pid disassociate x y"));
    EXPECT_EQ(door.trace().back(), own_ + "Failed to execute command.") << "no such VAP";
}

TEST_F(Disassociation, OnlyNotesACommandThatFails) {
    replace_tool("hostapd_cli", "exit 1");
    EXPECT_EQ(ops.api_disassociate_client("02:aa:00:00:00:01", 1, 0), 0);
    EXPECT_EQ(door.trace().back(), own_ + "Failed to execute command.");
    replace_tool("hostapd_cli", "kill -KILL $PPID");
    EXPECT_EQ(ops.api_disassociate_client("02:aa:00:00:00:01", 1, 0), 0);
    EXPECT_EQ(door.trace().back(), own_ + "Failed to execute command.");
    door.forget();
    door.fail(Call::system);
    EXPECT_EQ(ops.api_disassociate_client("02:aa:00:00:00:01", 1, 0), 0);
    EXPECT_THAT(door.trace(),
                ElementsAre(own_ + "Entering... vap_id = 0, sta_mac_addr:02:aa:00:00:00:01",
                            to_vap_ + "02:aa:00:00:00:01 (failed)",
                            own_ + "Failed to execute command."));
}

TEST_F(Disassociation, CutsItsCommandAt127Characters) {
    const std::string address(300, 'a');
    ops.api_disassociate_client(address.c_str(), 1, 0);
    EXPECT_THAT(door.trace({"run"}), ElementsAre(to_vap_ + std::string(56, 'a')));
    EXPECT_EQ(door.trace().front(), own_ + "Entering... vap_id = 0, sta_mac_addr:" + address);
}

} // namespace orlo::test
