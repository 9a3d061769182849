// SPDX-License-Identifier: MIT
/*
 * Who may associate: MAC authentication of a VAP, known clients of the device.
 */
#ifndef ORLO_RECORDS_ACCESS_H
#define ORLO_RECORDS_ACCESS_H

#include <stdint.h>

/*
 * A RADIUS server that authenticates stations by address. Texts are unchecked; an empty text
 * removes its option, NULL is refused. Of a secondary server only index, ip and key are read: the
 * other members are common to both and come from the primary one.
 */
struct mac_auth_radius_server {
    uint32_t index;                 /* 1 primary, 2 secondary */
    const char* ip;                 /* address */
    const char* key;                /* shared secret */
    uint32_t port;                  /* authentication port, unchecked: 7 digits are stored */
    const char* username_separator; /* between the octets of the address: "hyphen", ... */
    const char* username_case;      /* of the address: "lower", ... */
    const char* password_format;    /* "username", "fixed-password", ... */
    const char* password;           /* read with "fixed-password" only */
};

/* A known client. The list stays the agent's. */
struct known_client_node {
    char mac[18];                   /* "aa:bb:cc:dd:ee:ff", unchecked but not empty */
    struct known_client_node* next; /* NULL at the end */
};

/* All known clients of the device. */
struct knownClient_setup {
    char action[8]; /* "white": only these may associate; "black": these may not; "": as it is */
    struct known_client_node* mac_list; /* replaces the stored list; NULL clears it */
};

#endif
