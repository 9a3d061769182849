// SPDX-License-Identifier: MIT
// What the wired ports together, and the radios together, have sent and received so far.
#include "clients/interface_counters.h"
#include "common/log.h"
#include "ops/operations.h"

using orlo::read_counter_file;

namespace {

// The sum of two counters as the bits of a signed count: both count, and add, modulo 2^64.
int64_t sum_counters(const char* operation, const char* first, const char* second,
                     const char* end) {
    LOG_TRACE_FOR(operation, "Entering...\n");
    const uint64_t sum = read_counter_file(first) + read_counter_file(second);
    LOG_TRACE_FOR(operation, end, static_cast<unsigned long long>(sum));
    return static_cast<int64_t>(sum);
}

} // namespace

int64_t api_get_eth_bytes_tx() {
    return sum_counters(__func__, "/sys/class/net/eth0/statistics/tx_bytes",
                        "/sys/class/net/eth1/statistics/tx_bytes", "End... return: %llu\n");
}

int64_t api_get_eth_bytes_rx() {
    return sum_counters(__func__, "/sys/class/net/eth0/statistics/rx_bytes",
                        "/sys/class/net/eth1/statistics/rx_bytes", "End... return: %llu\n");
}

int64_t api_get_eth_packet_tx() {
    return sum_counters(__func__, "/sys/class/net/eth0/statistics/tx_packets",
                        "/sys/class/net/eth1/statistics/tx_packets", "End... return: %llu\n");
}

int64_t api_get_eth_packet_rx() {
    return sum_counters(__func__, "/sys/class/net/eth0/statistics/rx_packets",
                        "/sys/class/net/eth1/statistics/rx_packets", "End... return: %llu\n");
}

// The ports do not count multicast packets.
int64_t api_get_eth_multicast_packet_rx() {
    LOG_TRACE("Entering, not support.\n");
    LOG_TRACE("End...\n");
    return 0;
}

int64_t api_get_wlan_bytes_tx() {
    return sum_counters(__func__, "/sys/class/net/wdev0/statistics/tx_bytes",
                        "/sys/class/net/wdev1/statistics/tx_bytes", "End... wlan_bytes_tx= %llu\n");
}

int64_t api_get_wlan_bytes_rx() {
    return sum_counters(__func__, "/sys/class/net/wdev0/statistics/rx_bytes",
                        "/sys/class/net/wdev1/statistics/rx_bytes", "End... wlan_bytes_rx= %llu\n");
}

int64_t api_get_wlan_packet_tx() {
    return sum_counters(__func__, "/sys/class/net/wdev0/statistics/tx_packets",
                        "/sys/class/net/wdev1/statistics/tx_packets",
                        "End... wlan_packet_tx= %llu\n");
}

int64_t api_get_wlan_packet_rx() {
    return sum_counters(__func__, "/sys/class/net/wdev0/statistics/rx_packets",
                        "/sys/class/net/wdev1/statistics/rx_packets",
                        "End... wlan_packet_rx= %llu\n");
}

int64_t api_get_wlan_errors_tx() {
    return sum_counters(__func__, "/sys/class/net/wdev0/statistics/tx_errors",
                        "/sys/class/net/wdev1/statistics/tx_errors",
                        "End... wlan_errors_tx= %llu\n");
}

int64_t api_get_wlan_errors_rx() {
    return sum_counters(__func__, "/sys/class/net/wdev0/statistics/rx_errors",
                        "/sys/class/net/wdev1/statistics/rx_errors",
                        "End... wlan_errors_rx= %llu\n");
}
