// SPDX-License-Identifier: MIT
// The kernel's own counters, where the access point has a network of its own: its loopback takes
// the place of a wired port.
#include "support/access_point.h"

#include <arpa/inet.h>
#include <cstring>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <unistd.h>

namespace orlo::test {

class RealInterface : public AccessPoint {
protected:
    void SetUp() override {
        if (read_file("/etc/virtual-ap") != "namespaces\n") {
            GTEST_SKIP() << "the interfaces are the machine's in this form";
        }
        if (!exists("/mnt/sys")) {
            GTEST_SKIP() << "this machine refuses a view of the interfaces";
        }
        ASSERT_EQ(mount("/mnt/sys", "/sys", "none", MS_BIND, ""), 0) << strerror(errno);
        socket_ = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        ASSERT_GE(socket_, 0);
        ASSERT_TRUE(switch_interface("lo", false));
        ifreq request = request_for("lo");
        memcpy(request.ifr_newname, "eth1", sizeof "eth1");
        ASSERT_EQ(ioctl(socket_, SIOCSIFNAME, &request), 0) << strerror(errno);
        ASSERT_TRUE(switch_interface("eth1", true));
    }

    void TearDown() override { close(socket_); }

    static ifreq request_for(const std::string& name) {
        ifreq request{};
        name.copy(request.ifr_name, sizeof request.ifr_name - 1);
        return request;
    }

    bool switch_interface(const char* name, bool up) const {
        ifreq request = request_for(name);
        if (ioctl(socket_, SIOCGIFFLAGS, &request) != 0) {
            return false;
        }
        const int flags = up ? request.ifr_flags | IFF_UP : request.ifr_flags & ~IFF_UP;
        request.ifr_flags = static_cast<short>(flags);
        return ioctl(socket_, SIOCSIFFLAGS, &request) == 0;
    }

    // Sends datagrams to the socket itself.
    void send(int count, size_t size) const {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        ASSERT_EQ(bind(socket_, reinterpret_cast<sockaddr*>(&address), length), 0);
        ASSERT_EQ(getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &length), 0);
        const std::string payload(size, 'x');
        for (int i = 0; i < count; i++) {
            ASSERT_EQ(sendto(socket_, payload.data(), size, 0,
                             reinterpret_cast<const sockaddr*>(&address), length),
                      static_cast<ssize_t>(size));
        }
    }

    int socket_ = -1;
};

TEST_F(RealInterface, CountsWhatPassesThroughIt) {
    const int64_t packets = ops.api_get_eth_packet_tx();
    const int64_t bytes = ops.api_get_eth_bytes_rx();
    send(5, 100);
    EXPECT_EQ(ops.api_get_eth_packet_tx(), packets + 5);
    EXPECT_EQ(ops.api_get_eth_packet_rx(), packets + 5);
    EXPECT_GE(ops.api_get_eth_bytes_rx(), bytes + 500);
    EXPECT_LE(ops.api_get_eth_bytes_rx(), bytes + 1000);
    EXPECT_EQ(ops.api_get_wlan_bytes_tx(), 0) << "there is no radio";
}

} // namespace orlo::test
