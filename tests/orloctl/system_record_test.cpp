// SPDX-License-Identifier: MIT
// Settings of the device as the library gets them, and every rule about them.
#include "describe.h"

using namespace orloctl;

namespace {

std::string device(const std::string& members) {
    return R"({"system": {)" + members + "}}";
}

std::string timed(const std::string& members) {
    return device("\"time\": {" + members + "}");
}

std::string manual(const std::string& date, const std::string& more = "") {
    return timed("\"manual\": {" + date + R"(, "hour": 23, "minute": 59)" + more + "}");
}

std::string date(int year, int month, int day) {
    return "\"year\": " + std::to_string(year) + ", \"month\": " + std::to_string(month) +
           ", \"day\": " + std::to_string(day);
}

const std::string march =
    R"({"ordinal": "last", "weekday": "Sunday", "month": "March", "hour": 2})";

std::string saving(const std::string& start, const std::string& more = "") {
    return timed(R"("daylight_saving": {"start": )" + start + ", \"end\": " + march + more + "}");
}

std::string moment(const std::string& ordinal, const std::string& weekday, const std::string& month,
                   const std::string& hour = "2", const std::string& minute = "0") {
    return R"({"ordinal": ")" + ordinal + R"(", "weekday": ")" + weekday + R"(", "month": ")" +
           month + R"(", "hour": )" + hour + R"(, "minute": )" + minute + "}";
}

} // namespace

