// What an agent pushes: the VAPs of a radio and a whole quilt, with all kinds of security.
#pragma once

#include "orlo/vendor_ops.h"

namespace orlo::bench {

constexpr int vaps_of_radio = 16;

// The first `enabled` VAPs are up, with the securities in turn; the others are down.
void fill(vap_settings (&vaps)[vaps_of_radio], int enabled);

// All 32 entries are up.
void fill(quilt_settings& quilt);

} // namespace orlo::bench
