// SPDX-License-Identifier: MIT
#include "records/field.h"

#include <algorithm>
#include <cstring>

namespace orloctl {

bool Field::is(const char* other) const {
    return other != nullptr && strcmp(name, other) == 0;
}

Place Place::member(const std::string& name) const {
    Place place = *this;
    place.path = path.empty() ? name : path + "." + name;
    return place;
}

Place Place::element(size_t index) const {
    Place place = *this;
    place.path = path + "[" + std::to_string(index) + "]";
    return place;
}

bool is(const char* text, const char* word) {
    return text != nullptr && strcmp(text, word) == 0;
}

bool is_given(const char* text) {
    return text != nullptr && *text != '\0';
}

const Field* Record::find(const std::string& name) const {
    const auto found = std::find_if(fields.begin(), fields.end(),
                                    [&](const Field& field) { return field.is(name.c_str()); });
    return found == fields.end() ? nullptr : &*found;
}

} // namespace orloctl
