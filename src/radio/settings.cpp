// SPDX-License-Identifier: MIT
// Radio-wide settings: isolation, thresholds, limits, quality of service, 802.11ax features.
#include "common/flag.h"
#include "common/identity.h"
#include "common/pending_services.h"
#include "ops/operations.h"
#include "uci/staging.h"

#include <cstring>

using orlo::flag_text;
using orlo::shown;
using orlo::stage;
using orlo::Text;

namespace {

// The steps below work in its name.
constexpr const char* apply_radio = "api_apply_radio";

bool stage_option(const char* section, const char* option, const char* value) {
    if (!stage("wireless", Text<128>("%s.%s", section, option), value)) {
        LOG_TRACE_FOR(apply_radio, "Set Value Failed\n");
        return false;
    }
    return true;
}

// A number within 0 and a limit. `says` and `refusal` are the lines before it is written and
// instead of it.
bool stage_limited(const char* section, const char* option, int32_t value, int32_t most,
                   const char* says, const char* refusal) {
    if (value == ORLO_NOT_GIVEN) {
        return true;
    }
    if (value < 0 || value > most) {
        LOG_TRACE_FOR(apply_radio, refusal, value, 0, most);
        return false;
    }
    LOG_TRACE_FOR(apply_radio, says, value);
    return stage_option(section, option, Text<16>("%d", value));
}

bool stage_flag(const char* section, const char* option, int32_t value, const char* says) {
    if (value == ORLO_NOT_GIVEN) {
        return true;
    }
    LOG_TRACE_FOR(apply_radio, says, value);
    return stage_option(section, option, flag_text(value));
}

bool stage_multicast_rate(const char* section, const char* rate) {
    if (rate == nullptr) {
        return true;
    }
    if (strcmp(rate, "auto") == 0 || strcmp(rate, "fast") == 0) {
        LOG_TRACE_FOR(apply_radio, "Not support fixed_multicast_rate: %s\n", rate);
        return true;
    }
    LOG_TRACE_FOR(apply_radio, "fixed_multicast_rate: %s\n", rate);
    return stage_option(section, "multicast_tx_rate", rate);
}

// Quality of service has a package of its own.
bool stage_qos(const char* section, const char* option, int32_t value, const char* failure) {
    if (value != ORLO_NOT_GIVEN &&
        !stage("wifi_qos", Text<128>("%s.%s", section, option), flag_text(value))) {
        LOG_TRACE_FOR(apply_radio, failure, section, value);
        return false;
    }
    return true;
}

bool stage_rfscan(const char* section, int32_t value) {
    if (value == ORLO_NOT_GIVEN) {
        return true;
    }
    LOG_TRACE_FOR(apply_radio, "rfscan_status:%d\n", value);
    const Text<128> key("%s.rfscan_status", section);
    if (!stage("wireless", key, flag_text(value))) {
        LOG_TRACE_FOR(apply_radio, "Failed to set value %s=%d\n", key.c_str(), value);
        return false;
    }
    return true;
}

bool stage_limits(const char* section, const radio_settings& settings) {
    LOG_TRACE_FOR(apply_radio, "periodic_channel_refresh: Not support\n");
    LOG_TRACE_FOR(apply_radio, "short_guard_interval_support: Not support\n");
    LOG_TRACE_FOR(apply_radio, "Protection: Not support\n");
    LOG_TRACE_FOR(apply_radio, "multidomain_regulatory_mode: Not support\n");
    LOG_TRACE_FOR(apply_radio, "beacon_interval: Not support\n");
    LOG_TRACE_FOR(apply_radio, "fragmentation_threshold: Not support\n");
    return stage_limited(section, "rts_threshold", settings.rts_threshold, 2347,
                         "rts_threshold:%d \n",
                         "error: RTS Threshold %d is out of range: %d - %d\n") &&
           stage_limited(section, "max_client", settings.max_stations, 320, "max_stations:%d \n",
                         "error: max_station %d is out of range: %d - %d\n") &&
           stage_multicast_rate(section, settings.fixed_multicast_rate);
}

bool stage_features(const char* section, const radio_settings& settings) {
    LOG_TRACE_FOR(apply_radio, "Broadcast Multicast Rate Settings: Not support\n");
    LOG_TRACE_FOR(apply_radio, "load_balance: Not support\n");
    LOG_TRACE_FOR(apply_radio, "apsd=%d, wmm=%d, no_ack=%d\n", settings.apsd, settings.wmm,
                  settings.no_ack);
    if (!stage_qos(section, "APSD", settings.apsd, "error: failed when set %s apsd_mode to %d\n") ||
        !stage_qos(section, "WMM", settings.wmm, "error: failed when set %s wmm_mode to %d\n")) {
        return false;
    }
    LOG_TRACE_FOR(apply_radio, "no_ack: Not configurable\n");
    return stage_flag(section, "atf_status", settings.atf, "atf:%d \n") &&
           stage_rfscan(section, settings.rfscan_status) &&
           stage_flag(section, "ofdma", settings.ofdma, "ofdma:%d \n") &&
           stage_flag(section, "mumimo", settings.mumimo, "mumimo:%d \n") &&
           stage_flag(section, "zw_dfs", settings.zw_dfs, "zw_dfs:%d \n");
}

} // namespace

int api_apply_radio(const struct radio_settings* settings) {
    constexpr int wrong_interface = -2;
    if (settings == nullptr) {
        return -1;
    }
    LOG_TRACE("Entering... radio interface_name is: %s\n", shown(settings->interface_name));
    if (settings->interface_name == nullptr) {
        return LOG_AND_DISCARD("radio interface_name is missing.\n");
    }
    const char* section = orlo::section_of_interface(settings->interface_name);
    if (section == nullptr) { // what other operations have staged stays
        LOG_TRACE("Invalid radio interface_name is %s\n", settings->interface_name);
        return wrong_interface;
    }
    if (!stage_flag(section, "ap_isolation_enabled", settings->station_isolation,
                    "station_isolation:%d \n")) {
        orlo::discard_staged();
        return wrong_interface;
    }
    if (!stage_limits(section, *settings) || !stage_features(section, *settings)) {
        return orlo::discard_staged();
    }
    orlo::mark_changed(orlo::service_network);
    return 0;
}
