// SPDX-License-Identifier: MIT
// The time: zone, daylight saving, and where the time comes from.
#include "description.h"
#include "records/registry.h"

namespace orloctl {

namespace {

using namespace forms;

// As the library has it: every fourth year is a leap year.
int last_day(int month, int year) {
    switch (month) {
    case 2:
        return year % 4 == 0 ? 29 : 28;
    case 4:
    case 6:
    case 9:
    case 11:
        return 30;
    default:
        return 31;
    }
}

bool is_date(const ManualTimeDescription& time, const Place& /*place*/) {
    return time.day <= last_day(time.month, time.year);
}

bool has_one_source(const TimeDescription& time, const Place& /*place*/) {
    return time.ntp == nullptr || time.manual == nullptr || time.manual->preserve_time_status == 1;
}

Form hour() {
    return number().in(0, 23);
}

Form minute() {
    return number().in(0, 59);
}

} // namespace

// clang-format off
const Record time_record = {
    "time", "the access point's time", sizeof(TimeDescription), {
    {MEMBER_OF(TimeDescription, zone),
     text().not_empty().bytes(shell_command("api_apply_timezone")->room).reaches(Shell::double_quotes),
     "time zone, \"Europe/Vienna\"; ends daylight saving, unless that is described as well"},
    {MEMBER_OF(TimeDescription, daylight_saving), optional(daylight_saving_record),
     "when clocks are put forward and back"},
    {MEMBER_OF(TimeDescription, manual), optional(manual_time_record), "sets the clock, in local time"},
    {MEMBER_OF(TimeDescription, ntp), optional(ntp_record), "takes the time from a server"},
}, {
    condition<&has_one_source>("manual", "ends the use of NTP: leave out \"ntp\", or set \"preserve_time_status\""),
}};

const Record ntp_record = {
    "ntp", "a server for the time", sizeof(NtpDescription), {
    {MEMBER_OF(NtpDescription, server), text().not_empty().required(), "its address or name"},
    {MEMBER_OF(NtpDescription, interval), number().in(1, INT_MAX).or_not_given(0),
     "from one query to the next"},
}};

const Record manual_time_record = {
    "manual_time", "a time that somebody has read off a clock", sizeof(ManualTimeDescription), {
    {MEMBER_OF(ManualTimeDescription, year), number().in(1970, 9999).required(), "year"},
    {MEMBER_OF(ManualTimeDescription, month), number().in(1, 12).required(), "month"},
    {MEMBER_OF(ManualTimeDescription, day), number().in(1, 31).required(), "day of the month"},
    {MEMBER_OF(ManualTimeDescription, hour), hour().required(), "hour"},
    {MEMBER_OF(ManualTimeDescription, minute), minute().required(), "minute; the seconds become 0"},
    {MEMBER_OF(ManualTimeDescription, preserve_time_status), flag(),
     "sets the clock only: the time goes on to come from where it came from"},
}, {
    condition<&is_date>("day", "the month has no such day"),
}};

const Record daylight_saving_record = {
    "daylight_saving", "daylight saving", sizeof(DaylightSavingDescription), {
    {MEMBER_OF(DaylightSavingDescription, enabled), flag().or_else(1), "clocks are changed at all"},
    {MEMBER_OF(DaylightSavingDescription, start), record(dst_rule_record), "when it starts"},
    {MEMBER_OF(DaylightSavingDescription, end), record(dst_rule_record), "when it ends"},
    {MEMBER_OF(DaylightSavingDescription, offset), number().in(-1440, 1440).in_unit("minutes").or_else(60),
     "how far clocks are put forward"},
}};

const Record dst_rule_record = {
    "dst_rule", "a moment of each year: last Sunday of March, 02:00", sizeof(dst_rule), {
    {MEMBER_OF(dst_rule, ordinal),
     text().words({"first", "second", "third", "fourth", "last"}).required(), "which one of the month"},
    {MEMBER_OF(dst_rule, weekday),
     text().words({"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"}).required(),
     "day of the week"},
    {MEMBER_OF(dst_rule, month),
     text().words({"January", "February", "March", "April", "May", "June", "July", "August",
                   "September", "October", "November", "December"}).required(), "month"},
    {MEMBER_OF(dst_rule, hour), hour().required(), "hour"},
    {MEMBER_OF(dst_rule, minute), minute(), "minute"},
}};
// clang-format on

} // namespace orloctl
