// SPDX-License-Identifier: MIT
// What orloctl knows of the 132 operations: all of it comes from orlo/operations.def.
#pragma once

#include <string>
#include <vector>

#include "argument.h"
#include "result.h"
#include "shell.h"

namespace orloctl {

struct Operation {
    int slot;
    std::string name;
    std::string prototype; // "int api_set_Channel(int radio, int channel)"
    std::string result;    // "int"
    Meaning meaning;
    std::string summary;
    std::vector<Parameter> parameters;
    const ShellCommand* shell; // that its texts reach, or NULL
    Result (*call)(const vendor_ops& ops, std::vector<Argument>& arguments);

    // "api_set_Channel RADIO CHANNEL": the words of a call.
    std::string usage() const;
};

// In slot order.
const std::vector<Operation>& operations();

std::vector<std::string> operation_names();

// By name or slot number. Throws a Refusal that proposes what may have been meant.
const Operation& find_operation(const std::string& name_or_slot);

// Types the words of a call; arguments that take no word are added. If `checked`, records must keep
// to their rules, and texts that reach the shell must be no more than texts there. Throws a
// Refusal.
std::vector<Argument> read_arguments(const Operation& operation,
                                     const std::vector<std::string>& words, bool checked);

} // namespace orloctl
