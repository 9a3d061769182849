// SPDX-License-Identifier: MIT
#include "index.h"

#include <cstring>

namespace uci {

namespace {

template <typename Word>
uint64_t load(const char* text) {
    Word word = 0;
    memcpy(&word, text, sizeof(word));
    return word;
}

/// The last bytes of a text, of which all but the last eight have been seen.
uint64_t load_tail(std::string_view text) {
    const size_t size = text.size();
    const char* const end = text.data() + size;
    if (size >= 8) {
        return load<uint64_t>(end - 8);
    }
    if (size >= 4) {
        return load<uint32_t>(text.data()) << 32 | load<uint32_t>(end - 4);
    }
    return size == 0 ? 0
                     : load<uint8_t>(text.data()) << 16 |
                           load<uint8_t>(text.data() + size / 2) << 8 | load<uint8_t>(end - 1);
}

const void* owner_of(const uci_element& element) {
    if (element.type == UCI_TYPE_SECTION) {
        return uci_to_section(&element)->package;
    }
    return uci_to_option(&element)->section;
}

uint64_t hash_for(const void* owner, std::string_view name) {
    return hash(reinterpret_cast<uintptr_t>(owner), name);
}

uint64_t hash_of(const uci_element& element) {
    return hash_for(owner_of(element), element.name);
}

uint8_t tag_of(uint64_t hash) {
    return static_cast<uint8_t>(hash | 1);
}

bool is_called(const uci_element& element, const void* owner, std::string_view name) {
    return owner_of(element) == owner && strncmp(element.name, name.data(), name.size()) == 0 &&
           element.name[name.size()] == '\0';
}

} // namespace

uint64_t hash(uintptr_t seed, std::string_view name) {
    constexpr uint64_t kFactor = 0x9e3779b97f4a7c15;
    uint64_t h = seed ^ uint64_t { name.size() } << 56;
    for (size_t i = 0; i + 8 < name.size(); i += 8) {
        h = (h ^ load<uint64_t>(name.data() + i)) * kFactor;
        h ^= h >> 32;
    }
    h = (h ^ load_tail(name)) * kFactor;
    return h ^ h >> 32;
}

// Which places a hash leads to depends on its upper half, the tag on the lowest byte.
size_t Index::home(uint64_t hash) const {
    return static_cast<size_t>((hash >> 32) * size_ >> 32);
}

bool Index::reserve(Arena& arena, size_t elements) {
    const size_t limit = elements + elements / 32 + 16;
    const size_t size = limit + limit / 7 + 1;
    const size_t tags = size + kScanStep;
    auto* const memory = static_cast<char*>(arena.allocate(size * sizeof(void*) + tags));
    if (!memory) {
        return false;
    }
    const Index old = *this;
    elements_ = reinterpret_cast<uci_element**>(memory);
    tags_ = reinterpret_cast<uint8_t*>(elements_ + size);
    memset(tags_, 0, tags);
    size_ = size;
    limit_ = limit;
    for (size_t place = 0; place < old.size_; place++) {
        if (old.tags_[place]) {
            put(*old.elements_[place]);
        }
    }
    return true;
}

uci_element* Index::find(const void* owner, std::string_view name) const {
    const uint64_t h = hash_for(owner, name);
    const Bytes wanted = repeat(tag_of(h));
    for (size_t start = home(h);; start = wrap(start + kScanStep)) {
        const Bytes tags = load_bytes(tags_ + start);
        const uint32_t free = bits_of(tags == 0);
        uint32_t candidates = bits_of(tags == wanted) & ~(~0U << lowest(free | 1U << kScanStep));
        for (; candidates; candidates = without_lowest(candidates)) {
            uci_element& element = *elements_[wrap(start + lowest(candidates))];
            if (is_called(element, owner, name)) {
                return &element;
            }
        }
        if (free) {
            return nullptr;
        }
    }
}

void Index::set_tag(size_t place, uint8_t tag) {
    tags_[place] = tag;
    if (place < kScanStep) {
        tags_[size_ + place] = tag;
    }
}

void Index::put(uci_element& element) {
    const uint64_t h = hash_of(element);
    size_t place = home(h);
    while (tags_[place]) {
        place = wrap(place + 1);
    }
    elements_[place] = &element;
    set_tag(place, tag_of(h));
}

void Index::insert(uci_element& element) {
    put(element);
    used_++;
}

void Index::erase(const uci_element& element) {
    size_t gap = home(hash_of(element));
    while (elements_[gap] != &element) {
        gap = wrap(gap + 1);
    }
    // Whatever was pushed past the gap moves back, unless that would put it before its own place.
    for (size_t i = wrap(gap + 1); tags_[i]; i = wrap(i + 1)) {
        if (distance(home(hash_of(*elements_[i])), i) >= distance(gap, i)) {
            elements_[gap] = elements_[i];
            set_tag(gap, tags_[i]);
            gap = i;
        }
    }
    set_tag(gap, 0);
    used_--;
}

} // namespace uci
