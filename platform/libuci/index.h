// SPDX-License-Identifier: MIT
// Finds the sections of a package and the options of a section by name: one hash table per package
// for both, keyed by owner (package or section) and name. A package gets one when it is searched
// more than a few times (model.h).
//
// Open addressing with linear probing. Beside every place stands a byte of its element's hash, the
// tag, 0 where the place is free: sixteen places are looked at in one step, and elements that are
// not meant are hardly ever touched. Removal closes the gap, so there are no tombstones.
#pragma once

#include "arena.h"
#include "scan.h"
#include "uci.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace uci {

/// Of a name, which need not end with a NUL byte. The seed keeps colliding names from being
/// prepared.
uint64_t hash(uintptr_t seed, std::string_view name);

class Index {
public:
    /// Makes room for that many elements and a few more. False when out of memory.
    [[nodiscard]] bool reserve(Arena& arena, size_t elements);

    /// There is a table: all elements must be in it.
    [[nodiscard]] bool in_use() const { return size_ > 0; }

    /// Makes sure that the next element can be put in. False when out of memory.
    [[nodiscard]] bool make_room(Arena& arena) {
        return used_ < limit_ || reserve(arena, 2 * used_);
    }

    /// The element of that owner and name, the earliest inserted one if there are several.
    [[nodiscard]] uci_element* find(const void* owner, std::string_view name) const;

    /// Call make_room first.
    void insert(uci_element& element);

    /// Call before the element's name changes.
    void erase(const uci_element& element);

private:
    [[nodiscard]] size_t home(uint64_t hash) const;
    [[nodiscard]] size_t wrap(size_t place) const { return place < size_ ? place : place - size_; }
    [[nodiscard]] size_t distance(size_t from, size_t to) const { return wrap(to + size_ - from); }
    void put(uci_element& element);
    void set_tag(size_t place, uint8_t tag);

    uci_element** elements_ = nullptr;
    uint8_t* tags_ = nullptr; // the first kScanStep ones are there again behind the last one
    size_t size_ = 0;         // number of places
    size_t used_ = 0;         // always below the number of places, so that every search ends
    size_t limit_ = 0;        // elements that the table may hold before it has to grow
};

} // namespace uci