TEST(SystemRecord, has_what_is_written) {
    const Description description = description_of(device(R"(
        "country": "AT", "leds": false, "reset_button": true,
        "time": {"zone": "Europe/Vienna",
            "daylight_saving": {"enabled": false, "offset": 30,
                "start": {"ordinal": "first", "weekday": "Monday", "month": "April", "hour": 1,
                          "minute": 2},
                "end": {"ordinal": "last", "weekday": "Saturday", "month": "December", "hour": 23,
                        "minute": 59}},
            "manual": {"year": 2026, "month": 7, "day": 8, "hour": 9, "minute": 10,
                       "preserve_time_status": true},
            "ntp": {"server": "192.0.2.1", "interval": 64}},
        "syslog": {"enabled": true, "host": "192.0.2.2", "port": 1514, "severity": 3,
                   "fixed_facility": "local7"},
        "openflow": {"enabled": true, "controllers": [{"index": 2, "address": "192.0.2.3"},
                                                      {"index": 1, "address": ""}],
                     "critical_mode": {"mode": "drop", "timeout": 30}},
        "login": {"username": "admin", "password": "a;b $(c) d"})"));
    const SystemDescription& system = description->system;
    EXPECT_EQ(shown(system.country), "AT");
    EXPECT_EQ(system.leds, 0);
    EXPECT_EQ(system.reset_button, 1);
    EXPECT_EQ(shown(system.time.zone), "Europe/Vienna");
    const DaylightSavingDescription& saving = *system.time.daylight_saving;
    EXPECT_EQ(saving.enabled, 0);
    EXPECT_EQ(saving.offset, 30);
    EXPECT_STREQ(saving.start.ordinal, "first");
    EXPECT_STREQ(saving.start.weekday, "Monday");
    EXPECT_STREQ(saving.start.month, "April");
    EXPECT_EQ(saving.start.hour, 1);
    EXPECT_EQ(saving.start.minute, 2);
    EXPECT_STREQ(saving.end.month, "December");
    EXPECT_EQ(saving.end.hour, 23);
    EXPECT_EQ(saving.end.minute, 59);
    const ManualTimeDescription& manual = *system.time.manual;
    EXPECT_EQ(manual.year, 2026);
    EXPECT_EQ(manual.month, 7);
    EXPECT_EQ(manual.day, 8);
    EXPECT_EQ(manual.hour, 9);
    EXPECT_EQ(manual.minute, 10);
    EXPECT_EQ(manual.preserve_time_status, 1);
    EXPECT_EQ(shown(system.time.ntp->server), "192.0.2.1");
    EXPECT_EQ(system.time.ntp->interval, 64);
    EXPECT_EQ(system.syslog->enabled, 1);
    EXPECT_EQ(shown(system.syslog->host), "192.0.2.2");
    EXPECT_EQ(system.syslog->port, 1514);
    EXPECT_EQ(system.syslog->severity, 3);
    EXPECT_EQ(shown(system.syslog->fixed_facility), "local7");
    EXPECT_EQ(system.openflow.enabled, 1);
    ASSERT_EQ(system.openflow.controllers.count, 2U);
    EXPECT_EQ(system.openflow.controllers.first[0].index, 2);
    EXPECT_EQ(shown(system.openflow.controllers.first[0].address), "192.0.2.3");
    EXPECT_EQ(shown(system.openflow.controllers.first[1].address), "");
    EXPECT_EQ(shown(system.openflow.critical_mode->mode), "drop");
    EXPECT_EQ(system.openflow.critical_mode->timeout, 30);
    EXPECT_EQ(shown(system.login->username), "admin");
    EXPECT_EQ(shown(system.login->password), "a;b $(c) d");
}

TEST(SystemRecord, what_is_left_out_is_left_alone_or_gets_its_default) {
    const Description nothing = description_of("{}");
    const SystemDescription& system = nothing->system;
    EXPECT_EQ(system.country, nullptr);
    EXPECT_EQ(system.leds, not_described);
    EXPECT_EQ(system.reset_button, not_described);
    EXPECT_EQ(system.time.zone, nullptr);
    EXPECT_EQ(system.time.daylight_saving, nullptr);
    EXPECT_EQ(system.time.manual, nullptr);
    EXPECT_EQ(system.time.ntp, nullptr);
    EXPECT_EQ(system.syslog, nullptr);
    EXPECT_EQ(system.openflow.enabled, not_described);
    EXPECT_EQ(system.openflow.controllers.count, 0U);
    EXPECT_EQ(system.openflow.critical_mode, nullptr);
    EXPECT_EQ(system.snmp, nullptr);
    EXPECT_EQ(system.login, nullptr);
    EXPECT_EQ(nothing->portal_address, nullptr);

    const Description some = description_of(device(
        R"("syslog": {"host": "h"}, "time": {"ntp": {"server": "s"}, "daylight_saving": {"start": )" +
        march + ", \"end\": " + march + "}}"));
    EXPECT_EQ(some->system.syslog->enabled, 1);
    EXPECT_EQ(some->system.syslog->port, 514);
    EXPECT_EQ(some->system.syslog->severity, -1);
    EXPECT_EQ(some->system.time.ntp->interval, 0);
    EXPECT_EQ(some->system.time.daylight_saving->enabled, 1);
    EXPECT_EQ(some->system.time.daylight_saving->offset, 60);
    EXPECT_EQ(some->system.time.daylight_saving->start.minute, 0);
}

TEST(SystemRecord, each_rule_of_the_device_has_its_sentence) {
    const Case cases[] = {
        {device(R"("country": "")"), "system.country: is empty"},
        {device(R"("country": "ten letter")"),
         "system.country: a text of 10 bytes is longer than 9"},
        {device(R"("country": "nine char")"), "accepted"},
        {device(R"("leds": 2)"), "system.leds: 2 is not true or false"},
        {device(R"("reset_button": -1)"), "system.reset_button: -1 is not true or false"},
        {device(R"("syslog": {})"), "system.syslog.host: is missing, logging to it is enabled"},
        {device(R"("syslog": {"host": ""})"),
         "system.syslog.host: is missing, logging to it is enabled"},
        {device(R"("syslog": {"enabled": false})"), "accepted"},
        {device(R"("syslog": {"host": "h", "port": 0})"),
         "system.syslog.port: 0 is not in 1..65535"},
        {device(R"("syslog": {"host": "h", "port": 65536})"),
         "system.syslog.port: 65536 is not in 1..65535"},
        {device(R"("syslog": {"host": "h", "port": 65535, "severity": 7})"), "accepted"},
        {device(R"("syslog": {"host": "h", "severity": 8})"),
         "system.syslog.severity: 8 is not in 0..7"},
        {device(R"("openflow": {"enabled": "on"})"),
         "system.openflow.enabled: \"on\" is not true or false"},
        {device(R"("openflow": {"controllers": [{"address": "a"}]})"),
         "system.openflow.controllers[0].index: is missing"},
        {device(R"("openflow": {"controllers": [{"index": 1}]})"),
         "system.openflow.controllers[0].address: is missing"},
        {device(R"("openflow": {"controllers": [{"index": 1, "address": "a"},
                                                {"index": 1, "address": "b"}]})"),
         "system.openflow.controllers[1].index: 1 is described already, by "
         "system.openflow.controllers[0]"},
        {device(R"("openflow": {"critical_mode": {"mode": "open", "timeout": 1}})"),
         "system.openflow.critical_mode.mode: \"open\" is not \"normal\", \"drop\" or \"secure\""},
        {device(R"("openflow": {"critical_mode": {"mode": "normal"}})"),
         "system.openflow.critical_mode.timeout: is missing, only \"secure\" has none"},
        {device(R"("openflow": {"critical_mode": {"mode": "secure"}})"), "accepted"},
        {device(R"("openflow": {"critical_mode": {"mode": "drop", "timeout": 10000000}})"),
         "system.openflow.critical_mode.timeout: 10000000 is not in 0..9999999"},
        {device(R"("login": {"username": "admin"})"), "system.login.password: is missing"},
        {device(R"("login": {"username": "", "password": "p"})"),
         "system.login.username: is empty"},
        {device(R"("login": {"username": "admin", "password": "it's"})"),
         "system.login.password: the shell would act on ' in it"},
        {device(R"("login": {"username": "12345678", "password": ")" + std::string(70, 'p') +
                R"("})"),
         "accepted"},
        {device(R"("login": {"username": "123456789", "password": ")" + std::string(70, 'p') +
                R"("})"),
         "system.login.password: must not have more than 78 bytes together with the username"},
    };
    expect_sentences(cases);
}

