// SPDX-License-Identifier: MIT
// What programs share that define functions which the library calls, in order to watch it.
#pragma once

#include <arpa/inet.h>
#include <cstring>
#include <dlfcn.h>
#include <netinet/in.h>
#include <string>
#include <sys/socket.h>
#include <uci.h>

namespace orlo::device {

/// The function that would have been called if this program did not define one of that name.
template <class Function>
Function* real(const char* name, Function* /*like*/) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

/// The object that code or data lies in; NULL when it lies in none.
inline const void* object_of(const void* address) {
    Dl_info info;
    return dladdr(address, &info) != 0 ? info.dli_fbase : nullptr;
}

/// "wireless.wifi0.channel": what a lookup in the store has found.
inline std::string path_of(const uci_ptr& found) {
    std::string path = found.package == nullptr ? "" : found.package;
    for (const char* part : {found.section, found.option}) {
        path += part == nullptr ? "" : std::string(".") + part;
    }
    return path;
}

/// "127.0.0.1:36000"
inline std::string text_of(const sockaddr* address, socklen_t size) {
    sockaddr_in ipv4 = {};
    memcpy(&ipv4, address, size < sizeof ipv4 ? size : sizeof ipv4);
    return std::string(inet_ntoa(ipv4.sin_addr)) + ":" + std::to_string(ntohs(ipv4.sin_port));
}

} // namespace orlo::device

// Looked up once: some are called line by line.
#define REAL(function)                                                                             \
    ([] {                                                                                          \
        static auto* const next = orlo::device::real(#function, &::function);                      \
        return next;                                                                               \
    }())
