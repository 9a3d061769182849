// SPDX-License-Identifier: MIT
// The port at which the agent hears of associated clients.
#pragma once

#include <string>
#include <vector>

namespace orlo::test {

class AgentPort {
public:
    AgentPort();
    ~AgentPort();
    AgentPort(const AgentPort&) = delete;
    AgentPort& operator=(const AgentPort&) = delete;

    // The datagrams that came since.
    std::vector<std::string> received() const;

private:
    int socket_;
};

} // namespace orlo::test
