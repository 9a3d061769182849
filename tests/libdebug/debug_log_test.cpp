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

TEST(DebugLog, KeepsErrorsAndDropsTraceLines) {
    EXPECT_EQ(stderr_of([] {
                  orlo_agent_debug_log(5, 1, "api_x", 42, "failed: %s %d\n", "why", 7);
                  orlo_agent_debug_log(5, 5, "api_x", 43, "Entering...\n");
                  orlo_agent_debug_log(7, 0, "api_y", 44, "late\n");
              }),
              "5 1 api_x:42 failed: why 7\n7 0 api_y:44 late\n");
    EXPECT_EQ(is_debug_module_level_enabled(5, 1), 1);
    EXPECT_EQ(is_debug_module_level_enabled(5, 2), 0);
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

class Environment : public testing::Test {
protected:
    // What this very program, started with these variables, says of what it read.
    static std::string read_from(const std::string& variables) {
        char program[4096] = {};
        EXPECT_GT(readlink("/proc/self/exe", program, sizeof program - 1), 0);
        const std::string command = "env -u ORLO_DEBUG -u ORLO_FAKE_MODE ORLO_TELL=1 " + variables +
                                    " '" + program +
                                    "' --gtest_filter=Environment.IsReadAtStart | grep '^told: '";
        char line[128] = {};
        FILE* output = popen(command.c_str(), "r");
        EXPECT_NE(fgets(line, sizeof line, output), nullptr);
        pclose(output);
        return std::string(line).substr(strlen("told: "));
    }

    static int kept_level(int module) {
        int level = -10;
        while (is_debug_module_level_enabled(module, level + 1) != 0) {
            level++;
        }
        return level;
    }
};

TEST_F(Environment, IsReadAtStart) {
    if (getenv("ORLO_TELL") != nullptr) {
        printf("told: fake %d, module 5 %d, 7 %d, 8 %d, 64 %d, -1 %d\n", Fake_mode, kept_level(5),
               kept_level(7), kept_level(8), kept_level(64), kept_level(-1));
        return;
    }
    const std::string defaults = ", module 5 1, 7 1, 8 1, 64 1, -1 1\n";
    EXPECT_EQ(read_from(""), "fake 0" + defaults);
    EXPECT_EQ(read_from("ORLO_FAKE_MODE=1"), "fake 1" + defaults);
    EXPECT_EQ(read_from("ORLO_FAKE_MODE=0"), "fake 0" + defaults);
    EXPECT_EQ(read_from("ORLO_DEBUG=5:5,8:0"), "fake 0, module 5 5, 7 1, 8 0, 64 1, -1 1\n");
    for (const char* useless : {"''", ",", "5", "five:5", "5:", ":5", ",,5:x,", "64:5,-1:5"}) {
        EXPECT_EQ(read_from("ORLO_DEBUG=" + std::string(useless)), "fake 0" + defaults) << useless;
    }
}

} // namespace
