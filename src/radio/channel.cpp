// SPDX-License-Identifier: MIT
// The channels a radio runs on: reading them from the driver, setting them in the configuration and
// at the driver at once.
#include "radio/channel.h"

#include "common/command.h"
#include "common/identity.h"
#include "ops/operations.h"
#include "uci/staging.h"

#include <cstdlib>

using orlo::execute_system_call;
using orlo::radio_key;
using orlo::stage;
using orlo::stage_number;
using orlo::Text;

namespace {

constexpr int two_segment_mode = 5; // the driver's bandwidth code for 80+80 MHz
constexpr int no_second_channel = -1;

// Reads one item of the driver's operating mode.
bool query_radio_mode(int radio, const char* item, char (&value)[8 + 1]) {
    const Text<128> command("iwpriv wdev%d getcmd \"radiomode 1\" | grep \"%s\" | cut -d '=' -f 2",
                            radio, item);
    return execute_system_call(command, value, 8, 1) == 0;
}

void commit_driver(const char* operation, int radio) {
    const Text<128> command("/usr/sbin/iwconfig wdev%d commit", radio);
    LOG_TRACE_FOR(operation, "info: iwconfig commit change: %s\n", command.c_str());
    orlo::run_unchecked(command);
}

} // namespace

int api_get_channel(int radio) {
    LOG_TRACE("Entering... radio:%d\n", orlo::counted_from_one(radio));
    uint32_t channel = 0;
    if (mwl_get_channel(Text<8>("wdev%d", radio), &channel) != 0) {
        return -1;
    }
    const int result = static_cast<int>(channel);
    LOG_TRACE("End... return: %d\n", result);
    return result;
}

int api_get_2ndchannel(int radio) {
    LOG_TRACE("Entering... radio:%d\n", orlo::counted_from_one(radio));
    char bandwidth[8 + 1] = {};
    if (!query_radio_mode(radio, "BW2", bandwidth)) {
        LOG_TRACE("Error: get iwpriv wdev%d getcmd \"radiomode 1\"; failed!! \n", radio);
        return -1;
    }
    int second_channel = 0;
    if (atoi(bandwidth) == two_segment_mode) {
        char channel[8 + 1] = {};
        if (!query_radio_mode(radio, "Channel2", channel)) {
            LOG_TRACE("Error: get iwpriv wdev%d getcmd \"radiomode 1\"; failed!! \n", radio);
            return 0;
        }
        second_channel = atoi(channel);
    }
    LOG_TRACE("End, 2nd_ch = %d, operating bw = %d\n", second_channel, atoi(bandwidth));
    return second_channel;
}

int api_set_Channel(int radio, int channel) {
    LOG_TRACE("Entering... radio:%d channel:%d\n", radio, channel);
    if (orlo::is_channel_in_radio_range(radio, channel) == 0) {
        return LOG_AND_DISCARD("error: Invalid channel %d for radio %d !\n", channel, radio);
    }
    int wanted = channel;
    if (channel == 0) { // stay where the radio is
        wanted = api_get_channel(radio);
        if (wanted < 1) {
            LOG_TRACE("info: can't get radio%d operation channel, silent ignore to set channel.\n",
                      radio);
            return 0;
        }
    }
    const Text<16> value("%d", wanted);
    LOG_TRACE("info: ready to set radio%d channel: %s.\n", radio, value.c_str());
    if (!stage("wireless", radio_key(config_channel_option, radio), value)) {
        return LOG_AND_DISCARD("error: Set wifi%d channel auto to config failed.\n", radio);
    }
    const Text<128> command("/usr/sbin/iwconfig wdev%d channel %s", radio, value.c_str());
    LOG_TRACE("info: Set channel command:%s\n", command.c_str());
    orlo::run_unchecked(command);
    commit_driver(__func__, radio);
    uciCommitValue("wireless");
    LOG_TRACE("Set wifi%d channel %d success.\n", radio, channel);
    return 0;
}

int api_set_secondChannel(int radio, int second_channel) {
    if (second_channel == 0) {
        return 0;
    }
    const Text<128> key("wifi%d.secondchannel", radio);
    if (second_channel == no_second_channel) {
        if (!stage("wireless", key, "")) {
            return LOG_AND_DISCARD("error: failed to delete second channel of radio%d\n", radio);
        }
    } else if (!stage_number("wireless", key, second_channel)) {
        return LOG_AND_DISCARD("error: failed to set second channel of radio%d to %d\n", radio,
                               second_channel);
    }
    const Text<32> mode = second_channel == no_second_channel
                              ? Text<32>("radiomode 0")
                              : Text<32>("radiomode 1 %d", second_channel);
    const Text<128> command("/usr/sbin/iwpriv wdev%d setcmd \"%s\"", radio, mode.c_str());
    LOG_TRACE("info: execute [%s]\n", command.c_str());
    orlo::run_unchecked(command);
    LOG_TRACE("info: ready to set radio%d secondary channel: %d.\n", radio, second_channel);
    commit_driver(__func__, radio);
    uciCommitValue("wireless");
    LOG_TRACE("Set wifi%d channel %d success.\n", radio, second_channel);
    return 0;
}
