// SPDX-License-Identifier: MIT
// A radio's part of an access-point profile: on or off, forced off or not, its channels and power.
#include "radio/profile.h"

#include "common/identity.h"
#include "common/pending_services.h"
#include "ops/operations.h"
#include "radio/channel.h"
#include "uci/option.h"
#include "uci/staging.h"

#include <cstdlib>
#include <cstring>

using orlo::OptionValue;
using orlo::radio_key;
using orlo::shown;
using orlo::stage;
using orlo::Text;

namespace {

// The steps below work in its name.
constexpr const char* apply_profile = "api_apply_wireless_interface";

using EligibleChannels = OptionValue<128>;

int take_profile_status(int radio) {
    LOG_TRACE_FOR(apply_profile,
                  "wifi%d force-disable off: set radio status with AP Profile setting.\n", radio);
    if (!stage("orloagent", radio_key(config_force_disable_option, radio), "off")) {
        return LOG_AND_DISCARD_FOR(
            apply_profile,
            "error: wifi%d force-disable off: Force set radio status to Disable failed.\n", radio);
    }
    return 0;
}

int force_disable(int radio) {
    LOG_TRACE_FOR(
        apply_profile,
        "wifi%d force-disable on: Don't care AP Profile setting.force set radio status to "
        "Disable.\n",
        radio);
    if (!stage("orloagent", radio_key(config_force_disable_option, radio), "on")) {
        return LOG_AND_DISCARD_FOR(
            apply_profile,
            "error: wifi%d force-disable on: Force set radio status to Disable failed.\n", radio);
    }
    if (api_apply_radio_status(radio, 0) != 0) { // has discarded everything
        LOG_TRACE_FOR(apply_profile,
                      "error: wifi%d force-disable on: Force set radio status to Disable failed.\n",
                      radio);
        return -1;
    }
    return 0;
}

int apply_override_status(int radio, const char* status) {
    if (status == nullptr) {
        return LOG_AND_DISCARD_FOR(apply_profile,
                                   "error: Can not identify wifi%d force-disable status.\n", radio);
    }
    if (strcmp(status, "not-override") == 0) {
        return take_profile_status(radio);
    }
    if (strcmp(status, "force-disable") == 0) {
        return force_disable(radio);
    }
    return LOG_AND_DISCARD_FOR(apply_profile, "error: wifi%d force-disable: Unknown status %s\n",
                               radio, status);
}

// Where the profile leaves the channel to the system, moves the radio off a channel that is no
// longer eligible. A channel of the profile's own leaves `eligible` empty.
int override_channel(int radio, int* channel, EligibleChannels* eligible) {
    if (*channel != 0) {
        return 0;
    }
    if (!eligible->read("wireless", radio_key(config_eg_ch_option, radio))) {
        return LOG_AND_DISCARD_FOR(apply_profile, "error: can't get radio%d eligible channels.\n",
                                   radio);
    }
    int first_eligible = 0;
    if (orlo::check_static_channel_in_eligible_channels(radio, eligible->c_str(),
                                                        &first_eligible) == 0) {
        LOG_TRACE_FOR(apply_profile, "wifi%d: Override channel %d.\n", radio, first_eligible);
        *channel = first_eligible;
    }
    return 0;
}

// Where the profile leaves the second channel to the system, pairs it with the primary one. A
// primary that cannot be read discards nothing.
int derive_second_channel(int radio, EligibleChannels* eligible, int* second_channel) {
    if (*second_channel != 0) {
        return 0;
    }
    OptionValue<8> text;
    if (!text.read("wireless", radio_key(config_channel_option, radio))) {
        LOG_TRACE_FOR(apply_profile, "info: failed to uci_get radio%d primary channel.\n", radio);
        return -1;
    }
    const int primary_channel = atoi(text.c_str());
    orlo::check_second_channel_in_eligible_channels(eligible->data(), primary_channel,
                                                    second_channel);
    LOG_TRACE_FOR(apply_profile, "wifi%d: Primary Channel: %d; Secondary Channel: %d \n", radio,
                  primary_channel, *second_channel);
    return 0;
}

} // namespace

