#include "meshlink/json_memory.h"

#include <cstdlib>
#include <jansson.h>

namespace orlo::test {

namespace {

int blocks = 0;
int left = 0; // allocations up to the one that fails; 0: none will

void* allocate(size_t size) {
    if (left > 0 && --left == 0) {
        return nullptr;
    }
    blocks++;
    return malloc(size);
}

void release(void* block) {
    blocks -= block == nullptr ? 0 : 1;
    free(block);
}

} // namespace

JsonMemory::JsonMemory() {
    json_set_alloc_funcs(allocate, release);
}

void JsonMemory::fail(int n) {
    left = n;
}

bool JsonMemory::failed() const {
    return left == 0;
}

int JsonMemory::in_use() const {
    return blocks;
}

} // namespace orlo::test
