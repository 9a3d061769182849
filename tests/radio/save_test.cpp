// SPDX-License-Identifier: MIT
// Saving: commit, restart of what changed, wait, pinning of channels.
#include "support/access_point.h"

#include <unistd.h>

namespace orlo::test {

class Save : public AccessPoint {
protected:
    static constexpr const char* script = "/usr/bin/orloagent_apply_settings.sh";
    static constexpr const char* marker = "/tmp/orlo_network_restarting";
    static constexpr const char* web_block = "/tmp/radio_setting";
    const std::string own_ = "log api_save_config: ";

    Save() {
        operate_on(0, 6);
        operate_on(1, 36);
        configure("wireless.wifi0.channel", "6");
        configure("wireless.wifi1.channel", "36");
        configure("wireless.wifi0.disabled", "1");
    }

    void change_network() {
        ASSERT_EQ(ops.api_apply_radio_status(0, 1), 0);
        door.forget();
    }

    static int run_vlan_script_count() {
        int count = 0;
        for (const std::string& line : journal()) {
            count += line.find("chvlan.lua") != std::string::npos ? 1 : 0;
        }
        return count;
    }
};

TEST_F(Save, WithNothingChangedCommitsAndRestartsNothing) {
    ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
    door.forget();
    EXPECT_EQ(ops.api_save_config(), 0);
    EXPECT_THAT(door.trace(), ElementsAre(own_ + "Entering...", "commit all",
                                          "log api_update_vap_vlan: Entering...",
                                          "run /usr/bin/lua /usr/lib/lua/luci/chvlan.lua",
                                          own_ + "No need to call OrloAgent apply settings script",
                                          "log api_get_channel: Entering... radio:1",
                                          "log api_get_channel: End... return: 6",
                                          "log api_get_channel: Entering... radio:2",
                                          "log api_get_channel: End... return: 36",
                                          own_ + "End Save Config successfully"));
    EXPECT_EQ(committed_value("orloagent.agent.confighash"), "abc");
    EXPECT_EQ(run_vlan_script_count(), 1);
}

TEST_F(Save, AfterARadioChangeRestartsTheNetworkAndWaitsForIt) {
    change_network();
    EXPECT_EQ(ops.api_save_config(), 0);
    const Trace lines = door.trace({"log", "commit", "run"});
    ASSERT_GE(lines.size(), 6U);
    EXPECT_THAT(Trace(lines.begin(), lines.begin() + 6),
                ElementsAre(own_ + "Entering...", "commit all",
                            "log api_update_vap_vlan: Entering...",
                            "run /usr/bin/lua /usr/lib/lua/luci/chvlan.lua",
                            own_ + "info: Ready to call OrloAgent apply settings script",
                            std::string("run ") + script + " network-5 &"));
    EXPECT_FALSE(exists(marker)) << "the script has removed it";
    EXPECT_THAT(journal(), testing::Contains("orloagent_apply_settings.sh network-5"));
    EXPECT_EQ(door.trace({"sleep"}).back(), "sleep 3");
    EXPECT_EQ(door.trace().back(), own_ + "End Save Config successfully");
}

TEST_F(Save, MarksTheNetworkAsRestartingBeforeTheScriptRuns) {
    change_network();
    bool marked = false;
    door.on_run = [&](const std::string& command) -> std::optional<int> {
        marked = marked || (command.find(script) == 0 && exists(marker));
        return std::nullopt;
    };
    EXPECT_EQ(ops.api_save_config(), 0);
    EXPECT_TRUE(marked);
}

TEST_F(Save, WaitsASecondACheckThenThreeMore) {
    change_network();
    replace_tool("orloagent_apply_settings.sh", "exit 0"); // leaves the marker
    door.on_sleep = [](int sleeps) {
        if (sleeps == 1) {
            EXPECT_TRUE(exists(marker)) << "the library has made it";
        }
        if (sleeps == 4) {
            unlink(marker);
        }
    };
    EXPECT_EQ(ops.api_save_config(), 0);
    EXPECT_THAT(door.trace({"sleep"}),
                ElementsAre("sleep 1", "sleep 1", "sleep 1", "sleep 1", "sleep 3"));
}

TEST_F(Save, ComplainsFromThe151stCheckOnAndNeverGivesUp) {
    change_network();
    replace_tool("orloagent_apply_settings.sh", "exit 0");
    door.on_sleep = [](int sleeps) {
        if (sleeps == 400) {
            unlink(marker);
        }
    };
    EXPECT_EQ(ops.api_save_config(), 0);
    Trace late;
    for (const std::string& line : door.trace()) {
        if (line.find("is still running!") != std::string::npos) {
            late.push_back(line);
        }
    }
    ASSERT_EQ(late.size(), 250U);
    const std::string message = "log 7/0 api_save_config: /usr/bin/orloagent_apply_settings.sh is "
                                "still running! (";
    EXPECT_EQ(late.front(), message + "151)");
    EXPECT_EQ(late.back(), message + "400)");
}

TEST_F(Save, ClearsTheMarksSoThatTheNextOneRestartsNothing) {
    change_network();
    ASSERT_EQ(ops.api_save_config(), 0);
    door.forget();
    EXPECT_EQ(ops.api_save_config(), 0);
    EXPECT_THAT(door.trace(),
                testing::Contains(own_ + "No need to call OrloAgent apply settings script"));
    EXPECT_THAT(door.trace({"sleep"}), IsEmpty());
}

TEST_F(Save, WithoutTheScriptFailsBeforeTheCommit) {
    change_network();
    door.fail(Call::access);
    EXPECT_EQ(ops.api_save_config(), -1);
    EXPECT_THAT(door.trace(), ElementsAre(own_ + "Entering...",
                                          own_ + "OrloAgent apply settings script was not found"));
    EXPECT_THAT(staged(), ElementsAre("wireless.wifi0.disabled=0"));
}

TEST_F(Save, AFailedCommitEndsItWithoutAWord) {
    change_network();
    door.fail(Call::uci_commit);
    EXPECT_EQ(ops.api_save_config(), -1);
    EXPECT_THAT(door.trace(), ElementsAre(own_ + "Entering...", "commit all (failed at network)"));
    door.forget();
    EXPECT_EQ(ops.api_save_config(), 0) << "the mark has stayed";
    EXPECT_THAT(door.trace({"run"}),
                testing::Contains(std::string("run ") + script + " network-5 &"));
}

TEST_F(Save, AScriptThatCannotBeStartedTakesTheMarkersAway) {
    const std::string everything =
        std::string("run ") + script + " network-5 ntp-0 led-0 log_relay-0 snmp-0 &";
    ops.api_mark_config_apply_flag();
    write_file(web_block, "");
    door.fail(Call::system, 2); // the first runs the VLAN script
    EXPECT_EQ(ops.api_save_config(), -1);
    EXPECT_EQ(door.trace().back(),
              own_ + "Execute system call '" + everything.substr(4) + "' failed");
    EXPECT_FALSE(exists(marker));
    EXPECT_FALSE(exists(web_block));
    EXPECT_THAT(door.trace({"unlink"}),
                ElementsAre(std::string("unlink ") + web_block, std::string("unlink ") + marker));
    EXPECT_THAT(door.trace({"sleep"}), IsEmpty());
    door.forget();
    EXPECT_EQ(ops.api_save_config(), 0) << "the marks have stayed";
    EXPECT_THAT(door.trace({"run"}), testing::Contains(everything));
}

TEST_F(Save, LeavesTheWebInterfaceBlockedWhenTheScriptStarts) {
    change_network();
    write_file(web_block, "");
    EXPECT_EQ(ops.api_save_config(), 0);
    EXPECT_TRUE(exists(web_block));
}

TEST_F(Save, AMissingVlanScriptIsOnlyNoted) {
    door.fail(Call::access, 2);
    EXPECT_EQ(ops.api_save_config(), 0);
    EXPECT_THAT(door.trace(),
                testing::Contains("log api_update_vap_vlan: VLAN change script was not found"));
    EXPECT_THAT(door.trace({"run"}), IsEmpty());
}

TEST_F(Save, AVlanScriptThatCannotBeStartedIsOnlyNoted) {
    door.fail(Call::system);
    EXPECT_EQ(ops.api_save_config(), 0);
    EXPECT_THAT(door.trace(),
                testing::Contains("log api_update_vap_vlan: Execute system call '/usr/bin/lua "
                                  "/usr/lib/lua/luci/chvlan.lua' failed"));
}

TEST_F(Save, PinsAutoChannelsToTheChannelInUse) {
    configure("wireless.wifi0.channel", "auto");
    configure("wireless.wifi1.channel", "auto");
    EXPECT_EQ(ops.api_save_config(), 0);
    const Trace lines = door.trace();
    ASSERT_GE(lines.size(), 11U);
    EXPECT_THAT(
        Trace(lines.end() - 11, lines.end()),
        ElementsAre(
            "log api_get_channel: Entering... radio:1", "log api_get_channel: End... return: 6",
            own_ + "info: change radio0 channel-policy from 'auto' to fixed : 6 "
                   "on demand.",
            "set wireless.wifi0.channel=6", "commit all",
            "log api_get_channel: Entering... radio:2", "log api_get_channel: End... return: 36",
            own_ + "info: change radio1 channel-policy from 'auto' to fixed : 36 "
                   "on demand.",
            "set wireless.wifi1.channel=36", "commit all", own_ + "End Save Config successfully"));
    EXPECT_EQ(committed_value("wireless.wifi0.channel"), "6");
    EXPECT_EQ(committed_value("wireless.wifi1.channel"), "36");
}

TEST_F(Save, TakesAMissingChannelForAuto) {
    configure("wireless.wifi1.channel", "");
    EXPECT_EQ(ops.api_save_config(), 0);
    EXPECT_THAT(door.trace(), testing::Contains(own_ + "info: failed to uci_get radio1 channel."));
    EXPECT_EQ(committed_value("wireless.wifi1.channel"), "36");
}

TEST_F(Save, LeavesAutoWhereTheChannelInUseIsUnknown) {
    for (const char* state : {"fail freq EINVAL\n", "frequency 0 0\n"}) {
        configure("wireless.wifi1.channel", "auto");
        tell_driver("wdev1", state);
        EXPECT_EQ(ops.api_save_config(), 0);
        EXPECT_EQ(committed_value("wireless.wifi1.channel"), "auto") << state;
    }
}

TEST_F(Save, LeavesAnyOtherPolicyAlone) {
    for (const char* policy : {"44", "automatic", "AUTO"}) {
        configure("wireless.wifi1.channel", policy);
        EXPECT_EQ(ops.api_save_config(), 0);
        EXPECT_EQ(committed_value("wireless.wifi1.channel"), policy);
    }
}

TEST_F(Save, APinThatCannotBeCommittedNeverFailsIt) {
    configure("wireless.wifi0.channel", "auto");
    configure("wireless.wifi1.channel", "auto");
    change_network();
    const size_t packages = 8;
    door.fail(Call::uci_commit, packages + 1); // the first of the pin's
    EXPECT_EQ(ops.api_save_config(), 0);
    EXPECT_THAT(door.trace({"commit"}),
                ElementsAre("commit all", "commit all (failed at network)", "commit all"));
    EXPECT_EQ(committed_value("wireless.wifi1.channel"), "36") << "the other radio is pinned";
    EXPECT_EQ(committed_value("wireless.wifi0.channel"), "6") << "with the next commit";
    door.forget();
    EXPECT_EQ(ops.api_save_config(), 0);
    EXPECT_THAT(door.trace(),
                testing::Contains(own_ + "No need to call OrloAgent apply settings script"))
        << "the marks are cleared";
}

TEST_F(Save, APinThatCannotBeWrittenNeverFailsIt) {
    configure("wireless.wifi1.channel", "auto");
    door.fail(Call::uci_set);
    EXPECT_EQ(ops.api_save_config(), 0);
    const Trace lines = door.trace();
    EXPECT_THAT(Trace(lines.end() - 4, lines.end()),
                ElementsAre("set wireless.wifi1.channel=36 (failed)",
                            own_ + "info: radio1 failed to change channel to fixed:36.",
                            "commit all", own_ + "End Save Config successfully"))
        << "committed all the same";
}

} // namespace orlo::test
