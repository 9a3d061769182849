// The access point's address and mask on its LAN bridge.
#include "common/command.h"
#include "common/log.h"
#include "ops/operations.h"

#include <cstring>

using orlo::shown;

namespace {

// Runs the command that `text` holds and puts the first line of its output in its place. Without
// output the command itself stays there, which callers of this operation have come to expect.
void replace_by_output(char* text, int size) {
    orlo::CommandOutput output(text);
    if (output.started() && output.read_line(text, size)) {
        orlo::cut_line_end(text);
    }
}

} // namespace

char* api_get_interface(const char* key) {
    constexpr const char* bridge = "br-lan";
    char text[128];
    LOG_TRACE("Entering... key:%s\n", shown(key));
    if (key != nullptr && strcmp(key, "ip") == 0) {
        snprintf(text, sizeof text,
                 "ifconfig %s | grep 'inet addr:' | cut -d':' -f 2 | cut -d' ' -f 1", bridge);
        replace_by_output(text, sizeof text);
        LOG_TRACE("will return ip: %s\n", text);
    } else if (key != nullptr && strcmp(key, "mask") == 0) {
        snprintf(text, sizeof text,
                 "ifconfig %s | grep 'inet addr:' | cut -d':' -f4 | cut -d' ' -f 1", bridge);
        replace_by_output(text, sizeof text);
        LOG_TRACE("will return mask: %s\n", text);
    } else {
        LOG_TRACE("End... unknown key: %s\n", shown(key));
        return strdup("");
    }
    return strdup(text);
}
