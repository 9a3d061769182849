// SPDX-License-Identifier: MIT
// Clients, counters, the state of VAPs.
#include "faults/cases.h"

namespace orlo::test {

namespace {

// Counters of the wired ports, of the radios and of VAP 0 of radio 0.
const char* const counters = R"(
    for device in eth0 eth1 wdev0 wdev1 wdev0ap0; do
        mkdir -p /sys/class/net/$device/statistics
        for counter in rx_packets tx_packets rx_bytes tx_bytes rx_errors tx_errors; do
            echo 1000 >/sys/class/net/$device/statistics/$counter
        done
    done)";

// A step is taken for each VAP; fewer of them make each run shorter.
const char* const few_vaps_with_a_station = R"(
    for vap in 3 4 5 6 7 8 9 10 11 12 13 14 15; do
        uci delete wireless.wifi0vap$vap
        uci delete wireless.wifi1vap$vap
    done
    uci commit wireless
    echo a4:5e:60:01:02:03 signal=-52 rate=144 >/var/run/device/stations/wdev0ap0)";

} // namespace

std::vector<Case> client_cases() {
    // clang-format off
    return {
        {49, "api_get_eth_packet_rx", {}, "2000", "open=1000", counters},
        {50, "api_get_eth_bytes_rx", {}, "2000", "open=1000", counters},
        {51, "api_get_eth_multicast_packet_rx", {}, "0", "", counters},
        {52, "api_get_eth_packet_tx", {}, "2000", "open=1000", counters},
        {53, "api_get_eth_bytes_tx", {}, "2000", "open=1000", counters},
        {74, "api_get_neighbors", {}, "0", "open=-1", ": >/tmp/neighbor_ap_list"},
        {75, "api_get_radio_statistics", {}, "0", "open=same", counters},
        {82, "api_generate_assoc_client_file", {}, "0",
            "get=same open=same socket=same ioctl=same memory=same",
            few_vaps_with_a_station},
        {83, "api_get_assoc_client_detail", {}, "0", "socket=-1 send=-1"},
        {84, "api_get_assoc_client_statistics", {}, "0", ""},
        {85, "api_get_vap_ssid", {"0", "0"}, "\"Lobby 2.4 GHz\"", "get=null memory=null"},
        {86, "api_get_vap_status", {"0", "0"}, "1", "read=0 empty=0 endless=same"},
        {87, "api_get_vap_statistics", {}, "0", "open=same", counters},
        {88, "api_get_wlan_bytes_tx", {}, "2000", "open=1000", counters},
        {89, "api_get_wlan_bytes_rx", {}, "2000", "open=1000", counters},
        {90, "api_get_wlan_packet_tx", {}, "2000", "open=1000", counters},
        {91, "api_get_wlan_packet_rx", {}, "2000", "open=1000", counters},
        {92, "api_get_wlan_errors_tx", {}, "2000", "open=1000", counters},
        {93, "api_get_wlan_errors_rx", {}, "2000", "open=1000", counters},
    };
    // clang-format on
}

} // namespace orlo::test
