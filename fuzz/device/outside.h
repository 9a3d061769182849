// SPDX-License-Identifier: MIT
// Everything outside of the library: commands, files, the driver, the store, processes and sockets.
// Nothing of it is real. Questions are answered by the input, what changes something is swallowed.
#pragma once

#include "device/input.h"

namespace fuzz {

// While it lives, the library's calls get nowhere else.
class Outside {
public:
    explicit Outside(Input& input);
    ~Outside();
    Outside(const Outside&) = delete;
    Outside& operator=(const Outside&) = delete;
};

// The input that answers just now, or NULL.
Input* answering();

} // namespace fuzz
