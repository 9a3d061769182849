// SPDX-License-Identifier: MIT
// Whole VAPs, each line that the library logs and stages, in order: one of each kind of security.
#include "vap/vap_profile.h"

#include <cstdlib>
#include <sstream>

namespace orlo::test {

class VapTranscript : public VapProfile {
protected:
    // What happened from a VAP's heading to the next one's.
    std::string transcript_of(int vap) const {
        const std::string heading = "  VAP: " + std::to_string(vap) + " =====";
        std::string text;
        bool inside = false;
        for (const std::string& line : door.trace()) {
            if (line.find("log api_apply_vap: ===== Radio:") == 0) {
                inside = line.find(heading) != std::string::npos;
            }
            text += inside && line.find("End...") == std::string::npos ? line + "\n" : "";
        }
        return text;
    }
};

TEST_F(VapTranscript, OfEnterpriseSecurityWithFastRoaming) {
    configure("wireless.wifi0vap7.vapmac", "02:00:00:00:00:07");
    vap_settings& vap = enable_enterprise(7, 0x4, 0x2);
    vap.ssid = "Staff";
    vap.bcast_ssid = 0;
    vap.vlan_id = 20;
    vap.band_steer = 1;
    vap.mfp = 1;
    vap.inactivity_timer = 10; // of another than the first VAP: not even looked at
    vap.deauth_dup_auth = 0;
    vap.assoc_advertisement = 1;
    vap.dtim_period = 3;
    vap.proxy_arp = 0;
    vap.wpa_enterprise.Session_refresh_rate = 600;
    vap.wpa_enterprise.session_key_refresh_action = "Reauthenticate";
    vap.wpa_enterprise.Radius_accounting = 1;
    vap.wpa_enterprise.dynamic_vlan = 1;
    vap.radius_server[1] = {nullptr, "10.0.0.2", nullptr, 2812, -1};
    auto* second = static_cast<mac_list_node*>(malloc(sizeof(mac_list_node)));
    auto* first = static_cast<mac_list_node*>(malloc(sizeof(mac_list_node)));
    *second = {"02:00:00:00:00:b2", nullptr};
    *first = {"02:00:00:00:00:b1", second};
    vap.fast_roaming.status = 1;
    vap.fast_roaming.ft = {1, 1, "a1b2", 10000, 1000};
    vap.fast_roaming.aes_key = "key";
    vap.fast_roaming.key_holder_list = {2, first, second};
    vap.fast_roaming.rrm.status = 1;
    vap.fast_roaming.wnm.status = 1;
    EXPECT_EQ(apply(0), 0);
    EXPECT_EQ(transcript_of(7), R"(log api_apply_vap: ===== Radio: 0  VAP: 7 =====
log set_vap_mode: radio:0 vap:7 mode:ap
set wireless.wifi0vap7.mode=ap
log api_apply_vap: vap_settings[7].status:1
log set_vap_status: radio:0 vap:7 status:1
set wireless.wifi0vap7.disabled=0
log set_vap_ssid: radio:0 vap:7 ssid:Staff
set wireless.wifi0vap7.ssid=Staff
log set_vap_bssid: radio:0 vap:7 
log set_vap_bssid: vap_mac=[02:00:00:00:00:07] 
set wireless.wifi0vap7.bssid=02:00:00:00:00:07
log set_vap_bcast_ssid: radio:0 vap7 bcast_ssid:0
set wireless.wifi0vap7.hidden=1
log api_apply_vap: vap_settings[7].band_steer:1
set wireless.wifi0.band_steer=1
log set_vap_vlan: radio:0 vap:7 vlan_id:20
log set_vap_vlan: vlan_name:wifi0vap7.vlan_id
set wireless.wifi0vap7.vlan_id=20
log set_vap_deauth_dup_auth: wifi0vap7: status: 0
set wireless.wifi0vap7.dis_deauth=1
log set_vap_assoc_advertisement: wifi0vap7: status: 1
set wireless.wifi0vap7.iapp_interface=1
log set_vap_dtim_period: wifi0vap7: dtim-period: 3
set wireless.wifi0vap7.dtim_period=3
set wireless.wifi0vap7.proxy_arp=0
log api_apply_vap: vap_settings[7].wpa_enterprise.wpa:0x4
log api_apply_vap: vap_settings[7].wpa_enterprise.cipher_suites:0x2
log api_apply_vap: vap_settings[7].wpa_enterprise.pre_authentication:5
log api_apply_vap: vap_settings[7].wpa_enterprise.pre_authentication_limit:6 NOT support.
log api_apply_vap: vap_settings[7].wpa_enterprise.Radius_accounting:1
log api_apply_vap: vap_settings[7].wpa_enterprise.dynamic_vlan:1
log api_apply_vap: vap_settings[7].wpa_enterprise.require_vlan_id:7 NOT support.
log api_apply_vap: vap_settings[7].wpa_enterprise.Bcast_refresh_rate:3600
log api_apply_vap: vap_settings[7].wpa_enterprise.Session_refresh_rate:600 NOT support.
set wireless.wifi0vap7.security=wpa-ent
set wireless.wifi0vap7.wpaversion=wpa3
set wireless.wifi0vap7.encryption=ccmp
set wireless.wifi0vap7.cipher=ccmp
set wireless.wifi0vap7.suite_b=192
set wireless.wifi0vap7.acct_en=1
set wireless.wifi0vap7.wpa_group_rekey=3600
set wireless.wifi0vap7.session_key_refresh_rate=600
set wireless.wifi0vap7.session_key_refresh_action=Reauthenticate
set wireless.wifi0vap7.dynamic_vlan=1
log api_apply_vap: ===== RADIUS Server 0 =====
log api_apply_vap: vap_settings[7].radius_server[0].ip:10.0.0.1
set wireless.wifi0vap7.auth_server=10.0.0.1
log api_apply_vap: vap_settings[7].radius_server[0].key:first secret
set wireless.wifi0vap7.auth_secret=first secret
log api_apply_vap: vap_settings[7].radius_server[0].auth_port:1812
set wireless.wifi0vap7.auth_port=1812
log api_apply_vap: vap_settings[7].radius_server[0].account_port:1813
set wireless.wifi0vap7.acct_port=1813
log api_apply_vap: ===== RADIUS Server 1 =====
log api_apply_vap: vap_settings[7].radius_server[1].ip:10.0.0.2
set wireless.wifi0vap7.auth_server_second=10.0.0.2
log api_apply_vap: vap_settings[7].radius_server[1].key:NULL
log api_apply_vap: delete Value successfully
log api_apply_vap: vap_settings[7].radius_server[1].auth_port:2812
set wireless.wifi0vap7.auth_port=2812
log api_apply_vap: vap_settings[7].radius_server[1].account_port:-1
log api_apply_vap: Info: account port = -1, means disabled.
log apply_mfp: vap_settings[7].mfp:2
set wireless.wifi0vap7.ieee80211w=2
log api_apply_vap: info: vap_settings[7].fast_roaming.status: 1
log api_apply_vap: info: vap_settings[7].fast_roaming.ft.status: 1
set wireless.wifi0vap7.ieee80211r=1
log api_apply_vap: info: vap_settings[7].fast_roaming.ft.ft_over_ds: 1
set wireless.wifi0vap7.ft_over_ds=1
log api_apply_vap: info: vap_settings[7].fast_roaming.ft.mobility_domain: a1b2
set wireless.wifi0vap7.mobility_domain=a1b2
log api_apply_vap: info: vap_settings[7].fast_roaming.ft.r0_key_lifetime: 10000
set wireless.wifi0vap7.r0_key_lifetime=10000
log api_apply_vap: info: vap_settings[7].fast_roaming.ft.reassoc_deadline: 1000
set wireless.wifi0vap7.reassociation_deadline=1000
log api_apply_vap: info: vap_settings[7].fast_roaming.aes_key: key
set wireless.wifi0vap7.aes_key=key
add wireless.wifi0vap7.key_holder_list=02:00:00:00:00:b1
log api_apply_vap: info: Set wireless config wifi0vap7.key_holder_list option to 02:00:00:00:00:b1 successful.
add wireless.wifi0vap7.key_holder_list=02:00:00:00:00:b2
log api_apply_vap: info: Set wireless config wifi0vap7.key_holder_list option to 02:00:00:00:00:b2 successful.
log api_apply_vap: info: vap_settings[7].fast_roaming.rrm.status:1
set wireless.wifi0vap7.ieee80211k=1
log api_apply_vap: info: vap_settings[7].fast_roaming.wnm.status:1
set wireless.wifi0vap7.ieee80211v=1
)");
}

TEST_F(VapTranscript, OfAPassphrase) {
    configure("wireless.wifi0vap15.vapmac", "02:00:00:00:00:aa");
    enable_personal(15, 0x4, 0x2);
    EXPECT_EQ(apply(0), 0);
    EXPECT_EQ(transcript_of(15), R"(log api_apply_vap: ===== Radio: 0  VAP: 15 =====
log set_vap_mode: radio:0 vap:15 mode:ap
set wireless.wifi0vap15.mode=ap
log api_apply_vap: vap_settings[15].status:1
log set_vap_status: radio:0 vap:15 status:1
set wireless.wifi0vap15.disabled=0
log set_vap_ssid: radio:0 vap:15 ssid:Office
set wireless.wifi0vap15.ssid=Office
log set_vap_bssid: radio:0 vap:15 
log set_vap_bssid: vap_mac=[02:00:00:00:00:aa] 
set wireless.wifi0vap15.bssid=02:00:00:00:00:aa
log set_vap_bcast_ssid: radio:0 vap15 bcast_ssid:1
set wireless.wifi0vap15.hidden=0
log api_apply_vap: vap_settings[15].band_steer:0
set wireless.wifi0.band_steer=0
log set_vap_vlan: radio:0 vap:15 vlan_id:10
log set_vap_vlan: vlan_name:wifi0vap15.vlan_id
set wireless.wifi0vap15.vlan_id=10
log api_apply_vap: vap_settings[15].wpa_personal.key:open sesame
log api_apply_vap: vap_settings[15].wpa_personal.wpa:0x4
log api_apply_vap: vap_settings[15].wpa_personal.cipher_suites:0x2
log api_apply_vap: vap_settings[15].wpa_personal.refresh_rate:3600
set wireless.wifi0vap15.security=wpa-psk
set wireless.wifi0vap15.key=open sesame
set wireless.wifi0vap15.wpakey=open sesame
set wireless.wifi0vap15.wpaversion=wpa3
set wireless.wifi0vap15.encryption=ccmp
set wireless.wifi0vap15.cipher=ccmp
set wireless.wifi0vap15.sae=1
set wireless.wifi0vap15.sae_groups=19 20 21
set wireless.wifi0vap15.sae_password=open sesame
set wireless.wifi0vap15.wpa_group_rekey=3600
log apply_mfp: vap_settings[15].mfp:2
set wireless.wifi0vap15.ieee80211w=2
log api_apply_vap: info: vap_settings[15].fast_roaming.status: 0
set wireless.wifi0vap15.ieee80211r=0
set wireless.wifi0vap15.ieee80211k=0
set wireless.wifi0vap15.ieee80211v=0
)");
}

TEST_F(VapTranscript, OfWep) {
    configure("wireless.wifi0vap0.vapmac", "02:00:00:00:00:aa");
    vap_settings& vap = enable(0);
    vap.inactivity_timer = 600;
    vap.mfp = -1;
    vap.wireless_security = "wep";
    vap.wep = {0, 0, 1, 40, "hex", "", "0102030405", nullptr, nullptr, 0, 0, 1};
    EXPECT_EQ(apply(0), 0);
    EXPECT_EQ(transcript_of(0), R"(log api_apply_vap: ===== Radio: 0  VAP: 0 =====
log set_vap_mode: radio:0 vap:0 mode:ap
set wireless.wifi0vap0.mode=ap
log api_apply_vap: vap_settings[0].status:1
log set_vap_status: radio:0 vap:0 status:1
set wireless.wifi0vap0.disabled=0
log set_vap_ssid: radio:0 vap:0 ssid:Office
set wireless.wifi0vap0.ssid=Office
log set_vap_bssid: radio:0 vap:0 
log set_vap_bssid: vap_mac=[02:00:00:00:00:aa] 
set wireless.wifi0vap0.bssid=02:00:00:00:00:aa
log set_vap_bcast_ssid: radio:0 vap0 bcast_ssid:1
set wireless.wifi0vap0.hidden=0
log api_apply_vap: vap_settings[0].band_steer:0
set wireless.wifi0.band_steer=0
log set_vap_vlan: radio:0 vap:0 vlan_id:10
log set_vap_vlan: vlan_name:wifi0vap0.vlan_id
set wireless.wifi0vap0.vlan_id=10
log set_vap_inactivity_timer: wifi0vap0: inactivity_timer: 600
set wireless.wifi0.agingtime=600
log api_apply_vap: vap_settings[0].wireless_security:wep
log api_apply_vap: vap_settings[0].wep.open:0
log api_apply_vap: vap_settings[0].wep.shared:1
set wireless.wifi0vap0.security=wep
set wireless.wifi0vap0.encryption=wep-shared
set wireless.wifi0vap0.wepauth=wep-shared
log api_apply_vap: vap_settings[0].wep.index:1
set wireless.wifi0vap0.key=1
set wireless.wifi0vap0.wepslot=1
log api_apply_vap: vap_settings[0].wep.length:40
set wireless.wifi0vap0.weplength=128
log api_apply_vap: vap_settings[0].wep.type:hex
set wireless.wifi0vap0.weptype=HEX
log api_apply_vap: vap_settings[0].wep.key1:
set wireless.wifi0vap0.key1=
set wireless.wifi0vap0.wepkey1=
log api_apply_vap: vap_settings[0].wep.key2:0102030405
set wireless.wifi0vap0.key2=0102030405
set wireless.wifi0vap0.wepkey2=0102030405
log api_apply_vap: vap_settings[0].wep.key3:NULL
log api_apply_vap: vap_settings[0].wep.key4:NULL
log api_apply_vap: Security is not "wpa-personal" or "wpa-enterprise"ignore vap_settings[0].mfp:-1
log api_apply_vap: info: vap_settings[0].fast_roaming.status: 0
set wireless.wifi0vap0.ieee80211r=0
set wireless.wifi0vap0.ieee80211k=0
set wireless.wifi0vap0.ieee80211v=0
)");
}

} // namespace orlo::test
