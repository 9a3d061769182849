// SPDX-License-Identifier: MIT
// A temporary directory with the directories of a store in it, and contexts that use only these.
#pragma once

#include "uci.h"

#include <map>
#include <memory>
#include <string>
#include <sys/types.h>

struct ContextDeleter {
    void operator()(uci_context* ctx) const { uci_free_context(ctx); }
};
using ContextPtr = std::unique_ptr<uci_context, ContextDeleter>;

class Sandbox {
public:
    Sandbox();
    explicit Sandbox(const std::string& parent);
    Sandbox(const Sandbox&) = delete;
    Sandbox& operator=(const Sandbox&) = delete;
    ~Sandbox();

    std::string root;
    std::string config;       // root + "/etc/config", exists
    std::string staged;       // root + "/tmp/.uci", does not exist
    std::string override_dir; // root + "/var/run/uci", does not exist

    /// A context that neither reads nor writes anything outside the sandbox.
    [[nodiscard]] ContextPtr open() const;
};

void write_file(const std::string& path, const std::string& text, mode_t mode = 0644);
std::string read_file(const std::string& path);
bool exists(const std::string& path);
mode_t mode_of(const std::string& path);
dev_t device_of(const std::string& path);

/// Names and texts of all files of a directory, also hidden ones; empty when there is none.
std::map<std::string, std::string> files_of(const std::string& directory);

/// Look up, act, save: what every change of the store consists of. The first failure's code.
int change(uci_context* ctx, int (*act)(uci_context*, uci_ptr*), const std::string& what);

/// The same with a context of its own.
int change(const Sandbox& sandbox, int (*act)(uci_context*, uci_ptr*), const std::string& what);

int commit(const Sandbox& sandbox, const std::string& package);
int revert(const Sandbox& sandbox, const std::string& what);

/// Text of an option, "a|b" for a list, "(none)" without one.
std::string get(const Sandbox& sandbox, const std::string& what);
