// SPDX-License-Identifier: MIT
// Sending a station away from a VAP.
#include "common/log.h"
#include "ops/operations.h"

#include <cstdio>
#include <cstdlib>

int api_disassociate_client(const char* sta_mac_addr, int radio, int vap_id) {
    if (sta_mac_addr == nullptr) {
        LOG_TRACE("sta_mac_addr is NULL\n");
        return 0;
    }
    LOG_TRACE("Entering... vap_id = %d, sta_mac_addr:%s\n", vap_id, sta_mac_addr);
    char command[128] = {};
    if (vap_id >= 0) {
        snprintf(command, sizeof command,
                 "/usr/sbin/hostapd_cli -i wdev%dap%d -P /var/run/hostapd.pid disassociate %s",
                 radio, vap_id, sta_mac_addr);
    } else {
        LOG_TRACE("Failed to set command.\n");
    }
    // Without a command the shell has nothing to do, and that succeeds.
    if (system(command) != 0) {
        LOG_TRACE("Failed to execute command.\n");
    } else {
        LOG_TRACE("End...\n");
    }
    return 0;
}
