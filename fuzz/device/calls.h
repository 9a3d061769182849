// SPDX-License-Identifier: MIT
// What an input may call: an operation of the table, or another exported function.
#pragma once

#include "device/input.h"

#include <string>

namespace fuzz {

// Makes the call that the words name; whatever it answers is released again. False when they name
// none, or not its arguments.
bool make_call(const Call& words);

// The same of calls that take a description or a record as JSON.
bool make_record_call(const Call& words, const std::string& text);

} // namespace fuzz
