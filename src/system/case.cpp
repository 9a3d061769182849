// SPDX-License-Identifier: MIT
// What is on the outside of the case: the LEDs and the reset button.
#include "common/flag.h"
#include "common/pending_services.h"
#include "ops/operations.h"
#include "uci/staging.h"

using orlo::inverted_flag_text;
using orlo::outcome;
using orlo::stage;

// The option is the eco mode, in which the LEDs are off.
int api_apply_led_status(int status) {
    LOG_TRACE("Entering... status:%d\n", status);
    int result = 0;
    if (stage("system", "eco_mode.eco_mode", inverted_flag_text(status))) {
        orlo::mark_changed(orlo::service_led);
    } else {
        result = LOG_AND_DISCARD("Set Value Failed\n");
    }
    LOG_TRACE("End... return: %s\n", outcome(result));
    return result;
}

// Nothing needs a restart for it, and nothing is discarded.
int api_apply_reset_button(int status) {
    LOG_TRACE("Entering... reset:%d\n", status);
    int result = 0;
    if (!stage("system", "reset_button.disable", inverted_flag_text(status))) {
        LOG_TRACE("Set Value Failed\n");
        result = -1;
    }
    LOG_TRACE("End... return: %s\n", outcome(result));
    return result;
}
