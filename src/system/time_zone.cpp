// SPDX-License-Identifier: MIT
#include "system/time_zone.h"

#include "common/command.h"
#include "common/file.h"
#include "ops/operations.h"
#include "uci/option.h"
#include "uci/staging.h"

#include <cstdio>

using orlo::OptionValue;
using orlo::outcome;
using orlo::stage;

namespace {

// An option of the time settings, or what applies without it.
template <size_t N>
class TimeOption {
public:
    TimeOption(const char* key, const char* otherwise)
        : text_(value_.read("system", key) ? value_.c_str() : otherwise) {}
    TimeOption(const TimeOption&) = delete; // the text may lie within
    TimeOption& operator=(const TimeOption&) = delete;

    const char* c_str() const { return text_; }

private:
    OptionValue<N> value_;
    const char* text_;
};

// A failed generation and a failed write have each other's message, as agents know it of this
// operation.
int apply_zone(const char* zonename) {
    constexpr const char* operation = "api_apply_timezone";
    char posix[orlo::posix_zone_size] = {};
    if (!stage("system", "systime.zonename", zonename) ||
        !stage("system", "systime.dst_enable", "0") ||
        orlo::generate_timezone(posix, sizeof posix) != 0) {
        return LOG_AND_DISCARD_FOR(operation, "Set Value Failed\n");
    }
    if (!stage("system", "systime.timezone", posix)) {
        return LOG_AND_DISCARD_FOR(operation, "Error: failed to generate timezone\n");
    }
    orlo::write_timezone_file(posix);
    return 0;
}

} // namespace

namespace orlo {

int generate_timezone(char* out, size_t size) {
    const TimeOption<64> zonename("systime.zonename", "UTC");
    const TimeOption<8> dst_enable("systime.dst_enable", "0");
    const TimeOption<8> dst_offset("systime.dst_offset", "60");
    const TimeOption<32> dst_start("systime.dst_start", "3,2,0,2,0");
    const TimeOption<32> dst_end("systime.dst_end", "11,1,0,2,0");
    char command[256];
    const int length =
        snprintf(command, sizeof command, "%s %s \"%s\" %s %s \"%s\" \"%s\"", "/usr/bin/lua",
                 "/usr/lib/lua/luci/chtimezone.lua", zonename.c_str(), dst_enable.c_str(),
                 dst_offset.c_str(), dst_start.c_str(), dst_end.c_str());
    if (length < 0 || static_cast<size_t>(length) >= sizeof command) {
        LOG_TRACE("Error: failed to generate timezone (rc=%d)\n", length);
        return -1;
    }
    LOG_TRACE("cmd: %s\n", command);
    CommandOutput output(command);
    if (!output.started()) {
        LOG_TRACE("Error: timezone generate process can't run.\n");
        return -1;
    }
    char line[128] = {};
    output.read_line(line, sizeof line);
    output.close();
    cut_line_end(line);
    snprintf(out, size, "%s", line);
    return 0;
}

void write_timezone_file(const char* text) {
    write_file("/etc/TZ", text);
}

} // namespace orlo

int api_apply_timezone(const char* zonename) {
    LOG_TRACE("Entering...\n");
    if (zonename == nullptr) {
        return LOG_AND_DISCARD("Error: zonename is NULL\n");
    }
    LOG_TRACE("zonename: %s\n", zonename);
    const int result = apply_zone(zonename);
    LOG_TRACE("End... return: %s\n", outcome(result));
    return result;
}
