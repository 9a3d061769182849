// SPDX-License-Identifier: MIT
// Reading one option of the configuration store.
#pragma once

#include "orlo/exports.h"

#include <cstring>

namespace orlo {

// An option's text in a buffer of N bytes. A value that fills all N is cut there; one byte more
// keeps it terminated.
template <size_t N>
class OptionValue {
public:
    bool read(const char* package, const char* key) {
        return uciGetValue(package, key, text_, N) == 0;
    }

    bool is(const char* text) const { return strcmp(text_, text) == 0; }
    const char* c_str() const { return text_; }
    char* data() { return text_; }

private:
    char text_[N + 1] = {};
};

} // namespace orlo
