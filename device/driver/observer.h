// SPDX-License-Identifier: MIT
// Watching the requests that the program and its libraries make of the driver.
#pragma once

struct iwreq;

namespace orlo::device {

/// Told of each wireless-extension request once it has been answered, by the simulated driver or by
/// the kernel, with the error number that it ended with, or 0.
using RequestObserver = void (*)(unsigned long number, const iwreq& request, int error);
extern RequestObserver request_observer;

} // namespace orlo::device
