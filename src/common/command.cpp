// SPDX-License-Identifier: MIT
#include "common/command.h"

#include "common/log.h"

#include <cstring>
#include <unistd.h>

namespace orlo {

void log_not_run(const char* operation, const char* command) {
    LOG_TRACE_FOR(operation, "Execute system call '%s' failed\n", command);
}

int run_logged(const char* operation, const char* command) {
    const int status = system(command);
    if (status < 0) {
        log_not_run(operation, command);
    }
    return status;
}

int run_strictly(const char* operation, const char* command) {
    const int status = system(command);
    if (status == -1) {
        LOG_TRACE_FOR(operation, "System command error\n");
        return -1;
    }
    if ((static_cast<unsigned>(status) & 0x7FU) != 0) {
        LOG_TRACE_FOR(operation, "System command already exit, exit status = %d\n", status);
        return -1;
    }
    if (exit_code(status) != 0) {
        LOG_TRACE_FOR(operation, "Run system command fail and exit code is %d\n",
                      exit_code(status));
        return -1;
    }
    LOG_TRACE_FOR(operation, "Run system command successful\n");
    return 0;
}

bool run_in_child(const char* operation, const char* command) {
    fflush(nullptr); // what the agent has buffered is not for the child to write once more
    const pid_t child = fork();
    if (child != 0) {
        return child > 0;
    }
    const bool failed = exit_code(system(command)) != 0;
    LOG_TRACE_FOR(operation,
                  failed ? "End... child process: Fail\n" : "End... child process: Success\n");
    // The exit handlers are the agent's, for its own end; only the child's own output is written.
    fflush(nullptr);
    _exit(failed ? -1 : 0);
}

void cut_line_end(char* line) {
    line[strcspn(line, "\n")] = '\0';
}

void replace_by_output(char* text, int size) {
    CommandOutput output(text);
    if (output.started() && output.read_line(text, size)) {
        cut_line_end(text);
    }
}

int execute_system_call(const char* command, char* out, int out_size, int strip_newline) {
    char line[512] = {};
    CommandOutput output(command);
    if (!output.started()) {
        LOG_TRACE("Execute %s failed\n", command);
        return -1;
    }
    if (!output.read_line(line, sizeof line)) {
        LOG_TRACE("Read data from %s failed\n", command);
        return -1;
    }
    output.close();

    // The length counts the removed character too, so that its NUL is copied and ends the text.
    const int length = static_cast<int>(strlen(line));
    if (strip_newline != 0 && length > 0) {
        line[length - 1] = '\0';
    }
    int copied = length;
    if (length > out_size) {
        LOG_TRACE("Warning! Result will be cut due to not enough space\n");
        copied = out_size > 0 ? out_size - 1 : 0;
    }
    if (out != nullptr) {
        memcpy(out, line, static_cast<size_t>(copied));
    }
    return 0;
}

} // namespace orlo
