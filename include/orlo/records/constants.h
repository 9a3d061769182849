// SPDX-License-Identifier: MIT
/*
 * Numbers that records and operations share.
 */
#ifndef ORLO_RECORDS_CONSTANTS_H
#define ORLO_RECORDS_CONSTANTS_H

/* What there is of radios and VAPs. */
enum {
    ORLO_RADIOS = 2,         /* 0: 2.4 GHz, 1: 5 GHz */
    ORLO_VAPS_PER_RADIO = 16 /* 0 to 15 */
};
enum { ORLO_VAPS = 32 }; /* of both radios, at radio * ORLO_VAPS_PER_RADIO + vap */

/* An optional number that is not given. */
enum { ORLO_NOT_GIVEN = -1 };

/* Bits of the members `wpa`: the WPA versions that a VAP offers. */
enum { ORLO_WPA1 = 0x1, ORLO_WPA2 = 0x2, ORLO_WPA3 = 0x4 };

/* Bits of the members `cipher_suites`: the pairwise ciphers that a VAP offers. */
enum { ORLO_CIPHER_TKIP = 0x1, ORLO_CIPHER_CCMP = 0x2 };

/* Steps of api_get_PowerPercent: 1, 5, 10, 20, 30, 40, 50, 60, 70, 80, 90, 100 percent. */
enum { ORLO_POWER_STEPS = 12 };

#endif
