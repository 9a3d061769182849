// SPDX-License-Identifier: MIT
#include "traffic.h"

namespace orloctl {

namespace {

// The library's sums are signed with the bits of unsigned ones.
uint64_t unsigned_sum(int64_t sum) {
    return static_cast<uint64_t>(sum);
}

TrafficRow ports_row(const vendor_ops& ops) {
    TrafficRow row = {};
    row.counts[rx_bytes] = unsigned_sum(ops.api_get_eth_bytes_rx());
    row.counts[rx_packets] = unsigned_sum(ops.api_get_eth_packet_rx());
    row.counts[tx_bytes] = unsigned_sum(ops.api_get_eth_bytes_tx());
    row.counts[tx_packets] = unsigned_sum(ops.api_get_eth_packet_tx());
    return row;
}

// The records of radios and VAPs name their counters alike.
template <class Record>
Counts counts_of(const Record& record) {
    return {record.rx_bytes, record.rx_packets, record.rx_errors,
            record.tx_bytes, record.tx_packets, record.tx_errors};
}

} // namespace

std::string TrafficRow::name() const {
    if (!radio) {
        return "wired ports";
    }
    const std::string name = "radio " + std::to_string(*radio);
    return vap ? name + " VAP " + std::to_string(*vap) : name;
}

std::vector<TrafficRow> read_traffic(const Library& library, bool all) {
    const vendor_ops& ops = library.ops();
    std::vector<TrafficRow> rows = {ports_row(ops)};
    radio_statistics radios[ORLO_RADIOS] = {};
    ops.api_get_radio_statistics(radios);
    for (int radio = 0; radio < ORLO_RADIOS; radio++) {
        rows.push_back({radio, std::nullopt, counts_of(radios[radio])});
    }
    vap_statistics vaps[ORLO_RADIOS][ORLO_VAPS_PER_RADIO] = {};
    ops.api_get_vap_statistics(&vaps[0][0]);
    const auto& is_enabled = library.symbol<int(int, int)>("is_vap_enabled");
    for (int radio = 0; radio < ORLO_RADIOS; radio++) {
        for (int vap = 0; vap < ORLO_VAPS_PER_RADIO; vap++) {
            if (all || is_enabled(radio, vap) == 1) {
                rows.push_back({radio, vap, counts_of(vaps[radio][vap])});
            }
        }
    }
    return rows;
}

Rates rates(const Counts& before, const Counts& after, double seconds) {
    Rates result = {};
    for (size_t kind = 0; kind < traffic_kinds; kind++) {
        const bool counted = before[kind] && after[kind] && *after[kind] >= *before[kind];
        if (counted && seconds > 0) {
            result[kind] = static_cast<double>(*after[kind] - *before[kind]) / seconds;
        }
    }
    return result;
}

} // namespace orloctl
