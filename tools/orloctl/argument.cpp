// SPDX-License-Identifier: MIT
#include "argument.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "description.h"
#include "exit.h"
#include "records/reader.h"
#include "text.h"

namespace orloctl {

namespace {

// How a sentence about an argument begins.
std::string argument_title(const Parameter& parameter, size_t position) {
    return argument_name(parameter, position) + ": ";
}

int read_integer(const std::string& title, const std::string& word) {
    const bool negative = word[0] == '-';
    const std::string digits = word.substr(negative ? 1 : 0);
    const bool hexadecimal = digits.rfind("0x", 0) == 0 || digits.rfind("0X", 0) == 0;
    const char* first = digits.data() + (hexadecimal ? 2 : 0);
    const char* last = digits.data() + digits.size();
    unsigned long long magnitude = 0;
    const auto [end, error] = std::from_chars(first, last, magnitude, hexadecimal ? 16 : 10);
    if (end != last || error == std::errc::invalid_argument) {
        throw Refusal(title + "'" + word + "' is not an integer");
    }
    constexpr auto largest = static_cast<unsigned long long>(std::numeric_limits<int>::max());
    if (error != std::errc() || magnitude > largest + (negative ? 1 : 0)) {
        throw Refusal(title + word + " does not fit an int (-2147483648 to 2147483647)");
    }
    const auto value = static_cast<long long>(magnitude);
    return static_cast<int>(negative ? -value : value);
}

float read_number(const std::string& title, const std::string& word) {
    char* end = nullptr;
    const float value = strtof(word.c_str(), &end);
    if (word.empty() || *end != '\0' || isspace(static_cast<unsigned char>(word[0])) != 0) {
        throw Refusal(title + "'" + word + "' is not a number");
    }
    if (!std::isfinite(value)) {
        throw Refusal(title + word + " does not fit a float");
    }
    return value;
}

Text read_text(const std::string& word) {
    if (word == "@null") {
        return std::nullopt;
    }
    return word.rfind("@@", 0) == 0 ? word.substr(1) : word;
}

std::string buffer_text(const TextBuffer& buffer) {
    return {buffer.begin(), std::find(buffer.begin(), buffer.end(), '\0')};
}

// Of anything but a record.
std::string shown_value(const Argument& argument) {
    if (const auto* buffer = std::get_if<TextBuffer>(&argument)) {
        return buffer_text(*buffer);
    }
    if (const auto* numbers = std::get_if<Numbers>(&argument)) {
        std::vector<std::string> shown;
        for (const float number : *numbers) {
            shown.push_back(std::isnan(number) ? "unset" : shown_number(number));
        }
        return joined(shown, " ");
    }
    const auto* word = std::get_if<uint16_t>(&argument);
    return word == nullptr ? "" : std::to_string(*word);
}

} // namespace

std::string argument_name(const Parameter& parameter, size_t position) {
    return "argument " + std::to_string(position) + " (" + parameter.name + ")";
}

Argument read_argument(const Parameter& parameter, size_t position, const std::string& word) {
    const std::string title = argument_title(parameter, position);
    switch (parameter.kind) {
    case Kind::integer:
        return read_integer(title, word);
    case Kind::number:
        return read_number(title, word);
    case Kind::text:
        return read_text(word);
    case Kind::text_out:
    case Kind::numbers_out:
    case Kind::word_out:
    case Kind::ignored:
    case Kind::record:
        break;
    }
    throw Refusal(title + "takes no word");
}

Argument read_record_argument(const Parameter& parameter, size_t position, const std::string& word,
                              Place place) {
    const auto arena = std::make_shared<Arena>();
    if (word == "@null") {
        return Records{arena, nullptr};
    }
    const bool in_file = word[0] == '@';
    const std::string source = in_file ? word.substr(1) : argument_name(parameter, position);
    const Json json = parse_json(in_file ? read_file(source) : word, source);
    Problems problems;
    place.path = parameter.name;
    void* first = read_records(json.get(), *parameter.form, place, *arena, problems);
    if (!problems.empty()) {
        throw Refusal(joined(problems, "\n"));
    }
    return Records{arena, first};
}

Argument empty_argument(const Parameter& parameter) {
    if (parameter.filled != nullptr) {
        const auto arena = std::make_shared<Arena>();
        return Records{arena, take_untouched(*parameter.filled, *arena)};
    }
    switch (parameter.kind) {
    case Kind::text_out:
        return TextBuffer{};
    case Kind::numbers_out: {
        Numbers numbers;
        numbers.fill(std::numeric_limits<float>::quiet_NaN()); // tells entries that stay unset
        return numbers;
    }
    case Kind::word_out:
        return uint16_t{0};
    case Kind::integer:
    case Kind::number:
    case Kind::text:
    case Kind::ignored:
    case Kind::record:
        break;
    }
    return std::monostate();
}

std::string shown_argument(const Parameter& parameter, const Argument& argument) {
    if (parameter.filled != nullptr) {
        return "\n" + shown_entries(*parameter.filled, std::get<Records>(argument).first, 2);
    }
    return " " + shown_value(argument) + "\n";
}

Json argument_json(const Parameter& parameter, const Argument& argument) {
    if (parameter.filled != nullptr) {
        return entries_json(*parameter.filled, std::get<Records>(argument).first);
    }
    if (const auto* numbers = std::get_if<Numbers>(&argument)) {
        Json array = json_array_new();
        for (const float number : *numbers) {
            append(array, json_number(number)); // null where unset
        }
        return array;
    }
    const auto* word = std::get_if<uint16_t>(&argument);
    return word == nullptr ? json_text(shown_value(argument)) : json_int(*word);
}

} // namespace orloctl
