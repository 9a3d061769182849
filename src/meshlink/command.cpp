// SPDX-License-Identifier: MIT
#include "meshlink/command.h"

#include "meshlink/log.h"

#include <cstring>

namespace orlo {

namespace {

const char* announced(const char* asker, const char* command) {
    MESH_LOG_FOR(asker, mesh_value_level, "execute %s\n", command);
    return command;
}

} // namespace

MeshCommand::MeshCommand(const char* asker, const char* command)
    : asker_(asker), output_(announced(asker, command)) {
    if (!output_.started()) {
        MESH_LOG_FOR(asker, error_level, "failed to execute %s\n", command);
    }
}

bool MeshCommand::read_line(char* line, int size) {
    if (!output_.read_line(line, size)) {
        return false;
    }
    char rest[64];
    bool ended = strchr(line, '\n') != nullptr;
    while (!ended && output_.read_line(rest, sizeof rest)) {
        ended = strchr(rest, '\n') != nullptr;
    }
    cut_line_end(line);
    MESH_LOG_FOR(asker_, mesh_value_level, "res: %s\n", line);
    return true;
}

} // namespace orlo
