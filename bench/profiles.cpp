#include "profiles.h"

#include <cstdio>
#include <cstring>

namespace orlo::bench {

namespace {

enum Security { open, personal, transition, enterprise, kinds };

const radius_server server = {nullptr, "10.0.0.1", "radius secret", 1812, 1813};

void make_personal(vap_settings& vap, uint32_t wpa) {
    vap.wireless_security = "wpa-personal";
    vap.wpa_personal = {wpa, 2, 3600, 0, "open sesame"};
}

void make_enterprise(vap_settings& vap) {
    vap.wireless_security = "wpa-enterprise";
    vap.wpa_enterprise = {};
    vap.wpa_enterprise.wpa = 2;
    vap.wpa_enterprise.cipher_suites = 2;
    vap.wpa_enterprise.Bcast_refresh_rate = 3600;
    vap.wpa_enterprise.Session_refresh_rate = ORLO_NOT_GIVEN;
    vap.radius_server[0] = server;
}

void make_personal(quilt_vap& vap, uint32_t wpa) {
    strcpy(vap.wireless_security, "wpa-personal");
    vap.wpa_personal = {wpa, 2, 3600, "open sesame"};
}

void make_enterprise(quilt_vap& vap) {
    strcpy(vap.wireless_security, "wpa-enterprise");
    vap.wpa_enterprise = {};
    vap.wpa_enterprise.wpa = 2;
    vap.wpa_enterprise.cipher_suites = 2;
    vap.wpa_enterprise.Bcast_refresh_rate = 3600;
    vap.wpa_enterprise.radius_server[0] = server;
}

template <class Vap>
void fill_common(Vap& vap, int number) {
    vap.status = 1;
    vap.bcast_ssid = 1;
    vap.vlan_id = 10 + number;
    vap.mfp = 1;
    vap.inactivity_timer = 300;
    vap.deauth_dup_auth = 1;
    vap.assoc_advertisement = 1;
    vap.dtim_period = 2;
    vap.proxy_arp = 1;
    switch (number % kinds) {
    case personal:
        make_personal(vap, 2);
        break;
    case transition:
        make_personal(vap, 6);
        break;
    case enterprise:
        make_enterprise(vap);
        break;
    default:
        break; // open
    }
}

} // namespace

void fill(vap_settings (&vaps)[vaps_of_radio], int enabled) {
    static const char* const names[kinds] = {"Guests", "Scanners", "Office", "Staff"};
    for (int i = 0; i < vaps_of_radio; i++) {
        vaps[i] = {};
        if (i < enabled) {
            vaps[i].ssid = names[i % kinds];
            vaps[i].wireless_security = "none";
            fill_common(vaps[i], i);
        }
    }
}

void fill(quilt_settings& quilt) {
    quilt = {};
    quilt.mgmt_vlan = 7;
    strcpy(quilt.secret, "quilt secret");
    quilt.beacon_rssi_threshold = 40;
    quilt.cqscan = 1;
    for (int i = 0; i < ORLO_VAPS; i++) {
        quilt_vap& vap = quilt.quilt_radio[i];
        vap.enable = 1;
        vap.radio = i / vaps_of_radio;
        vap.vap = i % vaps_of_radio;
        snprintf(vap.bssid, sizeof vap.bssid, "02:00:00:00:0c:%02x", static_cast<unsigned>(i));
        snprintf(vap.ssid, sizeof vap.ssid, "Quilt %d", i);
        strcpy(vap.wireless_security, "none");
        fill_common(vap, i);
    }
}

} // namespace orlo::bench
