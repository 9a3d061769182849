// SPDX-License-Identifier: MIT
// Shell commands as operations run them: read a line of their output, run them for their effect and
// look at what became of them, or leave them to a child process.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace orlo {

// Runs a command for its effect on the device; what becomes of it is nobody's concern. (The "!" is
// for compilers that insist on a result being looked at.)
inline void run_unchecked(const char* command) {
    static_cast<void>(!system(command));
}

// The exit code in a wait status: 0 for a command that succeeded or that a signal ended, 255 for
// one that could not be started.
constexpr int exit_code(int status) {
    return static_cast<int>((static_cast<unsigned>(status) >> 8U) & 0xFFU);
}

// Runs a command; returns its wait status. A negative one, when the command could not be started,
// is logged in the operation's name.
int run_logged(const char* operation, const char* command);
void log_not_run(const char* operation, const char* command);

// Runs a command that has to succeed: logs in the operation's name how it ended, and returns 0, or
// -1 when it could not be started, was ended by a signal or has another exit code than 0.
int run_strictly(const char* operation, const char* command);

// Starts a child process that runs the command, logs in the operation's name whether it succeeded,
// and ends with status 0 or -1. The child never returns, and the caller has to reap it. False when
// there can be no child.
bool run_in_child(const char* operation, const char* command);

// A command started for reading its output; closed with the scope.
class CommandOutput {
public:
    explicit CommandOutput(const char* command) : pipe_(popen(command, "r")) {}
    ~CommandOutput() { close(); }
    CommandOutput(const CommandOutput&) = delete;
    CommandOutput& operator=(const CommandOutput&) = delete;

    bool started() const { return pipe_ != nullptr; }

    // One line of at most size - 1 characters, its line end included. False at the end of the
    // output, which leaves the buffer as it was.
    bool read_line(char* line, int size) { return fgets(line, size, pipe_) != nullptr; }

    bool printed_nothing() { return fgetc(pipe_) == EOF; }

    // Waits for the command's end.
    void close() {
        if (pipe_ != nullptr) {
            pclose(pipe_);
            pipe_ = nullptr;
        }
    }

private:
    FILE* pipe_;
};

// Cuts a line at its line end.
void cut_line_end(char* line);

// Runs the command that `text` holds and puts the first line of its output in its place. Without
// output the command itself stays there, which callers of some operations have come to expect.
void replace_by_output(char* text, int size);

// Copies the first line of the command's output to `out`, at most out_size - 1 bytes of a longer
// one. Adds no terminator: give a zeroed buffer. strip_newline removes the line's last character,
// whatever it is. Returns -1 when the command cannot be started or prints nothing.
int execute_system_call(const char* command, char* out, int out_size, int strip_newline);

} // namespace orlo
