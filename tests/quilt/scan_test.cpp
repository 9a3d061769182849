// SPDX-License-Identifier: MIT
// The quilt scan: stations that the radios hear, stations that quilt VAPs serve, the report.
#include "support/access_point.h"
#include "support/json_memory.h"

#include <jansson.h>

namespace orlo::test {

namespace {

const char* const heard_list = "/sys/kernel/debug/sta/sta_list";
const char* const served_list = "/sys/kernel/debug/sta/sta_assoc_list";

} // namespace

class QuiltScan : public AccessPoint {
protected:
    QuiltScan() {
        EXPECT_EQ(system("mkdir -p /etc/qxw && touch /etc/qxw/cq_version"), 0);
        write_file(heard_list, "");
        write_file(served_list, "");
        door.now = detected_at;
    }

    ~QuiltScan() override {
        json_decref(stations_);
        EXPECT_EQ(JsonMemory::in_use(), 0);
    }

    int hear() {
        door.forget();
        return exported<decltype(::get_cqscan_detected_clients)>("get_cqscan_detected_clients")(
            stations_);
    }

    int serve(int radio, int vap) {
        door.forget();
        return exported<decltype(::get_cqscan_assoc_clients)>("get_cqscan_assoc_clients")(
            radio, vap, stations_);
    }

    static constexpr long detected_at = 1700000000;

    // "a4:5e:60:01:02:03 -35 36": address, dBm, channel. Its time is checked on the way.
    std::string shown(const json_t* station) const {
        const char* mac = nullptr;
        int rssi = 0;
        int channel = 0;
        json_int_t detected = 0;
        EXPECT_EQ(json_unpack(const_cast<json_t*>(station), "{s:s,s:i,s:i,s:I!}", "STA MAC Address",
                              &mac, "RSSI", &rssi, "Channel", &channel, "Detected Time", &detected),
                  0);
        EXPECT_EQ(detected, detected_at);
        return std::string(mac) + " " + std::to_string(rssi) + " " + std::to_string(channel);
    }

    // The stations of the object, each under its own address.
    Trace found() const {
        Trace lines;
        const char* mac = nullptr;
        json_t* station = nullptr;
        json_object_foreach(stations_, mac, station) {
            lines.push_back(shown(station));
            EXPECT_EQ(lines.back().substr(0, lines.back().find(' ')), mac);
        }
        return lines;
    }

    // The report's stations; "null" without a report.
    Trace scan() {
        door.forget();
        json_t* const report = ops.api_get_cqscan(nullptr);
        if (report == nullptr) {
            return {"null"};
        }
        EXPECT_TRUE(json_is_array(report));
        Trace lines;
        for (size_t i = 0; i < json_array_size(report); i++) {
            const json_t* const station = json_array_get(report, i);
            EXPECT_EQ(station->refcount, 1U) << "the report's own";
            lines.push_back(shown(station));
        }
        EXPECT_EQ(report->refcount, 1U);
        json_decref(report);
        return lines;
    }

