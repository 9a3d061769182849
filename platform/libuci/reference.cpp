// SPDX-License-Identifier: MIT
#include "reference.h"

#include "text.h"

namespace uci {

namespace {

constexpr size_t kMostParts = 3; // package, section, option

} // namespace

bool split_reference(char* text, size_t size, Reference& parts) {
    char* const end = text + size;
    std::string_view names[kMostParts];
    unsigned classes[kMostParts] = {}; // that all characters of the name are of
    size_t count = 0;
    for (char* c = text;; c++) {
        char* const name = c;
        unsigned common = ~0U;
        for (unsigned bits = classes_of(*c); !(bits & kSplit); bits = classes_of(*++c)) {
            common &= bits;
        }
        if (count == kMostParts) {
            return false;
        }
        names[count] = {name, static_cast<size_t>(c - name)};
        classes[count++] = c == name ? 0 : common;
        const char separator = *c;
        *c = '\0';
        if (separator == '.') {
            continue;
        }
        parts.value = separator == '=' ? c + 1 : nullptr;
        if (separator == '\0' && c != end) {
            return false;
        }
        break;
    }
    parts.package = names[0];
    parts.section = names[1];
    parts.option = names[2];
    parts.plain_section = (classes[1] & kName) != 0;
    return (classes[0] & kGraph) && (!parts.has_option() || (classes[2] & kName)) &&
           (!parts.value || is_value({parts.value, static_cast<size_t>(end - parts.value)}));
}

} // namespace uci
