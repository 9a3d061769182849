// SPDX-License-Identifier: MIT
// Firmware: checking an image, installing it, and whether an installation is flagged.
#include "common/command.h"
#include "common/log.h"
#include "common/text.h"
#include "ops/operations.h"

using orlo::CommandOutput;
using orlo::exit_code;
using orlo::Text;

int api_fw_validate(const char* path) {
    if (path == nullptr) {
        LOG_TRACE("Firmware path is NULL\n");
        return -1;
    }
    LOG_TRACE("Entering... path:%s\n", path);
    if (system(Text<64>("/usr/bin/qxcommand -check firmware=%s", path)) != 0) {
        LOG_TRACE("End... return: Fail\n");
        return -1;
    }
    LOG_TRACE("End... return: Success\n");
    return 0;
}

int api_get_fwupgrade_status() {
    LOG_TRACE("Enter .... \n");
    CommandOutput flag("fw_printnvram | grep \"orlo_fwup_flag\" | cut -d '=' -f 2");
    if (!flag.started()) {
        return -1;
    }
    char value[4] = {};
    flag.read_line(value, sizeof value);
    flag.close();
    LOG_TRACE("End .... orlo_fwup_flag = %c \n", value[0]);
    return value[0] == '1' ? 1 : 0;
}

// The agent installs the image itself, once this call is long over; the library only reminds it.
int api_fw_upgrade(const char* path) {
    constexpr int delay_seconds = 20;
    if (path == nullptr) {
        LOG_TRACE("Firmware path is NULL\n");
        return -1;
    }
    LOG_TRACE("Entering... path:%s\n", path);
    const Text<256> reminder(
        "sleep %d; /bin/ubus call orloagent fwupgrade '{\"id\":1, \"msg\":\"%s\"}'", delay_seconds,
        path);
    if (!orlo::run_in_child(__func__, reminder)) {
        LOG_TRACE("End... Fail to fork\n");
        return -1;
    }
    if (exit_code(system("echo \"/etc/ap_fwupgrade\" >> /etc/sysupgrade.conf; sync")) != 0) {
        LOG_TRACE("End... parent return: Fail\n");
        return -1;
    }
    LOG_TRACE("End... parent return: Success\n");
    return 0;
}
