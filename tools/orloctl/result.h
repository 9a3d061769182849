// SPDX-License-Identifier: MIT
// What an operation answered, and what that means to a person and to a program.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "json.h"
#include "orlo/vendor_ops.h"

namespace orloctl {

// How a caller reads an operation's answer; the names are those of orlo/operations.def.
enum class Meaning { status, yesno, check, number, count, text, json, nothing };

const char* meaning_name(Meaning meaning);
const char* meaning_help(Meaning meaning);

// Holds nothing for an operation without an answer; a text or JSON value may be NULL.
using Result = std::variant<std::monostate, int64_t, float, std::optional<std::string>, Json>;

// An answer of the library becomes orloctl's own: heap texts are copied and freed.
Result take(int64_t number);
Result take(float number);
Result take(char* text);
Result take(json_t* value);
inline Result take(int number) {
    return take(int64_t{number});
}

struct Reading {
    std::string shown;
    bool failed; // the operation reported that it failed or has no value
};

Reading read_result(Meaning meaning, const Result& result);
Json result_json(const Result& result);

} // namespace orloctl
