// SPDX-License-Identifier: MIT
// The quilt as the library gets it, member by member, and every rule about it.
#include "describe.h"
#include "plan.h"

using namespace orloctl;

namespace {

// A quilt with one VAP.
std::string quilt(const std::string& vap, const std::string& members = "") {
    return R"({"quilt": {"mgmt_vlan": 1, "secret": "s", )" + members + R"("quilt_radio": [)" + vap +
           "]}}";
}

std::string vap(const std::string& members) {
    return quilt(R"({"radio": 1, "vap": 2, "bssid": "02:00:00:00:00:02", "ssid": "q",
                     "vlan_id": 8)" +
                 (members.empty() ? "" : ", " + members) + "}");
}

std::string personal(const std::string& members) {
    return vap(R"("wireless_security": "wpa-personal", "wpa_personal": {)" + members + "}");
}

std::string enterprise(const std::string& members) {
    return vap(R"("wireless_security": "wpa-enterprise", "wpa_enterprise": {)" + members + "}");
}

std::string whole(const std::string& members) {
    return R"({"quilt": {)" + members + "}}";
}

const std::string at = "quilt.quilt_radio[0].";

} // namespace

TEST(QuiltRecord, has_what_is_written_member_by_member) {
    const Description description = description_of(R"({"quilt": {
        "mgmt_vlan": 4096, "secret": "shared", "rekey_timeout": 60, "station_isolation": 1,
        "beacon_rssi_threshold": 91, "cqscan": 1, "cq_proxy_arp": 0, "quilt_radio": [
            {"radio": 1, "vap": 15, "bssid": "02:00:00:00:00:0f", "ssid": "Quilt",
             "bcast_ssid": false, "vlan_id": 4094, "mac_filter_mode": 3,
             "mac_auth_server": [{"index": 1, "ip": "a", "key": "k"},
                                 {"index": 2, "ip": "b", "key": "l"}],
             "mac_auth_reset": true, "band_steer": true, "mfp": true, "inactivity_timer": 60,
             "deauth_dup_auth": true, "assoc_advertisement": false, "dtim_period": 255,
             "proxy_arp": 1, "cp": {"auth_mode": "click-through"}}]}})");
    const quilt_settings& settings = *description->quilt;
    EXPECT_EQ(settings.mgmt_vlan, 4096);
    EXPECT_STREQ(settings.secret, "shared");
    EXPECT_EQ(settings.rekey_timeout, 60);
    EXPECT_EQ(settings.station_isolation, 1);
    EXPECT_EQ(settings.beacon_rssi_threshold, 91);
    EXPECT_EQ(settings.cqscan, 1);
    EXPECT_EQ(settings.cq_proxy_arp, 0);
    const quilt_vap& entry = settings.quilt_radio[0];
    EXPECT_EQ(entry.enable, 1);
    EXPECT_EQ(entry.radio, 1);
    EXPECT_EQ(entry.vap, 15);
    EXPECT_EQ(entry.status, 1);
    EXPECT_STREQ(entry.bssid, "02:00:00:00:00:0f");
    EXPECT_STREQ(entry.ssid, "Quilt");
    EXPECT_EQ(entry.bcast_ssid, 0);
    EXPECT_EQ(entry.vlan_id, 4094);
    EXPECT_EQ(entry.mac_filter_mode, 3);
    EXPECT_EQ(entry.mac_auth_server[0].index, 1U);
    EXPECT_EQ(shown(entry.mac_auth_server[1].ip), "b");
    EXPECT_EQ(entry.mac_auth_reset, 1);
    EXPECT_EQ(entry.band_steer, 1);
    EXPECT_EQ(entry.mfp, 1);
    EXPECT_EQ(entry.inactivity_timer, 60);
    EXPECT_EQ(entry.deauth_dup_auth, 1);
    EXPECT_EQ(entry.assoc_advertisement, 0);
    EXPECT_EQ(entry.dtim_period, 255);
    EXPECT_EQ(entry.proxy_arp, 1);
    EXPECT_STREQ(entry.wireless_security, "none");
    EXPECT_EQ(entry.cp.enable, 1);
    EXPECT_EQ(shown(entry.cp.auth_mode), "click-through");
    EXPECT_EQ(settings.quilt_radio[1].enable, 0);
}

