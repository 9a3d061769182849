// SPDX-License-Identifier: MIT
// When daylight saving starts and ends.
#include "ops/operations.h"
#include "system/time_zone.h"
#include "uci/staging.h"

#include <cstring>

using orlo::outcome;
using orlo::read_inline;
using orlo::stage;
using orlo::Text;

namespace {

// The steps below work in its name.
constexpr const char* apply_daylight_saving = "api_apply_daylight_saving";

// The words of a rule and the codes under which they are stored.
struct Word {
    const char* name;
    const char* code;
};

// clang-format off
const Word months[] = {
    {"January", "1"}, {"February", "2"}, {"March", "3"},
    {"April", "4"}, {"May", "5"}, {"June", "6"},
    {"July", "7"}, {"August", "8"}, {"September", "9"},
    {"October", "10"}, {"November", "11"}, {"December", "12"},
};
const Word ordinals[] = {
    {"first", "1"}, {"second", "2"}, {"third", "3"}, {"fourth", "4"}, {"last", "5"},
};
const Word weekdays[] = {
    {"Sunday", "0"}, {"Monday", "1"}, {"Tuesday", "2"}, {"Wednesday", "3"},
    {"Thursday", "4"}, {"Friday", "5"}, {"Saturday", "6"},
};
// clang-format on

template <size_t N>
const char* code_of(const Word (&words)[N], const char* name) {
    for (const Word& word : words) {
        if (strcmp(word.name, name) == 0) {
            return word.code;
        }
    }
    return nullptr;
}

int stage_option(const char* key, const char* value) {
    if (!stage("system", key, value)) {
        LOG_TRACE_FOR(apply_daylight_saving, "Set Value Failed\n");
        return -1;
    }
    return 0;
}

int stage_enabled(int dst_enable) {
    const Text<16> text("%d", dst_enable);
    LOG_TRACE_FOR(apply_daylight_saving, "dst_enable: %s (%d) \n", text.c_str(),
                  static_cast<int>(strlen(text)));
    return stage_option("systime.dst_enable", text);
}

// Start and end alike are logged as the end.
int stage_rule(const char* key, const dst_rule& rule) {
    const auto month = read_inline(rule.month);
    const auto ordinal = read_inline(rule.ordinal);
    const auto weekday = read_inline(rule.weekday);
    const char* month_code = code_of(months, month);
    if (month_code == nullptr) {
        LOG_TRACE_FOR(apply_daylight_saving, "Unknown month: %s \n", month.c_str());
        return -1;
    }
    const char* ordinal_code = code_of(ordinals, ordinal);
    if (ordinal_code == nullptr) {
        LOG_TRACE_FOR(apply_daylight_saving, "Unknown ordinal: %s \n", ordinal.c_str());
        return -1;
    }
    const char* weekday_code = code_of(weekdays, weekday);
    if (weekday_code == nullptr) {
        LOG_TRACE_FOR(apply_daylight_saving, "Unknown weekday: %s \n", weekday.c_str());
        return -1;
    }
    const Text<16> text("%s,%s,%s,%d,%d", month_code, ordinal_code, weekday_code, rule.hour,
                        rule.minute);
    LOG_TRACE_FOR(apply_daylight_saving, "dst_end: %s (%d) \n", text.c_str(),
                  static_cast<int>(strlen(text)));
    return stage_option(key, text);
}

int stage_offset(int dst_offset) {
    const Text<16> text("%d", dst_offset);
    LOG_TRACE_FOR(apply_daylight_saving, "dst_offset: %s (%d) \n", text.c_str(),
                  static_cast<int>(strlen(text)));
    return stage_option("systime.dst_offset", text);
}

int apply_zone_with_rule() {
    char posix[orlo::posix_zone_size] = {};
    if (orlo::generate_timezone(posix, sizeof posix) != 0) {
        LOG_TRACE_FOR(apply_daylight_saving, "Error: failed to generate timezone\n");
        return -1;
    }
    if (stage_option("systime.timezone", posix) != 0) {
        return -1;
    }
    orlo::write_timezone_file(posix);
    return 0;
}

} // namespace

int api_apply_daylight_saving(int dst_enable, const struct dst_rule* start,
                              const struct dst_rule* end, int dst_offset) {
    LOG_TRACE("Entering... \n");
    const bool done = start != nullptr && end != nullptr && //
                      stage_enabled(dst_enable) == 0 &&
                      stage_rule("systime.dst_start", *start) == 0 &&
                      stage_rule("systime.dst_end", *end) == 0 && //
                      stage_offset(dst_offset) == 0 &&            //
                      apply_zone_with_rule() == 0;
    const int result = done ? 0 : orlo::discard_staged();
    LOG_TRACE("End... return: %s \n", outcome(result));
    return result;
}
