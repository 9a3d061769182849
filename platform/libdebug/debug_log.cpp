// Stand-in for the agent's logging library: lines go to standard error as
//
//     module level function:line message
//
// Lines up to level 1 are kept. ORLO_DEBUG=5:5,8:4 keeps module 5 up to level 5 and module 8 up to
// level 4. ORLO_FAKE_MODE=1 sets the agent's fake mode. Both are read when the library is loaded.
#include "orlo/debug.h"

#include <arpa/inet.h>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#define DEBUG_API __attribute__((visibility("default")))

namespace {

constexpr int default_level = 1;

// Of each module, the last level that is kept. Read once: most lines of an operation are dropped,
// and one that is costs a comparison.
constexpr int most_modules = 64;
int levels[most_modules];

void read_levels(const char* rest) {
    for (int& level : levels) {
        level = default_level;
    }
    while (rest != nullptr && *rest != '\0') {
        int module = 0;
        int level = 0;
        if (sscanf(rest, "%d:%d", &module, &level) == 2 && module >= 0 && module < most_modules) {
            levels[module] = level;
        }
        rest = strchr(rest, ',');
        rest = rest == nullptr ? nullptr : rest + 1;
    }
}

bool is_kept(int module, int level) {
    const auto index = static_cast<unsigned>(module);
    return level <= (index < most_modules ? levels[index] : default_level);
}

int hex_digit(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

__attribute__((constructor)) void read_environment() {
    read_levels(getenv("ORLO_DEBUG"));
    const char* mode = getenv("ORLO_FAKE_MODE");
    Fake_mode = mode != nullptr && strcmp(mode, "0") != 0 ? 1 : 0;
}

} // namespace

DEBUG_API int Fake_mode = 0;

DEBUG_API int is_debug_module_level_enabled(int module, int level) {
    return is_kept(module, level) ? 1 : 0;
}

DEBUG_API void orlo_agent_debug_log(int module, int level, const char* function_name, int line,
                                    const char* format, ...) {
    if (!is_kept(module, level)) {
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
