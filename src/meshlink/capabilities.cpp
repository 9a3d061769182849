// SPDX-License-Identifier: MIT
// What the device tells of its mesh links beside the reports.
#include "common/log.h"
#include "ops/operations.h"
#include "uci/option.h"

using orlo::OptionValue;

namespace {

int not_supported(const char* operation) {
    LOG_TRACE_FOR(operation, "Entering, not support yet\n");
    LOG_TRACE_FOR(operation, "End...\n");
    return 0;
}

} // namespace

int api_apply_mesh_link_initial_vap(int /*radio*/, int /*vap*/, int /*unused*/) {
    return not_supported(__func__);
}

int api_is_mesh_link_acceptor_capable() {
    return not_supported(__func__);
}

int api_is_mesh_link_capable() {
    return not_supported(__func__);
}

int api_is_area_auth(int /*radio*/, int /*vap*/) {
    return not_supported(__func__);
}

// Sent unless the agent's option says otherwise.
int api_is_sending_operation_logs_enabled() {
    LOG_TRACE("Entering");
    OptionValue<8> enabled;
    if (!enabled.read("orloagent", "agent.ap_syslog")) {
        return 1;
    }
    LOG_TRACE("End, val = %s", enabled.c_str());
    return enabled.is("1") ? 1 : 0;
}
