// SPDX-License-Identifier: MIT
// Rebooting on behalf of the agent.
#include "common/command.h"
#include "common/file.h"
#include "common/log.h"
#include "ops/operations.h"

int api_system_reboot() {
    LOG_TRACE("Entering...\n");
    if (!orlo::write_file("/etc/ap_reboot", "")) {
        LOG_TRACE("error: Create /etc/ap_reboot fail.\n");
        return 0;
    }
    LOG_TRACE("Create /etc/ap_reboot success.\n");
    LOG_TRACE("Starting to reboot AP.\n");
    FILE* rotation = fopen("/sbin/scinfo-logrotate.sh", "r");
    if (rotation != nullptr) {
        orlo::run_unchecked("/sbin/scinfo-logrotate.sh FORCE");
        fclose(rotation);
    }
    orlo::run_unchecked("/usr/bin/orloagent_system_reboot.sh");
    return 0;
}
