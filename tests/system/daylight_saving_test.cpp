// SPDX-License-Identifier: MIT
// The daylight-saving rule.
#include "system/service.h"

#include <climits>
#include <cstring>

namespace orlo::test {

class DaylightSaving : public SystemService {
protected:
    const std::string own_ = "log api_apply_daylight_saving: ";
    dst_rule start_ = rule("last", "Sunday", "March", 2, 0);
    dst_rule end_ = rule("last", "Sunday", "October", 3, 0);

    static void put(char (&array)[16], const std::string& text) {
        memset(array, 0, sizeof array);
        memcpy(array, text.data(), std::min(text.size(), sizeof array));
    }

    static dst_rule rule(const char* ordinal, const char* weekday, const char* month, int hour,
                         int minute) {
        dst_rule made = {};
        put(made.ordinal, ordinal);
        put(made.weekday, weekday);
        put(made.month, month);
        made.hour = hour;
        made.minute = minute;
        return made;
    }

    int apply(int enable = 1, int offset = 60) {
        door.forget();
        return ops.api_apply_daylight_saving(enable, &start_, &end_, offset);
    }

    std::string stored_start() {
        EXPECT_EQ(apply(), 0);
        return staged_value("system.systime.dst_start");
    }
};

TEST_F(DaylightSaving, IsStagedAndWrittenWithTheZone) {
    configure("system.systime.zonename", "Europe/Vienna");
    EXPECT_EQ(apply(), 0);
    const std::string command = "/usr/bin/lua /usr/lib/lua/luci/chtimezone.lua "
                                "\"Europe/Vienna\" 1 60 \"3,5,0,2,0\" \"10,5,0,3,0\"";
    EXPECT_THAT(
        door.trace(),
        ElementsAre(own_ + "Entering... ", own_ + "dst_enable: 1 (1) ",
                    "set system.systime.dst_enable=1", own_ + "dst_end: 3,5,0,2,0 (9) ",
                    "set system.systime.dst_start=3,5,0,2,0", own_ + "dst_end: 10,5,0,3,0 (10) ",
                    "set system.systime.dst_end=10,5,0,3,0", own_ + "dst_offset: 60 (2) ",
                    "set system.systime.dst_offset=60", "log generate_timezone: cmd: " + command,
                    "read " + command, "set system.systime.timezone=CET-1CEST,M3.5.0,M10.5.0/3",
                    own_ + "End... return: Success "));
    EXPECT_EQ(read_file("/etc/TZ"), "CET-1CEST,M3.5.0,M10.5.0/3");
    EXPECT_EQ(committed_value("system.systime.dst_enable"), "0");
    EXPECT_EQ(restarted(), "") << "no service";
}

TEST_F(DaylightSaving, ThatIsOffIsStagedTheSame) {
    configure("system.systime.zonename", "Europe/Vienna");
    EXPECT_EQ(apply(0), 0);
    EXPECT_EQ(staged_value("system.systime.dst_enable"), "0");
    EXPECT_EQ(staged_value("system.systime.dst_start"), "3,5,0,2,0");
    EXPECT_EQ(read_file("/etc/TZ"), "CET-1");
}

TEST_F(DaylightSaving, NumbersAreStagedAsTheyAre) {
    EXPECT_EQ(apply(INT_MIN, -2000000000), 0);
    EXPECT_EQ(staged_value("system.systime.dst_enable"), "-2147483648");
    EXPECT_EQ(staged_value("system.systime.dst_offset"), "-2000000000");
    EXPECT_THAT(door.trace(), testing::Contains(own_ + "dst_enable: -2147483648 (11) "));
    EXPECT_THAT(door.trace(), testing::Contains(own_ + "dst_offset: -2000000000 (11) "));
}

TEST_F(DaylightSaving, NumbersReachTheScriptCutAtEightCharacters) {
    EXPECT_EQ(apply(INT_MIN, -2000000000), 0);
    EXPECT_EQ(door.trace({"read"}),
              Trace{"read /usr/bin/lua /usr/lib/lua/luci/chtimezone.lua \"UTC\" -2147483 "
                    "-2000000 \"3,5,0,2,0\" \"10,5,0,3,0\""});
}

TEST_F(DaylightSaving, EachMonthHasItsCode) {
    const char* const months[] = {"January",   "February", "March",    "April",
                                  "May",       "June",     "July",     "August",
                                  "September", "October",  "November", "December"};
    for (int i = 0; i < 12; i++) {
        put(start_.month, months[i]);
        EXPECT_EQ(stored_start(), std::to_string(i + 1) + ",5,0,2,0");
    }
}

TEST_F(DaylightSaving, EachOrdinalHasItsCode) {
    const char* const ordinals[] = {"first", "second", "third", "fourth", "last"};
    for (int i = 0; i < 5; i++) {
        put(start_.ordinal, ordinals[i]);
        EXPECT_EQ(stored_start(), "3," + std::to_string(i + 1) + ",0,2,0");
    }
}

TEST_F(DaylightSaving, EachWeekdayHasItsCode) {
    const char* const weekdays[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                    "Thursday", "Friday", "Saturday"};
    for (int i = 0; i < 7; i++) {
        put(start_.weekday, weekdays[i]);
        EXPECT_EQ(stored_start(), "3,5," + std::to_string(i) + ",2,0");
    }
}

TEST_F(DaylightSaving, ARuleOfTheLastMinuteIsStoredInFull) {
    start_ = rule("last", "Saturday", "December", 23, 59);
    EXPECT_EQ(stored_start(), "12,5,6,23,59");
}

TEST_F(DaylightSaving, HourAndMinuteAreNotCheckedButCut) {
    start_ = rule("last", "Saturday", "December", -1, 99);
    EXPECT_EQ(stored_start(), "12,5,6,-1,99");
    start_ = rule("last", "Saturday", "December", 1234567, 9);
    EXPECT_EQ(stored_start(), "12,5,6,1234567,");
    start_ = rule("last", "Saturday", "December", INT_MIN, INT_MIN);
    EXPECT_EQ(stored_start(), "12,5,6,-2147483");
    EXPECT_THAT(door.trace(), testing::Contains(own_ + "dst_end: 12,5,6,-2147483 (15) "));
}

TEST_F(DaylightSaving, WordsAreComparedExactly) {
    const struct {
        char (dst_rule::*field)[16];
        const char* word;
        const char* message;
    } rows[] = {
        {&dst_rule::month, "march", "Unknown month: march "},
        {&dst_rule::month, "Marc", "Unknown month: Marc "},
        {&dst_rule::month, "March ", "Unknown month: March  "},
        {&dst_rule::month, "", "Unknown month:  "},
        {&dst_rule::month, "3", "Unknown month: 3 "},
        {&dst_rule::month, "MarchMarchMarchMarch", "Unknown month: MarchMarchMarchM "},
        {&dst_rule::ordinal, "First", "Unknown ordinal: First "},
        {&dst_rule::ordinal, "fifth", "Unknown ordinal: fifth "},
        {&dst_rule::ordinal, "last0123456789abcdef", "Unknown ordinal: last0123456789ab "},
        {&dst_rule::weekday, "sunday", "Unknown weekday: sunday "},
        {&dst_rule::weekday, "Sun", "Unknown weekday: Sun "},
        {&dst_rule::weekday, "Sunday0123456789abc", "Unknown weekday: Sunday0123456789 "},
    };
    for (dst_rule* changed : {&start_, &end_}) {
        for (const auto& row : rows) {
            const dst_rule before = *changed;
            put(changed->*row.field, row.word);
            stage_another_change();
            EXPECT_EQ(apply(), -1);
            const Trace lines = door.trace();
            EXPECT_THAT(
                Trace(lines.end() - 3, lines.end()),
                ElementsAre(own_ + row.message, "revert all", own_ + "End... return: Fail "));
            EXPECT_THAT(door.trace({"set"}), testing::SizeIs(changed == &start_ ? 1 : 2))
                << "nothing after the rule";
            EXPECT_THAT(staged(), IsEmpty());
            *changed = before;
        }
    }
    EXPECT_EQ(read_file("/etc/TZ"), "UTC0\n");
}

TEST_F(DaylightSaving, TheMonthIsLookedAtFirstThenTheOrdinal) {
    start_ = rule("x", "y", "z", 0, 0);
    EXPECT_EQ(apply(), -1);
    EXPECT_THAT(door.trace(), testing::Contains(own_ + "Unknown month: z "));
    put(start_.month, "May");
    EXPECT_EQ(apply(), -1);
    EXPECT_THAT(door.trace(), testing::Contains(own_ + "Unknown ordinal: x "));
}

TEST_F(DaylightSaving, EachFailedWriteDiscardsEverything) {
    const char* const writes[] = {"dst_enable=1", "dst_start=3,5,0,2,0", "dst_end=10,5,0,3,0",
                                  "dst_offset=60", "timezone=UTC0UTCDST,M3.5.0,M10.5.0/3"};
    for (int i = 0; i < 5; i++) {
        stage_another_change();
        door.fail(Call::uci_set, i + 1);
        EXPECT_EQ(apply(), -1);
        const Trace lines = door.trace();
        EXPECT_THAT(Trace(lines.end() - 4, lines.end()),
                    ElementsAre(std::string("set system.systime.") + writes[i] + " (failed)",
                                own_ + "Set Value Failed", "revert all",
                                own_ + "End... return: Fail "));
        EXPECT_THAT(staged(), IsEmpty());
        EXPECT_EQ(read_file("/etc/TZ"), "UTC0\n");
    }
}

TEST_F(DaylightSaving, WithoutARunningScriptIsDiscarded) {
    stage_another_change();
    door.fail(Call::popen);
    EXPECT_EQ(apply(), -1);
    const Trace lines = door.trace();
    EXPECT_THAT(Trace(lines.end() - 4, lines.end()),
                ElementsAre("log generate_timezone: Error: timezone generate process can't run.",
                            own_ + "Error: failed to generate timezone", "revert all",
                            own_ + "End... return: Fail "));
    EXPECT_THAT(staged(), IsEmpty());
    EXPECT_EQ(read_file("/etc/TZ"), "UTC0\n");
}

TEST_F(DaylightSaving, WithoutAnAnswerIsAZoneWithoutText) {
    replace_tool("chtimezone.lua", "exit 1");
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("system.systime.timezone"), "(none)");
    EXPECT_EQ(read_file("/etc/TZ"), "");
}

TEST_F(DaylightSaving, NeedsBothRules) {
    for (bool with_start : {false, true}) {
        stage_another_change();
        door.forget();
        EXPECT_EQ(ops.api_apply_daylight_saving(1, with_start ? &start_ : nullptr,
                                                with_start ? nullptr : &end_, 60),
                  -1);
        EXPECT_THAT(door.trace(), ElementsAre(own_ + "Entering... ", "revert all",
                                              own_ + "End... return: Fail "));
        EXPECT_THAT(staged(), IsEmpty());
    }
}

TEST_F(DaylightSaving, UsesTheUsualZoneWhereNoneIsStored) {
    configure("system.systime.zonename", "");
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(door.trace({"read"}),
              Trace{"read /usr/bin/lua /usr/lib/lua/luci/chtimezone.lua \"UTC\" 1 60 "
                    "\"3,5,0,2,0\" \"10,5,0,3,0\""});
}

} // namespace orlo::test
