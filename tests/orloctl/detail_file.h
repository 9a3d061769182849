// SPDX-License-Identifier: MIT
// Detail files of stations, made byte by byte.
#pragma once

#include <cstdint>
#include <string>

// A station's record, all zero but for what a test puts in.
class DetailRecord {
public:
    DetailRecord& put(size_t offset, const std::string& bytes) {
        bytes_.replace(offset, bytes.size(), bytes);
        return *this;
    }

    // Little-endian.
    DetailRecord& number(size_t offset, size_t size, uint32_t value) {
        for (size_t i = 0; i < size; i++) {
            bytes_[offset + i] = static_cast<char>(value >> (8 * i) & 0xFF);
        }
        return *this;
    }

    const std::string& bytes() const { return bytes_; }

private:
    std::string bytes_ = std::string(134, '\0');
};

// A laptop on VAP 2 of radio 1.
inline DetailRecord laptop() {
    DetailRecord record;
    record.put(0, std::string("\x02\x00\x00\x00\x01\x02", 6))
        .number(6, 1, 1)
        .number(7, 1, 2)
        .number(8, 1, 149);
    record.put(9, "\xA4\x5E\x60\x01\x02\x03").put(17, "\xC0\xA8\x01\x14").put(25, "Office");
    record.number(58, 2, 4094).number(94, 4, 866).number(102, 4, 0xFFFFFFFF);
    record.number(122, 4, static_cast<uint32_t>(-52)).number(130, 4, 1);
    return record;
}

// A station of which little is known.
inline DetailRecord stranger() {
    DetailRecord record;
    return record.put(9, std::string("\x00\x11\x22\x33\x44\x55", 6)).number(122, 4, 5);
}
