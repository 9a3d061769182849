// SPDX-License-Identifier: MIT
// Keeping the agent's applies and those of the web interface apart, and what the agent wants to
// know and to start around an apply.
#include "common/command.h"
#include "common/file.h"
#include "common/log.h"
#include "common/markers.h"
#include "common/pending_services.h"
#include "common/text.h"
#include "ops/operations.h"
#include "orlo/exports.h"

using orlo::exists;
using orlo::Text;
using orlo::web_block_marker;

int api_is_config_applying_check() {
    LOG_TRACE("Entering...\n");
    if (exists(web_block_marker) || exists(orlo::web_restart_marker)) {
        LOG_TRACE("info: Network/Web UI process was not finished yet!\n");
        return -1;
    }
    LOG_TRACE("info: Start to block Web UI applying config.\n");
    orlo::write_file(web_block_marker, "all");
    return 0;
}

int api_release_web_ui_block() {
    LOG_TRACE("Entering...\n");
    return exists(web_block_marker) && unlink(web_block_marker) == 0 ? 0 : -1;
}

void api_mark_config_apply_flag() {
    for (orlo::PendingService& service : orlo::pending_services) {
        service.changed = 1;
    }
}

int api_start_stop_syncscan(int start_stop) {
    LOG_TRACE("Entering... start_stop:%d\n", start_stop);
    const char* action = start_stop != 0 ? "start" : "stop";
    const Text<128> call("sleep 1; /bin/ubus call orloagent syncscan '{\"action\": \"%s\"}'",
                         action);
    const int result = orlo::exit_code(system(call)) != 0 ? -1 : 0;
    LOG_TRACE("End... %s Syncscan Success\n", action); // agents know this line for both outcomes
    return result;
}

int api_get_watchdog_timeout(uint16_t* timeout) {
    constexpr uint16_t watchdog_seconds = 900;
    LOG_TRACE("Entering...\n");
    if (timeout != nullptr) {
        *timeout = watchdog_seconds;
    }
    LOG_TRACE("info: watchdog_config_timeout=%u\n", static_cast<unsigned>(watchdog_seconds));
    return 0;
}
