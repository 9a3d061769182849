// Words of the command line and the arguments that they become.
#include "argument.h"

#include <cmath>
#include <gtest/gtest.h>

#include "exit.h"

using namespace orloctl;

namespace {

const Parameter channel = {"int", "channel", Kind::integer};
const Parameter power = {"float", "current_power", Kind::number};
const Parameter host = {"const char *", "host", Kind::text};

int integer(const std::string& word) {
    return std::get<int>(read_argument(channel, 2, word));
}

Text text(const std::string& word) {
    return std::get<Text>(read_argument(host, 1, word));
}

std::string refusal(const Parameter& parameter, const std::string& word) {
    try {
        read_argument(parameter, 2, word);
    } catch (const Refusal& refused) {
        return refused.what();
    }
    return "accepted";
}

} // namespace

TEST(Argument, an_integer_is_decimal_or_hexadecimal) {
    EXPECT_EQ(integer("36"), 36);
    EXPECT_EQ(integer("-1"), -1);
    EXPECT_EQ(integer("0x1F"), 31);
    EXPECT_EQ(integer("-0x10"), -16);
    EXPECT_EQ(integer("010"), 10);
}

TEST(Argument, an_integer_reaches_to_both_ends_of_an_int) {
    EXPECT_EQ(integer("2147483647"), 2147483647);
    EXPECT_EQ(integer("-2147483648"), -2147483647 - 1);
    const std::string rule = " does not fit an int (-2147483648 to 2147483647)";
    EXPECT_EQ(refusal(channel, "2147483648"), "argument 2 (channel): 2147483648" + rule);
    EXPECT_EQ(refusal(channel, "-2147483649"), "argument 2 (channel): -2147483649" + rule);
    EXPECT_EQ(refusal(channel, "0x80000000"), "argument 2 (channel): 0x80000000" + rule);
    EXPECT_EQ(refusal(channel, "99999999999999999999999"),
              "argument 2 (channel): 99999999999999999999999" + rule);
}

TEST(Argument, a_word_that_is_no_integer_is_refused_by_name) {
    for (const std::string word :
         {"abc", "", "-", "--1", "0x", "0x-1", "3.5", "36 ", " 36", "36x", "+5", "@null"}) {
        EXPECT_EQ(refusal(channel, word), "argument 2 (channel): '" + word + "' is not an integer");
    }
}

TEST(Argument, a_number_is_read_whole_or_refused) {
    EXPECT_FLOAT_EQ(std::get<float>(read_argument(power, 3, "17.25")), 17.25F);
    EXPECT_FLOAT_EQ(std::get<float>(read_argument(power, 3, "-3")), -3.0F);
    for (const std::string word : {"abc", "", " 1", "1 ", "1,5"}) {
        EXPECT_EQ(refusal(power, word),
                  "argument 2 (current_power): '" + word + "' is not a number");
    }
    for (const std::string word : {"1e99", "inf", "nan"}) {
        EXPECT_EQ(refusal(power, word),
                  "argument 2 (current_power): " + word + " does not fit a float");
    }
}

TEST(Argument, a_text_is_taken_as_it_is_and_at_null_is_none) {
    EXPECT_EQ(text("not-override"), "not-override");
    EXPECT_EQ(text(""), "");
    EXPECT_EQ(text("@null"), std::nullopt);
    EXPECT_EQ(text("@@null"), "@null");
    EXPECT_EQ(text("@other"), "@other");
}

TEST(Argument, steps_that_the_operation_left_alone_show_as_unset) {
    Argument steps = empty_argument(Kind::numbers_out);
    EXPECT_TRUE(std::isnan(pass<float*>(steps)[0]));
    pass<float*>(steps)[11] = 20.5F;
    EXPECT_EQ(shown_argument(steps),
              "unset unset unset unset unset unset unset unset unset unset unset 20.5");
    EXPECT_EQ(json_excerpt(argument_json(steps).get()),
              "[null,null,null,null,null,null,null,null,null,null,null,2...");
}

TEST(Argument, a_buffer_has_room_for_the_longest_answer_and_shows_its_text) {
    Argument buffer = empty_argument(Kind::text_out);
    EXPECT_EQ(shown_argument(buffer), "");
    for (int i = 0; i < 256; i++) {
        pass<char*>(buffer)[i] = 'x'; // not even terminated
    }
    EXPECT_EQ(shown_argument(buffer), std::string(256, 'x'));
}

TEST(Argument, a_word_of_sixteen_bits_and_an_ignored_argument) {
    Argument timeout = empty_argument(Kind::word_out);
    *pass<uint16_t*>(timeout) = 65535;
    EXPECT_EQ(shown_argument(timeout), "65535");
    EXPECT_EQ(json_excerpt(argument_json(timeout).get()), "65535");
    Argument ignored = empty_argument(Kind::ignored);
    EXPECT_EQ(pass<void*>(ignored), nullptr);
}
