// SPDX-License-Identifier: MIT
// The script that makes a time zone's POSIX text, and the clock's reading of it.
#include "program.h"

#include <gtest/gtest.h>

using namespace orlo::test;

namespace {

Outcome zone(const std::string& words) {
    return shell("lua /usr/lib/lua/luci/chtimezone.lua " + words);
}

// The rule that the library gives where none is configured.
constexpr char usual_rule[] = " 60 3,2,0,2,0 11,1,0,2,0";

std::string standard_time(const std::string& name) {
    return zone(name + " 0" + usual_rule).out;
}

std::string daylight_saving(const std::string& name, const std::string& rule) {
    return zone(name + " 1 " + rule).out;
}

TEST(TimeZone, has_its_standard_time_alone_without_daylight_saving) {
    EXPECT_EQ(standard_time("UTC"), "UTC0\n");
    EXPECT_EQ(standard_time("Europe/Vienna"), "CET-1\n");
    EXPECT_EQ(standard_time("America/New_York"), "EST5\n");
    EXPECT_EQ(standard_time("America/St_Johns"), "NST3:30\n");
    EXPECT_EQ(standard_time("Asia/Kolkata"), "IST-5:30\n");
    EXPECT_EQ(standard_time("Asia/Kathmandu"), "<+0545>-5:45\n");
    EXPECT_EQ(standard_time("America/Sao_Paulo"), "<-03>3\n");
    EXPECT_EQ(standard_time("Australia/Sydney"), "AEST-10\n");
}

TEST(TimeZone, with_the_rule_of_its_country_has_the_text_of_its_country) {
    EXPECT_EQ(daylight_saving("Europe/Vienna", "60 3,5,0,2,0 10,5,0,3,0"),
              "CET-1CEST,M3.5.0,M10.5.0/3\n");
    EXPECT_EQ(daylight_saving("Europe/London", "60 3,5,0,1,0 10,5,0,2,0"),
              "GMT0BST,M3.5.0/1,M10.5.0\n");
    EXPECT_EQ(daylight_saving("America/New_York", "60 3,2,0,2,0 11,1,0,2,0"),
              "EST5EDT,M3.2.0,M11.1.0\n");
    EXPECT_EQ(daylight_saving("Australia/Sydney", "60 10,1,0,2,0 4,1,0,3,0"),
              "AEST-10AEDT,M10.1.0,M4.1.0/3\n");
    EXPECT_EQ(daylight_saving("America/Santiago", "60 9,1,6,24,0 4,1,6,24,0"),
              "<-04>4<-03>,M9.1.6/24,M4.1.6/24\n");
}

TEST(TimeZone, takes_any_rule_and_offset) {
    EXPECT_EQ(daylight_saving("Europe/Vienna", "120 1,1,1,0,30 12,4,6,23,59"),
              "CET-1CEST-3,M1.1.1/0:30,M12.4.6/23:59\n");
    EXPECT_EQ(daylight_saving("America/St_Johns", "30 3,2,0,2,5 11,1,0,2,0"),
              "NST3:30NDT3,M3.2.0/2:05,M11.1.0\n");
    EXPECT_EQ(daylight_saving("UTC", "90 3,2,0,2,0 11,1,0,2,0"),
              "UTC0UTCDST-1:30,M3.2.0,M11.1.0\n");
    EXPECT_EQ(daylight_saving("Europe/Vienna", "0 3,2,0,2,0 11,1,0,2,0"),
              "CET-1CEST-1,M3.2.0,M11.1.0\n");
}

TEST(TimeZone, without_daylight_saving_of_its_own_gets_a_name_for_it) {
    EXPECT_EQ(daylight_saving("Asia/Tokyo", usual_rule), "JST-9JDT,M3.2.0,M11.1.0\n");
    EXPECT_EQ(daylight_saving("Africa/Nairobi", usual_rule), "EAT-3EATDST,M3.2.0,M11.1.0\n");
    EXPECT_EQ(daylight_saving("Asia/Tehran", usual_rule), "<+0330>-3:30<+0430>,M3.2.0,M11.1.0\n");
    EXPECT_EQ(daylight_saving("Atlantic/Cape_Verde", usual_rule), "<-01>1<+00>,M3.2.0,M11.1.0\n");
}

TEST(TimeZone, of_ireland_has_its_winter_as_standard_time) {
    EXPECT_EQ(standard_time("Europe/Dublin"), "GMT0\n");
    EXPECT_EQ(daylight_saving("Europe/Dublin", "60 3,5,0,1,0 10,5,0,2,0"),
              "GMT0IST,M3.5.0/1,M10.5.0\n");
}

TEST(TimeZone, of_another_saving_than_its_own_is_named_by_its_offset) {
    EXPECT_EQ(daylight_saving("Antarctica/Troll", usual_rule), "<+00>0<+01>,M3.2.0,M11.1.0\n");
}

TEST(TimeZone, that_is_unknown_has_no_text) {
    for (const char* name :
         {"Europe/Atlantis", "europe/vienna", "''", "'Europe/Vienna '", "'.*'"}) {
        const Outcome outcome = zone(name + std::string(" 0") + usual_rule);
        EXPECT_EQ(outcome.out, "") << name;
        EXPECT_NE(outcome.err.find("unknown time zone"), std::string::npos) << outcome.err;
        EXPECT_EQ(outcome.status, 1);
    }
}

TEST(TimeZone, with_a_wrong_rule_has_no_text) {
    for (const char* words :
         {"60 0,2,0,2,0 11,1,0,2,0", "60 13,2,0,2,0 11,1,0,2,0", "60 3,0,0,2,0 11,1,0,2,0",
          "60 3,6,0,2,0 11,1,0,2,0", "60 3,2,7,2,0 11,1,0,2,0", "60 3,2,0,25,0 11,1,0,2,0",
          "60 3,2,0,2,60 11,1,0,2,0", "60 3,2,0,2,0 11,1,0,-1,0", "60 3,2,0,2 11,1,0,2,0",
          "60 3,2,0,2,0,0 11,1,0,2,0", "60 '' ''", "x 3,2,0,2,0 11,1,0,2,0",
          "-60 3,2,0,2,0 11,1,0,2,0", "721 3,2,0,2,0 11,1,0,2,0", "'' 3,2,0,2,0 11,1,0,2,0"}) {
        const Outcome outcome = zone(std::string("UTC 1 ") + words);
        EXPECT_EQ(outcome.out, "") << words;
        EXPECT_NE(outcome.err.find("wrong"), std::string::npos) << words << outcome.err;
        EXPECT_EQ(outcome.status, 1);
    }
    EXPECT_EQ(zone("UTC 0").status, 1);
}

TEST(TimeZone, is_the_one_in_which_the_clock_shows_its_time) {
    // At 2031-01-15 and 2031-07-15, 12:00 UTC.
    const std::string both = "date -d @1926244800 '+%H:%M %Z'; date -d @1941883200 '+%H:%M %Z'";
    const auto shown_in = [&both](const std::string& words) {
        return shell("lua /usr/lib/lua/luci/chtimezone.lua " + words + " >/etc/TZ; " + both).out;
    };
    EXPECT_EQ(shown_in("UTC 0 60 3,2,0,2,0 11,1,0,2,0"), "12:00 UTC\n12:00 UTC\n");
    EXPECT_EQ(shown_in("Europe/Vienna 0 60 3,5,0,2,0 10,5,0,3,0"), "13:00 CET\n13:00 CET\n");
    EXPECT_EQ(shown_in("Europe/Vienna 1 60 3,5,0,2,0 10,5,0,3,0"), "13:00 CET\n14:00 CEST\n");
    EXPECT_EQ(shown_in("Europe/Dublin 1 60 3,5,0,1,0 10,5,0,2,0"), "12:00 GMT\n13:00 IST\n");
    EXPECT_EQ(shown_in("Australia/Sydney 1 60 10,1,0,2,0 4,1,0,3,0"), "23:00 AEDT\n22:00 AEST\n");
    EXPECT_EQ(shown_in("Asia/Tehran 1 30 3,2,0,2,0 11,1,0,2,0"), "15:30 +0330\n16:00 +04\n");
    EXPECT_EQ(shown_in("America/New_York 1 90 3,2,0,2,0 11,1,0,2,0"), "07:00 EST\n08:30 EDT\n");
}

TEST(TimeZone, is_recorded_when_it_is_made) {
    zone("Europe/Vienna 0 60 3,2,0,2,0 11,1,0,2,0");
    EXPECT_EQ(read_file("/var/log/journal"),
              "chtimezone.lua Europe/Vienna 0 60 3,2,0,2,0 11,1,0,2,0\n");
}

} // namespace
