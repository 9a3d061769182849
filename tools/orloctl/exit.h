// SPDX-License-Identifier: MIT
// How orloctl ends, and the exceptions that its parts throw to end it.
#pragma once

#include <stdexcept>

namespace orloctl {

enum Exit {
    exit_done = 0,
    exit_failed = 1,  // an operation refused or failed
    exit_refused = 2, // bad input or usage, no access point here, library not loadable
};

// Nothing was called, or nothing more will be: the sentence says why and what to do next.
struct Refusal : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// An operation was called and did not do what was asked of it.
struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

} // namespace orloctl
