// SPDX-License-Identifier: MIT
// What became of configuration changes while a description was applied.
//
// Operations stage changes, and some commit on their own: api_apply_wireless_interface commits
// package wireless in its channel and power steps. The store is read between operations, and the
// differences tell: a change that an operation which succeeded no longer leaves staged has been
// committed; after a failed one, a change that the store does not hold has been discarded.
#pragma once

#include <string>
#include <vector>

#include "store.h"

namespace orloctl {

class Ledger {
public:
    explicit Ledger(Store start) : now_(std::move(start)) {}

    // The store as an operation that succeeded left it.
    void succeeded(Store after);

    // The store as an operation that failed left it, and as it stands once everything that was
    // still staged has been discarded.
    void failed(const Store& after, Store cleaned);

    std::vector<std::string> staged() const { return texts(now_.staged); }
    const std::vector<std::string>& unreadable() const { return now_.unreadable; }
    std::vector<std::string> discarded() const { return texts(discarded_); }
    const std::vector<StagedChange>& discarded_changes() const { return discarded_; }
    std::vector<std::string> committed() const; // "key=value" of each option that got its value

private:
    void note_committed(const std::string& key);

    Store now_;
    std::vector<std::string> committed_keys_;
    std::vector<StagedChange> discarded_;
};

} // namespace orloctl
