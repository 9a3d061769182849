// SPDX-License-Identifier: MIT
// What the simulated driver knows about an interface: a small text file of `key value` lines that
// tests and stand-ins write. Reading needs no memory but the object itself.
#pragma once

#include <cstddef>
#include <string_view>

namespace orlo::device {

/// The folder whose presence switches the simulated driver on.
extern const char* const driver_folder;

class StateFile {
public:
    /// True when the file could be read; what exceeds the buffer is cut.
    bool read(const char* path);

    /// The text after `key` and a blank, of the first such line; empty when there is none.
    std::string_view value(std::string_view key) const;

    /// As value(), of the first line that starts with both words.
    std::string_view value(std::string_view key, std::string_view word) const;

    std::string_view text() const { return {buffer_, length_}; }

private:
    char buffer_[4096];
    size_t length_ = 0;
};

/// A state file that is read line by line, however long it is.
class LineFile {
public:
    explicit LineFile(const char* path);
    ~LineFile();
    LineFile(const LineFile&) = delete;
    LineFile& operator=(const LineFile&) = delete;

    /// The next line, valid until the next call; one that exceeds the buffer comes in pieces.
    bool next(std::string_view& line);

private:
    char buffer_[4096];
    size_t begin_ = 0;
    size_t end_ = 0;
    int file_;
};

/// Takes the next word, up to a blank, off the front of a text.
std::string_view next_word(std::string_view& text);

/// Takes the part before `separator`, or all, off the front of a text.
std::string_view next_part(std::string_view& text, char separator);

/// Reads a whole text as a number between the limits; false leaves the number alone.
bool read_number(std::string_view text, long long least, long long most, long long& number);

/// Reads a whole text as a number in hexadecimal digits.
bool read_hex(std::string_view text, unsigned& number);

/// Reads "02:00:00:00:01:0a".
bool read_mac(std::string_view text, unsigned char (&mac)[6]);

} // namespace orlo::device
