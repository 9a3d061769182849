// SPDX-License-Identifier: MIT
#include "clients/agent_port.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace orlo::test {

AgentPort::AgentPort() : socket_(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(36000);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
}

AgentPort::~AgentPort() {
    close(socket_);
}

std::vector<std::string> AgentPort::received() const {
    std::vector<std::string> datagrams;
    char buffer[8192];
    ssize_t size = 0;
    while ((size = recv(socket_, buffer, sizeof buffer, MSG_DONTWAIT)) >= 0) {
        datagrams.emplace_back(buffer, static_cast<size_t>(size));
    }
    return datagrams;
}

} // namespace orlo::test
