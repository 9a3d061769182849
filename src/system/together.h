// SPDX-License-Identifier: MIT
// Options that are all written, whatever becomes of those before: the operation succeeds when every
// one of them was.
#pragma once

#include "uci/staging.h"

namespace orlo {

class StagedTogether {
public:
    explicit StagedTogether(const char* package) : package_(package) {}

    void set(const char* key, const char* value) { all_ = stage(package_, key, value) && all_; }

    bool all() const { return all_; }

private:
    const char* package_;
    bool all_ = true;
};

} // namespace orlo
