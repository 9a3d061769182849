// SPDX-License-Identifier: MIT
// The list of associated clients, from the driver's tables of stations.
#include "clients/clients.h"

#include <cstring>
#include <malloc.h>
#include <unistd.h>

namespace orlo::test {

using ClientList = Clients;

namespace {

// Puts bytes into a record that is otherwise 0.
void put(std::string& record, size_t offset, const std::string& bytes) {
    record.replace(offset, bytes.size(), bytes);
}

std::string bytes_of(const assoc_client_record& record) {
    return {reinterpret_cast<const char*>(&record), sizeof record};
}

} // namespace

TEST_F(ClientList, HasARecordOf134BytesForEachClient) {
    const std::string ssid = "An SSID of thirty-two characters";
    configure("wireless.wifi1vap3.ssid", ssid);
    configure("wireless.wifi1vap3.vlan_id", "4093");
    configure("wireless.wifi1vap3.macfilter", "4");
    operate_on(1, 149);
    tell_of("wdev1ap3", "bssid 02:b1:b2:b3:b4:b5\n");
    stations("wdev1ap3", "a4:5e:60:01:02:03 signal=-61 rate=66051 first-rate=7 ipv4=192.168.1.20 "
                         "48=a0a1a2a3a4a5a6a7a8a9aaabacadaeaf\n");
    ASSERT_EQ(prepare(), 0);

    std::string expected(134, '\0');
    put(expected, 0, "\x02\xb1\xb2\xb3\xb4\xb5");
    put(expected, 6, "\x01");
    put(expected, 7, "\x03");
    put(expected, 8, "\x95");
    put(expected, 9, "\xa4\x5e\x60\x01\x02\x03");
    put(expected, 17, "\xc0\xa8\x01\x14");
    put(expected, 25, ssid);
    put(expected, 58, "\xfd\x0f");
    put(expected, 94, "\x03\x02\x01");
    put(expected, 102, "\xff\xff\xff\xff");
    put(expected, 106, "\xa0\xa1\xa2\xa3\xa4\xa5\xa6\xa7\xa8\xa9\xaa\xab\xac\xad\xae\xaf");
    put(expected, 122, "\xc3\xff\xff\xff");
    put(expected, 130, "\x01");
    EXPECT_EQ(length(1, 3), 1U);
    EXPECT_EQ(bytes_of(record(1, 3)), expected);
}

TEST_F(ClientList, HasZerosForWhatIsNotKnown) {
    for (const char* option : {"ssid", "vlan_id", "macfilter"}) {
        configure(std::string("wireless.wifi0vap2.") + option, "");
    }
    tell_of("wdev0ap2", "fail ap EIO\n");
    tell_driver("wdev0", "fail freq EIO\n");
    stations("wdev0ap2", "a4:5e:60:01:02:03\n");
    stderr_of([] { EXPECT_EQ(prepare(), 0); });

    std::string expected(134, '\0');
    put(expected, 7, "\x02");
    put(expected, 9, "\xa4\x5e\x60\x01\x02\x03");
    put(expected, 102, "\xff\xff\xff\xff");
    EXPECT_EQ(bytes_of(record(0, 2)), expected);
}

TEST_F(ClientList, KnowsNothingOfOneVapFromAnother) {
    configure("wireless.wifi0vap1.ssid", "First");
    configure("wireless.wifi0vap1.vlan_id", "20");
    configure("wireless.wifi0vap1.macfilter", "4");
    for (const char* option : {"ssid", "vlan_id", "macfilter"}) {
        configure(std::string("wireless.wifi0vap2.") + option, "");
    }
    stations("wdev0ap1", "a4:5e:60:01:02:03\n");
    stations("wdev0ap2", "a4:5e:60:01:02:04\n");
    tell_of("wdev0ap1", "bssid 02:b1:b2:b3:b4:b5\n");
    tell_of("wdev0ap2", "");
    stderr_of([] { EXPECT_EQ(prepare(), 0); });
    EXPECT_STREQ(record(0, 1).ssid, "First");
    EXPECT_EQ(+record(0, 1).vlan_id, 20);
    EXPECT_EQ(+record(0, 1).area_auth, 1U);
    EXPECT_STREQ(record(0, 2).ssid, "");
    EXPECT_EQ(+record(0, 2).vlan_id, 0);
    EXPECT_EQ(+record(0, 2).area_auth, 0U);
    EXPECT_EQ(mac_of(record(0, 2).bssid), "00:00:00:00:00:00");
}

TEST_F(ClientList, HasTheChannelOfTheRadioNotOfTheVap) {
    stations("wdev1ap0", "a4:5e:60:01:02:03\n");
    tell_of("wdev1ap0", "frequency 1 0\n");
    operate_on(1, 44);
    operate_on(0, 11);
    ASSERT_EQ(prepare(), 0);
    EXPECT_EQ(record(1, 0).channel, 44);
    tell_driver("wdev1", "frequency 300 0\n");
    ASSERT_EQ(prepare(), 0);
    EXPECT_EQ(record(1, 0).channel, 300 - 256) << "one byte";
}

TEST_F(ClientList, CutsTextsThatAreTooLong) {
    configure("wireless.wifi0vap0.ssid", std::string(60, 'x'));
    configure("wireless.wifi0vap0.vlan_id", "123456789");
    stations("wdev0ap0", "a4:5e:60:01:02:03\n");
    ASSERT_EQ(prepare(), 0);
    EXPECT_EQ(std::string(record(0, 0).ssid, 33), std::string(32, 'x') + '\0');
    EXPECT_EQ(+record(0, 0).vlan_id, static_cast<uint16_t>(12345678)) << "eight characters";
    configure("wireless.wifi0vap0.vlan_id", "none");
    ASSERT_EQ(prepare(), 0);
    EXPECT_EQ(+record(0, 0).vlan_id, 0);
}

TEST_F(ClientList, TakesTheSecondRateAsTheSendingRate) {
    stations("wdev0ap0", "a4:5e:60:01:02:03 rate=866 first-rate=54\n"
                         "a4:5e:60:01:02:04 rate=4294968 first-rate=54\n");
    ASSERT_EQ(prepare(), 0);
    EXPECT_EQ(+record(0, 0, 0).rate, 866U);
    EXPECT_EQ(+record(0, 0, 1).rate, 0U) << "beyond what kbit/s in 32 bits hold";
}

TEST_F(ClientList, KeepsTheOrderOfTheVapsAndOfTheirStations) {
    stations("wdev0ap0", "a4:5e:60:00:00:01\na4:5e:60:00:00:02\na4:5e:60:00:00:03\n");
    stations("wdev0ap15", "a4:5e:60:00:00:04\n");
    stations("wdev1ap0", "a4:5e:60:00:00:05\na4:5e:60:00:00:01\n");
    ASSERT_EQ(prepare(), 0);
    EXPECT_THAT(everybody(),
                ElementsAre("0.0 a4:5e:60:00:00:01 a4:5e:60:00:00:02 a4:5e:60:00:00:03",
                            "0.15 a4:5e:60:00:00:04", "1.0 a4:5e:60:00:00:05 a4:5e:60:00:00:01"));
    EXPECT_EQ(record(0, 15).vap, 15);
    EXPECT_EQ(record(1, 0).radio, 1);
}

TEST_F(ClientList, LeavesOutStationsWithoutAnAddress) {
    stations("wdev0ap0", "a4:5e:60:00:00:01\n00:00:00:00:00:00 signal=-40\n00:00:00:00:00:01\n"
                         "80:00:00:00:00:00\n");
    tell_of("wdev0ap0", "station-count 400\n");
    ASSERT_EQ(prepare(), 0);
    EXPECT_EQ(macs(0, 0), "a4:5e:60:00:00:01 00:00:00:00:00:01 80:00:00:00:00:00");
}

TEST_F(ClientList, LeavesOutInterfacesThatAreNotWirelessAndMeshLinks) {
    for (const char* interface : {"wdev0ap0", "wdev0ap1", "wdev0ap2", "wdev0ap3", "wdev0ap4"}) {
        stations(interface, "a4:5e:60:00:00:01\n");
    }
    tell_of("wdev0ap0", "fail name EOPNOTSUPP\n");
    ASSERT_EQ(unlink("/var/run/device/driver/wdev0ap1"), 0);
    configure("wireless.wifi0vap2.mode", "qx_mesh");
    configure("wireless.wifi0vap3.disabled", "1");
    ASSERT_EQ(prepare(), 0);
    EXPECT_THAT(everybody(), ElementsAre("0.3 a4:5e:60:00:00:01", "0.4 a4:5e:60:00:00:01"))
        << "a disabled VAP whose interface answers is listed";
}

TEST_F(ClientList, IsEmptyForAVapWhoseTableCannotBeRead) {
    for (const char* interface : {"wdev0ap0", "wdev0ap1", "wdev0ap2", "wdev0ap3"}) {
        stations(interface, "a4:5e:60:00:00:01\n");
    }
    tell_of("wdev0ap0", "fail setcmd EIO\n");
    tell_of("wdev0ap1", "magic 12345678\n");
    tell_of("wdev0ap2", "station-count -1\n");
    EXPECT_EQ(prepare(), 0);
    EXPECT_THAT(everybody(), ElementsAre("0.3 a4:5e:60:00:00:01"));
}

TEST_F(ClientList, IsEmptyWithoutInterfaces) {
    ASSERT_EQ(system("rm /var/run/device/driver/*"), 0);
    EXPECT_EQ(prepare(), 0);
    EXPECT_THAT(everybody(), IsEmpty());
}

TEST_F(ClientList, HoldsFullTables) {
    many_stations("wdev0ap7", 341);
    many_stations("wdev1ap7", 341);
    ASSERT_EQ(prepare(), 0);
    EXPECT_EQ(length(0, 7), 341U);
    EXPECT_EQ(length(1, 7), 341U);
    EXPECT_EQ(mac_of(record(1, 7, 340).sta_mac), "02:00:00:00:01:55");
}

TEST_F(ClientList, IsMadeAnewEachTime) {
    stations("wdev0ap0", "a4:5e:60:00:00:01\na4:5e:60:00:00:02\n");
    ASSERT_EQ(prepare(), 0);
    stations("wdev0ap0", "");
    stations("wdev1ap1", "a4:5e:60:00:00:03\n");
    ASSERT_EQ(prepare(), 0);
    EXPECT_THAT(everybody(), ElementsAre("1.1 a4:5e:60:00:00:03"));
    stations("wdev0ap0", "a4:5e:60:00:00:04\n");
    ASSERT_EQ(prepare(), 0);
    EXPECT_THAT(everybody(), ElementsAre("0.0 a4:5e:60:00:00:04", "1.1 a4:5e:60:00:00:03"));
}

TEST_F(ClientList, ReleasesTheListBefore) {
    many_stations("wdev0ap0", 300);
    ASSERT_EQ(prepare(), 0);
    const size_t before = mallinfo2().uordblks;
    for (int i = 0; i < 5; i++) {
        ASSERT_EQ(prepare(), 0);
    }
    // The trace grows meanwhile, by far less than a list.
    EXPECT_LT(mallinfo2().uordblks, before + 300 * sizeof(assoc_client_node));
}

TEST_F(ClientList, IsMadeWithFourLinesOfLog) {
    stations("wdev0ap0", "a4:5e:60:00:00:01\n");
    ASSERT_EQ(prepare(), 0);
    EXPECT_THAT(door.trace(), ElementsAre("log prepare_assoc_client_list: Entering .... ",
                                          "log destroy_assoc_client_list: Entering .... ",
                                          "log destroy_assoc_client_list: End .... ",
                                          "log prepare_assoc_client_list: End .... "));
}

} // namespace orlo::test
