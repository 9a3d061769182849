// SPDX-License-Identifier: MIT
// The address under which the access point is managed.
#include "support/access_point.h"

namespace orlo::test {

class ManagementAddress : public AccessPoint {
protected:
    ManagementAddress() { memset(ip_, '#', sizeof ip_); }

    static constexpr const char* command =
        "ifconfig br-lan | grep 'inet addr:' | cut -d':' -f 2 | cut -d' ' -f 1";
    const std::string own_ = "log api_get_management_ip: ";
    char ip_[160];
};

TEST_F(ManagementAddress, IsTheBridges) {
    replace_tool("ifconfig", "echo '   inet addr:10.1.2.3  Bcast:10.1.255.255'; echo more");
    EXPECT_EQ(ops.api_get_management_ip(ip_), 0);
    EXPECT_STREQ(ip_, "10.1.2.3");
    EXPECT_THAT(journal(), ElementsAre("ifconfig br-lan"));
    EXPECT_THAT(door.trace(),
                ElementsAre(std::string("read ") + command, own_ + "will return ip: 10.1.2.3",
                            own_ + "End... return ip:10.1.2.3 ret:0"));
}

TEST_F(ManagementAddress, OfABridgeThatIsNotThereIsTheCommandItself) {
    write_file("/var/run/device/interfaces", "lo up - 127.0.0.1 255.0.0.0\n");
    EXPECT_EQ(ops.api_get_management_ip(ip_), 0);
    EXPECT_STREQ(ip_, command);
}

TEST_F(ManagementAddress, OfABridgeWithoutOneIsTheCommandItself) {
    write_file("/var/run/device/interfaces", "br-lan up 02:00:00:00:ff:01\n");
    EXPECT_EQ(ops.api_get_management_ip(ip_), 0);
    EXPECT_STREQ(ip_, command);
}

TEST_F(ManagementAddress, ThatCannotBeAskedForIsTheCommandItself) {
    door.fail(Call::popen);
    EXPECT_EQ(ops.api_get_management_ip(ip_), 0);
    EXPECT_STREQ(ip_, command);
    EXPECT_THAT(door.trace(), ElementsAre(std::string("read ") + command + " (failed)",
                                          own_ + "will return ip: " + command,
                                          own_ + "End... return ip:" + command + " ret:0"));
}

TEST_F(ManagementAddress, Takes128BytesOfTheAgentsBufferAtMost) {
    replace_tool("ifconfig", "echo inet addr:" + std::string(300, '1'));
    EXPECT_EQ(ops.api_get_management_ip(ip_), 0);
    EXPECT_EQ(std::string(ip_), std::string(127, '1'));
    EXPECT_EQ(std::string(ip_ + 128, 32), std::string(32, '#'));
}

TEST_F(ManagementAddress, IsOnlyLoggedWhereThereIsNoBuffer) {
    EXPECT_EQ(ops.api_get_management_ip(nullptr), 0);
    EXPECT_THAT(door.trace({"log"}), ElementsAre(own_ + "will return ip: 192.168.1.20",
                                                 own_ + "End... return ip:NULL ret:0"));
}

} // namespace orlo::test
