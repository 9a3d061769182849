// SPDX-License-Identifier: MIT
// The tables as texts for people.
#pragma once

#include <string>

#include "records/field.h"

namespace orloctl {

// Name, type and rules of each field, and below them what it means.
std::string field_table(const Record& record, size_t indent = 0);

// A record with everything that is known of it: "orloctl records NAME".
std::string record_help(const Record& record);

// All records as Markdown.
std::string records_markdown();

} // namespace orloctl
