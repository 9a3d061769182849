// SPDX-License-Identifier: MIT
// The journal shows exactly which device commands were run, one call a line.
#include "program.h"

#include <gtest/gtest.h>
#include <sstream>
#include <unistd.h>

using namespace orlo::test;

namespace {

class Journal : public testing::Test {
protected:
    void SetUp() override { unlink("/var/log/journal"); }

    /// The line that a call with these words leaves.
    static std::string line_of(std::vector<std::string> words) {
        words.insert(words.begin(), "/bin/sync");
        run(words);
        return read_file("/var/log/journal");
    }
};

TEST_F(Journal, plain_words_stand_as_they_are) {
    EXPECT_EQ(line_of({"wdev0ap10", "-a", "A_b@c%d+e=f:g,h./i-9"}),
              "sync wdev0ap10 -a A_b@c%d+e=f:g,h./i-9\n");
}

TEST_F(Journal, the_program_is_named_without_its_folder) {
    shell("/usr/sbin/iwconfig wdev1 commit");
    EXPECT_EQ(read_file("/var/log/journal"), "iwconfig wdev1 commit\n");
}

TEST_F(Journal, words_with_blanks_are_quoted) {
    EXPECT_EQ(line_of({"radiomode 1 106"}), "sync 'radiomode 1 106'\n");
}

TEST_F(Journal, an_empty_word_is_seen) {
    EXPECT_EQ(line_of({"", "x"}), "sync '' x\n");
}

TEST_F(Journal, quotes_of_both_kinds_are_kept) {
    EXPECT_EQ(line_of({"it's", "'", "\"both\" 'kinds'"}),
              "sync 'it'\\''s' ''\\''' '\"both\" '\\''kinds'\\'''\n");
}

TEST_F(Journal, what_a_shell_would_expand_is_kept) {
    EXPECT_EQ(line_of({"$(reboot)", "`x`", "*", "~", "a;b|c&d", "\\", "%s\\n"}),
              "sync '$(reboot)' '`x`' '*' '~' 'a;b|c&d' '\\' '%s\\n'\n");
}

TEST_F(Journal, a_line_end_in_a_word_does_not_end_the_line) {
    EXPECT_EQ(line_of({"one\ntwo", "it's\n\\n"}), "sync $'one\\ntwo' $'it\\'s\\n\\\\n'\n");
}

TEST_F(Journal, bytes_above_ascii_are_kept) {
    EXPECT_EQ(line_of({"caf\xc3\xa9", "\xff"}), "sync 'caf\xc3\xa9' '\xff'\n");
}

TEST_F(Journal, a_shell_reads_the_words_back) {
    const std::string line = line_of({"a b", "it's", "", "$x"});
    EXPECT_EQ(shell("set -- " + line.substr(5) + "printf '<%s>' \"$@\"").out, "<a b><it's><><$x>");
}

TEST_F(Journal, calls_at_the_same_time_do_not_mix) {
    const std::string word(3000, 'x');
    shell("for n in 1 2 3 4 5 6; do for m in 1 2 3 4; do sync " + word + "; done & done; wait");
    std::istringstream lines(read_file("/var/log/journal"));
    int count = 0;
    for (std::string line; std::getline(lines, line); count++) {
        EXPECT_EQ(line, "sync " + word);
    }
    EXPECT_EQ(count, 24);
}

TEST_F(Journal, failing_commands_are_there_too) {
    EXPECT_EQ(shell("iwpriv wdev7 setcmd applypwr").status, 1);
    EXPECT_EQ(read_file("/var/log/journal"), "iwpriv wdev7 setcmd applypwr\n");
}

TEST_F(Journal, a_tool_that_a_test_replaces_is_recorded_before_its_replacement_runs) {
    shell("mkdir /var/run/device/replaced");
    write_file("/var/run/device/replaced/iwpriv", "#!/bin/sh\necho \"<$1|$2>\"; exit 3\n");
    EXPECT_EQ(shell("/usr/sbin/iwpriv wdev1 'a  b'").status, 1);
    shell("chmod +x /var/run/device/replaced/iwpriv");
    const Outcome outcome = shell("/usr/sbin/iwpriv wdev1 'a  b'");
    EXPECT_EQ(outcome.out, "<wdev1|a  b>\n");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(read_file("/var/log/journal"), "iwpriv wdev1 'a  b'\niwpriv wdev1 'a  b'\n");
}

TEST_F(Journal, lua_scripts_of_the_device_record_their_run) {
    EXPECT_EQ(shell("/usr/bin/lua /usr/lib/lua/luci/chvlan.lua").status, 0);
    EXPECT_EQ(read_file("/var/log/journal"), "chvlan.lua\n");
}

TEST_F(Journal, reboot_is_only_recorded) {
    EXPECT_EQ(shell("reboot -f").status, 0);
    EXPECT_EQ(read_file("/var/log/journal"), "reboot -f\n");
}

} // namespace
