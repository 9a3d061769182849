// SPDX-License-Identifier: MIT
// How a field is written in JSON, and what it accepts: built up from its type in the words of the
// tables, as in number().in(1, 255).or_not_given().
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "shell.h"

namespace orloctl {

struct Record;

enum class Type {
    flag,       // true or false, kept as 1 or 0
    number,     // an integer
    choice,     // the name of a number, or the number
    mask,       // the names of bits in an array, or their number
    flags,      // a fixed number of flags: each in its place, or the names of those that are set
    text,       // a text, or none
    texts,      // up to a fixed number of texts
    record,     // an object
    array,      // a fixed number of records: those that are not listed get their defaults
    some,       // a fixed number of records: those that are not listed are zero
    optional,   // an object, or none, which is NULL or zero
    list,       // as many records as there are
    keyed,      // a fixed number of records, of which each listed one names its position
    references, // the same of pointers to records: NULL where none is listed
    addresses,  // an array of texts that becomes a chain of nodes
};

struct Span {
    int64_t first;
    int64_t last;
};

// The name of a number, of a bit or of a flag.
struct Name {
    const char* name;
    uint32_t value; // the number, the bit, or the flag's position
};

// What is accepted beside the type. Without numbers, span or words: anything.
struct Accepted {
    std::vector<int64_t> numbers; // single ones, beside the span
    std::optional<Span> span;
    std::vector<const char*> words;
};

struct Form {
    Type type;
    std::array<Accepted, 2> accepted = {}; // by radio; two alike where the radio does not matter
    bool differs_by_radio = false;
    bool is_required = false;
    int64_t fallback = 0;       // the number when none is written
    bool has_not_given = false; // the fallback means "not given"
    std::array<const char*, 2> fallback_text = {nullptr, nullptr}; // by radio
    size_t shortest = 0;                                           // of a text, in bytes
    size_t longest = 0;                                            // 0: any length
    const char* separator = nullptr; // a text may be an array, which this joins
    const char* unit = "";
    bool is_mac = false;        // a text is an address
    Shell shell = Shell::never; // where a text reaches the shell
    std::vector<Name> names = {};
    const Record* record = nullptr; // of which the field is made
    size_t count = 1;               // how many there are, where their number is fixed
    const char* key = nullptr;      // the member that tells elements of a list apart
    const char* selected = nullptr; // the member of a union that this text selects

    Form in(int64_t first, int64_t last) const;
    Form one_of(std::vector<int64_t> numbers) const;
    Form words(std::vector<const char*> words) const;
    Form bytes(size_t most) const;
    Form not_empty() const;
    Form joined_by(const char* text) const;
    Form reaches(Shell place) const;
    Form like_mac() const;
    Form in_unit(const char* name) const;
    Form required() const;
    Form or_else(int64_t number) const;
    Form or_else(const char* text) const;
    Form or_not_given(int64_t number = -1) const;
    Form selected_by(const char* word) const;
};

// Where the tables' words begin.
namespace forms {

Form flag();
Form number();
Form choice(std::vector<Name> names);
Form mask(std::vector<Name> bits);
Form flags(size_t count);
Form flags(size_t count, std::vector<Name> positions);
Form text();
Form texts(size_t count);
Form record(const Record& of);
Form array(const Record& of, size_t count);
Form some(const Record& of, size_t count);
Form optional(const Record& of);
Form list(const Record& of, const char* key);
Form keyed(const Record& of, size_t count, const char* key);
Form references(const Record& of, size_t count, const char* key);
Form addresses();

// A form that accepts one thing on radio 0 and another on radio 1.
Form by_radio(const Form& radio_0, const Form& radio_1);

} // namespace forms

} // namespace orloctl
