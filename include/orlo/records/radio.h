// SPDX-License-Identifier: MIT
/*
 * Settings of a radio.
 */
#ifndef ORLO_RECORDS_RADIO_H
#define ORLO_RECORDS_RADIO_H

#include <stdint.h>

/* What api_apply_radio stages, in section "wifi0" or "wifi1". All numbers are optional. */
struct radio_settings {
    const char* interface_name;       /* required: "wlan0" (radio 0) or "wlan1" (radio 1) */
    int32_t station_isolation;        /* flag: stations of the radio cannot reach each other */
    int32_t rts_threshold;            /* bytes, 0 to 2347 */
    int32_t max_stations;             /* 0 to 320 */
    const char* fixed_multicast_rate; /* optional; "auto" and "fast" write nothing */
    int32_t apsd;                     /* flag: automatic power save delivery */
    int32_t wmm;                      /* flag: Wi-Fi multimedia */
    int32_t no_ack;                   /* not configurable: never written */
    int32_t atf;                      /* flag: air-time fairness */
    int32_t rfscan_status;            /* flag: background scan */
    int32_t ofdma;                    /* flag */
    int32_t mumimo;                   /* flag: multi-user MIMO */
    int32_t zw_dfs;                   /* flag: zero-wait DFS */
};

/*
 * What api_apply_hw_specific stages. No member is optional; empty rate lists write nothing. The
 * library rewrites both rate lists in place: commas become blanks.
 */
struct hw_specific_settings {
    const char* mode;                 /* radio 0: "bg-n-ax" or "bg"; radio 1: "a-n-ac-ax" or "a" */
    char eligible_channels[128];      /* channel numbers separated by one blank: "36 40 44 48" */
    uint32_t channel_bandwidth;       /* MHz: 20, 40, 80, or 8080 for 80+80 */
    int32_t Enable_eligible_channels; /* only logged */
    const char* primary_channel;      /* only logged, may be NULL */
    char supported_rate[128];         /* legacy rates in Mbit/s: "6,12,24" */
    char basic_rate[128];             /* only logged */
    char mcs_index[128];              /* only logged */
};

#endif
