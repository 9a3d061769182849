// SPDX-License-Identifier: MIT
#include "soak/expected_configuration.h"

#include "support/option_text.h"

#include <cstdlib>
#include <uci.h>

namespace orlo::test {

namespace {

void add_package(const uci_package& package, std::map<std::string, std::string>& all) {
    std::map<std::string, int> anonymous; // sections so far, by type
    uci_element* element = nullptr;
    uci_foreach_element(&package.sections, element) {
        const uci_section& section = *uci_to_section(element);
        const int index = anonymous[section.type]++;
        const std::string name =
            section.anonymous ? "@" + std::string(section.type) + "[" + std::to_string(index) + "]"
                              : section.e.name;
        uci_element* inner = nullptr;
        uci_foreach_element(&section.options, inner) {
            const std::string path = std::string(package.e.name) + "." + name + "." + inner->name;
            all[path] = text_of(*uci_to_option(inner));
        }
    }
}

bool begins(const std::string& text, const std::string& prefix) {
    return text.compare(0, prefix.size(), prefix) == 0;
}

void erase_prefixed(std::map<std::string, std::string>& options, const std::string& prefix) {
    auto entry = options.lower_bound(prefix);
    while (entry != options.end() && begins(entry->first, prefix)) {
        entry = options.erase(entry);
    }
}

} // namespace

void ExpectedConfiguration::stage(const std::string& option, const std::string& value) {
    staged_[option] = value;
}

void ExpectedConfiguration::forget(const std::string& prefix) {
    erase_prefixed(staged_, prefix);
    erase_prefixed(committed_, prefix);
}

void ExpectedConfiguration::commit(const std::string& prefix) {
    auto entry = staged_.lower_bound(prefix);
    while (entry != staged_.end() && begins(entry->first, prefix)) {
        committed_[entry->first] = entry->second;
        entry = staged_.erase(entry);
    }
}

std::string ExpectedConfiguration::value(const std::string& option) const {
    for (const auto* options : {&staged_, &committed_}) {
        const auto found = options->find(option);
        if (found != options->end()) {
            return found->second;
        }
    }
    return "";
}

std::vector<std::string>
ExpectedConfiguration::differences(const std::map<std::string, std::string>& actual) const {
    std::vector<std::string> lines;
    for (const auto& [option, expected] : committed_) {
        const auto found = actual.find(option);
        const std::string is = found == actual.end() ? "" : found->second;
        if (is != expected) {
            std::string line = option;
            line.append(": is '").append(is).append("', expected '").append(expected).append("'");
            lines.push_back(line);
        }
    }
    return lines;
}

std::map<std::string, std::string> actual_configuration() {
    std::map<std::string, std::string> all;
    uci_context* const context = uci_alloc_context();
    char** names = nullptr;
    if (context == nullptr || uci_list_configs(context, &names) != UCI_OK) {
        abort();
    }
    for (char** name = names; *name != nullptr; name++) {
        uci_ptr found;
        std::string text = *name;
        if (uci_lookup_ptr(context, &found, text.data(), true) == UCI_OK) {
            add_package(*found.p, all);
        }
    }
    free(names);
    uci_free_context(context);
    return all;
}

} // namespace orlo::test
