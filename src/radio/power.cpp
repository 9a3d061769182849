// SPDX-License-Identifier: MIT
// Transmit power: a percentage of the radio's maximum, kept as a named level and handed to the
// driver, which scales its per-rate powers from a table file.
#include "common/command.h"
#include "common/identity.h"
#include "ops/operations.h"
#include "uci/option.h"
#include "uci/staging.h"

#include <cstdlib>
#include <cstring>

using orlo::CommandOutput;
using orlo::OptionValue;
using orlo::radio_key;
using orlo::shown;
using orlo::stage;
using orlo::Text;

namespace {

struct PowerLevel {
    const char* name;
    int percent; // stands for this and everything up to the level above
};

// clang-format off
const PowerLevel power_levels[] = {
    {"Max", 100},
    {"90", 90},
    {"80", 80},
    {"High", 75},
    {"70", 70},
    {"60", 60},
    {"Middle", 50},
    {"40", 40},
    {"30", 30},
    {"Low", 25},
    {"20", 20},
    {"10", 10},
    {"5", 5},
    {"Min", 1},
};
// clang-format on

constexpr int step_count = ORLO_POWER_STEPS;
const int power_steps[step_count] = {1, 5, 10, 20, 30, 40, 50, 60, 70, 80, 90, 100};

const char* const table_2g = "/etc/R8K_2G_TX_Power_Table";
const char* const table_5g = "/etc/R8K_5G_TX_Power_Table";

const char* table_of(int radio) {
    return radio == 0 ? table_2g : table_5g;
}

constexpr double default_max_power = 11.0; // dBm, of a radio that is off

// The level of a percentage from 1 to 100.
const PowerLevel& level_of_percent(int percent) {
    const PowerLevel* level = power_levels;
    while (percent < level->percent) {
        level++;
    }
    return *level;
}

const PowerLevel* level_named(const OptionValue<10>& name) {
    for (const PowerLevel& level : power_levels) {
        if (name.is(level.name)) {
            return &level;
        }
    }
    return nullptr;
}

// Stores the values of "20.5,20.0,..." from the last step backwards, as the driver lists 100 %
// first. False when the line holds none.
bool read_power_steps(char* line, float* percent_array) {
    char* rest = nullptr;
    const char* token = strtok_r(line, ",", &rest);
    if (token == nullptr) {
        return false;
    }
    for (int i = step_count - 1; i >= 0 && token != nullptr; i--) {
        percent_array[i] = static_cast<float>(atof(token));
        token = strtok_r(nullptr, ",", &rest);
    }
    return true;
}

} // namespace

int api_set_Power(int radio, int percent) {
    LOG_TRACE("Entering... radio:%d power:%d%%\n", radio, percent);
    const double max_power = (api_get_MaxPowerInfo(radio, 0, "") + 3.0) * 2;
    LOG_TRACE("info: Get wifi%d Max power %f (0.5 dBm).\n", radio, max_power);

    if (percent >= 1 && percent <= 100) {
        const char* level = level_of_percent(percent).name;
        if (!stage("wireless", radio_key(config_power_option, radio), level)) {
            return LOG_AND_DISCARD("error: Set wifi%d power %s to config failed.\n", radio, level);
        }
    } else if (percent == 0) { // the driver is told all the same
        LOG_TRACE("info: do nothing because radio%d power is controlled by APCA now.\n", radio);
        if (!orlo::is_radio(radio)) {
            return orlo::discard_staged();
        }
    } else {
        return LOG_AND_DISCARD("error: Set wifi%d power %d%% failed. "
                               "The value doesn't exist in power levels.\n",
                               radio, percent);
    }

    const Text<128> load("/usr/sbin/iwpriv wdev%d setcmd \"loadpwrgrpstbl %s %d\"", radio,
                         table_of(radio), percent);
    LOG_TRACE("info: Set power command: %s\n", load.c_str());
    orlo::run_unchecked(load);
    const Text<128> apply("/usr/sbin/iwpriv wdev%d setcmd \"applypwr\"", radio);
    LOG_TRACE("info: Apply power percent command: %s\n", apply.c_str());
    orlo::run_unchecked(apply);
    uciCommitValue("wireless");
    LOG_TRACE("info: Set wifi%d power %d%% success.\n", radio, percent);
    return 0;
}

