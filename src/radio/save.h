// SPDX-License-Identifier: MIT
// The words that tell the apply-settings script what to restart.
#pragma once

#include "common/pending_services.h"

#include <cstddef>

namespace orlo {

enum class ServiceWords { none, some, too_long };

// Writes "network-5 snmp-0" for the marked services, in their order.
ServiceWords list_changed_services(const PendingService (&services)[service_count], char* words,
                                   size_t size);

} // namespace orlo
