// SPDX-License-Identifier: MIT
// What must hold for every input. A breach ends the run, and the input is kept.
#pragma once

#include <cstdio>
#include <cstdlib>

#define REQUIRE(condition)                                                                         \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            dprintf(2, "%s:%d: does not hold: %s\n", __FILE__, __LINE__, #condition);              \
            abort();                                                                               \
        }                                                                                          \
    } while (0)
