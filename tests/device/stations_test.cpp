// SPDX-License-Identifier: MIT
// The stations of the simulated driver, and the list of those of quilt VAPs.
#include "driver_request.h"

#include <cstring>
#include <vector>

using namespace orlo::test;

namespace {

class Stations : public DriverRequest {
protected:
    /// The driver's table of wdev0ap0, for these lines; its error number if it has none.
    int table_of(const std::string& lines) {
        shell("mkdir -p /var/run/device/stations");
        write_file("/var/run/device/stations/wdev0ap0", lines);
        return read_table();
    }

    int read_table() {
        table_.assign(32768, 0);
        const unsigned char in[32] = {};
        char text[256] = {};
        snprintf(text, sizeof text, "iwinfo 2 %p 32 %p %zu", static_cast<const void*>(in),
                 static_cast<void*>(table_.data()), table_.size());
        iwreq request = request_for("wdev0ap0");
        request.u.data.pointer = text;
        request.u.data.length = sizeof text;
        return ask(0x8be4, request);
    }

    unsigned count() const { return number(8); }
    unsigned number(size_t at) const {
        unsigned value = 0;
        for (size_t i = 4; i-- > 0;) {
            value = value << 8 | table_[at + i];
        }
        return value;
    }
    std::string entry(size_t index) const {
        std::string text;
        for (size_t i = 0; i < 96; i++) {
            char byte[8];
            snprintf(byte, sizeof byte, "%02x", table_[16 + index * 96 + i]);
            text += byte;
        }
        return text;
    }

    std::vector<unsigned char> table_;
};

const std::string filler_20(40, 'e');
const std::string filler_4(8, 'e');

TEST_F(Stations, have_an_entry_of_96_bytes) {
    ASSERT_EQ(table_of("A4:5e:60:01:02:03 signal=-2 rate=66051 first-rate=54 ipv4=192.168.1.20 "
                       "rx-packets=1 rx-bytes=2 tx-packets=3 tx-bytes=4294967295 32=0a0b0c0d "
                       "40=11121314 48=ff\n"),
              0);
    EXPECT_EQ(count(), 1U);
    EXPECT_EQ(number(0), 0x4D52564CU);
    EXPECT_EQ(entry(0), "a45e60010203" + filler_20 + "36" + "fe" + "03020100" + "0a0b0c0d" +
                            filler_4 + "11121314" + "c0a80114" + "ff" + std::string(30, '0') +
                            "01000000" + filler_4 + "02000000" + filler_4 + "03000000" + filler_4 +
                            "ffffffff" + filler_4);
}

TEST_F(Stations, are_0_where_nothing_is_said) {
    ASSERT_EQ(table_of("00:00:00:00:00:01\n"), 0);
    EXPECT_EQ(entry(0), "000000000001" + filler_20 + std::string(20, '0') + filler_4 +
                            std::string(48, '0') + std::string(8, '0') + filler_4 +
                            std::string(8, '0') + filler_4 + std::string(8, '0') + filler_4 +
                            std::string(8, '0') + filler_4);
}

TEST_F(Stations, are_none_without_their_file) {
    shell("rm -rf /var/run/device/stations");
    ASSERT_EQ(read_table(), 0);
    EXPECT_EQ(count(), 0U);
}

TEST_F(Stations, are_341_at_most) {
    std::string lines;
    for (int i = 0; i < 400; i++) {
        lines += "02:00:00:00:00:01 0=" + std::string(190, 'a') +
                 " rx-packets=" + std::to_string(i) + "\n"; // longer in all than any buffer
    }
    ASSERT_EQ(table_of(lines), 0);
    EXPECT_EQ(count(), 341U);
    EXPECT_EQ(number(16 + 340 * 96 + 64), 340U);
    EXPECT_EQ(table_[16 + 341 * 96], 0);
}

TEST_F(Stations, need_a_line_end_between_them_only) {
    ASSERT_EQ(table_of("02:00:00:00:00:01\n02:00:00:00:00:02"), 0);
    EXPECT_EQ(count(), 2U);
}

TEST_F(Stations, are_refused_when_a_line_is_none) {
    for (const char* line :
         {"nobody", "", "02:00:00:00:00", "02:00:00:00:00:01 signal", "02:00:00:00:00:01 signal=x",
          "02:00:00:00:00:01 signal=128", "02:00:00:00:00:01 signal=-129",
          "02:00:00:00:00:01 rate=-1", "02:00:00:00:00:01 rate=4294967296",
          "02:00:00:00:00:01 first-rate=256", "02:00:00:00:00:01 ipv4=1.2.3",
          "02:00:00:00:00:01 ipv4=111.111.111.111.111.111.111", "02:00:00:00:00:01 speed=1",
          "02:00:00:00:00:01 96=00", "02:00:00:00:00:01 -1=00", "02:00:00:00:00:01 95=0000",
          "02:00:00:00:00:01 3=0", "02:00:00:00:00:01 3=0g"}) {
        EXPECT_EQ(table_of(std::string(line) + "\n02:00:00:00:00:02\n"), EINVAL) << line;
    }
    EXPECT_EQ(table_of(std::string(100'000, 'x')), EINVAL);
}

TEST_F(Stations, of_quilt_vaps_are_listed_in_a_file) {
    EXPECT_EQ(shell("grep -i 02:00:00:00:01:01 /sys/kernel/debug/sta/sta_assoc_list | "
                    "awk '$4==1{print}'")
                  .out,
              "a4:5e:60:01:02:03 60dB 02:00:00:00:01:01 1 1 36 12 192.168.1.20\n");
    EXPECT_EQ(shell("echo >>/sys/kernel/debug/sta/sta_assoc_list").status, 0) << "a plain file";
}

} // namespace
