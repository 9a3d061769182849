// SPDX-License-Identifier: MIT
// The example descriptions, applied by the program with the real library.
#include "on_the_access_point.h"

using testing::HasSubstr;
using testing::StartsWith;

using Example = OnTheAccessPoint;

TEST_F(Example, radio_profile_applies_and_is_saved) {
    const Ended ended = there("orloctl apply -" + show_staged + "; orloctl status --json",
                              file_text(EXAMPLES "/radio-profile.json"));
    EXPECT_THAT(ended.out, HasSubstr("api_save_config ... ok\nstatus 0\n{\n")) << ended.err;
    EXPECT_THAT(ended.out, HasSubstr("\"channel\": 36,\n      \"second_channel\": 149,\n"));
    EXPECT_THAT(ended.out, HasSubstr("\"profile_hash\": \"4f1c0a6e5b7d4b0f9a2e8c3d6b1f7e20\""));
}

TEST_F(Example, office_applies_and_is_up) {
    const Ended ended = there("orloctl apply /usr/share/examples/office.json; echo \"status $?\"; "
                              "orloctl status; uci show wireless.wifi1vap0");
    EXPECT_THAT(ended.out, StartsWith("api_apply_radio_status radio 0 ... ok\n"
                                      "api_apply_radio radio 0 ... ok\n"
                                      "api_apply_hw_specific radio 0 ... ok\n"
                                      "api_apply_wireless_interface radio 0 ... ok\n"
                                      "api_apply_vap radio 0 ... ok\n"
                                      "api_apply_radio_status radio 1 ... ok\n"
                                      "api_apply_radio radio 1 ... ok\n"
                                      "api_apply_hw_specific radio 1 ... ok\n"
                                      "api_apply_wireless_interface radio 1 ... ok\n"
                                      "api_apply_vap radio 1 ... ok\n"
                                      "api_profile_set_hash ... ok\n"
                                      "api_config_set_hash ... ok\n"
                                      "api_set_profile_id ... ok\n"
                                      "api_save_config ... ok\n"
                                      "status 0\n"))
        << ended.err;
    EXPECT_THAT(ended.out, HasSubstr("radio  VAP  state  VLAN  security   hidden  SSID\n"
                                     "0      0    up     40    WEP        no      Office Scanners\n"
                                     "0      1    up     20    WPA2+WPA3  no      Office\n"
                                     "0      2    up     30    open       no      Office Guests\n"
                                     "1      0    up     10    WPA2 ent   no      Office Staff\n"
                                     "1      1    up     20    WPA2+WPA3  no      Office\n"
                                     "1      2    up     30    open       no      Office Guests\n"
                                     "1      3    up     50    WPA3       yes     Office Lab\n"
                                     "\n"));
    for (const char* option :
         {"auth_server='192.0.2.11'", "auth_secret_second='second-radius-secret'",
          "mobility_domain='4f46'", "ieee80211r='1'", "wpa_group_rekey='3600'",
          "key_holder_list='02:00:00:00:01:00' '02:00:00:00:01:10'"}) {
        EXPECT_THAT(ended.out, HasSubstr(std::string("wireless.wifi1vap0.") + option + "\n"));
    }
    EXPECT_EQ(ended.err, "");
}

TEST_F(Example, files_lie_there_and_touch_nothing_in_a_dry_run) {
    const Ended ended = there("for example in home hotspot wds-child mesh-root mesh-branch; do "
                              "orloctl apply --dry-run /usr/share/examples/$example.json; done" +
                              show_staged);
    EXPECT_THAT(ended.out, HasSubstr("\"operation\": \"api_apply_captive_portal_to_vap\""));
    EXPECT_THAT(ended.out, HasSubstr("\"operation\": \"api_apply_wds\""));
    EXPECT_THAT(ended.out, HasSubstr("\"operation\": \"api_apply_mesh_link_vap\""));
    EXPECT_THAT(ended.out, testing::EndsWith("]\nstatus 0\n"));
    EXPECT_EQ(ended.err, "");
}

