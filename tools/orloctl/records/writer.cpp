// SPDX-License-Identifier: MIT
#include "records/writer.h"

#include <algorithm>

namespace orloctl {

namespace {

Json write_number(const void* record, const Field& field) {
    const Form& form = field.form;
    const int64_t value = load_number(record, field);
    if (form.has_not_given && value == form.fallback) {
        return nullptr;
    }
    if (form.type == Type::flag && (value == 0 || value == 1)) {
        return json_bool(value == 1);
    }
    for (const Name& name : form.names) {
        if (form.type == Type::choice && name.value == value) {
            return json_text(name.name);
        }
    }
    if (form.type != Type::mask) {
        return json_int(value);
    }
    Json names = json_array_new();
    int64_t rest = value;
    for (const Name& bit : form.names) {
        if ((value & bit.value) != 0) {
            append(names, json_text(bit.name));
            rest &= ~static_cast<int64_t>(bit.value);
        }
    }
    return rest == 0 ? std::move(names) : json_int(value);
}

// The name of a position, NULL for one that has none.
const char* name_of(const Form& form, size_t position) {
    for (const Name& name : form.names) {
        if (name.value == position) {
            return name.name;
        }
    }
    return nullptr;
}

Json write_flag(const Form& form, int32_t value) {
    if (form.has_not_given && value == form.fallback) {
        return json_null_new();
    }
    return value == 0 || value == 1 ? json_bool(value == 1) : json_int(value);
}

// By their names where that tells all, else one by one.
Json write_flags(const void* record, const Field& field) {
    const Form& form = field.form;
    const auto* flags = elements_of<int32_t>(record, field);
    Json names = json_array_new();
    Json values = json_array_new();
    bool has_names = !form.names.empty();
    for (size_t i = 0; i < form.count; i++) {
        append(values, write_flag(form, flags[i]));
        const char* name = name_of(form, i);
        if (flags[i] == 1 && name != nullptr) {
            append(names, json_text(name));
        } else {
            has_names = has_names && flags[i] == 0;
        }
    }
    return has_names ? std::move(names) : std::move(values);
}

Json write_texts(const void* record, const Field& field) {
    const auto* texts = elements_of<const char*>(record, field);
    Json array = json_array_new();
    for (size_t i = 0; i < field.form.count && texts[i] != nullptr; i++) {
        append(array, json_text(texts[i]));
    }
    return array;
}

Json write_text(const void* record, const Field& field) {
    const std::optional<std::string> value = load_text(record, field);
    const bool none = !value || (field.storage == Storage::characters && value->empty());
    return none ? nullptr : json_text(*value);
}

Json write_array(const Record& record, const void* first, size_t count) {
    Json array = json_array_new();
    for (size_t i = 0; i < count; i++) {
        append(array,
               write_record(record, static_cast<const unsigned char*>(first) + i * record.size));
    }
    return array;
}

bool is_zero(const void* memory, size_t size) {
    const auto* first = static_cast<const unsigned char*>(memory);
    return std::all_of(first, first + size, [](unsigned char byte) { return byte == 0; });
}

// Up to the last one that is not zero.
Json write_some(const Form& form, const void* first) {
    const auto* memory = static_cast<const unsigned char*>(first);
    const size_t size = form.record->size;
    size_t count = form.count;
    while (count > 0 && is_zero(memory + (count - 1) * size, size)) {
        count--;
    }
    return write_array(*form.record, first, count);
}

Json write_keyed(const Form& form, const void* first) {
    Json array = json_array_new();
    for (size_t i = 0; i < form.count; i++) {
        const auto* memory = static_cast<const unsigned char*>(first) + i * form.record->size;
        if (is_zero(memory, form.record->size)) {
            continue;
        }
        Json object = json_object_new();
        set(object, form.key, json_int(static_cast<long long>(i)));
        const Json members = write_record(*form.record, memory);
        json_object_update(object.get(), members.get());
        append(array, std::move(object));
    }
    return array;
}

Json write_references(const void* record, const Field& field) {
    const auto* pointers = elements_of<void*>(record, field);
    Json array = json_array_new();
    for (size_t i = 0; i < field.form.count; i++) {
        if (pointers[i] != nullptr) {
            append(array, write_record(*field.form.record, pointers[i]));
        }
    }
    return array;
}

Json write_clients(const void* record, const Field& field) {
    Json array = json_array_new();
    const auto* node = static_cast<const known_client_node*>(load_pointer(record, field));
    for (; node != nullptr; node = node->next) {
        append(array, json_text(node->mac));
    }
    return array;
}

Json write_addresses(const void* record, const Field& field) {
    if (field.storage == Storage::clients) {
        return write_clients(record, field);
    }
    Json array = json_array_new();
    const auto* list = static_cast<const mac_list*>(member_of(record, field));
    for (const mac_list_node* node = list->head; node != nullptr; node = node->next) {
        append(array, json_text(node->mac));
    }
    return array;
}

Json write_pointed(const Form& form, const void* first) {
    return first == nullptr ? nullptr : write_records(form, first);
}

Json write_optional(const void* record, const Field& field) {
    const Form& form = field.form;
    if (field.storage != Storage::record) {
        return write_pointed(form, load_pointer(record, field));
    }
    const void* memory = member_of(record, field);
    return is_zero(memory, form.record->size) ? nullptr : write_record(*form.record, memory);
}

// NULL for a member that is not given.
Json write_member(const void* record, const Field& field) {
    const Form& form = field.form;
    switch (form.type) {
    case Type::flag:
    case Type::number:
    case Type::choice:
    case Type::mask:
        return write_number(record, field);
    case Type::flags:
        return write_flags(record, field);
    case Type::text:
        return write_text(record, field);
    case Type::texts:
        return write_texts(record, field);
    case Type::record:
        return write_record(*form.record, member_of(record, field));
    case Type::array:
        return write_array(*form.record, member_of(record, field), form.count);
    case Type::some:
        return write_pointed(form, field.storage == Storage::record ? member_of(record, field)
                                                                    : load_pointer(record, field));
    case Type::optional:
        return write_optional(record, field);
    case Type::keyed:
        return write_pointed(form, load_pointer(record, field));
    case Type::list: {
        const AnyList list = load_list(record, field);
        return write_array(*form.record, list.first, list.count);
    }
    case Type::references:
        return write_references(record, field);
    case Type::addresses:
        return write_addresses(record, field);
    }
    return nullptr;
}

} // namespace

Json write_record(const Record& record, const void* memory) {
    Json object = json_object_new();
    for (const Field& field : record.fields) {
        if (!is_selected(memory, record, field)) {
            continue;
        }
        Json value = write_member(memory, field);
        if (value != nullptr) {
            set(object, field.name, std::move(value));
        }
        if (field.is(record.switched_by) && load_number(memory, field) != 1) {
            break;
        }
    }
    return object;
}

Json write_records(const Form& form, const void* first) {
    switch (form.type) {
    case Type::keyed:
        return write_keyed(form, first);
    case Type::some:
        return write_some(form, first);
    default:
        return write_record(*form.record, first);
    }
}

} // namespace orloctl
