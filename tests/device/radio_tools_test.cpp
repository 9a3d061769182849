// SPDX-License-Identifier: MIT
// The stand-ins of the radio tools, asked through the pipelines that the library uses.
#include "program.h"

#include <gtest/gtest.h>

using namespace orlo::test;

namespace {

std::string bandwidth_code() {
    return shell("iwpriv wdev1 getcmd \"radiomode 1\" | grep \"BW2\" | cut -d '=' -f 2").out;
}

std::string second_channel() {
    return shell("iwpriv wdev1 getcmd \"radiomode 1\" | grep \"Channel2\" | cut -d '=' -f 2").out;
}

TEST(RadioTools, one_segment_has_a_bandwidth_code_other_than_5_and_no_second_channel) {
    EXPECT_EQ(bandwidth_code(), "4\n");
    EXPECT_EQ(second_channel(), "");
}

TEST(RadioTools, two_segments_have_bandwidth_code_5_and_their_second_channel) {
    EXPECT_EQ(shell("/usr/sbin/iwpriv wdev1 setcmd \"radiomode 1 106\"").status, 0);
    EXPECT_EQ(bandwidth_code(), "5\n");
    EXPECT_EQ(second_channel(), "106\n");
}

TEST(RadioTools, radiomode_0_ends_two_segment_operation) {
    shell("iwpriv wdev1 setcmd \"radiomode 1 106\"; iwpriv wdev1 setcmd \"radiomode 0\"");
    EXPECT_EQ(bandwidth_code(), "4\n");
    EXPECT_EQ(second_channel(), "");
}

TEST(RadioTools, radios_do_not_share_their_mode) {
    shell("iwpriv wdev0 setcmd \"radiomode 1 11\"");
    EXPECT_EQ(bandwidth_code(), "4\n");
}

TEST(RadioTools, the_greatest_power_is_the_first_of_the_table) {
    EXPECT_EQ(shell("/usr/sbin/iwpriv wdev0 getcmd \"getsyncscanpwr /etc/R8K_2G_TX_Power_Table\" "
                    "| cut -d ':' -f 3")
                  .out,
              "20.500000\n");
    write_file("/etc/R8K_5G_TX_Power_Table", "# own\n100 17.25\n1 2\n");
    EXPECT_EQ(shell("iwpriv wdev1 getcmd \"getsyncscanpwr /etc/R8K_5G_TX_Power_Table\" "
                    "| cut -d ':' -f 3")
                  .out,
              "17.250000\n");
}

TEST(RadioTools, the_power_of_twelve_percentages_fits_the_librarys_line) {
    const Outcome outcome = shell("/usr/sbin/iwpriv wdev0 getcmd \"getsyncscanpwr "
                                  "/etc/R8K_2G_TX_Power_Table p\" | cut -d ':' -f 3");
    EXPECT_EQ(outcome.out, "20.5,20.0,19.5,19.0,18.3,17.5,16.5,15.3,13.5,10.5,7.5,0.5\n");
    EXPECT_LT(outcome.out.size(), 64U);
}

TEST(RadioTools, a_power_table_takes_effect_when_it_is_applied) {
    const std::string before = read_file("/var/run/device/radio0/power");
    shell("iwpriv wdev0 setcmd \"loadpwrgrpstbl /etc/R8K_2G_TX_Power_Table 75\"");
    EXPECT_EQ(read_file("/var/run/device/radio0/power"), before);
    EXPECT_EQ(shell("iwpriv wdev0 setcmd \"applypwr\"").status, 0);
    EXPECT_EQ(read_file("/var/run/device/radio0/power"), "/etc/R8K_2G_TX_Power_Table 75\n");
    EXPECT_EQ(shell("iwpriv wdev0 setcmd \"applypwr\"").status, 1);
}

TEST(RadioTools, closed_channels_are_listed_below_their_heading) {
    const std::string command = "iwpriv wdev1 getcmd \"get11hNOCList\" | grep -v \"NOC LIST\"";
    EXPECT_EQ(shell(command).status, 1);
    write_file("/var/run/device/radio1/closed-channels", "52,1,1800\n100,2,60\n");
    EXPECT_EQ(shell(command).out, "52,1,1800\n100,2,60\n");
}

TEST(RadioTools, the_supported_channels_are_those_of_the_drivers_range) {
    EXPECT_EQ(shell("/usr/bin/iwinfo wdev0 freqlist").out, "  2.412 GHz (Channel 1)\n"
                                                           "  2.417 GHz (Channel 2)\n"
                                                           "  2.422 GHz (Channel 3)\n"
                                                           "  2.427 GHz (Channel 4)\n"
                                                           "  2.432 GHz (Channel 5)\n"
                                                           "* 2.437 GHz (Channel 6)\n"
                                                           "  2.442 GHz (Channel 7)\n"
                                                           "  2.447 GHz (Channel 8)\n"
                                                           "  2.452 GHz (Channel 9)\n"
                                                           "  2.457 GHz (Channel 10)\n"
                                                           "  2.462 GHz (Channel 11)\n"
                                                           "  2.467 GHz (Channel 12)\n"
                                                           "  2.472 GHz (Channel 13)\n");
    write_file("/var/run/device/driver/wdev1", "name x\nrange 36:518:7 149:5745:6\n");
    EXPECT_EQ(shell("/usr/bin/iwinfo wdev1 freqlist | cut -d '(' -f 2 | cut -d ' ' -f 2 | "
                    "cut -d ')' -f 1")
                  .out,
              "36\n149\n");
}

struct Refusal {
    const char* what;
    const char* command;
    const char* message;
};

class Refusing : public testing::TestWithParam<Refusal> {};

TEST_P(Refusing, ends_with_a_message_and_status_1) {
    const Outcome outcome = shell(GetParam().command);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, std::string(GetParam().message) + "\n");
}

