// SPDX-License-Identifier: MIT
#include "faults/cases.h"

#include <algorithm>
#include <ostream>

namespace orlo::test {

void PrintTo(const Case& one, std::ostream* out) {
    *out << one.operation;
}

std::vector<Case> all_cases() {
    std::vector<Case> all;
    for (const auto& group :
         {system_cases(), radio_cases(), vap_cases(), client_cases(), quilt_and_mesh_cases()}) {
        all.insert(all.end(), group.begin(), group.end());
    }
    std::sort(all.begin(), all.end(), [](const Case& a, const Case& b) { return a.slot < b.slot; });
    return all;
}

} // namespace orlo::test
