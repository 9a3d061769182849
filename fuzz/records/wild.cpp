// SPDX-License-Identifier: MIT
#include "records/wild.h"

#include <climits>

namespace fuzz {

using orloctl::Form;
using orloctl::Json;
using orloctl::Record;
using orloctl::Type;

namespace {

constexpr int deepest = 6;

bool holds_records(const Form& form) {
    return form.record != nullptr;
}

bool is_array_of_records(const Form& form) {
    return holds_records(form) && form.type != Type::record && form.type != Type::optional;
}

} // namespace

json_t* Wild::other_type() {
    switch (below(6)) {
    case 0:
        return json_null();
    case 1:
        return json_true();
    case 2:
        return json_real(1e300);
    case 3:
        return json_array();
    case 4:
        return json_object();
    default:
        return json_string("5");
    }
}

json_t* Wild::number(const Form& form) {
    const orloctl::Accepted& accepted = form.accepted[below(2)];
    if (!accepted.numbers.empty() && one_in(2)) {
        return json_integer(any_of(accepted.numbers));
    }
    if (accepted.span && !one_in(3)) {
        const auto [first, last] = *accepted.span;
        return json_integer(
            any_of<int64_t>({first, last, first - 1, last + 1, (first + last) / 2}));
    }
    return json_integer(any_of<int64_t>({0, 1, -1, 2, 15, 16, 255, 4094, 65535, INT_MAX, INT_MIN,
                                         UINT_MAX, 1LL << 32, INT64_MAX, INT64_MIN}));
}

// Of a choice, a mask or flags: a name, names, or the number.
json_t* Wild::named(const Form& form) {
    if (form.names.empty() || one_in(3)) {
        return number(form);
    }
    if (form.type == Type::choice) {
        return json_string(any_of(form.names).name);
    }
    json_t* const names = json_array();
    for (const orloctl::Name& name : form.names) {
        if (one_in(2)) {
            json_array_append_new(names, json_string(name.name));
        }
    }
    return names;
}

std::string Wild::characters(size_t size) {
    static const std::string pieces[] = {"a",  "7",  ":",        ".",           " ",
                                         "-",  "'",  "\"",       "\\",          "$(x)",
                                         "%s", "\n", "\xc3\xa9", "\xe2\x82\xac"};
    std::string text;
    while (text.size() < size) {
        text += one_in(4) ? pieces[below(std::size(pieces))] : "x";
    }
    return text;
}

json_t* Wild::text(const Form& form) {
    const orloctl::Accepted& accepted = form.accepted[below(2)];
    if (!accepted.words.empty() && !one_in(4)) {
        return json_string(any_of(accepted.words));
    }
    if (form.is_mac && !one_in(4)) {
        return json_string("02:00:00:00:0c:01");
    }
    if (form.separator != nullptr && one_in(2)) {
        json_t* const parts = json_array();
        for (unsigned i = below(40); i > 0; i--) {
            json_array_append_new(parts, json_integer(below(200)));
        }
        return parts;
    }
    const size_t longest = form.longest != 0 ? form.longest : 64;
    const size_t size = any_of<size_t>(
        {0, 1, 8, 13, 26, 64, longest - 1, longest, longest + 1, 2 * longest, 300, 600, 5000});
    return json_string(one_in(4) ? any_of<const char*>({"none", "192.168.1.1", "1 6 11", "0", "-1",
                                                        "02:00:00:00:0c:01", ""})
                                 : characters(size).c_str());
}

json_t* Wild::object(const Record& record, const char* key, int depth) {
    json_t* const made = json_object();
    if (key != nullptr) {
        json_object_set_new(made, key, json_integer(below(one_in(8) ? 20 : 16)));
    }
    for (const orloctl::Field& field : record.fields) {
        if (field.form.is_required ? !one_in(16) : one_in(depth > deepest ? 8 : 2)) {
            json_object_set_new(made, field.name, value(field.form, depth + 1));
        }
    }
    return made;
}

json_t* Wild::array(const Form& form, int depth) {
    json_t* const made = json_array();
    for (unsigned i = below(4); i > 0; i--) {
        json_array_append_new(made, object(*form.record, form.key, depth));
    }
    return made;
}

json_t* Wild::value(const Form& form, int depth) {
    if (one_in(24)) {
        return other_type();
    }
    if (is_array_of_records(form)) {
        return array(form, depth);
    }
    if (holds_records(form)) {
        return object(*form.record, nullptr, depth);
    }
    switch (form.type) {
    case Type::flag:
        return json_boolean(one_in(2));
    case Type::number:
        return number(form);
    case Type::choice:
    case Type::mask:
    case Type::flags:
        return named(form);
    case Type::texts:
    case Type::addresses: {
        json_t* const texts = json_array();
        for (unsigned i = below(one_in(8) ? 300 : 4); i > 0; i--) {
            json_array_append_new(texts, text(form));
        }
        return texts;
    }
    default:
        return text(form);
    }
}

void Wild::disturb_array(json_t* array, const Form& form) {
    const size_t size = json_array_size(array);
    if (size == 0 || one_in(4)) {
        json_array_append_new(array, object(*form.record, form.key, 0));
        return;
    }
    const unsigned at = below(static_cast<unsigned>(size));
    json_t* const element = json_array_get(array, at);
    if (one_in(12)) {
        json_array_remove(array, at);
    } else if (one_in(12)) {
        json_array_append_new(array, json_deep_copy(element));
    } else if (json_is_object(element)) {
        disturb_object(element, *form.record);
    }
}

void Wild::disturb_object(json_t* object, const Record& record) {
    const orloctl::Field& field = any_of(record.fields);
    json_t* const member = json_object_get(object, field.name);
    if (one_in(32)) {
        json_object_set_new(object, "unknown", other_type());
    } else if (member != nullptr && one_in(8)) {
        json_object_del(object, field.name);
    } else if (json_is_object(member) && holds_records(field.form) && !one_in(6)) {
        disturb_object(member, *field.form.record);
    } else if (json_is_array(member) && is_array_of_records(field.form) && !one_in(6)) {
        disturb_array(member, field.form);
    } else {
        json_object_set_new(object, field.name, value(field.form, 0));
    }
}

Json Wild::disturb(Json json, const Form& form) {
    if (is_array_of_records(form) && json_is_array(json.get())) {
        disturb_array(json.get(), form);
    } else if (!is_array_of_records(form) && json_is_object(json.get())) {
        disturb_object(json.get(), *form.record);
    } else {
        json.reset(value(form, 0));
    }
    return json;
}

} // namespace fuzz
