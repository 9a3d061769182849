// SPDX-License-Identifier: MIT
// Announcing the records in /tmp/assoc_client_detail to the agent: a marker for the start, a marker
// for the end.
#include "clients/announcement.h"

#include "common/log.h"
#include "ops/operations.h"
#include "orlo/exports.h"

#include <arpa/inet.h>
#include <cstring>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr uint16_t agent_port = 36000;

constexpr uint8_t client_message = 5;
constexpr size_t head_size = 3; // type, length of the payload
constexpr size_t most_payload = 4100;

constexpr uint8_t start_marker = 1;
constexpr uint8_t end_marker = 2;

bool send_marker(uint8_t kind) {
    assoc_client_record marker = {};
    marker.kind = kind;
    return orlo::send_assoc_client_packet(&marker, sizeof marker) == 0;
}

} // namespace

namespace orlo {

int send_assoc_client_packet(const void* data, int length) {
    if (data == nullptr || length < 0 || static_cast<size_t>(length) > most_payload) {
        return -1;
    }
    const auto size = static_cast<size_t>(length);
    unsigned char datagram[head_size + most_payload] = {};
    datagram[0] = client_message;
    datagram[1] = static_cast<unsigned char>(size & 0xFF);
    datagram[2] = static_cast<unsigned char>(size >> 8);
    memcpy(datagram + head_size, data, size);

    const int channel = socket(AF_INET, SOCK_DGRAM, 0);
    if (channel < 0) {
        LOG_TRACE("error: failed to create socket for associated client.\n");
        return -1;
    }
    sockaddr_in agent = {};
    agent.sin_family = AF_INET;
    agent.sin_port = htons(agent_port);
    agent.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const ssize_t sent = sendto(channel, datagram, head_size + size, 0,
                                reinterpret_cast<const sockaddr*>(&agent), sizeof agent);
    if (sent < 0) {
        LOG_TRACE("error: failed to send associated client data.\n");
    }
    close(channel);
    return sent < 0 ? -1 : 0;
}

} // namespace orlo

int sent_assoc_client_to_orloagent() {
    LOG_TRACE("Entering .... \n");
    if (!send_marker(start_marker) || !send_marker(end_marker)) {
        return -1;
    }
    LOG_TRACE("End .... \n");
    return 0;
}

int api_get_assoc_client_detail() {
    LOG_TRACE("Entering...\n");
    const int result = sent_assoc_client_to_orloagent();
    LOG_TRACE("End... return: %s\n", result == 0 ? "Success" : "Fail");
    return result;
}
