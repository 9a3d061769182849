// SPDX-License-Identifier: MIT
#include "commands.h"

namespace orloctl {

const std::vector<const Command*>& all_commands() {
    // clang-format off
    static const std::vector<const Command*> all = {
        &ops_command, &call_command, &trace_command,
        &preview_command, &apply_command, &status_command, &system_command,
        &clients_command, &counters_command,
        &mesh_command, &quilt_command,
        &block_command, &release_command, &wait_vaps_command,
        &records_command, &schema_command, &completion_command,
    };
    // clang-format on
    return all;
}

const Command* find_command(const std::string& name) {
    for (const Command* command : all_commands()) {
        if (name == command->name) {
            return command;
        }
    }
    return nullptr;
}

std::vector<std::string> command_names() {
    std::vector<std::string> names;
    for (const Command* command : all_commands()) {
        names.emplace_back(command->name);
    }
    return names;
}

} // namespace orloctl
