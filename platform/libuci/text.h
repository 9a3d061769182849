// SPDX-License-Identifier: MIT
// Which bytes may stand where: the classes of characters, and the rules for names, types and
// values that files and references have in common.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace uci {

enum CharClass : uint8_t {
    kName = 1,       // letters, digits and '_': names of sections and options
    kGraph = 2,      // visible ASCII: types, and names of packages
    kSpace = 4,      // separates words
    kGap = 8,        // separates words within a line
    kSpecial = 16,   // ends a run of plain characters in a word
    kPiece = 32,     // begins or continues a word that has to be put together from pieces
    kSplit = 64,     // ends a part of a reference
    kForbidden = 128 // control characters that no value in a reference may contain
};

constexpr uint8_t classify(unsigned c) {
    const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    const bool digit = c >= '0' && c <= '9';
    const bool space = c == ' ' || (c >= '\t' && c <= '\r');
    const bool piece = c == 0 || c == '\'' || c == '"' || c == '\\';
    const bool in_values = c >= ' ' || c == '\t' || c == '\n' || c == '\r';
    int classes = 0;
    classes |= letter || digit || c == '_' ? kName : 0;
    classes |= c > ' ' && c < 0x7f ? kGraph : 0;
    classes |= space ? kSpace : 0;
    classes |= space && c != '\n' ? kGap : 0;
    classes |= space || piece || c == '#' || c == ';' ? kSpecial : 0;
    classes |= piece ? kPiece : 0;
    classes |= c == 0 || c == '.' || c == '=' ? kSplit : 0;
    classes |= in_values ? 0 : kForbidden;
    return static_cast<uint8_t>(classes);
}

constexpr std::array<uint8_t, 256> classify_all() {
    std::array<uint8_t, 256> classes{};
    for (unsigned c = 0; c < classes.size(); c++) {
        classes[c] = classify(c);
    }
    return classes;
}

inline constexpr std::array<uint8_t, 256> kClasses = classify_all();

constexpr unsigned classes_of(char c) {
    return kClasses[static_cast<unsigned char>(c)];
}

constexpr bool is(char c, CharClass wanted) {
    return (classes_of(c) & wanted) != 0;
}

/// All characters are of a class.
constexpr bool all_are(std::string_view text, CharClass wanted) {
    for (const char c : text) {
        if (!is(c, wanted)) {
            return false;
        }
    }
    return true;
}

/// Names of sections and options.
constexpr bool is_name(std::string_view text) {
    return !text.empty() && all_are(text, kName);
}

/// Types of sections.
constexpr bool is_type(std::string_view text) {
    return !text.empty() && all_are(text, kGraph);
}

/// Names of packages, which are names of files too.
constexpr bool is_package_name(std::string_view text) {
    return is_type(text);
}

/// Values that come in through a reference or a staged change; files may hold anything.
constexpr bool is_value(std::string_view text) {
    for (const char c : text) {
        if (is(c, kForbidden)) {
            return false;
        }
    }
    return true;
}

} // namespace uci
