// SPDX-License-Identifier: MIT
// What the test's own process has open.
#pragma once

#include <sys/stat.h>

namespace orlo::test {

enum class Sockets { counted, left_out };

inline int open_descriptors(Sockets sockets) {
    constexpr int most = 256; // no test comes near
    int count = 0;
    for (int descriptor = 0; descriptor < most; descriptor++) {
        struct stat status = {};
        if (fstat(descriptor, &status) == 0 &&
            (sockets == Sockets::counted || !S_ISSOCK(status.st_mode))) {
            count++;
        }
    }
    return count;
}

} // namespace orlo::test
