// SPDX-License-Identifier: MIT
// Saving, committing and reverting: what moves changes from a context to the save directory, from
// there to the configuration file, or to nowhere.
//
// Locks are taken in the order configuration file, save directory. A commit holds both from reading
// to the end, so that nothing saved meanwhile by others can get lost.
#include "list.h"
#include "load.h"
#include "lookup.h"
#include "replacement.h"
#include "staging.h"
#include "writer.h"

#include <cstring>
#include <fcntl.h>

namespace uci {

namespace {

/// The new file under its temporary name, complete and on the disk.
bool prepare(Replacement& fresh, const Package& package, mode_t mode, std::string_view text) {
    const char* const slash = strrchr(package.path, '/');
    const char* const name = slash ? slash + 1 : package.path;
    const std::string_view directory =
        slash ? std::string_view(package.path, static_cast<size_t>(slash - package.path)) : ".";
    return fresh.create(directory, name) && fresh.write(text, mode & 07777);
}

/// Writes a package to its configuration file, all or nothing.
/// @param config   the present file, locked exclusively
/// @param staging  the staged changes that the package contains: emptied. Not open: there are none.
/// @return UCI_ERR_IO, UCI_ERR_MEM; both files are as before then.
int replace_config(const Package& package, const LockedFile& config, const LockedFile& staging,
                   const Staged& staged) {
    Buffer text;
    write_package(text, package);
    if (!text.ok()) {
        return UCI_ERR_MEM;
    }
    // Both locks are kept until the end; so is that of the new file, which readers would otherwise
    // find together with records that it contains already.
    Replacement fresh;
    struct stat info {};
    if (!prepare(fresh, package, config.info.st_mode, text.text()) ||
        fstat(fresh.file().fd(), &info) != 0) {
        return UCI_ERR_IO;
    }
    const bool has_staging = staging.file.is_open();
    Buffer rest;
    if (has_staging && !mark_committed(staging, staged, info, rest)) {
        return UCI_ERR_IO;
    }
    if (!fresh.publish(package.path)) {
        if (has_staging) {
            unmark(staging, staged, rest);
        }
        return UCI_ERR_IO;
    }
    // The records may only go when the new file is there for good, even if the power fails.
    return fresh.sync_name() && (!has_staging || empty_staging(staging)) ? UCI_OK : UCI_ERR_IO;
}

/// A package that was loaded by absolute path has no staging: it is written at once.
int write_at_once(Package& package) {
    LockedFile config;
    if (open_locked(package.path, O_RDWR | O_CREAT, UCI_FILEMODE, LOCK_EX, config) != UCI_OK) {
        return UCI_ERR_IO;
    }
    const int code = replace_config(package, config, LockedFile{}, Staged{});
    if (code == UCI_OK) {
        list_init(package.delta);
    }
    return code;
}

int save(uci_context* ctx, Package& package) {
    if (package.has_delta || uci_list_empty(&package.delta)) {
        return append_unsaved(ctx, package);
    }
    return write_at_once(package);
}

Source source_of(const Package& package) {
    return {package.e.name, package.path, package.uses_conf2, package.has_delta};
}

int commit(uci_context* ctx, uci_package*& public_package, bool overwrite) {
    Package& package = own(public_package);
    LockedFile config;
    if (open_locked(package.path, O_RDWR | O_CREAT, UCI_FILEMODE, LOCK_EX, config) != UCI_OK) {
        return UCI_ERR_IO;
    }
    int code = append_unsaved(ctx, package);
    LockedFile staging;
    if (code == UCI_OK) {
        code = open_staging(ctx, package, staging);
    }
    if (code != UCI_OK && code != UCI_ERR_NOTFOUND) {
        return code;
    }
    if (overwrite) {
        const Staged all = {0, static_cast<size_t>(staging.info.st_size), true};
        return replace_config(package, config, staging, all);
    }
    // Someone else may have changed the file since it was loaded: apply the changes to what it is.
    Staged staged;
    Package* fresh = nullptr;
    code = build_package(ctx, source_of(package), config, &staging, staged, fresh);
    if (code != UCI_OK) {
        return code;
    }
    if (staged.applied > 0) {
        code = replace_config(*fresh, config, staging, staged);
    }
    if (code != UCI_OK) {
        destroy_package(fresh);
        return code;
    }
    install_package(ctx, *fresh, &package);
    public_package = fresh;
    return UCI_OK;
}

int revert(uci_context* ctx, uci_ptr& ptr) {
    Package& package = own(ptr.p);
    if (!package.has_delta) {
        return UCI_ERR_INVAL;
    }
    int code = append_unsaved(ctx, package);
    if (code == UCI_OK) {
        code = drop_staged(ctx, package, ptr.section, ptr.option);
    }
    Package* fresh = nullptr;
    if (code == UCI_OK) {
        code = load_package(ctx, package.e.name, fresh);
    }
    if (code != UCI_OK) {
        return code;
    }
    install_package(ctx, *fresh, &package);
    ptr.p = fresh;
    ptr.s = nullptr;
    ptr.o = nullptr;
    ptr.last = nullptr;
    return UCI_OK;
}

} // namespace

} // namespace uci

int uci_save(uci_context* ctx, uci_package* p) {
    if (!ctx) {
        return UCI_ERR_INVAL;
    }
    return uci::finish(ctx, p ? uci::save(ctx, uci::own(p)) : UCI_ERR_INVAL);
}

int uci_commit(uci_context* ctx, uci_package** p, bool overwrite) {
    if (!ctx) {
        return UCI_ERR_INVAL;
    }
    if (!p || !*p) {
        return uci::finish(ctx, UCI_ERR_INVAL);
    }
    if (!(*p)->has_delta) {
        return uci_save(ctx, *p);
    }
    return uci::finish(ctx, uci::commit(ctx, *p, overwrite));
}

int uci_revert(uci_context* ctx, uci_ptr* ptr) {
    if (!ctx) {
        return UCI_ERR_INVAL;
    }
    const int code = uci::look_up_once(ctx, ptr);
    return uci::finish(ctx, code == UCI_OK ? uci::revert(ctx, *ptr) : code);
}
