// SPDX-License-Identifier: MIT
// What may come next on a command line that a shell completes.
#pragma once

#include <string>
#include <vector>

namespace orloctl {

// The candidates for the last of these words, which may be empty or begun; the words stand behind
// "orloctl". None where any file may stand.
std::vector<std::string> completions(const std::vector<std::string>& words);

} // namespace orloctl
