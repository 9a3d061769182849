// SPDX-License-Identifier: MIT
// Asking the simulated driver, by a library that was opened at run time.
#pragma once

#include "ioctl_caller.h"
#include "program.h"

#include <cerrno>
#include <gtest/gtest.h>
#include <net/if.h> // must come before linux/wireless.h
#include <string>
#include <sys/socket.h>
#include <unistd.h>

#include <linux/wireless.h>

namespace orlo::test {

const std::string driver_folder = "/var/run/device/driver/";

class DriverRequest : public testing::Test {
protected:
    void SetUp() override { socket_ = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0); }
    void TearDown() override { close(socket_); }

    static iwreq request_for(const std::string& interface) {
        iwreq request{};
        interface.copy(request.ifr_name, sizeof request.ifr_name);
        return request;
    }

    /// 0 or the error number.
    int ask(unsigned long number, iwreq& request) const {
        errno = 0;
        const int result = call_ioctl(socket_, number, &request);
        EXPECT_EQ(result, errno == 0 ? 0 : -1);
        return errno;
    }

    int ask(unsigned long number, const std::string& interface) const {
        iwreq request = request_for(interface);
        return ask(number, request);
    }

    int socket_ = -1;
};

} // namespace orlo::test
