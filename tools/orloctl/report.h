// SPDX-License-Identifier: MIT
// Reports that the library makes as JSON values, and what stands in them.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "json.h"
#include "text.h"
#include "value.h"

namespace orloctl {

// The report that `ask` gets of the operation with this name. Throws a Failure with the library's
// reason when there is none.
Json report(const std::string& operation, const std::function<json_t*()>& ask);

// What a report has under a name; "unknown" where it has no such text or integer.
Value text_member(const json_t* object, const char* name);
Value integer_member(const json_t* object, const char* name);

// The texts of an array, which may be missing; what is no text is left out.
std::vector<std::string> texts_member(const json_t* object, const char* name);

// Things of one kind, a line for people and an object for programs each.
class Listing {
public:
    struct Column {
        const char* title;
        const char* member;
    };
    explicit Listing(std::vector<Column> columns);

    // A value for each column.
    void add(std::vector<Value> values);

    bool is_empty() const { return json_array_size(array_.get()) == 0; }
    std::string text() const { return table_.text(); }
    const Json& json() const { return array_; }

private:
    std::vector<Column> columns_;
    Table table_;
    Json array_ = json_array_new();
};

// The values of one line.
template <class... Values>
std::vector<Value> line_of(Values... values) {
    std::vector<Value> line;
    (line.push_back(std::move(values)), ...);
    return line;
}

} // namespace orloctl
