// SPDX-License-Identifier: MIT
// Commands that mesh reports are made of.
#pragma once

#include "common/command.h"

namespace orlo {

// A command and its output, traced in the name of the function that asks.
class MeshCommand {
public:
    MeshCommand(const char* asker, const char* command);

    // Whether there is an output to read; that there is none has been logged.
    bool started() const { return output_.started(); }

    // One line without its line end; what exceeds the buffer is left out. False at the end of the
    // output, which leaves the buffer as it was.
    template <size_t N>
    bool read_line(char (&line)[N]) {
        return read_line(line, static_cast<int>(N));
    }

    void close() { output_.close(); }

private:
    bool read_line(char* line, int size);

    const char* asker_;
    CommandOutput output_;
};

} // namespace orlo
