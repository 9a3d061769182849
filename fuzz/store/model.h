// SPDX-License-Identifier: MIT
// What a package holds, as one text: two packages with the same text hold the same.
#pragma once

#include <string>
#include <uci.h>

namespace fuzz {

enum class Names {
    all,     // also the generated ones of anonymous sections
    written, // only those that a file holds
};

// One line for each section, option and list element. List options without elements, which no file
// can hold, are left out.
std::string model(const uci_package& package, Names names);

// Whether a file can hold the type of every section: it is written without quotes.
bool types_can_be_written(const uci_package& package);

// One line for each staged change that was read.
std::string staged_changes(const uci_package& package);

} // namespace fuzz
