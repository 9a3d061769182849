// SPDX-License-Identifier: MIT
// Records as JSON, in the form in which they are read.
#pragma once

#include "json.h"
#include "records/memory.h"

namespace orloctl {

// Leaves out what is not given, and what stands behind a switch that is off.
Json write_record(const Record& record, const void* memory);

// What read_records() reads; `first` may not be NULL.
Json write_records(const Form& form, const void* first);

} // namespace orloctl
