// SPDX-License-Identifier: MIT
// What is known of an access point, one value for people and for programs.
#pragma once

#include <optional>
#include <string>

#include "json.h"

namespace orloctl {

struct Value {
    std::string shown;
    Json json;
};

Value no_value(const char* shown); // null for programs
Value text_value(const std::string& text);
Value yes_or_no(bool value);

// A heap text of the library, copied and freed; nothing for NULL.
std::optional<std::string> taken(char* text);

} // namespace orloctl
