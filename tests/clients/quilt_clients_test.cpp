// SPDX-License-Identifier: MIT
// The clients of quilt VAPs, which stand in the driver's debug file instead of its table.
#include "clients/clients.h"

#include <unistd.h>

namespace orlo::test {

class QuiltClients : public Clients {
protected:
    static constexpr const char* bssid = "02:00:00:00:01:01";
    static constexpr const char* command = "read grep -i 02:00:00:00:01:01 "
                                           "/sys/kernel/debug/sta/sta_assoc_list | "
                                           "awk '$4==1{print}'";

    QuiltClients() { configure("wireless.wifi1vap1.mode", "quilt"); }

    // Lines of the debug file with this BSSID.
    static int prepare_from(const std::string& lines) {
        debug_file(lines);
        return prepare();
    }
};

TEST_F(QuiltClients, AreReadFromTheDebugFile) {
    configure("wireless.wifi1vap1.ssid", "Quilt");
    configure("wireless.wifi1vap1.vlan_id", "7");
    configure("wireless.wifi1vap1.macfilter", "4");
    operate_on(1, 36);
    stations("wdev1ap1", "a4:5e:60:00:00:09 rate=100\n");
    ASSERT_EQ(prepare_from("a4:5e:60:01:02:03 60 02:00:00:00:01:01 1 x x x 192.168.1.20\n"), 0);
    EXPECT_THAT(everybody(), ElementsAre("1.1 a4:5e:60:01:02:03"));

    assoc_client_record expected = {};
    memcpy(expected.bssid, "\x02\0\0\0\x01\x01", 6);
    expected.radio = 1;
    expected.vap = 1;
    expected.channel = 36;
    memcpy(expected.sta_mac, "\xa4\x5e\x60\x01\x02\x03", 6);
    memcpy(&expected.ipv4, "\xc0\xa8\x01\x14", 4);
    memcpy(expected.ssid, "Quilt", 5);
    expected.vlan_id = 7;
    expected.ones = 0xFFFFFFFF;
    expected.signal = -35;
    expected.area_auth = 1;
    EXPECT_EQ(memcmp(&record(1, 1), &expected, sizeof expected), 0);
    EXPECT_THAT(door.trace({"read"}), ElementsAre(command));
}

TEST_F(QuiltClients, StandInTheFileOfTheDeviceToo) {
    ASSERT_EQ(prepare(), 0);
    EXPECT_THAT(everybody(), ElementsAre("1.1 a4:5e:60:01:02:03")) << "and not who is elsewhere";
    EXPECT_EQ(+record(1, 1).signal, 60 - 95);
}

TEST_F(QuiltClients, AreFoundByTheBssidOfTheirVapInEitherCase) {
    tell_of("wdev1ap1", "bssid 02:ab:cd:ef:00:10\n");
    ASSERT_EQ(prepare_from("02:00:00:00:00:01 1 02:AB:CD:EF:00:10 1 - - - 10.0.0.1\n"
                           "02:00:00:00:00:02 1 02:ab:cd:ef:00:10 1 - - - 10.0.0.2\n"
                           "02:00:00:00:00:03 1 02:ab:cd:ef:00:11 1 - - - 10.0.0.3\n"
                           "02:00:00:00:00:04 1 02:ab:cd:ef:00:10 0 - - - 10.0.0.4\n"
                           "02:00:00:00:00:05 1 02:ab:cd:ef:00:10 11 - - - 10.0.0.5\n"),
              0);
    EXPECT_EQ(macs(1, 1), "02:00:00:00:00:01 02:00:00:00:00:02");
}

TEST_F(QuiltClients, NeedSevenFields) {
    const struct {
        const char* line;
        bool listed;
        const char* address;
    } rows[] = {
        {"a4:5e:60:01:02:03 60 02:00:00:00:01:01 1 5 6 7 192.168.1.20", true, "192.168.1.20"},
        {"a4:5e:60:01:02:03 60 02:00:00:00:01:01 1 5 6 7 192.168.1.20 and more", true,
         "192.168.1.20"},
        {"a4:5e:60:01:02:03  60   02:00:00:00:01:01 1 5 6 7  192.168.1.20", true, "192.168.1.20"},
        {"  a4:5e:60:01:02:03 60 02:00:00:00:01:01 1 5 6 7 192.168.1.20 ", true, "192.168.1.20"},
        {"a4:5e:60:01:02:03 60 02:00:00:00:01:01 1 5 6 7", true, "0.0.0.0"},
        {"a4:5e:60:01:02:03 60 02:00:00:00:01:01 1 5 6 7 ", true, "0.0.0.0"},
        {"a4:5e:60:01:02:03 60 02:00:00:00:01:01 1 5 6 7 -", true, "255.255.255.255"},
        {"a4:5e:60:01:02:03 60 02:00:00:00:01:01 1 5 6", false, ""},
        {"a4:5e:60:01:02:03 60 02:00:00:00:01:01 1", false, ""},
        {"a4:5e:60:01:02:03\t60\t02:00:00:00:01:01\t1\t5\t6\t7\t192.168.1.20", false, ""},
        {"02:00:00:00:01:01 60 3 1", false, ""},
    };
    for (const auto& row : rows) {
        ASSERT_EQ(prepare_from(row.line + std::string("\n")), 0);
        ASSERT_EQ(length(1, 1), row.listed ? 1U : 0U) << row.line;
        if (row.listed) {
            uint8_t ip[8];
            memcpy(ip, &record(1, 1).ipv4, sizeof ip);
            char text[40];
            snprintf(text, sizeof text, "%d.%d.%d.%d", ip[0], ip[1], ip[2], ip[3]);
            EXPECT_STREQ(text, row.address) << row.line;
            EXPECT_EQ(ip[4] | ip[5] | ip[6] | ip[7], 0);
        }
    }
}

TEST_F(QuiltClients, HaveASignalAbove95BelowZero) {
    const struct {
        const char* text;
        int signal;
    } rows[] = {
        {"60", -35},
        {"60dB", -35},
        {"0", -95},
        {"-5", -100},
        {"x", -95},
        {"2147483647", 2147483552},
        {"-2147483648", 2147483553}, // as 32 bits hold it
    };
    for (const auto& row : rows) {
        ASSERT_EQ(prepare_from("a4:5e:60:01:02:03 " + std::string(row.text) + " " + bssid +
                               " 1 - - - 10.0.0.1\n"),
                  0);
        EXPECT_EQ(+record(1, 1).signal, row.signal) << row.text;
    }
}

TEST_F(QuiltClients, HaveAnAddress) {
    const std::string rest = std::string(" 60 ") + bssid + " 1 - - - 10.0.0.1\n";
    ASSERT_EQ(prepare_from("00:00:00:00:00:00" + rest + "nobody" + rest + "a4:5e:60:01:02" + rest +
                           "a4:5e:60:01:02:zz" + rest + "A4:5E:60:01:02:0F" + rest),
              0);
    EXPECT_EQ(macs(1, 1), "a4:5e:60:01:02:0f");
}

TEST_F(QuiltClients, AreReadFromLinesOfAnyLength) {
    const std::string rest = std::string(" 60 ") + bssid + " 1 - - - 10.0.0.1";
    ASSERT_EQ(prepare_from("\n \n" + std::string(bssid) + "\n" + // hardly a line
                           "a4:5e:60:00:00:01" + rest + " " + std::string(100'000, 'x') + "\n" +
                           std::string(200'000, 'y') + rest + "\n" + // no address
                           std::string(200'000, ' ') + "a4:5e:60:00:00:02" + rest + "\n" +
                           "a4:5e:60:00:00:03" + rest), // no line end
              0);
    EXPECT_THAT(macs(1, 1), StartsWith("a4:5e:60:00:00:01"));
    EXPECT_THAT(macs(1, 1), testing::EndsWith("a4:5e:60:00:00:03"));
}

TEST_F(QuiltClients, AreReadFromPiecesOf90111CharactersOfALine) {
    const std::string rest = std::string(" 60 ") + bssid + " 1 - - - 10.0.0.1";
    const std::string first = "a4:5e:60:00:00:01" + rest;
    const std::string second = "a4:5e:60:00:00:02" + rest;
    constexpr size_t piece = 90111;
    ASSERT_EQ(prepare_from(first + std::string(piece - first.size() - 1, ' ') + second + "\n"), 0);
    EXPECT_EQ(macs(1, 1), "a4:5e:60:00:00:01") << "the second address is cut";
    ASSERT_EQ(prepare_from(first + std::string(piece - first.size(), ' ') + second + "\n"), 0);
    EXPECT_EQ(macs(1, 1), "a4:5e:60:00:00:01 a4:5e:60:00:00:02");
}

TEST_F(QuiltClients, MayBeMany) {
    std::string lines;
    for (int i = 1; i <= 1000; i++) {
        const uint8_t mac[6] = {2, 0, 0, 1, static_cast<uint8_t>(i >> 8), static_cast<uint8_t>(i)};
        lines += mac_of(mac) + " 60dB " + bssid + " 1 - - - 10.0.0.1\n";
    }
    ASSERT_EQ(prepare_from(lines), 0);
    EXPECT_EQ(length(1, 1), 1000U);
}

TEST_F(QuiltClients, AreNoneWithoutTheFile) {
    ASSERT_EQ(unlink("/sys/kernel/debug/sta/sta_assoc_list"), 0);
    const std::string complaint = stderr_of([] { EXPECT_EQ(prepare(), 0); });
    EXPECT_THAT(complaint, HasSubstr("No such file")) << "of grep";
    EXPECT_EQ(length(1, 1), 0U);
    debug_file("");
    EXPECT_EQ(prepare(), 0);
    EXPECT_EQ(length(1, 1), 0U);
}

TEST_F(QuiltClients, AreAskedForUnderTheZeroBssidWhenItIsUnknown) {
    tell_of("wdev1ap1", "fail ap EIO\n");
    ASSERT_EQ(prepare_from("a4:5e:60:00:00:01 60 00:00:00:00:00:00 1 - - - 10.0.0.1\n"), 0);
    EXPECT_EQ(macs(1, 1), "a4:5e:60:00:00:01");
}

TEST_F(QuiltClients, EndTheListWhenTheyCannotBeAskedFor) {
    stations("wdev1ap0", "a4:5e:60:00:00:01\n");
    stations("wdev1ap2", "a4:5e:60:00:00:02\n");
    door.fail(Call::popen);
    EXPECT_EQ(prepare(), -1);
    EXPECT_THAT(everybody(), ElementsAre("1.0 a4:5e:60:00:00:01")) << "what was found before";
    EXPECT_THAT(door.trace(),
                ElementsAre("log prepare_assoc_client_list: Entering .... ",
                            "log destroy_assoc_client_list: Entering .... ",
                            "log destroy_assoc_client_list: End .... ",
                            std::string(command) + " (failed)",
                            "log prepare_assoc_client_list: error: failed to execute command for "
                            "getting associated client info."));
    EXPECT_EQ(prepare(), 0) << "which is released by the next";
    EXPECT_EQ(everybody().size(), 3U);
}

} // namespace orlo::test
