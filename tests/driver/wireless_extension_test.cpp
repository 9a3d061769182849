// SPDX-License-Identifier: MIT
// What the library asks the driver about an interface.
#include "support/access_point.h"

#include <fcntl.h>
#include <linux/wireless.h>
#include <sys/socket.h>

namespace orlo::test {

class DriverQuery : public AccessPoint {
protected:
    decltype(::wext_probe)* const probe = exported<decltype(::wext_probe)>("wext_probe");
    decltype(::iwinfo_ioctl)* const request = exported<decltype(::iwinfo_ioctl)>("iwinfo_ioctl");

    static int channel_of(const char* interface) {
        uint32_t channel = 4711;
        const int result =
            exported<decltype(::mwl_get_channel)>("mwl_get_channel")(interface, &channel);
        EXPECT_TRUE(result == 0 || channel == 4711) << "a failed query leaves the channel alone";
        return result == 0 ? static_cast<int>(channel) : result;
    }

    static int socket_option(int socket, int option) {
        int value = -1;
        socklen_t size = sizeof value;
        getsockopt(socket, SOL_SOCKET, option, &value, &size);
        return value;
    }

    static std::string bssid_of(const char* interface) {
        unsigned char bssid[7] = {};
        if (exported<decltype(::mwl_get_bssid)>("mwl_get_bssid")(interface, bssid) != 0) {
            return "none";
        }
        char text[32];
        snprintf(text, sizeof text, "%02x:%02x:%02x:%02x:%02x:%02x %d", bssid[0], bssid[1],
                 bssid[2], bssid[3], bssid[4], bssid[5], bssid[6]);
        return text;
    }
};

TEST_F(DriverQuery, AWirelessInterfaceAnswersToItsName) {
    EXPECT_EQ(probe("wdev0"), 1);
    EXPECT_EQ(probe("mon.wdev0"), 1) << "a monitor is asked by its interface's name";
    EXPECT_EQ(probe("eth0"), 0);
    tell_driver("wdev0", "name IEEE 802.11ax\nfail name EOPNOTSUPP\n");
    EXPECT_EQ(probe("wdev0"), 0);
}

TEST_F(DriverQuery, ASmallMantissaIsTheChannelItself) {
    tell_driver("wdev1", "frequency 36 0\nfail range EINVAL\n");
    EXPECT_EQ(channel_of("wdev1"), 36);
    tell_driver("wdev1", "frequency 999 0\nfail range EINVAL\n");
    EXPECT_EQ(channel_of("wdev1"), 999);
    tell_driver("wdev1", "frequency 1000 0\nfail range EINVAL\n");
    EXPECT_EQ(channel_of("wdev1"), -1) << "a frequency needs the list of channels";
    tell_driver("wdev1", "frequency 0 0\nfail range EINVAL\n");
    EXPECT_EQ(channel_of("wdev1"), 0);
    tell_driver("wdev1", "frequency -7 0\nfail range EINVAL\n");
    EXPECT_EQ(channel_of("wdev1"), -7) << "as the driver says";
}

TEST_F(DriverQuery, AFrequencyIsLookedUpInTheListOfChannels) {
    tell_driver("wdev1", "frequency 5180 6\nrange 40:5200:6 36:518000000:1 44:5220:6\n");
    EXPECT_EQ(channel_of("wdev1"), 36) << "other mantissa and exponent, same frequency";
    tell_driver("wdev1", "frequency 518000000 1\nrange 36:5180:6\n");
    EXPECT_EQ(channel_of("wdev1"), 36);
    tell_driver("wdev1", "frequency 5180 -3\nrange 36:5180:0\n");
    EXPECT_EQ(channel_of("wdev1"), 36) << "an exponent below zero counts as none";
    tell_driver("wdev1", "frequency 5180 6\nrange 36:5180:6 99:5180:6\n");
    EXPECT_EQ(channel_of("wdev1"), 36) << "the first match counts";
    tell_driver("wdev1", "frequency 5805 6\nrange 36:5180:6 40:5200:6\n");
    EXPECT_EQ(channel_of("wdev1"), -1) << "not in the list";
}

TEST_F(DriverQuery, TheListOfChannelsMayBeFull) {
    std::string range = "range";
    for (int i = 1; i <= 32; i++) {
        range += " " + std::to_string(100 + i) + ":" + std::to_string(5000 + i) + ":6";
    }
    tell_driver("wdev1", "frequency 5032 6\n" + range + "\n");
    EXPECT_EQ(channel_of("wdev1"), 132);
}

TEST_F(DriverQuery, AListThatSaysMoreThanItHoldsIsReadToItsEnd) {
    tell_driver("wdev1", "frequency 5805 6\nrange 36:5180:6\nrange-count 255\n");
    EXPECT_EQ(channel_of("wdev1"), -1);
    tell_driver("wdev1", "frequency 5200 6\nrange 36:5180:6 40:5200:6\nrange-count 1\n");
    EXPECT_EQ(channel_of("wdev1"), -1) << "and no further than it says";
}

TEST_F(DriverQuery, TheListOfChannelsIsGivenRoomForALargerStructure) {
    const std::string list = "frequency 5180 6\nrange 36:5180:6\n";
    tell_driver("wdev1", list + "range-size 588\n");
    EXPECT_EQ(channel_of("wdev1"), 36);
    tell_driver("wdev1", list + "range-size 589\n");
    EXPECT_EQ(channel_of("wdev1"), -1);
}

TEST_F(DriverQuery, AnExtremeExponentIsNoChannel) {
    tell_driver("wdev1", "frequency 5180 32767\nrange 36:5180:6\n");
    EXPECT_EQ(channel_of("wdev1"), -1);
    tell_driver("wdev1", "frequency 5180 32767\nrange 36:5180:300\n");
    EXPECT_EQ(channel_of("wdev1"), -1) << "nor is it another one";
}

TEST_F(DriverQuery, AVapRunsOnItsRadiosChannel) {
    tell_driver("wdev1", "frequency 44 0\n");
    tell_driver("wdev1ap3", "frequency 149 0\n");
    EXPECT_EQ(channel_of("wdev1ap3"), 44);
    EXPECT_EQ(channel_of("wdev1ap"), -1) << "not a VAP's name: asked as it stands";
    EXPECT_EQ(channel_of("mon.wdev1ap3"), 149) << "a VAP's monitor: asked for itself";
    EXPECT_EQ(channel_of("mon.mon.wdev1"), -1) << "one prefix is dropped";
    tell_driver("wdev1", "frequency 5220 6\nrange 44:5220:6\n");
    tell_driver("wdev1ap3", "frequency 149 0\nrange 149:5220:6\n");
    EXPECT_EQ(channel_of("wdev1ap3"), 44) << "and in its radio's list";
}

TEST_F(DriverQuery, EachRefusedRequestFailsTheChannel) {
    tell_driver("wdev1", "frequency 36 0\nfail freq EINVAL\n");
    EXPECT_EQ(channel_of("wdev1"), -1);
    tell_driver("wdev1", "frequency 5180 6\nrange 36:5180:6\nfail range EINVAL\n");
    EXPECT_EQ(channel_of("wdev1"), -1);
}

TEST_F(DriverQuery, TheBssidIsSixBytes) {
    tell_driver("wdev0ap1", "bssid 02:10:fe:00:ff:7f\n");
    EXPECT_EQ(bssid_of("wdev0ap1"), "02:10:fe:00:ff:7f 0");
    EXPECT_EQ(bssid_of("mon.wdev0ap1"), "02:10:fe:00:ff:7f 0");
    tell_driver("wdev0ap1", "bssid 02:10:fe:00:ff:7f\nfail ap ENODEV\n");
    EXPECT_EQ(bssid_of("wdev0ap1"), "none");
}

TEST_F(DriverQuery, ANameOfSixteenCharactersOrMoreIsCut) {
    tell_driver("wdev0ap1", "bssid 02:10:fe:00:ff:7f\n");
    EXPECT_EQ(bssid_of("wdev0ap1-and-much-more"), "none");
    tell_driver("sixteen-letters!", "bssid 02:00:00:00:00:16\n");
    EXPECT_EQ(bssid_of("sixteen-letters!"), "02:00:00:00:00:16 0");
    EXPECT_EQ(bssid_of("sixteen-letters!and-more"), "02:00:00:00:00:16 0");
    EXPECT_EQ(bssid_of("mon.sixteen-letters!"), "02:00:00:00:00:16 0");
    tell_driver("sixteen-letters!", "frequency 40 0\n");
    EXPECT_EQ(channel_of("mon.sixteen-letters!"), 40);
}

TEST_F(DriverQuery, ASocketThatCannotBeMadeIsTriedAgain) {
    tell_driver("wdev1", "frequency 36 0\n");
    door.fail(Call::socket);
    iwreq name = {};
    EXPECT_EQ(request(0x1234, &name), -1) << "nothing answers on no socket";
    EXPECT_EQ(channel_of("wdev1"), 36);
}

TEST_F(DriverQuery, TheSocketIsClosedInProgramsThatTheAgentStarts) {
    const int next = dup(0);
    close(next);
    EXPECT_EQ(probe("wdev0"), 1);
    EXPECT_NE(fcntl(next, F_GETFD) & FD_CLOEXEC, 0);
    EXPECT_EQ(socket_option(next, SO_DOMAIN), AF_INET);
    EXPECT_EQ(socket_option(next, SO_TYPE), SOCK_DGRAM);
    EXPECT_EQ(probe("wdev0"), 1);
    EXPECT_EQ(fcntl(next + 1, F_GETFD), -1) << "one socket serves all queries";
}

} // namespace orlo::test
