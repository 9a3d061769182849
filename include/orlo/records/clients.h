// SPDX-License-Identifier: MIT
/*
 * Associated stations: as the driver tells them, and as the agent gets them.
 */
#ifndef ORLO_RECORDS_CLIENTS_H
#define ORLO_RECORDS_CLIENTS_H

#include <stdint.h>

/* A rate of a station. */
struct mwl_rate_entry {
    uint32_t rate;   /* kbit/s */
    uint8_t mcs;     /* modulation and coding scheme */
    uint8_t flags;   /* bits 0 to 3 from the driver; bits 4 to 7 stay as the caller had them */
    uint8_t tail[2]; /* the driver's own */
};

/* A station of a VAP, as mwl_get_assoclist delivers it: one behind the other, 88 bytes each. */
struct mwl_assoc_entry {
    uint8_t mac[6];
    int8_t signal;     /* dBm */
    int8_t noise;      /* always 0 */
    uint32_t inactive; /* always 0 */
    uint32_t rx_packets;
    uint32_t tx_packets;
    uint32_t ipv4;      /* network byte order */
    uint8_t addr16[16]; /* the driver's own address block */
    struct mwl_rate_entry first_rate;
    struct mwl_rate_entry second_rate;
    uint32_t rx_bytes;
    uint32_t tx_bytes;
    uint8_t unused1[24]; /* not written */
};

/*
 * An associated station: 134 bytes without padding, numbers little-endian, the same in
 * /tmp/assoc_client_detail and in a datagram to the agent. In the latter a marker: all 0 but
 * `kind`.
 */
#pragma pack(push, 1)
struct assoc_client_record {
    uint8_t bssid[6];   /* of the VAP */
    uint8_t radio;      /* 0 or 1 */
    uint8_t vap;        /* 0 to 15 */
    uint8_t channel;    /* of the radio, 0 unknown */
    uint8_t sta_mac[6]; /* the station's address */
    uint8_t zero1[2];   /* 0 */
    uint64_t ipv4;      /* first four bytes: the address in network byte order; 0 unknown */
    char ssid[33];      /* of the VAP, filled up with 0 */
    uint16_t vlan_id;   /* of the VAP, 0 unknown */
    uint8_t kind;       /* 0 station, 1 start marker, 2 end marker */
    uint8_t zero2[33];  /* 0 */
    uint32_t rate;      /* sending rate in Mbit/s; 0 on quilt VAPs */
    uint32_t zero3;     /* 0 */
    uint32_t ones;      /* 0xFFFFFFFF */
    uint8_t addr16[16]; /* the driver's own address block; 0 on quilt VAPs */
    int32_t signal;     /* dBm */
    uint32_t zero4;     /* 0 */
    uint32_t area_auth; /* 1: the VAP uses area authentication, else 0 */
};
#pragma pack(pop)

/* A station in a list of assoc_client_list. Nodes are the library's, until it lists them anew. */
struct assoc_client_node {
    struct assoc_client_record record;
    struct assoc_client_node* next; /* NULL at the end */
};

/*
 * Counters of a station. get_all_associated_clients_info hands out blocks of them, one block for
 * each VAP with stations, as many elements as stations; `next` of a block's first element leads to
 * the next block. The agent releases each block with free().
 */
struct ORLOClientInfoList {
    uint8_t sta_mac[6];
    uint8_t zero1[18]; /* 0 */
    uint64_t rx_pkts;
    uint64_t tx_pkts;
    uint64_t rx_bytes;
    uint64_t tx_bytes;
    uint8_t zero2[32];               /* 0 */
    struct ORLOClientInfoList* next; /* in a block's first element; NULL in the last block */
};

#endif
