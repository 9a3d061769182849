// SPDX-License-Identifier: MIT
#include "common/lan_bridge.h"

#include "common/command.h"

namespace orlo {

namespace {

constexpr const char* bridge = "br-lan";

} // namespace

void read_bridge_address(char (&text)[bridge_answer_size]) {
    snprintf(text, sizeof text, "ifconfig %s | grep 'inet addr:' | cut -d':' -f 2 | cut -d' ' -f 1",
             bridge);
    replace_by_output(text, sizeof text);
}

void read_bridge_mask(char (&text)[bridge_answer_size]) {
    snprintf(text, sizeof text, "ifconfig %s | grep 'inet addr:' | cut -d':' -f4 | cut -d' ' -f 1",
             bridge);
    replace_by_output(text, sizeof text);
}

} // namespace orlo
