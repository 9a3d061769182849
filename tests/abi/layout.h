// SPDX-License-Identifier: MIT
/*
 * Compares the records with layout.def while compiling. Included by a C and by a C++ file: both
 * must see the same layout.
 */
#ifndef ORLO_TESTS_ABI_LAYOUT_H
#define ORLO_TESTS_ABI_LAYOUT_H

#include <stddef.h>

#include "orlo/records.h"

#ifdef __cplusplus
#define ORLO_ASSERT static_assert
#define ORLO_ALIGNMENT(type) alignof(type)
#else
#define ORLO_ASSERT _Static_assert
#define ORLO_ALIGNMENT(type) _Alignof(type)
#endif

#if UINTPTR_MAX > UINT32_MAX

#define ORLO_RECORD(name, size, alignment, size_ilp32, size_ilp32_align4)                          \
    ORLO_ASSERT(sizeof(struct name) == (size), #name " has another size");                         \
    ORLO_ASSERT(ORLO_ALIGNMENT(struct name) == (alignment), #name " is aligned otherwise");
#define ORLO_FIELD(name, field, offset, offset_ilp32)                                              \
    ORLO_ASSERT(offsetof(struct name, field) == (offset), #name "." #field " lies elsewhere");

#else

struct orlo_member_of_64_bits {
    char before;
    uint64_t member;
};

#define ORLO_RECORD(name, size, alignment, size_ilp32, size_ilp32_align4)                          \
    ORLO_ASSERT(sizeof(struct name) == (offsetof(struct orlo_member_of_64_bits, member) == 8       \
                                            ? (size_ilp32)                                         \
                                            : (size_ilp32_align4)),                                \
                #name " has another size");
#define ORLO_FIELD(name, field, offset, ilp32)                                                     \
    ORLO_ASSERT(offsetof(struct name, field) == (ilp32), #name "." #field " lies elsewhere");

#endif

#include "layout.def"

#endif
