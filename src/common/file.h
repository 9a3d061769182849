// SPDX-License-Identifier: MIT
// Files that only have to be there, or hold a short text.
#pragma once

#include <cstdio>
#include <unistd.h>

namespace orlo {

inline bool exists(const char* path) {
    return access(path, F_OK) == 0;
}

// Creates or truncates the file and writes the text; false when it cannot be opened.
inline bool write_file(const char* path, const char* text) {
    FILE* file = fopen(path, "w");
    if (file == nullptr) {
        return false;
    }
    fputs(text, file);
    fclose(file);
    return true;
}

} // namespace orlo
