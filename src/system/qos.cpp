// SPDX-License-Identifier: MIT
// QoS classes, which this device does not have.
#include "common/log.h"
#include "ops/operations.h"

namespace {

int do_nothing(const char* operation) {
    LOG_TRACE_FOR(operation, "Entering, not support\n");
    LOG_TRACE_FOR(operation, "End... return: 0\n");
    return 0;
}

} // namespace

int api_apply_qos_ap(int /*unused1*/, void* /*unused2*/, void* /*unused3*/) {
    return do_nothing(__func__);
}

int api_apply_qos_station(int /*unused1*/, void* /*unused2*/, void* /*unused3*/) {
    return do_nothing(__func__);
}
