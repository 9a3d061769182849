// SPDX-License-Identifier: MIT
// The private commands of the simulated driver: the table of them, and "setcmd".
#pragma once

#include "driver/answers.h"

namespace orlo::device {

int answer_private_table(const Interface& interface, iwreq& request);

/// Whether the interface has "setcmd" under this number.
bool is_setcmd(const Interface& interface, unsigned long number);

int answer_setcmd(const Interface& interface, iwreq& request);

} // namespace orlo::device
