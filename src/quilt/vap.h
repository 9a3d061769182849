// SPDX-License-Identifier: MIT
// The VAPs of the channel quilt.
#pragma once

#include "orlo/records.h"

#include <cstdint>

namespace orlo {

// Stages the VAP of entry `index` of the agent's record, in the name of api_apply_channel_quilt. 0,
// or -1 with everything staged discarded, but for a refused RADIUS-accounting flag, which keeps it.
// Releases the nodes of the entry's list of key holders.
int apply_quilt_vap(uint32_t index, quilt_vap* entry);

} // namespace orlo
