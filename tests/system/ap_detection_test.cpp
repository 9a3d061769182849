// SPDX-License-Identifier: MIT
// Detection of neighbouring access points.
#include "system/service.h"

#include <climits>

namespace orlo::test {

class ApDetection : public SystemService {
protected:
    const std::string own_ = "log api_set_ap_detection: ";

    int set(int radio, const char* status) {
        door.forget();
        return ops.api_set_ap_detection(radio, status);
    }
};

TEST_F(ApDetection, IsSwitchedForGood) {
    for (int radio : {0, 1}) {
        const std::string r = std::to_string(radio);
        EXPECT_EQ(set(radio, "on"), 0);
        EXPECT_THAT(door.trace(), ElementsAre(own_ + "Entering... radio:" + r + " status:on",
                                              "set wireless.wifi" + r + ".rfscan_status=1",
                                              "commit all", own_ + "End..."));
        EXPECT_EQ(committed_value("wireless.wifi" + r + ".rfscan_status"), "1");
    }
    EXPECT_EQ(restarted(), "") << "no service";
}

TEST_F(ApDetection, IsOffForAnythingButOn) {
    for (const char* status : {"off", "ON", "on ", "1", "", static_cast<const char*>(nullptr)}) {
        EXPECT_EQ(set(0, "on"), 0);
        EXPECT_EQ(set(0, status), 0);
        EXPECT_EQ(committed_value("wireless.wifi0.rfscan_status"), "0");
        EXPECT_EQ(door.trace().front(),
                  own_ + "Entering... radio:0 status:" + (status == nullptr ? "NULL" : status));
    }
}

TEST_F(ApDetection, CommitsWhatIsStagedElsewhere) {
    stage_another_change();
    EXPECT_EQ(set(1, "on"), 0);
    EXPECT_EQ(committed_value("orloagent.agent.confighash"), "another change");
}

TEST_F(ApDetection, NeedsARadioThatTheConfigurationKnows) {
    stage_another_change();
    for (int radio : {2, -1, INT_MAX}) {
        EXPECT_EQ(set(radio, "on"), -1);
        EXPECT_EQ(door.trace().back(), own_ + "Set Value Failed");
        EXPECT_THAT(door.trace({"commit", "revert"}), IsEmpty());
    }
    EXPECT_TRUE(another_change_is_staged());
}

TEST_F(ApDetection, ThatCannotBeStagedOrCommittedDiscardsNothing) {
    stage_another_change();
    door.fail(Call::uci_set);
    EXPECT_EQ(set(0, "on"), -1);
    EXPECT_THAT(door.trace(), ElementsAre(own_ + "Entering... radio:0 status:on",
                                          "set wireless.wifi0.rfscan_status=1 (failed)",
                                          own_ + "Set Value Failed"));
    EXPECT_TRUE(another_change_is_staged());
    door.fail(Call::uci_list_configs);
    EXPECT_EQ(set(0, "on"), -1);
    EXPECT_THAT(door.trace(), ElementsAre(own_ + "Entering... radio:0 status:on",
                                          "set wireless.wifi0.rfscan_status=1", "list (failed)",
                                          own_ + "Commit Value Failed"));
    EXPECT_EQ(staged_value("wireless.wifi0.rfscan_status"), "1");
    EXPECT_TRUE(another_change_is_staged());
}

// ---- The agent's note ----

class ApDetectionNote : public SystemService {};

TEST_F(ApDetectionNote, IsStaged) {
    const std::string own = "log api_set_ap_detection_configured: ";
    const struct {
        int given;
        const char* value;
    } rows[] = {{1, "1"}, {0, "0"}, {-1, "1"}, {2, "1"}};
    for (const auto& row : rows) {
        door.forget();
        EXPECT_EQ(ops.api_set_ap_detection_configured(row.given), 0);
        EXPECT_THAT(
            door.trace(),
            ElementsAre(own + "Entering, st = " + std::to_string(row.given),
                        std::string("set orloagent.agent.ap_detection_configured=") + row.value));
    }
    EXPECT_EQ(committed_value("orloagent.agent.ap_detection_configured"), "0");
    EXPECT_EQ(restarted(), "");
}

TEST_F(ApDetectionNote, ThatCannotBeStagedDiscardsNothing) {
    stage_another_change();
    for (int given : {0, 5}) {
        door.forget();
        door.fail(Call::uci_set);
        EXPECT_EQ(ops.api_set_ap_detection_configured(given), -1);
        EXPECT_EQ(door.trace().back(),
                  std::string("log api_set_ap_detection_configured: Failed to set "
                              "orloagent.ap_detection_configured=") +
                      (given == 0 ? "0" : "1"));
    }
    EXPECT_TRUE(another_change_is_staged());
}

TEST_F(ApDetectionNote, IsOneOnlyWhenItSaysSo) {
    const struct {
        const char* value;
        int answer;
    } rows[] = {{"1", 1}, {"0", 0}, {"", 0}, {"10", 0}, {"01", 0}, {"yes", 0}, {"1234567890", 0}};
    for (const auto& row : rows) {
        configure("orloagent.agent.ap_detection_configured", row.value);
        door.forget();
        EXPECT_EQ(ops.api_get_ap_detection_configured(), row.answer) << row.value;
        EXPECT_THAT(door.trace(), ElementsAre("log api_get_ap_detection_configured: Entering..."));
    }
    ASSERT_EQ(ops.api_set_ap_detection_configured(1), 0);
    EXPECT_EQ(ops.api_get_ap_detection_configured(), 1) << "staged is enough";
}

// ---- Channel hopping ----

using ChannelHopping = SystemService;

TEST_F(ChannelHopping, IsNotThere) {
    int anything = 0;
    EXPECT_EQ(ops.api_set_channel_hopping(1, &anything), 0);
    EXPECT_EQ(ops.api_set_channel_hopping(-1, nullptr), 0);
    EXPECT_THAT(door.trace(), ElementsAre("log api_set_channel_hopping: Entering, not support",
                                          "log api_set_channel_hopping: End...",
                                          "log api_set_channel_hopping: Entering, not support",
                                          "log api_set_channel_hopping: End..."));
    EXPECT_EQ(restarted(), "");
}

} // namespace orlo::test
