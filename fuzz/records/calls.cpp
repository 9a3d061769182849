// SPDX-License-Identifier: MIT
// The calls of the records' target beside the operations that take one:
//
//     record NAME [checked]        read, written, read and written again
//     description [checked]        read, and all the operations that it causes called
#include "device/calls.h"

#include "description.h"
#include "exit.h"
#include "plan.h"
#include "records/reader.h"
#include "records/registry.h"
#include "records/writer.h"
#include "require.h"

#include <cstdlib>

namespace fuzz {

namespace {

using namespace orloctl;

// As it is written once read; NULL when it is refused.
Json read_and_write(json_t* json, const Record& record, bool checked) {
    Arena arena;
    Problems problems;
    Place place;
    place.checked = checked;
    void* const memory = arena.take(record.size);
    read_record(json, record, memory, place, arena, problems);
    return problems.empty() ? write_record(record, memory) : nullptr;
}

void check_record(const Record& record, const std::string& text, bool checked) {
    const Json json = parse_json(text, "input");
    const Json once = read_and_write(json.get(), record, checked);
    if (once == nullptr) {
        return;
    }
    const Json twice = read_and_write(once.get(), record, checked);
    REQUIRE(twice != nullptr);
    REQUIRE(json_equal(once.get(), twice.get()));
}

void apply_description(const std::string& text, bool checked) {
    const Description description = read_description(text, "input", checked);
    for (const Step& step : plan(description, true)) {
        static_cast<void>(step.call(Vendor_Ops));
    }
}

} // namespace

bool make_record_call(const Call& words, const std::string& text) {
    const bool checked = !words.empty() && words.back() == "checked";
    try {
        if (words.size() > 1 && words[0] == "record") {
            check_record(find_record(words[1]), text, checked);
        } else if (!words.empty() && words[0] == "description") {
            apply_description(text, checked);
        } else {
            return false;
        }
    } catch (const Refusal&) {
        // said why, and called nothing
    }
    return true;
}

} // namespace fuzz
