// SPDX-License-Identifier: MIT
// The text of a package, in the form in which the store writes configuration files.
#pragma once

#include "buffer.h"
#include "model.h"

namespace uci {

void write_package(Buffer& out, const Package& package);

} // namespace uci
