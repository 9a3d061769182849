// Records as JSON, in the form in which they are read.
#pragma once

#include "json.h"
#include "records/memory.h"

namespace orloctl {

// Leaves out what is not given, and what stands behind a switch that is off.
Json write_record(const Record& record, const void* memory);

// The records of a field of type keyed, each with its position; zero ones are left out.
Json write_keyed(const Form& form, const void* first);

} // namespace orloctl
