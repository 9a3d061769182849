// SPDX-License-Identifier: MIT
// Open addressing with linear probing; removal closes the gap, so there are no tombstones.
#include "index.h"

#include <cstring>

namespace uci {

namespace {

const void* owner_of(const uci_element& element) {
    if (element.type == UCI_TYPE_SECTION) {
        return uci_to_section(&element)->package;
    }
    return uci_to_option(&element)->section;
}

template <typename Word>
uint64_t load(const char* text) {
    Word word = 0;
    memcpy(&word, text, sizeof(word));
    return word;
}

// Eight bytes at a step. The owner's address differs from run to run, which keeps colliding names
// from being prepared.
size_t hash(const void* owner, std::string_view name) {
    constexpr uint64_t kFactor = 0x9e3779b97f4a7c15;
    uint64_t h = reinterpret_cast<uintptr_t>(owner) ^ (static_cast<uint64_t>(name.size()) << 56);
    const char* text = name.data();
    size_t left = name.size();
    for (; left >= 8; left -= 8, text += 8) {
        h = (h ^ load<uint64_t>(text)) * kFactor;
        h ^= h >> 32;
    }
    uint64_t tail = 0;
    if (left & 4) {
        tail = load<uint32_t>(text);
        text += 4;
    }
    if (left & 2) {
        tail = tail << 16 | load<uint16_t>(text);
        text += 2;
    }
    if (left & 1) {
        tail = tail << 8 | load<uint8_t>(text);
    }
    h = (h ^ tail) * kFactor;
    return static_cast<size_t>(h ^ h >> 32);
}

size_t hash(const uci_element& element) {
    return hash(owner_of(element), element.name);
}

bool is_called(const uci_element& element, const void* owner, std::string_view name) {
    return owner_of(element) == owner && strcmp(element.name, name.data()) == 0;
}

} // namespace

bool Index::reserve(Arena& arena, size_t elements) {
    size_t size = 64;
    while (size / 4 * 3 < elements) {
        size *= 2;
    }
    const size_t bytes = size * sizeof(void*);
    auto** const slots = static_cast<uci_element**>(arena.allocate(bytes));
    if (!slots) {
        return false;
    }
    memset(slots, 0, bytes);
    uci_element* const* const old = slots_;
    const size_t old_size = old ? mask_ + 1 : 0;
    slots_ = slots;
    mask_ = size - 1;
    limit_ = size / 4 * 3;
    for (size_t i = 0; i < old_size; i++) {
        if (old[i]) {
            put(*old[i]);
        }
    }
    return true;
}

uci_element** Index::slot(const void* owner, std::string_view name) const {
    size_t i = hash(owner, name) & mask_;
    while (slots_[i] && !is_called(*slots_[i], owner, name)) {
        i = (i + 1) & mask_;
    }
    return &slots_[i];
}

uci_element* Index::find(const void* owner, std::string_view name) const {
    return slots_ ? *slot(owner, name) : nullptr;
}

void Index::put(uci_element& element) {
    size_t i = hash(element) & mask_;
    while (slots_[i]) {
        i = (i + 1) & mask_;
    }
    slots_[i] = &element;
}

void Index::insert(uci_element& element) {
    put(element);
    used_++;
}

void Index::erase(const uci_element& element) {
    size_t gap = hash(element) & mask_;
    while (slots_[gap] != &element) {
        gap = (gap + 1) & mask_;
    }
    // Whatever was pushed past the gap moves back, unless that would put it before its own place.
    for (size_t i = (gap + 1) & mask_; slots_[i]; i = (i + 1) & mask_) {
        const size_t home = hash(*slots_[i]) & mask_;
        if (((i - home) & mask_) >= ((i - gap) & mask_)) {
            slots_[gap] = slots_[i];
            gap = i;
        }
    }
    slots_[gap] = nullptr;
    used_--;
}

} // namespace uci
