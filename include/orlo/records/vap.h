// SPDX-License-Identifier: MIT
/*
 * Settings of a VAP: name, timers, security, roaming.
 */
#ifndef ORLO_RECORDS_VAP_H
#define ORLO_RECORDS_VAP_H

#include <stdint.h>

/* Security "wep", on VAP 0 of a radio only. */
struct wep {
    int32_t unused1;
    int32_t unused2;
    int32_t index;    /* key slot used for sending, unchecked */
    int32_t length;   /* key length in bits: 64 or 128; any other counts as 128 */
    const char* type; /* begins with "hex": hexadecimal keys; anything else or NULL: ASCII */
    const char* key1; /* optional, like the other three */
    const char* key2;
    const char* key3;
    const char* key4;
    int32_t unused3;
    int32_t open;   /* non-zero: open-system authentication */
    int32_t shared; /* non-zero, with `open` 0: shared-key authentication; both 0: refused */
};

/* Security "wpa-personal". */
struct wpa_personal {
    uint32_t wpa;           /* versions: 0x2, 0x3 (WPA+WPA2), 0x4 or 0x6 (WPA2+WPA3) */
    uint32_t cipher_suites; /* 0x1, 0x2 or 0x3, with WPA3 only 0x2 (CCMP) */
    int32_t refresh_rate;   /* group rekeying in seconds, 0 to 86400 */
    int32_t unused1;
    const char* key; /* required: passphrase and SAE password */
};

/* Security "wpa-enterprise", with the VAP's RADIUS servers. */
struct wpa_enterprise {
    uint32_t wpa;                           /* versions: 0x2, 0x3 or 0x4 (192-bit Suite B) */
    uint32_t cipher_suites;                 /* as in wpa_personal */
    int32_t Bcast_refresh_rate;             /* group rekeying in seconds, 0 to 86400 */
    int32_t Session_refresh_rate;           /* session rekeying; negative: not given */
    const char* session_key_refresh_action; /* optional, unchecked */
    int32_t pre_authentication;             /* only logged */
    int32_t pre_authentication_limit;       /* only logged */
    int32_t Radius_accounting;              /* flag */
    int32_t dynamic_vlan;                   /* flag: the RADIUS server assigns the VLAN */
    int32_t require_vlan_id;                /* only logged */
};

/* Security "dynamic-wep": not served, all members are only logged. */
struct dot1x {
    int32_t Radius_accounting;
    int32_t dynamic_vlan;
    int32_t require_vlan_id;
    int32_t Bcast_refresh_rate;
    int32_t Session_refresh_rate;
};

/*
 * A RADIUS server of an enterprise VAP. The ports are options of the VAP, not of the server: those
 * of a second server replace the first one's.
 */
struct radius_server {
    const void* unused1;
    const char* ip;       /* address, unchecked; NULL: no such server */
    const char* key;      /* shared secret; NULL: none, the stored one is deleted */
    int32_t auth_port;    /* 0 to 65535 */
    int32_t account_port; /* 0 to 65535; -1: no accounting, the stored port stays */
};

/* An address in a list. The agent allocates each node with malloc(). */
struct mac_list_node {
    const char* mac; /* "aa:bb:cc:dd:ee:ff", unchecked but not empty; stays the agent's */
    struct mac_list_node* next; /* NULL at the end: the list must have one */
};

/*
 * A list that the library consumes: it releases each node with free(), counting `count` down, and
 * leaves `head` and `tail` NULL.
 */
struct mac_list {
    int32_t count; /* number of nodes; not relied upon */
    struct mac_list_node* head;
    struct mac_list_node* tail;
};

/* 802.11r. All members are required when fast roaming is on. */
struct fast_roaming_ft {
    int32_t status;              /* flag: 802.11r */
    int32_t ft_over_ds;          /* flag: over the distribution system */
    const char* mobility_domain; /* unchecked */
    int32_t r0_key_lifetime;     /* 1 to 65535 */
    int32_t reassoc_deadline;    /* 1000 to 65535 */
};

/* 802.11r, k and v of a VAP. */
struct fast_roaming {
    int32_t status; /* 1: apply all of this; any other: all three off, nothing else is read */
    int32_t unused1;
    struct fast_roaming_ft ft;
    const char* aes_key;             /* required: key between the key holders, unchecked */
    struct mac_list key_holder_list; /* at least one; consumed once its addresses are staged */
    struct {
        int32_t status; /* flag: 802.11k */
    } rrm;
    struct {
        int32_t status; /* flag: 802.11v */
    } wnm;
};

/*
 * The wanted state of one VAP. api_apply_vap takes 16 of them, element v for VAP v. Of a disabled
 * VAP only `status` is read.
 */
struct vap_settings {
    int32_t unused1;
    int32_t status;                /* 1 enabled, 0 disabled */
    const char* ssid;              /* required, unchecked */
    int32_t bcast_ssid;            /* flag: 1 the beacons carry the SSID, 0 hidden */
    int32_t vlan_id;               /* required: 1 to 4094 */
    int32_t band_steer;            /* flag, required; the radio's: the last enabled VAP decides */
    int32_t mfp;                   /* flag: protect management frames; heeded with WPA2 only */
    int32_t inactivity_timer;      /* optional, seconds, 60 to 65535; the radio's: VAP 0 decides */
    int32_t deauth_dup_auth;       /* optional flag: deauthenticate on a second authentication */
    int32_t assoc_advertisement;   /* optional flag: tell other access points of a station */
    int32_t dtim_period;           /* optional, beacons, 1 to 255 */
    int32_t proxy_arp;             /* unchecked; negative: not given */
    const char* wireless_security; /* NULL or "none", or the name of a member below; see there */
    union {
        struct wep wep;                       /* "wep" */
        struct wpa_personal wpa_personal;     /* "wpa-personal" */
        struct wpa_enterprise wpa_enterprise; /* "wpa-enterprise" */
        struct dot1x dot1x;                   /* "dynamic-wep" */
        /* any other text: no member is read, no security is written */
    };
    struct radius_server radius_server[2]; /* of "wpa-enterprise": primary (required), secondary */
    struct fast_roaming fast_roaming;
};

#endif
