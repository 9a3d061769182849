// SPDX-License-Identifier: MIT
// Fast roaming of a VAP: 802.11r, k and v.
#pragma once

#include "orlo/records.h"

#include <cstdint>

namespace orlo {

// Stages the settings; 0, or -1 with everything staged discarded. Once the key holders are staged,
// their list is consumed: every node is freed and the list left empty, whatever fails after that.
int set_vap_fast_roaming(uint32_t radio, uint32_t vap, fast_roaming* settings);

// The same in the name, and with the log lines, of api_apply_vap.
int apply_vap_fast_roaming(uint32_t radio, uint32_t vap, fast_roaming* settings);

} // namespace orlo
