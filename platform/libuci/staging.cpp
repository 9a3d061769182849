// SPDX-License-Identifier: MIT
#include "staging.h"

#include "list.h"
#include "marks.h"
#include "records.h"
#include "replacement.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace uci {

namespace {

const EditStep kSteps[] = {
    edit_set,      // UCI_CMD_ADD
    edit_delete,   // UCI_CMD_REMOVE
    edit_set,      // UCI_CMD_CHANGE
    edit_rename,   // UCI_CMD_RENAME
    edit_reorder,  // UCI_CMD_REORDER
    edit_add_list, // UCI_CMD_LIST_ADD
    edit_del_list, // UCI_CMD_LIST_DEL
};
static_assert(sizeof(kSteps) / sizeof(kSteps[0]) == __UCI_CMD_MAX);

int apply(Package& package, const Record& record) {
    uci_ptr at{};
    at.p = &package;
    at.section = record.to.section.data();
    at.option = record.to.option.data();
    at.value = record.to.value;
    at.s = find_section(package, record.to.section);
    at.o = at.s && at.option ? find_option(package, *at.s, record.to.option) : nullptr;
    Change change;
    const int code = kSteps[record.command](package, at, change);
    if (code == UCI_OK && record.command == UCI_CMD_ADD && at.s) {
        at.s->anonymous = true;
    }
    // An index that is no number removes nothing, but has always counted as applied.
    return record.command == UCI_CMD_REMOVE && code == UCI_ERR_MEM ? UCI_OK : code;
}

/// Keeps the record for those who want to know what is staged.
bool list_record(Package& package, const Record& record) {
    if (!(package.ctx->flags & UCI_FLAG_SAVED_DELTA)) {
        return true;
    }
    auto* const delta = package.arena.make<uci_delta>();
    if (!delta) {
        return false;
    }
    delta->e.type = UCI_TYPE_DELTA;
    delta->e.name = const_cast<char*>(record.to.option.data());
    delta->cmd = record.command;
    delta->section = const_cast<char*>(record.to.section.data());
    delta->value = record.to.value;
    list_append(package.saved_delta, delta->e.list);
    return true;
}

/// What has been found in a file of records.
struct Reading {
    bool committed = false; // the file ends with a mark, and everything in it is done
    Staged staged;
};

/// Applies the records that are still to be done.
int apply_records(Package& package, const Text& text, size_t done, Reading& reading) {
    RecordReader reader(text, done);
    Record record;
    reading.committed = done > 0;
    reading.staged.readable = text.size;
    for (;;) {
        const RecordKind kind = reader.next(record);
        if (kind == RecordKind::kEnd) {
            return UCI_OK;
        }
        if (reader.open_quotes()) {
            reading.staged.readable = reader.offset();
            reading.staged.line_open = false;
        }
        if (kind == RecordKind::kUnreadable || record.to.package != package.e.name) {
            continue;
        }
        reading.committed = false;
        const int code = apply(package, record);
        if (code == UCI_ERR_MEM || !list_record(package, record)) {
            return UCI_ERR_MEM;
        }
        reading.staged.applied += code == UCI_OK ? 1 : 0;
    }
}

int read_file(Package& package, const LockedFile& file, const struct stat& config,
              Reading& reading) {
    if (file.info.st_size == 0) {
        return UCI_OK;
    }
    Text text;
    size_t done = 0;
    int code = read_text(file, package.arena, text);
    if (code == UCI_OK) {
        reading.staged.line_open = text.size > 0 && text.data[text.size - 1] != '\n';
        code = find_done(text, config, done);
    }
    return code == UCI_OK ? apply_records(package, text, done, reading) : code;
}

int read_directory(Package& package, const char* directory, const struct stat& config,
                   Reading& reading, struct stat& as_read) {
    // Mostly there is nothing, which is found out without opening the file. Nobody commits
    // meanwhile: the configuration file is locked.
    const Path path(directory, package.e.name);
    struct stat info {};
    if (stat(path.c_str(), &info) != 0 || info.st_size == 0) {
        return UCI_OK;
    }
    LockedFile file;
    if (open_locked(path.c_str(), O_RDONLY, 0, LOCK_SH, file) != UCI_OK) {
        return UCI_OK; // whatever the reason: nothing is staged
    }
    as_read = file.info;
    return read_file(package, file, config, reading);
}

/// Completes a commit that was killed before it emptied the file. If that does not work, the mark
/// keeps its meaning.
void empty_committed(uci_context* ctx, const Package& package, const struct stat& as_read) {
    LockedFile staging;
    if (open_staging(ctx, package, staging) == UCI_OK && staging.info.st_ino == as_read.st_ino &&
        staging.info.st_size == as_read.st_size) {
        (void)empty_staging(staging);
    }
}

int read_savedir(uci_context* ctx, Package& package, const struct stat& config,
                 const LockedFile* staging, Staged& staged) {
    Reading reading;
    if (staging) {
        const int code =
            staging->file.is_open() ? read_file(package, *staging, config, reading) : UCI_OK;
        staged.readable = reading.staged.readable;
        staged.line_open = reading.staged.line_open;
        staged.applied += reading.staged.applied;
        return code;
    }
    struct stat as_read {};
    const int code = read_directory(package, ctx->savedir, config, reading, as_read);
    if (code == UCI_OK && reading.committed) {
        empty_committed(ctx, package, as_read);
    }
    return code;
}

mode_t mode_of(const char* path, mode_t otherwise) {
    struct stat info {};
    return stat(path, &info) == 0 ? info.st_mode & 07777 : otherwise;
}

/// True also when someone else was faster.
bool make_directory(const char* path, mode_t mode) {
    return mkdir(path, mode) == 0 || errno == EEXIST;
}

/// Opens the package's file in the save directory for appending; creates what is missing.
int open_for_append(uci_context* ctx, const Package& package, LockedFile& out) {
    constexpr int kFlags = O_WRONLY | O_APPEND;
    const Path path(ctx->savedir, package.e.name);
    int code = open_locked(path.c_str(), kFlags, 0, LOCK_EX, out);
    if (code != UCI_ERR_NOTFOUND) {
        return code;
    }
    const Path config(ctx->confdir, package.e.name);
    const mode_t mode = mode_of(config.c_str(), UCI_FILEMODE);
    code = open_locked(path.c_str(), kFlags | O_CREAT, mode, LOCK_EX, out);
    if (code == UCI_ERR_NOTFOUND &&
        make_directory(ctx->savedir, mode_of(ctx->confdir, UCI_DIRMODE))) {
        code = open_locked(path.c_str(), kFlags | O_CREAT, mode, LOCK_EX, out);
    }
    return code;
}

bool cut(const LockedFile& staging, size_t size) {
    return ftruncate(staging.file.fd(), static_cast<off_t>(size)) == 0;
}

/// All or nothing: a part of a record would damage what is appended later.
/// @param size  of the file as it is
bool append(const LockedFile& staging, size_t size, std::string_view text) {
    if (write_all(staging.file, text)) {
        return true;
    }
    (void)cut(staging, size); // what more could be done when the disk refuses even this?
    return false;
}

/// What the file holds from there on.
bool read_rest(const LockedFile& staging, size_t from, Buffer& rest) {
    Arena arena;
    Text text;
    if (read_text(staging, arena, text) != UCI_OK || text.size < from) {
        return false;
    }
    rest << std::string_view(text.data + from, text.size - from);
    return rest.ok();
}

bool concerns(const Record& record, const char* section, const char* option) {
    return !section || (record.to.section == section &&
                        (!option || (record.to.has_option() && record.to.option == option)));
}

/// The records that stay. False when the text contains something else, or memory ran out.
bool filter(const Text& text, const char* package, const char* section, const char* option,
            Buffer& kept) {
    RecordReader reader(text);
    Record record;
    RecordKind kind = reader.next(record);
    for (; kind == RecordKind::kRecord; kind = reader.next(record)) {
        if (!concerns(record, section, option)) {
            write_record(kept, record.command, is_mark(record) ? kMarkPackage : package,
                         record.to.section.data(), record.to.option.data(), record.to.value);
        }
    }
    return kind == RecordKind::kEnd && kept.ok();
}

/// Puts a new file in the place of the locked one: half a file must never be seen.
bool replace(const uci_context* ctx, const char* name, const Path& path, const LockedFile& old,
             std::string_view text) {
    Replacement fresh;
    if (!fresh.create(ctx->savedir, name)) {
        return false;
    }
    // The owner stays, as far as that is in our power.
    const bool chowned = fchown(fresh.file().fd(), old.info.st_uid, old.info.st_gid) == 0;
    (void)chowned;
    return fresh.write(text, old.info.st_mode & 07777) && fresh.publish(path.c_str());
}

} // namespace

