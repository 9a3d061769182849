// SPDX-License-Identifier: MIT
// The traffic counters of the access point, and what they say of its traffic per second.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "library.h"

namespace orloctl {

enum TrafficKind { rx_bytes, rx_packets, rx_errors, tx_bytes, tx_packets, tx_errors };
constexpr size_t traffic_kinds = 6;

using Counts = std::array<std::optional<uint64_t>, traffic_kinds>; // nothing: not counted
using Rates = std::array<std::optional<double>, traffic_kinds>;    // nothing: not known

struct TrafficRow {
    std::optional<int> radio; // neither radio nor VAP: the wired ports together
    std::optional<int> vap;
    Counts counts;

    std::string name() const;
};

// The wired ports, the radios, the VAPs; of these the enabled ones, or all.
std::vector<TrafficRow> read_traffic(const Library& library, bool all);

// Per second, between two readings of the same counters. Not known where a counter has gone back:
// its interface was made anew.
Rates rates(const Counts& before, const Counts& after, double seconds);

} // namespace orloctl