    JsonMemory memory_;
    json_t* stations_ = json_object();
};

using HeardStations = QuiltScan;

TEST_F(HeardStations, AreListedUnderTheirAddresses) {
    write_file(heard_list, "station signal noise\n"
                           "A4:5E:60:01:02:03 60dB 5dB 1 2 3 36\n"
                           "  00:11:22:AA:bb:55   -1dB   -5dB one two three 149 more\n"
                           "a heading\n"
                           "3c:22:fb:10:20:30 0dB 0dB x y z 1");
    EXPECT_EQ(hear(), 0);
    EXPECT_THAT(found(), testing::UnorderedElementsAre("a4:5e:60:01:02:03 -35 36",
                                                       "00:11:22:aa:bb:55 -96 149",
                                                       "3c:22:fb:10:20:30 -95 1"));
    EXPECT_THAT(door.trace(), ElementsAre("read grep : /sys/kernel/debug/sta/sta_list"));
}

TEST_F(HeardStations, WithoutAChannelAreOnChannelZero) {
    const char* const lines[] = {
        "a4:5e:60:01:02:03 60dB",
        "a4:5e:60:01:02:03 60",
        "a4:5e:60:01:02:03 60dB 5dB",
        "a4:5e:60:01:02:03 60 dB 5dB 1 2 3 36",
        "a4:5e:60:01:02:03 60dBm",
        "a4:5e:60:01:02:03 60dB 5 1 2 3 36",
        "a4:5e:60:01:02:03 60dB x 1 2 3",
        "a4:5e:60:01:02:03 60dB 5dB 1 2 36",
        "a4:5e:60:01:02:03 60dB 5dB 1 2 3 x",
    };
    for (const char* line : lines) {
        write_file(heard_list, std::string(line) + "\n");
        json_object_clear(stations_);
        EXPECT_EQ(hear(), 0);
        EXPECT_THAT(found(), ElementsAre("a4:5e:60:01:02:03 -35 0")) << line;
        EXPECT_THAT(door.trace({"log"}), IsEmpty()) << line;
    }
}

TEST_F(HeardStations, OnALineThatIsNoneAreSkipped) {
    const struct {
        const char* line;
        int fields;
    } rows[] = {
        {":", 1},
        {"a4:5e:60:01:02:03", 1},
        {"a4:5e:60:01:02:03 strong", 1},
        {"a4:5e:60:01:02:03 dB 5dB 1 2 3 36", 1},
        {"a4:5e:60:01:02:03x 60dB 5dB 1 2 3 36", 1},
    };
    for (const auto& row : rows) {
        write_file(heard_list, row.line + std::string("\n3c:22:fb:10:20:30 40dB\n"));
        EXPECT_EQ(hear(), 0);
        EXPECT_THAT(found(), ElementsAre("3c:22:fb:10:20:30 -55 0")) << "and the next is read";
        EXPECT_THAT(door.trace({"log"}),
                    ElementsAre("log 5/1 get_cqscan_detected_clients: Parse error " +
                                std::to_string(row.fields) + ", " + row.line + "\n"));
    }
}

TEST_F(HeardStations, OnALineOf128CharactersOrMoreMakeTwoLines) {
    const std::string line = "a4:5e:60:01:02:03 60dB 5dB 1 2 3 36";
    write_file(heard_list, line + std::string(127 - line.size(), ' ') + "\n");
    EXPECT_EQ(hear(), 0);
    EXPECT_THAT(found(), ElementsAre("a4:5e:60:01:02:03 -35 36"));
    EXPECT_THAT(door.trace({"log"}),
                ElementsAre("log 5/1 get_cqscan_detected_clients: Parse error -1, \n"));
    write_file(heard_list, line + std::string(127 - line.size(), ' ') + "3c:22:fb:10:20:30 1dB\n");
    EXPECT_EQ(hear(), 0);
    EXPECT_THAT(found(), testing::Contains("3c:22:fb:10:20:30 -94 0"));
}

TEST_F(HeardStations, KeepTheirLastLine) {
    write_file(heard_list, "A4:5E:60:01:02:03 60dB 5dB 1 2 3 36\n"
                           "a4:5e:60:01:02:03 20dB 5dB 1 2 3 40\n");
    EXPECT_EQ(hear(), 0);
    EXPECT_THAT(found(), ElementsAre("a4:5e:60:01:02:03 -75 40"));
}

TEST_F(HeardStations, MayHaveAnyNameAndAnySignal) {
    write_file(heard_list, "Q: -2147483648dB\nabcdefghijklmnop:7dB\n");
    EXPECT_EQ(hear(), 0);
    EXPECT_THAT(found(),
                testing::UnorderedElementsAre("q: 2147483553 0", "abcdefghijklmnop: -88 0"));
}

TEST_F(HeardStations, WithAnAddressThatIsNoTextAreLeftOut) {
    write_file(heard_list, "a4:5e:60:01:02:\xff\xfe 60dB 5dB 1 2 3 36\n3c:22:fb:10:20:30 40dB\n");
    EXPECT_EQ(hear(), 0);
    EXPECT_THAT(found(), ElementsAre("3c:22:fb:10:20:30 -55 0"));
    EXPECT_THAT(door.trace({"log"}),
                ElementsAre("log 5/1 get_cqscan_detected_clients: Failed to make JSON"));
}

TEST_F(HeardStations, NeedAnObject) {
    write_file(heard_list, "a4:5e:60:01:02:03 60dB 5dB 1 2 3 36\n");
    json_decref(stations_);
    for (json_t* other : {static_cast<json_t*>(nullptr), json_array()}) {
        stations_ = other;
        EXPECT_EQ(hear(), 0);
        EXPECT_THAT(door.trace({"log"}),
                    ElementsAre("log 5/1 get_cqscan_detected_clients: Failed to add JSON"));
    }
}

TEST_F(HeardStations, AreNoneWithoutTheirList) {
    ASSERT_EQ(unlink(heard_list), 0);
    EXPECT_EQ(hear(), 0);
    EXPECT_THAT(found(), IsEmpty());
    door.fail(Call::popen);
    EXPECT_EQ(hear(), -1);
    EXPECT_THAT(door.trace({"log"}), IsEmpty());
}

class ServedStations : public QuiltScan {
protected:
    ServedStations() {
        configure("wireless.wifi1vap3.mode", "quilt");
        operate_on(1, 44);
    }

