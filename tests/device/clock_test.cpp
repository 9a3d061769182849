// SPDX-License-Identifier: MIT
// The machine's clock is out of reach on a virtual access point. The real calls are tried with the
// present time only, so that even a hole would change nothing.
#include "program.h"

#include <cerrno>
#include <cmath>
#include <ctime>
#include <gtest/gtest.h>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/time.h>

using namespace orlo::test;

namespace {

double seconds(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

/// Changes only when somebody sets the clock.
double clock_offset() {
    return seconds(CLOCK_REALTIME) - seconds(CLOCK_MONOTONIC);
}

bool setting_the_clock_is_refused() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return clock_settime(CLOCK_REALTIME, &now) == -1 && errno == EPERM;
}

TEST(Clock, setting_it_is_refused) {
    EXPECT_TRUE(setting_the_clock_is_refused());
    timeval now{};
    gettimeofday(&now, nullptr);
    EXPECT_EQ(settimeofday(&now, nullptr), -1);
    EXPECT_EQ(errno, EPERM);
}

TEST(Clock, programs_started_as_root_cannot_gain_the_right_back) {
    // With namespaces the right is there but counts inside only; the other test shows that.
    const bool in_namespaces = read_file("/etc/virtual-ap") == "namespaces\n";
    for (const int right : {CAP_SYS_TIME, CAP_SYS_BOOT, CAP_NET_ADMIN, CAP_SYS_ADMIN, CAP_KILL,
                            CAP_SYS_MODULE, CAP_NET_RAW}) {
        EXPECT_EQ(prctl(PR_CAPBSET_READ, right), in_namespaces ? 1 : 0) << right;
    }
}

TEST(Clock, date_with_a_new_time_is_recorded_and_leaves_the_machines_clock_alone) {
    ASSERT_TRUE(setting_the_clock_is_refused());
    const double before = clock_offset();
    const Outcome outcome = shell("TZ=UTC0 date -s '2031-05-06 07:08:00'");
    EXPECT_EQ(outcome.out, "Tue May  6 07:08:00 UTC 2031\n");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(read_file("/var/log/journal"), "date -s '2031-05-06 07:08:00'\n");
    EXPECT_LT(std::abs(clock_offset() - before), 0.5);
}

TEST(Clock, every_way_to_give_date_a_new_time_ends_at_the_journal) {
    ASSERT_TRUE(setting_the_clock_is_refused());
    const double before = clock_offset();
    for (const char* words :
         {"-s203105060708", "--set=203105060708", "--set 203105060708", "203105060708",
          "-u 203105060708", "-d 203005060708 -s 203105060708"}) {
        const Outcome outcome = shell(std::string("TZ=UTC0 date ") + words);
        EXPECT_EQ(outcome.out, "Tue May  6 07:08:00 UTC 2031\n") << words << outcome.err;
    }
    EXPECT_LT(std::abs(clock_offset() - before), 0.5);
}

// The access point's own idea of the time.

TEST(Clock, of_the_access_point_runs_on_from_the_new_time) {
    shell("date -s '2031-05-06 07:08:00'");
    const std::string now = shell("date '+%Y-%m-%d %H:%M'").out;
    EXPECT_TRUE(now == "2031-05-06 07:08\n" || now == "2031-05-06 07:09\n") << now;
    write_file("/var/run/device/clock", "-86400\n");
    EXPECT_NEAR(std::stod(shell("date +%s").out), seconds(CLOCK_REALTIME) - 86400, 5);
}

TEST(Clock, of_the_access_point_takes_local_time_unless_told_otherwise) {
    write_file("/etc/TZ", "CET-1");
    EXPECT_EQ(shell("date -s '2031-05-06 07:08:00'").out, "Tue May  6 07:08:00 CET 2031\n");
    EXPECT_EQ(shell("date -u +%H").out, "06\n");
    EXPECT_EQ(shell("date -u -s '2031-05-06 07:08:00'").out, "Tue May  6 07:08:00 UTC 2031\n");
    EXPECT_EQ(shell("date -s '2031-05-06 07:08:00' -u").out, "Tue May  6 07:08:00 UTC 2031\n");
    EXPECT_EQ(shell("date +%H").out, "08\n");
    EXPECT_EQ(shell("TZ=EST5 date +%H").out, "02\n");
}

TEST(Clock, of_the_access_point_does_not_change_times_that_are_given) {
    shell("date -s '2031-05-06 07:08:00'");
    EXPECT_EQ(shell("date -d @86400 +%s").out, "86400\n");
    shell("touch -d '2020-01-02 03:04:05' /tmp/old");
    EXPECT_EQ(shell("date -r /tmp/old +%Y").out, "2020\n");
}

TEST(Clock, of_the_access_point_keeps_its_time_when_the_new_one_is_none) {
    shell("date -s '2031-05-06 07:08:00'; date -s yesterday");
    EXPECT_EQ(shell("date +%Y").out, "2031\n");
}

TEST(Clock, date_refuses_a_time_that_is_none) {
    const Outcome outcome = shell("date -s yesterday");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "date: invalid date 'yesterday'\n");
}

TEST(Clock, date_refuses_options_it_does_not_know) {
    EXPECT_EQ(shell("date -us 203105060708").err, "date: unknown option \"-us\"\n");
    EXPECT_EQ(shell("date -s '2031-05-06 07:08:00' -x").err, "date: unknown option \"-x\"\n");
    EXPECT_EQ(shell("date +%Y").out, shell("/bin/busybox date +%Y").out) << "nothing was set";
}

TEST(Clock, date_shows_times_as_busybox_does) {
    EXPECT_EQ(shell("TZ=UTC0 date -d @86400 '+%Y-%m-%d %H:%M'").out, "1970-01-02 00:00\n");
    EXPECT_EQ(shell("date +%s").out, std::to_string(time(nullptr)) + "\n");
}

TEST(Clock, sleep_is_recorded_and_takes_a_moment_only) {
    const double before = seconds(CLOCK_MONOTONIC);
    EXPECT_EQ(shell("sleep 20").status, 0);
    EXPECT_LT(seconds(CLOCK_MONOTONIC) - before, 10);
    EXPECT_EQ(read_file("/var/log/journal"), "sleep 20\n");
}

} // namespace
