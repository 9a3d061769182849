// SPDX-License-Identifier: MIT
// Colours, for those who look at a terminal that shows them.
#pragma once

#include <string>

#include "output.h"

namespace orloctl {

class Paint {
public:
    // Colours on a terminal only, and never where the environment has NO_COLOR.
    explicit Paint(const Output& output);

    std::string title(const std::string& text) const { return painted("1", text); }
    std::string good(const std::string& text) const { return painted("32", text); }
    std::string bad(const std::string& text) const { return painted("31", text); }
    std::string aside(const std::string& text) const { return painted("2", text); }
    std::string marked(const std::string& text) const { return painted("36", text); }

private:
    std::string painted(const char* code, const std::string& text) const;

    bool colours_;
};

} // namespace orloctl
