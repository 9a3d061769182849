// SPDX-License-Identifier: MIT
// Traffic counters: the totals of the wired ports and of the radios, and the records of all VAPs
// and of both radios. The kernel's counters are files that a test writes.
#include "support/access_point.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orlo::test {

namespace {

const char* const counter_names[] = {"tx_bytes",   "rx_bytes",  "tx_packets",
                                     "rx_packets", "tx_errors", "rx_errors"};

constexpr const char* largest = "18446744073709551615\n";

std::string counter_folder(const std::string& interface) {
    return "/sys/class/net/" + interface + "/statistics";
}

void make_counter_folder(const std::string& interface) {
    for (const std::string& folder : {std::string("/sys/class"), std::string("/sys/class/net"),
                                      "/sys/class/net/" + interface, counter_folder(interface)}) {
        mkdir(folder.c_str(), 0755);
    }
}

} // namespace

class Counters : public AccessPoint {
protected:
    static void count(const std::string& interface, const std::string& counter,
                      const std::string& text) {
        make_counter_folder(interface);
        write_file(counter_folder(interface) + "/" + counter, text);
    }

    // All six of an interface: base + 1 bytes sent, base + 2 bytes received, and so on.
    static void count_from(uint64_t base, const std::string& interface) {
        for (const char* counter : counter_names) {
            count(interface, counter, std::to_string(++base) + "\n");
        }
    }

    // What the largest counter that there is says of a VAP's received bytes.
    uint64_t read_back(const std::string& text) const {
        count("wdev0ap0", "rx_bytes", text);
        vap_statistics record[32] = {};
        EXPECT_EQ(ops.api_get_vap_statistics(record), 0);
        return record[0].rx_bytes;
    }
};

struct Total {
    const char* operation;
    int64_t (*vendor_ops::*call)();
    uint64_t sum; // of what SetUp counts
    const char* end;
};

// clang-format off
const Total totals[] = {
    {"api_get_eth_bytes_tx", &vendor_ops::api_get_eth_bytes_tx, 1101 + 2201, "End... return: 3302"},
    {"api_get_eth_bytes_rx", &vendor_ops::api_get_eth_bytes_rx, 1102 + 2202, "End... return: 3304"},
    {"api_get_eth_packet_tx", &vendor_ops::api_get_eth_packet_tx, 1103 + 2203, "End... return: 3306"},
    {"api_get_eth_packet_rx", &vendor_ops::api_get_eth_packet_rx, 1104 + 2204, "End... return: 3308"},
    {"api_get_wlan_bytes_tx", &vendor_ops::api_get_wlan_bytes_tx, 4401 + 8801, "End... wlan_bytes_tx= 13202"},
    {"api_get_wlan_bytes_rx", &vendor_ops::api_get_wlan_bytes_rx, 4402 + 8802, "End... wlan_bytes_rx= 13204"},
    {"api_get_wlan_packet_tx", &vendor_ops::api_get_wlan_packet_tx, 4403 + 8803, "End... wlan_packet_tx= 13206"},
    {"api_get_wlan_packet_rx", &vendor_ops::api_get_wlan_packet_rx, 4404 + 8804, "End... wlan_packet_rx= 13208"},
    {"api_get_wlan_errors_tx", &vendor_ops::api_get_wlan_errors_tx, 4405 + 8805, "End... wlan_errors_tx= 13210"},
    {"api_get_wlan_errors_rx", &vendor_ops::api_get_wlan_errors_rx, 4406 + 8806, "End... wlan_errors_rx= 13212"},
};
// clang-format on

class Totals : public Counters {
protected:
    void SetUp() override {
        count_from(1100, "eth0");
        count_from(2200, "eth1");
        count_from(4400, "wdev0");
        count_from(8800, "wdev1");
        count_from(900000, "wdev0ap0"); // counts in no total
        count_from(900000, "eth2");
    }
};

TEST_F(Totals, AreTheSumOfBothPortsOrBothRadios) {
    for (const Total& total : totals) {
        door.forget();
        EXPECT_EQ((ops.*total.call)(), static_cast<int64_t>(total.sum)) << total.operation;
        const std::string name = "log " + std::string(total.operation);
        EXPECT_THAT(door.trace(), ElementsAre(name + ": Entering...", name + ": " + total.end));
    }
}

