// SPDX-License-Identifier: MIT
/*
 * Links between access points: WDS and mesh.
 */
#ifndef ORLO_RECORDS_LINKS_H
#define ORLO_RECORDS_LINKS_H

#include <stdint.h>

/* A WDS link, on VAP 0 of a radio. api_apply_wds takes 2 of them. */
struct wds_settings {
    const char* radio_intf; /* "wlan0" (radio 0) or "wlan1" (radio 1); NULL: no link */
    const char* security;   /* "wpa" or "none" */
    const char* wds_mode;   /* "parent" (access point) or "child" (station of the parent) */
    const char* ssid;       /* of the link, unchecked */
    struct {                /* read with security "wpa" */
        const char* key;    /* pre-shared key, unchecked */
        int32_t version;    /* 2: WPA2, 3: WPA+WPA2; 1 (WPA alone) is refused */
        int32_t cipher;     /* 2: CCMP, 3: TKIP+CCMP; 1 (TKIP alone) is refused */
        int32_t mfp;        /* management frame protection: 0 off, 1 required (version 2 only) */
        int32_t bcast_key_refresh_rate; /* group rekeying in seconds, 0 to 86400 */
    } wpa;
};

/* The mesh-link VAP of a radio. Its security is always WPA2 with CCMP. */
struct mesh_link_vap_settings {
    int32_t acceptor;  /* non-zero: other access points may connect to it */
    int32_t connector; /* non-zero: it connects upward */
    int32_t vap;       /* 0 to 15; from 2 on it ends up disabled */
    const char* ssid;  /* of the mesh, required */
    const char* key;   /* passphrase of the mesh, required */
};

#endif
