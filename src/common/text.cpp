// SPDX-License-Identifier: MIT
#include "common/text.h"

#include <arpa/inet.h>
#include <cstring>

namespace orlo {

void replace_all_substrings(char* text, const char* needle, const char* replacement) {
    char work[1024];
    if (*needle == '\0' || strstr(replacement, needle) != nullptr) {
        return; // would never end
    }
    while (const char* found = strstr(text, needle)) {
        const int before = static_cast<int>(found - text);
        const int length = snprintf(work, sizeof work, "%.*s%s%s", before, text, replacement,
                                    found + strlen(needle));
        if (length < 0 || static_cast<size_t>(length) >= sizeof work) {
            return;
        }
        memcpy(text, work, static_cast<size_t>(length) + 1);
    }
}

int is_valid_ipv4_text(const char* text) {
    in_addr address;
    return text != nullptr && inet_pton(AF_INET, text, &address) == 1 ? 1 : 0;
}

} // namespace orlo
