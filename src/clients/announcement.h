// SPDX-License-Identifier: MIT
// Datagrams to the agent.
#pragma once

namespace orlo {

// Sends a payload of at most 4100 bytes. 0, heard or not; -1 when it cannot be sent.
int send_assoc_client_packet(const void* data, int length);

} // namespace orlo
