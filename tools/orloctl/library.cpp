// SPDX-License-Identifier: MIT
#include "library.h"

#include <cstdlib>
#include <dlfcn.h>
#include <unistd.h>

#include "command_line.h"
#include "log_capture.h"

namespace orloctl {

namespace {

constexpr const char* library_name = "liborlovendor.so";
constexpr const char* access_point_mark = "/etc/config/orloagent";

std::string beside_executable() {
    char path[4096];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
    if (length <= 0) {
        return "";
    }
    const std::string executable(path, static_cast<size_t>(length));
    return executable.substr(0, executable.rfind('/') + 1) + library_name;
}

std::string library_path(const CommandLine& line) {
    if (!line.vendor_library.empty()) {
        return line.vendor_library;
    }
    const char* named = getenv("ORLO_LIBRARY");
    if (named != nullptr && *named != '\0') {
        return named;
    }
    const std::string beside = beside_executable();
    return access(beside.c_str(), F_OK) == 0 ? beside : library_name;
}

} // namespace

Library::Library(const std::string& path)
    : path_(path), handle_(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (handle_ == nullptr) {
        throw Refusal("cannot load the vendor library: " + std::string(dlerror()) +
                      "; name another with --library PATH");
    }
    ops_ = &symbol<const vendor_ops>("Vendor_Ops");
    void* next = dlsym(handle_, "orlo_agent_debug_log");
    forward_log_to(reinterpret_cast<LogFunction>(next));
}

void* Library::required(const char* name) const {
    void* address = dlsym(handle_, name);
    if (address == nullptr) {
        throw Refusal(path_ + " is not a vendor library of this access point: it has no " + name +
                      "; name another with --library PATH");
    }
    return address;
}

bool is_access_point() {
    return access(access_point_mark, F_OK) == 0;
}

Library open_library(const CommandLine& line) {
    if (!line.here && !is_access_point()) {
        throw Refusal("no access point here (" + std::string(access_point_mark) +
                      " is missing): use './run shell' for the virtual one, or --here to insist");
    }
    return load_library(line);
}

Library load_library(const CommandLine& line) {
    if (line.verbose) {
        print_all_log_lines();
    }
    return Library(library_path(line));
}

} // namespace orloctl
