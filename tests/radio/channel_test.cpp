// SPDX-License-Identifier: MIT
// Reading and setting a radio's channels.
#include "support/access_point.h"

#include <climits>

namespace orlo::test {

class Channel : public AccessPoint {
protected:
    Channel() {
        operate_on(0, 6);
        operate_on(1, 36);
    }

    // The driver's answer to "getcmd radiomode 1" is this text.
    static void answer_radio_mode(const std::string& text) {
        replace_tool("iwpriv", "printf '" + text + "'");
    }
};

TEST_F(Channel, IsWhatTheDriverReports) {
    EXPECT_EQ(ops.api_get_channel(1), 36);
    EXPECT_THAT(door.trace(), ElementsAre("log api_get_channel: Entering... radio:2",
                                          "log api_get_channel: End... return: 36"));
}

TEST_F(Channel, IsUnknownWhenTheDriverDoesNotAnswer) {
    tell_driver("wdev1", "fail freq EINVAL\n");
    EXPECT_EQ(ops.api_get_channel(1), -1);
    EXPECT_THAT(door.trace(), ElementsAre("log api_get_channel: Entering... radio:2"))
        << "no exit line";
    for (int radio : {7, -1, INT_MAX, INT_MIN}) {
        EXPECT_EQ(ops.api_get_channel(radio), -1) << "no such radio";
        EXPECT_EQ(ops.api_get_2ndchannel(radio), -1) << "no such radio";
    }
}

TEST_F(Channel, IsSetInTheConfigurationAndAtTheDriver) {
    EXPECT_EQ(ops.api_set_Channel(1, 44), 0);
    EXPECT_THAT(door.trace(),
                ElementsAre("log api_set_Channel: Entering... radio:1 channel:44",
                            "log api_set_Channel: info: ready to set radio1 channel: 44.",
                            "set wireless.wifi1.channel=44",
                            "log api_set_Channel: info: Set channel command:/usr/sbin/iwconfig "
                            "wdev1 channel 44",
                            "run /usr/sbin/iwconfig wdev1 channel 44",
                            "log api_set_Channel: info: iwconfig commit change: /usr/sbin/iwconfig "
                            "wdev1 commit",
                            "run /usr/sbin/iwconfig wdev1 commit", "commit wireless",
                            "log api_set_Channel: Set wifi1 channel 44 success."));
    EXPECT_EQ(committed_value("wireless.wifi1.channel"), "44");
    EXPECT_THAT(journal(), ElementsAre("iwconfig wdev1 channel 44", "iwconfig wdev1 commit"));
    EXPECT_EQ(ops.api_get_channel(1), 44);
}

TEST_F(Channel, OnlyItsBoundsAreChecked) {
    for (int channel : {1, 2, 13}) {
        EXPECT_EQ(ops.api_set_Channel(0, channel), 0) << channel;
    }
    for (int channel : {36, 37, 164, 165}) {
        EXPECT_EQ(ops.api_set_Channel(1, channel), 0) << channel;
    }
    for (int channel : {-1, 14, 36, INT_MAX, INT_MIN}) {
        EXPECT_EQ(ops.api_set_Channel(0, channel), -1) << channel;
    }
    for (int channel : {-1, 1, 13, 35, 166, 170}) {
        EXPECT_EQ(ops.api_set_Channel(1, channel), -1) << channel;
    }
    for (int radio : {-1, 2, INT_MAX, INT_MIN}) {
        EXPECT_EQ(ops.api_set_Channel(radio, 36), -1) << radio;
    }
}

TEST_F(Channel, ARefusedOneDiscardsEverythingStaged) {
    ASSERT_EQ(ops.api_apply_radio_status(0, 0), 0);
    ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
    door.forget();
    EXPECT_EQ(ops.api_set_Channel(0, 14), -1);
    EXPECT_THAT(door.trace(),
                ElementsAre("log api_set_Channel: Entering... radio:0 channel:14",
                            "log api_set_Channel: error: Invalid channel 14 for radio 0 !",
                            "revert all"));
    EXPECT_THAT(staged(), IsEmpty());
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(Channel, ZeroPinsTheRadioToItsOperatingChannel) {
    configure("wireless.wifi1.channel", "auto");
    EXPECT_EQ(ops.api_set_Channel(1, 0), 0);
    EXPECT_THAT(door.trace({"log"}),
                ElementsAre("log api_set_Channel: Entering... radio:1 channel:0",
                            "log api_get_channel: Entering... radio:2",
                            "log api_get_channel: End... return: 36",
                            "log api_set_Channel: info: ready to set radio1 channel: 36.",
                            "log api_set_Channel: info: Set channel command:/usr/sbin/iwconfig "
                            "wdev1 channel 36",
                            "log api_set_Channel: info: iwconfig commit change: "
                            "/usr/sbin/iwconfig wdev1 commit",
                            "log api_set_Channel: Set wifi1 channel 0 success."))
        << "the last line names the channel as given";
    EXPECT_EQ(committed_value("wireless.wifi1.channel"), "36");
}

TEST_F(Channel, ZeroPinsWhateverChannelTheRadioIsOn) {
    operate_on(0, 14);
    EXPECT_EQ(ops.api_set_Channel(0, 0), 0);
    EXPECT_EQ(committed_value("wireless.wifi0.channel"), "14") << "not checked against its bounds";
}

TEST_F(Channel, ZeroOfAnotherRadioChangesNothing) {
    for (int radio : {7, -1, INT_MAX}) {
        EXPECT_EQ(ops.api_set_Channel(radio, 0), 0);
    }
    EXPECT_THAT(door.trace({"set", "run", "commit", "revert"}), IsEmpty());
}

TEST_F(Channel, ZeroChangesNothingWhileTheDriverReportsNoChannel) {
    configure("wireless.wifi0.channel", "auto");
    for (const char* state : {"fail freq EINVAL\n", "frequency 0 0\n", "frequency -5 0\n"}) {
        tell_driver("wdev0", state);
        door.forget();
        EXPECT_EQ(ops.api_set_Channel(0, 0), 0);
        EXPECT_EQ(door.trace().back(), "log api_set_Channel: info: can't get radio0 operation "
                                       "channel, silent ignore to set channel.");
        EXPECT_THAT(door.trace({"set", "run", "commit", "revert"}), IsEmpty()) << state;
    }
    EXPECT_EQ(committed_value("wireless.wifi0.channel"), "auto");
}

TEST_F(Channel, AFailedWriteDiscardsEverythingAndLeavesTheDriverAlone) {
    ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
    door.forget();
    door.fail(Call::uci_set);
    EXPECT_EQ(ops.api_set_Channel(0, 11), -1);
    EXPECT_THAT(door.trace(),
                ElementsAre("log api_set_Channel: Entering... radio:0 channel:11",
                            "log api_set_Channel: info: ready to set radio0 channel: 11.",
                            "set wireless.wifi0.channel=11 (failed)",
                            "log api_set_Channel: error: Set wifi0 channel auto to config failed.",
                            "revert all"));
    EXPECT_THAT(staged(), IsEmpty());
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(Channel, ADriverThatRefusesItChangesNoResult) {
    replace_tool("iwconfig", "exit 1");
    door.fail(Call::uci_commit);
    EXPECT_EQ(ops.api_set_Channel(0, 11), 0) << "nor does a failed commit";
    EXPECT_EQ(door.trace().back(), "log api_set_Channel: Set wifi0 channel 11 success.");
    door.fail_always(Call::system);
    EXPECT_EQ(ops.api_set_Channel(0, 1), 0);
    EXPECT_EQ(committed_value("wireless.wifi0.channel"), "1");
}

TEST_F(Channel, TheSecondOneIsNoneUnlessTheRadioRunsInTwoSegments) {
    answer_radio_mode("BW2=4\\nChannel2=149\\n");
    EXPECT_EQ(ops.api_get_2ndchannel(1), 0);
    EXPECT_THAT(door.trace(),
                ElementsAre("log api_get_2ndchannel: Entering... radio:2",
                            "read iwpriv wdev1 getcmd \"radiomode 1\" | grep \"BW2\" "
                            "| cut -d '=' -f 2",
                            "log api_get_2ndchannel: End, 2nd_ch = 0, operating bw = 4"));
}

TEST_F(Channel, TheSecondOneIsReadFromTheDriver) {
    answer_radio_mode("BW2=5\\nChannel2=149\\n");
    EXPECT_EQ(ops.api_get_2ndchannel(1), 149);
    EXPECT_THAT(door.trace(),
                ElementsAre("log api_get_2ndchannel: Entering... radio:2",
                            "read iwpriv wdev1 getcmd \"radiomode 1\" | grep \"BW2\" "
                            "| cut -d '=' -f 2",
                            "read iwpriv wdev1 getcmd \"radiomode 1\" | grep \"Channel2\" "
                            "| cut -d '=' -f 2",
                            "log api_get_2ndchannel: End, 2nd_ch = 149, operating bw = 5"));
}

TEST_F(Channel, TheSecondOneIsUnknownWhenTheBandwidthCannotBeRead) {
    const std::string command =
        "iwpriv wdev1 getcmd \"radiomode 1\" | grep \"BW2\" | cut -d '=' -f 2";
    const std::string error =
        "log api_get_2ndchannel: Error: get iwpriv wdev1 getcmd \"radiomode 1\"; failed!! ";
    answer_radio_mode("");
    EXPECT_EQ(ops.api_get_2ndchannel(1), -1);
    EXPECT_THAT(door.trace({"log"}),
                ElementsAre("log api_get_2ndchannel: Entering... radio:2",
                            "log execute_system_call: Read data from " + command + " failed",
                            error));
    door.forget();
    door.fail(Call::popen);
    EXPECT_EQ(ops.api_get_2ndchannel(1), -1);
    EXPECT_THAT(door.trace({"log"}),
                ElementsAre("log api_get_2ndchannel: Entering... radio:2",
                            "log execute_system_call: Execute " + command + " failed", error));
}

TEST_F(Channel, TheSecondOneCountsAsNoneWhenOnlyItsNumberCannotBeRead) {
    answer_radio_mode("BW2=5\\n");
    EXPECT_EQ(ops.api_get_2ndchannel(1), 0);
    EXPECT_EQ(door.trace().back(),
              "log api_get_2ndchannel: Error: get iwpriv wdev1 getcmd \"radiomode 1\"; failed!! ");
    answer_radio_mode("BW2=5\\nChannel2=149\\n");
    door.fail(Call::popen, 2);
    EXPECT_EQ(ops.api_get_2ndchannel(1), 0);
}

TEST_F(Channel, OnlyTheFirstLineOfAnAnswerCounts) {
    answer_radio_mode("BW2=5\\nBW2=4\\nChannel2=149\\nChannel2=36\\n");
    EXPECT_EQ(ops.api_get_2ndchannel(1), 149);
}

TEST_F(Channel, ALongAnswerIsCutWithAWarning) {
    answer_radio_mode("BW2=12345678901234567890\\n");
    EXPECT_EQ(ops.api_get_2ndchannel(1), 0);
    EXPECT_THAT(door.trace({"log"}),
                ElementsAre("log api_get_2ndchannel: Entering... radio:2",
                            "log execute_system_call: Warning! Result will be cut due to not "
                            "enough space",
                            "log api_get_2ndchannel: End, 2nd_ch = 0, operating bw = 1234567"))
        << "seven bytes of eight";
}

TEST_F(Channel, AnAnswerAsLongAsItsBufferIsCopiedWhole) {
    answer_radio_mode("BW2=1234567\\n");
    EXPECT_EQ(ops.api_get_2ndchannel(1), 0);
    EXPECT_THAT(door.trace({"log"}),
                ElementsAre("log api_get_2ndchannel: Entering... radio:2",
                            "log api_get_2ndchannel: End, 2nd_ch = 0, operating bw = 1234567"));
}

TEST_F(Channel, AnEndlessLineIsReadUpToItsBuffer) {
    answer_radio_mode("BW2=5" + std::string(2000, '0') + "\\n");
    EXPECT_EQ(ops.api_get_2ndchannel(1), 0);
    EXPECT_EQ(door.trace().back(),
              "log api_get_2ndchannel: End, 2nd_ch = 0, operating bw = 5000000");
}

TEST_F(Channel, TheSecondOneIsSetInTheConfigurationAndAtTheDriver) {
    EXPECT_EQ(ops.api_set_secondChannel(1, 149), 0);
    EXPECT_THAT(
        door.trace(),
        ElementsAre("set wireless.wifi1.secondchannel=149",
                    "log api_set_secondChannel: info: execute [/usr/sbin/iwpriv wdev1 setcmd "
                    "\"radiomode 1 149\"]",
                    "run /usr/sbin/iwpriv wdev1 setcmd \"radiomode 1 149\"",
                    "log api_set_secondChannel: info: ready to set radio1 secondary channel: 149.",
                    "log api_set_secondChannel: info: iwconfig commit change: /usr/sbin/iwconfig "
                    "wdev1 commit",
                    "run /usr/sbin/iwconfig wdev1 commit", "commit wireless",
                    "log api_set_secondChannel: Set wifi1 channel 149 success."));
    EXPECT_EQ(committed_value("wireless.wifi1.secondchannel"), "149");
    EXPECT_EQ(ops.api_get_2ndchannel(1), 149);
}

TEST_F(Channel, MinusOneTurnsTheSecondOneOff) {
    ASSERT_EQ(ops.api_set_secondChannel(1, 149), 0);
    door.forget();
    EXPECT_EQ(ops.api_set_secondChannel(1, -1), 0);
    EXPECT_THAT(
        door.trace(),
        ElementsAre("set wireless.wifi1.secondchannel=",
                    "log api_set_secondChannel: info: execute [/usr/sbin/iwpriv wdev1 setcmd "
                    "\"radiomode 0\"]",
                    "run /usr/sbin/iwpriv wdev1 setcmd \"radiomode 0\"",
                    "log api_set_secondChannel: info: ready to set radio1 secondary channel: -1.",
                    "log api_set_secondChannel: info: iwconfig commit change: /usr/sbin/iwconfig "
                    "wdev1 commit",
                    "run /usr/sbin/iwconfig wdev1 commit", "commit wireless",
                    "log api_set_secondChannel: Set wifi1 channel -1 success."));
    EXPECT_EQ(committed_value("wireless.wifi1.secondchannel"), "(none)");
    EXPECT_EQ(ops.api_get_2ndchannel(1), 0);
}

TEST_F(Channel, ASecondOneOfZeroLeavesEverythingAlone) {
    EXPECT_EQ(ops.api_set_secondChannel(1, 0), 0);
    EXPECT_THAT(door.trace(), IsEmpty());
}

TEST_F(Channel, ASecondOneThatTheDriverRefusesChangesNoResult) {
    replace_tool("iwpriv", "exit 1");
    door.fail(Call::uci_commit);
    EXPECT_EQ(ops.api_set_secondChannel(1, 149), 0) << "nor does a failed commit";
    EXPECT_EQ(door.trace().back(), "log api_set_secondChannel: Set wifi1 channel 149 success.");
    door.fail_always(Call::system);
    EXPECT_EQ(ops.api_set_secondChannel(1, 36), 0);
}

TEST_F(Channel, TheSecondOneIsNotChecked) {
    for (int channel : {1, 9999, -2, INT_MAX, INT_MIN}) {
        EXPECT_EQ(ops.api_set_secondChannel(0, channel), 0);
        EXPECT_EQ(committed_value("wireless.wifi0.secondchannel"), std::to_string(channel));
    }
}

TEST_F(Channel, ASecondOneThatCannotBeWrittenDiscardsEverything) {
    ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
    door.forget();
    EXPECT_EQ(ops.api_set_secondChannel(7, 149), -1) << "no such radio";
    EXPECT_THAT(door.trace(),
                ElementsAre("set wireless.wifi7.secondchannel=149 (failed)",
                            "log api_set_secondChannel: error: failed to set second channel of "
                            "radio7 to 149",
                            "revert all"));
    EXPECT_THAT(staged(), IsEmpty());

    ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
    door.forget();
    door.fail(Call::uci_set);
    EXPECT_EQ(ops.api_set_secondChannel(1, -1), -1);
    EXPECT_THAT(door.trace(),
                ElementsAre("set wireless.wifi1.secondchannel= (failed)",
                            "log api_set_secondChannel: error: failed to delete second channel of "
                            "radio1",
                            "revert all"));
    EXPECT_THAT(staged(), IsEmpty());
    EXPECT_THAT(journal(), IsEmpty());
}

} // namespace orlo::test
