// SPDX-License-Identifier: MIT
// The records of a VAP: the whole of it, its kinds of security, RADIUS servers, fast roaming.
#include "records/registry.h"
#include "records/wpa.h"

namespace orloctl {

namespace {

using namespace forms;

using Rrm = decltype(fast_roaming::rrm);
using Wnm = decltype(fast_roaming::wnm);

constexpr int64_t highest_port = 65535;
constexpr int64_t radius_port = 1812;

bool has_wpa_key(const wpa_personal& security, const Place& /*place*/) {
    return is_wpa_key(security.key);
}

bool has_wep_authentication(const wep& security, const Place& /*place*/) {
    return security.open != 0 || security.shared != 0;
}

bool has_place_for_wep(const vap_settings& vap, const Place& place) {
    return !is(vap.wireless_security, "wep") || place.vap.value_or(0) == 0;
}

bool has_radius_server(const vap_settings& vap, const Place& /*place*/) {
    return !is(vap.wireless_security, "wpa-enterprise") || vap.radius_server[0].ip != nullptr;
}

} // namespace

// clang-format off
const Record vap_settings_record = {
    "vap_settings", "one VAP", sizeof(vap_settings), {
    {MEMBER_OF(vap_settings, status), flag().or_else(1), "enabled"},
    {MEMBER_OF(vap_settings, ssid), text().bytes(32).required(), "name of the network"},
    {MEMBER_OF(vap_settings, bcast_ssid), flag().or_else(1),
     "beacons carry the SSID; false: it is hidden"},
    {MEMBER_OF(vap_settings, vlan_id), number().in(1, 4094).required(), "VLAN of its stations"},
    {MEMBER_OF(vap_settings, band_steer), flag(),
     "steers stations to the better band; the radio's: its last enabled VAP decides"},
    {MEMBER_OF(vap_settings, mfp), flag(),
     "protects management frames; WPA2 alone heeds it, other versions decide themselves"},
    {MEMBER_OF(vap_settings, inactivity_timer),
     number().in(60, 65535).in_unit("seconds").or_not_given(),
     "silent stations are forgotten after that; the radio's: VAP 0 decides"},
    {MEMBER_OF(vap_settings, deauth_dup_auth), flag().or_not_given(),
     "deauthenticates a station that authenticates again"},
    {MEMBER_OF(vap_settings, assoc_advertisement), flag().or_not_given(),
     "tells other access points of a station"},
    {MEMBER_OF(vap_settings, dtim_period), number().in(1, 255).in_unit("beacons").or_not_given(),
     "from one DTIM to the next"},
    {MEMBER_OF(vap_settings, proxy_arp), number().or_not_given(),
     "answers ARP for stations, 1 or 0; unchecked"},
    {MEMBER_OF(vap_settings, wireless_security),
     text().words({"none", "wep", "wpa-personal", "wpa-enterprise", "dynamic-wep"}),
     "none given is \"none\"; \"dynamic-wep\" is not served"},
    {MEMBER_OF(vap_settings, wep), record(wep_record).selected_by("wep"), "WEP"},
    {MEMBER_OF(vap_settings, wpa_personal), record(wpa_personal_record).selected_by("wpa-personal"),
     "WPA with a passphrase"},
    {MEMBER_OF(vap_settings, wpa_enterprise),
     record(wpa_enterprise_record).selected_by("wpa-enterprise"), "WPA with RADIUS servers"},
    {MEMBER_OF(vap_settings, dot1x), record(dot1x_record).selected_by("dynamic-wep"),
     "WEP with RADIUS servers"},
    {MEMBER_OF(vap_settings, radius_server), array(radius_server_record, 2),
     "of \"wpa-enterprise\": the primary one, which it needs, and the secondary one"},
    {MEMBER_OF(vap_settings, fast_roaming), record(fast_roaming_record), "802.11r, k and v"},
}, {
    condition<&has_place_for_wep>("wireless_security", "\"wep\" is possible on VAP 0 only"),
    condition<&has_radius_server>("radius_server[0].ip", "is missing, \"wpa-enterprise\" needs it"),
}, "status", "wireless_security"};

const Record wep_record = {
    "wep", "WEP, on VAP 0 of a radio", sizeof(wep), {
    {MEMBER_OF(wep, index), number(), "slot of the key that is used for sending; unchecked"},
    {MEMBER_OF(wep, length), number().one_of({64, 128}).in_unit("bits").or_else(128),
     "length of the keys"},
    {MEMBER_OF(wep, type), text().words({"ascii", "hex"}), "how the keys are written"},
    {MEMBER_OF(wep, key1), text(), "first key"},
    {MEMBER_OF(wep, key2), text(), "second key"},
    {MEMBER_OF(wep, key3), text(), "third key"},
    {MEMBER_OF(wep, key4), text(), "fourth key"},
    {MEMBER_OF(wep, open), flag(), "open-system authentication"},
    {MEMBER_OF(wep, shared), flag(), "shared-key authentication, unless it is open"},
}, {
    condition<&has_wep_authentication>("open", "\"open\" or \"shared\" must be true"),
}};

const Record wpa_personal_record = {
    "wpa_personal", "WPA with a passphrase", sizeof(wpa_personal), {
    {MEMBER_OF(wpa_personal, wpa), wpa_personal_versions().required(), "versions on offer"},
    {MEMBER_OF(wpa_personal, cipher_suites), wpa_ciphers(), "pairwise ciphers on offer"},
    {MEMBER_OF(wpa_personal, refresh_rate), wpa_rekeying(), "from one group key to the next"},
    {MEMBER_OF(wpa_personal, key), text().required(), "passphrase and SAE password"},
}, {
    condition<&has_wpa3_cipher<wpa_personal>>("cipher_suites", wpa3_cipher_rule),
    condition<&has_wpa_key>("key", wpa_key_rule),
}};

const Record wpa_enterprise_record = {
    "wpa_enterprise", "WPA with RADIUS servers", sizeof(wpa_enterprise), {
    {MEMBER_OF(wpa_enterprise, wpa), wpa_enterprise_versions().required(),
     "versions on offer; WPA3 is that of 192 bits"},
    {MEMBER_OF(wpa_enterprise, cipher_suites), wpa_ciphers(), "pairwise ciphers on offer"},
    {MEMBER_OF(wpa_enterprise, Bcast_refresh_rate), wpa_rekeying(), "from one group key to the next"},
    {MEMBER_OF(wpa_enterprise, Session_refresh_rate), number().in_unit("seconds").or_not_given(),
     "from one session key to the next; unchecked"},
    {MEMBER_OF(wpa_enterprise, session_key_refresh_action), text(),
     "what happens to the session then; unchecked"},
    {MEMBER_OF(wpa_enterprise, pre_authentication), number(), "not served"},
    {MEMBER_OF(wpa_enterprise, pre_authentication_limit), number(), "not served"},
    {MEMBER_OF(wpa_enterprise, Radius_accounting), flag(), "accounting by RADIUS"},
    {MEMBER_OF(wpa_enterprise, dynamic_vlan), flag(), "the RADIUS server assigns the VLAN"},
    {MEMBER_OF(wpa_enterprise, require_vlan_id), number(), "not served"},
}, {
    condition<&has_wpa3_cipher<wpa_enterprise>>("cipher_suites", wpa3_cipher_rule),
}};

const Record dot1x_record = {
    "dot1x", "WEP with RADIUS servers: accepted and not served", sizeof(dot1x), {
    {MEMBER_OF(dot1x, Radius_accounting), number(), "not served"},
    {MEMBER_OF(dot1x, dynamic_vlan), number(), "not served"},
    {MEMBER_OF(dot1x, require_vlan_id), number(), "not served"},
    {MEMBER_OF(dot1x, Bcast_refresh_rate), number(), "not served"},
    {MEMBER_OF(dot1x, Session_refresh_rate), number(), "not served"},
}};

const Record radius_server_record = {
    "radius_server", "a RADIUS server", sizeof(radius_server), {
    {MEMBER_OF(radius_server, ip), text(), "its address; none: there is no such server"},
    {MEMBER_OF(radius_server, key), text(), "secret shared with it"},
    {MEMBER_OF(radius_server, auth_port), number().in(0, highest_port).or_else(radius_port),
     "authentication port; those of the secondary server count for both"},
    {MEMBER_OF(radius_server, account_port), number().in(0, highest_port).or_not_given(),
     "accounting port, likewise"},
}};

const Record fast_roaming_record = {
    "fast_roaming", "802.11r, k and v", sizeof(fast_roaming), {
    {MEMBER_OF(fast_roaming, status), flag(), "false: all three are off"},
    {MEMBER_OF(fast_roaming, ft), record(fast_roaming_ft_record), "802.11r"},
    {MEMBER_OF(fast_roaming, aes_key), text().required(), "key between the key holders"},
    {MEMBER_OF(fast_roaming, key_holder_list), addresses().required(),
     "MAC addresses of the key holders, in their order"},
    {MEMBER_OF(fast_roaming, rrm), record(rrm_record), "802.11k"},
    {MEMBER_OF(fast_roaming, wnm), record(wnm_record), "802.11v"},
}, {}, "status"};

const Record fast_roaming_ft_record = {
    "fast_roaming_ft", "802.11r, fast transition", sizeof(fast_roaming_ft), {
    {MEMBER_OF(fast_roaming_ft, status), flag().required(), "on"},
    {MEMBER_OF(fast_roaming_ft, ft_over_ds), flag().required(), "over the distribution system"},
    {MEMBER_OF(fast_roaming_ft, mobility_domain), text().required(), "mobility domain; unchecked"},
    {MEMBER_OF(fast_roaming_ft, r0_key_lifetime), number().in(1, 65535).required(),
     "lifetime of R0 keys"},
    {MEMBER_OF(fast_roaming_ft, reassoc_deadline), number().in(1000, 65535).required(),
     "deadline of a reassociation"},
}};

const Record rrm_record = {
    "rrm", "802.11k, radio resource management", sizeof(Rrm), {
    {MEMBER_OF(Rrm, status), flag(), "on"},
}};

const Record wnm_record = {
    "wnm", "802.11v, wireless network management", sizeof(Wnm), {
    {MEMBER_OF(Wnm, status), flag(), "on"},
}};
// clang-format on

} // namespace orloctl
