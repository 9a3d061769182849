// How a field is written in JSON, and what it accepts: built up from its type in the words of the
// tables, as in number().in(1, 255).or_not_given().
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace orloctl {

struct Record;

enum class Type {
    flag,      // true or false, kept as 1 or 0
    number,    // an integer
    mask,      // the names of bits in an array, or their number
    text,      // a text, or none
    record,    // an object
    array,     // a fixed number of records
    optional,  // an object, or none
    list,      // as many records as there are
    keyed,     // a fixed number of records, of which each listed one names its position
    addresses, // an array of texts that the library consumes
};

struct Span {
    int64_t first;
    int64_t last;
};

struct Bit {
    const char* name;
    uint32_t bit;
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
    std::vector<Bit> bits = {};
    const Record* record = nullptr; // of which the field is made
    size_t count = 1;               // how many there are, of array and keyed
    const char* key = nullptr;      // the member that tells elements of list and keyed apart
    const char* selected = nullptr; // the member of a union that this text selects

    Form in(int64_t first, int64_t last) const;
    Form one_of(std::vector<int64_t> numbers) const;
    Form words(std::vector<const char*> words) const;
    Form bytes(size_t most) const;
    Form not_empty() const;
    Form joined_by(const char* text) const;
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
Form mask(std::vector<Bit> bits);
Form text();
Form record(const Record& of);
Form array(const Record& of, size_t count);
Form optional(const Record& of);
Form list(const Record& of, const char* key);
Form keyed(const Record& of, size_t count, const char* key);
Form addresses();

// A form that accepts one thing on radio 0 and another on radio 1.
Form by_radio(const Form& radio_0, const Form& radio_1);

} // namespace forms

} // namespace orloctl
