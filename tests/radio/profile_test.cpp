// SPDX-License-Identifier: MIT
// A radio's part of an access-point profile.
#include "support/access_point.h"

#include <climits>

namespace orlo::test {

class RadioProfile : public AccessPoint {
protected:
    RadioProfile() {
        operate_on(0, 6);
        operate_on(1, 36);
        configure("wireless.wifi0.eg_ch", "1 6 11");
        configure("wireless.wifi1.eg_ch", "36 40 44 48 149 153 157 161");
        configure("wireless.wifi1.secondchannel", "");
        configure("orloagent.wifi1.forceDisable", "");
    }

    // The lines that the profile operation itself logs.
    Trace own_log() const {
        Trace lines;
        for (const std::string& line : door.trace()) {
            if (line.compare(0, own_.size(), own_) == 0) {
                lines.push_back(line.substr(own_.size()));
            }
        }
        return lines;
    }

    const std::string own_ = "log api_apply_wireless_interface: ";
};

TEST_F(RadioProfile, AppliesForceDisableOffThenChannelSecondChannelAndPower) {
    configure("wireless.wifi1.disabled", "1");
    EXPECT_EQ(ops.api_apply_wireless_interface(1, "not-override", 44, 149, 80), 0);
    EXPECT_THAT(own_log(),
                ElementsAre("Entering... radio:1 status:not-override channel:44 prof_2nd_ch:149 "
                            "power:80",
                            "wifi1 force-disable off: set radio status with AP Profile setting.",
                            "Apply wifi1 interface success."));
    EXPECT_THAT(door.trace({"set", "run", "commit", "revert"}),
                ElementsAre("set orloagent.wifi1.forceDisable=off", "set wireless.wifi1.channel=44",
                            "run /usr/sbin/iwconfig wdev1 channel 44",
                            "run /usr/sbin/iwconfig wdev1 commit", "commit wireless",
                            "set wireless.wifi1.secondchannel=149",
                            "run /usr/sbin/iwpriv wdev1 setcmd \"radiomode 1 149\"",
                            "run /usr/sbin/iwconfig wdev1 commit", "commit wireless",
                            "set wireless.wifi1.txpower=80",
                            "run /usr/sbin/iwpriv wdev1 setcmd \"loadpwrgrpstbl "
                            "/etc/R8K_5G_TX_Power_Table 80\"",
                            "run /usr/sbin/iwpriv wdev1 setcmd \"applypwr\"", "commit wireless"));
    EXPECT_EQ(staged_value("orloagent.wifi1.forceDisable"), "off");
    EXPECT_EQ(committed_value("wireless.wifi1.disabled"), "1") << "the profile decides it";
}

TEST_F(RadioProfile, MarksTheNetworkForTheNextSave) {
    ASSERT_EQ(ops.api_apply_wireless_interface(1, "not-override", 44, 149, 80), 0);
    door.forget();
    ASSERT_EQ(ops.api_save_config(), 0);
    EXPECT_THAT(door.trace({"run"}),
                testing::Contains("run /usr/bin/orloagent_apply_settings.sh network-5 &"));
}

TEST_F(RadioProfile, MarksNothingWhenItIsRefused) {
    EXPECT_EQ(ops.api_apply_wireless_interface(1, "override", 44, -1, 0), -1);
    EXPECT_EQ(ops.api_apply_wireless_interface(1, "not-override", 170, -1, 0), -1);
    EXPECT_EQ(ops.api_apply_wireless_interface(1, "not-override", 44, -1, 101), -1);
    EXPECT_EQ(ops.api_apply_wireless_interface(1, "not-override", 44, -1, -5), -1);
    EXPECT_EQ(ops.api_apply_radio_status(1, 2), -1);
    door.fail(Call::uci_set);
    EXPECT_EQ(ops.api_apply_radio_status(1, 0), -1);
    door.forget();
    ASSERT_EQ(ops.api_save_config(), 0);
    EXPECT_THAT(door.trace({"run"}), ElementsAre("run /usr/bin/lua /usr/lib/lua/luci/chvlan.lua"));
}

TEST_F(RadioProfile, ForceDisableTurnsTheRadioOffAndStillAppliesTheRest) {
    configure("wireless.wifi1.disabled", "0");
    EXPECT_EQ(ops.api_apply_wireless_interface(1, "force-disable", 44, 149, 80), 0);
    EXPECT_THAT(own_log(),
                ElementsAre("Entering... radio:1 status:force-disable channel:44 prof_2nd_ch:149 "
                            "power:80",
                            "wifi1 force-disable on: Don't care AP Profile setting.force set radio "
                            "status to Disable.",
                            "Apply wifi1 interface success."));
    EXPECT_THAT(door.trace({"set"}),
                ElementsAre("set orloagent.wifi1.forceDisable=on", "set wireless.wifi1.disabled=1",
                            "set wireless.wifi1.channel=44", "set wireless.wifi1.secondchannel=149",
                            "set wireless.wifi1.txpower=80"));
    EXPECT_EQ(committed_value("wireless.wifi1.disabled"), "1") << "committed with the channel";
    EXPECT_THAT(staged(), ElementsAre("orloagent.wifi1.forceDisable=on"));
}

TEST_F(RadioProfile, AnyOtherOverrideStatusIsRefusedAndDiscardsEverything) {
    for (const char* status : {"NOT-OVERRIDE", "Force-Disable", "", "override"}) {
        ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
        door.forget();
        EXPECT_EQ(ops.api_apply_wireless_interface(0, status, 6, -1, 0), -1);
        EXPECT_EQ(door.trace().back(), "revert all");
        EXPECT_EQ(own_log().back(),
                  std::string("error: wifi0 force-disable: Unknown status ") + status);
        EXPECT_THAT(staged(), IsEmpty());
    }
    door.forget();
    EXPECT_EQ(ops.api_apply_wireless_interface(0, nullptr, 6, -1, 0), -1);
    EXPECT_THAT(door.trace(),
                ElementsAre(own_ + "Entering... radio:0 status:NULL channel:6 prof_2nd_ch:-1 "
                                   "power:0",
                            own_ + "error: Can not identify wifi0 force-disable status.",
                            "revert all"));
}

TEST_F(RadioProfile, AForceDisableFlagThatCannotBeWrittenDiscardsEverything) {
    const struct {
        const char* status;
        const char* message;
    } rows[] = {
        {"not-override",
         "error: wifi1 force-disable off: Force set radio status to Disable failed."},
        {"force-disable",
         "error: wifi1 force-disable on: Force set radio status to Disable failed."},
    };
    for (const auto& row : rows) {
        ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
        door.forget();
        door.fail(Call::uci_set);
        EXPECT_EQ(ops.api_apply_wireless_interface(1, row.status, 44, 0, 0), -1);
        EXPECT_EQ(own_log().back(), row.message);
        EXPECT_EQ(door.trace().back(), "revert all");
        EXPECT_THAT(door.trace({"run", "commit"}), IsEmpty());
        EXPECT_THAT(staged(), IsEmpty());
    }
}

TEST_F(RadioProfile, ARadioThatCannotBeForcedOffEndsTheProfile) {
    door.fail(Call::uci_set, 2);
    EXPECT_EQ(ops.api_apply_wireless_interface(1, "force-disable", 44, 0, 0), -1);
    EXPECT_THAT(door.trace({"set", "revert"}),
                ElementsAre("set orloagent.wifi1.forceDisable=on",
                            "set wireless.wifi1.disabled=1 (failed)", "revert all"))
        << "discarded once";
    EXPECT_EQ(own_log().back(),
              "error: wifi1 force-disable on: Force set radio status to Disable failed.");
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(RadioProfile, ChannelZeroKeepsAnEligibleChannel) {
    configure("wireless.wifi0.channel", "auto");
    EXPECT_EQ(ops.api_apply_wireless_interface(0, "not-override", 0, -1, 0), 0);
    EXPECT_THAT(own_log(),
                ElementsAre("Entering... radio:0 status:not-override channel:0 prof_2nd_ch:-1 "
                            "power:0",
                            "wifi0 force-disable off: set radio status with AP Profile setting.",
                            "Apply wifi0 interface success."));
    EXPECT_EQ(committed_value("wireless.wifi0.channel"), "6") << "and pins it";
}

TEST_F(RadioProfile, ChannelZeroMovesTheRadioOffAChannelThatIsNotEligible) {
    operate_on(0, 3);
    EXPECT_EQ(ops.api_apply_wireless_interface(0, "not-override", 0, -1, 0), 0);
    EXPECT_THAT(own_log(), testing::Contains("wifi0: Override channel 1."));
    EXPECT_EQ(committed_value("wireless.wifi0.channel"), "1");
    EXPECT_EQ(ops.api_get_channel(0), 1);
}

TEST_F(RadioProfile, AChannelOfItsOwnNeedsNoEligibleChannels) {
    configure("wireless.wifi0.eg_ch", "");
    EXPECT_EQ(ops.api_apply_wireless_interface(0, "not-override", 3, -1, 0), 0);
    EXPECT_EQ(committed_value("wireless.wifi0.channel"), "3");
}

TEST_F(RadioProfile, ChannelZeroWithoutEligibleChannelsDiscardsEverything) {
    configure("wireless.wifi0.eg_ch", "");
    EXPECT_EQ(ops.api_apply_wireless_interface(0, "not-override", 0, -1, 0), -1);
    EXPECT_EQ(own_log().back(), "error: can't get radio0 eligible channels.");
    EXPECT_EQ(door.trace().back(), "revert all");
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(RadioProfile, AnEligibleListWithoutAnEntryLeavesTheChannel) {
    configure("wireless.wifi0.eg_ch", "   ");
    operate_on(0, 3);
    EXPECT_EQ(ops.api_apply_wireless_interface(0, "not-override", 0, -1, 0), 0);
    EXPECT_THAT(door.trace(),
                testing::Contains("log check_static_channel_in_eligible_channels: info: eligible "
                                  "channel is unknown format: [   ]"));
    EXPECT_EQ(committed_value("wireless.wifi0.channel"), "3");
}

TEST_F(RadioProfile, OnlyTheFirst128CharactersOfAnEligibleListCount) {
    std::string list = "1";
    while (list.size() < 124) {
        list += " 2";
    }
    configure("wireless.wifi0.eg_ch", list + "  7 11"); // "11" lies beyond
    operate_on(0, 11);
    EXPECT_EQ(ops.api_apply_wireless_interface(0, "not-override", 0, -1, 0), 0);
    EXPECT_THAT(own_log(), testing::Contains("wifi0: Override channel 1."));
    operate_on(0, 7);
    door.forget();
    EXPECT_EQ(ops.api_apply_wireless_interface(0, "not-override", 0, -1, 0), 0);
    EXPECT_EQ(committed_value("wireless.wifi0.channel"), "7");
}

TEST_F(RadioProfile, ARadioWithoutAnOperatingChannelKeepsItsPolicy) {
    configure("wireless.wifi0.channel", "auto");
    for (const char* state : {"fail freq EINVAL\n", "frequency 0 0\n"}) {
        tell_driver("wdev0", state);
        EXPECT_EQ(ops.api_apply_wireless_interface(0, "not-override", 0, -1, 0), 0);
        EXPECT_EQ(committed_value("wireless.wifi0.channel"), "auto");
        EXPECT_THAT(own_log(), testing::Not(testing::Contains(HasSubstr("Override channel"))));
    }
}

TEST_F(RadioProfile, ARefusedChannelEndsTheProfile) {
    EXPECT_EQ(ops.api_apply_wireless_interface(0, "not-override", 14, 149, 80), -1);
    EXPECT_EQ(own_log().back(), "error: Set wifi0 channel 14 failed.");
    EXPECT_THAT(door.trace({"revert"}), ElementsAre("revert all"));
    EXPECT_THAT(door.trace({"run", "commit"}), IsEmpty());
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(RadioProfile, DerivesTheSecondChannelFromTheEligibleList) {
    const struct {
        int operating;
        const char* second;
    } rows[] = {{36, "149"}, {40, "149"}, {48, "149"}, {149, "36"}, {157, "36"}, {161, "36"}};
    for (const auto& row : rows) {
        operate_on(1, row.operating);
        configure("wireless.wifi1.secondchannel", "");
        door.forget();
        EXPECT_EQ(ops.api_apply_wireless_interface(1, "not-override", 0, 0, 0), 0);
        EXPECT_EQ(committed_value("wireless.wifi1.secondchannel"), row.second) << row.operating;
        const std::string primary = std::to_string(row.operating);
        EXPECT_THAT(own_log(), testing::Contains("wifi1: Primary Channel: " + primary +
                                                 "; Secondary Channel: " + row.second + " "));
        EXPECT_THAT(door.trace(),
                    testing::Contains("log check_second_channel_in_eligible_channels: "
                                      "*primary_channel = " +
                                      primary + "; *second_channel = " + row.second + " "));
    }
}

TEST_F(RadioProfile, TheLastMatchInTheEligibleListDecidesTheSecondChannel) {
    configure("wireless.wifi1.eg_ch", "36 40 44 48 149 153 157 36");
    EXPECT_EQ(ops.api_apply_wireless_interface(1, "not-override", 0, 0, 0), 0);
    EXPECT_EQ(committed_value("wireless.wifi1.secondchannel"), "36");
}

TEST_F(RadioProfile, AnEligibleListOfOneBlockGivesNoSecondChannel) {
    configure("wireless.wifi1.eg_ch", "36 40 44 48");
    EXPECT_EQ(ops.api_apply_wireless_interface(1, "not-override", 0, 0, 0), 0);
    EXPECT_EQ(committed_value("wireless.wifi1.secondchannel"), "(none)");
    EXPECT_THAT(door.trace({"run"}), testing::SizeIs(2)) << "the primary channel's commands only";
}

TEST_F(RadioProfile, OnlyTheFirst32EligibleChannelsAreSearched) {
    std::string list = "36 40 44 48 52 56 60 64";
    for (int i = 0; i < 23; i++) {
        list += " 99";
    }
    operate_on(1, 149);
    configure("wireless.wifi1.eg_ch", list + " 149"); // the 32nd
    EXPECT_EQ(ops.api_apply_wireless_interface(1, "not-override", 0, 0, 0), 0);
    EXPECT_EQ(committed_value("wireless.wifi1.secondchannel"), "36");
    configure("wireless.wifi1.secondchannel", "");
    configure("wireless.wifi1.eg_ch", list + " 99 149"); // the 33rd
    EXPECT_EQ(ops.api_apply_wireless_interface(1, "not-override", 0, 0, 0), 0);
    EXPECT_EQ(committed_value("wireless.wifi1.secondchannel"), "(none)");
    EXPECT_EQ(committed_value("wireless.wifi1.channel"), "149") << "eligible all the same";
}

TEST_F(RadioProfile, AChannelOfItsOwnGivesNoSecondChannel) {
    EXPECT_EQ(ops.api_apply_wireless_interface(1, "not-override", 44, 0, 0), 0);
    EXPECT_THAT(own_log(), testing::Contains("wifi1: Primary Channel: 44; Secondary Channel: 0 "));
    EXPECT_THAT(door.trace(), testing::Not(testing::Contains(
                                  HasSubstr("check_second_channel_in_eligible_channels"))))
        << "an empty list is not even looked at";
    EXPECT_EQ(committed_value("wireless.wifi1.secondchannel"), "(none)");
}

TEST_F(RadioProfile, AnAutoPolicyMatchesNoUnlistedPlace) {
    configure("wireless.wifi1.eg_ch", "36 40");
    configure("wireless.wifi1.channel", "auto");
    tell_driver("wdev1", "fail freq EINVAL\n");
    EXPECT_EQ(ops.api_apply_wireless_interface(1, "not-override", 0, 0, 0), 0);
    EXPECT_THAT(own_log(), testing::Contains("wifi1: Primary Channel: 0; Secondary Channel: 0 "));
}

TEST_F(RadioProfile, WithoutAPrimaryChannelOptionTheSecondCannotBeDerived) {
    configure("wireless.wifi1.channel", "");
    tell_driver("wdev1", "fail freq EINVAL\n");
    EXPECT_EQ(ops.api_apply_wireless_interface(1, "not-override", 0, 0, 0), -1);
    EXPECT_EQ(own_log().back(), "info: failed to uci_get radio1 primary channel.");
    EXPECT_THAT(door.trace({"revert"}), IsEmpty());
    EXPECT_THAT(staged(), ElementsAre("orloagent.wifi1.forceDisable=off"));
}

TEST_F(RadioProfile, MinusOneTurnsTwoSegmentOperationOff) {
    configure("wireless.wifi1.secondchannel", "149");
    EXPECT_EQ(ops.api_apply_wireless_interface(1, "not-override", 44, -1, 0), 0);
    EXPECT_EQ(committed_value("wireless.wifi1.secondchannel"), "(none)");
    EXPECT_THAT(door.trace({"run"}),
                testing::Contains("run /usr/sbin/iwpriv wdev1 setcmd \"radiomode 0\""));
}

TEST_F(RadioProfile, AFailedSecondChannelLeavesTheChannelCommitted) {
    door.fail(Call::uci_set, 3);
    EXPECT_EQ(ops.api_apply_wireless_interface(1, "not-override", 44, 149, 80), -1);
    EXPECT_EQ(own_log().back(), "error: Set wifi1 secondchannel 149 failed.");
    EXPECT_EQ(committed_value("wireless.wifi1.channel"), "44");
    EXPECT_THAT(door.trace({"revert"}), ElementsAre("revert all"));
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(RadioProfile, AFailedPowerEndsTheProfile) {
    EXPECT_EQ(ops.api_apply_wireless_interface(1, "not-override", 44, -1, 101), -1);
    EXPECT_EQ(own_log().back(), "error: Set wifi1 power 101 failed.");
    EXPECT_EQ(committed_value("wireless.wifi1.channel"), "44");
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(RadioProfile, PowerZeroLeavesThePowerAlone) {
    EXPECT_EQ(ops.api_apply_wireless_interface(1, "not-override", 44, -1, 0), 0);
    EXPECT_THAT(door.trace(), testing::Not(testing::Contains(HasSubstr("api_set_Power"))));
}

TEST_F(RadioProfile, AnotherRadioIsRefused) {
    for (int radio : {-1, 2, INT_MAX}) {
        door.forget();
        EXPECT_EQ(ops.api_apply_wireless_interface(radio, "not-override", 6, -1, 0), -1);
        EXPECT_EQ(door.trace().back(), "revert all");
    }
    EXPECT_THAT(journal(), IsEmpty());
}

using RadioStatus = RadioProfile;

TEST_F(RadioStatus, IsStagedButNotCommitted) {
    configure("wireless.wifi0.disabled", "1");
    EXPECT_EQ(ops.api_apply_radio_status(0, 1), 0);
    EXPECT_THAT(door.trace(),
                ElementsAre("log api_apply_radio_status:  Entering... radio:0 status:1",
                            "set wireless.wifi0.disabled=0",
                            "log api_apply_radio_status: Apply wifi0 status 1 Success"));
    EXPECT_EQ(committed_value("wireless.wifi0.disabled"), "1");
    EXPECT_EQ(ops.api_apply_radio_status(0, 0), 0);
    EXPECT_EQ(staged_value("wireless.wifi0.disabled"), "1");
}

TEST_F(RadioStatus, OfAnotherRadioOrAnotherValueIsRefusedAndDiscardsEverything) {
    const int refused[][2] = {{2, 1}, {-1, 0}, {0, 2}, {1, -1}, {INT_MIN, INT_MAX}};
    for (const auto& call : refused) {
        ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
        door.forget();
        EXPECT_EQ(ops.api_apply_radio_status(call[0], call[1]), -1);
        EXPECT_THAT(door.trace(),
                    ElementsAre("log api_apply_radio_status:  Entering... radio:" +
                                    std::to_string(call[0]) + " status:" + std::to_string(call[1]),
                                "log api_apply_radio_status: error: Apply radio status failed, can "
                                "not identify wireless interface or status",
                                "revert all"));
        EXPECT_THAT(staged(), IsEmpty());
    }
}

TEST_F(RadioStatus, ThatCannotBeWrittenDiscardsEverything) {
    ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
    door.forget();
    door.fail(Call::uci_save);
    EXPECT_EQ(ops.api_apply_radio_status(1, 0), -1);
    EXPECT_THAT(door.trace({"log", "revert"}),
                ElementsAre("log api_apply_radio_status:  Entering... radio:1 status:0",
                            "log api_apply_radio_status: error: Set wifi1 status 0 to config "
                            "failed.",
                            "revert all"));
    EXPECT_THAT(staged(), IsEmpty());
}

using ForceDisable = RadioProfile;

TEST_F(ForceDisable, IsZeroWhenOnAndMinusOneOtherwise) {
    const std::string own = "log api_get_force_disable_status: ";
    const auto status = [&](const char* value) {
        configure("orloagent.wifi1.forceDisable", value);
        door.forget();
        const int result = ops.api_get_force_disable_status(1);
        EXPECT_EQ(door.trace()[0], own + " Entering... radio:1");
        EXPECT_EQ(door.trace().size(), 2U);
        return std::to_string(result) + " " + door.trace()[1].substr(own.size());
    };
    EXPECT_EQ(status("on"), "0 Get wifi1 force-disable status is on. [force-disable]");
    EXPECT_EQ(status("off"), "-1 Get wifi1 force-disable status is off. [not-override]");
    EXPECT_EQ(status("ON"), "-1 error: Get wifi1 force-disable unknown config value ON. Keep "
                            "profile's radio status setting. [not-override]");
    EXPECT_EQ(status(""), "-1 error: Get wifi1 force-disable config value failed. Keep profile's "
                          "radio status setting. [not-override]");
    const std::string longer(60, 'n');
    EXPECT_EQ(status(longer.c_str()), "-1 error: Get wifi1 force-disable unknown config value " +
                                          longer +
                                          ". Keep profile's radio status setting. "
                                          "[not-override]");
    EXPECT_EQ(ops.api_get_force_disable_status(2), -1) << "no such radio";
}

} // namespace orlo::test
