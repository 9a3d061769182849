// SPDX-License-Identifier: MIT
// What the records that have lists of channels share.
#pragma once

#include <string>

namespace orloctl {

// Numbers with one blank between them, as the library takes them.
bool is_channel_list(const std::string& text);

constexpr const char* channel_list_rule = "must be numbers with one blank between them";

} // namespace orloctl
