// SPDX-License-Identifier: MIT
// The table: 132 operations, filled in by the linker, in read-only data once loaded.
#include "ops/operations.h"

#include <cstddef>

const vendor_ops Vendor_Ops = {
#define ORLO_OP(slot, result, name, parameters, meaning, summary) name,
#include "orlo/operations.def"
};

static_assert(ORLO_SLOTS == 132);

#define ORLO_OP(slot, result, name, parameters, meaning, summary)                                  \
    static_assert(offsetof(vendor_ops, name) == slot * sizeof(void (*)()), #name " moved");
#include "orlo/operations.def"
