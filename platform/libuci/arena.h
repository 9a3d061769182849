// SPDX-License-Identifier: MIT
// Memory that is released as a whole: a package, its text and everything made of it come from a
// few large blocks instead of thousands of small ones. Texts that were replaced or removed stay
// until the package goes.
#pragma once

#include <cstddef>
#include <new>
#include <string_view>

namespace uci {

class Arena {
public:
    Arena() = default;
    Arena(const Arena&) = delete;
    Arena& operator=(const Arena&) = delete;
    ~Arena();

    /// Room for that many bytes in one block. False when out of memory.
    [[nodiscard]] bool reserve(size_t bytes);

    /// Uninitialised memory for any type, nullptr when there is none.
    void* allocate(size_t bytes) {
        const size_t size = (bytes + kAlignment - 1) & ~(kAlignment - 1);
        if (size < bytes) {
            return nullptr;
        }
        if (size > static_cast<size_t>(end_ - next_)) {
            return allocate_beyond(size);
        }
        void* const memory = next_;
        next_ += size;
        return memory;
    }

    /// A zeroed T.
    template <typename T>
    T* make() {
        void* const memory = allocate(sizeof(T));
        return memory ? new (memory) T{} : nullptr;
    }

    /// A copy of a text, ended by NUL.
    char* copy(std::string_view text, size_t nuls = 1);

private:
    static constexpr size_t kAlignment = 8;
    static constexpr size_t kBlockSize = 4096;

    /// The beginning of a block; what follows it has to be aligned, too.
    struct alignas(kAlignment) Block {
        Block* next;
    };

public:
    /// A point to go back to when what was allocated since turned out not to be needed.
    struct Mark {
        const Block* block;
        char* next;
    };
    [[nodiscard]] Mark mark() const { return {blocks_, next_}; }
    void rewind(const Mark& mark) { next_ = mark.block == blocks_ ? mark.next : next_; }

private:
    void* allocate_beyond(size_t size);
    bool grow(size_t bytes);
    char* add_block(size_t bytes);

    Block* blocks_ = nullptr;
    char* next_ = nullptr;
    char* end_ = nullptr;
};

} // namespace uci
