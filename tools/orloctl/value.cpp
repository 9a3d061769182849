// SPDX-License-Identifier: MIT
#include "value.h"

#include <cstdlib>
#include <memory>

#include "text.h"

namespace orloctl {

Value no_value(const char* shown) {
    return {shown, json_null_new()};
}

Value text_value(const std::string& text) {
    return {printable(text), json_text(text)};
}

Value yes_or_no(bool value) {
    return {value ? "yes" : "no", json_bool(value)};
}

std::optional<std::string> taken(char* text) {
    const std::unique_ptr<char, decltype(&free)> owned(text, &free);
    return owned == nullptr ? std::nullopt : std::optional<std::string>(owned.get());
}

} // namespace orloctl
