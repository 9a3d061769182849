// SPDX-License-Identifier: MIT
// Records of the library, and orloctl's own, described by tables: one const Field for each member
// of a C record says where it lies, how it is written in JSON and what it accepts. Reading, writing
// and checking records, the sentences about mistakes, the JSON schema and the help come from it.
//
//     {MEMBER_OF(vap_settings, dtim_period), number().in(1, 255).or_not_given(), "beacons ..."},
//
// A new record is a table, a Record, and a line in all_records (registry.cpp).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "orlo/records.h"
#include "records/form.h"

namespace orloctl {

// As many of a record as the description lists.
template <class T>
struct List {
    T* first;
    size_t count;

    T* begin() const { return first; }
    T* end() const { return first + count; }
};
using AnyList = List<void>;

// What a member is in C; the compiler finds out.
enum class Storage {
    int32,
    uint32,
    text,       // const char *
    characters, // char[N]
    numbers,    // int32_t[N]
    texts,      // const char *[N]
    record,     // a record, or an array of them
    pointer,    // to one record or several
    pointers,   // an array of those
    list,       // List
    addresses,  // struct mac_list
    clients,    // struct known_client_node *
};

template <class T>
struct IsList : std::false_type {};
template <class T>
struct IsList<List<T>> : std::true_type {};

template <class Member>
constexpr Storage storage_of() {
    using Element = std::remove_extent_t<Member>; // Member itself, unless that is an array
    constexpr bool is_array = std::is_array_v<Member>;
    if constexpr (std::is_same_v<Member, int32_t>) {
        return Storage::int32;
    } else if constexpr (std::is_same_v<Member, uint32_t>) {
        return Storage::uint32;
    } else if constexpr (std::is_same_v<Member, const char*>) {
        return Storage::text;
    } else if constexpr (is_array && std::is_same_v<Element, char>) {
        return Storage::characters;
    } else if constexpr (is_array && std::is_same_v<Element, int32_t>) {
        return Storage::numbers;
    } else if constexpr (is_array && std::is_same_v<Element, const char*>) {
        return Storage::texts;
    } else if constexpr (is_array && std::is_pointer_v<Element>) {
        return Storage::pointers;
    } else if constexpr (std::is_same_v<Member, mac_list>) {
        return Storage::addresses;
    } else if constexpr (std::is_same_v<Member, known_client_node*>) {
        return Storage::clients;
    } else if constexpr (IsList<Member>::value) {
        return Storage::list;
    } else if constexpr (std::is_pointer_v<Member>) {
        return Storage::pointer;
    } else {
        static_assert(std::is_class_v<Element>, "give this type a storage");
        return Storage::record;
    }
}

template <class Member>
constexpr size_t size_of() {
    return sizeof(Member); // NOLINT(bugprone-sizeof-expression): also of a pointer
}

struct Field {
    const char* name; // in JSON
    size_t offset;
    size_t size;
    Storage storage;
    Form form;
    const char* meaning;

    // NULL is no field's name.
    bool is(const char* other) const;
};

// The first four members of a Field, under the C name or another.
#define MEMBER_AS(name, record, member)                                                            \
    name, offsetof(record, member), size_of<decltype(record::member)>(),                           \
        storage_of<decltype(record::member)>()
#define MEMBER_OF(record, member) MEMBER_AS(#member, record, member)

// Where in a description a value stands, and of which radio and VAP it is, when that is known.
struct Place {
    std::string path;
    std::optional<int> radio;
    std::optional<int> vap;
    bool checked = true;         // values, not only types
    bool in_description = false; // of the access point, the rest of which tells more

    Place member(const std::string& name) const;
    Place element(size_t index) const;
};

// A rule over several members. It is checked once each of them is right by itself.
struct Condition {
    const char* member; // which the sentence is about
    const char* sentence;
    bool (*holds)(const void* record, const Place& place);
};

// Texts of a record, which may be NULL, in such rules.
bool is(const char* text, const char* word);
bool is_given(const char* text); // not empty either

template <auto Holds>
struct HoldsFor;
template <class T, bool (*Holds)(const T&, const Place&)>
struct HoldsFor<Holds> {
    static bool call(const void* record, const Place& place) {
        return Holds(*static_cast<const T*>(record), place);
    }
};

template <auto Holds>
Condition condition(const char* member, const char* sentence) {
    return {member, sentence, &HoldsFor<Holds>::call};
}

struct Record {
    const char* name;
    const char* meaning;
    size_t size;
    std::vector<Field> fields;
    std::vector<Condition> conditions = {};
    const char* switched_by = nullptr; // with another value than 1 nothing behind it is looked at
    const char* selector = nullptr;    // the text that selects a member of the union
    const char* radio_in = nullptr;    // the number that tells the radio

    const Field* find(const std::string& name) const;
};

} // namespace orloctl
