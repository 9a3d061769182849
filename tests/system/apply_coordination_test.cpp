// SPDX-License-Identifier: MIT
// Keeping the agent's applies and those of the web interface apart, and what goes with an apply.
#include "support/access_point.h"

#include <climits>
#include <sys/stat.h>
#include <unistd.h>

namespace orlo::test {

class WebBlock : public AccessPoint {
protected:
    static constexpr const char* block = "/tmp/radio_setting";
    static constexpr const char* web_restart = "/tmp/gui_network_restarting";
    const std::string take_ = "log api_is_config_applying_check: ";
    const std::string release_ = "log api_release_web_ui_block: ";
    const std::string busy_ = take_ + "info: Network/Web UI process was not finished yet!";
};

TEST_F(WebBlock, IsTakenOnceUntilItIsReleased) {
    EXPECT_EQ(ops.api_is_config_applying_check(), 0);
    EXPECT_EQ(read_file(block), "all");
    EXPECT_EQ(ops.api_is_config_applying_check(), -1);
    EXPECT_EQ(ops.api_release_web_ui_block(), 0);
    EXPECT_FALSE(exists(block));
    EXPECT_EQ(ops.api_release_web_ui_block(), -1);
    EXPECT_EQ(ops.api_is_config_applying_check(), 0);
    EXPECT_THAT(door.trace(), ElementsAre(take_ + "Entering...",
                                          take_ + "info: Start to block Web UI applying config.",
                                          take_ + "Entering...", busy_, release_ + "Entering...",
                                          std::string("unlink ") + block, release_ + "Entering...",
                                          take_ + "Entering...",
                                          take_ + "info: Start to block Web UI applying config."));
}

TEST_F(WebBlock, LeavesNoFileOpen) {
    const int next = next_descriptor();
    EXPECT_EQ(ops.api_is_config_applying_check(), 0);
    EXPECT_EQ(next_descriptor(), next);
}

TEST_F(WebBlock, IsNotTakenWhileTheWebInterfaceRestartsTheNetwork) {
    write_file(web_restart, "");
    EXPECT_EQ(ops.api_is_config_applying_check(), -1);
    EXPECT_THAT(door.trace(), ElementsAre(take_ + "Entering...", busy_));
    EXPECT_FALSE(exists(block));
    EXPECT_EQ(ops.api_release_web_ui_block(), -1);
    EXPECT_TRUE(exists(web_restart)) << "the web interface removes its own";
}

TEST_F(WebBlock, IsHeldByAnyFileOfItsName) {
    ASSERT_EQ(mkdir(block, 0755), 0);
    EXPECT_EQ(ops.api_is_config_applying_check(), -1);
    EXPECT_EQ(ops.api_release_web_ui_block(), -1) << "it cannot be deleted";
    EXPECT_TRUE(exists(block));
}

TEST_F(WebBlock, CountsAsTakenAlsoWhenItsFileCannotBeMade) {
    door.fail(Call::fopen);
    EXPECT_EQ(ops.api_is_config_applying_check(), 0);
    EXPECT_EQ(door.trace().back(), take_ + "info: Start to block Web UI applying config.");
    EXPECT_FALSE(exists(block));
}

TEST_F(WebBlock, ThatCannotBeDeletedIsNotReleased) {
    ASSERT_EQ(ops.api_is_config_applying_check(), 0);
    door.fail(Call::unlink);
    EXPECT_EQ(ops.api_release_web_ui_block(), -1);
    EXPECT_TRUE(exists(block));
}

using ApplyFlag = AccessPoint;

TEST_F(ApplyFlag, HasTheNextSaveRestartEverything) {
    ops.api_mark_config_apply_flag();
    EXPECT_THAT(door.trace(), IsEmpty());
    EXPECT_EQ(ops.api_save_config(), 0);
    EXPECT_THAT(door.trace({"run"}),
                testing::Contains("run /usr/bin/orloagent_apply_settings.sh "
                                  "network-5 ntp-0 led-0 log_relay-0 snmp-0 &"));
    door.forget();
    EXPECT_EQ(ops.api_save_config(), 0);
    EXPECT_THAT(door.trace(), testing::Contains("log api_save_config: No need to call OrloAgent "
                                                "apply settings script"));
}

TEST_F(ApplyFlag, IsAlsoRaisedByName) {
    exported<void()>("api_mark_config_apply_flag")();
    EXPECT_EQ(ops.api_save_config(), 0);
    EXPECT_THAT(door.trace(), testing::Contains("log api_save_config: info: Ready to call "
                                                "OrloAgent apply settings script"));
}

class SyncScan : public AccessPoint {
protected:
    void expect_trace(int start_stop, const std::string& action, const std::string& outcome = "") {
        EXPECT_THAT(door.trace(),
                    ElementsAre(own_ + "Entering... start_stop:" + std::to_string(start_stop),
                                "run sleep 1; /bin/ubus call orloagent syncscan '{\"action\": \"" +
                                    action + "\"}'" + outcome,
                                own_ + "End... " + action + " Syncscan Success"));
        door.forget();
    }

    const std::string own_ = "log api_start_stop_syncscan: ";
};

TEST_F(SyncScan, IsStartedAndStoppedASecondLater) {
    EXPECT_EQ(ops.api_start_stop_syncscan(1), 0);
    expect_trace(1, "start");
    EXPECT_EQ(read_file("/var/run/device/agent"), "syncscan=start\n");
    EXPECT_EQ(ops.api_start_stop_syncscan(0), 0);
    expect_trace(0, "stop");
    EXPECT_EQ(read_file("/var/run/device/agent"), "syncscan=stop\n");
    EXPECT_THAT(journal(),
                ElementsAre("sleep 1", "ubus call orloagent syncscan '{\"action\": \"start\"}'",
                            "sleep 1", "ubus call orloagent syncscan '{\"action\": \"stop\"}'"));
}

TEST_F(SyncScan, IsStartedByAnythingButZero) {
    for (int start : {-1, 2, INT_MIN, INT_MAX}) {
        EXPECT_EQ(ops.api_start_stop_syncscan(start), 0);
        expect_trace(start, "start");
    }
}

TEST_F(SyncScan, ThatFailsIsCalledASuccessAllTheSame) {
    replace_tool("ubus", "exit 4");
    EXPECT_EQ(ops.api_start_stop_syncscan(1), -1);
    expect_trace(1, "start");
    door.fail(Call::system);
    EXPECT_EQ(ops.api_start_stop_syncscan(0), -1);
    expect_trace(0, "stop", " (failed)");
    replace_tool("ubus", "kill -KILL $PPID");
    EXPECT_EQ(ops.api_start_stop_syncscan(0), 0) << "no exit code";
    expect_trace(0, "stop");
}

using Watchdog = AccessPoint;

TEST_F(Watchdog, BarksAfter900Seconds) {
    uint16_t timeouts[3] = {1, 2, 3};
    EXPECT_EQ(ops.api_get_watchdog_timeout(&timeouts[1]), 0);
    EXPECT_THAT(timeouts, ElementsAre(1, 900, 3));
    EXPECT_EQ(ops.api_get_watchdog_timeout(nullptr), 0);
    EXPECT_THAT(door.trace(),
                ElementsAre("log api_get_watchdog_timeout: Entering...",
                            "log api_get_watchdog_timeout: info: watchdog_config_timeout=900",
                            "log api_get_watchdog_timeout: Entering...",
                            "log api_get_watchdog_timeout: info: watchdog_config_timeout=900"));
}

} // namespace orlo::test
