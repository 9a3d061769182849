// SPDX-License-Identifier: MIT
// The grammar of configuration files, one command per line:
//
//   package NAME          allowed and ignored
//   config TYPE [NAME]    begins a section, or continues the one of that name
//   option NAME [VALUE]   the last value wins; no value changes nothing
//   list NAME [VALUE]     appends an element
//
// Each keyword may be cut down to its first letter.
#pragma once

#include "model.h"

#include <cstddef>

namespace uci {

struct ParseError {
    const char* reason = nullptr;
    size_t offset = 0; // of the command
};

/// The bytes of a text that make one section or option, on average and rather too few.
constexpr size_t kBytesPerElement = 28;

/// Adds what a text says to an empty package. The text lies in the package's arena, is followed by
/// kPadding NUL bytes and becomes the names and values.
/// @return UCI_OK, UCI_ERR_PARSE or UCI_ERR_MEM
[[nodiscard]] int parse_package(Package& package, char* text, size_t size, ParseError& error);

} // namespace uci
