// SPDX-License-Identifier: MIT
// The clock: set by an NTP server or by hand.
#include "system/service.h"

#include <climits>

namespace orlo::test {

// ---- By an NTP server ----

class NtpTime : public SystemService {
protected:
    const std::string own_ = "log api_apply_systime_ntp: ";

    int apply(const char* server, int interval) {
        door.forget();
        return ops.api_apply_systime_ntp(server, interval);
    }
};

TEST_F(NtpTime, IsStagedWithItsServerAndInterval) {
    EXPECT_EQ(apply("time.example", 7200), 0);
    EXPECT_THAT(door.trace(),
                ElementsAre(own_ + "Entering...", own_ + "server: time.example, interval: 7200",
                            "set system.systime.time_status=1",
                            "set system.systime.ntpserver=time.example",
                            "set system.systime.interval=7200", own_ + "End... return: Success"));
    EXPECT_EQ(committed_value("system.systime.ntpserver"), "pool.ntp.example");
    EXPECT_EQ(restarted(), "ntp-0");
}

TEST_F(NtpTime, WithoutAPositiveIntervalKeepsTheInterval) {
    for (int interval : {0, -1, INT_MIN}) {
        EXPECT_EQ(apply("time.example", interval), 0);
        EXPECT_EQ(staged_value("system.systime.interval"), "3600") << interval;
        EXPECT_THAT(door.trace({"set"}), testing::SizeIs(2));
    }
    EXPECT_EQ(apply("time.example", 1), 0);
    EXPECT_EQ(staged_value("system.systime.interval"), "1");
    EXPECT_EQ(apply("time.example", INT_MAX), 0);
    EXPECT_EQ(staged_value("system.systime.interval"), "2147483647");
}

TEST_F(NtpTime, NeedsAServer) {
    stage_another_change();
    EXPECT_EQ(apply(nullptr, 60), -1);
    EXPECT_THAT(door.trace(),
                ElementsAre(own_ + "Entering...", own_ + "Error: server is NULL", "revert all"));
    EXPECT_THAT(staged(), IsEmpty());
    EXPECT_EQ(restarted(), "");
}

TEST_F(NtpTime, TriesEveryWriteAndDiscardsAllWhenOneFails) {
    for (int nth = 1; nth <= 3; nth++) {
        stage_another_change();
        door.fail(Call::uci_set, nth);
        EXPECT_EQ(apply("time.example", 60), -1);
        EXPECT_THAT(door.trace({"set"}), testing::SizeIs(3)) << nth;
        EXPECT_EQ(door.trace({"revert"}), Trace{"revert all"});
        EXPECT_EQ(door.trace().back(), own_ + "End... return: Fail");
        EXPECT_THAT(staged(), IsEmpty());
    }
    EXPECT_EQ(restarted(), "");
}

TEST_F(NtpTime, TakesTheServerAsItIs) {
    EXPECT_EQ(apply("", 0), 0);
    EXPECT_EQ(staged_value("system.systime.ntpserver"), "(none)");
    EXPECT_EQ(apply("a b;'\"$(x)", 0), 0);
    EXPECT_EQ(staged_value("system.systime.ntpserver"), "a b;'\"$(x)");
}

// ---- By hand ----

class ManualTime : public SystemService {
protected:
    const std::string own_ = "log api_apply_systime_manual: ";

