// SPDX-License-Identifier: MIT
// Who a procedure speaks for. One procedure may do the work of two operations whose log lines
// differ: each brings its own lines, and a line tells by itself what it prints.
#pragma once

#include "common/log.h"

#include <cstdint>

namespace orlo {

// A line of an operation. Without a text it is one that the operation does not log.
struct Line {
    enum Prints { values, index, index_and_values };

    const char* text = nullptr;
    Prints prints = values;
};

// "vap_settings[%d].mfp:%d\n": the record's index, then the values.
constexpr Line indexed(const char* text) {
    return {text, Line::index_and_values};
}

struct Speaker {
    const char* operation;
    uint32_t index; // of the record within the operation's array

    template <class... Values>
    void say(const Line& line, Values... values) const {
        if (line.text == nullptr) {
            return;
        }
        switch (line.prints) {
        case Line::values:
            if constexpr (sizeof...(values) == 0) {
                LOG_TRACE_FOR(operation, "%s", line.text);
            } else {
                LOG_TRACE_FOR(operation, line.text, values...);
            }
            break;
        case Line::index:
            LOG_TRACE_FOR(operation, line.text, index);
            break;
        case Line::index_and_values:
            LOG_TRACE_FOR(operation, line.text, index, values...);
            break;
        }
    }
};

} // namespace orlo
