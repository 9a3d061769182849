// SPDX-License-Identifier: MIT
// The driver's table of stations, as the library reads it.
#include "support/access_point.h"

#include <climits>
#include <cstring>

namespace orlo::test {

namespace {

constexpr int most_stations = 341;
constexpr char untouched = 0x5A;

std::string hex(unsigned byte) {
    char text[8];
    snprintf(text, sizeof text, "%02x", byte);
    return text;
}

// Byte i of an entry of which no two bytes are the same.
unsigned char byte_at(size_t i) {
    return static_cast<unsigned char>(i * 7 + 3);
}

uint32_t number_at(size_t i) {
    uint32_t value = 0;
    for (size_t k = 4; k-- > 0;) {
        value = value << 8 | byte_at(i + k);
    }
    return value;
}

} // namespace

class StationTable : public AccessPoint {
protected:
    static constexpr const char* interface = "wdev0ap1";

    struct Outcome {
        int result;
        int length;
        std::vector<char> bytes; // as much room as the largest table takes, and no more

        mwl_assoc_entry entry(size_t index) const {
            mwl_assoc_entry entry;
            memcpy(&entry, bytes.data() + index * sizeof entry, sizeof entry);
            return entry;
        }
        bool untouched_from(size_t offset) const {
            return bytes == std::vector<char>(bytes.size(), untouched) ||
                   std::count(bytes.begin() + static_cast<long>(offset), bytes.end(), untouched) ==
                       static_cast<long>(bytes.size() - offset);
        }
    };

    static Outcome read(const char* name = interface) {
        Outcome outcome = {-2, 4711, std::vector<char>(88UL * most_stations, untouched)};
        outcome.result = exported<decltype(::mwl_get_assoclist)>("mwl_get_assoclist")(
            name, outcome.bytes.data(), &outcome.length);
        return outcome;
    }

    static void stations(const std::string& lines) {
        write_file(std::string("/var/run/device/stations/") + interface, lines);
    }

    static void many_stations(int count) {
        std::string lines;
        for (int i = 0; i < count; i++) {
            lines += "02:00:00:00:" + hex(static_cast<unsigned>(i) >> 8) + ":" +
                     hex(static_cast<unsigned>(i) & 0xFF) +
                     " rx-packets=" + std::to_string(1000 + i) + "\n";
        }
        stations(lines);
    }

    static void tell(const std::string& lines) {
        tell_driver(interface, "private setcmd 8be4 2100 0\n" + lines);
    }

    // Nothing was read and nothing was changed.
    static void expect_refusal(const char* why) {
        const Outcome outcome = read();
        EXPECT_EQ(outcome.result, -1) << why;
        EXPECT_EQ(outcome.length, 4711) << why;
        EXPECT_TRUE(outcome.untouched_from(0)) << why;
    }
};

TEST_F(StationTable, HasEachFieldAtItsPlace) {
    std::string bytes;
    for (size_t i = 0; i < 96; i++) {
        bytes += hex(byte_at(i));
    }
    stations("02:00:00:00:00:01 0=" + bytes + "\n");
    const Outcome outcome = read();
    ASSERT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.length, 88);

    const struct {
        size_t to;
        size_t from;
        size_t size;
    } copied[] = {
        {0, 0, 6},   {6, 27, 1},  {12, 64, 4}, {16, 80, 4}, {20, 44, 4}, {24, 48, 16},
        {44, 40, 1}, {46, 42, 2}, {52, 32, 1}, {54, 34, 2}, {56, 72, 4}, {60, 88, 4},
    };
    for (const auto& field : copied) {
        for (size_t i = 0; i < field.size; i++) {
            EXPECT_EQ(static_cast<unsigned char>(outcome.bytes[field.to + i]),
                      byte_at(field.from + i))
                << "byte " << field.to + i;
        }
    }
    const mwl_assoc_entry entry = outcome.entry(0);
    EXPECT_EQ(entry.noise, 0);
    EXPECT_EQ(entry.inactive, 0U);
    EXPECT_EQ(entry.first_rate.rate, byte_at(26) * 1000U);
    EXPECT_EQ(entry.second_rate.rate, number_at(28) * 1000U);
    EXPECT_EQ(entry.first_rate.flags, (untouched & 0xF0) | (byte_at(41) & 0x0F));
    EXPECT_EQ(entry.second_rate.flags, (untouched & 0xF0) | (byte_at(33) & 0x0F));
    EXPECT_TRUE(outcome.untouched_from(64)) << "the driver tells nothing more";
}

TEST_F(StationTable, HasNumbersOfAnySize) {
    stations("02:00:00:00:00:01 signal=-128 first-rate=255 28=ffffffff rx-packets=4294967295 "
             "rx-bytes=2147483648 tx-packets=1 tx-bytes=0\n"
             "02:00:00:00:00:02 signal=127 first-rate=0 rate=4294967\n");
    const Outcome outcome = read();
    ASSERT_EQ(outcome.length, 2 * 88);
    const mwl_assoc_entry first = outcome.entry(0);
    EXPECT_EQ(first.signal, -128);
    EXPECT_EQ(first.first_rate.rate, 255000U);
    EXPECT_EQ(first.second_rate.rate, 4294966296U) << "as 32 bits hold it";
    EXPECT_EQ(first.rx_packets, 4294967295U);
    EXPECT_EQ(first.rx_bytes, 2147483648U);
    EXPECT_EQ(first.tx_packets, 1U);
    EXPECT_EQ(first.tx_bytes, 0U);
    const mwl_assoc_entry second = outcome.entry(1);
    EXPECT_EQ(second.signal, 127);
    EXPECT_EQ(second.first_rate.rate, 0U);
    EXPECT_EQ(second.second_rate.rate, 4294967000U);
}

