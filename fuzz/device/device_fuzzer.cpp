// SPDX-License-Identifier: MIT
// Operations and exported functions, and all that they read: the output of commands, files, the
// driver's replies, options of the store. The targets of the device differ in their seeds only.
#include "device/calls.h"
#include "device/outside.h"
#include "require.h"

#include <cstdio>
#include <jansson.h>

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    json_object_seed(1); // the same input takes the same way each time
    // What the library and its wrappers say of failures is not for this terminal.
    FILE* const nowhere = fopen("/dev/null", "w");
    REQUIRE(nowhere != nullptr);
    stderr = nowhere;
    stdout = nowhere;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::Input input(data, size);
    const fuzz::Outside outside(input);
    const std::string* const json = input.answer("json");
    for (const fuzz::Call& call : input.calls()) {
        if (json == nullptr || !fuzz::make_record_call(call, *json)) {
            fuzz::make_call(call);
        }
    }
    return 0;
}
