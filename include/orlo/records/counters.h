// SPDX-License-Identifier: MIT
/*
 * Traffic counters. The agent provides the records, the library fills them in.
 */
#ifndef ORLO_RECORDS_COUNTERS_H
#define ORLO_RECORDS_COUNTERS_H

#include <stdint.h>

/* Of one VAP. api_get_vap_statistics takes 32 of them, at radio * 16 + vap. 0: no such interface.
 */
struct vap_statistics {
    uint64_t rx_bytes;
    uint64_t rx_packets;
    uint64_t tx_bytes;
    uint64_t tx_packets;
    uint64_t rx_errors;
    uint64_t tx_errors;
};

/*
 * Of one radio. api_get_radio_statistics takes 2 of them. It fills in what is marked; the others,
 * of which the driver does not tell, stay as the agent had them.
 */
struct radio_statistics {
    uint64_t tx_fragments;
    uint64_t multicast_tx_frames;
    uint64_t failed;
    uint64_t retries;
    uint64_t multiple_retries;
    uint64_t duplicate_frames;
    uint64_t rx_fragments;
    uint64_t multicast_rx_frames;
    uint64_t tx_frames;
    uint64_t wep_undecryptable;
    uint64_t ack_failures;
    uint64_t rts_failures;
    uint64_t fcs_errors;
    uint64_t rts_successes;
    uint64_t rx_packets; /* filled in */
    uint64_t rx_bytes;   /* filled in */
    uint64_t unused1;
    uint64_t tx_packets; /* filled in */
    uint64_t tx_bytes;   /* filled in */
    uint64_t tx_errors;  /* filled in */
    uint64_t rx_errors;  /* filled in */
};

#endif