TEST_F(Example, hotspot_sends_guests_of_both_radios_to_the_portal) {
    const Ended ended = there(
        "uci add_list wireless.wifi1vap0.cp_walled_garden=old.example; "
        "uci set wireless.wifi1vap0.macfilter=2; uci commit; "
        "orloctl apply /usr/share/examples/hotspot.json; echo \"status $?\"; uci changes; "
        "for vap in wifi0vap0 wifi1vap0; do "
        "uci show wireless.$vap | grep -e cp_ -e captive -e macfilter -e '\\.ssid=' | sort; done; "
        "uci get network.lan.cp_virt_ip");
    std::string expected = "api_apply_country_code ... ok\n"
                           "api_apply_radio_status radio 0 ... ok\n"
                           "api_apply_vap radio 0 ... ok\n"
                           "api_apply_mac_filter_mode radio 0 VAP 0 ... ok\n"
                           "api_apply_captive_portal_to_vap radio 0 VAP 0 ... ok\n"
                           "api_apply_radio_status radio 1 ... ok\n"
                           "api_apply_vap radio 1 ... ok\n"
                           "api_apply_mac_filter_mode radio 1 VAP 0 ... ok\n"
                           "api_apply_captive_portal_to_vap radio 1 VAP 0 ... ok\n"
                           "api_apply_cp_virt_ip ... ok\n"
                           "api_apply_syslog ... ok\n"
                           "api_apply_timezone ... ok\n"
                           "api_apply_daylight_saving ... ok\n"
                           "api_apply_systime_ntp ... ok\n"
                           "api_save_config ... ok\n"
                           "status 0\n";
    for (const char* vap : {"wifi0vap0", "wifi1vap0"}) {
        for (const char* option :
             {"captive_portal='3'", "cp_acct_en='1'", "cp_acct_port='1813'", "cp_auth_port='1812'",
              "cp_ext_page_url='https://portal.example.net/welcome'", "cp_http_proxy='0'",
              "cp_pri_auth_secret='first-portal-secret'", "cp_pri_auth_server='192.0.2.11'",
              "cp_redirect_mode='session-keep'", "cp_sec_auth_secret='second-portal-secret'",
              "cp_sec_auth_server='192.0.2.12'", "cp_session_timeout='14400'",
              "cp_walled_garden='portal.example.net' 'static.example.net' '192.0.2.0/28'",
              "macfilter='0'", "ssid='Guests'"}) {
            expected += std::string("wireless.") + vap + "." + option + "\n";
        }
    }
    EXPECT_EQ(ended.out, expected + "198.51.100.1\n") << ended.err;
}

TEST_F(Example, wds_child_gives_a_whole_radio_to_its_link) {
    // until now the child of another parent, on the other radio
    const Ended ended =
        there("uci set wireless.wifi0vap0.wds=1; uci set wireless.wifi0vap0.mode=sta; "
              "uci set wireless.wifi1vap5.disabled=0; uci commit; "
              "orloctl apply /usr/share/examples/wds-child.json; echo \"status $?\"; uci changes; "
              "uci get wireless.wifi0vap0.mode; uci get wireless.wifi0vap0.wds || echo 'no link'; "
              "for option in disabled mode wds ssid security wpaversion cipher encryption key "
              "wpakey ieee80211w wpa_group_rekey; do uci show wireless.wifi1vap0.$option; done; "
              "uci show wireless | grep -c \"wifi1vap[0-9]*.disabled='1'\"");
    EXPECT_EQ(ended.out, "api_apply_radio_status radio 0 ... ok\n"
                         "api_apply_vap radio 0 ... ok\n"
                         "api_apply_radio_status radio 1 ... ok\n"
                         "api_apply_wireless_interface radio 1 ... ok\n"
                         "api_apply_vap radio 1 ... ok\n"
                         "api_apply_wds ... ok\n"
                         "api_save_config ... ok\n"
                         "status 0\n"
                         "ap\n"
                         "no link\n"
                         "wireless.wifi1vap0.disabled='0'\n"
                         "wireless.wifi1vap0.mode='sta'\n"
                         "wireless.wifi1vap0.wds='1'\n"
                         "wireless.wifi1vap0.ssid='Warehouse Link'\n"
                         "wireless.wifi1vap0.security='wpa-psk'\n"
                         "wireless.wifi1vap0.wpaversion='wpa2'\n"
                         "wireless.wifi1vap0.cipher='ccmp'\n"
                         "wireless.wifi1vap0.encryption='psk2+ccmp'\n"
                         "wireless.wifi1vap0.key='the yard is between us'\n"
                         "wireless.wifi1vap0.wpakey='the yard is between us'\n"
                         "wireless.wifi1vap0.ieee80211w='1'\n"
                         "wireless.wifi1vap0.wpa_group_rekey='3600'\n"
                         "15\n")
        << ended.err;
}
