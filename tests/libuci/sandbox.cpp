// SPDX-License-Identifier: MIT
#include "sandbox.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

// Commits wait for the disk, which a file system in memory makes quick.
Sandbox::Sandbox()
    : Sandbox(access("/dev/shm", W_OK | X_OK) == 0 ? fs::path("/dev/shm")
                                                   : fs::temp_directory_path()) {}

Sandbox::Sandbox(const std::string& parent) {
    umask(022);
    std::string name = parent + "/uci-test-XXXXXX";
    if (!mkdtemp(name.data())) {
        throw std::runtime_error("no temporary directory");
    }
    root = name;
    config = root + "/etc/config";
    staged = root + "/tmp/.uci";
    override_dir = root + "/var/run/uci";
    fs::create_directories(config);
    fs::create_directories(root + "/tmp");
    fs::create_directories(root + "/var/run");
}

Sandbox::~Sandbox() {
    std::error_code ignored;
    fs::permissions(config, fs::perms::owner_all, ignored);
    fs::permissions(staged, fs::perms::owner_all, ignored);
    fs::remove_all(root, ignored);
}

ContextPtr Sandbox::open() const {
    ContextPtr ctx(uci_alloc_context());
    if (!ctx || uci_set_confdir(ctx.get(), config.c_str()) != UCI_OK ||
        uci_set_savedir(ctx.get(), staged.c_str()) != UCI_OK ||
        uci_set_conf2dir(ctx.get(), override_dir.c_str()) != UCI_OK) {
        throw std::runtime_error("no context");
    }
    // Staged changes of this very machine are none of ours.
    uci_list* const machine = ctx->delta_path.next;
    machine->next->prev = machine->prev;
    machine->prev->next = machine->next;
    return ctx;
}

void write_file(const std::string& path, const std::string& text, mode_t mode) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
    if (chmod(path.c_str(), mode) != 0) {
        throw std::runtime_error("cannot write " + path);
    }
}

std::string read_file(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

bool exists(const std::string& path) {
    return fs::exists(fs::symlink_status(path));
}

mode_t mode_of(const std::string& path) {
    struct stat info {};
    return stat(path.c_str(), &info) == 0 ? info.st_mode & 07777U : 0;
}

dev_t device_of(const std::string& path) {
    struct stat info {};
    return stat(path.c_str(), &info) == 0 ? info.st_dev : 0;
}

std::map<std::string, std::string> files_of(const std::string& directory) {
    std::map<std::string, std::string> files;
    if (fs::is_directory(directory)) {
        for (const auto& entry : fs::directory_iterator(directory)) {
            if (!entry.is_directory()) {
                files[entry.path().filename()] = read_file(entry.path());
            }
        }
    }
    return files;
}

int change(uci_context* ctx, int (*act)(uci_context*, uci_ptr*), const std::string& what) {
    uci_ptr ptr{};
    std::string text = what;
    int code = uci_lookup_ptr(ctx, &ptr, text.data(), true);
    code = code == UCI_OK ? act(ctx, &ptr) : code;
    return code == UCI_OK ? uci_save(ctx, ptr.p) : code;
}

int change(const Sandbox& sandbox, int (*act)(uci_context*, uci_ptr*), const std::string& what) {
    return change(sandbox.open().get(), act, what);
}

int commit(const Sandbox& sandbox, const std::string& package) {
    const ContextPtr ctx = sandbox.open();
    uci_ptr ptr{};
    std::string text = package;
    const int code = uci_lookup_ptr(ctx.get(), &ptr, text.data(), true);
    return code == UCI_OK ? uci_commit(ctx.get(), &ptr.p, false) : code;
}

int revert(const Sandbox& sandbox, const std::string& what) {
    const ContextPtr ctx = sandbox.open();
    uci_ptr ptr{};
    std::string text = what;
    const int code = uci_lookup_ptr(ctx.get(), &ptr, text.data(), true);
    return code == UCI_OK ? uci_revert(ctx.get(), &ptr) : code;
}

std::string get(const Sandbox& sandbox, const std::string& what) {
    const ContextPtr ctx = sandbox.open();
    uci_ptr ptr{};
    std::string text = what;
    if (uci_lookup_ptr(ctx.get(), &ptr, text.data(), true) != UCI_OK || !ptr.o) {
        return "(none)";
    }
    if (ptr.o->type == UCI_TYPE_STRING) {
        return ptr.o->v.string;
    }
    std::string all;
    uci_element* item = nullptr;
    uci_foreach_element(&ptr.o->v.list, item) {
        all += (all.empty() ? "" : "|") + std::string(item->name);
    }
    return all;
}
