// SPDX-License-Identifier: MIT
// The counters of the associated clients, in blocks that the agent takes over.
#include "clients/clients.h"

#include <cstring>
#include <memory>

namespace orlo::test {

class ClientCounters : public Clients {
protected:
    // The blocks, released as the agent does: the first element of each leads to the next.
    class Blocks {
    public:
        explicit Blocks(ORLOClientInfoList* head) {
            for (; head != nullptr; head = head->next) {
                blocks_.emplace_back(head, free);
            }
        }
        size_t count() const { return blocks_.size(); }
        const ORLOClientInfoList* operator[](size_t index) const { return blocks_[index].get(); }

    private:
        std::vector<std::unique_ptr<ORLOClientInfoList, void (*)(void*)>> blocks_;
    };

    static Blocks counters() {
        return Blocks(exported<decltype(::get_all_associated_clients_info)>(
            "get_all_associated_clients_info")());
    }

    static std::string bytes_of(const ORLOClientInfoList& element) {
        return {reinterpret_cast<const char*>(&element), sizeof element};
    }

    static bool is_zero(const ORLOClientInfoList& element) {
        return bytes_of(element) == std::string(sizeof element, '\0');
    }

    static void fails(const std::string& interface) { tell_of(interface, "fail setcmd EIO\n"); }
};

TEST_F(ClientCounters, AreNothingWithoutClients) {
    EXPECT_EQ(counters().count(), 0U);
    EXPECT_THAT(door.trace(), ElementsAre("log get_all_associated_clients_info: Entering .... ",
                                          "log get_all_associated_clients_info: End .... "));
}

TEST_F(ClientCounters, AreWidenedIntoElementsOf96Bytes) {
    stations("wdev0ap3", "a4:5e:60:01:02:03 rx-packets=4294967295 tx-packets=66051 "
                         "rx-bytes=67305985 tx-bytes=2147483648 ipv4=10.0.0.1 signal=-3 rate=9\n");
    const Blocks blocks = counters();
    ASSERT_EQ(blocks.count(), 1U);
    std::string expected(96, '\0');
    expected.replace(0, 6, "\xa4\x5e\x60\x01\x02\x03");
    expected.replace(24, 4, "\xff\xff\xff\xff");
    expected.replace(32, 3, "\x03\x02\x01");
    expected.replace(40, 4, "\x01\x02\x03\x04");
    expected.replace(51, 1, "\x80");
    EXPECT_EQ(bytes_of(*blocks[0]), expected);
}

TEST_F(ClientCounters, ComeInABlockForEachVap) {
    many_stations("wdev0ap0", 3);
    many_stations("wdev0ap9", 341);
    stations("wdev1ap15", "a4:5e:60:01:02:03 rx-bytes=9\n");
    const Blocks blocks = counters();
    ASSERT_EQ(blocks.count(), 3U);
    for (size_t i = 0; i < 3; i++) {
        EXPECT_EQ(blocks[0][i].rx_pkts, i + 1);
        EXPECT_EQ(blocks[0][i].next, i == 0 ? blocks[1] : nullptr) << "in the first element only";
    }
    EXPECT_EQ(blocks[1][340].rx_pkts, 341U);
    EXPECT_EQ(mac_of(blocks[1][340].sta_mac), "02:00:00:00:01:55");
    EXPECT_EQ(blocks[2]->rx_bytes, 9U);
}

TEST_F(ClientCounters, AreThoseOfEveryTable) {
    configure("wireless.wifi0vap0.mode", "quilt");
    configure("wireless.wifi0vap1.mode", "qx_mesh");
    for (const char* interface : {"wdev0ap0", "wdev0ap1", "wdev0ap2"}) {
        stations(interface, "a4:5e:60:01:02:03\n");
    }
    stations("wdev0ap3", "00:00:00:00:00:00 rx-packets=1\n");
    EXPECT_EQ(counters().count(), 4U) << "whatever the VAP is, and whatever its stations are";
    EXPECT_THAT(everybody(), IsEmpty()) << "the list is another matter";
}

TEST_F(ClientCounters, OfACrowdLeaveZerosForTheNextTableThatCannotBeRead) {
    const struct {
        int crowd;
        size_t zeros;
    } rows[] = {{1, 0}, {87, 0}, {88, 1}, {175, 1}, {176, 2}, {341, 3}};
    for (const auto& row : rows) {
        many_stations("wdev0ap4", row.crowd);
        fails("wdev0ap5");
        fails("wdev0ap6");
        stations("wdev0ap7", "a4:5e:60:01:02:03\n");
        const Blocks blocks = counters();
        ASSERT_EQ(blocks.count(), row.zeros == 0 ? 2U : 3U) << row.crowd;
        EXPECT_EQ(mac_of(blocks[blocks.count() - 1]->sta_mac), "a4:5e:60:01:02:03");
        for (size_t i = 0; i < row.zeros; i++) {
            ORLOClientInfoList element = blocks[1][i];
            element.next = nullptr;
            EXPECT_TRUE(is_zero(element)) << row.crowd;
        }
    }
}

TEST_F(ClientCounters, OfACrowdLeaveNothingAfterATableThatIsRead) {
    many_stations("wdev0ap4", 341);
    fails("wdev0ap6");
    EXPECT_EQ(counters().count(), 1U) << "VAP 5 is empty";
}

TEST_F(ClientCounters, RememberNothingFromCallToCall) {
    many_stations("wdev1ap15", 341);
    fails("wdev0ap0");
    EXPECT_EQ(counters().count(), 1U);
    EXPECT_EQ(counters().count(), 1U);
}

TEST_F(ClientCounters, ArePrintedWhenTheAgentKeepsItsTrace) {
    door.debug_enabled = true;
    stations("wdev0ap3", "a4:5e:60:01:02:03 rx-packets=4294967295 tx-packets=2 rx-bytes=3 "
                         "tx-bytes=4\n"
                         "a4:5e:60:01:02:04\n");
    testing::internal::CaptureStdout();
    EXPECT_EQ(counters().count(), 1U);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "*LEN = 2 \n"
              "assoc->mac: a4:5e:60:01:02:03 \n"
              "assoc->rx_packets = 4294967295\n"
              "assoc->tx_packets = 2\n"
              "assoc->rx_bytes = 3\n"
              "assoc->tx_bytes = 4\n"
              "------------\n"
              "assoc->mac: a4:5e:60:01:02:04 \n"
              "assoc->rx_packets = 0\n"
              "assoc->tx_packets = 0\n"
              "assoc->rx_bytes = 0\n"
              "assoc->tx_bytes = 0\n"
              "------------\n"
              "(ORLOClientInfoList + 0)->sta_mac: a4:5e:60:01:02:03\n"
              "(ORLOClientInfoList + 0)->rx_pkts: 4294967295\n"
              "(ORLOClientInfoList + 0)->tx_pkts: 2\n"
              "(ORLOClientInfoList + 0)->rx_bytes: 3\n"
              "(ORLOClientInfoList + 0)->tx_bytes: 4\n"
              "------------\n"
              "(ORLOClientInfoList + 1)->sta_mac: a4:5e:60:01:02:04\n"
              "(ORLOClientInfoList + 1)->rx_pkts: 0\n"
              "(ORLOClientInfoList + 1)->tx_pkts: 0\n"
              "(ORLOClientInfoList + 1)->rx_bytes: 0\n"
              "(ORLOClientInfoList + 1)->tx_bytes: 0\n"
              "------------\n");
    door.debug_enabled = false;
    testing::internal::CaptureStdout();
    EXPECT_EQ(counters().count(), 1U);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(ClientCounters, HaveAnOperationThatCountsNothing) {
    stations("wdev0ap3", "a4:5e:60:01:02:03\n");
    EXPECT_EQ(ops.api_get_assoc_client_statistics(), 0);
    EXPECT_THAT(door.trace(),
                ElementsAre("log api_get_assoc_client_statistics: Entering... todo !!!",
                            "log api_get_assoc_client_statistics: End..."));
}

} // namespace orlo::test
