// SPDX-License-Identifier: MIT
// VAPs as the library gets them, member by member, and every rule about them.
#include "describe.h"

using namespace orloctl;

namespace {

std::string vap(int index, const std::string& members) {
    return radio(R"("vaps": [{"vap": )" + std::to_string(index) + ", " + members + "}]");
}

const std::string named = R"("ssid": "net", "vlan_id": 7)";

std::string personal(const std::string& members) {
    return vap(1, named + R"(, "wireless_security": "wpa-personal", "wpa_personal": {)" + members +
                      "}");
}

std::string enterprise(const std::string& members,
                       const std::string& servers = R"([{"ip": "192.0.2.1"}])") {
    return vap(1, named + R"(, "wireless_security": "wpa-enterprise", "wpa_enterprise": {)" +
                      members + R"(}, "radius_server": )" + servers);
}

std::string with_wep(const std::string& members, int index = 0) {
    return vap(index, named + R"(, "wireless_security": "wep", "wep": {)" + members + "}");
}

std::string roaming(const std::string& ft, const std::string& members) {
    return vap(1, named + R"(, "fast_roaming": {"status": true, "ft": {)" + ft + "}, " + members +
                      "}");
}

const std::string whole_ft = R"("status": true, "ft_over_ds": true, "mobility_domain": "m",
                                "r0_key_lifetime": 1, "reassoc_deadline": 1000)";
const std::string whole_roaming = R"("aes_key": "k", "key_holder_list": ["02:00:00:00:00:01"])";

} // namespace

