// SPDX-License-Identifier: MIT
// The built library, as an agent finds it.
#pragma once

#include <map>
#include <set>
#include <string>

#include "orlo/vendor_ops.h"

namespace orlo_abi {

// The library, loaded for the rest of the program. Ends the program with a message when it cannot
// be.
void* library();

// Its table.
const vendor_ops& table();

// The names that it exports, with the sizes of what they stand for.
std::map<std::string, unsigned long> exported_symbols();

// The libraries that it needs, without their versions: "libuci", "libc".
std::set<std::string> needed_libraries();

} // namespace orlo_abi
