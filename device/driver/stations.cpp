// SPDX-License-Identifier: MIT
#include "driver/stations.h"

#include "driver/state.h"

#include <arpa/inet.h>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace orlo::device {
namespace {

/// The named numbers of a line, and where an entry has them.
struct Field {
    std::string_view name;
    size_t offset;
    size_t size;
    long long least;
    long long most;
};

constexpr Field fields[] = {
    {"first-rate", 26, 1, 0, UINT8_MAX}, {"signal", 27, 1, INT8_MIN, INT8_MAX},
    {"rate", 28, 4, 0, UINT32_MAX},      {"rx-packets", 64, 4, 0, UINT32_MAX},
    {"rx-bytes", 72, 4, 0, UINT32_MAX},  {"tx-packets", 80, 4, 0, UINT32_MAX},
    {"tx-bytes", 88, 4, 0, UINT32_MAX},
};
constexpr size_t at_ipv4 = 44;

/// What the driver keeps to itself.
struct Gap {
    size_t offset;
    size_t size;
};

constexpr Gap gaps[] = {{6, 20}, {36, 4}, {68, 4}, {76, 4}, {84, 4}, {92, 4}};

bool put_address(std::string_view text, unsigned char* entry) {
    char address[INET_ADDRSTRLEN] = {};
    return text.copy(address, sizeof address - 1) == text.size() &&
           inet_pton(AF_INET, address, entry + at_ipv4) == 1;
}

bool put_bytes(std::string_view hex, size_t offset, unsigned char* entry) {
    for (; !hex.empty(); hex.remove_prefix(2), offset++) {
        unsigned value = 0;
        if (hex.size() < 2 || offset >= station_size || !read_hex(hex.substr(0, 2), value)) {
            return false;
        }
        entry[offset] = static_cast<unsigned char>(value);
    }
    return true;
}

/// A word NAME=NUMBER, ipv4=ADDRESS, or OFFSET=BYTES.
bool put_word(std::string_view word, unsigned char* entry) {
    const std::string_view name = next_part(word, '=');
    if (name == "ipv4") {
        return put_address(word, entry);
    }
    long long number = 0;
    for (const Field& field : fields) {
        if (field.name == name) {
            unsigned char bytes[4];
            const bool fits = read_number(word, field.least, field.most, number);
            put_number(bytes, static_cast<unsigned>(number));
            memcpy(entry + field.offset, bytes, field.size);
            return fits;
        }
    }
    return read_number(name, 0, station_size - 1, number) &&
           put_bytes(word, static_cast<size_t>(number), entry);
}

bool read_station(std::string_view line, unsigned char* entry) {
    unsigned char mac[6];
    if (!read_mac(next_word(line), mac)) {
        return false;
    }
    memset(entry, 0, station_size);
    memcpy(entry, mac, sizeof mac);
    for (const Gap& gap : gaps) {
        memset(entry + gap.offset, filler, gap.size);
    }
    while (!line.empty()) {
        if (!put_word(next_word(line), entry)) {
            return false;
        }
    }
    return true;
}

} // namespace

void put_number(unsigned char* to, unsigned number) {
    for (int i = 0; i < 4; i++) {
        to[i] = static_cast<unsigned char>(number >> (8 * i));
    }
}

int read_stations(std::string_view interface, unsigned char* table, size_t size) {
    char path[64];
    snprintf(path, sizeof path, "/var/run/device/stations/%.*s", static_cast<int>(interface.size()),
             interface.data());
    LineFile file(path);
    std::string_view line;
    size_t used = 0;
    while (used + station_size <= size && file.next(line)) {
        if (!read_station(line, table + used)) {
            return -1;
        }
        used += station_size;
    }
    return static_cast<int>(used / station_size);
}

} // namespace orlo::device
