// SPDX-License-Identifier: MIT
#include "arena.h"

#include <cstdlib>
#include <cstring>

namespace uci {

Arena::~Arena() {
    while (blocks_) {
        Block* const next = blocks_->next;
        free(blocks_);
        blocks_ = next;
    }
}

bool Arena::reserve(size_t bytes) {
    return bytes <= static_cast<size_t>(end_ - next_) || grow(bytes);
}

char* Arena::copy(std::string_view text) {
    auto* const memory = static_cast<char*>(allocate(text.size() + 1));
    if (memory) {
        memcpy(memory, text.data(), text.size());
        memory[text.size()] = '\0';
    }
    return memory;
}

// What is left of the current block is given up.
bool Arena::grow(size_t bytes) {
    const size_t wanted = bytes > kBlockSize ? bytes : kBlockSize;
    const size_t size = wanted + sizeof(Block);
    auto* const block = static_cast<Block*>(size < wanted ? nullptr : malloc(size));
    if (!block) {
        return false;
    }
    block->next = blocks_;
    blocks_ = block;
    next_ = reinterpret_cast<char*>(block + 1);
    end_ = next_ + wanted;
    return true;
}

} // namespace uci
