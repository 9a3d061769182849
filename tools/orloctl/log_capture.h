// SPDX-License-Identifier: MIT
// The agent's side of logging: the library's log lines arrive here first.
//
// orloctl exports orlo_agent_debug_log itself, which the loader prefers to libdebug's. The lines of
// the current call are kept, so that a failure can be reported with the library's own reason, and
// handed on to libdebug, which decides by its own settings what becomes of them.
#pragma once

#include <string>
#include <vector>

namespace orloctl {

using LogFunction = void (*)(int module, int level, const char* function_name, int line,
                             const char* format, ...);

// Where lines go on to; NULL drops them.
void forward_log_to(LogFunction function);

// Prints every line to standard error as it comes. They are not handed on then: each line is
// printed once.
void print_all_log_lines();

// Forgets the lines of earlier calls.
void start_call_log();

// The last words of the current call, oldest first: its trace of entered functions left out.
std::vector<std::string> last_log_lines();

// Prints them to standard error as the operation's reason, unless every line has been printed.
void print_reason(const std::string& operation);

} // namespace orloctl
