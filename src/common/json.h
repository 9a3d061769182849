// SPDX-License-Identifier: MIT
// Owning a JSON value within a scope.
#pragma once

#include <jansson.h>

namespace orlo {

// A reference that is given back when the scope ends, unless it is handed on before.
class Json {
public:
    explicit Json(json_t* value) : value_(value) {}
    ~Json() { json_decref(value_); }
    Json(const Json&) = delete;
    Json& operator=(const Json&) = delete;

    explicit operator bool() const { return value_ != nullptr; }
    json_t* get() const { return value_; }
    json_t* hand_on() {
        json_t* value = value_;
        value_ = nullptr;
        return value;
    }

private:
    json_t* value_;
};

} // namespace orlo
