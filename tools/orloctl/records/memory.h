// SPDX-License-Identifier: MIT
// Records in memory: where they lie for as long as an operation needs them, and the plain values of
// their members.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "records/field.h"

namespace orloctl {

// Owns records and all that they point to. Moving it moves no record.
class Arena {
public:
    Arena() = default;
    ~Arena();
    Arena(Arena&& other) = default;
    Arena& operator=(Arena&& other) = delete;
    Arena(const Arena&) = delete;
    Arena& operator=(const Arena&) = delete;

    // Zeroed memory, aligned for any record.
    void* take(size_t size);

    const char* text(const std::string& text);

    // Fills an empty list that lies in this arena with nodes from malloc(), as the library wants
    // them: it frees those that it consumes, the arena those that it does not.
    void fill(mac_list& list, const std::vector<std::string>& addresses);

    // A chain of known clients, which the library only reads; NULL when there is none.
    known_client_node* chain(const std::vector<std::string>& addresses);

private:
    std::vector<std::unique_ptr<unsigned char[]>> blocks_;
    std::vector<mac_list*> lists_;
};

void* member_of(void* record, const Field& field);
const void* member_of(const void* record, const Field& field);

// Flags, numbers and masks.
int64_t load_number(const void* record, const Field& field);
void store_number(void* record, const Field& field, int64_t value);
bool fits(const Field& field, int64_t value);

// Texts; without a value: NULL. An inline text need not be terminated.
std::optional<std::string> load_text(const void* record, const Field& field);
void store_text(void* record, const Field& field, const std::optional<std::string>& value,
                Arena& arena);

// The first of an array's elements: T is int32_t, const char* or a pointer.
template <class T>
T* elements_of(void* record, const Field& field) {
    return static_cast<T*>(member_of(record, field));
}
template <class T>
const T* elements_of(const void* record, const Field& field) {
    return static_cast<const T*>(member_of(record, field));
}

// Pointers and lists of records.
void* load_pointer(const void* record, const Field& field);
void store_pointer(void* record, const Field& field, void* value);
AnyList load_list(const void* record, const Field& field);
void store_list(void* record, const Field& field, AnyList value);

// Whether a member of a union is the one in use; true for every other member.
bool is_selected(const void* record, const Record& of, const Field& field);

} // namespace orloctl
