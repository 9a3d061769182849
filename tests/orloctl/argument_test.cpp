// SPDX-License-Identifier: MIT
// Words of the command line and the arguments that they become.
#include "argument.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

#include "exit.h"
#include "orlo/records.h"

using namespace orloctl;

namespace {

const Parameter channel = {"int", "channel", Kind::integer};
const Parameter power = {"float", "current_power", Kind::number};
const Parameter host = {"const char *", "host", Kind::text};
const Parameter steps = {"float *", "steps", Kind::numbers_out};
const Parameter buffer = {"char *", "buf", Kind::text_out};
const Parameter timeout = {"uint16_t *", "timeout", Kind::word_out};
const Parameter ignored = {"void *", "unused", Kind::ignored};
const Parameter radios = {"struct radio_statistics *", "record", Kind::record, nullptr,
                          &radio_statistics_record};
const Parameter vaps = {"struct vap_statistics *", "record", Kind::record, nullptr,
                        &vap_statistics_record};

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
    Argument argument = empty_argument(steps);
    EXPECT_TRUE(std::isnan(pass<float*>(argument)[0]));
    pass<float*>(argument)[11] = 20.5F;
    EXPECT_EQ(shown_argument(steps, argument),
              " unset unset unset unset unset unset unset unset unset unset unset 20.5\n");
    EXPECT_EQ(json_excerpt(argument_json(steps, argument).get()),
              "[null,null,null,null,null,null,null,null,null,null,null,2...");
}

TEST(Argument, a_buffer_has_room_for_the_longest_answer_and_shows_its_text) {
    Argument argument = empty_argument(buffer);
    EXPECT_EQ(shown_argument(buffer, argument), " \n");
    for (int i = 0; i < 256; i++) {
        pass<char*>(argument)[i] = 'x'; // not even terminated
    }
    EXPECT_EQ(shown_argument(buffer, argument), " " + std::string(256, 'x') + "\n");
}

TEST(Argument, a_word_of_sixteen_bits_and_an_ignored_argument) {
    Argument argument = empty_argument(timeout);
    *pass<uint16_t*>(argument) = 65535;
    EXPECT_EQ(shown_argument(timeout, argument), " 65535\n");
    EXPECT_EQ(json_excerpt(argument_json(timeout, argument).get()), "65535");
    Argument nothing = empty_argument(ignored);
    EXPECT_EQ(pass<void*>(nothing), nullptr);
}

TEST(Argument, of_a_record_that_is_filled_in_counters_that_were_left_alone_show_as_unset) {
    Argument argument = empty_argument(radios);
    auto* record = pass<radio_statistics*>(argument);
    record[0].rx_bytes = UINT64_MAX;
    record[1].rx_bytes = 0;
    record[1].failed = 7;
    EXPECT_EQ(shown_argument(radios, argument),
              "\n                       radio 0               radio 1\n"
              "  tx_fragments         unset                 unset\n"
              "  multicast_tx_frames  unset                 unset\n"
              "  failed               unset                 7\n"
              "  retries              unset                 unset\n"
              "  multiple_retries     unset                 unset\n"
              "  duplicate_frames     unset                 unset\n"
              "  rx_fragments         unset                 unset\n"
              "  multicast_rx_frames  unset                 unset\n"
              "  tx_frames            unset                 unset\n"
              "  wep_undecryptable    unset                 unset\n"
              "  ack_failures         unset                 unset\n"
              "  rts_failures         unset                 unset\n"
              "  fcs_errors           unset                 unset\n"
              "  rts_successes        unset                 unset\n"
              "  rx_packets           unset                 unset\n"
              "  rx_bytes             18446744073709551615  0\n"
              "  unused1              unset                 unset\n"
              "  tx_packets           unset                 unset\n"
              "  tx_bytes             unset                 unset\n"
              "  tx_errors            unset                 unset\n"
              "  rx_errors            unset                 unset\n");
    const Json json = argument_json(radios, argument);
    ASSERT_EQ(json_array_size(json.get()), 2U);
    const json_t* second = json_array_get(json.get(), 1);
    EXPECT_EQ(json_object_size(second), 22U);
    EXPECT_EQ(json_integer_value(json_object_get(second, "radio")), 1);
    EXPECT_EQ(json_integer_value(json_object_get(second, "failed")), 7);
    EXPECT_TRUE(json_is_integer(json_object_get(second, "rx_bytes")));
    EXPECT_TRUE(json_is_null(json_object_get(second, "tx_bytes")));
}

TEST(Argument, a_record_of_all_vaps_has_room_for_each_and_tells_which_it_is) {
    Argument argument = empty_argument(vaps);
    auto* record = pass<vap_statistics*>(argument);
    record[18] = {1, 2, 3, 4, 5, uint64_t{1} << 63};
    record[31].tx_errors = INT64_MAX;
    const std::string shown = shown_argument(vaps, argument);
    EXPECT_EQ(std::count(shown.begin(), shown.end(), '\n'), 1 + 1 + 32);
    EXPECT_NE(
        shown.find("\n  radio 1 VAP 2   1         2           3         4           5         "
                   " 9223372036854775808\n"),
        std::string::npos)
        << shown;
    const Json json = argument_json(vaps, argument);
    ASSERT_EQ(json_array_size(json.get()), 32U);
    EXPECT_EQ(json_excerpt(json_array_get(json.get(), 0)),
              R"({"radio":0,"vap":0,"rx_bytes":null,"rx_packets":null,"tx_...)");
    const json_t* third = json_array_get(json.get(), 18);
    EXPECT_EQ(json_integer_value(json_object_get(third, "radio")), 1);
    EXPECT_EQ(json_integer_value(json_object_get(third, "vap")), 2);
    EXPECT_EQ(json_integer_value(json_object_get(third, "rx_errors")), 5);
    EXPECT_EQ(json_number_value(json_object_get(third, "tx_errors")), 9223372036854775808.0);
    const json_t* last = json_array_get(json.get(), 31);
    EXPECT_EQ(json_integer_value(json_object_get(last, "tx_errors")), INT64_MAX);
}

namespace {

struct Laid {
    const char* record;
    const char* member;
    size_t offset;
};

// Where the library's agents have every member.
const Laid layout[] = {
#define ORLO_RECORD(name, size, ...)
#define ORLO_FIELD(name, field, ...) {#name, #field, offsetof(name, field)},
#include "../abi/layout.def"
#undef ORLO_RECORD
#undef ORLO_FIELD
};

} // namespace

TEST(Argument, records_that_are_filled_in_show_each_member_from_its_place) {
    for (const FilledRecord* record : {&radio_statistics_record, &vap_statistics_record}) {
        size_t next = 0;
        for (const Laid& laid : layout) {
            if (record->name != std::string(laid.record)) {
                continue;
            }
            ASSERT_LT(next, record->counters.size()) << laid.member;
            EXPECT_STREQ(record->counters[next].name, laid.member);
            EXPECT_EQ(record->counters[next].offset, laid.offset) << laid.member;
            next++;
        }
        EXPECT_EQ(next, record->counters.size());
        EXPECT_GT(next, 0U);
    }
}
