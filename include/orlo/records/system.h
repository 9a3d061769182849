// SPDX-License-Identifier: MIT
/*
 * Settings of the device: daylight saving, SNMP.
 */
#ifndef ORLO_RECORDS_SYSTEM_H
#define ORLO_RECORDS_SYSTEM_H

#include <stdint.h>

#include "orlo/records/constants.h"

/* When daylight saving starts or ends: "last Sunday of March, 02:00". Names are case-sensitive. */
struct dst_rule {
    char ordinal[16]; /* "first", "second", "third", "fourth" or "last" */
    char weekday[16]; /* "Sunday" to "Saturday" */
    char month[16];   /* "January" to "December" */
    int32_t hour;     /* 0 to 23, not checked */
    int32_t minute;   /* 0 to 59, not checked */
};

/* A receiver of traps. */
struct snmp_trap_host {
    int32_t id;                 /* 0 to 2 */
    int32_t status;             /* flag: 1 it is sent traps */
    const char* server_address; /* 1 to 255 characters; needed when `status` is 1 */
};

/*
 * The SNMP daemon. A text that `version` and flags make necessary fails like a failed write when it
 * is NULL; others may be NULL. Values are checked even when `status` is 0.
 */
struct snmp_settings {
    int32_t status;                  /* flag; with 0 nothing but this is applied */
    int32_t version;                 /* 0: v1/v2c, 1: v3 */
    const char* read_only_community; /* v1/v2c: 1 to 256 characters */
    int32_t port;                    /* of the daemon, 0 to 65535 */
    int32_t restrict_source;         /* v1/v2c, flag: serve the manager only */
    const char* manager_address; /* of that manager: IPv4 address or host, 1 to 255 characters */
    int32_t manager_mask;        /* its prefix length, unchecked; 32 or a host: that one address */
    const char* trap_community; /* v1/v2c: 1 to 256 characters; needed when a host has an address */
    int32_t trap_types[9]; /* flags: cold start, link, authentication, association, unused, filtered
                              station, RADIUS success, RADIUS failure, DFS detected */
    const struct snmp_trap_host* trap_hosts[3]; /* NULL: no such host, the stored one is deleted */
    int32_t radio_status[ORLO_RADIOS]; /* what it is about to become: 1 up, any other down */
    const char* username;              /* v3: 1 to 12 characters */
    const char* password;              /* v3: 1 to 32 characters */
};

#endif
