// SPDX-License-Identifier: MIT
// The wanted state of all VAPs of a radio: staged VAP by VAP, all or nothing.
#include "common/flag.h"
#include "common/identity.h"
#include "common/pending_services.h"
#include "ops/operations.h"
#include "uci/staging.h"
#include "vap/basic.h"
#include "vap/fast_roaming.h"
#include "vap/security.h"

using orlo::discard_staged;
using orlo::Outcome;
using orlo::Security;
using orlo::SecurityTranslator;
using orlo::shown;
using orlo::Speaker;
using orlo::stage;
using orlo::Text;

namespace {

// The steps below work in its name.
constexpr const char* apply_vap = "api_apply_vap";

enum Result { success = 0, failure = -1, vlan_failure = -2, band_steer_failure = -3 };

Result discard_and_return(Result result) {
    discard_staged();
    return result;
}

Result apply_name(uint32_t radio, uint32_t vap, const vap_settings& settings) {
    if (orlo::set_vap_ssid(radio, vap, settings.ssid) != 0) {
        LOG_TRACE_FOR(apply_vap, "Set Value Failed : wireless.%s=%s!\n",
                      Text<128>("wifi%dvap%d.ssid", radio, vap).c_str(), shown(settings.ssid));
        return discard_and_return(failure);
    }
    if (orlo::set_vap_bssid(radio, vap) != 0) {
        LOG_TRACE_FOR(apply_vap, "Set Value Failed : wireless.wifi%dvap%d.bssid\n", radio, vap);
        return discard_and_return(failure);
    }
    if (orlo::set_vap_bcast_ssid(radio, vap, settings.bcast_ssid) != 0) {
        LOG_TRACE_FOR(apply_vap, "Cannot set bcast_ssid :%d!\n", settings.bcast_ssid);
        return discard_and_return(failure);
    }
    return success;
}

// An option of the radio: the last enabled VAP's value stands.
Result apply_band_steering(uint32_t radio, uint32_t vap, int32_t band_steer) {
    if (!orlo::is_flag(band_steer)) {
        LOG_TRACE_FOR(apply_vap, "band_steer is not correct :%d!\n", band_steer);
        return discard_and_return(band_steer_failure);
    }
    LOG_TRACE_FOR(apply_vap, "vap_settings[%d].band_steer:%d\n", vap, band_steer);
    const Text<128> key("wifi%d.band_steer", radio);
    if (!orlo::stage_number("wireless", key, band_steer)) {
        LOG_TRACE_FOR(apply_vap, "Set Value Failed : wireless.%s=%d!\n", key.c_str(), band_steer);
        return discard_and_return(band_steer_failure);
    }
    return success;
}

Result apply_vlan(uint32_t radio, uint32_t vap, int32_t vlan_id) {
    if (orlo::set_vap_vlan(radio, vap, vlan_id) != 0) {
        LOG_TRACE_FOR(apply_vap, "Set vlan_id: %d Failed\n", vlan_id);
        return discard_and_return(vlan_failure);
    }
    return success;
}

// The ageing time is the radio's, so only the first VAP's counts.
Result apply_timers(uint32_t radio, uint32_t vap, const vap_settings& settings) {
    if ((vap == 0 && orlo::set_vap_inactivity_timer(radio, vap, settings.inactivity_timer) != 0) ||
        orlo::set_vap_deauth_dup_auth(radio, vap, settings.deauth_dup_auth) != 0 ||
        orlo::set_vap_assoc_advertisement(radio, vap, settings.assoc_advertisement) != 0 ||
        orlo::set_vap_dtim_period(radio, vap, settings.dtim_period) != 0) {
        return discard_and_return(failure);
    }
    return success;
}

Result apply_proxy_arp(uint32_t radio, uint32_t vap, int32_t proxy_arp) {
    if (proxy_arp < 0) {
        return success;
    }
    const Text<128> key("wifi%dvap%d.proxy_arp", radio, vap);
    const Text<16> value("%d", proxy_arp);
    if (!stage("wireless", key, value)) {
        LOG_TRACE_FOR(apply_vap, "Set Value Failed : wireless.%s=%s!\n", key.c_str(),
                      value.c_str());
        return discard_and_return(failure);
    }
    return success;
}

Outcome translate(SecurityTranslator* translator, const vap_settings& settings, Security security) {
    switch (security) {
    case Security::open:
        return translator->open();
    case Security::wep:
        return translator->wep(settings.wep);
    case Security::dynamic_wep:
        translator->dynamic_wep(settings.wireless_security, settings.dot1x);
        break;
    case Security::personal:
        return translator->personal(settings.wpa_personal);
    case Security::enterprise:
        return translator->enterprise(settings.wpa_enterprise, settings.radius_server);
    case Security::unknown:
        break;
    }
    return Outcome::done;
}

// The WPA versions that a VAP offers: 0 unless its security is WPA. Of any other security the
// settings hold something else in that place.
uint32_t wpa_versions(const vap_settings& settings, Security security) {
    switch (security) {
    case Security::personal:
        return settings.wpa_personal.wpa;
    case Security::enterprise:
        return settings.wpa_enterprise.wpa;
    default:
        return 0;
    }
}

Result apply_security(uint32_t radio, uint32_t vap, const vap_settings& settings) {
    const Speaker speaker = {apply_vap, vap};
    const Security security = orlo::security_named(settings.wireless_security);
    const uint32_t versions = wpa_versions(settings, security);

    SecurityTranslator translator(speaker, orlo::vap_security_wording, radio, vap);
    const Outcome translation = translate(&translator, settings, security);
    return translator.finish(translation, security, versions, settings.mfp) == 0 ? success
                                                                                 : failure;
}

Result apply_enabled_vap(uint32_t radio, uint32_t vap, vap_settings* settings) {
    Result result = apply_name(radio, vap, *settings);
    if (result == success) {
        result = apply_band_steering(radio, vap, settings->band_steer);
    }
    if (result == success) {
        result = apply_vlan(radio, vap, settings->vlan_id);
    }
    if (result == success) {
        result = apply_timers(radio, vap, *settings);
    }
    if (result == success) {
        result = apply_proxy_arp(radio, vap, settings->proxy_arp);
    }
    if (result == success) {
        result = apply_security(radio, vap, *settings);
    }
    if (result == success &&
        orlo::apply_vap_fast_roaming(radio, vap, &settings->fast_roaming) != 0) {
        result = failure;
    }
    return result;
}

Result apply_one_vap(uint32_t radio, uint32_t vap, vap_settings* settings) {
    LOG_TRACE_FOR(apply_vap, "===== Radio: %d  VAP: %d =====\n", radio, vap);
    if (orlo::set_vap_mode(radio, vap, "ap") != 0) {
        LOG_TRACE_FOR(apply_vap, "Set VAP mode failed\n");
        return failure;
    }
    LOG_TRACE_FOR(apply_vap, "vap_settings[%d].status:%d\n", vap, settings->status);
    if (orlo::set_vap_status(radio, vap, settings->status) != 0) {
        LOG_TRACE_FOR(apply_vap, "Status is not correct :%d!\n", settings->status);
        return failure;
    }
    if (settings->status == 0) { // nothing else of it is read
        LOG_TRACE_FOR(apply_vap, "=====END Radio: %d  VAP: %d =====\n", radio, vap);
        return success;
    }
    return apply_enabled_vap(radio, vap, settings);
}

} // namespace

int api_apply_vap(int radio, struct vap_settings* settings) {
    if (settings == nullptr) {
        return failure;
    }
    for (uint32_t vap = 0; vap < orlo::vaps_per_radio; vap++) {
        const Result result = apply_one_vap(static_cast<uint32_t>(radio), vap, &settings[vap]);
        if (result != success) {
            return result;
        }
    }
    LOG_TRACE("End... return VENDOR_VAP_SUCCESS\n");
    orlo::mark_changed(orlo::service_network);
    return success;
}
