// SPDX-License-Identifier: MIT
// A radio's mode, eligible channels, width and rates.
#include "support/access_point.h"

#include <cstring>

namespace orlo::test {

class HardwareSettings : public AccessPoint {
protected:
    hw_specific_settings settings_ = {};
    const std::string own_ = "log api_apply_hw_specific: ";

    HardwareSettings() {
        operate_on(0, 6);
        operate_on(1, 36);
        settings_.mode = "a-n-ac-ax";
        put(settings_.eligible_channels, "36 40 44 48");
        settings_.channel_bandwidth = 80;
        settings_.Enable_eligible_channels = 3;
        settings_.primary_channel = "36";
        put(settings_.mcs_index, "0-11");
    }

    static void put(char (&array)[128], const std::string& text) {
        memset(array, 0, sizeof array);
        memcpy(array, text.data(), std::min(text.size(), sizeof array));
    }

    int apply(int radio = 1) {
        door.forget();
        return ops.api_apply_hw_specific(radio, &settings_);
    }

    // Fake mode is the agent's switch, in its logging library.
    static int& fake_mode() { return *static_cast<int*>(dlsym(vendor_library(), "Fake_mode")); }
};

TEST_F(HardwareSettings, AreStagedInOrder) {
    configure("wireless.wifi1.htmode", "HT20");
    configure("wireless.wifi1.hwmode", "11a");
    put(settings_.supported_rate, "6,12,24");
    put(settings_.basic_rate, "6,12");
    EXPECT_EQ(apply(), 0);
    EXPECT_THAT(
        door.trace(),
        ElementsAre(
            own_ + "Entering... radio:1", own_ + "mode:a-n-ac-ax",
            "set wireless.wifi1.hwmode=11axa", own_ + "eligible_channels:36 40 44 48",
            "set wireless.wifi1.eg_ch=36 40 44 48", "log api_get_channel: Entering... radio:2",
            "log api_get_channel: End... return: 36", own_ + "channel_bandwidth:80",
            "set wireless.wifi1.htmode=HT80", own_ + "Enable_eligible_channels:3 Not support",
            own_ + "primary_channel:36 Not support", own_ + "supported_rate:6,12,24",
            own_ + "New supported_rate:6 12 24",
            "log set_legacy_rate: Entering... radio:1 supported_rate:6 12 24",
            "set wireless.wifi1.legacy_rates=6 12 24",
            "log set_legacy_rate: Set wifi1 legacy rate success.",
            own_ + "basic_rate:6,12 may be no use", own_ + "New basic_rate:6 12",
            own_ + "mcs_index:0-11 Not support", own_ + "End... return: Success"));
    EXPECT_STREQ(settings_.supported_rate, "6 12 24") << "rewritten in the agent's record";
    EXPECT_STREQ(settings_.basic_rate, "6 12");
    ASSERT_EQ(ops.api_save_config(), 0);
    EXPECT_THAT(door.trace({"run"}), testing::Contains(HasSubstr("network-5")));
}

TEST_F(HardwareSettings, WithoutRatesWriteNone) {
    settings_.primary_channel = nullptr;
    EXPECT_EQ(apply(), 0);
    const Trace lines = door.trace();
    EXPECT_THAT(Trace(lines.end() - 5, lines.end()),
                ElementsAre(own_ + "primary_channel:NULL Not support",
                            own_ + "supported_rate:", own_ + "basic_rate: may be no use",
                            own_ + "mcs_index:0-11 Not support", own_ + "End... return: Success"));
}

TEST_F(HardwareSettings, EachModeAndWidthHasItsOption) {
    const struct {
        int radio;
        const char* mode;
        const char* hwmode;
    } modes[] = {
        {0, "bg-n-ax", "11axg"}, {0, "bg", "11bg"}, {1, "a-n-ac-ax", "11axa"}, {1, "a", "11a"}};
    for (const auto& row : modes) {
        settings_.mode = row.mode;
        put(settings_.eligible_channels, row.radio == 0 ? "6" : "36");
        EXPECT_EQ(apply(row.radio), 0);
        EXPECT_EQ(staged_value("wireless.wifi" + std::to_string(row.radio) + ".hwmode"),
                  row.hwmode);
    }
    const struct {
        uint32_t megahertz;
        const char* htmode;
    } widths[] = {{20, "HT20"}, {40, "HT40+"}, {80, "HT80"}, {8080, "HT80+80"}};
    for (const auto& row : widths) {
        settings_.channel_bandwidth = row.megahertz;
        EXPECT_EQ(apply(1), 0);
        EXPECT_EQ(staged_value("wireless.wifi1.htmode"), row.htmode);
    }
}

TEST_F(HardwareSettings, AnUnknownModeIsRefusedAndDiscardsEverything) {
    const struct {
        int radio;
        const char* mode;
    } rows[] = {{0, "a"}, {0, "a-n-ac-ax"}, {1, "bg"}, {1, "A"}, {1, ""}};
    for (const auto& row : rows) {
        ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
        settings_.mode = row.mode;
        EXPECT_EQ(apply(row.radio), -1);
        EXPECT_EQ(door.trace({"log"}).back(),
                  own_ + "Unknown mode: " + row.mode + " in WIFI" + std::to_string(row.radio));
        EXPECT_EQ(door.trace().back(), "revert all");
        EXPECT_THAT(staged(), IsEmpty());
    }
}

TEST_F(HardwareSettings, InFakeModeEveryModeIs80211ax) {
    fake_mode() = -1; // any value but zero
    put(settings_.eligible_channels, "6");
    for (const char* mode : {"a", "bg", "whatever"}) {
        settings_.mode = mode;
        EXPECT_EQ(apply(0), 0);
        EXPECT_EQ(staged_value("wireless.wifi0.hwmode"), "11axg");
    }
    settings_.mode = nullptr;
    EXPECT_EQ(apply(0), -1) << "but one is needed";
    put(settings_.eligible_channels, "36");
    settings_.mode = "a";
    EXPECT_EQ(apply(1), 0);
    EXPECT_EQ(staged_value("wireless.wifi1.hwmode"), "11axa");
    fake_mode() = 0;
}

TEST_F(HardwareSettings, NeedARadioARecordAndAMode) {
    for (int radio : {-1, 2}) {
        ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
        EXPECT_EQ(apply(radio), -1);
        const std::string r = std::to_string(radio);
        EXPECT_THAT(door.trace(),
                    ElementsAre(own_ + "Entering... radio:" + r,
                                own_ + "Apply Radio" + r + " hw-specific failed", "revert all"));
        EXPECT_THAT(staged(), IsEmpty());
    }
    door.forget();
    EXPECT_EQ(ops.api_apply_hw_specific(0, nullptr), -1);
    EXPECT_THAT(door.trace(), ElementsAre(own_ + "Entering... radio:0",
                                          own_ + "Apply Radio0 hw-specific failed", "revert all"));
    settings_.mode = nullptr;
    EXPECT_EQ(apply(), -1);
    EXPECT_THAT(door.trace(),
                ElementsAre(own_ + "Entering... radio:1", own_ + "Mode is NULL", "revert all"));
}

TEST_F(HardwareSettings, MoveTheRadioOffAChannelThatIsNotEligible) {
    put(settings_.eligible_channels, "40 44");
    configure("wireless.wifi1.htmode", "HT20");
    EXPECT_EQ(apply(), 0);
    EXPECT_THAT(door.trace(), testing::Contains(own_ + "wifi1: Override channel 40."));
    EXPECT_EQ(committed_value("wireless.wifi1.channel"), "40");
    EXPECT_EQ(committed_value("wireless.wifi1.eg_ch"), "40 44") << "committed with the channel";
    EXPECT_EQ(committed_value("wireless.wifi1.htmode"), "HT20") << "only staged";
    EXPECT_EQ(ops.api_get_channel(1), 40);
}

TEST_F(HardwareSettings, AnEmptyListOfEligibleChannelsIsWrittenAndKeepsTheChannel) {
    configure("wireless.wifi1.eg_ch", "36 40");
    put(settings_.eligible_channels, "");
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi1.eg_ch"), "(none)");
    EXPECT_THAT(door.trace(),
                testing::Contains("log check_static_channel_in_eligible_channels: info: eligible "
                                  "channel is unknown format: []"));
}

TEST_F(HardwareSettings, MarkTheNetworkOnSuccessOnly) {
    put(settings_.supported_rate, "6");
    for (int nth = 1; nth <= 4; nth++) {
        door.fail(Call::uci_set, nth);
        EXPECT_EQ(apply(), -1);
    }
    ASSERT_EQ(ops.api_save_config(), 0);
    EXPECT_THAT(door.trace({"run"}), testing::Not(testing::Contains(HasSubstr("network-5"))));
}

TEST_F(HardwareSettings, AWidthIsPrintedAsASignedNumber) {
    settings_.channel_bandwidth = 0xFFFFFFFFU;
    EXPECT_EQ(apply(), -1);
    EXPECT_EQ(door.trace({"log"}).back(), own_ + "Unknown channel_bandwidth:-1");
}

TEST_F(HardwareSettings, AChannelThatCannotBeSetEndsThem) {
    put(settings_.eligible_channels, "200 44");
    EXPECT_EQ(apply(), -1);
    EXPECT_EQ(door.trace({"log"}).back(), own_ + "wifi1: Failed to override channel 200.");
    EXPECT_EQ(door.trace({"revert"}), Trace{"revert all"}) << "by the channel operation";
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(HardwareSettings, AFailedStepAfterTheOverrideLeavesItCommitted) {
    put(settings_.eligible_channels, "40 44");
    settings_.channel_bandwidth = 160;
    EXPECT_EQ(apply(), -1);
    EXPECT_EQ(door.trace({"log"}).back(), own_ + "Unknown channel_bandwidth:160");
    EXPECT_EQ(committed_value("wireless.wifi1.channel"), "40");
    EXPECT_EQ(committed_value("wireless.wifi1.hwmode"), "11axa");
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(HardwareSettings, EachFailedWriteDiscardsEverything) {
    put(settings_.supported_rate, "6");
    const char* const edits[] = {"hwmode=11axa", "eg_ch=36 40 44 48", "htmode=HT80",
                                 "legacy_rates=6"};
    for (int i = 0; i < 4; i++) {
        door.fail(Call::uci_set, i + 1);
        EXPECT_EQ(apply(), -1);
        EXPECT_EQ(door.trace({"set"}).back(),
                  std::string("set wireless.wifi1.") + edits[i] + " (failed)");
        EXPECT_EQ(door.trace({"log"}).back(), i < 3
                                                  ? own_ + "Set Value Failed"
                                                  : own_ + "error: Set wifi1 legacy rate failed.");
        EXPECT_EQ(door.trace({"revert"}), Trace{"revert all"});
        EXPECT_THAT(staged(), IsEmpty());
    }
}

TEST_F(HardwareSettings, TextsMayFillTheirArrays) {
    std::string rates = "6";
    while (rates.size() < 126) {
        rates += ",9";
    }
    rates.resize(128, '1');
    put(settings_.supported_rate, rates);
    put(settings_.basic_rate, rates);
    put(settings_.mcs_index, std::string(128, 'm'));
    put(settings_.eligible_channels, "36 " + std::string(125, '4'));
    EXPECT_EQ(apply(), 0);
    std::string blanks = rates;
    std::replace(blanks.begin(), blanks.end(), ',', ' ');
    EXPECT_EQ(staged_value("wireless.wifi1.legacy_rates"), blanks);
    EXPECT_EQ(std::string(settings_.supported_rate, 128), blanks);
    EXPECT_EQ(std::string(settings_.basic_rate, 128), blanks);
    EXPECT_EQ(staged_value("wireless.wifi1.eg_ch"), "36 " + std::string(125, '4'));
    EXPECT_THAT(door.trace(),
                testing::Contains(own_ + "mcs_index:" + std::string(128, 'm') + " Not support"));
}

} // namespace orlo::test
