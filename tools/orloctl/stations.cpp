// SPDX-License-Identifier: MIT
#include "stations.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>

#include "exit.h"
#include "orlo/records.h"

namespace orloctl {

namespace {

constexpr size_t record_size = sizeof(assoc_client_record);
constexpr size_t address_size = 6;
constexpr int station_kind = 0;

static_assert(record_size == 134);

// One record's bytes. Its numbers are little-endian, whatever the machine.
class Bytes {
public:
    explicit Bytes(const char* first) : first_(reinterpret_cast<const unsigned char*>(first)) {}

    int byte(size_t offset) const { return first_[offset]; }

    uint32_t number(size_t offset, size_t size) const {
        uint32_t value = 0;
        for (size_t i = 0; i < size; i++) {
            value |= static_cast<uint32_t>(first_[offset + i]) << (8 * i);
        }
        return value;
    }

    std::string mac(size_t offset) const {
        std::string text;
        for (size_t i = 0; i < address_size; i++) {
            char pair[4];
            snprintf(pair, sizeof pair, "%s%02x", i == 0 ? "" : ":", first_[offset + i]);
            text += pair;
        }
        return text;
    }

    // Network byte order.
    std::optional<std::string> ipv4(size_t offset) const {
        if (number(offset, 4) == 0) {
            return std::nullopt;
        }
        std::string text;
        for (size_t i = 0; i < 4; i++) {
            text += (i == 0 ? "" : ".") + std::to_string(byte(offset + i));
        }
        return text;
    }

    // A text that may fill its place.
    std::string text(size_t offset, size_t size) const {
        return {first_ + offset, std::find(first_ + offset, first_ + offset + size, '\0')};
    }

private:
    const unsigned char* first_;
};

template <class Number>
std::optional<Number> unless_zero(Number number) {
    return number == 0 ? std::optional<Number>() : number;
}

#define OFFSET(member) offsetof(assoc_client_record, member)

Station station_of(const Bytes& bytes) {
    Station station = {};
    station.radio = bytes.byte(OFFSET(radio));
    station.vap = bytes.byte(OFFSET(vap));
    station.bssid = bytes.mac(OFFSET(bssid));
    station.channel = unless_zero(bytes.byte(OFFSET(channel)));
    station.mac = bytes.mac(OFFSET(sta_mac));
    station.ipv4 = bytes.ipv4(OFFSET(ipv4));
    station.ssid = bytes.text(OFFSET(ssid), sizeof(assoc_client_record::ssid));
    station.vlan_id = unless_zero(static_cast<int>(bytes.number(OFFSET(vlan_id), 2)));
    station.rate = unless_zero(bytes.number(OFFSET(rate), 4));
    station.signal = static_cast<int32_t>(bytes.number(OFFSET(signal), 4));
    station.area_auth = bytes.number(OFFSET(area_auth), 4) != 0;
    return station;
}

} // namespace

std::vector<Station> read_stations(const std::string& bytes, const std::string& source) {
    if (bytes.size() % record_size != 0) {
        throw Refusal(source + " is no detail file: its " + std::to_string(bytes.size()) +
                      " bytes are no multiple of " + std::to_string(record_size) +
                      ", the size of a station's record");
    }
    std::vector<Station> stations;
    for (size_t at = 0; at < bytes.size(); at += record_size) {
        const Bytes record(bytes.data() + at);
        if (record.byte(OFFSET(kind)) != station_kind) {
            throw Refusal(source + " is no detail file: record " +
                          std::to_string(at / record_size + 1) + " is of kind " +
                          std::to_string(record.byte(OFFSET(kind))) + ", not a station's");
        }
        stations.push_back(station_of(record));
    }
    return stations;
}

} // namespace orloctl
