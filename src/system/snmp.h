// SPDX-License-Identifier: MIT
// The SNMP daemon's settings: checked as a whole, then staged as a whole.
#pragma once

#include "orlo/records.h"

#include <cstddef>

namespace orlo {

// The kinds of traps, in the order of the agent's flags. NULL: a flag without a kind.
constexpr size_t trap_type_count = 9;
extern const char* const trap_types[trap_type_count];

constexpr int trap_host_count = 3;

// 0, or -1 at the first value that is refused. Nothing is staged.
int check_snmp(const snmp_settings& snmp);

// For settings that have been checked: 0, or -1 at the first write that fails. Discards nothing.
int setup_snmp(const snmp_settings& snmp);

// Leaves a request for the agent's trap sender: the radios that are about to go up or down.
void send_snmp_trap(const snmp_settings& snmp);

} // namespace orlo
