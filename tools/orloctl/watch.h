// SPDX-License-Identifier: MIT
// Showing the same thing again and again, as it changes.
#pragma once

#include <functional>
#include <string>

#include "command_line.h"
#include "json.h"
#include "output.h"

namespace orloctl {

// The value as a document, or as one line of many where it is shown again and again.
std::string json_frame(const CommandLine& line, const Json& value);

// Prints what `frame` returns, once. With --watch: over and over, until the person interrupts it or
// the reader goes away. An operation that has begun is not cut short by that. Throws a Refusal,
// before it calls `frame`, for an interval that is no number of seconds.
void show(const CommandLine& line, Output& output, const std::function<std::string()>& frame);

} // namespace orloctl
