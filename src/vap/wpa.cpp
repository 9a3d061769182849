// SPDX-License-Identifier: MIT
// WPA with a passphrase or with RADIUS servers.
#include "common/flag.h"
#include "uci/staging.h"
#include "vap/security.h"

namespace orlo {

namespace {

constexpr uint32_t any = 0;              // other cipher suites than those of the rows above
constexpr int32_t longest_rekey = 86400; // seconds

bool is_rekey_interval(int32_t seconds) {
    return seconds >= 0 && seconds <= longest_rekey;
}

} // namespace

// What a combination of WPA versions and cipher suites becomes. An option without a text is not
// written; a row without a version is refused.
struct SecurityTranslator::WpaOptions {
    uint32_t wpa;
    uint32_t cipher_suites;
    const char* wpaversion;
    const char* encryption;
    const char* cipher;
    const char* logged_wpaversion = wpaversion; // where writing it fails

    static const WpaOptions* find(const WpaOptions* rows, uint32_t wpa, uint32_t cipher_suites) {
        for (; rows->wpa != 0; rows++) {
            if (rows->wpa == wpa &&
                (rows->cipher_suites == cipher_suites || rows->cipher_suites == any)) {
                return rows;
            }
        }
        return nullptr;
    }
};

// clang-format off
const SecurityTranslator::WpaOptions SecurityTranslator::personal_rows[] = {
    {0x4, 0x2, "wpa3",      "ccmp",                "ccmp"},
    {0x6, 0x2, "wpa2mixed", "psk2+ccmp",           "ccmp"},
    {0x4, any, nullptr,     nullptr,               nullptr},
    {0x6, any, nullptr,     nullptr,               nullptr},
    {0x3, 0x3, "mixed",     "psk-mixed+tkip+ccmp", "tkip+ccmp"},
    {0x3, 0x2, "mixed",     "psk-mixed+ccmp",      "ccmp"},
    {0x3, 0x1, "mixed",     "psk-mixed+tkip",      "tkip"},
    {0x3, any, "mixed",     nullptr,               nullptr},
    {0x2, 0x3, "wpa2",      "psk2+tkip+ccmp",      "tkip+ccmp"},
    {0x2, 0x2, "wpa2",      "psk2+ccmp",           "ccmp"},
    {0x2, 0x1, "wpa2",      "psk2+tkip",           "tkip"},
    {0x2, any, "wpa2",      nullptr,               nullptr},
    {}
};

// The agent's logs know a failed "wpa2" of this table as "mixed".
const SecurityTranslator::WpaOptions SecurityTranslator::enterprise_rows[] = {
    {0x4, 0x2, "wpa3",  "ccmp",                "ccmp"},
    {0x4, any, nullptr, nullptr,               nullptr},
    {0x3, 0x3, "mixed", "wpa-mixed+tkip+ccmp", "tkip+ccmp"},
    {0x3, 0x2, "mixed", "wpa-mixed+ccmp",      "ccmp"},
    {0x3, 0x1, "mixed", "wpa-mixed+tkip",      "tkip"},
    {0x3, any, "mixed", nullptr,               nullptr},
    {0x2, 0x3, "wpa2",  "wpa2+tkip+ccmp",      "tkip+ccmp", "mixed"},
    {0x2, 0x2, "wpa2",  "wpa2+ccmp",           "ccmp",      "mixed"},
    {0x2, 0x1, "wpa2",  "wpa2+tkip",           "tkip",      "mixed"},
    {0x2, any, "wpa2",  nullptr,               nullptr,     "mixed"},
    {}
};
// clang-format on

Outcome SecurityTranslator::personal(const wpa_personal& settings) {
    return outcome_of(write_personal(settings));
}

bool SecurityTranslator::write_personal(const wpa_personal& settings) {
    speaker_.say(wording_.personal.key, shown(settings.key));
    speaker_.say(wording_.personal.wpa, settings.wpa);
    speaker_.say(wording_.personal.cipher_suites, settings.cipher_suites);
    speaker_.say(wording_.personal.refresh_rate, settings.refresh_rate);
    if (settings.key == nullptr) {
        return refuse(wording_.no_key);
    }
    if (!write("security", "wpa-psk") || !write("key", settings.key) ||
        !write("wpakey", settings.key)) {
        return false;
    }
    const auto* row = WpaOptions::find(personal_rows, settings.wpa, settings.cipher_suites);
    if (!write_wpa_options(row, settings.wpa)) {
        return false;
    }
    const bool offers_wpa3 = (settings.wpa & ORLO_WPA3) != 0;
    if (offers_wpa3 && !write_sae(settings.key)) {
        return false;
    }
    if (!is_rekey_interval(settings.refresh_rate)) {
        return refuse(wording_.wrong_group_rekey);
    }
    return write_number("wpa_group_rekey", settings.refresh_rate);
}

Outcome SecurityTranslator::enterprise(const wpa_enterprise& settings,
                                       const radius_server (&servers)[2]) {
    if (!write_enterprise(settings)) {
        return Outcome::refused;
    }
    if (!is_flag(settings.Radius_accounting)) {
        refuse(wording_.wrong_radius_accounting);
        return Outcome::refused_keeping_staged;
    }
    return outcome_of(write_number("acct_en", settings.Radius_accounting) &&
                      write_rekeying(settings) && write_dynamic_vlan(settings.dynamic_vlan) &&
                      write_radius_servers(servers));
}

bool SecurityTranslator::write_enterprise(const wpa_enterprise& settings) {
    speaker_.say(wording_.enterprise.wpa, settings.wpa);
    speaker_.say(wording_.enterprise.cipher_suites, settings.cipher_suites);
    speaker_.say(wording_.enterprise.pre_authentication, settings.pre_authentication);
    speaker_.say(wording_.enterprise.pre_authentication_limit, settings.pre_authentication_limit);
    speaker_.say(wording_.enterprise.radius_accounting, settings.Radius_accounting);
    speaker_.say(wording_.enterprise.dynamic_vlan, settings.dynamic_vlan);
    speaker_.say(wording_.enterprise.require_vlan_id, settings.require_vlan_id);
    speaker_.say(wording_.enterprise.bcast_refresh_rate, settings.Bcast_refresh_rate);
    speaker_.say(wording_.enterprise.session_refresh_rate, settings.Session_refresh_rate);
    if (!write("security", "wpa-ent")) {
        return false;
    }
    const auto* row = WpaOptions::find(enterprise_rows, settings.wpa, settings.cipher_suites);
    if (!write_wpa_options(row, settings.wpa)) {
        return false;
    }
    const bool offers_wpa3 = (settings.wpa & ORLO_WPA3) != 0;
    return !offers_wpa3 || write("suite_b", "192");
}

bool SecurityTranslator::write_rekeying(const wpa_enterprise& settings) {
    if (!is_rekey_interval(settings.Bcast_refresh_rate)) {
        return refuse(wording_.wrong_bcast_refresh);
    }
    if (!write_number("wpa_group_rekey", settings.Bcast_refresh_rate)) {
        return false;
    }
    if (settings.Session_refresh_rate >= 0 &&
        !write_number("session_key_refresh_rate", settings.Session_refresh_rate)) {
        return false;
    }
    return settings.session_key_refresh_action == nullptr ||
           write("session_key_refresh_action", settings.session_key_refresh_action);
}

bool SecurityTranslator::write_wpa_options(const WpaOptions* row, uint32_t wpa) {
    if (row == nullptr) {
        LOG_TRACE_FOR(speaker_.operation, wording_.unknown_version, wpa);
        return false;
    }
    if (row->wpaversion == nullptr) {
        LOG_TRACE_FOR(speaker_.operation, wording_.mixed_cipher, radio_, vap_);
        return false;
    }
    if (!write_logged_as("wpaversion", row->wpaversion, row->logged_wpaversion)) {
        return false;
    }
    return row->encryption == nullptr ||
           (write("encryption", row->encryption) && write("cipher", row->cipher));
}

bool SecurityTranslator::write_sae(const char* key) {
    return write("sae", "1") && write("sae_groups", wording_.sae_groups) &&
           write("sae_password", key);
}

bool SecurityTranslator::write_dynamic_vlan(int32_t dynamic_vlan) {
    if (!is_flag(dynamic_vlan)) {
        LOG_TRACE_FOR(speaker_.operation, "error: wifi%dvap%d: The Dynamic VLAN is not correct.\n",
                      radio_, vap_);
        return false;
    }
    const Text<128> key = key_of("dynamic_vlan");
    const Text<16> value("%d", dynamic_vlan);
    if (!stage("wireless", key, value)) {
        LOG_TRACE_FOR(speaker_.operation, "error: failed to uci set: wireless.%s=%s\n", key.c_str(),
                      value.c_str());
        return false;
    }
    return true;
}

int apply_mfp(uint32_t radio, uint32_t vap, uint32_t wpa, uint32_t mfp) {
    if (mfp > 1) {
        LOG_TRACE("invalid mfp: %d\n", mfp);
        return -1;
    }
    const struct {
        uint32_t wpa;
        const char* value[2]; // for mfp 0 and 1
    } rows[] = {{0x2, {"0", "1"}}, {0x3, {"0", "0"}}, {0x4, {"2", "2"}}, {0x6, {"1", "1"}}};
    const char* value = nullptr;
    for (const auto& row : rows) {
        if (row.wpa == wpa) {
            value = row.value[mfp];
        }
    }
    if (value == nullptr) {
        LOG_TRACE("Invalid WPA version: %d\n", wpa);
        return -1;
    }
    LOG_TRACE("vap_settings[%d].mfp:%s\n", vap, value);
    const Text<128> key("wifi%dvap%d.ieee80211w", radio, vap);
    if (!stage("wireless", key, value)) {
        LOG_TRACE("Set Value Failed : wireless.%s=%s!\n", key.c_str(), value);
        return -1;
    }
    return 0;
}

} // namespace orlo
