// SPDX-License-Identifier: MIT
// Flags of the agent's records: 0 or 1, stored as such a text.
#pragma once

#include <cstdint>

namespace orlo {

constexpr bool is_flag(int32_t value) {
    return value == 0 || value == 1;
}

// The text of a flag; NULL, which the store refuses, for any other value.
constexpr const char* flag_text(int32_t value) {
    return value == 0 ? "0" : value == 1 ? "1" : nullptr;
}

// The same for options that say the opposite.
constexpr const char* inverted_flag_text(int32_t value) {
    return value == 0 ? "1" : value == 1 ? "0" : nullptr;
}

} // namespace orlo
