// SPDX-License-Identifier: MIT
// Detail files of stations.
#include "stations.h"

#include <gmock/gmock.h>

#include "detail_file.h"
#include "exit.h"

using namespace orloctl;
using testing::IsEmpty;

namespace {

std::string refusal(const std::string& bytes) {
    try {
        read_stations(bytes, "detail");
    } catch (const Refusal& refused) {
        return refused.what();
    }
    return "accepted";
}

Station only_station(const DetailRecord& record) {
    const std::vector<Station> stations = read_stations(record.bytes(), "detail");
    EXPECT_EQ(stations.size(), 1U);
    return stations.at(0);
}

} // namespace

TEST(Stations, each_value_lies_at_its_place) {
    std::string bytes(134, '\0');
    for (size_t i = 0; i < bytes.size(); i++) {
        bytes[i] = static_cast<char>(i + 1); // tells every place
    }
    DetailRecord record;
    record.put(0, bytes).number(60, 1, 0);
    const Station station = only_station(record);
    EXPECT_EQ(station.bssid, "01:02:03:04:05:06");
    EXPECT_EQ(station.radio, 7);
    EXPECT_EQ(station.vap, 8);
    EXPECT_EQ(station.channel, 9);
    EXPECT_EQ(station.mac, "0a:0b:0c:0d:0e:0f");
    EXPECT_EQ(station.ipv4, "18.19.20.21");
    EXPECT_EQ(station.ssid, bytes.substr(25, 33));
    EXPECT_EQ(station.vlan_id, 0x3C3B);
    EXPECT_EQ(station.rate, 0x6261605FU);
    EXPECT_EQ(station.signal, 0x7E7D7C7B);
    EXPECT_TRUE(station.area_auth);
}

TEST(Stations, a_real_one_reads_as_such) {
    const Station station = only_station(laptop());
    EXPECT_EQ(station.bssid, "02:00:00:00:01:02");
    EXPECT_EQ(station.channel, 149);
    EXPECT_EQ(station.mac, "a4:5e:60:01:02:03");
    EXPECT_EQ(station.ipv4, "192.168.1.20");
    EXPECT_EQ(station.ssid, "Office");
    EXPECT_EQ(station.signal, -52);
}

TEST(Stations, what_is_zero_is_not_known) {
    const Station station = only_station(DetailRecord());
    EXPECT_EQ(station.channel, std::nullopt);
    EXPECT_EQ(station.ipv4, std::nullopt);
    EXPECT_EQ(station.vlan_id, std::nullopt);
    EXPECT_EQ(station.rate, std::nullopt);
    EXPECT_EQ(station.radio, 0);
    EXPECT_EQ(station.signal, 0);
    EXPECT_EQ(station.ssid, "");
    EXPECT_FALSE(station.area_auth);
}

TEST(Stations, keep_their_order) {
    const std::vector<Station> stations =
        read_stations(stranger().bytes() + laptop().bytes() + stranger().bytes(), "detail");
    ASSERT_EQ(stations.size(), 3U);
    EXPECT_EQ(stations[1].ssid, "Office");
    EXPECT_EQ(stations[2].mac, "00:11:22:33:44:55");
    EXPECT_THAT(read_stations("", "detail"), IsEmpty());
}

TEST(Stations, bytes_that_are_no_whole_records_are_refused) {
    const std::string rule = " bytes are no multiple of 134, the size of a station's record";
    EXPECT_EQ(refusal("x"), "detail is no detail file: its 1" + rule);
    EXPECT_EQ(refusal(std::string(133, '\0')), "detail is no detail file: its 133" + rule);
    EXPECT_EQ(refusal(std::string(269, '\0')), "detail is no detail file: its 269" + rule);
}

TEST(Stations, a_record_of_another_kind_is_refused) {
    DetailRecord marker;
    marker.number(60, 1, 2);
    EXPECT_EQ(refusal(laptop().bytes() + marker.bytes()),
              "detail is no detail file: record 2 is of kind 2, not a station's");
}