TEST_F(Totals, OfOnePortAloneAreItsOwn) {
    ASSERT_EQ(rename("/sys/class/net/eth1", "/sys/class/net/eth9"), 0);
    ASSERT_EQ(rename("/sys/class/net/wdev0", "/sys/class/net/wdev9"), 0);
    EXPECT_EQ(ops.api_get_eth_bytes_tx(), 1101);
    EXPECT_EQ(ops.api_get_eth_packet_rx(), 1104);
    EXPECT_EQ(ops.api_get_wlan_bytes_rx(), 8802);
    EXPECT_EQ(ops.api_get_wlan_errors_rx(), 8806);
    ASSERT_EQ(rename("/sys/class/net/eth0", "/sys/class/net/eth8"), 0);
    EXPECT_EQ(ops.api_get_eth_bytes_tx(), 0) << "without a port";
}

TEST_F(Totals, AreReadAnewByEachCall) {
    EXPECT_EQ(ops.api_get_eth_bytes_rx(), 3304);
    count("eth0", "rx_bytes", "2000\n");
    EXPECT_EQ(ops.api_get_eth_bytes_rx(), 4202);
}

TEST_F(Totals, WrapAroundAtTwoToTheSixtyFourth) {
    count("eth0", "tx_bytes", largest);
    count("eth1", "tx_bytes", largest);
    EXPECT_EQ(ops.api_get_eth_bytes_tx(), -2);
    EXPECT_EQ(door.trace().back(), "log api_get_eth_bytes_tx: End... return: 18446744073709551614");
    count("eth1", "tx_bytes", "1\n");
    EXPECT_EQ(ops.api_get_eth_bytes_tx(), 0);
}

TEST_F(Totals, BeyondTheLargestSignedCountAreNegativeWithTheSameBits) {
    count("wdev0", "rx_bytes", "9223372036854775807\n");
    count("wdev1", "rx_bytes", "1\n");
    EXPECT_EQ(ops.api_get_wlan_bytes_rx(), INT64_MIN);
    EXPECT_EQ(door.trace().back(),
              "log api_get_wlan_bytes_rx: End... wlan_bytes_rx= 9223372036854775808");
}

TEST_F(Totals, OfWiredMulticastPacketsAreNotCounted) {
    count("eth0", "multicast", "77\n");
    EXPECT_EQ(ops.api_get_eth_multicast_packet_rx(), 0);
    EXPECT_THAT(door.trace(),
                ElementsAre("log api_get_eth_multicast_packet_rx: Entering, not support.",
                            "log api_get_eth_multicast_packet_rx: End..."));
}

