// SPDX-License-Identifier: MIT
#include "support/json_memory.h"

#include <cstdlib>
#include <jansson.h>

namespace orlo::test {

namespace {

int allocations = 0;
int left = 0; // up to the one that fails; 0: none will
bool failed = false;

void* allocate(size_t size) {
    const bool fails = left == 1;
    left -= left > 0 ? 1 : 0;
    failed = failed || fails;
    void* const memory = fails ? nullptr : malloc(size);
    allocations += memory != nullptr ? 1 : 0;
    return memory;
}

void release(void* memory) {
    allocations -= memory != nullptr ? 1 : 0;
    free(memory);
}

} // namespace

JsonMemory::JsonMemory() {
    json_set_alloc_funcs(allocate, release);
}

JsonMemory::~JsonMemory() {
    json_set_alloc_funcs(malloc, free);
}

void JsonMemory::fail(int n) {
    left = n;
    failed = false;
}

bool JsonMemory::has_failed() {
    return failed;
}

int JsonMemory::in_use() {
    return allocations;
}

void JsonMemory::release_text(char* text) {
    release(text);
}

} // namespace orlo::test
