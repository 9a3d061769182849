// SPDX-License-Identifier: MIT
// The simulated driver, asked by a library that was opened at run time.
#include "driver_request.h"

#include <cstring>
#include <fcntl.h>
#include <memory>
#include <net/if_arp.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>

using namespace orlo::test;

namespace {

class Driver : public DriverRequest {
protected:
    iw_freq frequency(const std::string& interface) const {
        iwreq request = request_for(interface);
        EXPECT_EQ(ask(SIOCGIWFREQ, request), 0);
        return request.u.freq;
    }
};

TEST_F(Driver, tells_the_protocol_of_an_interface) {
    for (const char* name : {"wdev0", "wdev1", "wdev0ap0", "wdev1ap15"}) {
        iwreq request = request_for(name);
        ASSERT_EQ(ask(SIOCGIWNAME, request), 0);
        EXPECT_STREQ(request.u.name, "IEEE 802.11");
    }
}

TEST_F(Driver, cuts_a_long_protocol_name) {
    write_file(driver_folder + "wdev0", "name 0123456789abcdefXYZ\n");
    iwreq request = request_for("wdev0");
    ASSERT_EQ(ask(SIOCGIWNAME, request), 0);
    EXPECT_STREQ(request.u.name, "0123456789abcde");
}

TEST_F(Driver, an_interface_without_a_protocol_is_not_wireless) {
    write_file(driver_folder + "wdev0", "");
    EXPECT_EQ(ask(SIOCGIWNAME, "wdev0"), EOPNOTSUPP);
}

TEST_F(Driver, reports_the_channel_as_a_number) {
    EXPECT_EQ(frequency("wdev0").m, 6);
    EXPECT_EQ(frequency("wdev1").m, 36);
    EXPECT_EQ(frequency("wdev1").e, 0);
    EXPECT_EQ(frequency("wdev1ap3").m, 36);
}

TEST_F(Driver, reports_the_channel_that_iwconfig_set) {
    shell("iwconfig wdev1 channel 149");
    EXPECT_EQ(frequency("wdev1").m, 149);
    EXPECT_EQ(frequency("wdev0").m, 6);
}

TEST_F(Driver, has_no_channel_while_the_radio_has_none) {
    unlink("/var/run/device/radio1/channel");
    EXPECT_EQ(ask(SIOCGIWFREQ, "wdev1"), EINVAL);
    write_file("/var/run/device/radio1/channel", "off\n");
    EXPECT_EQ(ask(SIOCGIWFREQ, "wdev1"), EINVAL);
}

TEST_F(Driver, reports_a_frequency_instead_when_told_so) {
    write_file(driver_folder + "wdev1", "frequency 518000000 1\n");
    EXPECT_EQ(frequency("wdev1").m, 518000000);
    EXPECT_EQ(frequency("wdev1").e, 1);
    write_file(driver_folder + "wdev1", "frequency -5 -2\n");
    EXPECT_EQ(frequency("wdev1").m, -5);
    EXPECT_EQ(frequency("wdev1").e, -2);
}

TEST_F(Driver, refuses_frequencies_that_the_kernel_cannot_carry) {
    for (const char* text : {"5180000000 0", "518", "518 x", "518 40000", "5 1x"}) {
        write_file(driver_folder + "wdev1", std::string("frequency ") + text + "\n");
        EXPECT_EQ(ask(SIOCGIWFREQ, "wdev1"), EINVAL) << text;
    }
}

TEST_F(Driver, lists_the_frequencies_of_the_band) {
    // As long as callers offer, which is more than the structure.
    alignas(iw_range) unsigned char buffer[588] = {};
    iwreq request = request_for("wdev1");
    request.u.data.pointer = buffer;
    request.u.data.length = sizeof buffer;
    EXPECT_EQ(ask(SIOCGIWRANGE, request), 0);
    EXPECT_EQ(request.u.data.length, sizeof(iw_range));
    iw_range range{};
    memcpy(&range, buffer, sizeof range);
    EXPECT_EQ(range.num_frequency, 25);
    EXPECT_EQ(range.freq[0].i, 36);
    EXPECT_EQ(range.freq[0].m, 5180);
    EXPECT_EQ(range.freq[0].e, 6);
    EXPECT_EQ(range.freq[24].i, 165);
    EXPECT_EQ(range.freq[24].m, 5825);
    EXPECT_EQ(range.freq[25].m, 0);
}

TEST_F(Driver, lists_32_frequencies_at_most) {
    std::string line = "range";
    for (int channel = 1; channel <= 40; channel++) {
        line += " " + std::to_string(channel) + ":" + std::to_string(5000 + channel) + ":6";
    }
    write_file(driver_folder + "wdev1", line + "\n");
    iw_range range{};
    iwreq request = request_for("wdev1");
    request.u.data.pointer = &range;
    request.u.data.length = sizeof range;
    EXPECT_EQ(ask(SIOCGIWRANGE, request), 0);
    EXPECT_EQ(range.num_frequency, 32);
    EXPECT_EQ(range.freq[31].i, 32);
}

TEST_F(Driver, never_writes_more_than_the_caller_offers) {
    const size_t offered = sizeof(iw_range) - 1;
    const auto buffer = std::make_unique<unsigned char[]>(offered);
    iwreq request = request_for("wdev1");
    request.u.data.pointer = buffer.get();
    request.u.data.length = static_cast<decltype(request.u.data.length)>(offered);
    EXPECT_EQ(ask(SIOCGIWRANGE, request), E2BIG);
    for (size_t i = 0; i < offered; i++) {
        ASSERT_EQ(buffer[i], 0);
    }
}

TEST_F(Driver, refuses_a_list_it_cannot_read) {
    for (const char* text :
         {"36", "36:5180", "300:5180:6", "36:5180000000:0", "36:5180:6:1", ":"}) {
        write_file(driver_folder + "wdev1", std::string("range ") + text + "\n");
        iw_range range{};
        iwreq request = request_for("wdev1");
        request.u.data.pointer = &range;
        request.u.data.length = sizeof range;
        EXPECT_EQ(ask(SIOCGIWRANGE, request), EINVAL) << text;
    }
}

TEST_F(Driver, has_a_bssid_for_each_vap) {
    iwreq request = request_for("wdev1ap10");
    EXPECT_EQ(ask(SIOCGIWAP, request), 0);
    EXPECT_EQ(request.u.ap_addr.sa_family, ARPHRD_ETHER);
    EXPECT_EQ(memcmp(request.u.ap_addr.sa_data, "\x02\0\0\0\x01\x0a", 6), 0);
    EXPECT_EQ(ask(SIOCGIWAP, "wdev1"), EOPNOTSUPP);
}

TEST_F(Driver, refuses_a_bssid_that_is_none) {
    for (const char* text : {"02:00:00:00:01", "02:00:00:00:01:0a:00", "2:00:00:00:01:0a", "x"}) {
        write_file(driver_folder + "wdev0ap0", std::string("bssid ") + text + "\n");
        EXPECT_EQ(ask(SIOCGIWAP, "wdev0ap0"), EINVAL) << text;
    }
}

TEST_F(Driver, fails_the_requests_that_a_test_wants_to_fail) {
    write_file(driver_folder + "wdev0", "name IEEE 802.11\nfail name EIO\nfail freq EINVAL\n"
                                        "fail range ENOMEM\nfail ap EBUSY\n");
    EXPECT_EQ(ask(SIOCGIWNAME, "wdev0"), EIO);
    EXPECT_EQ(ask(SIOCGIWFREQ, "wdev0"), EINVAL);
    EXPECT_EQ(ask(SIOCGIWRANGE, "wdev0"), ENOMEM);
    EXPECT_EQ(ask(SIOCGIWAP, "wdev0"), EBUSY);
    write_file(driver_folder + "wdev0", "name IEEE 802.11\nfail name EMISTYPED\n");
    EXPECT_EQ(ask(SIOCGIWNAME, "wdev0"), EPROTO);
}

TEST_F(Driver, fails_a_request_after_its_answer_when_told_so) {
    write_file(driver_folder + "wdev0", "name late\nfail-after name EIO\n");
    iwreq request = request_for("wdev0");
    EXPECT_EQ(ask(SIOCGIWNAME, request), EIO);
    EXPECT_STREQ(request.u.name, "late");
}

TEST_F(Driver, knows_only_its_own_interfaces) {
    for (const char* name : {"", "eth0", "wdev2", ".", "..", "../driver/wdev0", "mon.wdev0"}) {
        EXPECT_EQ(ask(SIOCGIWNAME, name), ENODEV) << name;
    }
}

TEST_F(Driver, accepts_a_name_of_16_characters_without_a_terminator) {
    write_file(driver_folder + "0123456789abcdef", "name long\n");
    iwreq request = request_for("0123456789abcdef");
    memset(&request.u, 0xff, sizeof request.u);
    ASSERT_EQ(ask(SIOCGIWNAME, request), 0);
    EXPECT_STREQ(request.u.name, "long");
}

TEST_F(Driver, survives_wild_requests) {
    EXPECT_EQ(ask(SIOCGIWENCODE, "wdev0"), EOPNOTSUPP);
    EXPECT_EQ(ask(0x8BFF, "wdev0"), EOPNOTSUPP);
    EXPECT_EQ(ask(SIOCGIWRANGE, "wdev0"), EFAULT);
    EXPECT_EQ(call_ioctl(socket_, SIOCGIWNAME, nullptr), -1);
    EXPECT_EQ(errno, EFAULT);
    iwreq request = request_for("wdev0");
    EXPECT_EQ(call_ioctl(-1, SIOCGIWNAME, &request), -1);
    EXPECT_EQ(errno, EBADF);
    write_file(driver_folder + "wdev0", std::string(100'000, 'x'));
    EXPECT_EQ(ask(SIOCGIWNAME, "wdev0"), EOPNOTSUPP);
    write_file(driver_folder + "wdev0", std::string("name\0x\n\n\n   \nname  \n", 20));
    EXPECT_EQ(ask(SIOCGIWFREQ, "wdev0"), 0);
}

TEST_F(Driver, leaves_wireless_requests_to_the_kernel_without_its_folder) {
    ASSERT_EQ(rename("/var/run/device/driver", "/var/run/device/off"), 0);
    iwreq request = request_for("wdev0");
    EXPECT_EQ(syscall(SYS_ioctl, socket_, SIOCGIWNAME, &request), -1);
    const int refusal_of_the_kernel = errno;
    EXPECT_EQ(ask(SIOCGIWNAME, "wdev0"), refusal_of_the_kernel);
}

TEST_F(Driver, leaves_other_requests_to_the_kernel) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    ASSERT_EQ(write(ends[1], "abc", 3), 3);
    int waiting = 0;
    EXPECT_EQ(call_ioctl(ends[0], FIONREAD, &waiting), 0);
    EXPECT_EQ(waiting, 3);
    close(ends[0]);
    close(ends[1]);
}

TEST_F(Driver, the_loopback_interface_of_the_access_point_is_up) {
    ifreq request{};
    memcpy(request.ifr_name, "lo", 3);
    EXPECT_EQ(call_ioctl(socket_, SIOCGIFFLAGS, &request), 0);
    EXPECT_NE(request.ifr_flags & IFF_UP, 0);
}

} // namespace
