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

void* Arena::allocate_beyond(size_t size) {
    if (size > kBlockSize / 2) {
        return add_block(size); // of its own; what is left of the current one is still good
    }
    return grow(size) ? allocate(size) : nullptr;
}

bool Arena::reserve(size_t bytes) {
    return bytes <= static_cast<size_t>(end_ - next_) || grow(bytes);
}

char* Arena::copy(std::string_view text, size_t nuls) {
    auto* const memory = static_cast<char*>(allocate(text.size() + nuls));
    if (memory) {
        memcpy(memory, text.data(), text.size());
        memset(memory + text.size(), '\0', nuls);
    }
    return memory;
}

// What is left of the current block is given up.
bool Arena::grow(size_t bytes) {
    const size_t size = bytes > kBlockSize ? bytes : kBlockSize;
    char* const memory = add_block(size);
    if (memory) {
        next_ = memory;
        end_ = memory + size;
    }
    return memory != nullptr;
}

char* Arena::add_block(size_t bytes) {
    const size_t size = bytes + sizeof(Block);
    auto* const block = static_cast<Block*>(size < bytes ? nullptr : malloc(size));
    if (!block) {
        return nullptr;
    }
    block->next = blocks_;
    blocks_ = block;
    return reinterpret_cast<char*>(block + 1);
}

} // namespace uci
