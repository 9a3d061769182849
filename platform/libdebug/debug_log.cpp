// SPDX-License-Identifier: MIT
// Stand-in for the agent's logging library: lines go to standard error as
//
//     module level function:line message
//
// Lines up to level 1 are kept. ORLO_DEBUG=5:5,8:4 keeps module 5 up to level 5 and module 8 up to
// level 4. ORLO_FAKE_MODE=1 sets the agent's fake mode.
#include "orlo/debug.h"

#include <arpa/inet.h>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#define DEBUG_API __attribute__((visibility("default")))

namespace {

constexpr int default_level = 1;

// The level that the environment gives a module. Read at each line: a logged line costs a write
// anyway, and tests and shells switch levels while the process runs.
int kept_level(int module) {
    const char* rest = getenv("ORLO_DEBUG");
    int level = default_level;
    while (rest != nullptr && *rest != '\0') {
        int named = 0;
        int value = 0;
        if (sscanf(rest, "%d:%d", &named, &value) == 2 && named == module) {
            level = value;
        }
        rest = strchr(rest, ',');
        rest = rest == nullptr ? nullptr : rest + 1;
    }
    return level;
}

int hex_digit(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

__attribute__((constructor)) void read_fake_mode() {
    const char* mode = getenv("ORLO_FAKE_MODE");
    Fake_mode = mode != nullptr && strcmp(mode, "0") != 0 ? 1 : 0;
}

} // namespace

DEBUG_API int Fake_mode = 0;

DEBUG_API int is_debug_module_level_enabled(int module, int level) {
    return level <= kept_level(module) ? 1 : 0;
}

DEBUG_API void orlo_agent_debug_log(int module, int level, const char* function_name, int line,
                                    const char* format, ...) {
    if (is_debug_module_level_enabled(module, level) == 0) {
        return;
    }
    flockfile(stderr); // one line stays one line
    fprintf(stderr, "%d %d %s:%d ", module, level, function_name, line);
    va_list arguments;
    va_start(arguments, format);
    vfprintf(stderr, format, arguments);
    va_end(arguments);
    funlockfile(stderr);
}

DEBUG_API void print_file(const char* path) {
    FILE* file = path == nullptr ? nullptr : fopen(path, "re");
    if (file == nullptr) {
        return;
    }
    char part[512];
    size_t count = 0;
    while ((count = fread(part, 1, sizeof part, file)) > 0) {
        fwrite(part, 1, count, stderr);
    }
    fclose(file);
}

DEBUG_API int StringMacToHex(const char* text, unsigned char* mac) {
    unsigned char parsed[6] = {};
    memset(mac, 0, sizeof parsed);
    for (int i = 0; i < 6; i++) {
        const int high = text == nullptr ? -1 : hex_digit(text[0]);
        const int low = high < 0 ? -1 : hex_digit(text[1]);
        if (low < 0 || text[2] != (i < 5 ? ':' : '\0')) {
            return -1;
        }
        parsed[i] = static_cast<unsigned char>(high * 16 + low);
        text += 3;
    }
    memcpy(mac, parsed, sizeof parsed);
    return 0;
}