TEST_F(Counters, AreTheDecimalNumberAtTheBeginningOfTheirFile) {
    const struct {
        std::string text;
        uint64_t value;
    } rows[] = {
        {"0\n", 0},
        {"42", 42},
        {largest, UINT64_MAX},
        {"9223372036854775808\n", uint64_t{1} << 63},
        {"4294967296\n", uint64_t{1} << 32},
        {"12 packets\n", 12},
        {"  7\n", 7},
        {"012\n", 12},
        {"0x12\n", 0},
        {"", 0},
        {"none\n", 0},
        {"\n5\n", 0},                       // only the first line counts
        {"00000000000000000000123\n", 123}, // 23 characters are read
        {"000000000000000000000123\n", 12}, // of 24
        {"99999999999999999999999999999\n", UINT64_MAX},
        {std::string(5000, '1'), UINT64_MAX},
        {std::string(3, '\0') + "5\n", 0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(read_back(row.text), row.value) << row.text;
    }
}

TEST_F(Counters, ThatCannotBeReadAreZero) {
    EXPECT_EQ(read_back("5\n"), 5U);
    const std::string path = counter_folder("wdev0ap0") + "/rx_bytes";
    ASSERT_EQ(unlink(path.c_str()), 0);
    vap_statistics record[32] = {};
    record[0].rx_bytes = 99;
    ops.api_get_vap_statistics(record);
    EXPECT_EQ(record[0].rx_bytes, 0U) << "no file";
    ASSERT_EQ(mkdir(path.c_str(), 0755), 0);
    record[0].rx_bytes = 99;
    ops.api_get_vap_statistics(record);
    EXPECT_EQ(record[0].rx_bytes, 0U) << "a folder";
}

using VapStatistics = Counters;

TEST_F(VapStatistics, FillEveryEntryWhetherThereIsSuchAVapOrNot) {
    Trace expected = {"log api_get_vap_statistics: Entering..."};
    for (int i = 0; i < 32; i++) {
        const std::string index = std::to_string(i / 16) + "][" + std::to_string(i % 16);
        const std::string name = "wdev" + std::to_string(i / 16) + "ap" + std::to_string(i % 16);
        const bool is_there = i % 5 != 3;
        if (is_there) {
            count_from(static_cast<uint64_t>(i) * 100, name);
        }
        const auto shown = [&](int n) { return std::to_string(is_there ? i * 100 + n : 0); };
        expected.push_back("log api_get_vap_statistics: vap[" + index + "]: tx_byts: " + shown(1) +
                           ", rx_byts: " + shown(2) + ", tx_pkts: " + shown(3) + ", rx_pkts: " +
                           shown(4) + ", tx_errors: " + shown(5) + ", rx_errors: " + shown(6));
    }
    expected.emplace_back("log api_get_vap_statistics: End...");

    vap_statistics record[33];
    memset(record, 0xEE, sizeof record);
    EXPECT_EQ(ops.api_get_vap_statistics(record), 0);
    EXPECT_EQ(door.trace(), expected);
    for (uint64_t i = 0; i < 32; i++) {
        const uint64_t there = i % 5 != 3 ? 1 : 0;
        EXPECT_EQ(record[i].tx_bytes, there * (i * 100 + 1)) << i;
        EXPECT_EQ(record[i].rx_bytes, there * (i * 100 + 2)) << i;
        EXPECT_EQ(record[i].tx_packets, there * (i * 100 + 3)) << i;
        EXPECT_EQ(record[i].rx_packets, there * (i * 100 + 4)) << i;
        EXPECT_EQ(record[i].tx_errors, there * (i * 100 + 5)) << i;
        EXPECT_EQ(record[i].rx_errors, there * (i * 100 + 6)) << i;
    }
    EXPECT_EQ(record[32].rx_bytes, 0xEEEEEEEEEEEEEEEE) << "and nothing behind them";
}

TEST_F(VapStatistics, PrintLargeCountersWithoutASign) {
    count("wdev1ap15", "tx_errors", largest);
    vap_statistics record[32] = {};
    ops.api_get_vap_statistics(record);
    EXPECT_EQ(record[31].tx_errors, UINT64_MAX);
    EXPECT_EQ(door.trace()[32],
              "log api_get_vap_statistics: vap[1][15]: tx_byts: 0, rx_byts: 0, tx_pkts: 0, "
              "rx_pkts: 0, tx_errors: 18446744073709551615, rx_errors: 0");
}

TEST_F(VapStatistics, ReadBytesThenPacketsThenErrorsSentBeforeReceived) {
    count_from(0, "wdev0ap3");
    const int watch = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    ASSERT_GE(inotify_add_watch(watch, counter_folder("wdev0ap3").c_str(), IN_OPEN), 0);
    vap_statistics record[32] = {};
    ops.api_get_vap_statistics(record);

    alignas(inotify_event) char events[4096];
    const ssize_t length = read(watch, events, sizeof events);
    close(watch);
    std::vector<std::string> opened;
    for (ssize_t at = 0; at < length;) {
        const auto* event = reinterpret_cast<const inotify_event*>(events + at);
        opened.emplace_back(event->name);
        at += static_cast<ssize_t>(sizeof *event + event->len);
    }
    EXPECT_THAT(opened, testing::ElementsAreArray(counter_names));
}

TEST_F(VapStatistics, WithoutARecordReadNothing) {
    EXPECT_EQ(ops.api_get_vap_statistics(nullptr), 0);
    EXPECT_THAT(door.trace(), ElementsAre("log api_get_vap_statistics: Entering..."));
}

class RadioStatistics : public Counters {
protected:
    // Every counter of both radios, and one more behind them, has the number of its place.
    void SetUp() override {
        for (size_t i = 0; i < std::size(numbers); i++) {
            numbers[i] = 1000 + i;
        }
        count_from(100, "wdev0");
        count_from(200, "wdev1");
    }

    int fill() {
        memcpy(record, numbers, sizeof record);
        const int result = ops.api_get_radio_statistics(record);
        memcpy(numbers, record, sizeof record);
        return result;
    }

    static constexpr size_t counters = 21;
    radio_statistics record[2] = {};
    uint64_t numbers[2 * counters] = {};
};

TEST_F(RadioStatistics, FillTheCountersOfTheInterfaceAndLeaveTheOthers) {
    door.debug_enabled = false;
    EXPECT_EQ(stderr_of([&] { EXPECT_EQ(fill(), 0); }), "");
    uint64_t expected[2 * counters];
    for (size_t i = 0; i < std::size(expected); i++) {
        expected[i] = 1000 + i;
    }
    for (const size_t radio : {0U, 1U}) {
        uint64_t* entry = expected + radio * counters;
        const uint64_t base = 100 * (radio + 1);
        entry[14] = base + 4; // packets received
        entry[15] = base + 2; // bytes received
        entry[17] = base + 3; // packets sent
        entry[18] = base + 1; // bytes sent
        entry[19] = base + 5; // errors of sending
        entry[20] = base + 6; // errors of receiving
    }
    EXPECT_THAT(numbers, testing::ElementsAreArray(expected));
    EXPECT_THAT(door.trace(), ElementsAre("log api_get_radio_statistics: Entering..."));
}

TEST_F(RadioStatistics, OfARadioThatIsNotThereAreZero) {
    ASSERT_EQ(rename("/sys/class/net/wdev1", "/sys/class/net/other"), 0);
    door.debug_enabled = false;
    fill();
    EXPECT_EQ(record[0].tx_bytes, 101U);
    EXPECT_EQ(record[1].tx_bytes, 0U);
    EXPECT_EQ(record[1].rx_errors, 0U);
    EXPECT_EQ(record[1].rts_successes, 1000 + counters + 13);
}

TEST_F(RadioStatistics, ArePrintedForWhoeverKeepsDebugLines) {
    count("wdev1", "rx_errors", largest);
    const std::string printed = stderr_of([&] { EXPECT_EQ(fill(), 0); });
    const std::string radios = "\nRadio 0 ---------\n"
                               "WLAN Bytes Transmitted: 101\n"
                               "WLAN Bytes Received: 102\n"
                               "WLAN Packets Transmitted: 103\n"
                               "WLAN Packets Received: 104\n"
                               "WLAN Transmission Error Counter: 105\n"
                               "WLAN Receiving Error Counter: 106\n"
                               "Transmitted Fragment Count: 1000\n"
                               "Multicast Transmitted Frame Count: 1001\n"
                               "Failed Count: 1002\n"
                               "Retry Count: 1003\n"
                               "Multiple Retry Count: 1004\n"
                               "Frame Duplicate Count: 1005\n"
                               "RTS Success Count: 1013\n"
                               "RTS Failure Count: 1011\n"
                               "ACK Failure Count: 1010\n"
                               "Received Fragment Count: 1006\n"
                               "Multicast Received Frame Count: 1007\n"
                               "FCS Error Count: 1012\n"
                               "Transmitted Frame Count: 1008\n"
                               "WEP Undecryptable Count: 1009\n"
                               "\nRadio 1 ---------\n"
                               "WLAN Bytes Transmitted: 201\n"
                               "WLAN Bytes Received: 202\n"
                               "WLAN Packets Transmitted: 203\n"
                               "WLAN Packets Received: 204\n"
                               "WLAN Transmission Error Counter: 205\n"
                               "WLAN Receiving Error Counter: 18446744073709551615\n"
                               "Transmitted Fragment Count: 1021\n"
                               "Multicast Transmitted Frame Count: 1022\n"
                               "Failed Count: 1023\n"
                               "Retry Count: 1024\n"
                               "Multiple Retry Count: 1025\n"
                               "Frame Duplicate Count: 1026\n"
                               "RTS Success Count: 1034\n"
                               "RTS Failure Count: 1032\n"
                               "ACK Failure Count: 1031\n"
                               "Received Fragment Count: 1027\n"
                               "Multicast Received Frame Count: 1028\n"
                               "FCS Error Count: 1033\n"
                               "Transmitted Frame Count: 1029\n"
                               "WEP Undecryptable Count: 1030\n";
    ASSERT_THAT(printed, StartsWith(radios));
    EXPECT_THAT(printed.substr(radios.size()),
                testing::MatchesRegex("api_get_radio_statistics[(][1-9][0-9]*[)] End... return: "
                                      "Success\n"));
    EXPECT_THAT(door.trace(), ElementsAre("log api_get_radio_statistics: Entering..."));
}

TEST_F(RadioStatistics, WithoutARecordReadAndPrintNothing) {
    EXPECT_EQ(stderr_of([&] { EXPECT_EQ(ops.api_get_radio_statistics(nullptr), 0); }), "");
    EXPECT_THAT(door.trace(), ElementsAre("log api_get_radio_statistics: Entering..."));
}

} // namespace orlo::test
