// SPDX-License-Identifier: MIT
#include "ledger.h"

#include <algorithm>

namespace orloctl {

namespace {

using Changes = std::vector<StagedChange>;

bool contains(const Changes& changes, const StagedChange& change) {
    return std::find(changes.begin(), changes.end(), change) != changes.end();
}

} // namespace

void Ledger::succeeded(Store after) {
    for (const StagedChange& change : now_.staged) {
        if (!contains(after.staged, change)) {
            note_committed(change.key);
        }
    }
    for (const std::string& key : differing_keys(now_, after)) {
        if (!after.stages(key)) {
            note_committed(key); // staged and committed by the operation itself
        }
    }
    now_ = std::move(after);
}

void Ledger::failed(const Store& after, Store cleaned) {
    Changes pending = now_.staged;
    for (const StagedChange& change : after.staged) {
        if (!contains(pending, change)) {
            pending.push_back(change);
        }
    }
    for (const StagedChange& change : pending) {
        if (cleaned.stages(change.key)) {
            continue; // it could not be discarded: still staged
        }
        if (cleaned.holds(change)) {
            note_committed(change.key);
        } else {
            discarded_.push_back(change);
        }
    }
    for (const std::string& key : differing_keys(now_, cleaned)) {
        if (!now_.stages(key) && !after.stages(key)) {
            note_committed(key);
        }
    }
    now_ = std::move(cleaned);
}

std::vector<std::string> Ledger::committed() const {
    std::vector<std::string> result;
    for (const std::string& key : committed_keys_) {
        result.push_back(now_.shown(key));
    }
    return result;
}

void Ledger::note_committed(const std::string& key) {
    if (std::find(committed_keys_.begin(), committed_keys_.end(), key) == committed_keys_.end()) {
        committed_keys_.push_back(key);
    }
}

} // namespace orloctl