int read_staged(uci_context* ctx, Package& package, const struct stat& config,
                const LockedFile* staging, Staged& staged) {
    bool saved_ones_read = false;
    for (const uci_element& directory : Elements(ctx->delta_path)) {
        int code = UCI_OK;
        if (strcmp(directory.name, ctx->savedir) == 0) {
            saved_ones_read = true;
            code = read_savedir(ctx, package, config, staging, staged);
        } else {
            Reading reading;
            struct stat as_read {};
            code = read_directory(package, directory.name, config, reading, as_read);
            staged.applied += reading.staged.applied;
        }
        if (code != UCI_OK) {
            return code;
        }
    }
    // A save directory that was put into the context by hand is on no path; what is saved must be
    // found all the same.
    return saved_ones_read ? UCI_OK : read_savedir(ctx, package, config, staging, staged);
}

int open_staging(uci_context* ctx, const Package& package, LockedFile& out) {
    const Path path(ctx->savedir, package.e.name);
    return open_locked(path.c_str(), O_RDWR | O_APPEND, 0, LOCK_EX, out);
}

int append_unsaved(uci_context* ctx, Package& package) {
    if (uci_list_empty(&package.delta)) {
        return UCI_OK;
    }
    Buffer lines;
    for (const uci_element& element : Elements(package.delta)) {
        const uci_delta& record = *uci_to_delta(&element);
        write_record(lines, record.cmd, package.e.name, record.section, record.e.name,
                     record.value);
    }
    if (!lines.ok()) {
        return UCI_ERR_MEM;
    }
    LockedFile staging;
    if (open_for_append(ctx, package, staging) != UCI_OK ||
        !append(staging, static_cast<size_t>(staging.info.st_size), lines.text())) {
        return UCI_ERR_IO;
    }
    list_init(package.delta);
    return UCI_OK;
}

