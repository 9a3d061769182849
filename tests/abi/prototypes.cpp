// SPDX-License-Identifier: MIT
// The type of every operation. Nothing here runs: a changed prototype or a moved slot does not
// compile.
#include "orlo/vendor_ops.h"

#include <cstddef>
#include <type_traits>

#define ORLO_SLOT(slot, name, ...)                                                                 \
    static_assert(std::is_same_v<decltype(vendor_ops::name), std::add_pointer_t<__VA_ARGS__>>,     \
                  #name " takes or returns something else");                                       \
    static_assert(offsetof(vendor_ops, name) == (slot) * sizeof(void (*)()),                       \
                  #name " is in another slot");
#include "slots.def"

static_assert(ORLO_SLOTS == 132, "the table has 132 slots");
static_assert(sizeof(vendor_ops) == ORLO_SLOTS * sizeof(void (*)()), "the table is nothing else");
