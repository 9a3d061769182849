// SPDX-License-Identifier: MIT
// A radio's transmit power.
#include "support/access_point.h"

#include <climits>

namespace orlo::test {

class Power : public AccessPoint {
protected:
    // The driver's answer to a getcmd, after "wdevN     getcmd:".
    static void answer_getcmd(const std::string& text) {
        replace_tool("iwpriv",
                     "case $2 in getcmd) printf '%s     getcmd:" + text + "' \"$1\";; esac");
    }

    static Trace setting_log(const Trace& trace) {
        Trace lines;
        for (const std::string& line : trace) {
            if (line.find("api_get_MaxPowerInfo") == std::string::npos &&
                line.compare(0, 5, "read ") != 0) {
                lines.push_back(line);
            }
        }
        return lines;
    }
};

TEST_F(Power, IsStoredAsALevelAndReadBackAsItsPercent) {
    const struct {
        int from;
        int to;
        const char* level;
        int percent;
    } rows[] = {
        {100, 100, "Max", 100}, {90, 99, "90", 90},  {80, 89, "80", 80},     {75, 79, "High", 75},
        {70, 74, "70", 70},     {60, 69, "60", 60},  {50, 59, "Middle", 50}, {40, 49, "40", 40},
        {30, 39, "30", 30},     {25, 29, "Low", 25}, {20, 24, "20", 20},     {10, 19, "10", 10},
        {5, 9, "5", 5},         {1, 4, "Min", 1},
    };
    replace_tool("iwpriv", "exit 0");
    for (const auto& row : rows) {
        for (int percent : {row.from, row.to}) {
            EXPECT_EQ(ops.api_set_Power(0, percent), 0) << percent;
            EXPECT_EQ(committed_value("wireless.wifi0.txpower"), row.level) << percent;
            EXPECT_EQ(ops.api_get_transmitpower(0), row.percent) << percent;
        }
    }
}

TEST_F(Power, IsHandedToTheDriverAsAPercentage) {
    configure("wireless.wifi0.disabled", "0");
    answer_getcmd("max:20.5\\n");
    EXPECT_EQ(ops.api_set_Power(0, 77), 0);
    EXPECT_THAT(
        door.trace(),
        ElementsAre(
            "log api_set_Power: Entering... radio:0 power:77%",
            "log api_get_MaxPowerInfo: Entering... radio:0 bandwidth:0 modulation: ",
            "read /usr/sbin/iwpriv wdev0 getcmd \"getsyncscanpwr /etc/R8K_2G_TX_Power_Table\" "
            "| cut -d ':' -f 3",
            "log api_get_MaxPowerInfo: End, maximum power of wifi0 is 20.500000 dBm",
            "log api_set_Power: info: Get wifi0 Max power 47.000000 (0.5 dBm).",
            "set wireless.wifi0.txpower=High",
            "log api_set_Power: info: Set power command: /usr/sbin/iwpriv wdev0 setcmd "
            "\"loadpwrgrpstbl /etc/R8K_2G_TX_Power_Table 77\"",
            "run /usr/sbin/iwpriv wdev0 setcmd \"loadpwrgrpstbl /etc/R8K_2G_TX_Power_Table 77\"",
            "log api_set_Power: info: Apply power percent command: /usr/sbin/iwpriv wdev0 setcmd "
            "\"applypwr\"",
            "run /usr/sbin/iwpriv wdev0 setcmd \"applypwr\"", "commit wireless",
            "log api_set_Power: info: Set wifi0 power 77% success."));
}

TEST_F(Power, EachBandHasItsPowerTable) {
    EXPECT_EQ(ops.api_set_Power(1, 100), 0);
    EXPECT_THAT(
        door.trace({"run"}),
        ElementsAre(
            "run /usr/sbin/iwpriv wdev1 setcmd \"loadpwrgrpstbl /etc/R8K_5G_TX_Power_Table 100\"",
            "run /usr/sbin/iwpriv wdev1 setcmd \"applypwr\""));
    EXPECT_THAT(journal(), testing::Contains("iwpriv wdev1 setcmd 'loadpwrgrpstbl "
                                             "/etc/R8K_5G_TX_Power_Table 100'"));
}

TEST_F(Power, ZeroPercentStoresNothingButStillRunsTheDriverCommands) {
    const std::string level = committed_value("wireless.wifi1.txpower");
    configure("wireless.wifi1.disabled", "1");
    EXPECT_EQ(ops.api_set_Power(1, 0), 0);
    EXPECT_THAT(
        setting_log(door.trace()),
        ElementsAre(
            "log api_set_Power: Entering... radio:1 power:0%",
            "log api_set_Power: info: Get wifi1 Max power 28.000000 (0.5 dBm).",
            "log api_set_Power: info: do nothing because radio1 power is controlled by APCA now.",
            "log api_set_Power: info: Set power command: /usr/sbin/iwpriv wdev1 setcmd "
            "\"loadpwrgrpstbl /etc/R8K_5G_TX_Power_Table 0\"",
            "run /usr/sbin/iwpriv wdev1 setcmd \"loadpwrgrpstbl /etc/R8K_5G_TX_Power_Table 0\"",
            "log api_set_Power: info: Apply power percent command: /usr/sbin/iwpriv wdev1 setcmd "
            "\"applypwr\"",
            "run /usr/sbin/iwpriv wdev1 setcmd \"applypwr\"", "commit wireless",
            "log api_set_Power: info: Set wifi1 power 0% success."));
    EXPECT_EQ(committed_value("wireless.wifi1.txpower"), level);
}

TEST_F(Power, ZeroPercentOfAnotherRadioIsRefusedAndDiscardsEverything) {
    for (int radio : {2, -1, INT_MAX}) {
        ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
        door.forget();
        EXPECT_EQ(ops.api_set_Power(radio, 0), -1);
        EXPECT_THAT(door.trace({"run", "commit"}), IsEmpty());
        EXPECT_THAT(staged(), IsEmpty());
    }
}

TEST_F(Power, ADriverThatRefusesItChangesNoResult) {
    replace_tool("iwpriv", "exit 1");
    door.fail(Call::uci_commit);
    EXPECT_EQ(ops.api_set_Power(0, 50), 0) << "nor does a failed commit";
    EXPECT_THAT(door.trace({"run"}), testing::SizeIs(2));
    EXPECT_EQ(door.trace().back(), "log api_set_Power: info: Set wifi0 power 50% success.");
    door.fail_always(Call::system);
    EXPECT_EQ(ops.api_set_Power(0, 40), 0);
    EXPECT_EQ(committed_value("wireless.wifi0.txpower"), "40");
}

TEST_F(Power, AnyOtherPercentIsRefusedAndDiscardsEverything) {
    configure("wireless.wifi0.disabled", "0");
    for (int percent : {101, -5, INT_MAX, INT_MIN}) {
        ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
        door.forget();
        EXPECT_EQ(ops.api_set_Power(0, percent), -1);
        EXPECT_THAT(door.trace({"read"}), testing::SizeIs(1)) << "the maximum is asked first";
        const Trace lines = setting_log(door.trace());
        ASSERT_EQ(lines.size(), 4U);
        EXPECT_EQ(lines[2], "log api_set_Power: error: Set wifi0 power " + std::to_string(percent) +
                                "% failed. The value doesn't exist in power levels.");
        EXPECT_EQ(lines[3], "revert all");
        EXPECT_THAT(staged(), IsEmpty());
    }
}

TEST_F(Power, ALevelThatCannotBeWrittenDiscardsEverything) {
    ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
    for (int radio : {0, 2, -1}) {
        door.forget();
        door.fail(Call::uci_set);
        EXPECT_EQ(ops.api_set_Power(radio, 76), -1);
        const Trace lines = door.trace();
        EXPECT_EQ(lines[lines.size() - 2], "log api_set_Power: error: Set wifi" +
                                               std::to_string(radio) +
                                               " power High to config failed.");
        EXPECT_EQ(lines.back(), "revert all");
        EXPECT_THAT(door.trace({"run", "commit"}), IsEmpty());
    }
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(Power, IsReadFromTheConfiguration) {
    configure("wireless.wifi1.txpower", "Low");
    EXPECT_EQ(ops.api_get_transmitpower(1), 25);
    EXPECT_THAT(door.trace(),
                ElementsAre("log api_get_transmitpower:  Entering... radio:1",
                            "log api_get_transmitpower:  End... Get wifi1 transmit power 25%"));
}

TEST_F(Power, IsUnknownWithoutAKnownLevel) {
    for (const char* level : {"max", "95", "Middle ", "Maximum-power"}) {
        configure("wireless.wifi1.txpower", level);
        door.forget();
        EXPECT_EQ(ops.api_get_transmitpower(1), -1) << level;
        EXPECT_THAT(door.trace(),
                    ElementsAre("log api_get_transmitpower:  Entering... radio:1",
                                "log api_get_transmitpower: error: Get wifi1 power from config "
                                "failed. Power Level incorrect."));
    }
    configure("wireless.wifi1.txpower", "");
    door.forget();
    EXPECT_EQ(ops.api_get_transmitpower(1), -1);
    EXPECT_THAT(door.trace(),
                ElementsAre("log api_get_transmitpower:  Entering... radio:1",
                            "log api_get_transmitpower: error: Get wifi1 power from config "
                            "failed."));
    EXPECT_EQ(ops.api_get_transmitpower(2), -1) << "no such radio";
    EXPECT_EQ(ops.api_get_transmitpower(-1), -1) << "no such radio";
}

using MaximumPower = Power;

TEST_F(MaximumPower, IsAskedFromTheDriver) {
    configure("wireless.wifi1.disabled", "0");
    answer_getcmd("max:23.25\\n");
    EXPECT_FLOAT_EQ(ops.api_get_MaxPowerInfo(1, 80, "ax"), 23.25F);
    EXPECT_THAT(door.trace(),
                ElementsAre("log api_get_MaxPowerInfo: Entering... radio:1 bandwidth:80 "
                            "modulation: ax",
                            "read /usr/sbin/iwpriv wdev1 getcmd \"getsyncscanpwr "
                            "/etc/R8K_5G_TX_Power_Table\" | cut -d ':' -f 3",
                            "log api_get_MaxPowerInfo: End, maximum power of wifi1 is 23.250000 "
                            "dBm"));
}

TEST_F(MaximumPower, OfTheSampleDeviceIsInItsPowerTable) {
    configure("wireless.wifi0.disabled", "0");
    configure("wireless.wifi1.disabled", "0");
    EXPECT_GT(ops.api_get_MaxPowerInfo(0, 20, "n"), 10.0F);
    EXPECT_GT(ops.api_get_MaxPowerInfo(1, 20, "n"), 10.0F);
}

TEST_F(MaximumPower, OfARadioThatIsNotEnabledIsElevenWithoutAsking) {
    for (const std::string& disabled :
         {std::string("1"), std::string("yes"), std::string(128, 'y')}) {
        configure("wireless.wifi0.disabled", disabled);
        door.forget();
        EXPECT_FLOAT_EQ(ops.api_get_MaxPowerInfo(0, -1, nullptr), 11.0F);
        EXPECT_THAT(door.trace(),
                    ElementsAre("log api_get_MaxPowerInfo: Entering... radio:0 bandwidth:-1 "
                                "modulation: NULL",
                                "log api_get_MaxPowerInfo: info: wifi0 status is not enabled (" +
                                    disabled + "), return maximum power: 11.000000"));
    }
    configure("wireless.wifi0.disabled", std::string(200, 'y'));
    ops.api_get_MaxPowerInfo(0, 20, "");
    EXPECT_THAT(door.trace().back(), HasSubstr("(" + std::string(128, 'y') + ")"));
}

TEST_F(MaximumPower, IsReadFromThirtyOneCharacters) {
    configure("wireless.wifi0.disabled", "0");
    answer_getcmd("max:1." + std::string(26, '0') + "555\\n"); // the last digit is the 32nd
    EXPECT_EQ(ops.api_get_MaxPowerInfo(0, 20, ""), 1.0F);
    answer_getcmd("max:" + std::string(29, '0') + "1234\\n");
    EXPECT_FLOAT_EQ(ops.api_get_MaxPowerInfo(0, 20, ""), 12.0F);
}

TEST_F(MaximumPower, IsZeroWhenItCannotBeTold) {
    configure("wireless.wifi0.disabled", "");
    EXPECT_FLOAT_EQ(ops.api_get_MaxPowerInfo(0, 20, ""), 0.0F);
    EXPECT_EQ(door.trace().back(),
              "log api_get_MaxPowerInfo: error: wifi0 get radio status failed.");
    EXPECT_FLOAT_EQ(ops.api_get_MaxPowerInfo(5, 20, ""), 0.0F) << "no such radio";

    configure("wireless.wifi0.disabled", "0");
    door.fail(Call::popen);
    EXPECT_FLOAT_EQ(ops.api_get_MaxPowerInfo(0, 20, ""), 0.0F);
    EXPECT_EQ(door.trace().back(),
              "log api_get_MaxPowerInfo: Error: Radio 0 fail to get max power, return 0.0 (cmd: "
              "/usr/sbin/iwpriv wdev0 getcmd \"getsyncscanpwr /etc/R8K_2G_TX_Power_Table\" | cut "
              "-d ':' -f 3)");

    replace_tool("iwpriv", "exit 1");
    EXPECT_FLOAT_EQ(ops.api_get_MaxPowerInfo(0, 20, ""), 0.0F);
    EXPECT_EQ(door.trace().back(),
              "log api_get_MaxPowerInfo: End, maximum power of wifi0 is 0.000000 dBm");
}

class PowerSteps : public Power {
protected:
    float steps_[12];

    PowerSteps() {
        for (float& step : steps_) {
            step = -99.0F;
        }
    }

    std::vector<float> steps() const { return std::vector<float>(steps_, steps_ + 12); }
};

TEST_F(PowerSteps, AreFilledFromTheLastOneBackwards) {
    answer_getcmd("steps:12,11,10,9.5,8,7,6,5,4,3,2,-1.5\\n");
    EXPECT_EQ(ops.api_get_PowerPercent(1, steps_, 20.5F), 0);
    EXPECT_EQ(steps(), (std::vector<float>{-1.5, 2, 3, 4, 5, 6, 7, 8, 9.5, 10, 11, 12}));
    const Trace lines = door.trace();
    ASSERT_EQ(lines.size(), 14U);
    EXPECT_EQ(lines[0], "log api_get_PowerPercent: Entering... radio:1 cur_power:20.500000");
    EXPECT_EQ(lines[1], "read /usr/sbin/iwpriv wdev1 getcmd \"getsyncscanpwr "
                        "/etc/R8K_5G_TX_Power_Table p\" | cut -d ':' -f 3");
    EXPECT_EQ(lines[2], "log api_get_PowerPercent: End... wifi1 subtract 22.000000 dBm for power "
                        "1%; percent_array[0] = -1.500000");
    EXPECT_EQ(lines[13], "log api_get_PowerPercent: End... wifi1 subtract 8.500000 dBm for power "
                         "100%; percent_array[11] = 12.000000");
    const char* const percents[12] = {"1",  "5",  "10", "20", "30", "40",
                                      "50", "60", "70", "80", "90", "100"};
    for (size_t i = 0; i < 12; i++) {
        EXPECT_THAT(lines[i + 2], HasSubstr(std::string("dBm for power ") + percents[i] + "%;"));
    }
}

TEST_F(PowerSteps, OfTheSampleDeviceRiseToItsMaximum) {
    configure("wireless.wifi0.disabled", "0");
    EXPECT_EQ(ops.api_get_PowerPercent(0, steps_, 0.0F), 0);
    for (int i = 1; i < 12; i++) {
        EXPECT_GT(steps_[i], steps_[i - 1]);
    }
    EXPECT_NEAR(steps_[11], ops.api_get_MaxPowerInfo(0, 20, ""), 0.06);
}

TEST_F(PowerSteps, AreOnlyDumpedWhenDebugLinesAreKept) {
    door.debug_enabled = false;
    answer_getcmd("steps:12\\n");
    EXPECT_EQ(ops.api_get_PowerPercent(1, steps_, 0.0F), 0);
    EXPECT_THAT(door.trace({"log"}),
                ElementsAre("log api_get_PowerPercent: Entering... radio:1 cur_power:0.000000"));
}

TEST_F(PowerSteps, WithoutAValueKeepWhatTheCallerPutThere) {
    answer_getcmd("steps:12,11,10\\n");
    EXPECT_EQ(ops.api_get_PowerPercent(0, steps_, 0.0F), 0);
    EXPECT_EQ(steps(),
              (std::vector<float>{-99, -99, -99, -99, -99, -99, -99, -99, -99, 10, 11, 12}));
}

TEST_F(PowerSteps, BeyondTwelveValuesAreIgnored) {
    answer_getcmd("steps:12,11,10,9,8,7,6,5,4,3,2,1,0,-1,-2\\n");
    EXPECT_EQ(ops.api_get_PowerPercent(0, steps_, 0.0F), 0);
    EXPECT_FLOAT_EQ(steps_[0], 1.0F);
}

TEST_F(PowerSteps, AreReadFromSixtyThreeCharacters) {
    answer_getcmd("steps:" + std::string(60, '0') + ",78\\n");
    EXPECT_EQ(ops.api_get_PowerPercent(0, steps_, 0.0F), 0);
    EXPECT_FLOAT_EQ(steps_[10], 78.0F);
    answer_getcmd("steps:" + std::string(61, '0') + ",78\\n");
    EXPECT_EQ(ops.api_get_PowerPercent(0, steps_, 0.0F), 0);
    EXPECT_FLOAT_EQ(steps_[10], 7.0F) << "the 64th character is beyond the line's buffer";
}

TEST_F(PowerSteps, OfAnEmptyAnswerAreUnknown) {
    answer_getcmd("steps:,,\\n");
    EXPECT_EQ(ops.api_get_PowerPercent(1, steps_, 0.0F), -1);
    EXPECT_EQ(door.trace().back(),
              "log api_get_PowerPercent: Error: radio 1nknown getsyncscanpwr: [,,]")
        << "the text is as the agent's filters know it";
    replace_tool("iwpriv", "exit 1");
    EXPECT_EQ(ops.api_get_PowerPercent(0, steps_, 0.0F), -1);
    EXPECT_EQ(door.trace().back(),
              "log api_get_PowerPercent: Error: radio 0nknown getsyncscanpwr: []");
    EXPECT_EQ(steps(), std::vector<float>(12, -99.0F));
}

TEST_F(PowerSteps, NeedARadioAndAnArray) {
    EXPECT_EQ(ops.api_get_PowerPercent(2, steps_, 1.0F), -1);
    EXPECT_THAT(door.trace(),
                ElementsAre("log api_get_PowerPercent: Entering... radio:2 cur_power:1.000000",
                            "log api_get_PowerPercent: Error: invalid radio: 2"));
    EXPECT_EQ(ops.api_get_PowerPercent(0, nullptr, 1.0F), -1);
    door.forget();
    door.fail(Call::popen);
    EXPECT_EQ(ops.api_get_PowerPercent(0, steps_, 1.0F), -1);
    EXPECT_THAT(door.trace({"log"}),
                ElementsAre("log api_get_PowerPercent: Entering... radio:0 cur_power:1.000000"))
        << "nothing more is logged";
    EXPECT_EQ(steps(), std::vector<float>(12, -99.0F));
}

TEST_F(PowerSteps, OfANegativeRadioAreAskedAllTheSame) {
    answer_getcmd("steps:12\\n");
    EXPECT_EQ(ops.api_get_PowerPercent(-1, steps_, 1.0F), 0);
    EXPECT_THAT(door.trace({"read"}),
                ElementsAre("read /usr/sbin/iwpriv wdev-1 getcmd \"getsyncscanpwr "
                            "/etc/R8K_5G_TX_Power_Table p\" | cut -d ':' -f 3"));
}

} // namespace orlo::test
