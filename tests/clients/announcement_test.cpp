// SPDX-License-Identifier: MIT
// The datagrams that announce the records of the associated clients, as the agent receives them.
#include "clients/agent_port.h"
#include "support/access_point.h"

#include <unistd.h>

namespace orlo::test {

class Announcement : public AccessPoint {
protected:
    // 05 86 00, and a record that is 0 but for its kind.
    static std::string marker(char kind) {
        std::string datagram(137, '\0');
        datagram.replace(0, 2, "\x05\x86");
        datagram[3 + 60] = kind;
        return datagram;
    }

    static int announce() {
        return exported<decltype(::sent_assoc_client_to_orloagent)>(
            "sent_assoc_client_to_orloagent")();
    }

    static constexpr const char* sent = "send 137 bytes to 127.0.0.1:36000";
    static constexpr const char* entering = "log sent_assoc_client_to_orloagent: Entering .... ";
};

TEST_F(Announcement, IsAMarkerForTheStartAndOneForTheEnd) {
    const AgentPort agent;
    EXPECT_EQ(announce(), 0);
    EXPECT_THAT(agent.received(), ElementsAre(marker(1), marker(2)));
    EXPECT_THAT(door.trace(),
                ElementsAre(entering, sent, sent, "log sent_assoc_client_to_orloagent: End .... "));
}

TEST_F(Announcement, HasNoClientsInIt) {
    const AgentPort agent;
    write_file("/var/run/device/stations/wdev0ap0", "a4:5e:60:01:02:03\n");
    EXPECT_EQ(ops.api_generate_assoc_client_file(), 0);
    EXPECT_THAT(agent.received(), IsEmpty()) << "and writing the files announces nothing";
    EXPECT_EQ(announce(), 0);
    EXPECT_THAT(agent.received(), ElementsAre(marker(1), marker(2)));
}

TEST_F(Announcement, IsTheOperationForTheDetailsOfClients) {
    const AgentPort agent;
    EXPECT_EQ(ops.api_get_assoc_client_detail(), 0);
    EXPECT_THAT(agent.received(), ElementsAre(marker(1), marker(2)));
    EXPECT_THAT(door.trace(),
                ElementsAre("log api_get_assoc_client_detail: Entering...", entering, sent, sent,
                            "log sent_assoc_client_to_orloagent: End .... ",
                            "log api_get_assoc_client_detail: End... return: Success"));
}

TEST_F(Announcement, NeedsNobodyWhoHears) {
    EXPECT_EQ(announce(), 0);
    EXPECT_EQ(announce(), 0);
}

TEST_F(Announcement, EndsWhenASocketCannotBeMade) {
    const std::string message =
        "log send_assoc_client_packet: error: failed to create socket for associated client.";
    const AgentPort agent;
    door.fail(Call::socket);
    EXPECT_EQ(ops.api_get_assoc_client_detail(), -1);
    EXPECT_THAT(agent.received(), IsEmpty());
    EXPECT_THAT(door.trace(),
                ElementsAre("log api_get_assoc_client_detail: Entering...", entering, message,
                            "log api_get_assoc_client_detail: End... return: Fail"));
    door.fail(Call::socket, 2);
    door.forget();
    EXPECT_EQ(announce(), -1) << "each datagram has a socket of its own";
    EXPECT_THAT(agent.received(), ElementsAre(marker(1)));
    EXPECT_THAT(door.trace(), ElementsAre(entering, sent, message));
}

TEST_F(Announcement, EndsWhenADatagramCannotBeSent) {
    const std::string failed = sent + std::string(" (failed)");
    const std::string message =
        "log send_assoc_client_packet: error: failed to send associated client data.";
    const AgentPort agent;
    door.fail(Call::sendto);
    EXPECT_EQ(announce(), -1);
    EXPECT_THAT(agent.received(), IsEmpty());
    EXPECT_THAT(door.trace(), ElementsAre(entering, failed, message));
    door.fail(Call::sendto, 2);
    door.forget();
    EXPECT_EQ(ops.api_get_assoc_client_detail(), -1);
    EXPECT_THAT(agent.received(), ElementsAre(marker(1)));
    EXPECT_THAT(door.trace(),
                ElementsAre("log api_get_assoc_client_detail: Entering...", entering, sent, failed,
                            message, "log api_get_assoc_client_detail: End... return: Fail"));
}

TEST_F(Announcement, LeavesNoSocketOpen) {
    const int next = next_descriptor();
    EXPECT_EQ(announce(), 0);
    EXPECT_EQ(next_descriptor(), next);
    door.fail(Call::sendto);
    EXPECT_EQ(announce(), -1);
    EXPECT_EQ(next_descriptor(), next);
    door.fail(Call::sendto, 2);
    EXPECT_EQ(announce(), -1);
    EXPECT_EQ(next_descriptor(), next);
}

} // namespace orlo::test
