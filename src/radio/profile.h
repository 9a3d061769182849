// SPDX-License-Identifier: MIT
// A step of the radio profile that other radio operations use.
#pragma once

namespace orlo {

// Stages the radio's legacy rates, a blank-separated list. 0, or -1 with everything discarded.
int set_legacy_rate(int radio, const char* rates);

} // namespace orlo
