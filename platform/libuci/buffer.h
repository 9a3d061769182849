// SPDX-License-Identifier: MIT
// A text that grows while it is written, for what goes to a file in one piece.
#pragma once

#include <cstddef>
#include <string_view>

namespace uci {

class Buffer {
public:
    Buffer() = default;
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;
    ~Buffer();

    Buffer& operator<<(std::string_view text);
    Buffer& operator<<(char c) { return *this << std::string_view(&c, 1); }

    /// Adds a value between single quotes; a quote within is written as '\''.
    Buffer& quote(std::string_view value);

    /// False when memory ran out on the way: the text is incomplete then.
    [[nodiscard]] bool ok() const { return !failed_; }
    [[nodiscard]] std::string_view text() const { return {data_, size_}; }

private:
    bool make_room(size_t more);

    char* data_ = nullptr;
    size_t size_ = 0;
    size_t capacity_ = 0;
    bool failed_ = false;
};

} // namespace uci
