// SPDX-License-Identifier: MIT
// VAPs, access lists, captive portals, WDS links.
#include "faults/cases.h"

namespace orlo::test {

namespace {

// A VAP whose record uses all that a record can hold.
const char* const enterprise_vap = R"([{
    "vap": 2, "ssid": "Staff", "vlan_id": 10, "mfp": true, "inactivity_timer": 300,
    "deauth_dup_auth": true, "assoc_advertisement": true, "dtim_period": 2, "proxy_arp": 1,
    "wireless_security": "wpa-enterprise",
    "wpa_enterprise": {"wpa": ["WPA2"], "cipher_suites": ["CCMP"], "Radius_accounting": true,
                       "dynamic_vlan": true},
    "radius_server": [
        {"ip": "192.0.2.11", "key": "first-radius-secret", "account_port": 1813},
        {"ip": "192.0.2.12", "key": "second-radius-secret", "account_port": 1813}],
    "fast_roaming": {
        "status": true,
        "ft": {"status": true, "ft_over_ds": false, "mobility_domain": "4f46",
               "r0_key_lifetime": 10000, "reassoc_deadline": 1000},
        "aes_key": "0123456789abcdef0123456789abcdef",
        "key_holder_list": ["02:00:00:00:01:00", "02:00:00:00:01:10"],
        "rrm": {"status": true}, "wnm": {"status": true}}}])";

} // namespace

std::vector<Case> vap_cases() {
    // clang-format off
    return {
        {21, "api_apply_mac_filter_mode", {"0", "1", "2"}, "0", "set=-1!"},
        {22, "api_apply_mac_auth_radius_server",
            {"0", "1", R"({"index": 1, "ip": "192.0.2.11", "key": "secret"})"}, "0", "set=-1!+"},
        {23, "api_apply_mac_auth_critical_mode", {"0", "1", "1"}, "0", "set=-1!+"},

        {59, "api_is_captive_portal_capable", {}, "1", "look=0",
            "mkdir -p /lib/modules/4.14.76; : >/lib/modules/4.14.76/qxkk_cp.ko"},
        {60, "api_get_captive_portal_status", {}, "0", ""},
        {61, "api_get_captive_portal_statistics", {}, "0", ""},
        {62, "api_apply_captive_portal_status", {"1"}, "0", ""},
        {63, "api_apply_captive_portal", {}, "0", ""},
        {64, "api_apply_captive_portal_to_vap",
            {"0", "1", R"({
                "enable": true, "auth_mode": "ext-page-redirect",
                "ext_page_url": "https://portal.example.net/welcome",
                "redirect_mode": "session-keep",
                "auth_servers": [{"server": "192.0.2.11", "secret": "first"},
                                 {"server": "192.0.2.12", "secret": "second"}],
                "acct_enable": true, "walled_garden_enable": true,
                "walled_garden": ["portal.example.net", "192.0.2.0/28"],
                "session_timeout": 14400})"},
            "0", "set=-1!"},
        {65, "api_is_captive_portal_enabled", {"0", "1"}, "1", "get=0",
            "uci set wireless.wifi0vap1.captive_portal=2"},
        {66, "api_apply_cp_virt_ip", {"198.51.100.1"}, "0", "set=-1!"},
        {68, "api_apply_known_clients",
            {R"({"action": "white", "mac_list": ["02:11:22:33:44:55", "02:11:22:33:44:66"]})"}, "0",
            "set=-1! set:uciDeleteValue=same",
            "uci add_list wireless.macaddrlist.maclist=02:00:00:00:00:99; uci commit wireless"},
        {73, "api_apply_vap", {"1", enterprise_vap}, "0",
            "set=-1! set:vlan_id=-2! set:band_steer=-3! "
            "set:uciDeleteValue:wireless.wifi1vap2.key_holder_list=same get=-1!"},
        {108, "api_apply_wds",
            {R"([{"radio_intf": "wlan1", "wds_mode": "child", "ssid": "Link", "security": "wpa",
                  "wpa": {"key": "the yard is between us", "version": ["WPA2"],
                          "cipher": ["CCMP"], "mfp": true, "bcast_key_refresh_rate": 3600}}])"},
            "0", "set=-1! get=same"},
        {131, "api_is_area_auth", {"0", "0"}, "0", ""},
    };
    // clang-format on
}

} // namespace orlo::test
