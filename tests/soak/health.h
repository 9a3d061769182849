// SPDX-License-Identifier: MIT
// What a process that runs for months must keep flat.
#pragma once

#include <set>
#include <string>

namespace orlo::test {

struct Health {
    long resident = 0; // bytes; 0 where the machine does not tell
    int descriptors = 0;
    int ended_children = 0; // that nobody has waited for
    std::set<std::string> temporary_files;
};

Health health_now();

} // namespace orlo::test
