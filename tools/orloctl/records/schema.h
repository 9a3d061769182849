// SPDX-License-Identifier: MIT
// The tables as JSON Schema, draft 2020-12.
#pragma once

#include "json.h"
#include "records/field.h"

namespace orloctl {

// A schema of the record, with those of the records in it among its definitions. What it cannot
// express, the conditions, stands in its comments.
Json record_schema(const Record& record);

} // namespace orloctl
