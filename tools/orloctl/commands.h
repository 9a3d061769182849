// The commands of orloctl. Each has a file of its own; the table is in main.cpp.
#pragma once

#include <string>

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
};

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

} // namespace orloctl
