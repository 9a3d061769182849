// Shell commands as operations run them: read a line of their output, or run them for their effect.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace orlo {

// Runs a command for its effect on the device; what becomes of it is nobody's concern. (The "!" is
// for compilers that insist on a result being looked at.)
inline void run_unchecked(const char* command) {
    static_cast<void>(!system(command));
}

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

// Copies the first line of the command's output to `out`, at most out_size - 1 bytes of a longer
// one. Adds no terminator: give a zeroed buffer. strip_newline removes the line's last character,
// whatever it is. Returns -1 when the command cannot be started or prints nothing.
int execute_system_call(const char* command, char* out, int out_size, int strip_newline);

} // namespace orlo
