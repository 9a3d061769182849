// SPDX-License-Identifier: MIT
/*
 * The records that the agent and the library exchange, all of them. Each subsystem has its own file
 * below records/; an agent includes this one.
 *
 * The layout is shared with agents that were built on their own: members are never moved, dropped
 * or inserted, and members that the library does not read (unused1, ...) keep their place.
 *
 * Unless a member says otherwise:
 *  - records, and the texts they point to, belong to the agent and are only read during the call;
 *  - texts are terminated; an inline text may also fill its array without a terminator;
 *  - "optional" numbers are ORLO_NOT_GIVEN (-1) and optional texts NULL when not given: their
 * option then stays as it is;
 *  - "flag" is 0 (off) or 1 (on), and any other value is refused.
 */
#ifndef ORLO_RECORDS_H
#define ORLO_RECORDS_H

#include "orlo/records/access.h"
#include "orlo/records/clients.h"
#include "orlo/records/constants.h"
#include "orlo/records/counters.h"
#include "orlo/records/links.h"
#include "orlo/records/portal.h"
#include "orlo/records/quilt.h"
#include "orlo/records/radio.h"
#include "orlo/records/system.h"
#include "orlo/records/vap.h"

#endif
