// SPDX-License-Identifier: MIT
// The OpenFlow agent: on or off, its controllers, and what it does without one.
#include "common/pending_services.h"
#include "ops/operations.h"
#include "uci/staging.h"

#include <cstring>

using orlo::shown;
using orlo::stage;
using orlo::Text;

namespace {

struct FailMode {
    const char* value;
    bool takes_timeout;
};

FailMode fail_mode_of(const char* mode) {
    if (mode != nullptr && strcmp(mode, "normal") == 0) {
        return {"open", true};
    }
    if (mode != nullptr && strcmp(mode, "drop") == 0) {
        return {"close", true};
    }
    return {"secure", false};
}

} // namespace

int api_apply_openflow_enable(int enable) {
    LOG_TRACE("Entering... enable: %d\n", enable);
    if (!stage("openflow", "config.enable", enable != 0 ? "1" : "0")) {
        LOG_ERROR("Failed to set value, %d to openflow.config.enable\n", enable);
        return orlo::discard_staged();
    }
    orlo::mark_changed(orlo::service_network);
    LOG_TRACE("End... return: 0\n");
    return 0;
}

int api_apply_openflow_controller(int index, const char* controller) {
    LOG_TRACE("Entering... index: %d, controller: %s\n", index, shown(controller));
    if (!stage("openflow", Text<128>("config.controller%d", index), controller)) {
        LOG_ERROR("Failed to set value, %s to openflow.config.controller%d\n", shown(controller),
                  index);
        return orlo::discard_staged();
    }
    orlo::mark_changed(orlo::service_network);
    LOG_TRACE("End... return: 0\n");
    return 0;
}

int api_apply_openflow_critical_mode(const char* mode, int timeout) {
    LOG_TRACE("Entering... mode: %s, timeout: %d\n", shown(mode), timeout);
    const FailMode fail_mode = fail_mode_of(mode);
    if (!stage("openflow", "config.fail_mode", fail_mode.value)) {
        LOG_ERROR("Failed to set value, %s to openflow.config.fail_mode\n", fail_mode.value);
        return orlo::discard_staged();
    }
    if (fail_mode.takes_timeout &&
        !stage("openflow", "config.fail_timeout", Text<8>("%d", timeout))) {
        LOG_ERROR("Failed to set value, %d to openflow.config.fail_timeout\n", timeout);
        return orlo::discard_staged();
    }
    orlo::mark_changed(orlo::service_network);
    LOG_TRACE("End... return: 0\n");
    return 0;
}
