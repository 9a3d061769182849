// SPDX-License-Identifier: MIT
// Lookups, for functions that get a reference from their caller.
#pragma once

#include "model.h"

namespace uci {

/// Makes sure that the reference has been looked up and its package is loaded: a reference whose
/// texts the caller filled in himself is looked up now.
[[nodiscard]] int look_up_once(uci_context* ctx, uci_ptr* ptr);

} // namespace uci
