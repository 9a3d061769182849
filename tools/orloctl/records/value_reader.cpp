// SPDX-License-Identifier: MIT
#include "records/value_reader.h"

#include <algorithm>

#include "text.h"

namespace orloctl {

namespace {

constexpr size_t longest_address = sizeof(known_client_node::mac) - 1;

const char* type_of(const Form& form) {
    switch (form.type) {
    case Type::flag:
    case Type::flags:
        return "true or false";
    case Type::mask:
        return "an array of names";
    default:
        return "an integer";
    }
}

} // namespace

void ValueReader::miss(const Field& field, const Place& place) {
    if (field.form.is_required && place.checked) {
        wrong(place, "is missing");
    }
}

bool ValueReader::is_array(json_t* json, size_t most, const Place& place) {
    if (json != nullptr && !json_is_array(json)) {
        wrong_type(place, json, "an array");
        return false;
    }
    if (json_array_size(json) > most) {
        wrong(place, std::to_string(json_array_size(json)) + " elements are more than " +
                         std::to_string(most));
        return false;
    }
    return true;
}

bool ValueReader::holds(const Field& field, int64_t value, const json_t* json, const Place& place) {
    if (fits(field, value)) {
        return true;
    }
    wrong(place, json_excerpt(json) + (field.storage == Storage::uint32
                                           ? " does not fit 32 bits (0 to 4294967295)"
                                           : " does not fit an int (-2147483648 to 2147483647)"));
    return false;
}

void ValueReader::read_number(json_t* json, const Field& field, void* record, const Place& place) {
    store_number(record, field, field.form.fallback);
    if (json == nullptr) {
        miss(field, place);
        return;
    }
    const std::optional<int64_t> value = number(json, field.form, place);
    if (!value || !holds(field, *value, json, place)) {
        return;
    }
    store_number(record, field, *value);
    if (place.checked) {
        check_number(field.form, *value, place, problems_);
    }
}

std::optional<int64_t> ValueReader::number(json_t* json, const Form& form, const Place& place) {
    const bool is_flag = form.type == Type::flag || form.type == Type::flags;
    if (is_flag && json_is_boolean(json)) {
        return json_is_true(json) ? 1 : 0;
    }
    if (form.type == Type::mask && json_is_array(json)) {
        return mask(json, form, place);
    }
    if (json_is_integer(json)) {
        return json_integer_value(json);
    }
    if (form.type == Type::choice) {
        return named(json, form, place);
    }
    wrong_type(place, json, type_of(form));
    return std::nullopt;
}

// What the name in the JSON stands for.
std::optional<int64_t> ValueReader::named(json_t* json, const Form& form, const Place& place) {
    const char* text = json_string_value(json);
    for (const Name& name : form.names) {
        if (text != nullptr && name.name == std::string(text)) {
            return name.value;
        }
    }
    std::vector<std::string> known;
    for (const Name& name : form.names) {
        known.push_back(std::string("\"") + name.name + "\"");
    }
    wrong_type(place, json, alternatives(known));
    return std::nullopt;
}

std::optional<int64_t> ValueReader::mask(json_t* json, const Form& form, const Place& place) {
    int64_t value = 0;
    bool known = true;
    for (size_t i = 0; i < json_array_size(json); i++) {
        const std::optional<int64_t> bit = named(json_array_get(json, i), form, place.element(i));
        known = known && bit;
        value |= bit.value_or(0);
    }
    return known ? std::optional<int64_t>(value) : std::nullopt;
}

// Each flag at its position, null where it is not given; or the names of those that are set.
void ValueReader::read_flags(json_t* json, const Field& field, void* record, const Place& place) {
    const Form& form = field.form;
    auto* flags = elements_of<int32_t>(record, field);
    std::fill_n(flags, form.count, static_cast<int32_t>(form.fallback));
    if (json == nullptr) {
        miss(field, place);
    }
    if (!is_array(json, form.count, place)) {
        return;
    }
    const bool by_name = !form.names.empty() && json_is_string(json_array_get(json, 0));
    for (size_t i = 0; i < json_array_size(json); i++) {
        json_t* element = json_array_get(json, i);
        const Place at = place.element(i);
        if (by_name) {
            const std::optional<int64_t> position = named(element, form, at);
            if (position) {
                flags[*position] = 1;
            }
        } else if (!form.has_not_given || !json_is_null(element)) {
            read_flag(element, field, flags[i], at);
        }
    }
}

void ValueReader::read_flag(json_t* json, const Field& field, int32_t& flag, const Place& place) {
    const std::optional<int64_t> value = number(json, field.form, place);
    if (!value || !holds(field, *value, json, place)) {
        return;
    }
    flag = static_cast<int32_t>(*value);
    if (place.checked) {
        check_number(field.form, *value, place, problems_);
    }
}

void ValueReader::read_text(json_t* json, const Field& field, void* record, const Place& place) {
    const Form& form = field.form;
    if (json == nullptr || json_is_null(json)) {
        const char* fallback = fallback_text(form, place);
        if (fallback == nullptr) {
            miss(field, place);
        } else {
            store_text(record, field, fallback, arena_);
        }
        return;
    }
    std::optional<std::string> value;
    if (json_is_string(json)) {
        value = std::string(json_string_value(json), json_string_length(json));
    } else if (form.separator != nullptr && json_is_array(json)) {
        value = joined_elements(json, form, place);
    } else {
        wrong_type(place, json, form.separator == nullptr ? "a text" : "a text or an array");
    }
    if (!value) {
        return;
    }
    if (field.storage == Storage::characters && value->size() > field.size) {
        too_long(place.path, value->size(), field.size, problems_);
        return;
    }
    store_text(record, field, value, arena_);
    if (place.checked) {
        check_text(form, *value, place, problems_);
    }
}

std::optional<std::string> ValueReader::joined_elements(json_t* array, const Form& form,
                                                        const Place& place) {
    std::vector<std::string> parts;
    for (size_t i = 0; i < json_array_size(array); i++) {
        const json_t* element = json_array_get(array, i);
        if (json_is_string(element)) {
            parts.emplace_back(json_string_value(element));
        } else if (json_is_integer(element)) {
            parts.push_back(std::to_string(json_integer_value(element)));
        } else if (json_is_real(element)) {
            parts.push_back(shown_number(static_cast<float>(json_real_value(element))));
        } else {
            wrong_type(place.element(i), element, "a number or a text");
            return std::nullopt;
        }
    }
    return joined(parts, form.separator);
}

void ValueReader::read_texts(json_t* json, const Field& field, void* record, const Place& place) {
    if (json == nullptr) {
        miss(field, place);
    }
    if (!is_array(json, field.form.count, place)) {
        return;
    }
    auto* texts = elements_of<const char*>(record, field);
    for (size_t i = 0; i < json_array_size(json); i++) {
        const json_t* element = json_array_get(json, i);
        const Place at = place.element(i);
        if (!json_is_string(element)) {
            wrong_type(at, element, "a text");
            return;
        }
        const std::string text = json_string_value(element);
        texts[i] = arena_.text(text);
        if (place.checked) {
            check_text(field.form, text, at, problems_);
        }
    }
}

void ValueReader::read_addresses(json_t* json, const Field& field, void* record,
                                 const Place& place) {
    if (!is_array(json, SIZE_MAX, place)) {
        return;
    }
    const bool inline_texts = field.storage == Storage::clients;
    std::vector<std::string> addresses;
    for (size_t i = 0; i < json_array_size(json); i++) {
        const json_t* element = json_array_get(json, i);
        const Place at = place.element(i);
        if (!json_is_string(element)) {
            wrong_type(at, element, "a text");
            return;
        }
        addresses.emplace_back(json_string_value(element));
        const std::string& address = addresses.back();
        if (inline_texts && address.size() > longest_address) {
            too_long(at.path, address.size(), longest_address, problems_);
        }
        if (place.checked) {
            check_text(field.form, address, at, problems_);
        }
    }
    const bool may_be_empty = inline_texts && json != nullptr; // which clears the stored ones
    if (addresses.empty() && !may_be_empty) {
        miss(field, place);
    }
    if (inline_texts) {
        store_pointer(record, field, arena_.chain(addresses));
    } else {
        arena_.fill(*static_cast<mac_list*>(member_of(record, field)), addresses);
    }
}

} // namespace orloctl
