// SPDX-License-Identifier: MIT
#include "records/reader.h"

#include <functional>
#include <map>

#include "records/value_reader.h"
#include "text.h"

namespace orloctl {

namespace {

class Reader : private ValueReader {
public:
    using ValueReader::ValueReader;

    // `key` is a member that belongs to the list and not to the record.
    void read(json_t* json, const Record& record, void* memory, Place place,
              const char* key = nullptr);
    void* read_keyed(json_t* json, const Form& form, const Place& place);
    void read_some(json_t* json, const Form& form, void* first, const Place& place);

private:
    void read_member(json_t* json, const Field& field, void* record, const Place& place);
    void read_array(json_t* json, const Field& field, void* record, const Place& place);
    void read_list(json_t* json, const Field& field, void* record, const Place& place);
    void read_references(json_t* json, const Field& field, void* record, const Place& place);

    using Element = std::function<void(json_t*, size_t position, const Place&)>;
    void read_positions(json_t* array, const Form& form, const Place& place,
                        const Element& read_element);
    std::optional<size_t> position(json_t* element, const Form& form, const Place& place);

    void check_members(json_t* object, const Record& record, const Place& place, const char* key);
    void check_told_apart(const Form& form, AnyList records, const Place& place);
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
    const Form& form = field.form;
    switch (form.type) {
    case Type::flag:
    case Type::number:
    case Type::choice:
    case Type::mask:
        read_number(json, field, record, place);
        break;
    case Type::flags:
        read_flags(json, field, record, place);
        break;
    case Type::text:
        read_text(json, field, record, place);
        break;
    case Type::texts:
        read_texts(json, field, record, place);
        break;
    case Type::record:
        read(json, *form.record, member_of(record, field), place);
        break;
    case Type::array:
        read_array(json, field, record, place);
        break;
    case Type::some:
        if (field.storage == Storage::record) {
            read_some(json, form, member_of(record, field), place);
        } else if (json != nullptr) {
            void* first = arena_.take(form.count * form.record->size);
            read_some(json, form, first, place);
            store_pointer(record, field, first);
        }
        break;
    case Type::optional:
        if (json != nullptr && field.storage == Storage::record) {
            read(json, *form.record, member_of(record, field), place);
        } else if (json != nullptr) {
            void* memory = arena_.take(form.record->size);
            read(json, *form.record, memory, place);
            store_pointer(record, field, memory);
        }
        break;
    case Type::list:
        read_list(json, field, record, place);
        break;
    case Type::keyed:
        store_pointer(record, field, json == nullptr ? nullptr : read_keyed(json, form, place));
        break;
    case Type::references:
        read_references(json, field, record, place);
        break;
    case Type::addresses:
        read_addresses(json, field, record, place);
        break;
    }
}

void Reader::read_array(json_t* json, const Field& field, void* record, const Place& place) {
    const Form& form = field.form;
    if (!is_array(json, form.count, place)) {
        return;
    }
    auto* first = static_cast<unsigned char*>(member_of(record, field));
    for (size_t i = 0; i < form.count; i++) {
        read(json_array_get(json, i), *form.record, first + i * form.record->size,
             place.element(i));
    }
}

void Reader::read_some(json_t* json, const Form& form, void* first, const Place& place) {
    if (!is_array(json, form.count, place)) {
        return;
    }
    auto* memory = static_cast<unsigned char*>(first);
    for (size_t i = 0; i < json_array_size(json); i++) {
        read(json_array_get(json, i), *form.record, memory + i * form.record->size,
             place.element(i));
    }
}

void Reader::read_list(json_t* json, const Field& field, void* record, const Place& place) {
    if (json == nullptr || !is_array(json, SIZE_MAX, place)) {
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

// The objects of an array, each with the position that it names, which no two share.
void Reader::read_positions(json_t* array, const Form& form, const Place& place,
                            const Element& read_element) {
    std::map<size_t, size_t> described;
    for (size_t i = 0; i < json_array_size(array); i++) {
        json_t* element = json_array_get(array, i);
        const Place at = place.element(i);
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
        read_element(element, *index, at);
    }
}

void* Reader::read_keyed(json_t* json, const Form& form, const Place& place) {
    if (!json_is_array(json)) {
        wrong_type(place, json, "an array");
        return nullptr;
    }
    auto* first = static_cast<unsigned char*>(arena_.take(form.count * form.record->size));
    read_positions(json, form, place, [&](json_t* element, size_t index, const Place& element_at) {
        Place at = element_at;
        at.vap = static_cast<int>(index);
        read(element, *form.record, first + index * form.record->size, at, form.key);
    });
    return first;
}

void Reader::read_references(json_t* json, const Field& field, void* record, const Place& place) {
    const Form& form = field.form;
    if (json == nullptr || !is_array(json, form.count, place)) {
        return;
    }
    auto* pointers = elements_of<void*>(record, field);
    read_positions(json, form, place, [&](json_t* element, size_t index, const Place& at) {
        pointers[index] = arena_.take(form.record->size);
        read(element, *form.record, pointers[index], at);
    });
}

} // namespace

void read_record(json_t* json, const Record& record, void* memory, const Place& place, Arena& arena,
                 Problems& problems) {
    Reader(arena, problems).read(json, record, memory, place);
}

void* read_records(json_t* json, const Form& form, const Place& place, Arena& arena,
                   Problems& problems) {
    Reader reader(arena, problems);
    if (form.type == Type::keyed) {
        return reader.read_keyed(json, form, place);
    }
    void* first = arena.take(form.count * form.record->size);
    if (form.type == Type::some) {
        reader.read_some(json, form, first, place);
    } else {
        reader.read(json, *form.record, first, place);
    }
    return first;
}

} // namespace orloctl
