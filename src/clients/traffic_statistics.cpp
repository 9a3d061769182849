// SPDX-License-Identifier: MIT
// The traffic counters of every VAP and of both radios, in the agent's records.
#include "clients/interface_counters.h"
#include "common/identity.h"
#include "common/log.h"
#include "common/text.h"
#include "ops/operations.h"

#include <cstdio>

using orlo::InterfaceCounters;
using orlo::read_interface_counters;
using orlo::Text;

namespace {

using Count = unsigned long long; // as log lines print it

struct LabelledCounter {
    const char* label;
    uint64_t radio_statistics::*counter;
};

// clang-format off
const LabelledCounter labelled_counters[] = {
    {"WLAN Bytes Transmitted: %llu\n", &radio_statistics::tx_bytes},
    {"WLAN Bytes Received: %llu\n", &radio_statistics::rx_bytes},
    {"WLAN Packets Transmitted: %llu\n", &radio_statistics::tx_packets},
    {"WLAN Packets Received: %llu\n", &radio_statistics::rx_packets},
    {"WLAN Transmission Error Counter: %llu\n", &radio_statistics::tx_errors},
    {"WLAN Receiving Error Counter: %llu\n", &radio_statistics::rx_errors},
    {"Transmitted Fragment Count: %llu\n", &radio_statistics::tx_fragments},
    {"Multicast Transmitted Frame Count: %llu\n", &radio_statistics::multicast_tx_frames},
    {"Failed Count: %llu\n", &radio_statistics::failed},
    {"Retry Count: %llu\n", &radio_statistics::retries},
    {"Multiple Retry Count: %llu\n", &radio_statistics::multiple_retries},
    {"Frame Duplicate Count: %llu\n", &radio_statistics::duplicate_frames},
    {"RTS Success Count: %llu\n", &radio_statistics::rts_successes},
    {"RTS Failure Count: %llu\n", &radio_statistics::rts_failures},
    {"ACK Failure Count: %llu\n", &radio_statistics::ack_failures},
    {"Received Fragment Count: %llu\n", &radio_statistics::rx_fragments},
    {"Multicast Received Frame Count: %llu\n", &radio_statistics::multicast_rx_frames},
    {"FCS Error Count: %llu\n", &radio_statistics::fcs_errors},
    {"Transmitted Frame Count: %llu\n", &radio_statistics::tx_frames},
    {"WEP Undecryptable Count: %llu\n", &radio_statistics::wep_undecryptable},
};
// clang-format on

void dump(const radio_statistics* record) {
    for (int radio = 0; radio < orlo::radio_count; radio++) {
        fprintf(stderr, "\nRadio %d ---------\n", radio);
        for (const LabelledCounter& each : labelled_counters) {
            fprintf(stderr, each.label, static_cast<Count>(record[radio].*each.counter));
        }
    }
}

} // namespace

int api_get_vap_statistics(struct vap_statistics* record) {
    LOG_TRACE("Entering...\n");
    if (record == nullptr) {
        return 0;
    }
    for (int radio = 0; radio < orlo::radio_count; radio++) {
        for (int vap = 0; vap < orlo::vaps_per_radio; vap++) {
            const InterfaceCounters now = read_interface_counters(get_mwl_ifname(radio, vap));
            record[radio * orlo::vaps_per_radio + vap] = {now.rx_bytes,  now.rx_packets,
                                                          now.tx_bytes,  now.tx_packets,
                                                          now.rx_errors, now.tx_errors};
            LOG_TRACE("vap[%d][%d]: tx_byts: %llu, rx_byts: %llu, tx_pkts: %llu, rx_pkts: %llu, "
                      "tx_errors: %llu, rx_errors: %llu\n",
                      radio, vap, static_cast<Count>(now.tx_bytes),
                      static_cast<Count>(now.rx_bytes), static_cast<Count>(now.tx_packets),
                      static_cast<Count>(now.rx_packets), static_cast<Count>(now.tx_errors),
                      static_cast<Count>(now.rx_errors));
        }
    }
    LOG_TRACE("End...\n");
    return 0;
}

// The 802.11 counters have no source on this platform: they stay as the agent had them.
int api_get_radio_statistics(struct radio_statistics* record) {
    LOG_TRACE("Entering...\n");
    if (record == nullptr) {
        return 0;
    }
    for (int radio = 0; radio < orlo::radio_count; radio++) {
        const InterfaceCounters now = read_interface_counters(Text<8>("wdev%d", radio));
        record[radio].tx_bytes = now.tx_bytes;
        record[radio].rx_bytes = now.rx_bytes;
        record[radio].tx_packets = now.tx_packets;
        record[radio].rx_packets = now.rx_packets;
        record[radio].tx_errors = now.tx_errors;
        record[radio].rx_errors = now.rx_errors;
    }
    if (is_debug_module_level_enabled(orlo::agent_module, orlo::trace_level) != 0) {
        dump(record);
        fprintf(stderr, "%s(%d) End... return: %s\n", __func__, __LINE__, "Success");
    }
    return 0;
}