    int apply(int year, int month, int day, int hour = 0, int minute = 0, int preserve = 0) {
        door.forget();
        return ops.api_apply_systime_manual(preserve, year, month, day, hour, minute);
    }
};

TEST_F(ManualTime, IsStagedAndSetsTheClock) {
    EXPECT_EQ(apply(2031, 5, 6, 7, 8), 0);
    EXPECT_THAT(door.trace(),
                ElementsAre(own_ + "Entering... 2031/5/6 7:8 ", "set system.systime.time_status=0",
                            "set system.systime.year=2031", "set system.systime.month=5",
                            "set system.systime.day=6", "set system.systime.hour=7",
                            "set system.systime.min=8", "run date -s '2031-05-06 07:08:00'",
                            own_ + "End... return: Success"));
    EXPECT_THAT(journal(), ElementsAre("date -s '2031-05-06 07:08:00'"));
    EXPECT_EQ(committed_value("system.systime.year"), "(none)");
    EXPECT_EQ(restarted(), "ntp-0");
}

TEST_F(ManualTime, ThatPreservesTheTimeSourceSetsTheClockAndRestartsNothing) {
    for (int preserve : {1, -1, 2}) {
        EXPECT_EQ(apply(2031, 5, 6, 7, 8, preserve), 0);
        EXPECT_EQ(staged_value("system.systime.time_status"), "1") << preserve;
        EXPECT_THAT(door.trace({"set", "run"}),
                    ElementsAre("set system.systime.year=2031", "set system.systime.month=5",
                                "set system.systime.day=6", "set system.systime.hour=7",
                                "set system.systime.min=8", "run date -s '2031-05-06 07:08:00'"));
    }
    EXPECT_EQ(restarted(), "");
}

TEST_F(ManualTime, TakesTheDaysThatExist) {
    const struct {
        int year;
        int month;
        int day;
    } rows[] = {{1970, 1, 1},   {2023, 1, 31},  {2023, 2, 28},  {2024, 2, 29},
                {2100, 2, 29},  {2023, 3, 31},  {2023, 4, 30},  {2023, 5, 31},
                {2023, 6, 30},  {2023, 7, 31},  {2023, 8, 31},  {2023, 9, 30},
                {2023, 10, 31}, {2023, 11, 30}, {2023, 12, 31}, {2000, 2, 29}};
    for (const auto& row : rows) {
        EXPECT_EQ(apply(row.year, row.month, row.day), 0)
            << row.year << '-' << row.month << '-' << row.day;
        EXPECT_THAT(door.trace({"run"}), testing::SizeIs(1));
    }
}

TEST_F(ManualTime, RefusesDaysThatDoNotExist) {
    const struct {
        int year;
        int month;
        int day;
    } rows[] = {
        {1969, 12, 31}, {0, 1, 1},          {-1, 1, 1},     {INT_MIN, 1, 1}, {2023, 2, 29},
        {2024, 2, 30},  {2022, 2, 29},      {2023, 1, 32},  {2023, 3, 32},   {2023, 4, 31},
        {2023, 5, 32},  {2023, 6, 31},      {2023, 7, 32},  {2023, 8, 32},   {2023, 9, 31},
        {2023, 10, 32}, {2023, 11, 31},     {2023, 12, 32}, {2023, 0, 1},    {2023, 13, 1},
        {2023, -1, 1},  {2023, INT_MAX, 1}, {2023, 1, 0},   {2023, 1, -1},   {2023, 1, INT_MAX}};
    for (const auto& row : rows) {
        EXPECT_EQ(apply(row.year, row.month, row.day), -1)
            << row.year << '-' << row.month << '-' << row.day;
        EXPECT_THAT(door.trace({"set", "run"}), IsEmpty());
    }
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(ManualTime, TakesTheTimesOfADay) {
    EXPECT_EQ(apply(2031, 1, 1, 0, 0), 0);
    EXPECT_EQ(apply(2031, 1, 1, 23, 59), 0);
    const struct {
        int hour;
        int minute;
    } rows[] = {{24, 0}, {-1, 0}, {0, 60}, {0, -1}, {INT_MAX, 0}, {0, INT_MIN}};
    for (const auto& row : rows) {
        EXPECT_EQ(apply(2031, 1, 1, row.hour, row.minute), -1) << row.hour << ':' << row.minute;
        EXPECT_THAT(door.trace({"set", "run"}), IsEmpty());
    }
}

TEST_F(ManualTime, ThatIsRefusedDiscardsWhatIsStaged) {
    stage_another_change();
    EXPECT_EQ(apply(2023, 2, 29, 1, 2), -1);
    EXPECT_THAT(door.trace(), ElementsAre(own_ + "Entering... 2023/2/29 1:2 ",
                                          own_ + "Validate manual time '2023/2/29 1:2' failed",
                                          "revert all", own_ + "End... return: Fail"));
    EXPECT_THAT(staged(), IsEmpty());
    EXPECT_EQ(restarted(), "");
}

TEST_F(ManualTime, TriesEveryWriteAndLeavesTheClockAloneWhenOneFails) {
    for (int nth = 1; nth <= 6; nth++) {
        stage_another_change();
        door.fail(Call::uci_set, nth);
        EXPECT_EQ(apply(2031, 5, 6, 7, 8), -1);
        EXPECT_THAT(door.trace({"set"}), testing::SizeIs(6)) << nth;
        EXPECT_THAT(door.trace({"run"}), IsEmpty());
        EXPECT_EQ(door.trace({"revert"}), Trace{"revert all"});
        EXPECT_EQ(door.trace().back(), own_ + "End... return: Fail");
        EXPECT_THAT(staged(), IsEmpty());
    }
    EXPECT_EQ(restarted(), "");
}

TEST_F(ManualTime, ThatTheClockDoesNotTakeIsDiscarded) {
    for (const char* script : {"exit 1", "exit 255", "kill -9 $$"}) {
        replace_tool("date", script);
        EXPECT_EQ(apply(2031, 5, 6, 7, 8), -1) << script;
        const Trace lines = door.trace();
        EXPECT_THAT(Trace(lines.end() - 3, lines.end()),
                    ElementsAre(own_ + "Error: Can not set manual time", "revert all",
                                own_ + "End... return: Fail"));
        EXPECT_THAT(staged(), IsEmpty());
    }
    door.fail(Call::system);
    EXPECT_EQ(apply(2031, 5, 6, 7, 8), -1);
    EXPECT_EQ(door.trace({"log"})[1], own_ + "Error: Can not set manual time");
    EXPECT_EQ(restarted(), "");
}

TEST_F(ManualTime, HasNoLastYearButSevenDigitsAreStored) {
    replace_tool("date", "exit 0");
    EXPECT_EQ(apply(9999999, 12, 31), 0);
    EXPECT_EQ(staged_value("system.systime.year"), "9999999");
    EXPECT_EQ(apply(12345678, 12, 31, 23, 59), 0);
    EXPECT_EQ(staged_value("system.systime.year"), "1234567");
    EXPECT_EQ(door.trace({"run"}), Trace{"run date -s '12345678-12-31 23:59:00'"});
    EXPECT_EQ(apply(INT_MAX, 12, 31, 23, 59), 0);
    EXPECT_EQ(door.trace({"run"}), Trace{"run date -s '2147483647-12-31 23:59:00'"});
}

} // namespace orlo::test
