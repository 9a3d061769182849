// SPDX-License-Identifier: MIT
// The access point's address on its LAN bridge.
#include "support/access_point.h"

#include <memory>

namespace orlo::test {

class LanAddress : public AccessPoint {
protected:
    std::string get(const char* key) const {
        const std::unique_ptr<char, decltype(&free)> text(ops.api_get_interface(key), free);
        return text == nullptr ? "(NULL)" : text.get();
    }

    static constexpr const char* ip_command =
        "ifconfig br-lan | grep 'inet addr:' | cut -d':' -f 2 | cut -d' ' -f 1";
    static constexpr const char* mask_command =
        "ifconfig br-lan | grep 'inet addr:' | cut -d':' -f4 | cut -d' ' -f 1";

    static void answer_ifconfig(const std::string& line) {
        replace_tool("ifconfig", "echo '          " + line + "'");
    }
};

TEST_F(LanAddress, IsReadFromTheBridge) {
    answer_ifconfig("inet addr:10.1.2.3  Bcast:10.1.255.255  Mask:255.255.0.0");
    EXPECT_EQ(get("ip"), "10.1.2.3");
    EXPECT_EQ(get("mask"), "255.255.0.0");
    EXPECT_THAT(door.trace(), ElementsAre("log api_get_interface: Entering... key:ip",
                                          std::string("read ") + ip_command,
                                          "log api_get_interface: will return ip: 10.1.2.3",
                                          "log api_get_interface: Entering... key:mask",
                                          std::string("read ") + mask_command,
                                          "log api_get_interface: will return mask: 255.255.0.0"));
}

TEST_F(LanAddress, OfTheSampleDeviceIsAnAddressAndAMask) {
    EXPECT_THAT(get("ip"), testing::MatchesRegex("[0-9]+[.][0-9]+[.][0-9]+[.][0-9]+"));
    EXPECT_THAT(get("mask"), testing::MatchesRegex("255[.][0-9]+[.][0-9]+[.]0"));
}

TEST_F(LanAddress, OfABridgeWithoutOneIsTheCommandItself) {
    replace_tool("ifconfig", "exit 1");
    EXPECT_EQ(get("ip"), ip_command);
    EXPECT_EQ(get("mask"), mask_command);
    door.fail(Call::popen);
    EXPECT_EQ(get("ip"), ip_command) << "nor when the command cannot be started";
    EXPECT_EQ(door.trace().back(),
              std::string("log api_get_interface: will return ip: ") + ip_command);
}

TEST_F(LanAddress, IsCutAt127Characters) {
    answer_ifconfig("inet addr:" + std::string(300, '1'));
    EXPECT_EQ(get("ip"), std::string(127, '1'));
    answer_ifconfig("inet addr:10.1.2.3  Bcast:10.1.255.255  Mask:" + std::string(300, '2'));
    EXPECT_EQ(get("mask"), std::string(127, '2'));
}

TEST_F(LanAddress, OfAnUnknownKeyIsEmpty) {
    for (const char* key : {"IP", "", "gateway", static_cast<const char*>(nullptr)}) {
        door.forget();
        EXPECT_EQ(get(key), "");
        const std::string shown = key == nullptr ? "NULL" : key;
        EXPECT_THAT(door.trace(),
                    ElementsAre("log api_get_interface: Entering... key:" + shown,
                                "log api_get_interface: End... unknown key: " + shown));
    }
}

} // namespace orlo::test
