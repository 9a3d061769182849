// SPDX-License-Identifier: MIT
// What all kinds of security share, and the open kind.
#include "vap/security.h"

#include "uci/staging.h"

#include <cstring>

namespace orlo {

const SecurityWording vap_security_wording = {
    "19 20 21",
    {
        indexed("vap_settings[%d].wpa_personal.key:%s\n"),
        indexed("vap_settings[%d].wpa_personal.wpa:0x%x\n"),
        indexed("vap_settings[%d].wpa_personal.cipher_suites:0x%x\n"),
        indexed("vap_settings[%d].wpa_personal.refresh_rate:%d\n"),
    },
    {
        indexed("vap_settings[%d].wpa_enterprise.wpa:0x%x\n"),
        indexed("vap_settings[%d].wpa_enterprise.cipher_suites:0x%x\n"),
        indexed("vap_settings[%d].wpa_enterprise.pre_authentication:%d\n"),
        indexed("vap_settings[%d].wpa_enterprise.pre_authentication_limit:%d NOT support.\n"),
        indexed("vap_settings[%d].wpa_enterprise.Radius_accounting:%d\n"),
        indexed("vap_settings[%d].wpa_enterprise.dynamic_vlan:%d\n"),
        indexed("vap_settings[%d].wpa_enterprise.require_vlan_id:%d NOT support.\n"),
        indexed("vap_settings[%d].wpa_enterprise.Bcast_refresh_rate:%d\n"),
        indexed("vap_settings[%d].wpa_enterprise.Session_refresh_rate:%d NOT support.\n"),
    },
    {
        indexed("vap_settings[%d].radius_server[%d].ip:%s\n"),
        indexed("vap_settings[%d].radius_server[%d].key:%s\n"),
        indexed("vap_settings[%d].radius_server[%d].auth_port:%d\n"),
        indexed("vap_settings[%d].radius_server[%d].account_port:%d\n"),
        {"Info: account port = %d, means disabled.\n"},
        {"delete Value successfully\n"},
        {"delete wireless.auth_server_second successfully\n"},
        {"delete wireless.auth_secret_second successfully\n"},
    },
    {
        {},
        indexed("Security is not \"wpa-personal\" or \"wpa-enterprise\"ignore "
                "vap_settings[%d].mfp:%d\n"),
    },
    "Set Value Failed : wireless.%s=%s!\n",
    "delete Value Failed\n",
    "The wpa key is NULL!\n",
    "The wpa version is not support :%d !\n",
    "wlan%d.%d: Mixed chiper is not supported,CCMP is only supported.",
    "The refresh_rate is not correct!\n",
    "The Radius accounting is not correct!\n",
    "The refresh rate is not correct!\n",
    "The auth server port is not correct!\n",
    "Error: account port(%d) is not correct!\n",
    "Error: auth server[%d] is not correct!\n",
};

Security security_named(const char* name) {
    const struct {
        const char* name;
        Security security;
    } rows[] = {
        {"none", Security::open},
        {"wep", Security::wep},
        {"dynamic-wep", Security::dynamic_wep},
        {"wpa-personal", Security::personal},
        {"wpa-enterprise", Security::enterprise},
    };
    if (name == nullptr) {
        return Security::open;
    }
    for (const auto& row : rows) {
        if (strcmp(name, row.name) == 0) {
            return row.security;
        }
    }
    return Security::unknown;
}

Outcome SecurityTranslator::open() {
    return outcome_of(write("security", "none") && write("encryption", "none") &&
                      (remove("key") || refuse(wording_.delete_failed)));
}

void SecurityTranslator::dynamic_wep(const char* name, const dot1x& settings) {
    const auto not_supported = [this](const char* text, auto value) {
        speaker_.say(indexed(text), value);
    };
    not_supported("vap_settings[%d].wireless_security:%s NOT support.\n", name);
    not_supported("vap_settings[%d].dot1x.Radius_accounting:%d NOT support.\n",
                  settings.Radius_accounting);
    not_supported("vap_settings[%d].dot1x.dynamic_vlan:%d NOT support.\n", settings.dynamic_vlan);
    not_supported("vap_settings[%d].dot1x.require_vlan_id:%d NOT support.\n",
                  settings.require_vlan_id);
    not_supported("vap_settings[%d].dot1x.Bcast_refresh_rate:%d NOT support.\n",
                  settings.Bcast_refresh_rate);
    not_supported("vap_settings[%d].dot1x.Session_refresh_rate:%d NOT support.\n",
                  settings.Session_refresh_rate);
}

int SecurityTranslator::finish(Outcome translation, Security security, uint32_t wpa, int32_t mfp) {
    Outcome outcome = translation;
    if (outcome == Outcome::done) {
        outcome = clean_up(security, wpa);
    }
    if (outcome == Outcome::done) {
        outcome = protect_frames(security, wpa, mfp);
    }
    switch (outcome) {
    case Outcome::done:
        return 0;
    case Outcome::refused:
        return discard_staged();
    case Outcome::refused_keeping_staged:
        break;
    }
    return -1;
}

Outcome SecurityTranslator::clean_up(Security security, uint32_t wpa) {
    const bool offers_wpa3 = is_wpa(security) && (wpa & ORLO_WPA3) != 0;
    const bool keeps_sae = offers_wpa3 && security == Security::personal;
    const bool keeps_suite_b = offers_wpa3 && security == Security::enterprise;
    const struct {
        const char* option;
        bool kept;
    } rows[] = {
        {"sae", keeps_sae},
        {"sae_groups", keeps_sae},
        {"sae_password", keeps_sae},
        {"suite_b", keeps_suite_b},
    };
    for (const auto& row : rows) {
        if (!row.kept && !remove(row.option)) {
            LOG_TRACE_FOR(speaker_.operation, "Delete Value Failed : wireless.%s!\n",
                          key_of(row.option).c_str());
            return Outcome::refused;
        }
    }
    return Outcome::done;
}

Outcome SecurityTranslator::protect_frames(Security security, uint32_t wpa, int32_t mfp) {
    if (!is_wpa(security)) {
        speaker_.say(wording_.frame_protection.ignored, mfp);
        return Outcome::done;
    }
    speaker_.say(wording_.frame_protection.applied);
    return outcome_of(apply_mfp(radio_, vap_, wpa, static_cast<uint32_t>(mfp)) == 0);
}

Text<128> SecurityTranslator::key_of(const char* option) const {
    return Text<128>("wifi%dvap%d.%s", radio_, vap_, option);
}

bool SecurityTranslator::write(const char* option, const char* value) {
    return write_logged_as(option, value, value);
}

bool SecurityTranslator::write_number(const char* option, int32_t value) {
    return write(option, Text<16>("%d", value));
}

bool SecurityTranslator::write_logged_as(const char* option, const char* value,
                                         const char* logged) {
    const Text<128> key = key_of(option);
    if (!stage("wireless", key, value)) {
        LOG_TRACE_FOR(speaker_.operation, wording_.set_failed, key.c_str(), shown(logged));
        return false;
    }
    return true;
}

bool SecurityTranslator::remove(const char* option) {
    return uciDeleteValue("wireless", key_of(option), 0) == 0;
}

// Logs a text without values.
bool SecurityTranslator::refuse(const char* text) const {
    LOG_TRACE_FOR(speaker_.operation, "%s", text);
    return false;
}

} // namespace orlo
