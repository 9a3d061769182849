// SPDX-License-Identifier: MIT
#include "json.h"

#include <cmath>
#include <cstdlib>
#include <new>

#include "text.h"

namespace orloctl {

namespace {

// jansson answers NULL only when memory is gone.
Json owned(json_t* value) {
    if (value == nullptr) {
        throw std::bad_alloc();
    }
    return Json(value);
}

std::string dumped(const json_t* value, size_t flags) {
    const std::unique_ptr<char, decltype(&free)> text(json_dumps(value, flags | JSON_ENCODE_ANY),
                                                      &free);
    return text == nullptr ? "" : text.get();
}

std::string without_foreign_bytes(const std::string& text) {
    std::string result;
    for (const char c : text) {
        if (static_cast<unsigned char>(c) < 0x80) {
            result += c;
        } else {
            result += "\xEF\xBF\xBD";
        }
    }
    return result;
}

} // namespace

Json json_object_new() {
    return owned(json_object());
}

Json json_array_new() {
    return owned(json_array());
}

Json json_null_new() {
    return owned(json_null());
}

Json json_bool(bool value) {
    return owned(json_boolean(value));
}

Json json_int(long long value) {
    return owned(json_integer(value));
}

Json json_count(uint64_t value) {
    return value <= INT64_MAX ? json_int(static_cast<long long>(value))
                              : owned(json_real(static_cast<double>(value)));
}

Json json_number(float value) {
    // Through its shown form: 20.1f is 20.1 to a reader, not 20.100000381.
    return std::isfinite(value) ? owned(json_real(std::stod(shown_number(value))))
                                : json_null_new();
}

Json json_text(const std::string& text) {
    json_t* value = json_stringn(text.data(), text.size());
    if (value != nullptr) {
        return Json(value);
    }
    const std::string readable = without_foreign_bytes(text);
    return owned(json_stringn(readable.data(), readable.size()));
}

Json json_texts(const std::vector<std::string>& texts) {
    Json array = json_array_new();
    for (const std::string& text : texts) {
        append(array, json_text(text));
    }
    return array;
}

void set(const Json& object, const char* name, Json value) {
    if (json_object_set_new(object.get(), name, value.release()) != 0) {
        throw std::bad_alloc();
    }
}

void append(const Json& array, Json value) {
    if (json_array_append_new(array.get(), value.release()) != 0) {
        throw std::bad_alloc();
    }
}

std::string json_document(const Json& value) {
    return dumped(value.get(), JSON_INDENT(2)) + "\n";
}

std::string json_line(const Json& value) {
    return dumped(value.get(), JSON_COMPACT) + "\n";
}

std::string json_excerpt(const json_t* value) {
    constexpr size_t longest = 60;
    const std::string text = dumped(value, JSON_COMPACT | JSON_ENSURE_ASCII);
    return text.size() <= longest ? text : text.substr(0, longest - 3) + "...";
}

} // namespace orloctl
