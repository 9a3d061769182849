#include "records/reader.h"

#include <algorithm>
#include <map>

#include "text.h"

namespace orloctl {

namespace {

class Reader {
public:
    Reader(Arena& arena, Problems& problems) : arena_(arena), problems_(problems) {}

    // `key` is a member that belongs to the list and not to the record.
    void read(json_t* json, const Record& record, void* memory, Place place,
              const char* key = nullptr);
    void* read_keyed(json_t* json, const Form& form, const Place& place);

private:
    void read_member(json_t* json, const Field& field, void* record, const Place& place);
    void read_number(json_t* json, const Field& field, void* record, const Place& place);
    void read_text(json_t* json, const Field& field, void* record, const Place& place);
    void read_array(json_t* json, const Field& field, void* record, const Place& place);
    void read_list(json_t* json, const Field& field, void* record, const Place& place);
    void read_addresses(json_t* json, const Field& field, void* record, const Place& place);

    std::optional<int64_t> number(json_t* json, const Form& form, const Place& place);
    std::optional<int64_t> mask(json_t* json, const Form& form, const Place& place);
    std::optional<std::string> joined_elements(json_t* array, const Form& form, const Place& place);
    std::optional<size_t> position(json_t* element, const Form& form, const Place& place);

    void check_members(json_t* object, const Record& record, const Place& place, const char* key);
    void check_told_apart(const Form& form, AnyList records, const Place& place);
    void miss(const Field& field, const Place& place);
    void wrong(const Place& place, const std::string& what) {
        orloctl::wrong(place.path, what, problems_);
    }
    void wrong_type(const Place& place, const json_t* json, const char* type) {
        wrong(place, json_excerpt(json) + " is not " + type);
    }

