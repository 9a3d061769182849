// SPDX-License-Identifier: MIT
// Reading what the person typed.
#include "command_line.h"

#include <gmock/gmock.h>

#include "exit.h"

using namespace orloctl;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::string refusal(const std::vector<std::string>& arguments) {
    try {
        read_command_line(arguments);
    } catch (const Refusal& refused) {
        return refused.what();
    }
    return "accepted";
}

} // namespace

TEST(CommandLine, options_stand_anywhere) {
    const CommandLine line = read_command_line(
        {"--here", "call", "--library", "/tmp/lib.so", "api_get_channel", "1", "--json"});
    EXPECT_EQ(line.command, "call");
    EXPECT_THAT(line.words, ElementsAre("api_get_channel", "1"));
    EXPECT_EQ(line.vendor_library, "/tmp/lib.so");
    EXPECT_TRUE(line.here);
    EXPECT_TRUE(line.json);
    EXPECT_FALSE(line.verbose);
}

TEST(CommandLine, negative_numbers_and_a_lone_dash_are_words) {
    EXPECT_THAT(read_command_line({"call", "81", "1", "-1"}).words, ElementsAre("81", "1", "-1"));
    EXPECT_THAT(read_command_line({"apply", "-"}).words, ElementsAre("-"));
}

TEST(CommandLine, behind_two_dashes_everything_is_a_word) {
    const CommandLine line = read_command_line({"call", "op", "--", "--json", "--", "-x"});
    EXPECT_THAT(line.words, ElementsAre("op", "--json", "--", "-x"));
    EXPECT_FALSE(line.json);
}

TEST(CommandLine, an_empty_word_is_a_word) {
    EXPECT_THAT(read_command_line({"call", "op", ""}).words, ElementsAre("op", ""));
}

TEST(CommandLine, a_value_may_be_joined_with_an_equals_sign) {
    EXPECT_EQ(read_command_line({"ops", "--library=/a=b"}).vendor_library, "/a=b");
}

TEST(CommandLine, nothing_typed_is_no_command) {
    const CommandLine line = read_command_line({});
    EXPECT_EQ(line.command, "");
    EXPECT_THAT(line.words, IsEmpty());
}

TEST(CommandLine, what_is_no_option_is_refused_in_a_sentence) {
    EXPECT_EQ(refusal({"ops", "--jsno"}),
              "unknown option '--jsno'; did you mean --json? ('orloctl --help' lists them)");
    EXPECT_EQ(refusal({"-x"}), "unknown option '-x'; 'orloctl --help' lists them");
    EXPECT_EQ(refusal({"ops", "--library"}), "option --library needs a value: --library PATH");
    EXPECT_EQ(refusal({"ops", "--json=1"}), "option --json takes no value");
    EXPECT_EQ(
        refusal({"ops", "--raw"}),
        "option --raw belongs to 'orloctl apply' and 'orloctl call' and 'orloctl preview' and "
        "'orloctl trace'");
    EXPECT_EQ(refusal({"--dry-run", "status"}), "option --dry-run belongs to 'orloctl apply'");
    EXPECT_EQ(
        refusal({"status", "--watch"}),
        "option --watch belongs to 'orloctl clients' and 'orloctl counters' and 'orloctl mesh' "
        "and 'orloctl quilt'");
    EXPECT_EQ(refusal({"clients", "--all"}),
              "option --all belongs to 'orloctl status' and 'orloctl counters'");
    EXPECT_EQ(refusal({"clients", "--file"}), "option --file needs a value: --file FILE");
    EXPECT_EQ(refusal({"--raw", "apply", "x", "--no-save"}), "accepted");
}
