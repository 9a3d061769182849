// SPDX-License-Identifier: MIT
// What may have been meant by a word that is none of those known.
#pragma once

#include <string>
#include <vector>

namespace orloctl {

// The names that are nearest to the word, at most three; none when all are far away.
std::vector<std::string> nearest(const std::string& word, const std::vector<std::string>& names);

// "; did you mean A or B?", "" when no name is near.
std::string proposal(const std::string& word, const std::vector<std::string>& names);

// The same, and where all names are listed: "; did you mean A? ('orloctl --help' lists them)".
std::string advice(const std::string& word, const std::vector<std::string>& names,
                   const std::string& listed);

} // namespace orloctl