TEST(QuiltRecord, what_is_left_out_is_not_given_or_off) {
    const Description description = description_of(vap(""));
    const quilt_settings& settings = *description->quilt;
    for (const int32_t number :
         {settings.rekey_timeout, settings.station_isolation, settings.beacon_rssi_threshold,
          settings.cqscan, settings.cq_proxy_arp, settings.quilt_radio[0].inactivity_timer,
          settings.quilt_radio[0].deauth_dup_auth, settings.quilt_radio[0].assoc_advertisement,
          settings.quilt_radio[0].dtim_period, settings.quilt_radio[0].proxy_arp}) {
        EXPECT_EQ(number, ORLO_NOT_GIVEN);
    }
    const quilt_vap& entry = settings.quilt_radio[0];
    EXPECT_EQ(entry.bcast_ssid, 1);
    EXPECT_EQ(entry.mac_filter_mode, 0);
    EXPECT_EQ(entry.mac_auth_server[0].index, 0U);
    EXPECT_EQ(entry.mac_auth_server[1].index, 0U);
    EXPECT_EQ(entry.mac_auth_reset, 0);
    EXPECT_EQ(entry.band_steer, 0);
    EXPECT_EQ(entry.mfp, 0);
    EXPECT_STREQ(entry.wireless_security, "none");
    EXPECT_EQ(entry.fast_roaming.status, 0);
    EXPECT_EQ(entry.cp.enable, 0);
    for (size_t i = 1; i < ORLO_VAPS; i++) {
        EXPECT_EQ(settings.quilt_radio[i].enable, 0);
    }
    EXPECT_EQ(description_of("{}")->quilt, nullptr);
}

TEST(QuiltRecord, is_shown_without_what_is_left_out) {
    const Description description = description_of(vap(""));
    const std::vector<Step> steps = plan(description, false);
    ASSERT_EQ(steps.size(), 1U);
    EXPECT_EQ(steps[0].title(), "api_apply_channel_quilt");
    const Json expected = parse_json(R"([{"mgmt_vlan": 1, "secret": "s", "quilt_radio": [
        {"enable": true, "radio": 1, "vap": 2, "status": true, "bssid": "02:00:00:00:00:02",
         "ssid": "q", "bcast_ssid": true, "vlan_id": 8, "mac_filter_mode": 0,
         "mac_auth_server": [], "mac_auth_reset": false, "band_steer": false, "mfp": false,
         "wireless_security": "none", "fast_roaming": {"status": false}}]}])",
                                     "expected");
    EXPECT_TRUE(json_equal(steps[0].arguments.get(), expected.get()))
        << json_document(steps[0].arguments);
}

TEST(QuiltRecord, security_lies_in_the_member_that_it_selects) {
    const Description one = description_of(personal(
        R"("wpa": ["WPA2", "WPA3"], "cipher_suites": ["CCMP"], "refresh_rate": 5, "key": ")" +
        std::string(64, 'a') + "\""));
    const quilt_wpa_personal& psk = one->quilt->quilt_radio[0].wpa_personal;
    EXPECT_EQ(psk.wpa, 6U);
    EXPECT_EQ(psk.cipher_suites, 2U);
    EXPECT_EQ(psk.refresh_rate, 5);
    EXPECT_EQ(psk.key, std::string(64, 'a'));
    const Description other = description_of(
        enterprise(R"("wpa": ["WPA3"], "pre_authentication": 1, "Radius_accounting": true,
                      "Bcast_refresh_rate": 0, "dynamic_vlan": true,
                      "radius_server": [{"ip": "a", "key": "k", "account_port": 1813}])"));
    const quilt_wpa_enterprise& radius = other->quilt->quilt_radio[0].wpa_enterprise;
    EXPECT_EQ(radius.wpa, 4U);
    EXPECT_EQ(radius.cipher_suites, 2U);
    EXPECT_EQ(radius.pre_authentication, 1);
    EXPECT_EQ(radius.Radius_accounting, 1);
    EXPECT_EQ(radius.Bcast_refresh_rate, 0);
    EXPECT_EQ(radius.dynamic_vlan, 1);
    EXPECT_EQ(shown(radius.radius_server[0].ip), "a");
    EXPECT_EQ(radius.radius_server[0].auth_port, 1812);
    EXPECT_EQ(radius.radius_server[0].account_port, 1813);
    EXPECT_EQ(radius.radius_server[1].ip, nullptr);
}

