// SPDX-License-Identifier: MIT
// Finds the sections of a package and the options of a section by name: one hash table per package
// for both, keyed by owner (package or section) and name. Names are texts that end with a NUL byte.
#pragma once

#include "arena.h"
#include "uci.h"

#include <cstddef>
#include <string_view>

namespace uci {

class Index {
public:
    /// Makes room for about that many elements. False when out of memory.
    [[nodiscard]] bool reserve(Arena& arena, size_t elements);

    /// The element of that owner and name, the earliest inserted one if there are several.
    uci_element* find(const void* owner, std::string_view name) const;

    /// Makes sure that the next element can be put in. False when out of memory.
    [[nodiscard]] bool make_room(Arena& arena) {
        return used_ < limit_ || reserve(arena, limit_ ? 2 * limit_ : kSmallest);
    }

    /// Where the element of that owner and name is, or belongs: it holds nullptr then. Call
    /// make_room first.
    uci_element** slot(const void* owner, std::string_view name) const;

    /// Fills a slot that is empty.
    void fill(uci_element** slot, uci_element& element) {
        *slot = &element;
        used_++;
    }

    /// Puts in an element that has neighbours of the same name perhaps. Call make_room first.
    void insert(uci_element& element);

    /// Call before the element's name changes.
    void erase(const uci_element& element);

private:
    static constexpr size_t kSmallest = 48;

    void put(uci_element& element);

    uci_element** slots_ = nullptr;
    size_t mask_ = 0;  // number of slots less one; a power of two
    size_t used_ = 0;  // always below the number of slots, so that every search ends
    size_t limit_ = 0; // elements that the table may hold before it has to grow
};

} // namespace uci
