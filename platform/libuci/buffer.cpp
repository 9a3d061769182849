// SPDX-License-Identifier: MIT
#include "buffer.h"

#include <cstdlib>
#include <cstring>

namespace uci {

Buffer::~Buffer() {
    free(data_);
}

Buffer& Buffer::operator<<(std::string_view text) {
    if (!text.empty() && make_room(text.size())) {
        memcpy(data_ + size_, text.data(), text.size());
        size_ += text.size();
    }
    return *this;
}

Buffer& Buffer::quote(std::string_view value) {
    *this << '\'';
    for (;;) {
        const size_t plain = value.find('\'');
        if (plain == std::string_view::npos) {
            return *this << value << '\'';
        }
        *this << std::string_view(value.data(), plain) << "'\\''";
        value.remove_prefix(plain + 1);
    }
}

bool Buffer::make_room(size_t more) {
    if (failed_ || more <= capacity_ - size_) {
        return !failed_;
    }
    const size_t capacity = 2 * capacity_ + more + 256;
    auto* const data = static_cast<char*>(realloc(data_, capacity));
    failed_ = data == nullptr;
    if (data) {
        data_ = data;
        capacity_ = capacity;
    }
    return !failed_;
}

} // namespace uci
