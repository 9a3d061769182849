// SPDX-License-Identifier: MIT
// What an option of the configuration store holds, as tests compare it.
#pragma once

#include <string>
#include <uci.h>

namespace orlo::test {

// The elements of a list are joined by blanks.
inline std::string text_of(const uci_option& option) {
    if (option.type == UCI_TYPE_STRING) {
        return option.v.string;
    }
    std::string text;
    uci_element* element = nullptr;
    uci_foreach_element(&option.v.list, element) {
        text += (text.empty() ? "" : " ") + std::string(element->name);
    }
    return text;
}

} // namespace orlo::test
