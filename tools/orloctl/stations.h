// SPDX-License-Identifier: MIT
// The associated stations as the library writes them: a detail file, 134 bytes a station.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orloctl {

// What is not known is left out: the channel, the VLAN, and of stations of quilt VAPs the rate.
struct Station {
    int radio;
    int vap;
    std::string bssid;
    std::optional<int> channel;
    std::string mac;
    std::optional<std::string> ipv4;
    std::string ssid;
    std::optional<int> vlan_id;
    std::optional<uint32_t> rate; // Mbit/s
    int32_t signal;               // dBm
    bool area_auth;
};

// Throws a Refusal when the bytes are no detail file; `source` names it there.
std::vector<Station> read_stations(const std::string& bytes, const std::string& source);

} // namespace orloctl
