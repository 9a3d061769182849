// SPDX-License-Identifier: MIT
// The configuration store as it stands now: every value, and the staged changes behind some of
// them.
//
// Read through libuci, as the library reads it. Comparing the store before and after an operation
// tells what the operation staged, what it committed and what was discarded.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace orloctl {

struct StagedChange {
    enum class Kind { set, remove, add, add_element, remove_element, rename, reorder };

    Kind kind;
    std::string key; // "wireless.wifi0.channel", or "wireless.wifi0" for a change of a section
    std::string value;

    // "wireless.wifi0.channel=36"; "-wireless.wifi0.channel" where it is removed.
    std::string text() const;

    bool operator==(const StagedChange& other) const {
        return kind == other.kind && key == other.key && value == other.value;
    }
};

using Values = std::vector<std::string>; // one of a text option, all of a list

struct Store {
    std::vector<StagedChange> staged;     // in the order in which they were staged, by package
    std::map<std::string, Values> values; // by key, staged changes included
    std::vector<std::string> unreadable;  // packages that cannot be read

    bool stages(const std::string& key) const;
    bool holds(const StagedChange& change) const;    // the store's value is what the change made it
    std::string shown(const std::string& key) const; // "key=value", "-key" when it is not there
};

Store read_store();

// The keys whose value is another one, or that are there only on one side.
std::vector<std::string> differing_keys(const Store& before, const Store& after);

// The texts of changes, in order.
std::vector<std::string> texts(const std::vector<StagedChange>& changes);

} // namespace orloctl
