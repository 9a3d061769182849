// SPDX-License-Identifier: MIT
#include "elf_file.h"

#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>

ElfFile::ElfFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    bytes_.assign(std::istreambuf_iterator<char>(file), {});
    if (bytes_.size() < sizeof(Elf64_Ehdr) || bytes_.compare(0, SELFMAG, ELFMAG) != 0) {
        throw std::runtime_error(path + " is no ELF file");
    }
}

template <class T>
const T* ElfFile::at(size_t offset, size_t count) const {
    if (offset > bytes_.size() || count > (bytes_.size() - offset) / sizeof(T)) {
        throw std::runtime_error("the file ends too early");
    }
    return reinterpret_cast<const T*>(bytes_.data() + offset);
}

std::vector<Elf64_Phdr> ElfFile::segments() const {
    const auto* const header = at<Elf64_Ehdr>(0);
    const auto* const first = at<Elf64_Phdr>(header->e_phoff, header->e_phnum);
    return {first, first + header->e_phnum};
}

const Elf64_Phdr* ElfFile::segment(Elf64_Word type) const {
    const auto* const header = at<Elf64_Ehdr>(0);
    const auto* const first = at<Elf64_Phdr>(header->e_phoff, header->e_phnum);
    for (size_t i = 0; i < header->e_phnum; i++) {
        if (first[i].p_type == type) {
            return first + i;
        }
    }
    return nullptr;
}

Elf64_Xword ElfFile::dynamic(Elf64_Sxword tag) const {
    const Elf64_Phdr* const place = segment(PT_DYNAMIC);
    if (place == nullptr) {
        return 0;
    }
    const size_t count = place->p_filesz / sizeof(Elf64_Dyn);
    const auto* const entries = at<Elf64_Dyn>(place->p_offset, count);
    for (size_t i = 0; i < count; i++) {
        if (entries[i].d_tag == tag) {
            return entries[i].d_un.d_val;
        }
    }
    return 0;
}

std::set<std::string> ElfFile::imports() const {
    std::set<std::string> names;
    const auto* const header = at<Elf64_Ehdr>(0);
    const auto* const sections = at<Elf64_Shdr>(header->e_shoff, header->e_shnum);
    for (size_t i = 0; i < header->e_shnum; i++) {
        if (sections[i].sh_type != SHT_DYNSYM) {
            continue;
        }
        const size_t count = sections[i].sh_size / sizeof(Elf64_Sym);
        const auto* const symbols = at<Elf64_Sym>(sections[i].sh_offset, count);
        const Elf64_Shdr& strings = sections[sections[i].sh_link];
        const char* const text = at<char>(strings.sh_offset, strings.sh_size);
        for (size_t k = 0; k < count; k++) {
            if (symbols[k].st_shndx == SHN_UNDEF && symbols[k].st_name < strings.sh_size) {
                names.insert(text + symbols[k].st_name);
            }
        }
    }
    return names;
}
