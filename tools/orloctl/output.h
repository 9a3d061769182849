// SPDX-License-Identifier: MIT
// Standard output, kept for what orloctl itself prints.
//
// Operations run device tools that share the process's standard output, and some print to it
// themselves. Constructing an Output moves all that to standard error, so that "orloctl --json" is
// JSON and nothing else. It writes without a buffer: operations may fork, and a child must not
// print its parent's lines once more.
#pragma once

#include <string>

namespace orloctl {

class Output {
public:
    Output();
    ~Output();
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    void print(const std::string& text);

    // Whether a person reads it as it comes.
    bool is_terminal() const;

    // Whether it is one that does more than print: moves, clears, colours.
    bool has_screen() const;

    // The error number of the first write that failed, 0 when all is written. What is printed after
    // a failed write is dropped: a reader that went away does not stop operations half-way.
    int error() const { return error_; }

private:
    int descriptor_;
    int error_ = 0;
};

} // namespace orloctl
