// SPDX-License-Identifier: MIT
// Reading the state files of the simulated driver.
#include "driver/state.h"

#include <cerrno>
#include <charconv>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace orlo::device {

const char* const driver_folder = "/var/run/device/driver";

bool StateFile::read(const char* path) {
    length_ = 0;
    const int file = open(path, O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return false;
    }
    ssize_t got = 0;
    while (length_ < sizeof buffer_ &&
           (got = ::read(file, buffer_ + length_, sizeof buffer_ - length_)) > 0) {
        length_ += static_cast<size_t>(got);
    }
    close(file);
    return got >= 0;
}

std::string_view StateFile::value(std::string_view key) const {
    std::string_view rest = text();
    while (!rest.empty()) {
        std::string_view line = next_part(rest, '\n');
        if (next_word(line) == key) {
            return line;
        }
    }
    return {};
}

std::string_view StateFile::value(std::string_view key, std::string_view word) const {
    std::string_view rest = text();
    while (!rest.empty()) {
        std::string_view line = next_part(rest, '\n');
        if (next_word(line) == key && next_word(line) == word) {
            return line;
        }
    }
    return {};
}

LineFile::LineFile(const char* path) : file_(open(path, O_RDONLY | O_CLOEXEC)) {}

LineFile::~LineFile() {
    if (file_ >= 0) {
        close(file_);
    }
}

bool LineFile::next(std::string_view& line) {
    std::string_view rest(buffer_ + begin_, end_ - begin_);
    while (rest.find('\n') == std::string_view::npos && rest.size() < sizeof buffer_) {
        memmove(buffer_, rest.data(), rest.size());
        const ssize_t got = ::read(file_, buffer_ + rest.size(), sizeof buffer_ - rest.size());
        end_ = rest.size() + static_cast<size_t>(got > 0 ? got : 0);
        rest = {buffer_, end_};
        if (got <= 0) {
            break;
        }
    }
    if (rest.empty()) {
        return false;
    }
    line = next_part(rest, '\n');
    begin_ = end_ - rest.size();
    return true;
}

std::string_view next_word(std::string_view& text) {
    return next_part(text, ' ');
}

std::string_view next_part(std::string_view& text, char separator) {
    const size_t end = text.find(separator);
    const std::string_view part = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return part;
}

bool read_number(std::string_view text, long long least, long long most, long long& number) {
    long long value = 0;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    if (result.ec != std::errc() || result.ptr != end || value < least || value > most) {
        return false;
    }
    number = value;
    return true;
}

bool read_hex(std::string_view text, unsigned& number) {
    unsigned value = 0;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value, 16);
    if (result.ec != std::errc() || result.ptr != end) {
        return false;
    }
    number = value;
    return true;
}

bool read_mac(std::string_view text, unsigned char (&mac)[6]) {
    unsigned char bytes[6];
    for (unsigned char& byte : bytes) {
        const std::string_view part = next_part(text, ':');
        unsigned value = 0;
        if (part.size() != 2 || !read_hex(part, value)) {
            return false;
        }
        byte = static_cast<unsigned char>(value);
    }
    memcpy(mac, bytes, sizeof bytes);
    return text.empty();
}

} // namespace orlo::device
