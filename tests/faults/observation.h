// SPDX-License-Identifier: MIT
// One run of an operation, in a process of its own, with some of its steps failing.
#pragma once

#include "faults/wrappers.h"
#include "support/door.h"

#include <string>
#include <vector>

namespace orlo::test {

// How a step fails.
enum class Manner {
    fails,   // cannot be done: no memory, no process, not written
    exits,   // a command ends with status 1
    killed,  // a signal ends it
    empty,   // a command prints nothing
    endless, // a command prints a line that is longer than any buffer
};

// The n-th step of a kind that fails; 1 is the first.
struct Fault {
    Call call;
    int n;
    Manner manner;
};

// A step through the door: what for, and what was asked.
struct Step {
    Call call;
    StoreUse use;
    std::string what;
};

struct Invocation {
    std::string operation;
    std::vector<std::string> words;
    std::vector<std::string> before; // operations that are called first, without arguments
    std::string marker;              // an option whose value is observed
};

struct Observation {
    std::string end;      // how the process ended: "" as it should
    std::string answer;   // the result as JSON
    std::string outputs;  // what was filled in, as JSON
    std::string printed;  // to standard error and output
    std::string leftover; // what stays open or allocated behind the call, in words
    int blocks = 0;       // of the heap that the library keeps
    std::vector<Step> steps;
    Trace trace;
    std::vector<std::string> staged; // afterwards
    std::string marker;              // the value of invocation.marker afterwards
};

Observation observe(const Invocation& invocation, const std::vector<Fault>& faults);

} // namespace orlo::test
