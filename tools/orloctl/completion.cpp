// SPDX-License-Identifier: MIT
#include "completion.h"

#include <algorithm>
#include <glob.h>

#include "commands.h"
#include "operations.h"
#include "orlo/vendor_ops.h"

namespace orloctl {

namespace {

using Words = std::vector<std::string>;

// Where examples lie: on an access point, and in the source tree.
constexpr const char* example_places[] = {"/usr/share/examples/*.json", "examples/*.json"};

Words example_files() {
    Words files;
    for (const char* place : example_places) {
        glob_t found = {};
        if (glob(place, 0, nullptr, &found) == 0) {
            files.insert(files.end(), found.gl_pathv, found.gl_pathv + found.gl_pathc);
        }
        globfree(&found);
    }
    return files;
}

Words numbers(int count) {
    Words words;
    for (int i = 0; i < count; i++) {
        words.push_back(std::to_string(i));
    }
    return words;
}

// A command line, up to the word that is completed.
struct Begun {
    std::string command;
    Words words;               // behind the command
    bool wants_value = false;  // of the option before
    bool takes_options = true; // no "--" yet

    void read(const std::string& word) {
        if (wants_value) {
            wants_value = false;
        } else if (takes_options && word == "--") {
            takes_options = false;
        } else if (takes_options && is_option(word)) {
            wants_value = takes_value(word) && word.find('=') == std::string::npos;
        } else if (command.empty() && takes_options) {
            command = word;
        } else {
            words.push_back(word);
        }
    }
};

// The next argument of an operation, where its name tells what there is.
Words argument_values(const Words& words) {
    const std::vector<Operation>& all = operations();
    const auto found = std::find_if(all.begin(), all.end(), [&](const Operation& operation) {
        return operation.name == words[0] || std::to_string(operation.slot) == words[0];
    });
    if (found == all.end()) {
        return {};
    }
    size_t place = words.size() - 1; // of the argument among those that take a word
    for (const Parameter& parameter : found->parameters) {
        if (!parameter.takes_word() || place-- > 0) {
            continue;
        }
        return parameter.kind != Kind::integer ? Words()
               : parameter.name == "radio"     ? numbers(ORLO_RADIOS)
               : parameter.name == "vap"       ? numbers(ORLO_VAPS_PER_RADIO)
                                               : Words();
    }
    return {};
}

Words values(const Begun& begun) {
    if (begun.command.empty()) {
        Words names = command_names();
        names.emplace_back("help");
        return names;
    }
    const bool is_first = begun.words.empty();
    if (begun.command == "help") {
        return is_first ? command_names() : Words();
    }
    const Command* command = find_command(begun.command);
    if (command == nullptr) {
        return {};
    }
    if (is_first && command->choices != nullptr) {
        return command->choices();
    }
    if (command == &apply_command || command == &preview_command) {
        return is_first ? example_files() : Words();
    }
    const bool is_call = command == &call_command || command == &trace_command;
    return is_call ? argument_values(begun.words) : Words();
}

} // namespace

std::vector<std::string> completions(const std::vector<std::string>& words) {
    const std::string last = words.empty() ? "" : words.back();
    Begun begun;
    for (size_t i = 0; i + 1 < words.size(); i++) {
        begun.read(words[i]);
    }
    Words candidates;
    if (!begun.wants_value) {
        const bool is_option_begun = begun.takes_options && !last.empty() && last[0] == '-';
        candidates = is_option_begun ? options_of(begun.command) : values(begun);
    }
    candidates.erase(
        std::remove_if(candidates.begin(), candidates.end(),
                       [&](const std::string& candidate) { return candidate.rfind(last, 0) != 0; }),
        candidates.end());
    return candidates;
}

} // namespace orloctl