TEST_F(StationTable, TakesFourFlagsOneByOne) {
    for (unsigned flags : {0x0U, 0x1U, 0x2U, 0x4U, 0x8U, 0xFU, 0xF0U, 0xFFU}) {
        stations("02:00:00:00:00:01 33=" + hex(flags) + " 41=" + hex(flags ^ 0xFFU) + "\n");
        const mwl_assoc_entry entry = read().entry(0);
        EXPECT_EQ(entry.second_rate.flags, 0x50U | (flags & 0xFU));
        EXPECT_EQ(entry.first_rate.flags, 0x50U | (~flags & 0xFU));
    }
}

TEST_F(StationTable, ListsTheStationsOneBehindTheOther) {
    many_stations(3);
    const Outcome outcome = read();
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.length, 3 * 88);
    for (unsigned i = 0; i < 3; i++) {
        EXPECT_EQ(outcome.entry(i).mac[5], i);
        EXPECT_EQ(outcome.entry(i).rx_packets, 1000U + i);
    }
    EXPECT_TRUE(outcome.untouched_from(3UL * 88));
}

TEST_F(StationTable, MayBeEmpty) {
    stations("");
    const Outcome outcome = read();
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.length, 0);
    EXPECT_TRUE(outcome.untouched_from(0));
}

TEST_F(StationTable, HoldsAsManyStationsAsTheReply) {
    many_stations(most_stations);
    const Outcome outcome = read();
    EXPECT_EQ(outcome.length, most_stations * 88);
    EXPECT_EQ(outcome.entry(340).mac[4], 1);
    EXPECT_EQ(outcome.entry(340).mac[5], 84);
    EXPECT_EQ(outcome.entry(340).rx_packets, 1340U);
}

TEST_F(StationTable, IsReadToItsEndWhateverItSaysOfItself) {
    many_stations(2);
    const struct {
        int said;
        int stations;
    } rows[] = {
        {0, 0},     {1, 1},     {-1, 0},    {INT_MIN, 0},   {340, 340},
        {341, 341}, {342, 341}, {400, 341}, {INT_MAX, 341},
    };
    for (const auto& row : rows) {
        tell("station-count " + std::to_string(row.said) + "\n");
        const Outcome outcome = read();
        EXPECT_EQ(outcome.result, 0) << row.said;
        EXPECT_EQ(outcome.length, row.stations * 88) << row.said;
    }
    const mwl_assoc_entry beyond = read().entry(2);
    EXPECT_EQ(beyond.mac[0], 0) << "what the driver did not write is 0";
    EXPECT_EQ(beyond.rx_packets, 0U);
}

TEST_F(StationTable, MayEndInTheMiddleOfAnEntry) {
    stations(
        "02:00:00:00:00:01 rx-packets=1 tx-bytes=2\n02:00:00:00:00:02 rx-packets=3 tx-bytes=4\n");
    tell("reply-size " + std::to_string(16 + 96 + 70) + "\n");
    const Outcome outcome = read();
    EXPECT_EQ(outcome.length, 2 * 88);
    EXPECT_EQ(outcome.entry(0).tx_bytes, 2U);
    EXPECT_EQ(outcome.entry(1).mac[5], 2);
    EXPECT_EQ(outcome.entry(1).rx_packets, 3U);
    EXPECT_EQ(outcome.entry(1).tx_bytes, 0U);
    tell("reply-size 8\n");
    EXPECT_EQ(read().length, 0) << "no count";
}

TEST_F(StationTable, HasRoomFor32768BytesOfReply) {
    many_stations(2);
    tell("reply-room 32768\n");
    EXPECT_EQ(read().length, 2 * 88);
    tell("reply-room 32767\n");
    expect_refusal("less room");
    tell("reply-room 32769\n");
    expect_refusal("more room");
}

TEST_F(StationTable, IsRefusedWithoutItsMagic) {
    many_stations(2);
    tell("magic 4d52564b\n");
    expect_refusal("another magic");
    tell("magic 4c56524d\n");
    expect_refusal("the bytes the other way round");
    tell("reply-size 3\n");
    expect_refusal("cut within it");
    tell("fail setcmd EIO\n");
    expect_refusal("no reply");
    tell("fail private ENOMEM\n");
    expect_refusal("no private commands");
    tell_driver(interface, "name IEEE 802.11\n");
    expect_refusal("another driver");
}

TEST_F(StationTable, IsTakenEvenWhenTheRequestFails) {
    many_stations(1);
    tell("fail-after setcmd EIO\n");
    EXPECT_EQ(read().result, 0);
    EXPECT_EQ(read().length, 88);
}

TEST_F(StationTable, IsTheInterfacesOwn) {
    many_stations(1);
    EXPECT_EQ(read("mon.wdev0ap1").length, 88);
    EXPECT_EQ(read("wdev0ap2").length, 0);
    EXPECT_EQ(read("wdev2ap1").result, -1);
    EXPECT_THAT(door.trace(), IsEmpty()) << "nothing is logged";
}

} // namespace orlo::test
