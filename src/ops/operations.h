// SPDX-License-Identifier: MIT
// Every operation of the table by its own name. They are reached through the table; only those that
// exports.h names are visible to the agent beside it.
#pragma once

#include "orlo/vendor_ops.h"

extern "C" {
#define ORLO_OP(slot, result, name, parameters, meaning, summary) result name parameters;
#include "orlo/operations.def"
}
