// Reading the state files of the simulated driver.
#include "driver/state.h"

#include <cerrno>
#include <charconv>
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

} // namespace orlo::device
