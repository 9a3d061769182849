// SPDX-License-Identifier: MIT
// Benchmarks of operations run in a virtual access point, with the library loaded as an agent does.
#pragma once

#include "orlo/vendor_ops.h"

#include <string>

namespace orlo::bench {

// Loads the library and enters the access point. To be called first thing in main().
void enter_access_point();

const vendor_ops& operations();

// What the library exports under a name.
void* exported_symbol(const char* name);
template <class Function>
Function* exported(const char* name) {
    return reinterpret_cast<Function*>(exported_symbol(name));
}

void write_file(const std::string& path, const std::string& text);

} // namespace orlo::bench
