// SPDX-License-Identifier: MIT
// Texts of the agent that reach a shell command: what the shell would find in them.
#pragma once

#include <cstddef>
#include <string>

namespace orloctl {

// Where a text stands in a command.
enum class Shell {
    never,
    bare,          // without quotes
    single_quotes, // between '
    json,          // in a text of JSON, the JSON between '
    double_quotes, // between "
};

// The first thing in the text that would be more than a part of it there, ";" or "a blank"; "" when
// there is none.
std::string acting_part(const std::string& text, Shell place);

// The sentence about such a text; "" when nothing in it acts.
std::string shell_objection(const std::string& text, Shell place);

// "unquoted", "between single quotes": how a text stands there.
const char* shell_help(Shell place);

// An operation whose texts, all of them, reach one command.
struct ShellCommand {
    const char* operation;
    Shell place;
    size_t room; // for its texts together, in bytes: the library cuts the command behind it
};

// NULL for an operation whose texts reach no command.
const ShellCommand* shell_command(const std::string& operation);

} // namespace orloctl