constexpr Refusal refusals[] = {
    {"too_few_words", "iwpriv wdev0", "iwpriv: usage: iwpriv INTERFACE setcmd|getcmd \"WORDS\""},
    {"unknown_radio", "iwpriv wdev2 setcmd applypwr", "iwpriv: wdev2: no such device"},
    {"unknown_vap", "iwpriv wdev0ap16 setcmd applypwr", "iwpriv: wdev0ap16: no such device"},
    {"unknown_setting", "iwpriv wdev0 setcmd selfdestruct",
     "iwpriv: setcmd: unknown command \"selfdestruct\""},
    {"empty_question", "iwpriv wdev0 getcmd ''", "iwpriv: getcmd: unknown command \"\""},
    {"setting_as_question", "iwpriv wdev0 getcmd applypwr",
     "iwpriv: getcmd: unknown command \"applypwr\""},
    {"unknown_mode", "iwpriv wdev0 setcmd 'radiomode 2'", "iwpriv: radiomode: unknown mode \"2\""},
    {"negative_channel", "iwpriv wdev0 setcmd 'radiomode 1 -1'", "iwpriv: \"-1\" is no number"},
    {"pattern_as_channel", "iwpriv wdev0 setcmd 'radiomode 1 *'", "iwpriv: \"*\" is no number"},
    {"missing_table", "iwpriv wdev0 setcmd 'loadpwrgrpstbl /etc/none 5'",
     "iwpriv: loadpwrgrpstbl: cannot read \"/etc/none\""},
    {"too_much_power", "iwpriv wdev0 setcmd 'loadpwrgrpstbl /etc/TZ 101'",
     "iwpriv: loadpwrgrpstbl: 101 is more than 100 percent"},
    {"missing_table_asked", "iwpriv wdev0 getcmd 'getsyncscanpwr /etc/none'",
     "iwpriv: getsyncscanpwr: cannot read \"/etc/none\""},
    {"unknown_word_asked", "iwpriv wdev0 getcmd 'getsyncscanpwr /etc/TZ q'",
     "iwpriv: getsyncscanpwr: unknown word \"q\""},
    {"channel_by_name", "iwconfig wdev0 channel auto", "iwconfig: \"auto\" is no channel"},
    {"unknown_iwconfig_word", "iwconfig wdev0 essid x", "iwconfig: unknown command \"essid\""},
    {"unknown_iwinfo_word", "iwinfo wdev0 scan", "iwinfo: unknown command \"scan\""},
    {"no_iwinfo_word", "iwinfo wdev0", "iwinfo: usage: iwinfo INTERFACE freqlist|assoclist"},
    {"stations_of_no_interface", "iwinfo mesh1 assoclist",
     "iwinfo: No such wireless device: mesh1"},
    {"unknown_iwinfo_interface", "iwinfo eth0 freqlist", "iwinfo: eth0: no such device"},
    {"wired_interface", "iwconfig eth0 commit", "iwconfig: eth0: no such device"},
};

INSTANTIATE_TEST_SUITE_P(RadioTools, Refusing, testing::ValuesIn(refusals),
                         [](const auto& refusal) { return std::string(refusal.param.what); });

TEST(RadioTools, iwconfig_stores_the_operating_channel) {
    EXPECT_EQ(shell("/usr/sbin/iwconfig wdev1 channel 149").status, 0);
    EXPECT_EQ(shell("/usr/sbin/iwconfig wdev1 commit").out, "");
    EXPECT_EQ(shell("iwconfig wdev1").out, "wdev1     IEEE 802.11  Channel:149\n");
    EXPECT_EQ(shell("iwconfig wdev0").out, "wdev0     IEEE 802.11  Channel:6\n");
}

} // namespace
