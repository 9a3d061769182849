// SPDX-License-Identifier: MIT
// Text helpers.
#include "common/text.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>

namespace orlo::test {

static std::string replaced(std::string text, const char* needle, const char* replacement) {
    text.resize(2048);
    replace_all_substrings(text.data(), needle, replacement);
    text.resize(strlen(text.data()));
    return text;
}

TEST(ReplaceSubstrings, ReplacesEveryOccurrence) {
    EXPECT_EQ(replaced("1,2,5.5,11", ",", " "), "1 2 5.5 11");
    EXPECT_EQ(replaced("a--b--", "--", "+++"), "a+++b+++");
    EXPECT_EQ(replaced("abcabc", "b", ""), "acac");
    EXPECT_EQ(replaced("nothing", ",", " "), "nothing");
    EXPECT_EQ(replaced("", ",", " "), "");
}

TEST(ReplaceSubstrings, LooksAgainAtWhatAReplacementHasJoined) {
    EXPECT_EQ(replaced("aabb", "ab", ""), "");
}

TEST(ReplaceSubstrings, LeavesATextThatWouldNeverEnd) {
    EXPECT_EQ(replaced("1,2", "", " "), "1,2");
    EXPECT_EQ(replaced("1,2", ",", ", "), "1,2");
}

TEST(ReplaceSubstrings, StopsBeforeAResultBeyond1023Characters) {
    const std::string commas(600, ',');
    const std::string result = replaced(commas, ",", "--");
    EXPECT_EQ(result.size(), 1023U);
    EXPECT_EQ(result, std::string(846, '-') + std::string(177, ','));
    EXPECT_EQ(replaced(std::string(1024, ','), ",", ";"), std::string(1024, ','));
}

TEST(Ipv4Text, AcceptsOnlyDottedAddresses) {
    EXPECT_EQ(is_valid_ipv4_text("192.168.1.1"), 1);
    EXPECT_EQ(is_valid_ipv4_text("0.0.0.0"), 1);
    for (const char* other : {"", "192.168.1", "192.168.1.256", "::1", "192.168.1.1 ", "host"}) {
        EXPECT_EQ(is_valid_ipv4_text(other), 0) << other;
    }
    EXPECT_EQ(is_valid_ipv4_text(nullptr), 0);
}

TEST(FormattedText, IsCutAndTerminated) {
    const Text<8> text("wifi%dvap%d", 1, 15);
    EXPECT_STREQ(text, "wifi1va");
}

} // namespace orlo::test
