// SPDX-License-Identifier: MIT
// Traffic counters of mesh links: those that other access points made to this one (on the mesh VAP)
// and the one that this one made upward (on its mesh station).
#pragma once

#include <cstdint>
#include <cstdlib>

namespace orlo {

struct ml_counter {
    char name[18];    // the connected device's address; empty for the station
    char raw_mac[18]; // the address it is connected with, likewise
    int32_t radio;    // of the mesh VAP
    int32_t vap;
    int64_t tx_bytes;
    int64_t rx_bytes;
    int32_t link_speed; // as get_link_speed tells it, 0 when that is unknown
    int64_t timestamp;  // seconds since 1970
};

// What the last report read, kept for the life of the process.
struct Sample {
    ml_counter* records;
    int count;

    void forget() {
        free(records);
        *this = {};
    }
};

// The counters of one reading, released with the scope unless they are kept.
class CounterTable {
public:
    CounterTable() = default;
    ~CounterTable() { free(records_); }
    CounterTable(const CounterTable&) = delete;
    CounterTable& operator=(const CounterTable&) = delete;

    // Room for at least so many records, each new one zeroed; false when memory runs out.
    bool make_room(int records);

    // The first record that is not counted yet; there must be room for it.
    ml_counter* next() { return records_ + count_; }
    void count_next() { count_++; }

    int count() const { return count_; }
    ml_counter* begin() { return records_; }
    ml_counter* end() { return records_ + count_; }

    // Puts these records into the place of the sample's.
    void replace(Sample* sample);

private:
    ml_counter* records_ = nullptr;
    int count_ = 0;
    int room_ = 0;
};

// One record for each connected access point, none when there is none.
bool get_ml_vap_counters(CounterTable* table);

// The one record of the mesh station.
bool get_ml_sta_counter(CounterTable* table);

// The rates of sending and receiving between two readings, in bytes per second, and in place of the
// time the seconds between them; all zero without one of the two. A counter that went backwards
// counts as one that stood still.
ml_counter diff_ml_counter(const ml_counter* current, const ml_counter* previous);

// The rate at which an interface sends to a station, or to its first one without an address, in
// bit/s of 2^20 to the Mbit. -1 when it cannot be told, 0 when the station is not listed.
int get_link_speed(const char* interface, const char* address);

} // namespace orlo
