// SPDX-License-Identifier: MIT
#include "quilt/quilt_record.h"

#include <algorithm>

namespace orlo::test {

const Trace edits_that_forget_servers = {
    "mac_auth_server=",
    "mac_auth_secret=",
    "mac_auth_port=1812",
    "mac_auth_username_separator=hyphen",
    "mac_auth_username_case=lower",
    "mac_auth_password_format=username",
    "mac_auth_server_second=",
    "mac_auth_secret_second=",
};

QuiltRecord::QuiltRecord() {
    memset(&quilt_, 0x5a, sizeof quilt_);
    quilt_.mgmt_vlan = 7;
    put(quilt_.secret, "quilt secret");
    quilt_.rekey_timeout = ORLO_NOT_GIVEN;
    quilt_.station_isolation = ORLO_NOT_GIVEN;
    quilt_.beacon_rssi_threshold = ORLO_NOT_GIVEN;
    quilt_.cqscan = ORLO_NOT_GIVEN;
    quilt_.cq_proxy_arp = ORLO_NOT_GIVEN;
    for (quilt_vap& entry : quilt_.quilt_radio) {
        entry.enable = 0;
    }
}

quilt_vap& QuiltRecord::enable(int entry, int radio, int vap) {
    quilt_vap& settings = quilt_.quilt_radio[entry];
    settings.enable = 1;
    settings.radio = radio;
    settings.vap = vap;
    settings.status = 1;
    put(settings.bssid, "02:00:00:00:0c:00");
    put(settings.ssid, "Quilt");
    settings.bcast_ssid = 1;
    settings.vlan_id = 10;
    settings.mac_filter_mode = 0;
    settings.mac_auth_reset = 0;
    settings.band_steer = 0;
    settings.mfp = 0;
    settings.inactivity_timer = ORLO_NOT_GIVEN;
    settings.deauth_dup_auth = ORLO_NOT_GIVEN;
    settings.assoc_advertisement = ORLO_NOT_GIVEN;
    settings.dtim_period = ORLO_NOT_GIVEN;
    settings.proxy_arp = ORLO_NOT_GIVEN;
    put(settings.wireless_security, "none");
    settings.fast_roaming.status = 0;
    settings.cp.enable = 0;
    return settings;
}

quilt_vap& QuiltRecord::enable_personal(int entry, uint32_t wpa, uint32_t cipher_suites) {
    quilt_vap& settings = enable(entry);
    put(settings.wireless_security, "wpa-personal");
    settings.wpa_personal.wpa = wpa;
    settings.wpa_personal.cipher_suites = cipher_suites;
    settings.wpa_personal.refresh_rate = 3600;
    put(settings.wpa_personal.key, "open sesame");
    return settings;
}

quilt_vap& QuiltRecord::enable_enterprise(int entry, uint32_t wpa, uint32_t cipher_suites) {
    quilt_vap& settings = enable(entry);
    put(settings.wireless_security, "wpa-enterprise");
    quilt_wpa_enterprise& enterprise = settings.wpa_enterprise;
    enterprise.wpa = wpa;
    enterprise.cipher_suites = cipher_suites;
    enterprise.pre_authentication = 5;
    enterprise.Radius_accounting = 0;
    enterprise.Bcast_refresh_rate = 3600;
    enterprise.dynamic_vlan = 0;
    enterprise.radius_server[0] = {nullptr, "10.0.0.1", "first secret", 1812, 1813};
    enterprise.radius_server[1].ip = nullptr;
    return settings;
}

int QuiltRecord::apply() {
    door.forget();
    return ops.api_apply_channel_quilt(&quilt_);
}

Trace QuiltRecord::edits_of(const std::string& section) const {
    const std::string path = "wireless." + section + ".";
    Trace edits;
    for (const std::string& line : door.trace({"set", "add", "delete"})) {
        const std::string edited = line.substr(line.find(' ') + 1);
        if (edited.compare(0, path.size(), path) == 0) {
            const bool is_deletion = line[0] == 'd';
            edits.push_back((is_deletion ? "-" : "") + edited.substr(path.size()));
        }
    }
    return edits;
}

std::string QuiltRecord::refusal() const {
    const Trace lines = door.log_of("api_apply_channel_quilt");
    return lines.empty() ? "(nothing)" : lines.back();
}

testing::AssertionResult QuiltRecord::logged(const std::string& message) const {
    const Trace lines = door.log_of("api_apply_channel_quilt");
    if (std::find(lines.begin(), lines.end(), message) != lines.end()) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "not logged: " << message;
}

} // namespace orlo::test
