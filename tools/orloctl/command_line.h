// SPDX-License-Identifier: MIT
// What the person typed: a command, its words, and options, which may stand anywhere.
#pragma once

#include <string>
#include <vector>

namespace orloctl {

struct CommandLine {
    std::string command; // "" when none is given
    std::vector<std::string> words;
    std::string vendor_library; // "" when not named
    bool json = false;
    bool verbose = false;
    bool here = false;
    bool help = false;
    bool version = false;
    bool no_save = false;
    bool raw = false;
    bool all = false;
    bool markdown = false;
    bool dry_run = false;
    bool watch = false;
    bool reads = false;
    bool show_keys = false;
    std::string file;   // "" when not named
    std::string config; // "" when not named
    std::string every;  // seconds, unchecked; "" when not given
};

// Negative numbers are words, and so is everything behind "--". Throws a Refusal for an option that
// is unknown or not the command's.
CommandLine read_command_line(const std::vector<std::string>& arguments);

// Throws a Refusal when there are words behind a command that takes none.
void take_no_words(const CommandLine& line);

// The word behind a command that takes one of these, the first of them when there is none. Throws a
// Refusal that lists them.
std::string chosen_word(const CommandLine& line, const std::vector<std::string>& choices);

// Whether a word is an option, and not a word such as "-" or a negative number.
bool is_option(const std::string& word);

bool takes_value(const std::string& option);

// The options that may stand with a command, those of every command included.
std::vector<std::string> options_of(const std::string& command);

// The options of a command ("" for those that all commands take), as lines of its help.
std::string option_help(const std::string& command);

} // namespace orloctl