int api_apply_wireless_interface(int radio, const char* override_status, int channel,
                                 int second_channel, int power_percent) {
    LOG_TRACE("Entering... radio:%d status:%s channel:%d prof_2nd_ch:%d power:%d\n", radio,
              shown(override_status), channel, second_channel, power_percent);
    if (apply_override_status(radio, override_status) != 0) {
        return -1;
    }
    EligibleChannels eligible;
    if (override_channel(radio, &channel, &eligible) != 0) {
        return -1;
    }
    // Channels and power discard what is staged themselves when they fail. The channel commits it.
    if (api_set_Channel(radio, channel) < 0) {
        LOG_TRACE("error: Set wifi%d channel %d failed.\n", radio, channel);
        return -1;
    }
    if (derive_second_channel(radio, &eligible, &second_channel) != 0) {
        return -1;
    }
    if (api_set_secondChannel(radio, second_channel) < 0) {
        LOG_TRACE("error: Set wifi%d secondchannel %d failed.\n", radio, second_channel);
        return -1;
    }
    if (power_percent != 0 && api_set_Power(radio, power_percent) < 0) {
        LOG_TRACE("error: Set wifi%d power %d failed.\n", radio, power_percent);
        return -1;
    }
    orlo::mark_changed(orlo::service_network);
    LOG_TRACE("Apply wifi%d interface success.\n", radio);
    return 0;
}

int api_apply_radio_status(int radio, int status) {
    LOG_TRACE(" Entering... radio:%d status:%d\n", radio, status);
    if (!orlo::is_radio(radio) || (status != 0 && status != 1)) {
        return LOG_AND_DISCARD("error: Apply radio status failed, "
                               "can not identify wireless interface or status\n");
    }
    if (!stage("wireless", config_disabled_option[radio], status == 1 ? "0" : "1")) {
        return LOG_AND_DISCARD("error: Set wifi%d status %d to config failed.\n", radio, status);
    }
    orlo::mark_changed(orlo::service_network);
    LOG_TRACE("Apply wifi%d status %d Success\n", radio, status);
    return 0;
}

// The agent reads 0 as "forced off".
int api_get_force_disable_status(int radio) {
    LOG_TRACE(" Entering... radio:%d\n", radio);
    OptionValue<128> status;
    if (!status.read("orloagent", radio_key(config_force_disable_option, radio))) {
        LOG_TRACE("error: Get wifi%d force-disable config value failed. "
                  "Keep profile's radio status setting. [not-override]\n",
                  radio);
        return -1;
    }
    if (status.is("on")) {
        LOG_TRACE("Get wifi%d force-disable status is on. [force-disable]\n", radio);
        return 0;
    }
    if (status.is("off")) {
        LOG_TRACE("Get wifi%d force-disable status is off. [not-override]\n", radio);
        return -1;
    }
    LOG_TRACE("error: Get wifi%d force-disable unknown config value %s. "
              "Keep profile's radio status setting. [not-override]\n",
              radio, status.c_str());
    return -1;
}

namespace orlo {

int set_legacy_rate(int radio, const char* rates) {
    LOG_TRACE("Entering... radio:%d supported_rate:%s\n", radio, shown(rates));
    if (!is_radio(radio)) {
        return LOG_AND_DISCARD("error: Set legacy rate failed, - unknown wifi%d\n", radio);
    }
    if (rates == nullptr) {
        return LOG_AND_DISCARD("error: Set legacy rate failed, can not identify supported rate\n");
    }
    if (!stage("wireless", Text<128>("wifi%d.legacy_rates", radio), rates)) {
        return LOG_AND_DISCARD("Set Value Failed\n");
    }
    LOG_TRACE("Set wifi%d legacy rate success.\n", radio);
    return 0;
}

} // namespace orlo
