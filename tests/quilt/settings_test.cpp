// SPDX-License-Identifier: MIT
// Applying the quilt's own options.
#include "quilt/quilt_record.h"

#include <climits>

namespace orlo::test {

using QuiltOptions = QuiltRecord;

TEST_F(QuiltOptions, ThatAreGivenAreStagedInOrder) {
    quilt_.rekey_timeout = 600;
    quilt_.station_isolation = 1;
    quilt_.beacon_rssi_threshold = 20;
    quilt_.cqscan = 1;
    quilt_.cq_proxy_arp = 0;
    EXPECT_EQ(apply(), 0);
    EXPECT_THAT(
        door.trace(),
        ElementsAre("log api_apply_channel_quilt: Entering...", "set quilt.config_quilt.vlan_id=7",
                    "set quilt.config_quilt.secret=quilt secret",
                    "set quilt.config_quilt.rekey=600", "set quilt.config_quilt.client_isolation=1",
                    "set quilt.config_quilt.bcn_rssi_th=20", "set quilt.config_quilt.cqscan=1",
                    "set quilt.config_quilt.arp_filter=0",
                    "log api_apply_channel_quilt: End, return 0"));
    EXPECT_TRUE(saving_restarts_network());
    EXPECT_EQ(committed_value("quilt.config_quilt.secret"), "quilt secret");
}

TEST_F(QuiltOptions, ThatAreNotGivenAreLoggedAndLeftAlone) {
    EXPECT_EQ(apply(), 0);
    EXPECT_THAT(door.trace(),
                ElementsAre("log api_apply_channel_quilt: Entering...",
                            "set quilt.config_quilt.vlan_id=7",
                            "set quilt.config_quilt.secret=quilt secret",
                            "log api_apply_channel_quilt: info: ignore rekey_timeout:-1",
                            "log api_apply_channel_quilt: info: ignore station_isolation:-1",
                            "log api_apply_channel_quilt: info: ignore beacon_rssi_threshold",
                            "log api_apply_channel_quilt: info: ignore cqscan",
                            "log api_apply_channel_quilt: info: ignore cq-proxy-arp",
                            "log api_apply_channel_quilt: End, return 0"));
}

TEST_F(QuiltOptions, TakeTheBoundsThemselves) {
    for (const auto& [vlan, threshold] : {std::pair(0, 0), std::pair(4096, 91)}) {
        quilt_.mgmt_vlan = vlan;
        quilt_.beacon_rssi_threshold = threshold;
        EXPECT_EQ(apply(), 0);
        EXPECT_EQ(staged_value("quilt.config_quilt.vlan_id"), std::to_string(vlan));
        EXPECT_EQ(staged_value("quilt.config_quilt.bcn_rssi_th"), std::to_string(threshold));
    }
}

TEST_F(QuiltOptions, AManagementVlanOutOfRangeLeavesWhatIsStaged) {
    ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
    for (int vlan : {-1, 4097}) {
        quilt_.mgmt_vlan = vlan;
        EXPECT_EQ(apply(), -1);
        EXPECT_THAT(door.trace(), ElementsAre("log api_apply_channel_quilt: Entering...",
                                              "log api_apply_channel_quilt: error: invalid "
                                              "mgmt_vlan:" +
                                                  std::to_string(vlan)));
    }
    EXPECT_THAT(staged(), ElementsAre("orloagent.agent.confighash=abc"));
    EXPECT_FALSE(saving_restarts_network());
}

TEST_F(QuiltOptions, ABeaconThresholdOutOfRangeDiscardsEverything) {
    for (int threshold : {-2, 92}) {
        ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
        quilt_.beacon_rssi_threshold = threshold;
        EXPECT_EQ(apply(), -1);
        const Trace lines = door.trace();
        EXPECT_THAT(Trace(lines.end() - 2, lines.end()),
                    ElementsAre("revert all", "log api_apply_channel_quilt: error: invalid "
                                              "beacon_rssi_threshold: " +
                                                  std::to_string(threshold)));
        EXPECT_THAT(staged(), IsEmpty());
    }
    EXPECT_FALSE(saving_restarts_network());
}

TEST_F(QuiltOptions, OtherNumbersAreWrittenAsTheyAre) {
    for (int number : {-2, 47, INT_MAX, INT_MIN}) {
        quilt_.rekey_timeout = number;
        quilt_.station_isolation = number;
        quilt_.cqscan = number;
        quilt_.cq_proxy_arp = number;
        EXPECT_EQ(apply(), 0);
        for (const char* option : {"rekey", "client_isolation", "cqscan", "arp_filter"}) {
            EXPECT_EQ(staged_value(std::string("quilt.config_quilt.") + option),
                      std::to_string(number));
        }
    }
}

TEST_F(QuiltOptions, ASecretThatFillsItsFieldIsCutByTheStore) {
    memset(quilt_.secret, 's', sizeof quilt_.secret); // no end
    quilt_.rekey_timeout = 600;
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("quilt.config_quilt.secret"), std::string(485, 's'));
    door.fail(Call::uci_set, 2);
    EXPECT_EQ(apply(), -1);
    EXPECT_EQ(refusal(), "error: set secret:" + std::string(1024, 's') + " failed");
}

TEST_F(QuiltOptions, AnEmptySecretTakesTheStoredOneAway) {
    put(quilt_.secret, "");
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("quilt.config_quilt.secret"), "(none)");
}

TEST_F(QuiltOptions, NeedARecord) {
    door.forget();
    EXPECT_EQ(ops.api_apply_channel_quilt(nullptr), -1);
    EXPECT_THAT(door.trace(), ElementsAre("log api_apply_channel_quilt: Entering..."));
}

// The n-th write of the quilt's options fails.
struct FailedOption {
    int nth;
    const char* message;
    bool discards;
};

void PrintTo(const FailedOption& option, std::ostream* stream) {
    *stream << option.message;
}

class FailedQuiltOption : public QuiltRecord, public testing::WithParamInterface<FailedOption> {};

TEST_P(FailedQuiltOption, EndsTheCall) {
    quilt_.rekey_timeout = 600;
    quilt_.station_isolation = 1;
    quilt_.beacon_rssi_threshold = 20;
    quilt_.cqscan = 1;
    quilt_.cq_proxy_arp = 1;
    enable(0);
    ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
    door.fail(Call::uci_set, GetParam().nth);
    EXPECT_EQ(apply(), -1);
    EXPECT_EQ(door.trace().back(),
              std::string("log api_apply_channel_quilt: ") + GetParam().message);
    EXPECT_EQ(door.trace({"set"}).size(), static_cast<size_t>(GetParam().nth)) << "and no VAP";
    EXPECT_EQ(door.trace({"revert"}).size(), GetParam().discards ? 1U : 0U);
    EXPECT_EQ(staged().size(), GetParam().discards ? 0U : static_cast<size_t>(GetParam().nth));
    EXPECT_FALSE(saving_restarts_network());
}

const FailedOption failed_options[] = {
    {1, "error: set mgmt_vlan:7 failed", true},
    {2, "error: set secret:quilt secret failed", true},
    {3, "error: set rekey:600 failed", true},
    {4, "error: set station_isolation:1 failed", true},
    {5, "error: failed to set quilt.config_quilt.bcn_rssi_th=20", true},
    {6, "error: failed to set quilt.cqscan=1", false},
    {7, "error: failed to set quilt.arp_filter=1", false},
};

INSTANTIATE_TEST_SUITE_P(Writes, FailedQuiltOption, testing::ValuesIn(failed_options),
                         [](const auto& info) { return "Write" + std::to_string(info.param.nth); });

} // namespace orlo::test
