// SPDX-License-Identifier: MIT
#include "library.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sstream>

#include <dlfcn.h>

namespace orlo_abi {

namespace {

// What a command prints. Its failure ends the program: without the tool there is nothing to
// compare.
std::string output_of(const std::string& command) {
    const auto close = [](FILE* pipe) { return pclose(pipe); };
    std::unique_ptr<FILE, decltype(close)> pipe(popen(command.c_str(), "r"), close);
    std::string output;
    char piece[4096];
    size_t length = 0;
    while (pipe && (length = fread(piece, 1, sizeof(piece), pipe.get())) > 0) {
        output.append(piece, length);
    }
    if (!pipe || pclose(pipe.release()) != 0) {
        fprintf(stderr, "cannot run: %s\n", command.c_str());
        exit(EXIT_FAILURE);
    }
    return output;
}

} // namespace

void* library() {
    static void* const handle = dlopen(ORLO_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        fprintf(stderr, "cannot load the library: %s\n", dlerror());
        exit(EXIT_FAILURE);
    }
    return handle;
}

const vendor_ops& table() {
    const void* const symbol = dlsym(library(), "Vendor_Ops");
    if (symbol == nullptr) {
        fprintf(stderr, "the library has no Vendor_Ops: %s\n", dlerror());
        exit(EXIT_FAILURE);
    }
    return *static_cast<const vendor_ops*>(symbol);
}

std::map<std::string, unsigned long> exported_symbols() {
    std::map<std::string, unsigned long> symbols;
    std::istringstream lines(output_of(ORLO_NM " -D -S --defined-only -P " ORLO_LIBRARY));
    std::string line;
    while (std::getline(lines, line)) {
        std::istringstream words(line);
        std::string name;
        std::string kind;
        unsigned long address = 0;
        unsigned long size = 0;
        words >> name >> kind >> std::hex >> address >> size;
        symbols[name] = size;
    }
    return symbols;
}

std::set<std::string> needed_libraries() {
    std::set<std::string> libraries;
    std::istringstream lines(output_of(ORLO_READELF " -d " ORLO_LIBRARY));
    std::string line;
    while (std::getline(lines, line)) {
        const size_t start = line.find('[');
        if (line.find("(NEEDED)") != std::string::npos && start != std::string::npos) {
            const std::string name = line.substr(start + 1);
            libraries.insert(name.substr(0, name.find(".so")));
        }
    }
    return libraries;
}

} // namespace orlo_abi
