// SPDX-License-Identifier: MIT
/*
 * The operations table of the access point's vendor library.
 *
 * An agent loads liborlovendor.so, resolves the one symbol Vendor_Ops and calls its members. Every
 * operation runs synchronously on the calling thread; the library keeps no lock, so call one
 * operation at a time. What each operation does, takes and returns is written beside it in
 * operations.def, the list from which this table is made.
 *
 * Ownership, for all operations unless an entry says otherwise:
 *  - texts and records passed in belong to the caller and are only read, during the call;
 *  - texts returned are heap copies: release them with free();
 *  - JSON values returned are new references: release them with json_decref().
 */
#ifndef ORLO_VENDOR_OPS_H
#define ORLO_VENDOR_OPS_H

#include <stdint.h>

#include "orlo/records.h"

#ifdef __cplusplus
extern "C" {
#endif

struct json_t; /* jansson's value */

/* One typed member for each slot, in slot order: in memory, an array of ORLO_SLOTS pointers. */
struct vendor_ops {
#define ORLO_OP(slot, result, name, parameters, meaning, summary) result(*name) parameters;
#include "orlo/operations.def"
};

enum { ORLO_SLOTS = sizeof(struct vendor_ops) / sizeof(void (*)(void)) };

/* The table. Constant after load, every member non-NULL. */
extern const struct vendor_ops Vendor_Ops __attribute__((visibility("default")));

#ifdef __cplusplus
}
#endif

#endif
