// SPDX-License-Identifier: MIT
// A way for tests to have the n-th request fail, whatever interface it asks for.
#pragma once

namespace orlo::device {

/// Asked at each request of a program to the simulated driver, when it is set: an error number of
/// <errno.h> that it returns is the answer.
extern int (*demanded_error)();

} // namespace orlo::device
