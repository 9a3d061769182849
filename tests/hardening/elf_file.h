// SPDX-License-Identifier: MIT
// What an ELF file of 64 bits tells the loader.
#pragma once

#include <elf.h>

#include <cstddef>
#include <set>
#include <string>
#include <vector>

class ElfFile {
public:
    // Throws when the file cannot be read or is none.
    explicit ElfFile(const std::string& path);

    // 0 without such an entry.
    Elf64_Xword dynamic(Elf64_Sxword tag) const;

    // NULL without such a segment.
    const Elf64_Phdr* segment(Elf64_Word type) const;

    std::vector<Elf64_Phdr> segments() const;

    // The functions that it takes from libraries.
    std::set<std::string> imports() const;

private:
    template <class T>
    const T* at(size_t offset, size_t count = 1) const;

    std::string bytes_;
};
