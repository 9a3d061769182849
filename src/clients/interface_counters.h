// SPDX-License-Identifier: MIT
// The kernel's counters of network interfaces, read anew whenever they are asked for.
#pragma once

#include <cstdint>

namespace orlo {

// The number in a counter's file; 0 when there is no such file, or nothing in it that is a number.
uint64_t read_counter_file(const char* path);

// What an interface has sent and received, in the order in which it is read.
struct InterfaceCounters {
    uint64_t tx_bytes;
    uint64_t rx_bytes;
    uint64_t tx_packets;
    uint64_t rx_packets;
    uint64_t tx_errors;
    uint64_t rx_errors;
};

// All zero for an interface that does not exist.
InterfaceCounters read_interface_counters(const char* interface);

} // namespace orlo