    Arena& arena_;
    Problems& problems_;
};

void Reader::read(json_t* json, const Record& record, void* memory, Place place, const char* key) {
    if (json != nullptr && !json_is_object(json)) {
        wrong_type(place, json, "an object");
        return;
    }
    check_members(json, record, place, key);
    const size_t problems_before = problems_.size();
    for (const Field& field : record.fields) {
        json_t* member = json_object_get(json, field.name);
        const Place at = place.member(field.name);
        if (!is_selected(memory, record, field)) {
            if (member != nullptr) {
                wrong(at, std::string("is possible with ") + record.selector + " \"" +
                              field.form.selected + "\" only");
            }
            continue;
        }
        read_member(member, field, memory, at);
        if (field.is(record.switched_by) && load_number(memory, field) != 1) {
            place.checked = false;
        }
        if (field.is(record.radio_in)) {
            place.radio = static_cast<int>(load_number(memory, field));
        }
    }
    if (!place.checked || problems_.size() > problems_before) {
        return;
    }
    for (const Condition& condition : record.conditions) {
        if (!condition.holds(memory, place)) {
            wrong(place.member(condition.member), condition.sentence);
        }
    }
}

void Reader::check_members(json_t* object, const Record& record, const Place& place,
                           const char* key) {
    for (void* i = json_object_iter(object); i != nullptr; i = json_object_iter_next(object, i)) {
        const std::string name = json_object_iter_key(i);
        if (record.find(name) != nullptr || (key != nullptr && name == key)) {
            continue;
        }
        std::vector<std::string> known;
        if (key != nullptr) {
            known.emplace_back(key);
        }
        for (const Field& field : record.fields) {
            known.emplace_back(field.name);
        }
        wrong(place.member(name), "unknown member, known are " + joined(known, ", "));
    }
}

void Reader::read_member(json_t* json, const Field& field, void* record, const Place& place) {
    switch (field.form.type) {
    case Type::flag:
    case Type::number:
    case Type::mask:
        read_number(json, field, record, place);
        break;
    case Type::text:
        read_text(json, field, record, place);
        break;
    case Type::record:
        read(json, *field.form.record, member_of(record, field), place);
        break;
    case Type::array:
        read_array(json, field, record, place);
        break;
    case Type::optional:
        if (json != nullptr) {
            void* memory = arena_.take(field.form.record->size);
            read(json, *field.form.record, memory, place);
            store_pointer(record, field, memory);
        }
        break;
    case Type::list:
        read_list(json, field, record, place);
        break;
    case Type::keyed:
        store_pointer(record, field,
                      json == nullptr ? nullptr : read_keyed(json, field.form, place));
        break;
    case Type::addresses:
        read_addresses(json, field, record, place);
        break;
    }
}

void Reader::miss(const Field& field, const Place& place) {
    if (field.form.is_required && place.checked) {
        wrong(place, "is missing");
    }
}

void Reader::read_number(json_t* json, const Field& field, void* record, const Place& place) {
    store_number(record, field, field.form.fallback);
    if (json == nullptr) {
        miss(field, place);
        return;
    }
    const std::optional<int64_t> value = number(json, field.form, place);
    if (!value) {
        return;
    }
    if (!fits(field, *value)) {
        wrong(place, json_excerpt(json) + (field.storage == Storage::uint32
                                               ? " does not fit 32 bits (0 to 4294967295)"
                                               : " does not fit an int (-2147483648 to "
                                                 "2147483647)"));
        return;
    }
    store_number(record, field, *value);
    if (place.checked) {
        check_number(field.form, *value, place, problems_);
    }
}

std::optional<int64_t> Reader::number(json_t* json, const Form& form, const Place& place) {
    if (form.type == Type::flag && json_is_boolean(json)) {
        return json_is_true(json) ? 1 : 0;
    }
    if (form.type == Type::mask && json_is_array(json)) {
        return mask(json, form, place);
    }
    if (json_is_integer(json)) {
        return json_integer_value(json);
    }
    wrong_type(place, json,
               form.type == Type::flag   ? "true or false"
               : form.type == Type::mask ? "an array of names"
                                         : "an integer");
    return std::nullopt;
}

std::optional<int64_t> Reader::mask(json_t* json, const Form& form, const Place& place) {
    uint32_t value = 0;
    bool known = true;
    for (size_t i = 0; i < json_array_size(json); i++) {
        const json_t* element = json_array_get(json, i);
        const char* name = json_string_value(element);
        const auto found = std::find_if(form.bits.begin(), form.bits.end(), [&](const Bit& bit) {
            return name != nullptr && bit.name == std::string(name);
        });
        if (found == form.bits.end()) {
            std::vector<std::string> names;
            for (const Bit& bit : form.bits) {
                names.push_back(std::string("\"") + bit.name + "\"");
            }
            wrong_type(place.element(i), element, alternatives(names).c_str());
            known = false;
        } else {
            value |= found->bit;
        }
    }
    return known ? std::optional<int64_t>(value) : std::nullopt;
}

void Reader::read_text(json_t* json, const Field& field, void* record, const Place& place) {
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
        wrong(place, "a text of " + std::to_string(value->size()) + " bytes is longer than " +
                         std::to_string(field.size));
        return;
    }
    store_text(record, field, value, arena_);
    if (place.checked) {
        check_text(form, *value, place, problems_);
    }
}

std::optional<std::string> Reader::joined_elements(json_t* array, const Form& form,
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

void Reader::read_array(json_t* json, const Field& field, void* record, const Place& place) {
    const Form& form = field.form;
    if (json != nullptr && !json_is_array(json)) {
        wrong_type(place, json, "an array");
        return;
    }
    if (json_array_size(json) > form.count) {
        wrong(place, std::to_string(json_array_size(json)) + " elements are more than " +
                         std::to_string(form.count));
        return;
    }
    auto* first = static_cast<unsigned char*>(member_of(record, field));
    for (size_t i = 0; i < form.count; i++) {
        read(json_array_get(json, i), *form.record, first + i * form.record->size,
             place.element(i));
    }
}

void Reader::read_list(json_t* json, const Field& field, void* record, const Place& place) {
    if (json == nullptr) {
        return;
    }
    if (!json_is_array(json)) {
        wrong_type(place, json, "an array");
        return;
    }
    const Record& of = *field.form.record;
    const AnyList records = {arena_.take(json_array_size(json) * of.size), json_array_size(json)};
    for (size_t i = 0; i < records.count; i++) {
        read(json_array_get(json, i), of, static_cast<unsigned char*>(records.first) + i * of.size,
             place.element(i));
    }
    store_list(record, field, records);
    if (place.checked) {
        check_told_apart(field.form, records, place);
    }
}

void Reader::check_told_apart(const Form& form, AnyList records, const Place& place) {
    const Field* key = form.record->find(form.key);
    std::map<int64_t, size_t> first;
    for (size_t i = 0; i < records.count; i++) {
        const int64_t value = load_number(
            static_cast<const unsigned char*>(records.first) + i * form.record->size, *key);
        if (value == key->form.fallback) {
            continue;
        }
        const auto [described, is_new] = first.emplace(value, i);
        if (!is_new) {
            wrong(place.element(i).member(form.key), std::to_string(value) +
                                                         " is described already, by " +
                                                         place.element(described->second).path);
        }
    }
}

std::optional<size_t> Reader::position(json_t* element, const Form& form, const Place& place) {
    const json_t* value = json_object_get(element, form.key);
    const Place at = place.member(form.key);
    if (value == nullptr) {
        wrong(at, "is missing");
    } else if (!json_is_integer(value)) {
        wrong_type(at, value, "an integer");
    } else if (json_integer_value(value) < 0 ||
               json_integer_value(value) >= static_cast<json_int_t>(form.count)) {
        wrong(at, json_excerpt(value) + " is not in 0.." + std::to_string(form.count - 1));
    } else {
        return static_cast<size_t>(json_integer_value(value));
    }
    return std::nullopt;
}

void* Reader::read_keyed(json_t* json, const Form& form, const Place& place) {
    if (!json_is_array(json)) {
        wrong_type(place, json, "an array");
        return nullptr;
    }
    auto* first = static_cast<unsigned char*>(arena_.take(form.count * form.record->size));
    std::map<size_t, size_t> described;
    for (size_t i = 0; i < json_array_size(json); i++) {
        json_t* element = json_array_get(json, i);
        Place at = place.element(i);
        if (!json_is_object(element)) {
            wrong_type(at, element, "an object");
            continue;
        }
        const std::optional<size_t> index = position(element, form, at);
        if (!index) {
            continue;
        }
        const auto [earlier, is_new] = described.emplace(*index, i);
        if (!is_new) {
            wrong(at.member(form.key), std::to_string(*index) + " is described already, by " +
                                           place.element(earlier->second).path);
            continue;
        }
        at.vap = static_cast<int>(*index);
        read(element, *form.record, first + *index * form.record->size, at, form.key);
    }
    return first;
}

void Reader::read_addresses(json_t* json, const Field& field, void* record, const Place& place) {
    if (json != nullptr && !json_is_array(json)) {
        wrong_type(place, json, "an array");
        return;
    }
    std::vector<std::string> addresses;
    for (size_t i = 0; i < json_array_size(json); i++) {
        const json_t* element = json_array_get(json, i);
        if (!json_is_string(element)) {
            wrong_type(place.element(i), element, "a text");
            return;
        }
        addresses.emplace_back(json_string_value(element));
        if (place.checked && addresses.back().empty()) {
            wrong(place.element(i), "is empty");
        }
    }
    if (addresses.empty()) {
        miss(field, place);
    }
    arena_.fill(*static_cast<mac_list*>(member_of(record, field)), addresses);
}

} // namespace

void read_record(json_t* json, const Record& record, void* memory, const Place& place, Arena& arena,
                 Problems& problems) {
    Reader(arena, problems).read(json, record, memory, place);
}

void* read_keyed(json_t* json, const Form& form, const Place& place, Arena& arena,
                 Problems& problems) {
    return Reader(arena, problems).read_keyed(json, form, place);
}

} // namespace orloctl
