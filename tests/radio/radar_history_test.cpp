// SPDX-License-Identifier: MIT
// The radar history of a radio, written to a file.
#include "support/access_point.h"

#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace orlo::test {

namespace {

constexpr const char* entering = "log api_get_radar_info: Entering ... ";
constexpr const char* channel_command =
    "run /usr/bin/iwinfo wdev1 freqlist | cut -d '(' -f 2 | cut -d ' ' -f 2 | cut -d ')' -f 1 1> "
    "/tmp/freqlist.txt";
constexpr const char* closed_command =
    "run /usr/sbin/iwpriv wdev1 getcmd \"get11hNOCList\" | grep -v \"NOC LIST\" 1> "
    "/tmp/noclist.txt";
constexpr const char* path = "/tmp/radarinfo-wifi1";

} // namespace

class RadarHistory : public AccessPoint {
protected:
    std::string get(int radio = 1) const {
        const std::unique_ptr<char, decltype(&free)> text(ops.api_get_radar_info(radio), free);
        return text == nullptr ? "(NULL)" : text.get();
    }

    static void support(const std::string& channels) {
        replace_tool("iwinfo", "printf '" + channels + "'");
    }

    static void close_channels(const std::string& lines) {
        write_file("/var/run/device/radio1/closed-channels", lines);
    }

    // The history that comes of two lists as the tools print them.
    std::string history(const std::string& channels, const std::string& closed) const {
        support(channels);
        close_channels(closed);
        return get() == path ? read_file(path) : "(NULL)";
    }
};

TEST_F(RadarHistory, HasALineForEveryChannelThatTheRadioSupports) {
    tell_driver("wdev1", "range 52:5260:6 56:5280:6 100:5500:6 149:5745:6\n");
    close_channels("100,2,60\n52,1,1800\n");
    EXPECT_EQ(get(), path);
    EXPECT_EQ(read_file(path), "52,1,1800\n56,0,0\n100,2,60\n149,0,0\n");
    EXPECT_THAT(door.trace(),
                ElementsAre(entering, "unlink /tmp/freqlist.txt", channel_command,
                            "unlink /tmp/noclist.txt", closed_command,
                            "unlink /tmp/radarinfo-wifi1",
                            "log api_get_radar_info: End... path:/tmp/radarinfo-wifi1  "));
    EXPECT_THAT(journal(),
                ElementsAre("iwinfo wdev1 freqlist", "iwpriv wdev1 getcmd get11hNOCList"));
    EXPECT_EQ(read_file("/tmp/freqlist.txt"), "52\n56\n100\n149\n");
    EXPECT_EQ(read_file("/tmp/noclist.txt"), "100,2,60\n52,1,1800\n");
}

TEST_F(RadarHistory, OfTheSampleDeviceNamesAllItsChannels) {
    close_channels("0,0,0\n"); // no radar so far, but a line
    EXPECT_EQ(get(), path);
    EXPECT_THAT(read_file(path), StartsWith("36,0,0\n40,0,0\n44,0,0\n"));
    EXPECT_EQ(get(0), "(NULL)") << "radio 0 has not even that line";
}

TEST_F(RadarHistory, IsKeptByRadio) {
    write_file("/var/run/device/radio0/closed-channels", "1,2,3\n");
    EXPECT_EQ(get(0), "/tmp/radarinfo-wifi0");
    EXPECT_THAT(read_file("/tmp/radarinfo-wifi0"), StartsWith("1,2,3\n2,0,0\n"));
}

TEST_F(RadarHistory, TakesTheFirstEntryOfAChannel) {
    EXPECT_EQ(history("(Channel 52)\\n(Channel 52)\\n", "56,9,9\n52,1,1\n52,2,2\n"),
              "52,1,1\n52,1,1\n");
}

TEST_F(RadarHistory, PassesTheDriversNumbersOnAsTheyAre) {
    EXPECT_EQ(history("(Channel 52)\\n", "52,65535,-9223372036854775808\n"),
              "52,65535,-9223372036854775808\n");
    EXPECT_EQ(history("(Channel 52)\\n", "52,0,9223372036854775807\n"),
              "52,0,9223372036854775807\n");
    EXPECT_EQ(history("(Channel -1)\\n", "4294967295,7,8\n"), "4294967295,7,8\n");
}

TEST_F(RadarHistory, ReplacesAnOlderOne) {
    write_file(path, std::string(1000, 'x'));
    write_file("/tmp/freqlist.txt", "1\n2\n3\n");
    write_file("/tmp/noclist.txt", "1,1,1\n");
    EXPECT_EQ(history("(Channel 52)\\n", "52,1,2\n"), "52,1,2\n");
}

