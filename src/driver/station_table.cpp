// SPDX-License-Identifier: MIT
// The driver's table of the stations of a VAP.
#include "driver/private_command.h"
#include "driver/reply.h"
#include "orlo/exports.h"

#include <cstring>

using orlo::Reply;

namespace {

constexpr size_t table_size = 32768;
constexpr size_t head_size = 16;
constexpr size_t station_size = 96;
constexpr int most_stations = (table_size - head_size) / station_size;

// Where the head says how many stations follow, and where a station's entry says what.
constexpr size_t at_count = 8;
constexpr size_t at_mac = 0;
constexpr size_t at_first_rate = 26; // one byte
constexpr size_t at_signal = 27;
constexpr size_t at_second_rate = 28; // four bytes
constexpr size_t at_second_rate_details = 32;
constexpr size_t at_first_rate_details = 40;
constexpr size_t at_ipv4 = 44;
constexpr size_t at_addr16 = 48;
constexpr size_t at_rx_packets = 64;
constexpr size_t at_rx_bytes = 72;
constexpr size_t at_tx_packets = 80;
constexpr size_t at_tx_bytes = 88;

// The driver's word for it, as far as the table has room.
int station_count(const Reply& table) {
    const auto said = static_cast<int32_t>(table.number(at_count));
    return said < 0 ? 0 : said < most_stations ? said : most_stations;
}

// Details are the scheme, four flags and two bytes of the driver's own.
void read_rate(const Reply& station, uint32_t mbit, size_t at_details, mwl_rate_entry* rate) {
    rate->rate = mbit * 1000;
    rate->mcs = station.byte(at_details);
    rate->flags =
        static_cast<uint8_t>((rate->flags & 0xF0U) | (station.byte(at_details + 1) & 0x0FU));
    station.copy(at_details + 2, &rate->tail);
}

void read_station(const Reply& station, mwl_assoc_entry* entry) {
    station.copy(at_mac, &entry->mac);
    entry->signal = static_cast<int8_t>(station.byte(at_signal));
    entry->noise = 0;
    entry->inactive = 0;
    entry->rx_packets = station.number(at_rx_packets);
    entry->tx_packets = station.number(at_tx_packets);
    station.copy(at_ipv4, &entry->ipv4);
    station.copy(at_addr16, &entry->addr16);
    read_rate(station, station.byte(at_first_rate), at_first_rate_details, &entry->first_rate);
    read_rate(station, station.number(at_second_rate), at_second_rate_details, &entry->second_rate);
    entry->rx_bytes = station.number(at_rx_bytes);
    entry->tx_bytes = station.number(at_tx_bytes);
}

} // namespace

int mwl_get_assoclist(const char* ifname, char* out, int* len) {
    const unsigned char in[32] = {};
    unsigned char bytes[table_size] = {};
    // A refused request leaves the table as it is: what it holds tells enough.
    orlo::mwl_setcmd_request(ifname, orlo::stations_operation, in, sizeof in, bytes, sizeof bytes);
    const Reply table(bytes, sizeof bytes);
    if (!table.has_magic()) {
        return -1;
    }
    const int count = station_count(table);
    for (int i = 0; i < count; i++) {
        const auto n = static_cast<size_t>(i);
        mwl_assoc_entry entry; // begins as the caller's, who keeps what the driver does not tell
        memcpy(&entry, out + n * sizeof entry, sizeof entry);
        read_station(table.from(head_size + n * station_size), &entry);
        memcpy(out + n * sizeof entry, &entry, sizeof entry);
    }
    *len = count * static_cast<int>(sizeof(mwl_assoc_entry));
    return 0;
}
