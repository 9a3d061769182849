// SPDX-License-Identifier: MIT
// The access point's address and mask on its LAN bridge, by keyword.
#include "common/lan_bridge.h"
#include "common/log.h"
#include "ops/operations.h"

#include <cstring>

using orlo::shown;

char* api_get_interface(const char* key) {
    char text[orlo::bridge_answer_size];
    LOG_TRACE("Entering... key:%s\n", shown(key));
    if (key != nullptr && strcmp(key, "ip") == 0) {
        orlo::read_bridge_address(text);
        LOG_TRACE("will return ip: %s\n", text);
    } else if (key != nullptr && strcmp(key, "mask") == 0) {
        orlo::read_bridge_mask(text);
        LOG_TRACE("will return mask: %s\n", text);
    } else {
        LOG_TRACE("End... unknown key: %s\n", shown(key));
        return strdup("");
    }
    return strdup(text);
}
