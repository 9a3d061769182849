// SPDX-License-Identifier: MIT
// What the security of quilt VAPs has of its own.
#pragma once

#include "vap/security.h"

namespace orlo {

extern const SecurityWording quilt_security_wording;

} // namespace orlo
