// SPDX-License-Identifier: MIT
// A VAP of the channel quilt: the steps of any other VAP, then MAC authentication and portal.
#include "quilt/vap.h"

#include "common/flag.h"
#include "ops/operations.h"
#include "quilt/wording.h"
#include "uci/staging.h"
#include "vap/basic.h"
#include "vap/fast_roaming.h"

namespace orlo {

namespace {

// The steps below work in its name.
constexpr const char* apply_quilt = "api_apply_channel_quilt";

// Stations that a radio of a quilt takes.
constexpr const char* quilt_stations = "320";

// One entry being staged. Each step returns 0, or -1 after it has logged why, with everything
// staged discarded. The entry's indexes are not checked: the store refuses what it has no section
// for.
class QuiltVap {
public:
    QuiltVap(uint32_t index, quilt_vap* entry)
        : index_(index), radio_(static_cast<uint32_t>(entry->radio)),
          vap_(static_cast<uint32_t>(entry->vap)), entry_(*entry) {}

    int apply() {
        LOG_TRACE_FOR(apply_quilt, "info: wifi%dvap%d\n", radio_, vap_);
        if (set_vap_mode(radio_, vap_, "quilt") != 0) {
            return LOG_AND_DISCARD_FOR(apply_quilt, "error: set quilt mode failed\n");
        }
        if (set_vap_status(radio_, vap_, entry_.status) != 0) {
            return LOG_AND_DISCARD_FOR(apply_quilt, "error: Set Quilt Status failed : status=%d!\n",
                                       entry_.status);
        }
        if (entry_.status == 0) {
            LOG_TRACE_FOR(apply_quilt, "info: Can not set any more, because VAP status is %d\n",
                          entry_.status);
            return 0;
        }
        return apply_enabled();
    }

private:
    int apply_enabled() {
        if (apply_name() != 0 || apply_mac_authentication() != 0 || apply_band_steering() != 0 ||
            apply_timers() != 0 || apply_proxy_arp() != 0 || apply_security() != 0 ||
            apply_fast_roaming() != 0 || apply_captive_portal() != 0) {
            return -1;
        }
        return 0;
    }

    int apply_name() const {
        if (stage_or_discard(Text<128>("wifi%d.max_client", radio_), quilt_stations) != 0 ||
            stage_or_discard(Text<128>("wifi%dvap%d.bssid", radio_, vap_),
                             read_inline(entry_.bssid)) != 0) {
            return -1;
        }
        const auto ssid = read_inline(entry_.ssid);
        if (set_vap_ssid(radio_, vap_, ssid) != 0) {
            return LOG_AND_DISCARD_FOR(apply_quilt, "error: Set SSIDL%s failed!\n", ssid.c_str());
        }
        if (set_vap_bcast_ssid(radio_, vap_, entry_.bcast_ssid) != 0) {
            return LOG_AND_DISCARD_FOR(apply_quilt, "error: bcast_ssid is not correct :%d!\n",
                                       entry_.bcast_ssid);
        }
        if (set_vap_vlan(radio_, vap_, entry_.vlan_id) != 0) {
            return LOG_AND_DISCARD_FOR(apply_quilt, "error: Set vlan_id: %d Failed\n",
                                       entry_.vlan_id);
        }
        return 0;
    }

    int stage_or_discard(const char* key, const char* value) const {
        if (!stage("wireless", key, value)) {
            return LOG_AND_DISCARD_FOR(apply_quilt, "error: Set Value Failed : wireless.%s=%s!\n",
                                       key, value);
        }
        return 0;
    }

    bool asks_radius_servers() const {
        return entry_.mac_filter_mode == 2 || entry_.mac_filter_mode == 3;
    }

    // The servers of old are forgotten before the filter's mode and its own servers are set.
    int apply_mac_authentication() const {
        if ((entry_.mac_auth_reset == 1 || asks_radius_servers()) && forget_mac_servers() != 0) {
            return -1;
        }
        if (api_apply_mac_filter_mode(entry_.radio, entry_.vap, entry_.mac_filter_mode) != 0) {
            return LOG_AND_DISCARD_FOR(apply_quilt, "error: Set Mac Filter Mode Failed : %d!\n",
                                       entry_.mac_filter_mode);
        }
        return asks_radius_servers() ? apply_mac_servers() : 0;
    }

    int forget_mac_servers() const {
        mac_auth_radius_server nobody = {0, "", "", 1812, "hyphen", "lower", "username", ""};
        for (nobody.index = 1; nobody.index <= 2; nobody.index++) {
            if (api_apply_mac_auth_radius_server(entry_.radio, entry_.vap, &nobody) != 0) {
                return LOG_AND_DISCARD_FOR(apply_quilt, "error: Reset MAC Auth Servers Failed!\n");
            }
        }
        return 0;
    }

    int apply_mac_servers() const {
        for (const mac_auth_radius_server& server : entry_.mac_auth_server) {
            if (server.index != 0 &&
                api_apply_mac_auth_radius_server(entry_.radio, entry_.vap, &server) != 0) {
                return LOG_AND_DISCARD_FOR(
                    apply_quilt, "error: Set MAC Auth Server Failed! (prio:%u)\n", server.index);
            }
        }
        return 0;
    }

