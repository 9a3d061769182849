// SPDX-License-Identifier: MIT
#include "text.h"

#include <algorithm>
#include <cctype>
#include <cstdio>

namespace orloctl {

namespace {

constexpr size_t column_gap = 2;
constexpr size_t narrowest_column = 20; // what is left of a line for the last column, at least

// In characters: the later bytes of one in UTF-8 take no place.
size_t shown_width(const std::string& text) {
    return static_cast<size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    }));
}

std::vector<size_t> column_widths(const std::vector<std::vector<std::string>>& rows) {
    std::vector<size_t> widths;
    for (const auto& row : rows) {
        widths.resize(std::max(widths.size(), row.size()), 0);
        for (size_t column = 0; column < row.size(); column++) {
            widths[column] = std::max(widths[column], shown_width(row[column]));
        }
    }
    return widths;
}

template <class Convert>
std::string converted(std::string text, Convert convert) {
    for (char& c : text) {
        c = static_cast<char>(convert(static_cast<unsigned char>(c)));
    }
    return text;
}

} // namespace

std::string Table::text(size_t indent) const {
    const std::vector<size_t> widths = column_widths(rows_);
    std::string result;
    for (const auto& row : rows_) {
        std::string line(indent, ' ');
        for (size_t column = 0; column + 1 < row.size(); column++) {
            line += row[column];
            line.append(widths[column] - shown_width(row[column]) + column_gap, ' ');
        }
        const size_t start = shown_width(line);
        const size_t left =
            start + narrowest_column < terminal_width ? terminal_width - start : narrowest_column;
        const std::string last = row.empty() ? "" : row.back();
        for (const std::string& part : wrapped(last, left)) {
            line += part;
            line.erase(line.find_last_not_of(' ') + 1);
            result += line + "\n";
            line.assign(start, ' ');
        }
    }
    return result;
}

std::vector<std::string> wrapped(const std::string& text, size_t width) {
    std::vector<std::string> lines;
    std::string rest = text;
    while (rest.size() > width) {
        size_t end = rest.rfind(' ', width);
        if (end == std::string::npos || end == 0) {
            end = rest.find(' ', 1);
        }
        if (end == std::string::npos) {
            break;
        }
        lines.push_back(rest.substr(0, end));
        rest.erase(0, end + 1);
    }
    lines.push_back(rest);
    return lines;
}

std::string paragraph(const std::string& text) {
    return joined(wrapped(text, terminal_width), "\n") + "\n";
}

std::string joined(const std::vector<std::string>& parts, const std::string& separator) {
    std::string result;
    for (const std::string& part : parts) {
        result += (result.empty() ? "" : separator) + part;
    }
    return result;
}

std::string alternatives(const std::vector<std::string>& choices) {
    if (choices.size() < 2) {
        return joined(choices, "");
    }
    const std::vector<std::string> all_but_last(choices.begin(), choices.end() - 1);
    return joined(all_but_last, ", ") + " or " + choices.back();
}

std::string printable(std::string text) {
    return converted(std::move(text), [](int c) { return c < ' ' || c == 0x7f ? '?' : c; });
}

std::string lower_case(std::string text) {
    return converted(std::move(text), tolower);
}

std::string upper_case(std::string text) {
    return converted(std::move(text), toupper);
}

std::string shown_number(float value) {
    char text[32];
    snprintf(text, sizeof text, "%g", static_cast<double>(value));
    return text;
}

} // namespace orloctl
