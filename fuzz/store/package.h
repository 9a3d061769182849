// SPDX-License-Identifier: MIT
// The package "p" of a store that lies in memory: its two files, and contexts that see only these.
#pragma once

#include "libuci/sandbox.h"

#include <cstdint>
#include <string>

namespace fuzz {

class Store {
public:
    // The one store of this process.
    static Store& instance();

    [[nodiscard]] ContextPtr open() const { return sandbox_.open(); }

    // The configuration file and the file of staged changes, byte for byte.
    void set_config(const std::string& bytes) const;
    void set_staged(const std::string& bytes) const;
    [[nodiscard]] std::string config() const;
    [[nodiscard]] std::string staged() const;

private:
    Store();
    Sandbox sandbox_;
};

// A context with the package loaded in it, or with the reason why it is not.
struct Loaded {
    Loaded();
    ContextPtr ctx;
    uci_package* package = nullptr;
    int code = 0;
};

inline std::string bytes_of(const uint8_t* data, size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

} // namespace fuzz