    // An option of the radio: the last enabled entry's value stands.
    int apply_band_steering() const {
        const char* const value = flag_text(entry_.band_steer);
        if (value == nullptr) {
            return LOG_AND_DISCARD_FOR(
                apply_quilt,
                "error: quilt_settings->quilt_radio[%d].band_steer is not correct : %d!\n", index_,
                entry_.band_steer);
        }
        LOG_TRACE_FOR(apply_quilt, "quilt_settings->quilt_radio[%d].band_steer:%s\n", index_,
                      value);
        const Text<128> key("wifi%d.band_steer", radio_);
        if (!stage("wireless", key, value)) {
            return LOG_AND_DISCARD_FOR(
                apply_quilt,
                "error: Set band steer of CQ to configuration failed : wireless.%s=%s!\n",
                key.c_str(), value);
        }
        return 0;
    }

    int apply_timers() const {
        if (set_vap_inactivity_timer(radio_, vap_, entry_.inactivity_timer) != 0) {
            return LOG_AND_DISCARD_FOR(apply_quilt,
                                       "wifi%dvap%d: failed to set CQ inactivity timer %d\n",
                                       radio_, vap_, entry_.inactivity_timer);
        }
        if (set_vap_deauth_dup_auth(radio_, vap_, entry_.deauth_dup_auth) != 0) {
            return LOG_AND_DISCARD_FOR(apply_quilt,
                                       "wifi%dvap%d: failed to set CQ don't send deauth %d\n",
                                       radio_, vap_, entry_.deauth_dup_auth);
        }
        if (set_vap_assoc_advertisement(radio_, vap_, entry_.assoc_advertisement) != 0) {
            return LOG_AND_DISCARD_FOR(apply_quilt,
                                       "wifi%dvap%d: failed to set CQ assoc advertisement %d\n",
                                       radio_, vap_, entry_.assoc_advertisement);
        }
        if (set_vap_dtim_period(radio_, vap_, entry_.dtim_period) != 0) {
            return LOG_AND_DISCARD_FOR(apply_quilt,
                                       "wifi%dvap%d: failed to set CQ dtim-period %d\n", radio_,
                                       vap_, entry_.dtim_period);
        }
        return 0;
    }

    int apply_proxy_arp() const {
        if (entry_.proxy_arp < 0) {
            return 0;
        }
        const Text<128> key("wifi%dvap%d.proxy_arp", radio_, vap_);
        const Text<16> value("%d", entry_.proxy_arp);
        if (!stage("wireless", key, value)) {
            return LOG_AND_DISCARD_FOR(apply_quilt, "Set Value Failed : wireless.%s=%s!\n",
                                       key.c_str(), value.c_str());
        }
        return 0;
    }

    int apply_security() const {
        const Speaker speaker = {apply_quilt, index_};
        const Security security = security_named(read_inline(entry_.wireless_security));
        // In the same place for both; of any other security something else is there.
        const uint32_t versions = is_wpa(security) ? entry_.wpa_personal.wpa : 0;

        SecurityTranslator translator(speaker, quilt_security_wording, radio_, vap_);
        const Outcome translation = translate(&translator, security);
        return translator.finish(translation, security, versions, entry_.mfp);
    }

    Outcome translate(SecurityTranslator* translator, Security security) const {
        switch (security) {
        case Security::open:
            return translator->open();
        case Security::personal:
            return translate_personal(translator, entry_.wpa_personal);
        case Security::enterprise:
            return translate_enterprise(translator, entry_.wpa_enterprise);
        default: // a quilt has no WEP
            return Outcome::done;
        }
    }

    static Outcome translate_personal(SecurityTranslator* translator,
                                      const quilt_wpa_personal& settings) {
        const auto key = read_inline(settings.key);
        wpa_personal personal = {};
        personal.wpa = settings.wpa;
        personal.cipher_suites = settings.cipher_suites;
        personal.refresh_rate = settings.refresh_rate;
        personal.key = key;
        return translator->personal(personal);
    }

    static Outcome translate_enterprise(SecurityTranslator* translator,
                                        const quilt_wpa_enterprise& settings) {
        wpa_enterprise enterprise = {};
        enterprise.wpa = settings.wpa;
        enterprise.cipher_suites = settings.cipher_suites;
        enterprise.Bcast_refresh_rate = settings.Bcast_refresh_rate;
        enterprise.Session_refresh_rate = ORLO_NOT_GIVEN;
        enterprise.pre_authentication = settings.pre_authentication;
        enterprise.Radius_accounting = settings.Radius_accounting;
        enterprise.dynamic_vlan = settings.dynamic_vlan;
        return translator->enterprise(enterprise, settings.radius_server);
    }

    int apply_fast_roaming() {
        if (set_vap_fast_roaming(radio_, vap_, &entry_.fast_roaming) != 0) {
            return LOG_AND_DISCARD_FOR(apply_quilt, "error: Set fast roaming Failed\n");
        }
        return 0;
    }

    int apply_captive_portal() const {
        if (api_apply_captive_portal_to_vap(entry_.radio, entry_.vap, &entry_.cp) != 0) {
            return LOG_AND_DISCARD_FOR(apply_quilt, "error: Set captive portal Failed\n");
        }
        return 0;
    }

    uint32_t index_;
    uint32_t radio_;
    uint32_t vap_;
    quilt_vap& entry_;
};

} // namespace

int apply_quilt_vap(uint32_t index, quilt_vap* entry) {
    return QuiltVap(index, entry).apply();
}

} // namespace orlo