    static constexpr const char* bssid = "02:00:00:00:01:03";
};

TEST_F(ServedStations, AreThoseOfTheVapThatThisAccessPointServes) {
    write_file(served_list, "A4:5E:60:01:02:03 60dB 02:00:00:00:01:03 1 x y\n"
                            "00:11:22:33:44:55 31dB 02:00:00:00:01:03 0 x y\n"
                            "00:11:22:33:44:66 31dB 02:00:00:00:01:04 1 x y\n"
                            "3C:22:fb:10:20:30 10dB 02:00:00:00:01:03 1\n"
                            "3c:22:fb:10:20:31 9dB 02:00:00:00:01:03 11\n");
    tell_driver("wdev1ap3", "name x\nbssid 02:00:00:00:01:03\nprivate setcmd 8be4 2100 0\n");
    EXPECT_EQ(serve(1, 3), 0);
    EXPECT_THAT(found(), testing::UnorderedElementsAre("a4:5e:60:01:02:03 -35 44",
                                                       "3c:22:fb:10:20:30 -85 44"));
    EXPECT_THAT(door.trace(),
                ElementsAre("read grep -i 02:00:00:00:01:03 /sys/kernel/debug/sta/sta_assoc_list | "
                            "awk '$4==1{print}'"));
}

TEST_F(ServedStations, AreFoundInEitherCase) {
    write_file(served_list, "a4:5e:60:01:02:03 60dB AB:CD:EF:00:01:03 1\n");
    tell_driver("wdev1ap3", "name x\nbssid ab:cd:ef:00:01:03\nprivate setcmd 8be4 2100 0\n");
    EXPECT_EQ(serve(1, 3), 0);
    EXPECT_THAT(found(), ElementsAre("a4:5e:60:01:02:03 -35 44"));
}

TEST_F(ServedStations, AreNotLookedForAtOtherVaps) {
    write_file(served_list, "a4:5e:60:01:02:03 60dB 02:00:00:00:01:04 1\n");
    EXPECT_EQ(serve(1, 4), 0) << "not the quilt's";
    for (const auto& [radio, vap] :
         {std::pair(2, 0), std::pair(-1, 0), std::pair(1, 16), std::pair(0, -1)}) {
        EXPECT_EQ(serve(radio, vap), 0) << "there are none";
    }
    tell_driver("wdev1ap3", "name x\nbssid 02:00:00:00:01:04\n");
    EXPECT_EQ(serve(1, 3), 0) << "not of this driver";
    EXPECT_THAT(found(), IsEmpty());
    EXPECT_THAT(door.trace(), IsEmpty());
}

TEST_F(ServedStations, NeedTheVapsAddressAndChannel) {
    tell_driver("wdev1ap3", "name x\nprivate setcmd 8be4 2100 0\nfail ap EIO\n");
    EXPECT_EQ(serve(1, 3), -1);
    EXPECT_THAT(door.trace(), ElementsAre("log 5/1 get_cqscan_assoc_clients: 1.3 failed to get MAC "
                                          "address."));
    tell_driver("wdev1ap3", "name x\nprivate setcmd 8be4 2100 0\nbssid 02:00:00:00:01:03\n");
    tell_driver("wdev1", "fail freq EIO\n");
    EXPECT_EQ(serve(1, 3), -1);
    EXPECT_THAT(door.trace(),
                ElementsAre("log 5/1 get_cqscan_assoc_clients: 1.3 failed to get channel."));
}

TEST_F(ServedStations, NeedTheirList) {
    door.fail(Call::popen);
    EXPECT_EQ(serve(1, 3), -1);
    EXPECT_EQ(door.trace().back(),
              "log 5/1 get_cqscan_assoc_clients: Failed to open file, grep -i 02:00:00:00:01:03 "
              "/sys/kernel/debug/sta/sta_assoc_list | awk '$4==1{print}'");
    ASSERT_EQ(unlink(served_list), 0);
    EXPECT_EQ(serve(1, 3), 0) << "an empty one";
    EXPECT_THAT(door.trace({"log"}), IsEmpty());
}

TEST_F(ServedStations, OnALineThatIsNoneAreSkipped) {
    const std::string rest = std::string(" ") + bssid + " 1";
    const std::string lines[] = {
        "a4:5e:60:01:02:03 strong" + rest,
        "a4:5e:60:01:02:03 dB60" + rest,
        "a4:5e:60:01:02:03x 60dB" + rest,
        "x y " + std::string(bssid) + " 1",
    };
    for (const std::string& line : lines) {
        std::string list = line;
        list.append("\n3c:22:fb:10:20:30 40").append(rest).append("\n");
        write_file(served_list, list);
        EXPECT_EQ(serve(1, 3), 0);
        EXPECT_THAT(found(), ElementsAre("3c:22:fb:10:20:30 -55 44")) << "and the next is read";
        EXPECT_THAT(
            door.trace({"log"}),
            ElementsAre("log 5/1 get_cqscan_assoc_clients: 1.3 parse error, " + line + "\n"));
    }
}

TEST_F(ServedStations, OnALineOf128CharactersOrMoreMakeTwoLines) {
    const std::string line = std::string("a4:5e:60:01:02:03 60dB ") + bssid + " 1";
    write_file(served_list, line + std::string(127 - line.size(), ' ') + "\n");
    EXPECT_EQ(serve(1, 3), 0);
    EXPECT_THAT(found(), ElementsAre("a4:5e:60:01:02:03 -35 44"));
    EXPECT_THAT(door.trace({"log"}),
                ElementsAre("log 5/1 get_cqscan_assoc_clients: 1.3 parse error, \n"));
}

TEST_F(ServedStations, ThatCannotBeDescribedAreLeftOut) {
    write_file(served_list, std::string("a4:\xff 60dB ") + bssid + " 1\n");
    EXPECT_EQ(serve(1, 3), 0);
    EXPECT_THAT(door.trace({"log"}),
                ElementsAre("log 5/1 get_cqscan_assoc_clients: 1.3 failed to make JSON"));
    write_file(served_list, std::string("a4:5e:60:01:02:03 60dB ") + bssid + " 1\n");
    json_decref(stations_);
    stations_ = json_array();
    EXPECT_EQ(serve(1, 3), 0);
    EXPECT_THAT(door.trace({"log"}),
                ElementsAre("log 5/1 get_cqscan_assoc_clients: 1.3 failed to add JSON"));
}

class ScanReport : public QuiltScan {
protected:
    ScanReport() {
        operate_on(0, 6);
        operate_on(1, 44);
        write_file(heard_list, "a4:5e:60:01:02:03 1dB 5dB 1 2 3 40\n"
                               "3c:22:fb:10:20:30 2dB 5dB 1 2 3 48\n");
        write_file(served_list, "A4:5E:60:01:02:03 60dB 02:00:00:00:01:03 1\n"
                                "00:11:22:33:44:55 31dB 02:00:00:00:00:0f 1\n");
    }
};

TEST_F(ScanReport, HoldsEachStationOnceAndServedOnesAsServed) {
    configure("wireless.wifi1vap3.mode", "quilt");
    configure("wireless.wifi0vap15.mode", "quilt");
    EXPECT_THAT(scan(), testing::UnorderedElementsAre("a4:5e:60:01:02:03 -35 44",
                                                      "3c:22:fb:10:20:30 -93 48",
                                                      "00:11:22:33:44:55 -64 6"));
    const Trace reads = door.trace({"read"});
    ASSERT_EQ(reads.size(), 3U);
    EXPECT_THAT(reads[0], HasSubstr("sta_list"));
    EXPECT_THAT(reads[1], HasSubstr("02:00:00:00:00:0f")) << "radio by radio";
    EXPECT_THAT(reads[2], HasSubstr("02:00:00:00:01:03"));
}

TEST_F(ScanReport, KeepsTheLaterVapsWordOfAStation) {
    write_file(served_list, "a4:5e:60:01:02:03 60dB 02:00:00:00:01:03 1\n"
                            "a4:5e:60:01:02:03 20dB 02:00:00:00:01:07 1\n"
                            "a4:5e:60:01:02:03 10dB 02:00:00:00:00:09 1\n");
    for (const char* vap : {"wifi1vap3", "wifi1vap7", "wifi0vap9"}) {
        configure(std::string("wireless.") + vap + ".mode", "quilt");
    }
    EXPECT_THAT(scan(), testing::UnorderedElementsAre("a4:5e:60:01:02:03 -75 44",
                                                      "3c:22:fb:10:20:30 -93 48"));
}

TEST_F(ScanReport, FollowsTheOrderOfTheObject) {
    std::string list;
    for (int i = 0; i < 40; i++) {
        list += "0" + std::to_string((i * 7) % 40) + ":00 1dB\n";
    }
    write_file(heard_list, list);
    ASSERT_EQ(hear(), 0);
    EXPECT_EQ(scan(), found());
}

TEST_F(ScanReport, IsJsonAsAgentsKnowIt) {
    write_file(heard_list, "a4:5e:60:01:02:03 1dB 5dB 1 2 3 40\n");
    door.now = 5000000000; // needs more than 32 bits
    json_t* const report = ops.api_get_cqscan(nullptr);
    ASSERT_EQ(json_array_size(report), 1U);
    char* const text = json_dumps(report, JSON_PRESERVE_ORDER | JSON_COMPACT);
    EXPECT_STREQ(text, "[{\"STA MAC Address\":\"a4:5e:60:01:02:03\",\"RSSI\":-94,\"Channel\":40,"
                       "\"Detected Time\":5000000000}]");
    JsonMemory::release_text(text);
    json_decref(report);
}

TEST_F(ScanReport, IsEmptyWithoutStations) {
    write_file(heard_list, "");
    EXPECT_THAT(scan(), IsEmpty());
    EXPECT_THAT(door.trace({"log"}).back(), HasSubstr("api_get_system_information"))
        << "and nothing more is logged";
}

TEST_F(ScanReport, IsNoneOnADeviceThatCannotQuilt) {
    configure("system.@system[0].model", "QX-R3310");
    EXPECT_THAT(scan(), ElementsAre("null"));
    configure("system.@system[0].model", "QX-R3311");
    EXPECT_EQ(scan().size(), 2U);
    ASSERT_EQ(unlink("/etc/qxw/cq_version"), 0);
    EXPECT_THAT(scan(), ElementsAre("null"));
    EXPECT_THAT(door.trace({"read"}), IsEmpty());
}

TEST_F(ScanReport, LeavesOutSourcesThatFail) {
    configure("wireless.wifi1vap3.mode", "quilt");
    configure("wireless.wifi0vap15.mode", "quilt");
    door.fail(Call::popen);
    EXPECT_THAT(scan(), testing::UnorderedElementsAre("a4:5e:60:01:02:03 -35 44",
                                                      "00:11:22:33:44:55 -64 6"));
    EXPECT_THAT(door.trace({"log"}),
                testing::Contains("log 5/1 api_get_cqscan: Failed to get detected clients"));
    tell_driver("wdev0ap15", "name x\nprivate setcmd 8be4 2100 0\nfail ap EIO\n");
    EXPECT_THAT(scan(), testing::UnorderedElementsAre("a4:5e:60:01:02:03 -35 44",
                                                      "3c:22:fb:10:20:30 -93 48"));
    EXPECT_EQ(door.trace({"log"}).back(),
              "log 5/1 api_get_cqscan: 0.15 failed to get associated clients");
    door.fail_always(Call::popen);
    EXPECT_THAT(scan(), IsEmpty()) << "and is still a report";
}

TEST_F(ScanReport, IsNoneWhenMemoryRunsOutAtItsStart) {
    const struct {
        int allocation; // an object takes two, an array as well
        const char* message;
    } rows[] = {
        {1, "Failed to make JSON object"},
        {2, "Failed to make JSON object"},
        {3, "Failed to make JSON array"},
        {4, "Failed to make JSON array"},
    };
    const int before = JsonMemory::in_use();
    for (const auto& row : rows) {
        JsonMemory::fail(row.allocation);
        EXPECT_THAT(scan(), ElementsAre("null"));
        EXPECT_TRUE(JsonMemory::has_failed());
        EXPECT_EQ(door.trace().back(), std::string("log 5/1 api_get_cqscan: ") + row.message);
        EXPECT_EQ(JsonMemory::in_use(), before);
    }
}

TEST_F(ScanReport, LosesAStationAtMostWhenMemoryRunsOutLater) {
    configure("wireless.wifi1vap3.mode", "quilt");
    std::string list;
    for (int i = 10; i < 30; i++) { // the report's array grows
        list += "00:00:00:00:00:" + std::to_string(i) + " 1dB\n";
    }
    write_file(heard_list, list);
    const int before = JsonMemory::in_use();
    ASSERT_EQ(scan().size(), 21U);
    bool has_failed = true;
    int n = 5;
    for (; has_failed; n++) {
        JsonMemory::fail(n);
        json_t* const report = ops.api_get_cqscan(nullptr);
        has_failed = JsonMemory::has_failed();
        EXPECT_GE(json_array_size(report), 20U);
        EXPECT_EQ(json_array_size(report) == 21, !has_failed);
        json_decref(report);
        EXPECT_EQ(JsonMemory::in_use(), before);
    }
    JsonMemory::fail(0);
    EXPECT_GT(n, 100) << "every allocation of a scan has had its turn";
}

using FreshAccessPoint = AccessPoint;

TEST_F(FreshAccessPoint, HasStationsForAScan) {
    ASSERT_EQ(system("mkdir -p /etc/qxw && touch /etc/qxw/cq_version"), 0);
    configure("wireless.wifi1vap1.mode", "quilt");
    json_t* const report = ops.api_get_cqscan(nullptr);
    std::vector<json_int_t> signals;
    for (size_t i = 0; i < json_array_size(report); i++) {
        signals.push_back(json_integer_value(json_object_get(json_array_get(report, i), "RSSI")));
    }
    EXPECT_THAT(signals, testing::UnorderedElementsAre(-35, -73)) << "one served, one heard";
    json_decref(report);
}

} // namespace orlo::test
