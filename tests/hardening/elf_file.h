// What an ELF file of this machine's kind tells the loader.
#pragma once

#include <link.h>

#include <cstddef>
#include <set>
#include <string>
#include <vector>

class ElfFile {
public:
    // Throws when the file cannot be read or is none.
    explicit ElfFile(const std::string& path);

    // 0 without such an entry.
    ElfW(Xword) dynamic(ElfW(Sxword) tag) const;

    // NULL without such a segment.
    const ElfW(Phdr) * segment(ElfW(Word) type) const;

    std::vector<ElfW(Phdr)> segments() const;

    // The functions that it takes from libraries.
    std::set<std::string> imports() const;

private:
    template <class T>
    const T* at(size_t offset, size_t count = 1) const;

    std::string bytes_;
};