TEST(SystemRecord, each_rule_of_the_time_has_its_sentence) {
    const std::string no_day = "system.time.manual.day: the month has no such day";
    const Case cases[] = {
        {timed(R"("zone": "")"), "system.time.zone: is empty"},
        {timed(R"("zone": "Europe/`id`")"), "system.time.zone: the shell would act on ` in it"},
        {timed(R"("zone": ")" + std::string(65, 'z') + "\""),
         "system.time.zone: a text of 65 bytes is longer than 64"},
        {timed(R"("ntp": {})"), "system.time.ntp.server: is missing"},
        {timed(R"("ntp": {"server": ""})"), "system.time.ntp.server: is empty"},
        {timed(R"("ntp": {"server": "s", "interval": -5})"),
         "system.time.ntp.interval: -5 is not in 1..2147483647"},
        {manual(date(1969, 12, 31)), "system.time.manual.year: 1969 is not in 1970..9999"},
        {manual(date(1970, 1, 1)), "accepted"},
        {manual(date(2026, 0, 1)), "system.time.manual.month: 0 is not in 1..12"},
        {manual(date(2026, 13, 1)), "system.time.manual.month: 13 is not in 1..12"},
        {manual(date(2026, 1, 0)), "system.time.manual.day: 0 is not in 1..31"},
        {manual(date(2026, 1, 31)), "accepted"},
        {manual(date(2026, 4, 31)), no_day},
        {manual(date(2026, 6, 31)), no_day},
        {manual(date(2026, 9, 31)), no_day},
        {manual(date(2026, 11, 31)), no_day},
        {manual(date(2026, 11, 30)), "accepted"},
        {manual(date(2023, 2, 29)), no_day},
        {manual(date(2024, 2, 29)), "accepted"},
        {manual(date(2100, 2, 29)), "accepted"}, // for the device, too
        {manual(date(2024, 2, 30)), no_day},
        {timed("\"manual\": {" + date(2026, 1, 1) + R"(, "hour": 24, "minute": 60})"),
         "system.time.manual.hour: 24 is not in 0..23\n"
         "system.time.manual.minute: 60 is not in 0..59"},
        {timed(R"("manual": {})"),
         "system.time.manual.year: is missing\nsystem.time.manual.month: is missing\n"
         "system.time.manual.day: is missing\nsystem.time.manual.hour: is missing\n"
         "system.time.manual.minute: is missing"},
        {timed(R"("ntp": {"server": "s"}, "manual": {)" + date(2026, 1, 1) +
               R"(, "hour": 1, "minute": 1})"),
         "system.time.manual: ends the use of NTP: leave out \"ntp\", or set "
         "\"preserve_time_status\""},
    };
    expect_sentences(cases);
}

