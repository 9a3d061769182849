// SPDX-License-Identifier: MIT
// An operation's arguments: what kinds there are, how a word of the command line becomes one, and
// how one that the operation filled in is shown.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <variant>

#include "json.h"
#include "records/filled.h"
#include "records/memory.h"

namespace orloctl {

enum class Kind {
    integer,     // int
    number,      // float
    text,        // const char *
    text_out,    // char *: a buffer that the operation fills
    numbers_out, // float *: the twelve percentage steps
    word_out,    // uint16_t *
    ignored,     // void *: never read, passed as NULL
    record,      // struct ... *: JSON, or filled in
};

struct Parameter {
    std::string type; // "const char *"
    std::string name;
    Kind kind;
    const Form* form = nullptr;           // of a record that is read from JSON
    const FilledRecord* filled = nullptr; // of a record that the operation fills in

    bool takes_word() const { return kind <= Kind::text || form != nullptr; }
    bool is_filled_in() const {
        return filled != nullptr || (kind >= Kind::text_out && kind <= Kind::word_out);
    }
};

using Text = std::optional<std::string>;  // without a value: NULL
using TextBuffer = std::array<char, 256>; // more than any operation writes (128 bytes)
using Numbers = std::array<float, 12>;

// A record, or several in a row, and the memory in which they lie.
struct Records {
    std::shared_ptr<Arena> arena;
    void* first; // may be NULL
};

// Holds nothing for an ignored argument.
using Argument =
    std::variant<std::monostate, int, float, Text, TextBuffer, Numbers, uint16_t, Records>;

// The kind that a C type of the table means. A type without a kind does not compile.
template <class T>
constexpr Kind kind_of() {
    if constexpr (std::is_same_v<T, int>) {
        return Kind::integer;
    } else if constexpr (std::is_same_v<T, float>) {
        return Kind::number;
    } else if constexpr (std::is_same_v<T, const char*>) {
        return Kind::text;
    } else if constexpr (std::is_same_v<T, char*>) {
        return Kind::text_out;
    } else if constexpr (std::is_same_v<T, float*>) {
        return Kind::numbers_out;
    } else if constexpr (std::is_same_v<T, uint16_t*>) {
        return Kind::word_out;
    } else if constexpr (std::is_same_v<T, void*>) {
        return Kind::ignored;
    } else {
        static_assert(std::is_class_v<std::remove_pointer_t<T>>, "give this type a kind");
        return Kind::record;
    }
}

// The C value of an argument. `argument` must outlive the call.
template <class T>
T pass(Argument& argument) {
    constexpr Kind kind = kind_of<T>();
    if constexpr (kind == Kind::integer || kind == Kind::number) {
        return std::get<T>(argument);
    } else if constexpr (kind == Kind::text) {
        const Text& text = std::get<Text>(argument);
        return text ? text->c_str() : nullptr;
    } else if constexpr (kind == Kind::text_out) {
        return std::get<TextBuffer>(argument).data();
    } else if constexpr (kind == Kind::numbers_out) {
        return std::get<Numbers>(argument).data();
    } else if constexpr (kind == Kind::word_out) {
        return &std::get<uint16_t>(argument);
    } else if constexpr (kind == Kind::record) {
        return static_cast<T>(std::get<Records>(argument).first);
    } else {
        return nullptr; // ignored
    }
}

// "argument 2 (channel)": how a sentence names an argument. Positions count from 1.
std::string argument_name(const Parameter& parameter, size_t position);

// The argument that a word means. Throws a Refusal that names it.
Argument read_argument(const Parameter& parameter, size_t position, const std::string& word);

// The record that a word means: JSON, or "@FILE" with JSON. Throws a Refusal that lists everything
// that is wrong; values are checked against their rules if the place says so.
Argument read_record_argument(const Parameter& parameter, size_t position, const std::string& word,
                              Place place);

// An argument that takes no word, ready for the operation to fill in.
Argument empty_argument(const Parameter& parameter);

// What the operation filled in: a line, or lines, for people, and a value for programs.
std::string shown_argument(const Parameter& parameter, const Argument& argument);
Json argument_json(const Parameter& parameter, const Argument& argument);

} // namespace orloctl
