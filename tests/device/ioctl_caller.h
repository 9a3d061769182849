// SPDX-License-Identifier: MIT
// The ioctl of a library that was opened at run time; inside_main.cpp opens it.
#pragma once

namespace orlo::test {

using IoctlCaller = int (*)(int fd, unsigned long number, void* argument);
extern IoctlCaller call_ioctl;

} // namespace orlo::test
