// SPDX-License-Identifier: MIT
// What the library is using the configuration store for, known from the wrapper of its own that it
// has called: the test program's wrappers come before the library's and hand on to them.
#pragma once

#include <string>

namespace orlo::test {

enum class StoreUse { none, get, set, commit, revert };

StoreUse store_use();

// By which wrapper, and on what: "uciSetValue:wireless.wifi0.channel"; "uciCommitValue:" for all.
const std::string& store_key();

} // namespace orlo::test
