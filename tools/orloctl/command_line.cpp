// SPDX-License-Identifier: MIT
#include "command_line.h"

#include <algorithm>
#include <cctype>

#include "exit.h"
#include "nearest.h"
#include "text.h"

namespace orloctl {

namespace {

struct Option {
    const char* name;
    std::vector<std::string> commands; // whose option it is; none: every command's
    bool CommandLine::*flag;
    std::string CommandLine::*value; // set by options that take a value
    const char* value_name;
    const char* help;
};

const Option options[] = {
    {"--no-save",
     {"apply", "preview"},
     &CommandLine::no_save,
     nullptr,
     "",
     "stage the changes, but do not call api_save_config"},
    {"--raw",
     {"apply", "call", "preview", "trace"},
     &CommandLine::raw,
     nullptr,
     "",
     "pass values on unchecked, to the shell as well; the library's own refusals show"},
    {"--dry-run",
     {"apply"},
     &CommandLine::dry_run,
     nullptr,
     "",
     "print what would be called, with all its values, and call nothing"},
    {"--config",
     {"preview"},
     nullptr,
     &CommandLine::config,
     "DIR",
     "start from the configuration in this folder instead"},
    {"--reads",
     {"trace"},
     &CommandLine::reads,
     nullptr,
     "",
     "show the options and files that are read, too, and each save of a staged change"},
    {"--show-keys",
     {"preview", "trace"},
     &CommandLine::show_keys,
     nullptr,
     "",
     "show keys, secrets and passwords as they are"},
    {"--all", {"status", "counters"}, &CommandLine::all, nullptr, "", "list disabled VAPs as well"},
    {"--file",
     {"clients"},
     nullptr,
     &CommandLine::file,
     "FILE",
     "read this detail file (\"-\": standard input) instead of listing the stations anew"},
    {"--watch",
     {"clients", "counters", "mesh", "quilt"},
     &CommandLine::watch,
     nullptr,
     "",
     "go on until interrupted; with --json a line of JSON each time"},
    {"--every",
     {"clients", "counters", "mesh", "quilt"},
     nullptr,
     &CommandLine::every,
     "SECONDS",
     "with --watch: how long to wait from one time to the next (default: 2)"},
    {"--markdown",
     {"schema"},
     &CommandLine::markdown,
     nullptr,
     "",
     "print all records as Markdown instead"},
    {"--json", {}, &CommandLine::json, nullptr, "", "print JSON for programs"},
    {"--library",
     {},
     nullptr,
     &CommandLine::vendor_library,
     "PATH",
     "load this vendor library (default: the environment's ORLO_LIBRARY, else liborlovendor.so "
     "beside orloctl, else where the loader finds it)"},
    {"--verbose",
     {},
     &CommandLine::verbose,
     nullptr,
     "",
     "print every log line of the library to standard error"},
    {"--here",
     {},
     &CommandLine::here,
     nullptr,
     "",
     "call operations even where /etc/config/orloagent is missing"},
    {"--help", {}, &CommandLine::help, nullptr, "", "print help; behind a command, the command's"},
    {"--version", {}, &CommandLine::version, nullptr, "", "print the version"},
};

const Option* find_option(const std::string& name) {
    for (const Option& option : options) {
        if (name == option.name || (name == "-h" && option.flag == &CommandLine::help)) {
            return &option;
        }
    }
    return nullptr;
}

std::vector<std::string> option_names() {
    std::vector<std::string> names;
    for (const Option& option : options) {
        names.emplace_back(option.name);
    }
    return names;
}

class Reader {
public:
    explicit Reader(const std::vector<std::string>& arguments) : arguments_(arguments) {}

    CommandLine read() {
        while (next_ < arguments_.size()) {
            const std::string& word = arguments_[next_++];
            if (word == "--" && !words_only_) {
                words_only_ = true;
            } else if (!words_only_ && is_option(word)) {
                read_option(word);
            } else if (line_.command.empty()) {
                line_.command = word;
            } else {
                line_.words.push_back(word);
            }
        }
        check_owners();
        return line_;
    }

private:
    void read_option(const std::string& word) {
        const size_t equals = word.find('=');
        const std::string name = word.substr(0, equals);
        const Option* option = find_option(name);
        if (option == nullptr) {
            throw Refusal("unknown option '" + name + "'" +
                          advice(name, option_names(), "'orloctl --help' lists them"));
        }
        given_.push_back(option);
        if (option->value == nullptr) {
            if (equals != std::string::npos) {
                throw Refusal("option " + name + " takes no value");
            }
            line_.*option->flag = true;
            return;
        }
        if (equals == std::string::npos && next_ == arguments_.size()) {
            throw Refusal("option " + name + " needs a value: " + name + " " + option->value_name);
        }
        line_.*option->value =
            equals == std::string::npos ? arguments_[next_++] : word.substr(equals + 1);
    }

    void check_owners() const {
        for (const Option* option : given_) {
            const std::vector<std::string>& owners = option->commands;
            if (!owners.empty() &&
                std::find(owners.begin(), owners.end(), line_.command) == owners.end()) {
                throw Refusal("option " + std::string(option->name) + " belongs to 'orloctl " +
                              joined(owners, "' and 'orloctl ") + "'");
            }
        }
    }

    const std::vector<std::string>& arguments_;
    size_t next_ = 0;
    bool words_only_ = false;
    std::vector<const Option*> given_;
    CommandLine line_;
};

} // namespace

CommandLine read_command_line(const std::vector<std::string>& arguments) {
    return Reader(arguments).read();
}

void take_no_words(const CommandLine& line) {
    if (!line.words.empty()) {
        throw Refusal("'orloctl " + line.command + "' takes no argument, '" + line.words[0] +
                      "' given");
    }
}

std::string chosen_word(const CommandLine& line, const std::vector<std::string>& choices) {
    if (line.words.empty()) {
        return choices.front();
    }
    const std::string& word = line.words.size() > 1 ? line.words[1] : line.words[0];
    if (line.words.size() > 1 || std::find(choices.begin(), choices.end(), word) == choices.end()) {
        throw Refusal("'orloctl " + line.command + "' takes " + alternatives(choices) + ", '" +
                      word + "' given");
    }
    return word;
}

bool is_option(const std::string& word) {
    return word.size() > 1 && word[0] == '-' && isdigit(static_cast<unsigned char>(word[1])) == 0;
}

bool takes_value(const std::string& option) {
    const Option* found = find_option(option);
    return found != nullptr && found->value != nullptr;
}

std::vector<std::string> options_of(const std::string& command) {
    std::vector<std::string> names;
    for (const Option& option : options) {
        const std::vector<std::string>& owners = option.commands;
        if (owners.empty() || std::find(owners.begin(), owners.end(), command) != owners.end()) {
            names.emplace_back(option.name);
        }
    }
    return names;
}

std::string option_help(const std::string& command) {
    Table table;
    for (const Option& option : options) {
        const std::vector<std::string>& owners = option.commands;
        const bool is_owner = std::find(owners.begin(), owners.end(), command) != owners.end();
        if (is_owner || (owners.empty() && command.empty())) {
            const std::string value = *option.value_name == '\0' ? "" : " ";
            table.add({option.name + value + option.value_name, option.help});
        }
    }
    return table.text(2);
}

} // namespace orloctl
