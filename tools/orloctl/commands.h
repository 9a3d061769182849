// SPDX-License-Identifier: MIT
// The commands of orloctl. Each has a file of its own.
#pragma once

#include <string>
#include <vector>

#include "command_line.h"
#include "exit.h"
#include "output.h"

namespace orloctl {

struct Command {
    const char* name;
    const char* usage;   // behind "orloctl"
    const char* summary; // one line
    std::string (*help)();
    Exit (*run)(const CommandLine& line, Output& output);
    std::vector<std::string> (*choices)() = nullptr; // for its first word, where they are known
};

// In the order of the help.
const std::vector<const Command*>& all_commands();

// NULL when there is none of that name.
const Command* find_command(const std::string& name);

std::vector<std::string> command_names();

extern const Command ops_command;
extern const Command call_command;
extern const Command trace_command;
extern const Command apply_command;
extern const Command preview_command;
extern const Command status_command;
extern const Command clients_command;
extern const Command counters_command;
extern const Command mesh_command;
extern const Command quilt_command;
extern const Command records_command;
extern const Command schema_command;
extern const Command system_command;
extern const Command block_command;
extern const Command release_command;
extern const Command wait_vaps_command;
extern const Command completion_command;

} // namespace orloctl
