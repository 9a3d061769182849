// SPDX-License-Identifier: MIT
// The wireless-extension requests that the simulated driver answers, as a table. A request that is
// not in it is refused as unsupported; a new one is a row and a function.
#pragma once

#include "driver/state.h"

#include <string_view>

struct iwreq;

namespace orlo::device {

/// The interface a request names, and its state file.
struct Interface {
    std::string_view name;
    StateFile state;
};

/// Fills the request's answer; returns 0 or an error number of <errno.h>.
using Answer = int (*)(const Interface& interface, iwreq& request);

struct Request {
    unsigned long number;
    std::string_view name; ///< as in `fail NAME ERROR` lines of the state file
    Answer answer;
};

/// Null when the interface has no such request.
const Request* find_request(const Interface& interface, unsigned long number);

} // namespace orlo::device
