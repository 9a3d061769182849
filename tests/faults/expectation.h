// SPDX-License-Identifier: MIT
// The words of a case's `failures`, understood.
#pragma once

#include "faults/observation.h"

#include <map>
#include <string>

namespace orlo::test {

struct Expectation {
    std::string answer; // as JSON; "same" as without a failure
    bool discards = false;
    bool takes_the_rest = false;
    bool is_silent = false;
    bool logs_error = false;
    bool varies = false;
};

// By kind of step, or by kind, colon and word.
using Expectations = std::map<std::string, Expectation>;

Expectations read_expectations(const std::string& failures);

// The one for a step of a kind, the most particular first; NULL when there is none.
const Expectations::value_type* find_expectation(const Expectations& all, const std::string& kind,
                                                 const std::string& what);

// The kind of a step that fails in a manner.
std::string kind_of(const Step& step, Manner manner);

// The manners in which a step can fail.
std::vector<Manner> manners_of(const Step& step);

} // namespace orlo::test
