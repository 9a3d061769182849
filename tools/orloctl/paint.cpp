// SPDX-License-Identifier: MIT
#include "paint.h"

#include <cstdlib>

namespace orloctl {

Paint::Paint(const Output& output) {
    const char* no_color = getenv("NO_COLOR");
    colours_ = output.has_screen() && (no_color == nullptr || *no_color == '\0');
}

std::string Paint::painted(const char* code, const std::string& text) const {
    return !colours_ || text.empty() ? text : std::string("\033[") + code + "m" + text + "\033[0m";
}

} // namespace orloctl
