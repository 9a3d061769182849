// SPDX-License-Identifier: MIT
// What a field accepts: deciding it, and saying it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "records/field.h"

namespace orloctl {

// Everything that is wrong with a description: "radios[1].channel: 170 is not 0 or in 36..165".
using Problems = std::vector<std::string>;

// Adds a problem; a description as a whole has the path "".
void wrong(const std::string& path, const std::string& what, Problems& problems);

// A text that has no place where it shall lie.
void too_long(const std::string& path, size_t size, size_t longest, Problems& problems);

// The values by their rules. A rule that differs by radio is not checked where the radio is not
// known.
void check_number(const Form& form, int64_t value, const Place& place, Problems& problems);
void check_text(const Form& form, const std::string& value, const Place& place, Problems& problems);

// The text when none is written; NULL where there is none, or none without knowing the radio.
const char* fallback_text(const Form& form, const Place& place);

// A mask by its names, "WPA2+WPA3"; as a number where it has bits without a name.
std::string shown_mask(const Form& form, int64_t value);

// Of a field in one line: "integer 0 or in 1..13 (radio 0), ...", "text, required".
std::string type_help(const Form& form);

// The default as a person writes it; "" where there is none.
std::string shown_default(const Form& form);

} // namespace orloctl
