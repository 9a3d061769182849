// SPDX-License-Identifier: MIT
#include "records/memory.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

namespace orloctl {

namespace {

template <class T>
T load(const void* record, const Field& field) {
    T value;
    memcpy(&value, member_of(record, field), sizeof value);
    return value;
}

template <class T>
void store(void* record, const Field& field, T value) {
    memcpy(member_of(record, field), &value, sizeof value);
}

// One layout for lists of anything.
static_assert(sizeof(AnyList) == sizeof(List<vap_settings>));

mac_list_node* new_node(const char* address) {
    auto* node = static_cast<mac_list_node*>(malloc(sizeof(mac_list_node)));
    if (node == nullptr) {
        throw std::bad_alloc();
    }
    *node = {address, nullptr};
    return node;
}

} // namespace

Arena::~Arena() {
    for (mac_list* list : lists_) {
        for (mac_list_node* node = list->head; node != nullptr;) {
            mac_list_node* next = node->next;
            free(node);
            node = next;
        }
    }
}

void* Arena::take(size_t size) {
    blocks_.push_back(std::make_unique<unsigned char[]>(size));
    return blocks_.back().get();
}

const char* Arena::text(const std::string& text) {
    auto* copy = static_cast<char*>(take(text.size() + 1));
    memcpy(copy, text.c_str(), text.size() + 1);
    return copy;
}

void Arena::fill(mac_list& list, const std::vector<std::string>& addresses) {
    lists_.push_back(&list);
    for (const std::string& address : addresses) {
        mac_list_node* node = new_node(text(address));
        (list.tail == nullptr ? list.head : list.tail->next) = node;
        list.tail = node;
        list.count++;
    }
}

known_client_node* Arena::chain(const std::vector<std::string>& addresses) {
    known_client_node* head = nullptr;
    known_client_node** next = &head;
    for (const std::string& address : addresses) {
        auto* node = static_cast<known_client_node*>(take(sizeof(known_client_node)));
        memcpy(node->mac, address.data(), std::min(address.size(), sizeof node->mac - 1));
        *next = node;
        next = &node->next;
    }
    return head;
}

void* member_of(void* record, const Field& field) {
    return static_cast<unsigned char*>(record) + field.offset;
}

const void* member_of(const void* record, const Field& field) {
    return static_cast<const unsigned char*>(record) + field.offset;
}

int64_t load_number(const void* record, const Field& field) {
    return field.storage == Storage::uint32 ? int64_t{load<uint32_t>(record, field)}
                                            : int64_t{load<int32_t>(record, field)};
}

void store_number(void* record, const Field& field, int64_t value) {
    if (field.storage == Storage::uint32) {
        store(record, field, static_cast<uint32_t>(value));
    } else {
        store(record, field, static_cast<int32_t>(value));
    }
}

bool fits(const Field& field, int64_t value) {
    if (field.storage == Storage::uint32) {
        return value >= 0 && value <= std::numeric_limits<uint32_t>::max();
    }
    return value >= std::numeric_limits<int32_t>::min() &&
           value <= std::numeric_limits<int32_t>::max();
}

std::optional<std::string> load_text(const void* record, const Field& field) {
    if (field.storage == Storage::characters) {
        const auto* first = static_cast<const char*>(member_of(record, field));
        return std::string(first, std::find(first, first + field.size, '\0'));
    }
    const auto* text = load<const char*>(record, field);
    return text == nullptr ? std::optional<std::string>() : std::string(text);
}

void store_text(void* record, const Field& field, const std::optional<std::string>& value,
                Arena& arena) {
    if (field.storage == Storage::text) {
        store<const char*>(record, field, value ? arena.text(*value) : nullptr);
        return;
    }
    memset(member_of(record, field), 0, field.size);
    if (value) {
        memcpy(member_of(record, field), value->data(), std::min(value->size(), field.size));
    }
}

void* load_pointer(const void* record, const Field& field) {
    return load<void*>(record, field);
}

void store_pointer(void* record, const Field& field, void* value) {
    store(record, field, value);
}

AnyList load_list(const void* record, const Field& field) {
    return load<AnyList>(record, field);
}

void store_list(void* record, const Field& field, AnyList value) {
    store(record, field, value);
}

bool is_selected(const void* record, const Record& of, const Field& field) {
    if (field.form.selected == nullptr) {
        return true;
    }
    const Field* selector = of.find(of.selector);
    return selector != nullptr && load_text(record, *selector) == field.form.selected;
}

} // namespace orloctl
