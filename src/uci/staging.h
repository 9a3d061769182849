// SPDX-License-Identifier: MIT
// The recurring sentence of every apply operation: stage an option; when that fails, log, discard
// everything staged and fail.
//
//     if (!stage("wireless", key, value)) {
//         return LOG_AND_DISCARD("error: Set wifi%d channel failed.\n", radio);
//     }
#pragma once

#include "common/log.h"
#include "common/text.h"
#include "orlo/exports.h"

namespace orlo {

inline bool stage(const char* package, const char* key, const char* value) {
    return uciSetValue(package, key, value) == 0;
}

inline bool stage_number(const char* package, const char* key, int value) {
    return stage(package, key, Text<16>("%d", value));
}

// Discards every staged change of every package; returns the operation's failure value.
inline int discard_staged() {
    uciRevertValue(nullptr, nullptr);
    return -1;
}

} // namespace orlo

#define LOG_AND_DISCARD_FOR(operation, ...)                                                        \
    (LOG_TRACE_FOR(operation, __VA_ARGS__), orlo::discard_staged())
#define LOG_AND_DISCARD(...) LOG_AND_DISCARD_FOR(__func__, __VA_ARGS__)
