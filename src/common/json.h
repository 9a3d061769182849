// Owning a JSON value within a scope.
#pragma once

#include <jansson.h>
#include <utility>

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
    json_t* hand_on() { return std::exchange(value_, nullptr); }

private:
    json_t* value_;
};

} // namespace orlo
