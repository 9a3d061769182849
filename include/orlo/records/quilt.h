// SPDX-License-Identifier: MIT
/*
 * The channel quilt: several access points that share one channel.
 */
#ifndef ORLO_RECORDS_QUILT_H
#define ORLO_RECORDS_QUILT_H

#include <stdint.h>

#include "orlo/records/access.h"
#include "orlo/records/constants.h"
#include "orlo/records/portal.h"
#include "orlo/records/vap.h"

/* Security "wpa-personal", as struct wpa_personal. */
struct quilt_wpa_personal {
    uint32_t wpa;           /* 0x2, 0x3, 0x4 or 0x6 */
    uint32_t cipher_suites; /* 0x1, 0x2 or 0x3, with WPA3 only 0x2 */
    int32_t refresh_rate;   /* group rekeying in seconds, 0 to 86400 */
    char key[65];           /* passphrase and SAE password */
};

/* Security "wpa-enterprise", as struct wpa_enterprise, with the VAP's RADIUS servers. */
struct quilt_wpa_enterprise {
    uint32_t wpa;                          /* 0x2, 0x3 or 0x4 */
    uint32_t cipher_suites;                /* 0x1, 0x2 or 0x3, with WPA3 only 0x2 */
    int32_t pre_authentication;            /* only logged */
    int32_t Radius_accounting;             /* flag */
    int32_t Bcast_refresh_rate;            /* group rekeying in seconds, 0 to 86400 */
    int32_t dynamic_vlan;                  /* flag: the RADIUS server assigns the VLAN */
    struct radius_server radius_server[2]; /* primary (required), secondary */
};

/*
 * A VAP of the quilt. Members that struct vap_settings has as well mean the same. Of an entry with
 * `status` 0 nothing behind it is read.
 */
struct quilt_vap {
    int32_t enable;          /* 0: the entry is skipped */
    int32_t radio;           /* 0 or 1 */
    int32_t vap;             /* 0 to 15 */
    int32_t status;          /* 1 enabled, 0 disabled */
    char bssid[18];          /* "aa:bb:cc:dd:ee:ff", unchecked */
    char ssid[34];           /* up to 33 characters */
    int32_t bcast_ssid;      /* flag */
    int32_t vlan_id;         /* 1 to 4094 */
    int32_t mac_filter_mode; /* as in api_apply_mac_filter_mode; 2 and 3 use the servers below */
    struct mac_auth_radius_server mac_auth_server[2]; /* with `index` 0: no such server */
    int32_t mac_auth_reset; /* 1: forget the stored servers, as modes 2 and 3 do anyway */
    int32_t unused1[17];
    int32_t band_steer;          /* flag; the radio's: the last enabled entry decides */
    int32_t mfp;                 /* flag */
    int32_t inactivity_timer;    /* optional, seconds, 60 to 65535; the radio's */
    int32_t deauth_dup_auth;     /* optional flag */
    int32_t assoc_advertisement; /* optional flag */
    int32_t dtim_period;         /* optional, beacons, 1 to 255 */
    int32_t proxy_arp;           /* unchecked; negative: not given */
    char wireless_security[36];  /* "none", or the name of a member below; others: none written */
    union {
        struct quilt_wpa_personal wpa_personal;     /* "wpa-personal" */
        struct quilt_wpa_enterprise wpa_enterprise; /* "wpa-enterprise" */
    };
    struct fast_roaming fast_roaming;
    struct cp_settings cp;
};

/* All of the quilt, for api_apply_channel_quilt. */
struct quilt_settings {
    int32_t mgmt_vlan;         /* management VLAN of the quilt, 0 to 4096 */
    char secret[1024];         /* shared by its access points; 485 characters are stored */
    int32_t rekey_timeout;     /* optional, unchecked */
    int32_t station_isolation; /* optional, unchecked */
    int32_t unused1;
    int32_t unused2;
    int32_t beacon_rssi_threshold; /* optional, 0 to 91 */
    int32_t cqscan;                /* optional; 1 switches the quilt scan on */
    int32_t cq_proxy_arp;          /* optional; 1 switches the ARP filter on */
    struct quilt_vap quilt_radio[ORLO_VAPS];
};

#endif
