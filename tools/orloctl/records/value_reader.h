// SPDX-License-Identifier: MIT
// Plain values out of JSON: flags, numbers, texts, addresses, and arrays of them.
#pragma once

#include "json.h"
#include "records/memory.h"
#include "records/rule.h"

namespace orloctl {

class ValueReader {
public:
    ValueReader(Arena& arena, Problems& problems) : arena_(arena), problems_(problems) {}

    // A flag, number, choice or mask.
    void read_number(json_t* json, const Field& field, void* record, const Place& place);
    void read_flags(json_t* json, const Field& field, void* record, const Place& place);
    void read_text(json_t* json, const Field& field, void* record, const Place& place);
    void read_texts(json_t* json, const Field& field, void* record, const Place& place);
    void read_addresses(json_t* json, const Field& field, void* record, const Place& place);

    // A field that must be there is not.
    void miss(const Field& field, const Place& place);

    // Whether the JSON is an array of no more elements than fit; none at all is.
    bool is_array(json_t* json, size_t most, const Place& place);

    void wrong(const Place& place, const std::string& what) {
        orloctl::wrong(place.path, what, problems_);
    }
    void wrong_type(const Place& place, const json_t* json, const std::string& type) {
        wrong(place, json_excerpt(json) + " is not " + type);
    }

protected:
    Arena& arena_;
    Problems& problems_;

private:
    void read_flag(json_t* json, const Field& field, int32_t& flag, const Place& place);
    std::optional<int64_t> number(json_t* json, const Form& form, const Place& place);
    std::optional<int64_t> named(json_t* json, const Form& form, const Place& place);
    std::optional<int64_t> mask(json_t* json, const Form& form, const Place& place);
    std::optional<std::string> joined_elements(json_t* array, const Form& form, const Place& place);
    bool holds(const Field& field, int64_t value, const json_t* json, const Place& place);
};

} // namespace orloctl
