// SPDX-License-Identifier: MIT
// The settings of the channel quilt: its own options, then its VAPs.
#include "common/pending_services.h"
#include "ops/operations.h"
#include "quilt/vap.h"
#include "uci/staging.h"

using orlo::discard_staged;
using orlo::stage;
using orlo::stage_number;
using orlo::Text;

namespace {

// The steps below work in its name.
constexpr const char* apply_quilt = "api_apply_channel_quilt";

// A value out of range is met before anything is staged: what others have staged stays.
bool apply_management_vlan(int32_t vlan) {
    if (vlan < 0 || vlan > 4096) {
        LOG_TRACE_FOR(apply_quilt, "error: invalid mgmt_vlan:%d\n", vlan);
        return false;
    }
    if (!stage_number("quilt", "config_quilt.vlan_id", vlan)) {
        discard_staged();
        LOG_TRACE_FOR(apply_quilt, "error: set mgmt_vlan:%d failed\n", vlan);
        return false;
    }
    return true;
}

bool apply_secret(const char* secret) {
    if (!stage("quilt", "config_quilt.secret", secret)) {
        discard_staged();
        LOG_TRACE_FOR(apply_quilt, "error: set secret:%s failed\n", secret);
        return false;
    }
    return true;
}

bool apply_rekeying(int32_t timeout) {
    if (timeout == ORLO_NOT_GIVEN) {
        LOG_TRACE_FOR(apply_quilt, "info: ignore rekey_timeout:%d\n", timeout);
        return true;
    }
    if (!stage_number("quilt", "config_quilt.rekey", timeout)) {
        discard_staged();
        LOG_TRACE_FOR(apply_quilt, "error: set rekey:%d failed\n", timeout);
        return false;
    }
    return true;
}

bool apply_isolation(int32_t isolation) {
    if (isolation == ORLO_NOT_GIVEN) {
        LOG_TRACE_FOR(apply_quilt, "info: ignore station_isolation:%d\n", isolation);
        return true;
    }
    if (!stage_number("quilt", "config_quilt.client_isolation", isolation)) {
        discard_staged();
        LOG_TRACE_FOR(apply_quilt, "error: set station_isolation:%d failed\n", isolation);
        return false;
    }
    return true;
}

bool apply_beacon_threshold(int32_t threshold) {
    if (threshold == ORLO_NOT_GIVEN) {
        LOG_TRACE_FOR(apply_quilt, "info: ignore beacon_rssi_threshold\n");
        return true;
    }
    if (threshold < 0 || threshold > 91) {
        discard_staged();
        LOG_TRACE_FOR(apply_quilt, "error: invalid beacon_rssi_threshold: %d\n", threshold);
        return false;
    }
    const Text<16> value("%d", threshold);
    if (!stage("quilt", "config_quilt.bcn_rssi_th", value)) {
        discard_staged();
        LOG_TRACE_FOR(apply_quilt, "error: failed to set quilt.config_quilt.bcn_rssi_th=%s\n",
                      value.c_str());
        return false;
    }
    return true;
}

// The last two of the quilt's own options leave what is staged when they fail: agents know.
bool apply_scan(int32_t cqscan) {
    if (cqscan == ORLO_NOT_GIVEN) {
        LOG_TRACE_FOR(apply_quilt, "info: ignore cqscan\n");
        return true;
    }
    const Text<16> value("%d", cqscan);
    if (!stage("quilt", "config_quilt.cqscan", value)) {
        LOG_TRACE_FOR(apply_quilt, "error: failed to set quilt.cqscan=%s\n", value.c_str());
        return false;
    }
    return true;
}

bool apply_arp_filter(int32_t proxy_arp) {
    if (proxy_arp == ORLO_NOT_GIVEN) {
        LOG_TRACE_FOR(apply_quilt, "info: ignore cq-proxy-arp\n");
        return true;
    }
    const Text<16> value("%d", proxy_arp);
    if (!stage("quilt", "config_quilt.arp_filter", value)) {
        LOG_TRACE_FOR(apply_quilt, "error: failed to set quilt.arp_filter=%s\n", value.c_str());
        return false;
    }
    return true;
}

bool apply_own_options(const quilt_settings& settings) {
    return apply_management_vlan(settings.mgmt_vlan) &&
           apply_secret(orlo::read_inline(settings.secret)) &&
           apply_rekeying(settings.rekey_timeout) && apply_isolation(settings.station_isolation) &&
           apply_beacon_threshold(settings.beacon_rssi_threshold) && apply_scan(settings.cqscan) &&
           apply_arp_filter(settings.cq_proxy_arp);
}

} // namespace

int api_apply_channel_quilt(struct quilt_settings* settings) {
    LOG_TRACE("Entering...\n");
    if (settings == nullptr || !apply_own_options(*settings)) {
        return -1;
    }
    for (uint32_t i = 0; i < ORLO_VAPS; i++) {
        quilt_vap* const entry = &settings->quilt_radio[i];
        if (entry->enable != 0 && orlo::apply_quilt_vap(i, entry) != 0) {
            return -1;
        }
    }
    orlo::mark_changed(orlo::service_network);
    LOG_TRACE("End, return 0\n");
    return 0;
}
