// SPDX-License-Identifier: MIT
// The memory of JSON values: counted, and made to run out on demand.
#pragma once

namespace orlo::test {

class JsonMemory {
public:
    JsonMemory();
    ~JsonMemory();
    JsonMemory(const JsonMemory&) = delete;
    JsonMemory& operator=(const JsonMemory&) = delete;

    // Makes the n-th allocation from now fail; 1 is the next.
    static void fail(int n);

    // Whether that allocation has been reached.
    static bool has_failed();

    // Allocations that are not released.
    static int in_use();

    // Releases a text that jansson made.
    static void release_text(char* text);
};

} // namespace orlo::test
