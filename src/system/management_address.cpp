// SPDX-License-Identifier: MIT
// The address under which the access point is managed.
#include "common/lan_bridge.h"
#include "common/log.h"
#include "ops/operations.h"

#include <cstring>

int api_get_management_ip(char* ip) {
    constexpr int ret = 0;
    char text[orlo::bridge_answer_size];
    orlo::read_bridge_address(text);
    LOG_TRACE("will return ip: %s\n", text);
    if (ip != nullptr) {
        memcpy(ip, text, strlen(text) + 1);
    }
    LOG_TRACE("End... return ip:%s ret:%d\n", orlo::shown(ip), ret);
    return ret;
}
