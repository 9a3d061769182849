// SPDX-License-Identifier: MIT
// Radios and VAPs: how many there are, what radios are called, and the keys of their options.
#pragma once

#include "orlo/exports.h"

namespace orlo {

constexpr int radio_count = ORLO_RADIOS;
constexpr int vaps_per_radio = ORLO_VAPS_PER_RADIO;

constexpr bool is_radio(int radio) {
    return radio >= 0 && radio < radio_count;
}

// A radio as people count them, for log lines.
constexpr int counted_from_one(int radio) {
    return static_cast<int>(static_cast<unsigned>(radio) + 1U);
}

constexpr bool is_vap(int radio, int vap) {
    return is_radio(radio) && vap >= 0 && vap < vaps_per_radio;
}

// A VAP's place in the tables of all VAPs.
constexpr int vap_slot(int radio, int vap) {
    return radio * vaps_per_radio + vap;
}

// The section of the radio with this interface name ("wlan0", "wlan1"); NULL for any other.
const char* section_of_interface(const char* name);

// The radio's entry of an option-key table; NULL, which the store refuses, for any other radio.
inline const char* radio_key(const char* const (&table)[radio_count], int radio) {
    return is_radio(radio) ? table[radio] : nullptr;
}

} // namespace orlo
