// SPDX-License-Identifier: MIT
// The folder of one access point in the chroot form: where it is made, who owns it, and how one
// whose owner was lost is found and removed.
#pragma once

#include "enter/files.h"

#include <string>
#include <sys/types.h>

namespace orlo::device {

/// An open instance. It is in use as long as `folder`, or a copy of it in a child, is open.
struct Instance {
    Fd parent;
    std::string name; ///< below `parent`, with the number of the caller in it
    Fd folder;
};

/// Makes an empty instance, in memory if that is possible, else beside the template or in /tmp;
/// removes instances there that nobody uses any more. Throws std::system_error.
Instance make_instance(const std::string& root, pid_t caller);

} // namespace orlo::device
