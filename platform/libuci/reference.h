// SPDX-License-Identifier: MIT
// References: "package.section.option=value", as lookups and staged changes name things.
#pragma once

#include <cstddef>
#include <string_view>

namespace uci {

/// The parts of a reference, each ended by NUL; those that are absent have no data.
struct Reference {
    std::string_view package;
    std::string_view section;
    std::string_view option;
    char* value = nullptr;
    bool plain_section = false; // the section is a name, not something like @type[index]

    [[nodiscard]] bool has_section() const { return section.data() != nullptr; }
    [[nodiscard]] bool has_option() const { return option.data() != nullptr; }
};

/// Takes a text apart in place. False when it is malformed; any text does for a section.
/// @param text  ends with a NUL byte after size bytes; an earlier one is never valid.
[[nodiscard]] bool split_reference(char* text, size_t size, Reference& parts);

} // namespace uci
