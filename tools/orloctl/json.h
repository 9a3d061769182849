// SPDX-License-Identifier: MIT
// JSON values with an owner, and the few ways in which orloctl makes and prints them.
#pragma once

#include <cstdint>
#include <jansson.h>
#include <memory>
#include <string>
#include <vector>

namespace orloctl {

struct JsonRelease {
    void operator()(json_t* value) const { json_decref(value); }
};
using Json = std::unique_ptr<json_t, JsonRelease>;

Json json_object_new();
Json json_array_new();
Json json_null_new();
Json json_bool(bool value);
Json json_int(long long value);
Json json_count(uint64_t value);         // beyond 2^63 - 1, where integers of JSON end, rounded
Json json_number(float value);           // null for what JSON has no number for
Json json_text(const std::string& text); // bytes that are no UTF-8 become U+FFFD
Json json_texts(const std::vector<std::string>& texts);

void set(const Json& object, const char* name, Json value);
void append(const Json& array, Json value);

// The value as a program reads it: indented, one line end behind it.
std::string json_document(const Json& value);

// The value in one line, with its line end: one of many.
std::string json_line(const Json& value);

// The value in one line, shortened for a sentence about it.
std::string json_excerpt(const json_t* value);

} // namespace orloctl
