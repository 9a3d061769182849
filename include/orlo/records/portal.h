// SPDX-License-Identifier: MIT
/*
 * The captive portal of a VAP.
 */
#ifndef ORLO_RECORDS_PORTAL_H
#define ORLO_RECORDS_PORTAL_H

#include <stdint.h>

/* A RADIUS server of the portal. */
struct cp_auth_server {
    const char* server; /* address, unchecked; NULL or "": none, the stored one is deleted */
    const char* secret; /* shared secret, needed with a server */
};

/*
 * With `enable` other than 1 nothing else is read. Texts are unchecked where no values are listed;
 * a text that its mode needs is refused when it is NULL.
 */
struct cp_settings {
    int32_t enable;                        /* 1 on, any other off */
    const char* auth_mode;                 /* "click-through", "radius" or "ext-page-redirect" */
    int32_t http_proxy_enable;             /* 1 on, any other off */
    const char* http_proxy_base_url;       /* needed with the proxy on */
    const char* redirect_mode;             /* "disable", "session-keep" or "fixed-url" */
    const char* redirect_url;              /* needed with "fixed-url" */
    const char* ext_page_url;              /* needed with "ext-page-redirect" */
    struct cp_auth_server auth_servers[2]; /* primary, secondary; not with "click-through" */
    int32_t auth_port;                     /* RADIUS port, unchecked; not with "click-through" */
    int32_t acct_enable;                   /* RADIUS accounting: -1 as it is, 1 on, any other off */
    int32_t acct_port;                     /* its port, unchecked; applied with accounting on */
    int32_t walled_garden_enable;          /* non-zero: replace the walled garden */
    const char* walled_garden[50];         /* open destinations, up to the first NULL or "" */
    int32_t session_timeout;               /* negative: not given; 7 digits are stored */
    const char* session_timeout_action;    /* optional */
};

#endif
