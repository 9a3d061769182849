// SPDX-License-Identifier: MIT
// Records that an operation fills in, described by tables as those that it reads: what is shown of
// them. They hold counters of 64 bits, an entry for each radio or for each VAP.
//
// A new one is a FilledRecord and a line in filled_record().
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "json.h"
#include "records/memory.h"

namespace orloctl {

struct Counter {
    const char* name;
    size_t offset;
};

struct FilledRecord {
    const char* name;
    size_t size;
    size_t count;            // of entries that the operation takes
    size_t entries_by_radio; // 1, or one for each VAP
    std::vector<Counter> counters;
};

extern const FilledRecord radio_statistics_record;
extern const FilledRecord vap_statistics_record;

// What an operation fills in; NULL when it takes no such record.
const FilledRecord* filled_record(const std::string& operation);

// Memory for all entries. A counter that the operation leaves alone will show as "unset".
void* take_untouched(const FilledRecord& record, Arena& arena);

// A table of all entries, and an array of objects; null is an unset counter.
std::string shown_entries(const FilledRecord& record, const void* first, size_t indent);
Json entries_json(const FilledRecord& record, const void* first);

} // namespace orloctl
