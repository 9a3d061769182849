// SPDX-License-Identifier: MIT
// Detection of neighbouring access points: the background scan of a radio.
#include "ops/operations.h"
#include "uci/option.h"
#include "uci/staging.h"

#include <cstring>

using orlo::shown;
using orlo::stage;
using orlo::Text;

namespace {

constexpr const char* configured_option = "agent.ap_detection_configured";

} // namespace

// Takes effect without a save: commits everything that is staged, and discards nothing.
int api_set_ap_detection(int radio, const char* status) {
    LOG_TRACE("Entering... radio:%d status:%s\n", radio, shown(status));
    const bool is_on = status != nullptr && strcmp(status, "on") == 0;
    if (!stage("wireless", Text<128>("wifi%d.rfscan_status", radio), is_on ? "1" : "0")) {
        LOG_TRACE("Set Value Failed\n");
        return -1;
    }
    if (uciCommitValue(nullptr) != 0) {
        LOG_TRACE("Commit Value Failed\n");
        return -1;
    }
    LOG_TRACE("End...\n");
    return 0;
}

int api_set_ap_detection_configured(int configured) {
    LOG_TRACE("Entering, st = %d\n", configured);
    const char* value = configured != 0 ? "1" : "0";
    if (!stage("orloagent", configured_option, value)) {
        LOG_TRACE("Failed to set orloagent.ap_detection_configured=%s\n", value);
        return -1;
    }
    return 0;
}

int api_get_ap_detection_configured() {
    LOG_TRACE("Entering...\n");
    orlo::OptionValue<8> value;
    return value.read("orloagent", configured_option) && value.is("1") ? 1 : 0;
}

int api_set_channel_hopping(int /*unused1*/, void* /*unused2*/) {
    LOG_TRACE("Entering, not support\n");
    LOG_TRACE("End...\n");
    return 0;
}