TEST(VapRecord, has_what_is_written_member_by_member) {
    const Description description = description_of(vap(3, R"(
        "status": true, "ssid": "network", "bcast_ssid": false, "vlan_id": 11, "band_steer": true,
        "mfp": true, "inactivity_timer": 61, "deauth_dup_auth": false, "assoc_advertisement": true,
        "dtim_period": 12, "proxy_arp": 13, "wireless_security": "wpa-enterprise",
        "wpa_enterprise": {"wpa": ["WPA", "WPA2"], "cipher_suites": ["TKIP", "CCMP"],
            "Bcast_refresh_rate": 14, "Session_refresh_rate": 15,
            "session_key_refresh_action": "reauth", "pre_authentication": 16,
            "pre_authentication_limit": 17, "Radius_accounting": true, "dynamic_vlan": true,
            "require_vlan_id": 18},
        "radius_server": [{"ip": "192.0.2.1", "key": "one", "auth_port": 19, "account_port": 20},
                          {"ip": "192.0.2.2", "key": "two", "auth_port": 21, "account_port": 22}],
        "fast_roaming": {"status": true,
            "ft": {"status": true, "ft_over_ds": true, "mobility_domain": "domain",
                   "r0_key_lifetime": 23, "reassoc_deadline": 1024},
            "aes_key": "holders' key", "key_holder_list": ["first", "second"],
            "rrm": {"status": true}, "wnm": {"status": false}})"));
    const vap_settings& vap = description->radios.first->vaps[3];
    EXPECT_EQ(vap.unused1, 0);
    EXPECT_EQ(vap.status, 1);
    EXPECT_EQ(shown(vap.ssid), "network");
    EXPECT_EQ(vap.bcast_ssid, 0);
    EXPECT_EQ(vap.vlan_id, 11);
    EXPECT_EQ(vap.band_steer, 1);
    EXPECT_EQ(vap.mfp, 1);
    EXPECT_EQ(vap.inactivity_timer, 61);
    EXPECT_EQ(vap.deauth_dup_auth, 0);
    EXPECT_EQ(vap.assoc_advertisement, 1);
    EXPECT_EQ(vap.dtim_period, 12);
    EXPECT_EQ(vap.proxy_arp, 13);
    EXPECT_EQ(shown(vap.wireless_security), "wpa-enterprise");
    EXPECT_EQ(vap.wpa_enterprise.wpa, 3U);
    EXPECT_EQ(vap.wpa_enterprise.cipher_suites, 3U);
    EXPECT_EQ(vap.wpa_enterprise.Bcast_refresh_rate, 14);
    EXPECT_EQ(vap.wpa_enterprise.Session_refresh_rate, 15);
    EXPECT_EQ(shown(vap.wpa_enterprise.session_key_refresh_action), "reauth");
    EXPECT_EQ(vap.wpa_enterprise.pre_authentication, 16);
    EXPECT_EQ(vap.wpa_enterprise.pre_authentication_limit, 17);
    EXPECT_EQ(vap.wpa_enterprise.Radius_accounting, 1);
    EXPECT_EQ(vap.wpa_enterprise.dynamic_vlan, 1);
    EXPECT_EQ(vap.wpa_enterprise.require_vlan_id, 18);
    EXPECT_EQ(vap.radius_server[0].unused1, nullptr);
    EXPECT_EQ(shown(vap.radius_server[0].ip), "192.0.2.1");
    EXPECT_EQ(shown(vap.radius_server[0].key), "one");
    EXPECT_EQ(vap.radius_server[0].auth_port, 19);
    EXPECT_EQ(vap.radius_server[0].account_port, 20);
    EXPECT_EQ(shown(vap.radius_server[1].ip), "192.0.2.2");
    EXPECT_EQ(shown(vap.radius_server[1].key), "two");
    EXPECT_EQ(vap.radius_server[1].auth_port, 21);
    EXPECT_EQ(vap.radius_server[1].account_port, 22);
    const fast_roaming& roaming = vap.fast_roaming;
    EXPECT_EQ(roaming.status, 1);
    EXPECT_EQ(roaming.ft.status, 1);
    EXPECT_EQ(roaming.ft.ft_over_ds, 1);
    EXPECT_EQ(shown(roaming.ft.mobility_domain), "domain");
    EXPECT_EQ(roaming.ft.r0_key_lifetime, 23);
    EXPECT_EQ(roaming.ft.reassoc_deadline, 1024);
    EXPECT_EQ(shown(roaming.aes_key), "holders' key");
    EXPECT_EQ(roaming.key_holder_list.count, 2);
    EXPECT_EQ(shown(roaming.key_holder_list.head->mac), "first");
    EXPECT_EQ(shown(roaming.key_holder_list.head->next->mac), "second");
    EXPECT_EQ(roaming.key_holder_list.tail, roaming.key_holder_list.head->next);
    EXPECT_EQ(roaming.key_holder_list.tail->next, nullptr);
    EXPECT_EQ(roaming.rrm.status, 1);
    EXPECT_EQ(roaming.wnm.status, 0);
}

TEST(VapRecord, the_other_kinds_of_security_have_what_is_written) {
    const Description wep_description = description_of(
        with_wep(R"("index": 2, "length": 64, "type": "hex", "key1": "k1", "key2": "k2",
                    "key3": "k3", "key4": "k4", "open": false, "shared": true)"));
    const struct wep& wep = wep_description->radios.first->vaps[0].wep;
    EXPECT_EQ(wep.index, 2);
    EXPECT_EQ(wep.length, 64);
    EXPECT_EQ(shown(wep.type) + shown(wep.key1) + shown(wep.key2) + shown(wep.key3) +
                  shown(wep.key4),
              "hexk1k2k3k4");
    EXPECT_EQ(wep.open, 0);
    EXPECT_EQ(wep.shared, 1);

    const Description with_personal = description_of(personal(
        R"("wpa": 4, "cipher_suites": ["CCMP"], "refresh_rate": 86400, "key": "passphrase")"));
    const wpa_personal& personal = with_personal->radios.first->vaps[1].wpa_personal;
    EXPECT_EQ(personal.wpa, 4U);
    EXPECT_EQ(personal.cipher_suites, 2U);
    EXPECT_EQ(personal.refresh_rate, 86400);
    EXPECT_EQ(shown(personal.key), "passphrase");

    const Description with_dot1x =
        description_of(vap(1, named + R"(, "wireless_security": "dynamic-wep", "dot1x":
            {"Radius_accounting": 1, "dynamic_vlan": 2, "require_vlan_id": 3,
             "Bcast_refresh_rate": 4, "Session_refresh_rate": 5})"));
    const dot1x& dot1x = with_dot1x->radios.first->vaps[1].dot1x;
    EXPECT_EQ(dot1x.Radius_accounting, 1);
    EXPECT_EQ(dot1x.dynamic_vlan, 2);
    EXPECT_EQ(dot1x.require_vlan_id, 3);
    EXPECT_EQ(dot1x.Bcast_refresh_rate, 4);
    EXPECT_EQ(dot1x.Session_refresh_rate, 5);
}

TEST(VapRecord, what_is_left_out_gets_its_default) {
    const Description description =
        description_of(personal(R"("wpa": ["WPA2"], "key": "passphrase")"));
    const vap_settings& vap = description->radios.first->vaps[1];
    EXPECT_EQ(vap.status, 1);
    EXPECT_EQ(vap.bcast_ssid, 1);
    EXPECT_EQ(vap.band_steer, 0);
    EXPECT_EQ(vap.mfp, 0);
    EXPECT_EQ(vap.inactivity_timer, -1);
    EXPECT_EQ(vap.deauth_dup_auth, -1);
    EXPECT_EQ(vap.assoc_advertisement, -1);
    EXPECT_EQ(vap.dtim_period, -1);
    EXPECT_EQ(vap.proxy_arp, -1);
    EXPECT_EQ(vap.wpa_personal.cipher_suites, 2U);
    EXPECT_EQ(vap.wpa_personal.refresh_rate, 3600);
    EXPECT_EQ(vap.radius_server[0].ip, nullptr);
    EXPECT_EQ(vap.radius_server[1].auth_port, 1812);
    EXPECT_EQ(vap.radius_server[1].account_port, -1);
    EXPECT_EQ(vap.fast_roaming.status, 0);
    EXPECT_EQ(vap.fast_roaming.key_holder_list.head, nullptr);
    const Description open = description_of(::vap(2, named));
    EXPECT_EQ(open->radios.first->vaps[2].wireless_security, nullptr);
    EXPECT_EQ(open->radios.first->vaps[1].status, 0); // not listed
}

TEST(VapRecord, each_rule_of_a_vap_has_its_sentence) {
    const std::string at = "radios[0].vaps[0].";
    const Case cases[] = {
        {vap(1, R"("vlan_id": 7)"), at + "ssid: is missing"},
        {vap(1, R"("ssid": null, "vlan_id": 7)"), at + "ssid: is missing"},
        {vap(1, R"("ssid": ")" + std::string(33, 'x') + R"(", "vlan_id": 7)"),
         at + "ssid: a text of 33 bytes is longer than 32"},
        {vap(1, R"("ssid": "net")"), at + "vlan_id: is missing"},
        {vap(1, R"("ssid": "net", "vlan_id": 0)"), at + "vlan_id: 0 is not in 1..4094"},
        {vap(1, R"("ssid": "net", "vlan_id": 4095)"), at + "vlan_id: 4095 is not in 1..4094"},
        {vap(1, R"("ssid": "net", "vlan_id": -1)"), at + "vlan_id: -1 is not in 1..4094"},
        {vap(1, named + R"(, "status": 2)"), at + "status: 2 is not true or false"},
        {vap(1, named + R"(, "bcast_ssid": 2)"), at + "bcast_ssid: 2 is not true or false"},
        {vap(1, named + R"(, "band_steer": -1)"), at + "band_steer: -1 is not true or false"},
        {vap(1, named + R"(, "mfp": 2)"), at + "mfp: 2 is not true or false"},
        {vap(0, named + R"(, "inactivity_timer": 59)"),
         at + "inactivity_timer: 59 is not in 60..65535"},
        {vap(0, named + R"(, "inactivity_timer": 65536)"),
         at + "inactivity_timer: 65536 is not in 60..65535"},
        {vap(1, named + R"(, "deauth_dup_auth": 3)"),
         at + "deauth_dup_auth: 3 is not true or false"},
        {vap(1, named + R"(, "assoc_advertisement": 3)"),
         at + "assoc_advertisement: 3 is not true or false"},
        {vap(1, named + R"(, "dtim_period": 0)"), at + "dtim_period: 0 is not in 1..255"},
        {vap(1, named + R"(, "dtim_period": 256)"), at + "dtim_period: 256 is not in 1..255"},
        {vap(1, named + R"(, "wireless_security": "WPA")"),
         at + R"(wireless_security: "WPA" is not "none", "wep", "wpa-personal", )" +
             R"("wpa-enterprise" or "dynamic-wep")"},
        {with_wep(R"("open": true)", 1),
         at + R"(wireless_security: "wep" is possible on VAP 0 only)"},
        {with_wep(R"("length": 152, "open": true)"), at + "wep.length: 152 is not 64 or 128"},
        {with_wep(R"("type": "binary", "open": true)"),
         at + R"(wep.type: "binary" is not "ascii" or "hex")"},
        {with_wep(R"("key1": "k")"), at + R"(wep.open: "open" or "shared" must be true)"},
    };
    expect_sentences(cases);
}

TEST(VapRecord, each_rule_of_wpa_has_its_sentence) {
    const std::string at = "radios[0].vaps[0].";
    const std::string versions = " is not WPA2, WPA+WPA2, WPA3 or WPA2+WPA3";
    const std::string ent_versions = " is not WPA2, WPA+WPA2 or WPA3";
    const std::string length = at + "wpa_personal.key: must have 8 to 63 characters, or 64 "
                                    "hexadecimal digits";
    const std::string key = R"("key": "passphrase")";
    const auto with_key = [](const std::string& key) {
        return personal(R"("wpa": ["WPA2"], "key": ")" + key + '"');
    };
    const Case cases[] = {
        {personal(key), at + "wpa_personal.wpa: is missing"},
        {personal(R"("wpa": ["WPA"], )" + key), at + "wpa_personal.wpa: WPA" + versions},
        {personal(R"("wpa": [], )" + key), at + "wpa_personal.wpa: 0" + versions},
        {personal(R"("wpa": 8, )" + key), at + "wpa_personal.wpa: 8" + versions},
        {personal(R"("wpa": 6, "cipher_suites": 3, )" + key),
         at + "wpa_personal.cipher_suites: WPA3 needs \"CCMP\" alone"},
        {personal(R"("wpa": 4, "cipher_suites": ["TKIP"], )" + key),
         at + "wpa_personal.cipher_suites: WPA3 needs \"CCMP\" alone"},
        {personal(R"("wpa": 2, "cipher_suites": 4, )" + key),
         at + "wpa_personal.cipher_suites: 4 is not TKIP, CCMP or TKIP+CCMP"},
        {personal(R"("wpa": 2, "refresh_rate": 86401, )" + key),
         at + "wpa_personal.refresh_rate: 86401 is not in 0..86400"},
        {personal(R"("wpa": 2, "refresh_rate": -1, )" + key),
         at + "wpa_personal.refresh_rate: -1 is not in 0..86400"},
        {personal(R"("wpa": 2)"), at + "wpa_personal.key: is missing"},
        {with_key("1234567"), length},
        {with_key(std::string(64, 'g')), length},
        {with_key(std::string(65, 'a')), length},
        {with_key("12345678"), "accepted"},
        {with_key(std::string(63, 'g')), "accepted"},
        {with_key(std::string(64, 'F')), "accepted"},
        {vap(1, named + R"(, "wireless_security": "wpa-personal")"),
         at + "wpa_personal.wpa: is missing\n" + at + "wpa_personal.key: is missing"},
        {enterprise(R"("wpa": 6)"), at + "wpa_enterprise.wpa: WPA2+WPA3" + ent_versions},
        {enterprise(R"("wpa": 4, "cipher_suites": 1)"),
         at + "wpa_enterprise.cipher_suites: WPA3 needs \"CCMP\" alone"},
        {enterprise(R"("wpa": 2, "Bcast_refresh_rate": 86401)"),
         at + "wpa_enterprise.Bcast_refresh_rate: 86401 is not in 0..86400"},
        {enterprise(R"("wpa": 2, "Radius_accounting": 2)"),
         at + "wpa_enterprise.Radius_accounting: 2 is not true or false"},
        {enterprise(R"("wpa": 2, "dynamic_vlan": 2)"),
         at + "wpa_enterprise.dynamic_vlan: 2 is not true or false"},
        {enterprise(R"("wpa": 2)", "[]"),
         at + "radius_server[0].ip: is missing, \"wpa-enterprise\" needs it"},
        {enterprise(R"("wpa": 2)", R"([{"ip": "a", "auth_port": 65536}])"),
         at + "radius_server[0].auth_port: 65536 is not in 0..65535"},
        {enterprise(R"("wpa": 2)", R"([{"ip": "a", "auth_port": -1}])"),
         at + "radius_server[0].auth_port: -1 is not in 0..65535"},
        {enterprise(R"("wpa": 2)", R"([{"ip": "a"}, {"account_port": -2}])"),
         at + "radius_server[1].account_port: -2 is not in 0..65535"},
        {enterprise(R"("wpa": 2)", R"([{"ip": "a", "account_port": -1}])"), "accepted"},
        {enterprise(R"("wpa": 2)", R"([{"ip": "a"}, {}, {}])"),
         at + "radius_server: 3 elements are more than 2"},
    };
    expect_sentences(cases);
}

TEST(VapRecord, fast_roaming_is_complete_or_off) {
    const std::string at = "radios[0].vaps[0].fast_roaming.";
    const std::string ft = R"("status": true, "ft_over_ds": true, "mobility_domain": "m", )";
    const Case cases[] = {
        {roaming(whole_ft, whole_roaming), "accepted"},
        {roaming("", whole_roaming),
         at + "ft.status: is missing\n" + at + "ft.ft_over_ds: is missing\n" + at +
             "ft.mobility_domain: is missing\n" + at + "ft.r0_key_lifetime: is missing\n" + at +
             "ft.reassoc_deadline: is missing"},
        {roaming(ft + R"("r0_key_lifetime": 0, "reassoc_deadline": 999)", whole_roaming),
         at + "ft.r0_key_lifetime: 0 is not in 1..65535\n" + at +
             "ft.reassoc_deadline: 999 is not in 1000..65535"},
        {roaming(ft + R"("r0_key_lifetime": 65536, "reassoc_deadline": 65536)", whole_roaming),
         at + "ft.r0_key_lifetime: 65536 is not in 1..65535\n" + at +
             "ft.reassoc_deadline: 65536 is not in 1000..65535"},
        {roaming(whole_ft, R"("key_holder_list": ["a"])"), at + "aes_key: is missing"},
        {roaming(whole_ft, R"("aes_key": "k")"), at + "key_holder_list: is missing"},
        {roaming(whole_ft, R"("aes_key": "k", "key_holder_list": [])"),
         at + "key_holder_list: is missing"},
        {roaming(whole_ft, R"("aes_key": "k", "key_holder_list": ["a", ""])"),
         at + "key_holder_list[1]: is empty"},
        {roaming(whole_ft, whole_roaming + R"(, "rrm": {"status": 2})"),
         at + "rrm.status: 2 is not true or false"},
        {roaming(whole_ft, whole_roaming + R"(, "wnm": {"status": 2})"),
         at + "wnm.status: 2 is not true or false"},
        {vap(1, named + R"(, "fast_roaming": {"status": false, "ft": {"reassoc_deadline": 5}})"),
         "accepted"},
        {vap(1, named + R"(, "fast_roaming": {"status": 2})"),
         at + "status: 2 is not true or false"},
    };
    expect_sentences(cases);
}

TEST(VapRecord, of_a_disabled_vap_only_the_types_count) {
    EXPECT_EQ(refusal(vap(1, R"("status": false)")), "accepted");
    EXPECT_EQ(refusal(vap(1, R"("status": 0, "vlan_id": 9999, "dtim_period": 0)")), "accepted");
    EXPECT_EQ(refusal(vap(1, R"("status": false, "vlan_id": "x")")),
              "radios[0].vaps[0].vlan_id: \"x\" is not an integer");
}

TEST(VapRecord, what_cannot_be_passed_on_is_refused_also_unchecked) {
    const std::string at = "radios[0].vaps[0].";
    const std::string vaps = "radios[0].vaps";
    const Case cases[] = {
        {vap(16, named), at + "vap: 16 is not in 0..15"},
        {vap(-1, named), at + "vap: -1 is not in 0..15"},
        {radio(R"("vaps": [{}])"), at + "vap: is missing"},
        {radio(R"("vaps": [{"vap": "0"}])"), at + "vap: \"0\" is not an integer"},
        {radio(R"("vaps": [{"vap": 1, "ssid": "a", "vlan_id": 1},
                           {"vap": 1, "ssid": "b", "vlan_id": 2}])"),
         vaps + "[1].vap: 1 is described already, by " + vaps + "[0]"},
        {radio(R"("vaps": [5])"), vaps + "[0]: 5 is not an object"},
        {radio(R"("vaps": {})"), vaps + ": {} is not an array"},
        {vap(1, named + R"(, "wep": {})"),
         at + "wep: is possible with wireless_security \"wep\" only"},
        {vap(1, named + R"(, "wireless_security": "wpa-personal", "wpa_personal":
                {"wpa": 2, "key": "passphrase"}, "dot1x": {})"),
         at + "dot1x: is possible with wireless_security \"dynamic-wep\" only"},
        {vap(1, named + R"(, "radius_server": {})"), at + "radius_server: {} is not an array"},
        {personal(R"("wpa": "WPA2", "key": "passphrase")"),
         at + "wpa_personal.wpa: \"WPA2\" is not an array of names"},
        {personal(R"("wpa": ["WPA2", "WPA4"], "key": "passphrase")"),
         at + R"(wpa_personal.wpa[1]: "WPA4" is not "WPA", "WPA2" or "WPA3")"},
        {personal(R"("wpa": 4294967296, "key": "passphrase")"),
         at + "wpa_personal.wpa: 4294967296 does not fit 32 bits (0 to 4294967295)"},
        {roaming(whole_ft, R"("aes_key": "k", "key_holder_list": [1])"),
         at + "fast_roaming.key_holder_list[0]: 1 is not a text"},
        {roaming(whole_ft, R"("aes_key": "k", "key_holder_list": "a")"),
         at + "fast_roaming.key_holder_list: \"a\" is not an array"},
        {radio(R"("settings": [])"), "radios[0].settings: [] is not an object"},
        {radio(R"("hardware": {"mode": "a", "eligible_channels": 36, "channel_bandwidth": 20})"),
         "radios[0].hardware.eligible_channels: 36 is not a text or an array"},
        {radio(R"("hardware": {"mode": "a", "eligible_channels": [true],
                               "channel_bandwidth": 20})"),
         "radios[0].hardware.eligible_channels[0]: true is not a number or a text"},
    };
    expect_sentences(cases);
    expect_sentences(cases, false);
}

TEST(VapRecord, unchecked_values_reach_the_record) {
    const Description description =
        description_of(vap(1, R"("vlan_id": 9999, "status": 7, "wireless_security": "wpa",
                       "radius_server": [{"account_port": -2}])"),
                       false);
    const vap_settings& vap = description->radios.first->vaps[1];
    EXPECT_EQ(vap.ssid, nullptr);
    EXPECT_EQ(vap.vlan_id, 9999);
    EXPECT_EQ(vap.status, 7);
    EXPECT_EQ(shown(vap.wireless_security), "wpa");
    EXPECT_EQ(vap.radius_server[0].account_port, -2);
}
