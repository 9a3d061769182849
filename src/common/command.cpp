#include "common/command.h"

#include "common/log.h"

#include <cstring>

namespace orlo {

void cut_line_end(char* line) {
    line[strcspn(line, "\n")] = '\0';
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
