// SPDX-License-Identifier: MIT
// The save directory: per package a file of records (records.h), the changes that are staged.
//
// Loading applies the records to what the configuration file says. Saving appends records,
// committing empties the file when the configuration file holds them all, reverting replaces it by
// one with fewer records. A commit that is killed leaves marks behind (marks.h).
#pragma once

#include "buffer.h"
#include "edit.h"
#include "locked_file.h"
#include "model.h"

namespace uci {

/// What reading the staged changes brought.
struct Staged {
    size_t applied = 0;     // records that could be applied
    size_t readable = 0;    // size of the save directory's file without an unfinished last record
    bool line_open = false; // the last record has no line end
};

/// Reads the staged changes of a package from all directories of the context, applies them and
/// lists them in saved_delta.
/// @param config   identifies the configuration file that was read
/// @param staging  the file in the save directory when the caller has it locked, else nullptr
[[nodiscard]] int read_staged(uci_context* ctx, Package& package, const struct stat& config,
                              const LockedFile* staging, Staged& staged);

/// Opens and locks the package's file in the save directory for changing it.
/// @return UCI_ERR_NOTFOUND when there is none
[[nodiscard]] int open_staging(uci_context* ctx, const Package& package, LockedFile& out);

/// Appends the unsaved changes of a package; they are saved changes then. Creates what is missing.
[[nodiscard]] int append_unsaved(uci_context* ctx, Package& package);

/// Removes the records of a section or option (nullptr: of all) from the file.
[[nodiscard]] int drop_staged(uci_context* ctx, const Package& package, const char* section,
                              const char* option);

/// Appends the mark for a configuration file that is about to take its place, or changes nothing.
/// @param rest  out: the unfinished last record, in whose place the mark is
[[nodiscard]] bool mark_committed(const LockedFile& staging, const Staged& staged,
                                  const struct stat& config, Buffer& rest);

/// Takes the mark away again and puts the rest back.
void unmark(const LockedFile& staging, const Staged& staged, const Buffer& rest);

[[nodiscard]] bool empty_staging(const LockedFile& staging);

} // namespace uci
