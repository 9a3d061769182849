// SPDX-License-Identifier: MIT
// Where the time comes from: an NTP server, or the agent's own date and time.
#include "common/pending_services.h"
#include "ops/operations.h"
#include "system/together.h"

#include <cstdlib>

using orlo::outcome;
using orlo::StagedTogether;
using orlo::Text;

namespace {

// A time of the wall clock.
struct ManualTime {
    int year;
    int month;
    int day;
    int hour;
    int minute;
};

// Every fourth year counts as a leap year, 2100 too.
int days_of(int month, int year) {
    switch (month) {
    case 2:
        return year % 4 == 0 ? 29 : 28;
    case 4:
    case 6:
    case 9:
    case 11:
        return 30;
    default:
        return month >= 1 && month <= 12 ? 31 : 0;
    }
}

bool is_date(const ManualTime& time) {
    return time.year >= 1970 && time.day >= 1 && time.day <= days_of(time.month, time.year);
}

bool is_time_of_day(const ManualTime& time) {
    return time.hour >= 0 && time.hour <= 23 && time.minute >= 0 && time.minute <= 59;
}

bool stage_manual_time(const ManualTime& time, bool preserve_time_status) {
    StagedTogether options("system");
    if (!preserve_time_status) {
        options.set("systime.time_status", "0");
    }
    options.set("systime.year", Text<8>("%d", time.year));
    options.set("systime.month", Text<8>("%d", time.month));
    options.set("systime.day", Text<8>("%d", time.day));
    options.set("systime.hour", Text<8>("%d", time.hour));
    options.set("systime.min", Text<8>("%d", time.minute));
    return options.all();
}

bool set_clock(const ManualTime& time) {
    const Text<64> command("date -s '%04d-%02d-%02d %02d:%02d:%02d'", time.year, time.month,
                           time.day, time.hour, time.minute, 0);
    return system(command) == 0;
}

int apply_manual_time(const ManualTime& time, bool preserve_time_status) {
    constexpr const char* operation = "api_apply_systime_manual";
    if (!is_date(time) || !is_time_of_day(time)) {
        return LOG_AND_DISCARD_FOR(operation, "Validate manual time '%d/%d/%d %d:%d' failed\n",
                                   time.year, time.month, time.day, time.hour, time.minute);
    }
    if (!stage_manual_time(time, preserve_time_status)) {
        return orlo::discard_staged();
    }
    if (!set_clock(time)) {
        return LOG_AND_DISCARD_FOR(operation, "Error: Can not set manual time\n");
    }
    if (!preserve_time_status) {
        orlo::mark_changed(orlo::service_ntp);
    }
    return 0;
}

int apply_time_server(const char* server, int interval) {
    StagedTogether options("system");
    options.set("systime.time_status", "1");
    options.set("systime.ntpserver", server);
    if (interval > 0) {
        options.set("systime.interval", Text<16>("%d", interval));
    }
    if (!options.all()) {
        return orlo::discard_staged();
    }
    orlo::mark_changed(orlo::service_ntp);
    return 0;
}

} // namespace

int api_apply_systime_ntp(const char* server, int interval) {
    LOG_TRACE("Entering...\n");
    if (server == nullptr) {
        return LOG_AND_DISCARD("Error: server is NULL\n");
    }
    LOG_TRACE("server: %s, interval: %d\n", server, interval);
    const int result = apply_time_server(server, interval);
    LOG_TRACE("End... return: %s\n", outcome(result));
    return result;
}

int api_apply_systime_manual(int preserve_time_status, int year, int month, int day, int hour,
                             int minute) {
    LOG_TRACE("Entering... %d/%d/%d %d:%d \n", year, month, day, hour, minute);
    const int result =
        apply_manual_time({year, month, day, hour, minute}, preserve_time_status != 0);
    LOG_TRACE("End... return: %s\n", outcome(result));
    return result;
}
