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
    if (form.type != Type::mask) {
        return json_int(value);
    }
    Json names = json_array_new();
    int64_t rest = value;
    for (const Bit& bit : form.bits) {
        if ((value & bit.bit) != 0) {
            append(names, json_text(bit.name));
            rest &= ~static_cast<int64_t>(bit.bit);
        }
    }
    return rest == 0 ? std::move(names) : json_int(value);
}

Json write_text(const void* record, const Field& field) {
    const std::optional<std::string> value = load_text(record, field);
    const bool none = !value || (field.storage == Storage::characters && value->empty());
    return none ? nullptr : json_text(*value);
}

Json write_records(const Record& record, const void* first, size_t count) {
    Json array = json_array_new();
    for (size_t i = 0; i < count; i++) {
        append(array,
               write_record(record, static_cast<const unsigned char*>(first) + i * record.size));
    }
    return array;
}

Json write_addresses(const void* record, const Field& field) {
    Json array = json_array_new();
    const auto* list = static_cast<const mac_list*>(member_of(record, field));
    for (const mac_list_node* node = list->head; node != nullptr; node = node->next) {
        append(array, json_text(node->mac));
    }
    return array;
}

// NULL for a member that is not given.
Json write_member(const void* record, const Field& field) {
    const Form& form = field.form;
    switch (form.type) {
    case Type::flag:
    case Type::number:
    case Type::mask:
        return write_number(record, field);
    case Type::text:
        return write_text(record, field);
    case Type::record:
        return write_record(*form.record, member_of(record, field));
    case Type::array:
        return write_records(*form.record, member_of(record, field), form.count);
    case Type::optional: {
        const void* pointer = load_pointer(record, field);
        return pointer == nullptr ? nullptr : write_record(*form.record, pointer);
    }
    case Type::list: {
        const AnyList list = load_list(record, field);
        return write_records(*form.record, list.first, list.count);
    }
    case Type::keyed: {
        const void* pointer = load_pointer(record, field);
        return pointer == nullptr ? nullptr : write_keyed(form, pointer);
    }
    case Type::addresses:
        return write_addresses(record, field);
    }
    return nullptr;
}

bool is_zero(const unsigned char* first, size_t size) {
    return std::all_of(first, first + size, [](unsigned char byte) { return byte == 0; });
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

} // namespace orloctl