int api_get_transmitpower(int radio) {
    LOG_TRACE(" Entering... radio:%d\n", radio);
    OptionValue<10> name;
    if (!name.read("wireless", radio_key(config_power_option, radio))) {
        LOG_TRACE("error: Get wifi%d power from config failed.\n", radio);
        return -1;
    }
    const PowerLevel* level = level_named(name);
    if (level == nullptr) {
        LOG_TRACE("error: Get wifi%d power from config failed. Power Level incorrect.\n", radio);
        return -1;
    }
    LOG_TRACE(" End... Get wifi%d transmit power %d%%\n", radio, level->percent);
    return level->percent;
}

float api_get_MaxPowerInfo(int radio, int bandwidth, const char* modulation) {
    LOG_TRACE("Entering... radio:%d bandwidth:%d modulation: %s\n", radio, bandwidth,
              shown(modulation));
    OptionValue<128> disabled;
    if (!disabled.read("wireless", radio_key(config_disabled_option, radio))) {
        LOG_TRACE("error: wifi%d get radio status failed.\n", radio);
        return 0.0F;
    }
    if (!disabled.is("0")) {
        LOG_TRACE("info: wifi%d status is not enabled (%s), return maximum power: %f\n", radio,
                  disabled.c_str(), default_max_power);
        return static_cast<float>(default_max_power);
    }
    const Text<128> command(
        "/usr/sbin/iwpriv wdev%d getcmd \"getsyncscanpwr %s\" | cut -d ':' -f 3", radio,
        table_of(radio));
    CommandOutput output(command);
    if (!output.started()) {
        LOG_TRACE("Error: Radio %d fail to get max power, return 0.0 (cmd: %s)\n", radio,
                  command.c_str());
        return 0.0F;
    }
    char line[32] = {};
    output.read_line(line, sizeof line);
    output.close();
    const double max_power = atof(line);
    LOG_TRACE("End, maximum power of wifi%d is %f dBm\n", radio, max_power);
    return static_cast<float>(max_power);
}

int api_get_PowerPercent(int radio, float* percent_array, float current_power) {
    LOG_TRACE("Entering... radio:%d cur_power:%f\n", radio, static_cast<double>(current_power));
    if (radio >= orlo::radio_count) {
        LOG_TRACE("Error: invalid radio: %d\n", radio);
        return -1;
    }
    if (percent_array == nullptr) {
        return -1;
    }
    CommandOutput output(
        Text<128>("/usr/sbin/iwpriv wdev%d getcmd \"getsyncscanpwr %s p\" | cut -d ':' -f 3", radio,
                  table_of(radio)));
    if (!output.started()) {
        return -1;
    }
    char line[64] = {};
    output.read_line(line, sizeof line);
    orlo::cut_line_end(line);
    output.close();
    if (!read_power_steps(line, percent_array)) {
        // "% u" is a conversion, and the agent's log filters know the text that comes out.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat"
        LOG_TRACE("Error: radio % unknown getsyncscanpwr: [%s]\n", static_cast<unsigned>(radio),
                  line);
#pragma GCC diagnostic pop
        return -1;
    }
    if (is_debug_module_level_enabled(orlo::agent_module, orlo::trace_level) != 0) {
        for (int i = 0; i < step_count; i++) {
            LOG_TRACE("End... wifi%d subtract %.6f dBm for power %d%%; percent_array[%d] = %.6f\n",
                      radio, static_cast<double>(current_power - percent_array[i]), power_steps[i],
                      i, static_cast<double>(percent_array[i]));
        }
    }
    return 0;
}
