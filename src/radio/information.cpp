// SPDX-License-Identifier: MIT
// What the agent asks about a radio: its type, width and state from the configuration, and where
// its neighbours are listed.
#include "common/identity.h"
#include "common/log.h"
#include "common/text.h"
#include "ops/operations.h"
#include "uci/option.h"

#include <cstdio>
#include <cstring>

using orlo::OptionValue;
using orlo::radio_key;
using orlo::Text;

namespace {

struct RadioType {
    const char* hardware_mode;
    const char* type;
};

// clang-format off
const RadioType radio_types[] = {
    {"11axg", "b/g/n/ax"},
    {"11bg", "b/g"},
    {"11a", "a"},
    {"11axa", "a/n/ac/ax"},
};
// clang-format on

const char* radio_type(const char* hardware_mode) {
    for (const RadioType& each : radio_types) {
        if (strcmp(each.hardware_mode, hardware_mode) == 0) {
            return each.type;
        }
    }
    return "";
}

bool starts_with(const char* text, const char* beginning) {
    return strncmp(text, beginning, strlen(beginning)) == 0;
}

// In MHz; -1 for a mode that is none of these. 80+80 is told apart from 160.
int bandwidth(const char* mode) {
    if (starts_with(mode, "HT20")) {
        return 20;
    }
    if (starts_with(mode, "HT40+")) {
        return 40;
    }
    if (strcmp(mode, "HT80") == 0) {
        return 80;
    }
    return strcmp(mode, "HT80+80") == 0 ? 8080 : -1;
}

} // namespace

char* api_get_radio_type(int radio) {
    LOG_TRACE("Entering... radio: %d\n", radio);
    const Text<32> key("wifi%d.hwmode", radio);
    LOG_TRACE("cmd: %s\n", key.c_str());
    OptionValue<128> mode;
    if (!mode.read("wireless", key)) {
        LOG_TRACE("Get wifi%d.hwmode Failed\n", radio);
        return nullptr;
    }
    const char* type = radio_type(mode.c_str());
    LOG_TRACE("End... type: %s\n", type);
    return strdup(type);
}

int api_get_bandwidth(int radio) {
    LOG_TRACE("Entering... radio:%d \n", radio);
    OptionValue<128> mode;
    const bool known = mode.read("wireless", radio_key(config_bw_option, radio));
    const int width = known ? bandwidth(mode.c_str()) : -1;
    if (width == -1) {
        LOG_TRACE("error: Get wifi%d bandwidth failed.\n", radio);
        return -1;
    }
    LOG_TRACE("End... wifi%d bandwidth %d MHz\n", radio, width);
    return width;
}

char* api_get_radio_status(int radio) {
    LOG_TRACE("Entering... radio: %d\n", radio);
    const Text<32> key("wifi%d.disabled", radio);
    LOG_TRACE("cmd: %s\n", key.c_str());
    OptionValue<128> disabled;
    if (!disabled.read("wireless", key)) {
        LOG_TRACE("Get wifi%d.disabled Failed\n", radio);
        return strdup("none");
    }
    if (!disabled.is("0") && !disabled.is("1")) {
        LOG_TRACE("End... failed\n");
        return strdup("none");
    }
    LOG_TRACE("End... buf: %s\n", disabled.c_str());
    return strdup(disabled.is("0") ? "up" : "down");
}

char* api_get_radio_modulation(int radio) {
    constexpr const char* modulation = "OFDM";
    LOG_TRACE("Entering... radio:%d\n", radio);
    LOG_TRACE("End... modulation:%s\n", modulation);
    return strdup(modulation);
}

int api_get_wlanutil(int radio) {
    constexpr int wlan_util = 0;
    LOG_TRACE("Entering... radio:%d, not support\n", radio);
    LOG_TRACE("End... wlan_util=%d\n", wlan_util);
    return wlan_util;
}

// Another program writes the list. Room for the path is all that may be taken for granted.
int api_get_neighbors(char* buf, void* /*unused*/) {
    constexpr char path[] = "/tmp/neighbor_ap_list";
    LOG_TRACE("Entering...\n");
    FILE* list = fopen(path, "r");
    if (list == nullptr) {
        LOG_TRACE("File is not exist\n");
        return -1;
    }
    int result = -1;
    if (buf != nullptr) {
        memcpy(buf, path, sizeof path);
        LOG_TRACE("File is exist: %s\n", buf);
        result = 0;
    }
    fclose(list);
    return result;
}
