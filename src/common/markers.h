// SPDX-License-Identifier: MIT
// Files whose existence tells the device's programs what the others are doing.
#pragma once

namespace orlo {

// The agent is applying a configuration: the web interface applies none.
constexpr const char* web_block_marker = "/tmp/radio_setting";

// The web interface is restarting the network; it removes the file.
constexpr const char* web_restart_marker = "/tmp/gui_network_restarting";

// The apply-settings script is restarting the network; it removes the file.
constexpr const char* network_restart_marker = "/tmp/orlo_network_restarting";

} // namespace orlo