TEST(QuiltRecord, each_rule_of_the_quilt_has_its_sentence) {
    const std::string both = R"("mgmt_vlan": 1, "secret": "s", )";
    const Case cases[] = {
        {whole(""), "quilt.mgmt_vlan: is missing\nquilt.secret: is missing"},
        {whole(R"("mgmt_vlan": 4097, "secret": "s")"), "quilt.mgmt_vlan: 4097 is not in 0..4096"},
        {whole(R"("mgmt_vlan": -1, "secret": "s")"), "quilt.mgmt_vlan: -1 is not in 0..4096"},
        {whole(R"("mgmt_vlan": 0, "secret": "")"), "quilt.secret: is empty"},
        {whole(R"("mgmt_vlan": 0, "secret": ")" + std::string(485, 's') + "\""), "accepted"},
        {whole(R"("mgmt_vlan": 0, "secret": ")" + std::string(486, 's') + "\""),
         "quilt.secret: a text of 486 bytes is longer than 485"},
        {whole(both + R"("beacon_rssi_threshold": 92)"),
         "quilt.beacon_rssi_threshold: 92 is not in 0..91"},
        {whole(both + R"("beacon_rssi_threshold": 0)"), "accepted"},
        {whole(both + R"("quilt_radio": [{"radio": 0, "vap": 1, "status": false},
                                         {"radio": 0, "vap": 1, "status": false}])"),
         "quilt.quilt_radio: lists a VAP twice"},
        {whole(both + R"("quilt_radio": [{"radio": 0, "vap": 1, "status": false},
                                         {"radio": 1, "vap": 1, "status": false},
                                         {"radio": 0, "vap": 0, "status": false}])"),
         "accepted"},
        {whole(both + R"("quilt_radio": [{"radio": 0, "vap": 1, "status": false},
                                         {"radio": 99, "vap": -9, "enable": false},
                                         {"radio": 0, "vap": 1, "enable": false}])"),
         "accepted"},
    };
    expect_sentences(cases);
}

TEST(QuiltRecord, each_rule_of_a_vap_has_its_sentence) {
    const std::string server = R"("mac_auth_server": [{"index": 1, "ip": "a", "key": "k"}])";
    const Case cases[] = {
        {vap(""), "accepted"},
        {quilt("{}"), at + "radio: is missing\n" + at + "vap: is missing"},
        {quilt(R"({"radio": 2, "vap": 16})"),
         at + "radio: 2 is not in 0..1\n" + at + "vap: 16 is not in 0..15"},
        {quilt(R"({"radio": 0, "vap": 0})"), at + "ssid: is missing, the VAP is enabled\n" + at +
                                                 "vlan_id: is missing, the VAP is enabled"},
        {quilt(R"({"radio": 0, "vap": 0, "status": false})"), "accepted"},
        {quilt(R"({"enable": false})"), "accepted"},
        {quilt(R"({"radio": 0, "vap": 0, "bssid": "02-00", "ssid": "q", "vlan_id": 1})"),
         at + R"(bssid: "02-00" is not an address like 02:00:00:00:00:01)"},
        {quilt(R"({"radio": 0, "vap": 0, "bssid": "02:00:00:00:00:01", "vlan_id": 1, "ssid": ")" +
               std::string(33, 's') + "\"}"),
         at + "ssid: a text of 33 bytes is longer than 32"},
        {quilt(R"({"radio": 0, "vap": 0, "bssid": "02:00:00:00:00:01", "ssid": "q",
                   "vlan_id": 4095})"),
         at + "vlan_id: 4095 is not in 1..4094"},
        {vap(server), at + "mac_auth_server: is asked with \"mac_filter_mode\" 2 or 3 only"},
        {vap(server + R"(, "mac_filter_mode": 2)"), "accepted"},
        {vap(server + R"(, "mac_filter_mode": 3)"), "accepted"},
        {vap(R"("mac_filter_mode": 2)"), "accepted"},
        {vap(R"("mac_auth_server": [{}, {}, {}])"),
         at + "mac_auth_server: 3 elements are more than 2"},
        {vap(R"("band_steer": 2)"), at + "band_steer: 2 is not true or false"},
        {vap(R"("mfp": 2)"), at + "mfp: 2 is not true or false"},
        {vap(R"("inactivity_timer": 59)"), at + "inactivity_timer: 59 is not in 60..65535"},
        {vap(R"("dtim_period": 256)"), at + "dtim_period: 256 is not in 1..255"},
        {vap(R"("deauth_dup_auth": 2)"), at + "deauth_dup_auth: 2 is not true or false"},
        {vap(R"("assoc_advertisement": 2)"), at + "assoc_advertisement: 2 is not true or false"},
        {vap(R"("wireless_security": "wep")"),
         at + R"(wireless_security: "wep" is not "none", "wpa-personal" or "wpa-enterprise")"},
        {vap(R"("cp": {})"), at + "cp.auth_mode: is missing"},
        {vap(R"("cp": {"enable": false})"), "accepted"},
        {vap(R"("cp": [])"), at + "cp: [] is not an object"},
        {vap(R"("fast_roaming": {"status": false})"), "accepted"},
        {vap(R"("fast_roaming": {"status": true, "ft": {"status": true, "ft_over_ds": true,
                 "mobility_domain": "m", "r0_key_lifetime": 1, "reassoc_deadline": 1000}})"),
         at + "fast_roaming.aes_key: is missing\n" + at +
             "fast_roaming.key_holder_list: is missing"},
    };
    expect_sentences(cases);
}

