// SPDX-License-Identifier: MIT
#include "store.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>
#include <uci.h>

#include "text.h"

namespace orloctl {

namespace {

struct ContextRelease {
    void operator()(uci_context* context) const { uci_free_context(context); }
};
using Context = std::unique_ptr<uci_context, ContextRelease>;

StagedChange::Kind kind_of(uci_command command) {
    switch (command) {
    case UCI_CMD_ADD:
        return StagedChange::Kind::add;
    case UCI_CMD_REMOVE:
        return StagedChange::Kind::remove;
    case UCI_CMD_RENAME:
        return StagedChange::Kind::rename;
    case UCI_CMD_REORDER:
        return StagedChange::Kind::reorder;
    case UCI_CMD_LIST_ADD:
        return StagedChange::Kind::add_element;
    case UCI_CMD_LIST_DEL:
        return StagedChange::Kind::remove_element;
    default:
        return StagedChange::Kind::set;
    }
}

Values option_values(uci_option* option) {
    if (option->type == UCI_TYPE_STRING) {
        return {option->v.string};
    }
    Values values;
    uci_element* element = nullptr;
    uci_foreach_element(&option->v.list, element) {
        values.emplace_back(element->name);
    }
    return values;
}

void read_values(uci_package* package, Store& store) {
    const std::string prefix = std::string(package->e.name) + ".";
    uci_element* section_element = nullptr;
    uci_foreach_element(&package->sections, section_element) {
        uci_section* section = uci_to_section(section_element);
        const std::string section_key = prefix + section->e.name;
        store.values[section_key] = {section->type};
        uci_element* option_element = nullptr;
        uci_foreach_element(&section->options, option_element) {
            store.values[section_key + "." + option_element->name] =
                option_values(uci_to_option(option_element));
        }
    }
}

void read_staged(uci_package* package, Store& store) {
    uci_element* element = nullptr;
    uci_foreach_element(&package->saved_delta, element) {
        const uci_delta* delta = uci_to_delta(element);
        std::string key = std::string(package->e.name) + "." + delta->section;
        if (delta->e.name != nullptr) {
            key += std::string(".") + delta->e.name;
        }
        const char* value = delta->value == nullptr ? "" : delta->value;
        store.staged.push_back({kind_of(delta->cmd), key, value});
    }
}

// Looks the package up with its name alone, which loads it.
uci_package* load(uci_context* context, std::string name) {
    uci_ptr found = {};
    const bool loaded = uci_lookup_ptr(context, &found, name.data(), true) == UCI_OK;
    return loaded ? found.p : nullptr;
}

} // namespace

std::string StagedChange::text() const {
    switch (kind) {
    case Kind::set:
        return key + "=" + value;
    case Kind::remove:
        return "-" + key;
    case Kind::add:
        return "+" + key + "=" + value;
    case Kind::add_element:
        return key + "+=" + value;
    case Kind::remove_element:
        return key + "-=" + value;
    case Kind::rename:
        return "@" + key + "=" + value;
    case Kind::reorder:
        return "^" + key + "=" + value;
    }
    return key;
}

bool Store::stages(const std::string& key) const {
    return std::any_of(staged.begin(), staged.end(),
                       [&](const StagedChange& change) { return change.key == key; });
}

bool Store::holds(const StagedChange& change) const {
    const auto found = values.find(change.key);
    if (found == values.end()) {
        return change.kind == StagedChange::Kind::remove;
    }
    const Values& now = found->second;
    const bool among = std::find(now.begin(), now.end(), change.value) != now.end();
    switch (change.kind) {
    case StagedChange::Kind::set:
    case StagedChange::Kind::add:
        return now.size() == 1 && among;
    case StagedChange::Kind::add_element:
        return among;
    case StagedChange::Kind::remove_element:
        return !among;
    case StagedChange::Kind::remove:
    case StagedChange::Kind::rename:
    case StagedChange::Kind::reorder:
        break;
    }
    return false;
}

std::string Store::shown(const std::string& key) const {
    const auto found = values.find(key);
    return found == values.end() ? "-" + key : key + "=" + joined(found->second, " ");
}

Store read_store() {
    const Context context(uci_alloc_context());
    if (context == nullptr) {
        throw std::bad_alloc();
    }
    Store store;
    char** names = nullptr;
    if (uci_list_configs(context.get(), &names) != UCI_OK) {
        return store; // no configuration at all
    }
    const std::unique_ptr<char*, decltype(&free)> owned(names, &free);
    for (char** name = names; *name != nullptr; name++) {
        uci_package* package = load(context.get(), *name);
        if (package == nullptr) {
            store.unreadable.emplace_back(*name);
            continue;
        }
        read_values(package, store);
        read_staged(package, store);
    }
    return store;
}

std::vector<std::string> differing_keys(const Store& before, const Store& after) {
    std::vector<std::string> keys;
    for (const auto& [key, values] : before.values) {
        const auto found = after.values.find(key);
        if (found == after.values.end() || found->second != values) {
            keys.push_back(key);
        }
    }
    for (const auto& [key, values] : after.values) {
        if (before.values.count(key) == 0) {
            keys.push_back(key);
        }
    }
    return keys;
}

std::vector<std::string> texts(const std::vector<StagedChange>& changes) {
    std::vector<std::string> result(changes.size());
    std::transform(changes.begin(), changes.end(), result.begin(),
                   [](const StagedChange& change) { return change.text(); });
    return result;
}

} // namespace orloctl