TEST(SystemRecord, each_rule_of_daylight_saving_has_its_sentence) {
    const std::string at = "system.time.daylight_saving.";
    const Case cases[] = {
        {saving(march), "accepted"},
        {saving(moment("fifth", "Sunday", "March")),
         at + "start.ordinal: \"fifth\" is not \"first\", \"second\", \"third\", \"fourth\" or "
              "\"last\""},
        {saving(moment("last", "sunday", "March")),
         at + "start.weekday: \"sunday\" is not \"Sunday\", \"Monday\", \"Tuesday\", "
              "\"Wednesday\", \"Thursday\", \"Friday\" or \"Saturday\""},
        {saving(moment("last", "Sunday", "march")),
         at +
             "start.month: \"march\" is not \"January\", \"February\", \"March\", \"April\", "
             "\"May\", \"June\", \"July\", \"August\", \"September\", \"October\", \"November\" or "
             "\"December\""},
        {saving(moment("last", "Sunday", "March", "24", "60")),
         at + "start.hour: 24 is not in 0..23\n" + at + "start.minute: 60 is not in 0..59"},
        {saving("{}"), at + "start.ordinal: is missing\n" + at + "start.weekday: is missing\n" +
                           at + "start.month: is missing\n" + at + "start.hour: is missing"},
        {saving(march, R"(, "offset": 1441)"), at + "offset: 1441 is not in -1440..1440"},
        {saving(march, R"(, "enabled": 2)"), at + "enabled: 2 is not true or false"},
        {saving(moment("seventeen letters!", "Sunday", "March")),
         at + "start.ordinal: a text of 18 bytes is longer than 16"},
    };
    expect_sentences(cases);
    EXPECT_EQ(refusal(saving(moment("seventeen letters!", "x", "y")), false),
              at + "start.ordinal: a text of 18 bytes is longer than 16");
}

TEST(SystemRecord, unchecked_values_reach_the_library) {
    const Description description = description_of(
        device(R"("country": "", "leds": 7, "login": {"username": "a'b"}, "syslog": {"port": -1},
                  "time": {"zone": "$(id)/x", "ntp": {"interval": -5},
                           "daylight_saving": {"start": {"month": "march"}}})"),
        false);
    const SystemDescription& system = description->system;
    EXPECT_EQ(shown(system.country), "");
    EXPECT_EQ(system.leds, 7);
    EXPECT_EQ(shown(system.login->username), "a'b");
    EXPECT_EQ(system.login->password, nullptr);
    EXPECT_EQ(system.syslog->port, -1);
    EXPECT_EQ(shown(system.time.zone), "$(id)/x");
    EXPECT_EQ(system.time.ntp->server, nullptr);
    EXPECT_EQ(system.time.ntp->interval, -5);
    EXPECT_STREQ(system.time.daylight_saving->start.month, "march");
    EXPECT_STREQ(system.time.daylight_saving->end.month, "");
}
