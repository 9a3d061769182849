// SPDX-License-Identifier: MIT
// Looking at sixteen bytes at a time, which is what makes reading fast. Texts that are scanned are
// followed by kPadding NUL bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace uci {

/// All operators work on the single bytes; comparisons give 0 or 0xff for each.
using Bytes = uint8_t __attribute__((vector_size(16)));

constexpr size_t kScanStep = sizeof(Bytes);
constexpr size_t kPadding = 4 * kScanStep;

inline Bytes load_bytes(const void* memory) {
    Bytes bytes;
    memcpy(&bytes, memory, sizeof(bytes));
    return bytes;
}

/// That byte in every place.
inline Bytes repeat(uint8_t byte) {
    // Put together in a register: compilers take a detour through memory, which is slow.
    const uint64_t eight = uint64_t{0x0101010101010101} * byte;
    const uint64_t sixteen[] = {eight, eight};
    return load_bytes(sixteen);
}

/// A bit for each byte that a comparison holds for, the first byte's being the lowest one.
template <typename Comparison>
uint32_t bits_of(Comparison comparison) {
#ifdef __SSE2__
    __m128i bytes;
    memcpy(&bytes, &comparison, sizeof(bytes));
    return static_cast<uint32_t>(_mm_movemask_epi8(bytes));
#else
    uint8_t bytes[kScanStep];
    memcpy(bytes, &comparison, sizeof(bytes));
    uint32_t bits = 0;
    for (size_t i = 0; i < kScanStep; i++) {
        bits |= (bytes[i] & 1U) << i;
    }
    return bits;
#endif
}

/// The number of the lowest bit; there is one.
inline size_t lowest(uint64_t bits) {
    return static_cast<size_t>(__builtin_ctzll(bits));
}

template <typename Bits>
Bits without_lowest(Bits bits) {
    return bits & (bits - 1);
}

/// The letters, digits and '_'.
inline uint32_t names_in(const char* text) {
    const Bytes c = load_bytes(text);
    return bits_of(((c | 0x20) - 'a' < 26) | (c - '0' < 10) | (c == '_'));
}

/// The single quotes and control characters.
inline uint32_t stops_in(const char* text) {
    const Bytes c = load_bytes(text);
    return bits_of((c == '\'') | (c < ' '));
}

/// The same of 64 bytes.
inline uint64_t stops_in_64(const char* text) {
    uint64_t stops = 0;
    for (unsigned i = 0; i < 4; i++) {
        stops |= uint64_t{stops_in(text + i * kScanStep)} << i * kScanStep;
    }
    return stops;
}

/// Where a run of letters, digits and '_' ends.
inline char* skip_name(char* text) {
    for (;; text += kScanStep) {
        const uint32_t others = ~names_in(text) & 0xffff;
        if (others) {
            return text + lowest(others);
        }
    }
}

} // namespace uci
