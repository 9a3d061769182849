// SPDX-License-Identifier: MIT
// One operation with its arguments, as the command line has them, and what came of calling it.
#pragma once

#include <string>
#include <vector>

#include "command_line.h"
#include "operations.h"
#include "secrets.h"

namespace orloctl {

class Call {
public:
    Call(const Operation& operation, std::vector<Argument> arguments)
        : operation_(operation), arguments_(std::move(arguments)) {}

    void make(const vendor_ops& ops);

    // What is secret in the arguments; before it is made, as operations consume lists.
    void learn(Secrets& secrets) const;

    const std::string& name() const { return operation_.name; }
    bool has_failed() const { return reading_.failed; }

    // The result, and what the operation has filled in.
    std::string text() const;
    Json json() const;

private:
    const Operation& operation_;
    std::vector<Argument> arguments_;
    Result result_;
    Reading reading_ = {"", false};
};

// The words of "orloctl call OP ARG..." and its like. Throws a Refusal.
Call read_call(const CommandLine& line);

} // namespace orloctl
