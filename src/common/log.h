// SPDX-License-Identifier: MIT
// The logging call as operations use it: one line a message, in the operation's own name.
#pragma once

#include "orlo/debug.h"

namespace orlo {

constexpr int agent_module = 5;
constexpr int error_level = 1;
constexpr int trace_level = 5;

// A text that a log line may print although its caller gave none.
constexpr const char* shown(const char* text) {
    return text == nullptr ? "NULL" : text;
}

// How an operation's last line names its result.
constexpr const char* outcome(int result) {
    return result == 0 ? "Success" : "Fail";
}

} // namespace orlo

// A message is written out in full where it is logged, so that a person who searches for a log line
// finds it. _FOR is for steps that work in the name of several operations.
#define LOG_TRACE_FOR(operation, ...)                                                              \
    orlo_agent_debug_log(orlo::agent_module, orlo::trace_level, operation, __LINE__, __VA_ARGS__)
#define LOG_ERROR_FOR(operation, ...)                                                              \
    orlo_agent_debug_log(orlo::agent_module, orlo::error_level, operation, __LINE__, __VA_ARGS__)
#define LOG_TRACE(...) LOG_TRACE_FOR(__func__, __VA_ARGS__)
#define LOG_ERROR(...) LOG_ERROR_FOR(__func__, __VA_ARGS__)
