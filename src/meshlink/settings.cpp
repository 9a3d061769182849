// SPDX-License-Identifier: MIT
// Setting up mesh links: the channels and width of a radio, and the VAP that carries the links. The
// agent names the mesh; how it is secured and behaves is fixed here.
#include "common/identity.h"
#include "common/pending_services.h"
#include "ops/operations.h"
#include "radio/channel.h"
#include "uci/staging.h"
#include "vap/basic.h"

using orlo::shown;
using orlo::stage;
using orlo::Text;

namespace {

// The steps below work in these names.
constexpr const char* apply_radio = "api_apply_mesh_link_radio";
constexpr const char* apply_vap = "api_apply_mesh_link_vap";

constexpr int mesh_vlan = 1;
constexpr int first_vap_switched_off = 2; // the mesh takes the radio

struct OptionRow {
    const char* option;
    const char* value;
};

int stage_or_discard(const char* operation, const char* key, const char* value) {
    if (!stage("wireless", key, value)) {
        return LOG_AND_DISCARD_FOR(operation, "Set Value Failed : wireless.%s\n", key);
    }
    return 0;
}

// Moves the radio off a channel that the mesh may not use. A channel that cannot be set discards
// and reports by itself.
int leave_foreign_channel(int radio, const char* eg_chs) {
    int first_eligible = 0;
    if (orlo::check_static_channel_in_eligible_channels(radio, eg_chs, &first_eligible) != 0) {
        return 0;
    }
    LOG_TRACE_FOR(apply_radio, "wifi%d: Override channel %d.\n", radio, first_eligible);
    if (api_set_Channel(radio, first_eligible) != 0) {
        LOG_TRACE_FOR(apply_radio, "wifi%d: Failed to override channel %d.\n", radio,
                      first_eligible);
        return -1;
    }
    return 0;
}

const char* width_named(int bandwidth) {
    const struct {
        int bandwidth;
        const char* mode;
    } rows[] = {{20, "HT20"}, {40, "HT40+"}, {80, "HT80"}};
    for (const auto& row : rows) {
        if (row.bandwidth == bandwidth) {
            return row.mode;
        }
    }
    return nullptr;
}

int stage_width(int radio, int bandwidth) {
    const char* mode = width_named(bandwidth);
    if (mode == nullptr) {
        return LOG_AND_DISCARD_FOR(apply_radio, "Unknown channel_bandwidth:%d\n", bandwidth);
    }
    return stage_or_discard(apply_radio, Text<128>("wifi%d.htmode", radio), mode);
}

template <size_t N>
int stage_rows(int radio, int vap, const OptionRow (&rows)[N]) {
    for (const OptionRow& row : rows) {
        const Text<128> key("wifi%dvap%d.%s", radio, vap, row.option);
        if (stage_or_discard(apply_vap, key, row.value) != 0) {
            return -1;
        }
    }
    return 0;
}

// These steps discard by themselves.
int stage_name(int radio, const mesh_link_vap_settings& request) {
    const auto r = static_cast<uint32_t>(radio);
    const auto v = static_cast<uint32_t>(request.vap);
    if (orlo::set_vap_status(r, v, 1) < 0) {
        LOG_TRACE_FOR(apply_vap, "Failed to set vap status.\n");
        return -1;
    }
    if (orlo::set_vap_mode(r, v, "qx_mesh") < 0) {
        LOG_TRACE_FOR(apply_vap, "Failed to set vap mode.\n");
        return -1;
    }
    if (orlo::set_vap_ssid(r, v, request.ssid) < 0) {
        LOG_TRACE_FOR(apply_vap, "Failed to set vap ssid.\n");
        return -1;
    }
    return 0;
}

int stage_links(int radio, const mesh_link_vap_settings& request) {
    const OptionRow rows[] = {
        {"acceptor", request.acceptor != 0 ? "1" : "0"},
        {"connector", request.connector != 0 ? "1" : "0"},
        {"ml_max_link_allowed", "4"},
        {"security", "wpa-psk"},
        {"encryption", "psk2+ccmp"},
        {"wpaversion", "wpa2"},
        {"cipher", "ccmp"},
        {"key", request.key},
        {"wpakey", request.key},
        {"dynamic_vlan", "0"},
        {"macfilter", "0"},
        {"captive_portal", "0"},
        {"ieee80211r", "0"},
        {"ieee80211k", "0"},
        {"ieee80211v", "0"},
        {"inact", "300"},
        {"dis_deauth", "0"},
        {"iapp_interface", "0"},
        {"proxy_arp", "0"},
    };
    return stage_rows(radio, request.vap, rows);
}

int stage_network(int radio, int vap) {
    if (orlo::set_vap_vlan(static_cast<uint32_t>(radio), static_cast<uint32_t>(vap), mesh_vlan) <
        0) {
        LOG_TRACE_FOR(apply_vap, "Failed to set vap vlan id.\n");
        return -1;
    }
    const OptionRow rows[] = {
        {"hidden", "1"},
        {"dtim_period", "1"},
        {"wpa_group_rekey", "0"},
        {"ieee80211w", "0"},
    };
    return stage_rows(radio, vap, rows);
}

// All of them, even the mesh VAP when it is one of them.
int switch_off_other_vaps(int radio) {
    for (int vap = first_vap_switched_off; vap < orlo::vaps_per_radio; vap++) {
        if (stage_or_discard(apply_vap, Text<128>("wifi%dvap%d.disabled", radio, vap), "1") != 0) {
            return -1;
        }
    }
    return 0;
}

} // namespace

int api_apply_mesh_link_radio(int radio, int bandwidth, const char* eg_chs) {
    LOG_TRACE("Entering... radio: %d, eg_chs: %s, bandwidth: %d\n", radio, shown(eg_chs),
              bandwidth);
    if (eg_chs == nullptr) {
        return LOG_AND_DISCARD("eg_chs is NULL\n");
    }
    if (stage_or_discard(__func__, Text<128>("wifi%d.eg_ch", radio), eg_chs) != 0 ||
        leave_foreign_channel(radio, eg_chs) != 0 || stage_width(radio, bandwidth) != 0) {
        return -1;
    }
    orlo::mark_changed(orlo::service_network);
    LOG_TRACE("End... return: 0\n");
    return 0;
}

int api_apply_mesh_link_vap(int radio, const struct mesh_link_vap_settings* request) {
    LOG_TRACE("Entering... radio: %d\n", radio);
    if (request == nullptr) {
        return -1;
    }
    if (stage_name(radio, *request) != 0 || stage_links(radio, *request) != 0 ||
        stage_network(radio, request->vap) != 0 || switch_off_other_vaps(radio) != 0) {
        return -1;
    }
    orlo::mark_changed(orlo::service_network);
    LOG_TRACE("End... return: 0\n");
    return 0;
}
