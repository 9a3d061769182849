// SPDX-License-Identifier: MIT
#include "access_point.h"

#include "enter/virtual_ap.h"

#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <fstream>

namespace orlo::bench {

namespace {

// Opened before entering, because the chroot form hides the build folder.
void* library() {
    static void* const opened = dlopen(ORLO_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    if (opened == nullptr) {
        fprintf(stderr, "%s\n", dlerror());
        exit(1);
    }
    return opened;
}

} // namespace

void enter_access_point() {
    library();
    device::enter(device::entry_beside_program());
}

void* exported_symbol(const char* name) {
    return dlsym(library(), name);
}

const vendor_ops& operations() {
    static const auto* const table = static_cast<const vendor_ops*>(exported_symbol("Vendor_Ops"));
    return *table;
}

void write_file(const std::string& path, const std::string& text) {
    std::ofstream file(path, std::ios::trunc);
    file << text;
    if (!file.good()) {
        fprintf(stderr, "cannot write %s\n", path.c_str());
        exit(1);
    }
}

} // namespace orlo::bench