TEST_F(RadarHistory, DoesNotFollowALinkThatLiesInItsPlace) {
    write_file("/tmp/other", "kept");
    for (const char* link : {path, "/tmp/freqlist.txt", "/tmp/noclist.txt"}) {
        ASSERT_EQ(symlink("/tmp/other", link), 0);
    }
    EXPECT_EQ(history("(Channel 52)\\n", "52,1,2\n"), "52,1,2\n");
    EXPECT_EQ(read_file("/tmp/other"), "kept");
}

TEST_F(RadarHistory, WithoutSupportedChannelsIsEmpty) {
    EXPECT_EQ(history("", "52,1,2\n"), "");
    replace_tool("iwinfo", "exit 1"); // the pipeline's status is that of its last command
    EXPECT_EQ(get(), path);
}

TEST_F(RadarHistory, SkipsLinesThatAreNoEntries) {
    EXPECT_EQ(history("wdev1 (Channel auto)\\n(Channel 52)\\n\\n(Channel 56)\\n",
                      "wdev1     getcmd:\n52,1\n52;1;2\n,,\n56,3,4 and more\n\n52,5,6\n"),
              "52,5,6\n56,3,4\n");
}

TEST_F(RadarHistory, EndsBehindSixtyFourEntriesOfEitherList) {
    std::string channels;
    std::string closed;
    std::string expected;
    for (int i = 1; i <= 100; i++) {
        channels += "(Channel " + std::to_string(i) + ")\\n";
        closed += std::to_string(101 - i) + ",1,2\n"; // 100 down to 1
        if (i <= 64) {
            expected += std::to_string(i) + (i >= 37 ? ",1,2\n" : ",0,0\n");
        }
    }
    EXPECT_EQ(history(channels, closed), expected);
}

TEST_F(RadarHistory, SurvivesOutputWithoutEnd) {
    EXPECT_EQ(history("(Channel 52)\\n(Channel 99999999999999999999)",
                      "52," + std::string(100000, '9') + "\n52,1,1"),
              "52,1,1\n4294967295,0,0\n");
    EXPECT_EQ(history(std::string(70000, 'x'), std::string(100000, ',')), "");
}

TEST_F(RadarHistory, OfARadioWithoutClosedChannelsCannotBeHad) {
    EXPECT_EQ(get(), "(NULL)");
    EXPECT_THAT(door.trace(),
                ElementsAre(entering, "unlink /tmp/freqlist.txt", channel_command,
                            "unlink /tmp/noclist.txt", closed_command,
                            "log api_get_radar_info: Error: create the NOC list file failed!! "));
    EXPECT_FALSE(exists(path));
    EXPECT_TRUE(exists("/tmp/freqlist.txt"));
}

TEST_F(RadarHistory, NeedsBothCommands) {
    close_channels("52,1,2\n");
    door.fail(Call::system, 1);
    EXPECT_EQ(get(), "(NULL)");
    EXPECT_THAT(door.trace(),
                ElementsAre(entering, "unlink /tmp/freqlist.txt",
                            std::string(channel_command) + " (failed)",
                            "log api_get_radar_info: Error: create the frequency list file "
                            "failed!! "));
    door.forget();
    door.fail(Call::system, 2);
    EXPECT_EQ(get(), "(NULL)");
    EXPECT_THAT(door.trace(),
                ElementsAre(entering, "unlink /tmp/freqlist.txt", channel_command,
                            "unlink /tmp/noclist.txt", std::string(closed_command) + " (failed)",
                            "log api_get_radar_info: Error: create the NOC list file failed!! "));
    ASSERT_EQ(unlink("/tmp/freqlist.txt"), 0);
    ASSERT_EQ(mkdir("/tmp/freqlist.txt", 0755), 0); // the shell cannot write there
    door.forget();
    EXPECT_EQ(get(), "(NULL)");
    EXPECT_EQ(door.trace().back(),
              "log api_get_radar_info: Error: create the frequency list file failed!! ");
}

TEST_F(RadarHistory, NeedsAllThreeFiles) {
    const char* const messages[] = {"Error: open /tmp/freqlist.txt failed!!",
                                    "Error: open /tmp/noclist.txt failed!!",
                                    "Error: create /tmp/radarinfo-wifi1 failed!!"};
    close_channels("52,1,2\n");
    for (int file = 1; file <= 3; file++) {
        door.forget();
        door.fail(Call::fopen, file);
        EXPECT_EQ(get(), "(NULL)");
        EXPECT_THAT(door.trace({"log", "run"}),
                    ElementsAre(entering, channel_command, closed_command,
                                std::string("log api_get_radar_info: ") + messages[file - 1]));
    }
}

TEST_F(RadarHistory, OfARadioThatDoesNotExistCannotBeHad) {
    EXPECT_EQ(get(2), "(NULL)");
    EXPECT_EQ(door.trace({"run"}).front(),
              "run /usr/bin/iwinfo wdev2 freqlist | cut -d '(' -f 2 | cut -d ' ' -f 2 | "
              "cut -d ')' -f 1 1> /tmp/freqlist.txt");
}

} // namespace orlo::test
