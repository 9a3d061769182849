// SPDX-License-Identifier: MIT
// The device's own VLAN-change script.
#pragma once

namespace orlo {

// Runs the script where there is one; what becomes of it is only logged.
void api_update_vap_vlan();

} // namespace orlo
