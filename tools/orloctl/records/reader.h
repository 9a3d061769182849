// SPDX-License-Identifier: MIT
// Records out of JSON.
#pragma once

#include "json.h"
#include "records/memory.h"
#include "records/rule.h"

namespace orloctl {

// Fills a zeroed record that lies in the arena. Members of another type than their field's,
// unknown ones and what does not fit into memory are problems in any case, values against the rules
// only when the place is checked. Without JSON (NULL) every member gets its default.
void read_record(json_t* json, const Record& record, void* memory, const Place& place, Arena& arena,
                 Problems& problems);

// One record or several, of a form that an operation's argument may have; NULL when the JSON is of
// another type. Those that are not listed are zero.
void* read_records(json_t* json, const Form& form, const Place& place, Arena& arena,
                   Problems& problems);

} // namespace orloctl
