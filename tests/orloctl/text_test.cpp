// SPDX-License-Identifier: MIT
// Tables and lines for people.
#include "text.h"

#include <gtest/gtest.h>

using namespace orloctl;

TEST(Text, a_table_pads_every_column_but_the_last) {
    Table table;
    table.add({"", "radio 0", "radio 1"});
    table.add({"channel", "6", "36"});
    EXPECT_EQ(table.text(), "         radio 0  radio 1\n"
                            "channel  6        36\n");
}

TEST(Text, a_table_is_indented_and_leaves_no_blanks_at_line_ends) {
    Table table;
    table.add({"a", ""});
    table.add({"bbb", "c"});
    EXPECT_EQ(table.text(2), "  a\n  bbb  c\n");
    EXPECT_EQ(Table().text(), "");
}

TEST(Text, the_last_column_goes_on_below_itself_within_80_columns) {
    Table table;
    table.add({"key", std::string(60, 'x') + " " + std::string(30, 'y')});
    EXPECT_EQ(table.text(),
              "key  " + std::string(60, 'x') + "\n     " + std::string(30, 'y') + "\n");
}

TEST(Text, columns_are_as_wide_as_their_characters) {
    Table table;
    table.add({"caf\xC3\xA9", "x"});
    table.add({"tea", "y"});
    EXPECT_EQ(table.text(), "caf\xC3\xA9  x\ntea   y\n");
    EXPECT_EQ(printable("a\tb\x7f\xC3\xA9"), "a?b?\xC3\xA9");
}

TEST(Text, words_are_never_broken) {
    EXPECT_EQ(wrapped("one two three", 7), (std::vector<std::string>{"one two", "three"}));
    EXPECT_EQ(wrapped("enormous word", 4), (std::vector<std::string>{"enormous", "word"}));
    EXPECT_EQ(wrapped("", 4), std::vector<std::string>{""});
}

TEST(Text, alternatives_read_like_a_sentence) {
    EXPECT_EQ(alternatives({}), "");
    EXPECT_EQ(alternatives({"a"}), "a");
    EXPECT_EQ(alternatives({"a", "b"}), "a or b");
    EXPECT_EQ(alternatives({"a", "b", "c"}), "a, b or c");
}

TEST(Text, numbers_are_short) {
    EXPECT_EQ(shown_number(20.1F), "20.1");
    EXPECT_EQ(shown_number(11.0F), "11");
}
