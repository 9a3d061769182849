// SPDX-License-Identifier: MIT
#include "vap/vap_profile.h"

#include <algorithm>
#include <cstring>

namespace orlo::test {

namespace {

const std::string section = "wireless.wifi1vap0.";

} // namespace

VapProfile::VapProfile() {
    memset(vaps_, 0x5a, sizeof vaps_);
    for (vap_settings& vap : vaps_) {
        vap.status = 0;
    }
}

vap_settings& VapProfile::enable(int vap, const char* ssid) {
    vap_settings& settings = vaps_[vap];
    settings.status = 1;
    settings.ssid = ssid;
    settings.bcast_ssid = 1;
    settings.vlan_id = 10;
    settings.band_steer = 0;
    settings.mfp = 0;
    settings.inactivity_timer = ORLO_NOT_GIVEN;
    settings.deauth_dup_auth = ORLO_NOT_GIVEN;
    settings.assoc_advertisement = ORLO_NOT_GIVEN;
    settings.dtim_period = ORLO_NOT_GIVEN;
    settings.proxy_arp = ORLO_NOT_GIVEN;
    settings.wireless_security = nullptr;
    settings.fast_roaming.status = 0;
    return settings;
}

vap_settings& VapProfile::enable_personal(int vap, uint32_t wpa, uint32_t cipher_suites) {
    vap_settings& settings = enable(vap);
    settings.wireless_security = "wpa-personal";
    settings.wpa_personal.wpa = wpa;
    settings.wpa_personal.cipher_suites = cipher_suites;
    settings.wpa_personal.refresh_rate = 3600;
    settings.wpa_personal.key = "open sesame";
    return settings;
}

vap_settings& VapProfile::enable_enterprise(int vap, uint32_t wpa, uint32_t cipher_suites) {
    vap_settings& settings = enable(vap);
    settings.wireless_security = "wpa-enterprise";
    wpa_enterprise& enterprise = settings.wpa_enterprise;
    enterprise.wpa = wpa;
    enterprise.cipher_suites = cipher_suites;
    enterprise.Bcast_refresh_rate = 3600;
    enterprise.Session_refresh_rate = ORLO_NOT_GIVEN;
    enterprise.session_key_refresh_action = nullptr;
    enterprise.pre_authentication = 5;
    enterprise.pre_authentication_limit = 6;
    enterprise.Radius_accounting = 0;
    enterprise.dynamic_vlan = 0;
    enterprise.require_vlan_id = 7;
    settings.radius_server[0].ip = "10.0.0.1";
    settings.radius_server[0].key = "first secret";
    settings.radius_server[0].auth_port = 1812;
    settings.radius_server[0].account_port = 1813;
    settings.radius_server[1].ip = nullptr;
    return settings;
}

int VapProfile::apply(int radio) {
    door.forget();
    return ops.api_apply_vap(radio, vaps_);
}

int VapProfile::apply_with_failed_write(size_t i) {
    constexpr int basic_writes = 7; // of a VAP as enable() makes it
    door.fail(Call::uci_set, basic_writes + static_cast<int>(i) + 1);
    return apply();
}

Trace VapProfile::security_edits() const {
    Trace edits;
    for (const std::string& line : door.trace({"set", "delete"})) {
        const bool is_set = line.compare(0, 4, "set ") == 0;
        const std::string path = line.substr(line.find(' ') + 1);
        if (path.compare(0, section.size(), section) == 0) {
            edits.push_back((is_set ? "" : "-") + path.substr(section.size()));
        }
    }
    const auto is_last_basic = [](const std::string& edit) {
        return edit.compare(0, 8, "vlan_id=") == 0;
    };
    const auto is_roaming = [](const std::string& edit) {
        return edit.compare(0, 11, "ieee80211r=") == 0;
    };
    const auto first = std::find_if(edits.begin(), edits.end(), is_last_basic);
    const auto last = std::find_if(edits.begin(), edits.end(), is_roaming);
    return first == edits.end() ? Trace() : Trace(first + 1, last);
}

Trace VapProfile::own_log() const {
    return door.log_of("api_apply_vap");
}

std::string VapProfile::refusal() const {
    const Trace lines = own_log();
    return lines.empty() ? "(nothing)" : lines.back();
}

testing::AssertionResult VapProfile::logged(const std::string& message) const {
    const Trace lines = own_log();
    if (std::find(lines.begin(), lines.end(), message) != lines.end()) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "not logged: " << message;
}

} // namespace orlo::test
