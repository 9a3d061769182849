// The memory that JSON values take, counted, and failing on demand.
#pragma once

namespace orlo::test {

class JsonMemory {
public:
    JsonMemory(); // from here on, until the process ends
    JsonMemory(const JsonMemory&) = delete;
    JsonMemory& operator=(const JsonMemory&) = delete;

    // Makes the n-th allocation from now fail; 1 is the next.
    void fail(int n);

    // Whether the failure that was asked for has come.
    bool failed() const;

    // Blocks that have not been given back.
    int in_use() const;
};

} // namespace orlo::test
