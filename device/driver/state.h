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

/// Takes the next word, up to a blank, off the front of a text.
std::string_view next_word(std::string_view& text);

/// Takes the part before `separator`, or all, off the front of a text.
std::string_view next_part(std::string_view& text, char separator);

/// Reads a whole text as a number between the limits; false leaves the number alone.
bool read_number(std::string_view text, long long least, long long most, long long& number);

} // namespace orlo::device