int drop_staged(uci_context* ctx, const Package& package, const char* section, const char* option) {
    LockedFile staging;
    int code = open_staging(ctx, package, staging);
    if (code != UCI_OK || staging.info.st_size == 0) {
        return code == UCI_ERR_NOTFOUND ? UCI_OK : code;
    }
    Arena arena;
    Text text;
    code = read_text(staging, arena, text);
    char* const before = code == UCI_OK ? arena.copy({text.data, text.size}) : nullptr;
    if (!before) {
        return code != UCI_OK ? code : UCI_ERR_MEM;
    }
    Buffer kept;
    if (!filter(text, package.e.name, section, option, kept)) {
        return kept.ok() ? UCI_OK : UCI_ERR_MEM;
    }
    if (kept.text() == std::string_view(before, text.size)) {
        return UCI_OK;
    }
    const Path path(ctx->savedir, package.e.name);
    const bool done = kept.text().empty()
                          ? empty_staging(staging)
                          : replace(ctx, package.e.name, path, staging, kept.text());
    return done ? UCI_OK : UCI_ERR_IO;
}

bool mark_committed(const LockedFile& staging, const Staged& staged, const struct stat& config,
                    Buffer& rest) {
    // Within open quotes or on an open line the mark would not be a record of its own.
    Buffer line;
    line << (staged.line_open ? "\n" : "");
    write_mark(line, config);
    const bool whole = staged.readable == static_cast<size_t>(staging.info.st_size);
    if (!line.ok() || (!whole && !read_rest(staging, staged.readable, rest))) {
        return false;
    }
    const bool done = (whole || cut(staging, staged.readable)) &&
                      append(staging, staged.readable, line.text()) &&
                      fdatasync(staging.file.fd()) == 0;
    if (!done) {
        unmark(staging, staged, rest);
    }
    return done;
}

void unmark(const LockedFile& staging, const Staged& staged, const Buffer& rest) {
    // If this fails, a mark alone does no harm.
    (void)(cut(staging, staged.readable) && write_all(staging.file, rest.text()));
}

bool empty_staging(const LockedFile& staging) {
    return cut(staging, 0);
}

} // namespace uci
