// SPDX-License-Identifier: MIT
// The stand-in of the agent's logging library.
#include "orlo/debug.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

namespace {

std::string stderr_of(const std::function<void()>& call) {
    testing::internal::CaptureStderr();
    call();
    return testing::internal::GetCapturedStderr();
}

class DebugLog : public testing::Test {
protected:
    void SetUp() override { unsetenv("ORLO_DEBUG"); }
};

TEST_F(DebugLog, KeepsErrorsAndDropsTraceLines) {
    EXPECT_EQ(stderr_of([] {
                  orlo_agent_debug_log(5, 1, "api_x", 42, "failed: %s %d\n", "why", 7);
                  orlo_agent_debug_log(5, 5, "api_x", 43, "Entering...\n");
                  orlo_agent_debug_log(7, 0, "api_y", 44, "late\n");
              }),
              "5 1 api_x:42 failed: why 7\n7 0 api_y:44 late\n");
    EXPECT_EQ(is_debug_module_level_enabled(5, 1), 1);
    EXPECT_EQ(is_debug_module_level_enabled(5, 2), 0);
}

TEST_F(DebugLog, TheEnvironmentSetsTheLevelOfAModule) {
    setenv("ORLO_DEBUG", "5:5,8:4", 1);
    EXPECT_EQ(is_debug_module_level_enabled(5, 5), 1);
    EXPECT_EQ(is_debug_module_level_enabled(8, 4), 1);
    EXPECT_EQ(is_debug_module_level_enabled(8, 5), 0);
    EXPECT_EQ(is_debug_module_level_enabled(7, 2), 0);
    setenv("ORLO_DEBUG", "8:0", 1);
    EXPECT_EQ(is_debug_module_level_enabled(8, 1), 0);
    EXPECT_EQ(is_debug_module_level_enabled(5, 1), 1);
}

TEST_F(DebugLog, AnEnvironmentThatSaysNothingUsefulIsIgnored) {
    for (const char* text : {"", ",", "5", "five:5", "5:", ":5", ",,5:x,"}) {
        setenv("ORLO_DEBUG", text, 1);
        EXPECT_EQ(is_debug_module_level_enabled(5, 1), 1) << text;
        EXPECT_EQ(is_debug_module_level_enabled(5, 2), 0) << text;
    }
}

TEST(MacText, BecomesSixBytes) {
    unsigned char mac[7] = {1, 1, 1, 1, 1, 1, 0x55};
    EXPECT_EQ(StringMacToHex("00:1a:Fe:7f:80:09", mac), 0);
    const unsigned char expected[7] = {0x00, 0x1a, 0xfe, 0x7f, 0x80, 0x09, 0x55};
    EXPECT_EQ(memcmp(mac, expected, sizeof mac), 0);
}

TEST(MacText, ThatIsNoneBecomesSixZeros) {
    for (const char* text :
         {"", "00:1a:fe:7f:80", "00:1a:fe:7f:80:0g", "00-1a-fe-7f-80-09", "00:1a:fe:7f:80:091",
          "0:1a:fe:7f:80:09", " 00:1a:fe:7f:80:09", static_cast<const char*>(nullptr)}) {
        unsigned char mac[6] = {1, 1, 1, 1, 1, 1};
        EXPECT_EQ(StringMacToHex(text, mac), -1);
        const unsigned char zeros[6] = {};
        EXPECT_EQ(memcmp(mac, zeros, sizeof mac), 0);
    }
}

TEST(PrintFile, CopiesAFileToStandardError) {
    char path[] = "/tmp/print-file-XXXXXX";
    const int file = mkstemp(path);
    ASSERT_NE(file, -1);
    const std::string text(3000, 'x');
    ASSERT_EQ(write(file, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    close(file);
    EXPECT_EQ(stderr_of([&] { print_file(path); }), text);
    unlink(path);
    EXPECT_EQ(stderr_of([&] { print_file(path); }), "");
    EXPECT_EQ(stderr_of([] { print_file(nullptr); }), "");
}

TEST(FakeMode, IsSetByTheEnvironmentAtStart) {
    // This very test in a process of its own, which then only tells its mode.
    if (getenv("ORLO_TELL_FAKE_MODE") != nullptr) {
        printf("fake mode: %d\n", Fake_mode);
        return;
    }
    char program[4096] = {};
    ASSERT_GT(readlink("/proc/self/exe", program, sizeof program - 1), 0);
    const auto mode_with = [&](const std::string& setting) {
        const std::string command = "ORLO_TELL_FAKE_MODE=1 " + setting + " '" + program +
                                    "' '--gtest_filter=FakeMode.*' | grep '^fake mode'";
        char line[64] = {};
        FILE* output = popen(command.c_str(), "r");
        EXPECT_NE(fgets(line, sizeof line, output), nullptr);
        pclose(output);
        return std::string(line);
    };
    EXPECT_EQ(mode_with(""), "fake mode: 0\n");
    EXPECT_EQ(mode_with("ORLO_FAKE_MODE=1"), "fake mode: 1\n");
    EXPECT_EQ(mode_with("ORLO_FAKE_MODE=0"), "fake mode: 0\n");
}

} // namespace
