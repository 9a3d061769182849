// SPDX-License-Identifier: MIT
// Loading: a package is its configuration file with the staged changes applied to it.
#pragma once

#include "locked_file.h"
#include "model.h"
#include "staging.h"

namespace uci {

/// Which file a package is made from.
struct Source {
    const char* name = nullptr;
    const char* path = nullptr;
    bool uses_conf2 = false;
    bool has_delta = true;
};

/// Makes a package of a locked configuration file.
/// @param staging  the file of the save directory when the caller has locked it, else nullptr
/// @param staged   out: what was found there
/// @return UCI_ERR_PARSE, UCI_ERR_IO, UCI_ERR_MEM
[[nodiscard]] int build_package(uci_context* ctx, const Source& source, const LockedFile& config,
                                const LockedFile* staging, Staged& staged, Package*& out);

/// Finds, locks and reads the file of a package. The package is in no list yet.
/// @return UCI_ERR_NOTFOUND too
[[nodiscard]] int load_package(uci_context* ctx, const char* name, Package*& out);

} // namespace uci
