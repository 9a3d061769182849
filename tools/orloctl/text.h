// SPDX-License-Identifier: MIT
// Texts for people: tables, wrapped lines, joined words, numbers.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace orloctl {

constexpr size_t terminal_width = 80;

// Rows of cells; every column but the last is padded to its longest cell.
class Table {
public:
    void add(std::vector<std::string> row) { rows_.push_back(std::move(row)); }

    // The rows as lines that begin with `indent` blanks. The last column is wrapped at the width of
    // a terminal and goes on below itself.
    std::string text(size_t indent = 0) const;

private:
    std::vector<std::vector<std::string>> rows_;
};

// Lines of at most `width` characters, broken at blanks; a longer word has a line of its own.
std::vector<std::string> wrapped(const std::string& text, size_t width);

// The lines of a text, at most as wide as a terminal.
std::string paragraph(const std::string& text);

std::string joined(const std::vector<std::string>& parts, const std::string& separator);

// "a", "a or b", "a, b or c".
std::string alternatives(const std::vector<std::string>& choices);

// The text with its control characters replaced, for a line of a table.
std::string printable(std::string text);

std::string lower_case(std::string text);
std::string upper_case(std::string text);

// The shortest usual form: 20.5, 11, nan.
std::string shown_number(float value);

} // namespace orloctl
