// SPDX-License-Identifier: MIT
// A reply of the driver, read by offset. Nothing of it is trusted: what lies beyond its end is 0.
#pragma once

#include <cstddef>
#include <cstdint>

namespace orlo {

class Reply {
public:
    Reply(const unsigned char* bytes, size_t size) : bytes_(bytes), size_(size) {}

    uint8_t byte(size_t offset) const { return offset < size_ ? bytes_[offset] : 0; }

    // A little-endian number of four bytes, on any machine.
    uint32_t number(size_t offset) const {
        uint32_t value = 0;
        for (size_t i = 0; i < 4; i++) {
            value |= static_cast<uint32_t>(byte(offset + i)) << (8 * i);
        }
        return value;
    }

    // Bytes that keep their order.
    template <class Field>
    void copy(size_t offset, Field* field) const {
        auto* to = reinterpret_cast<unsigned char*>(field);
        for (size_t i = 0; i < sizeof(Field); i++) {
            to[i] = byte(offset + i);
        }
    }

    Reply from(size_t offset) const {
        return offset < size_ ? Reply(bytes_ + offset, size_ - offset) : Reply(nullptr, 0);
    }

    // Whether this driver wrote it.
    bool has_magic() const { return number(0) == 0x4D52564C; }

private:
    const unsigned char* bytes_;
    size_t size_;
};

} // namespace orlo
