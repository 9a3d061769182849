// SPDX-License-Identifier: MIT
// A radio's mode, eligible channels, channel width and rates.
#include "common/identity.h"
#include "common/pending_services.h"
#include "ops/operations.h"
#include "radio/channel.h"
#include "radio/profile.h"
#include "uci/staging.h"

#include <cstring>

using orlo::read_inline;
using orlo::shown;
using orlo::stage;
using orlo::Text;

namespace {

// The steps below work in its name.
constexpr const char* apply_hardware = "api_apply_hw_specific";

struct Mode {
    const char* name;
    const char* hwmode;
};

// The first of each radio is the 802.11ax mode.
const Mode modes[orlo::radio_count][2] = {
    {{"bg-n-ax", "11axg"}, {"bg", "11bg"}},
    {{"a-n-ac-ax", "11axa"}, {"a", "11a"}},
};

const struct {
    uint32_t megahertz;
    const char* htmode;
} widths[] = {{20, "HT20"}, {40, "HT40+"}, {80, "HT80"}, {8080, "HT80+80"}};

// The option value of a mode; in fake mode that of 802.11ax, whatever the name.
const char* hwmode_of(int radio, const char* name) {
    for (const Mode& mode : modes[radio]) {
        if (Fake_mode != 0 || strcmp(name, mode.name) == 0) {
            return mode.hwmode;
        }
    }
    return nullptr;
}

const char* htmode_of(uint32_t megahertz) {
    for (const auto& width : widths) {
        if (width.megahertz == megahertz) {
            return width.htmode;
        }
    }
    return nullptr;
}

int stage_or_discard(int radio, const char* option, const char* value) {
    if (!stage("wireless", Text<128>("wifi%d.%s", radio, option), value)) {
        return LOG_AND_DISCARD_FOR(apply_hardware, "Set Value Failed\n");
    }
    return 0;
}

int stage_mode(int radio, const char* name) {
    LOG_TRACE_FOR(apply_hardware, "mode:%s\n", name);
    const char* hwmode = hwmode_of(radio, name);
    if (hwmode == nullptr) {
        return LOG_AND_DISCARD_FOR(apply_hardware, "Unknown mode: %s in WIFI%d\n", name, radio);
    }
    return stage_or_discard(radio, "hwmode", hwmode);
}

// Setting the channel commits what has been staged so far.
int stage_eligible_channels(int radio, const char* list) {
    LOG_TRACE_FOR(apply_hardware, "eligible_channels:%s\n", list);
    if (stage_or_discard(radio, "eg_ch", list) != 0) {
        return -1;
    }
    int channel = 0;
    if (orlo::check_static_channel_in_eligible_channels(radio, list, &channel) != 0) {
        return 0;
    }
    LOG_TRACE_FOR(apply_hardware, "wifi%d: Override channel %d.\n", radio, channel);
    if (api_set_Channel(radio, channel) != 0) {
        LOG_TRACE_FOR(apply_hardware, "wifi%d: Failed to override channel %d.\n", radio, channel);
        return -1;
    }
    return 0;
}

int stage_width(int radio, uint32_t megahertz) {
    LOG_TRACE_FOR(apply_hardware, "channel_bandwidth:%d\n", megahertz);
    const char* htmode = htmode_of(megahertz);
    if (htmode == nullptr) {
        return LOG_AND_DISCARD_FOR(apply_hardware, "Unknown channel_bandwidth:%d\n", megahertz);
    }
    return stage_or_discard(radio, "htmode", htmode);
}

// Turns a comma-separated list of the agent's record into a blank-separated one, in place.
void separate_by_blanks(char (&list)[128]) {
    char copy[sizeof list + 1] = {};
    memcpy(copy, list, sizeof list);
    orlo::replace_all_substrings(copy, ",", " ");
    memcpy(list, copy, strlen(copy));
}

int stage_supported_rates(int radio, char (&rates)[128]) {
    LOG_TRACE_FOR(apply_hardware, "supported_rate:%s\n", read_inline(rates).c_str());
    if (rates[0] == '\0') {
        return 0;
    }
    separate_by_blanks(rates);
    const auto separated = read_inline(rates);
    LOG_TRACE_FOR(apply_hardware, "New supported_rate:%s\n", separated.c_str());
    if (orlo::set_legacy_rate(radio, separated) < 0) {
        LOG_TRACE_FOR(apply_hardware, "error: Set wifi%d legacy rate failed.\n", radio);
        return -1;
    }
    return 0;
}

// Nothing on the device takes them; the agent gets its list back with blanks all the same.
void note_basic_rates(char (&rates)[128]) {
    LOG_TRACE_FOR(apply_hardware, "basic_rate:%s may be no use\n", read_inline(rates).c_str());
    if (rates[0] != '\0') {
        separate_by_blanks(rates);
        LOG_TRACE_FOR(apply_hardware, "New basic_rate:%s\n", read_inline(rates).c_str());
    }
}

} // namespace

int api_apply_hw_specific(int radio, struct hw_specific_settings* settings) {
    LOG_TRACE("Entering... radio:%d\n", radio);
    if (!orlo::is_radio(radio) || settings == nullptr) {
        return LOG_AND_DISCARD("Apply Radio%d hw-specific failed\n", radio);
    }
    if (settings->mode == nullptr) {
        return LOG_AND_DISCARD("Mode is NULL\n");
    }
    if (stage_mode(radio, settings->mode) != 0 ||
        stage_eligible_channels(radio, read_inline(settings->eligible_channels)) != 0 ||
        stage_width(radio, settings->channel_bandwidth) != 0) {
        return -1;
    }
    LOG_TRACE("Enable_eligible_channels:%d Not support\n", settings->Enable_eligible_channels);
    LOG_TRACE("primary_channel:%s Not support\n", shown(settings->primary_channel));
    if (stage_supported_rates(radio, settings->supported_rate) != 0) {
        return -1;
    }
    note_basic_rates(settings->basic_rate);
    LOG_TRACE("mcs_index:%s Not support\n", read_inline(settings->mcs_index).c_str());
    orlo::mark_changed(orlo::service_network);
    LOG_TRACE("End... return: %s\n", "Success");
    return 0;
}
