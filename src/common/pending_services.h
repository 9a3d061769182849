// SPDX-License-Identifier: MIT
// The system services that staged changes affect. Apply operations mark them; saving the
// configuration restarts the marked ones and clears the marks.
#pragma once

namespace orlo {

struct PendingService {
    const char* name;
    int changed;
    int parameter; // handed to the apply-settings script with the name
};

enum Service { service_network, service_ntp, service_led, service_log_relay, service_snmp };

constexpr int service_count = 5;

extern PendingService pending_services[service_count];

inline void mark_changed(Service service) {
    pending_services[service].changed = 1;
}

inline bool is_changed(Service service) {
    return pending_services[service].changed == 1;
}

} // namespace orlo
