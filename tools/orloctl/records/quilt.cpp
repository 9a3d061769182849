// SPDX-License-Identifier: MIT
// The channel quilt: its own settings, its VAPs and their security.
#include <string>

#include "description.h"
#include "records/registry.h"
#include "records/wpa.h"

namespace orloctl {

namespace {

using namespace forms;

constexpr size_t longest_secret = 485; // that the library stores

bool is_enabled(const quilt_vap& vap) {
    return vap.enable == 1 && vap.status == 1;
}

bool has_ssid(const quilt_vap& vap, const Place& /*place*/) {
    return !is_enabled(vap) || vap.ssid[0] != '\0';
}

bool has_vlan(const quilt_vap& vap, const Place& /*place*/) {
    return !is_enabled(vap) || vap.vlan_id != 0;
}

bool has_mac_auth_server(const quilt_vap& vap, const Place& /*place*/) {
    const bool asks_servers = vap.mac_filter_mode == 2 || vap.mac_filter_mode == 3;
    return asks_servers || vap.mac_auth_server[0].index == 0;
}

bool has_radius_server(const quilt_wpa_enterprise& security, const Place& /*place*/) {
    return security.radius_server[0].ip != nullptr;
}

bool has_wpa_key(const quilt_wpa_personal& security, const Place& /*place*/) {
    return is_wpa_key(security.key);
}

bool has_each_vap_once(const quilt_settings& quilt, const Place& /*place*/) {
    bool listed[ORLO_RADIOS][ORLO_VAPS_PER_RADIO] = {};
    for (const quilt_vap& vap : quilt.quilt_radio) {
        if (vap.enable != 1) {
            continue; // nor are its indexes checked
        }
        bool& is_listed = listed[vap.radio][vap.vap];
        if (is_listed) {
            return false;
        }
        is_listed = true;
    }
    return true;
}

} // namespace

// clang-format off
const Record quilt_settings_record = {
    "quilt_settings", "the channel quilt: access points that share one channel",
    sizeof(quilt_settings), {
    {MEMBER_OF(quilt_settings, mgmt_vlan), number().in(0, 4096).required(), "its management VLAN"},
    {MEMBER_OF(quilt_settings, secret), text().not_empty().bytes(longest_secret).required(),
     "shared by its access points"},
    {MEMBER_OF(quilt_settings, rekey_timeout), number().in_unit("seconds").or_not_given(),
     "from one key to the next; unchecked"},
    {MEMBER_OF(quilt_settings, station_isolation), number().or_not_given(),
     "stations cannot reach each other, 1 or 0; unchecked"},
    {MEMBER_OF(quilt_settings, beacon_rssi_threshold), number().in(0, 91).or_not_given(),
     "how loud a beacon must be"},
    {MEMBER_OF(quilt_settings, cqscan), number().or_not_given(),
     "1 switches the scan for stations on; unchecked"},
    {MEMBER_OF(quilt_settings, cq_proxy_arp), number().or_not_given(),
     "1 switches the ARP filter on; unchecked"},
    {MEMBER_OF(quilt_settings, quilt_radio), some(quilt_vap_record, ORLO_VAPS),
     "VAPs in the quilt; one that is not listed stays as it is"},
}, {
    condition<&has_each_vap_once>("quilt_radio", "lists a VAP twice"),
}};

const Record quilt_vap_record = {
    "quilt_vap", "a VAP in the quilt", sizeof(quilt_vap), {
    {MEMBER_OF(quilt_vap, enable), flag().or_else(1), "false: skipped, the VAP stays as it is"},
    {MEMBER_OF(quilt_vap, radio), number().in(0, ORLO_RADIOS - 1).required(),
     "0: 2.4 GHz, 1: 5 GHz; it takes 320 stations then"},
    {MEMBER_OF(quilt_vap, vap), number().in(0, ORLO_VAPS_PER_RADIO - 1).required(), "which one"},
    {MEMBER_OF(quilt_vap, status), flag().or_else(1), "enabled; of another nothing more is read"},
    {MEMBER_OF(quilt_vap, bssid), text().like_mac().bytes(sizeof quilt_vap::bssid - 1),
     "its address; none: the stored one is forgotten"},
    {MEMBER_OF(quilt_vap, ssid), text().bytes(32), "name of the network, required when it is enabled"},
    {MEMBER_OF(quilt_vap, bcast_ssid), flag().or_else(1),
     "beacons carry the SSID; false: it is hidden"},
    {MEMBER_OF(quilt_vap, vlan_id), number().in(1, 4094).or_not_given(0),
     "VLAN of its stations, likewise"},
    {MEMBER_OF(quilt_vap, mac_filter_mode), number(),
     "filter by address; 0: off, 2 and 3: the servers are asked, 4: area authentication; unchecked"},
    {MEMBER_OF(quilt_vap, mac_auth_server), some(mac_auth_radius_server_record, 2),
     "RADIUS servers that know the addresses, primary and secondary"},
    {MEMBER_OF(quilt_vap, mac_auth_reset), flag(),
     "forgets the stored servers, as modes 2 and 3 do anyway"},
    {MEMBER_OF(quilt_vap, band_steer), flag(),
     "steers stations to the better band; the radio's: its last enabled VAP decides"},
    {MEMBER_OF(quilt_vap, mfp), flag(),
     "protects management frames; WPA2 alone heeds it, other versions decide themselves"},
    {MEMBER_OF(quilt_vap, inactivity_timer),
     number().in(60, 65535).in_unit("seconds").or_not_given(),
     "silent stations are forgotten after that; the radio's: VAP 0 decides"},
    {MEMBER_OF(quilt_vap, deauth_dup_auth), flag().or_not_given(),
     "deauthenticates a station that authenticates again"},
    {MEMBER_OF(quilt_vap, assoc_advertisement), flag().or_not_given(),
     "tells other access points of a station"},
    {MEMBER_OF(quilt_vap, dtim_period), number().in(1, 255).in_unit("beacons").or_not_given(),
     "from one DTIM to the next"},
    {MEMBER_OF(quilt_vap, proxy_arp), number().or_not_given(),
     "answers ARP for stations, 1 or 0; unchecked"},
    {MEMBER_OF(quilt_vap, wireless_security),
     text().words({"none", "wpa-personal", "wpa-enterprise"}).or_else("none")
         .bytes(sizeof quilt_vap::wireless_security - 1),
     "there is no WEP in a quilt"},
    {MEMBER_OF(quilt_vap, wpa_personal),
     record(quilt_wpa_personal_record).selected_by("wpa-personal"), "WPA with a passphrase"},
    {MEMBER_OF(quilt_vap, wpa_enterprise),
     record(quilt_wpa_enterprise_record).selected_by("wpa-enterprise"), "WPA with RADIUS servers"},
    {MEMBER_OF(quilt_vap, fast_roaming), record(fast_roaming_record), "802.11r, k and v"},
    {MEMBER_OF(quilt_vap, cp), optional(cp_settings_record), "what guests meet first; none: nothing"},
}, {
    condition<&has_ssid>("ssid", "is missing, the VAP is enabled"),
    condition<&has_vlan>("vlan_id", "is missing, the VAP is enabled"),
    condition<&has_mac_auth_server>("mac_auth_server", "is asked with \"mac_filter_mode\" 2 or 3 only"),
}, "enable", "wireless_security"};

const Record quilt_wpa_personal_record = {
    "quilt_wpa_personal", "WPA with a passphrase, in the quilt", sizeof(quilt_wpa_personal), {
    {MEMBER_OF(quilt_wpa_personal, wpa), wpa_personal_versions().required(), "versions on offer"},
    {MEMBER_OF(quilt_wpa_personal, cipher_suites), wpa_ciphers(), "pairwise ciphers on offer"},
    {MEMBER_OF(quilt_wpa_personal, refresh_rate), wpa_rekeying(), "from one group key to the next"},
    {MEMBER_OF(quilt_wpa_personal, key), text().bytes(sizeof quilt_wpa_personal::key - 1).required(),
     "passphrase and SAE password"},
}, {
    condition<&has_wpa3_cipher<quilt_wpa_personal>>("cipher_suites", wpa3_cipher_rule),
    condition<&has_wpa_key>("key", wpa_key_rule),
}};

const Record quilt_wpa_enterprise_record = {
    "quilt_wpa_enterprise", "WPA with RADIUS servers, in the quilt", sizeof(quilt_wpa_enterprise), {
    {MEMBER_OF(quilt_wpa_enterprise, wpa), wpa_enterprise_versions().required(),
     "versions on offer; WPA3 is that of 192 bits"},
    {MEMBER_OF(quilt_wpa_enterprise, cipher_suites), wpa_ciphers(), "pairwise ciphers on offer"},
    {MEMBER_OF(quilt_wpa_enterprise, pre_authentication), number(), "not served"},
    {MEMBER_OF(quilt_wpa_enterprise, Radius_accounting), flag(), "accounting by RADIUS"},
    {MEMBER_OF(quilt_wpa_enterprise, Bcast_refresh_rate), wpa_rekeying(),
     "from one group key to the next"},
    {MEMBER_OF(quilt_wpa_enterprise, dynamic_vlan), flag(), "the RADIUS server assigns the VLAN"},
    {MEMBER_OF(quilt_wpa_enterprise, radius_server), array(radius_server_record, 2),
     "the primary one, which it needs, and the secondary one"},
}, {
    condition<&has_wpa3_cipher<quilt_wpa_enterprise>>("cipher_suites", wpa3_cipher_rule),
    condition<&has_radius_server>("radius_server[0].ip", "is missing, \"wpa-enterprise\" needs it"),
}};
// clang-format on

} // namespace orloctl
