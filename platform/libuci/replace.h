// SPDX-License-Identifier: MIT
// The text of a package, and putting it in the place of the configuration file.
#pragma once

#include "staging.h"

namespace uci {

/// Writes a package to its configuration file, all or nothing.
/// @param config   the present file, locked exclusively
/// @param staging  the staged changes that the package contains: emptied. Not open: there are none.
/// @return UCI_ERR_IO, UCI_ERR_MEM; both files are as before then.
[[nodiscard]] int replace_config(const Package& package, const LockedFile& config,
                                 const LockedFile& staging, const Staged& staged);

} // namespace uci
