// SPDX-License-Identifier: MIT
// What an operation's answer means to a person and to a program.
#include "result.h"

#include <cstring>
#include <gtest/gtest.h>
#include <limits>

using namespace orloctl;

namespace {

std::string shown(Meaning meaning, const Result& result) {
    const Reading reading = read_result(meaning, result);
    return reading.shown + (reading.failed ? " [failed]" : "");
}

std::string as_json(const Result& result) {
    return json_excerpt(result_json(result).get());
}

} // namespace

TEST(Result, a_status_is_ok_or_failed) {
    EXPECT_EQ(shown(Meaning::status, take(0)), "ok");
    EXPECT_EQ(shown(Meaning::status, take(-1)), "failed (-1) [failed]");
    EXPECT_EQ(shown(Meaning::status, take(-2)), "failed (-2) [failed]");
    EXPECT_EQ(shown(Meaning::status, take(256)), "failed (256) [failed]");
}

TEST(Result, a_question_is_answered_yes_or_no_or_not_at_all) {
    EXPECT_EQ(shown(Meaning::yesno, take(1)), "yes");
    EXPECT_EQ(shown(Meaning::yesno, take(0)), "no");
    EXPECT_EQ(shown(Meaning::yesno, take(-1)), "failed (-1) [failed]");
}

TEST(Result, a_check_answers_yes_with_zero) {
    EXPECT_EQ(shown(Meaning::check, take(0)), "yes");
    EXPECT_EQ(shown(Meaning::check, take(-1)), "no");
}

TEST(Result, a_number_is_shown_and_a_negative_one_is_none) {
    EXPECT_EQ(shown(Meaning::number, take(36)), "36");
    EXPECT_EQ(shown(Meaning::number, take(-1)), "none (-1) [failed]");
    EXPECT_EQ(shown(Meaning::number, take(20.1F)), "20.1");
    EXPECT_EQ(shown(Meaning::number, take(-3.5F)), "-3.5");
    EXPECT_EQ(as_json(take(20.1F)).substr(0, 4), "20.1");
    EXPECT_EQ(as_json(take(std::numeric_limits<float>::infinity())), "null");
}

TEST(Result, a_count_keeps_all_its_bits) {
    EXPECT_EQ(shown(Meaning::count, take(int64_t{1} << 40)), "1099511627776");
    EXPECT_EQ(shown(Meaning::count, take(int64_t{-1})), "-1");
    EXPECT_EQ(as_json(take(int64_t{1} << 40)), "1099511627776");
}

TEST(Result, a_heap_text_is_copied_and_freed) {
    EXPECT_EQ(shown(Meaning::text, take(strdup("two\nlines"))), "two\nlines");
    EXPECT_EQ(shown(Meaning::text, take(strdup(""))), "");
    EXPECT_EQ(shown(Meaning::text, take(static_cast<char*>(nullptr))), "none (NULL) [failed]");
    EXPECT_EQ(as_json(take(static_cast<char*>(nullptr))), "null");
}

TEST(Result, bytes_that_are_no_text_still_make_valid_json) {
    const Json value = result_json(take(strdup("caf\xE9")));
    EXPECT_STREQ(json_string_value(value.get()), "caf\xEF\xBF\xBD");
}

TEST(Result, a_json_value_is_shown_and_released) {
    EXPECT_EQ(shown(Meaning::json, take(json_pack("[i]", 7))), "[\n  7\n]");
    EXPECT_EQ(as_json(take(json_pack("{s:b}", "up", 1))), "{\"up\":true}");
    EXPECT_EQ(shown(Meaning::json, take(static_cast<json_t*>(nullptr))), "none (NULL) [failed]");
}

TEST(Result, an_operation_without_an_answer_is_done) {
    EXPECT_EQ(shown(Meaning::nothing, std::monostate()), "done");
    EXPECT_EQ(as_json(std::monostate()), "null");
}