TEST(QuiltRecord, each_rule_of_its_security_has_its_sentence) {
    const std::string key = R"(, "key": "passphrase")";
    const std::string server = R"(, "radius_server": [{"ip": "a"}])";
    const Case cases[] = {
        {personal(""), at + "wpa_personal.wpa: is missing\n" + at + "wpa_personal.key: is missing"},
        {personal(R"("wpa": ["WPA"])" + key),
         at + "wpa_personal.wpa: WPA is not WPA2, WPA+WPA2, WPA3 or WPA2+WPA3"},
        {personal(R"("wpa": ["WPA3"], "cipher_suites": ["TKIP", "CCMP"])" + key),
         at + "wpa_personal.cipher_suites: WPA3 needs \"CCMP\" alone"},
        {personal(R"("wpa": ["WPA2"], "key": "1234567")"),
         at + "wpa_personal.key: must have 8 to 63 characters, or 64 hexadecimal digits"},
        {personal(R"("wpa": ["WPA2"], "key": ")" + std::string(65, 'a') + "\""),
         at + "wpa_personal.key: a text of 65 bytes is longer than 64"},
        {personal(R"("wpa": ["WPA2"], "refresh_rate": 86401)" + key),
         at + "wpa_personal.refresh_rate: 86401 is not in 0..86400"},
        {enterprise(R"("wpa": ["WPA2"])"),
         at + "wpa_enterprise.radius_server[0].ip: is missing, \"wpa-enterprise\" needs it"},
        {enterprise(R"("wpa": ["WPA2"])" + server), "accepted"},
        {enterprise(R"("wpa": ["WPA2", "WPA3"])" + server),
         at + "wpa_enterprise.wpa: WPA2+WPA3 is not WPA2, WPA+WPA2 or WPA3"},
        {enterprise(R"("wpa": ["WPA3"], "cipher_suites": ["TKIP"])" + server),
         at + "wpa_enterprise.cipher_suites: WPA3 needs \"CCMP\" alone"},
        {vap(R"("wpa_personal": {})"),
         at + "wpa_personal: is possible with wireless_security \"wpa-personal\" only"},
    };
    expect_sentences(cases);
}

TEST(QuiltRecord, its_vaps_are_not_described_by_their_radio_as_well) {
    const auto with_radio = [](const std::string& radio) {
        return R"({"radios": [)" + radio + R"(], "quilt": {"mgmt_vlan": 1, "secret": "s",
            "quilt_radio": [{"radio": 1, "vap": 2, "status": false},
                            {"radio": 0, "vap": 5, "enable": false}]}})";
    };
    const std::string sentence = "quilt: a VAP of it is enabled with its radio as well";
    const std::string enabled = R"(, "ssid": "s", "vlan_id": 1}]})";
    const Case cases[] = {
        {with_radio(R"({"radio": 1, "vaps": [{"vap": 2)" + enabled), sentence},
        {with_radio(R"({"radio": 1, "vaps": [{"vap": 3)" + enabled), "accepted"},
        {with_radio(R"({"radio": 1, "vaps": [{"vap": 2, "status": false}]})"), "accepted"},
        {with_radio(R"({"radio": 0, "vaps": [{"vap": 2)" + enabled), "accepted"},
        {with_radio(R"({"radio": 0, "vaps": [{"vap": 5)" + enabled), "accepted"},
        {with_radio(R"({"radio": 1})"), "accepted"},
    };
    expect_sentences(cases);
}

TEST(QuiltRecord, unchecked_values_reach_the_record_as_far_as_it_has_room) {
    const Description description =
        description_of(whole(R"("mgmt_vlan": 4097, "secret": ")" + std::string(1024, 's') +
                             R"(", "quilt_radio": [{"enable": 5, "radio": 9, "vap": -3, "mfp": 2,
                                     "wireless_security": "wep"}])"),
                       false);
    const quilt_settings& settings = *description->quilt;
    EXPECT_EQ(settings.mgmt_vlan, 4097);
    EXPECT_EQ(std::string(settings.secret, sizeof settings.secret), std::string(1024, 's'));
    EXPECT_EQ(settings.rekey_timeout, -1);
    EXPECT_EQ(settings.quilt_radio[0].enable, 5);
    EXPECT_EQ(settings.quilt_radio[0].radio, 9);
    EXPECT_EQ(settings.quilt_radio[0].vap, -3);
    EXPECT_EQ(settings.quilt_radio[0].mfp, 2);
    EXPECT_STREQ(settings.quilt_radio[0].wireless_security, "wep");
    EXPECT_EQ(refusal(whole(R"("secret": ")" + std::string(1025, 's') + "\""), false),
              "quilt.secret: a text of 1025 bytes is longer than 1024");
}
