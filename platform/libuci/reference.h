// SPDX-License-Identifier: MIT
// References: "package.section.option=value", as lookups and staged changes name things.
#pragma once

#include <cstddef>

namespace uci {

/// The parts of a reference; those that are absent are nullptr.
struct Reference {
    char* package = nullptr;
    char* section = nullptr;
    char* option = nullptr;
    char* value = nullptr;
    bool plain_section = false; // the section is a name, not something like @type[index]
};

/// Takes a text apart in place. False when it is malformed; any text does for a section.
/// @param text  ends with a NUL byte after size bytes; an earlier one is never valid.
[[nodiscard]] bool split_reference(char* text, size_t size, Reference& parts);

} // namespace uci
