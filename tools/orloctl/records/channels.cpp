// SPDX-License-Identifier: MIT
#include "records/channels.h"

namespace orloctl {

bool is_channel_list(const std::string& text) {
    bool behind_digit = false;
    for (const char c : text) {
        const bool is_digit = c >= '0' && c <= '9';
        if (!is_digit && (c != ' ' || !behind_digit)) {
            return false;
        }
        behind_digit = is_digit;
    }
    return behind_digit;
}

} // namespace orloctl
