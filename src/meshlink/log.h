// SPDX-License-Identifier: MIT
// The log of mesh links: a module of its own, with more levels than the rest of the library uses.
#pragma once

#include "common/log.h"

namespace orlo {

constexpr int mesh_module = 8;
constexpr int mesh_info_level = 3;  // what the access point is within the mesh
constexpr int mesh_value_level = 4; // commands, and what was learnt from them

} // namespace orlo

#define MESH_LOG_FOR(operation, level, ...)                                                        \
    orlo_agent_debug_log(orlo::mesh_module, level, operation, __LINE__, __VA_ARGS__)
#define MESH_ENTER() MESH_LOG_FOR(__func__, orlo::trace_level, "Enter\n")
#define MESH_ERROR(...) MESH_LOG_FOR(__func__, orlo::error_level, __VA_ARGS__)
#define MESH_INFO(...) MESH_LOG_FOR(__func__, orlo::mesh_info_level, __VA_ARGS__)
#define MESH_VALUE(...) MESH_LOG_FOR(__func__, orlo::mesh_value_level, __VA_ARGS__)
