// SPDX-License-Identifier: MIT
#include "common/pending_services.h"

namespace orlo {

// clang-format off
PendingService pending_services[service_count] = {
    {"network", 0, 5},
    {"ntp", 0, 0},
    {"led", 0, 0},
    {"log_relay", 0, 0},
    {"snmp", 0, 0},
};
// clang-format on

} // namespace orlo
