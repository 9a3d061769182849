// SPDX-License-Identifier: MIT
// Locking: flock() locks on the files themselves, shared for reading, exclusive for changing.
//
// As files are replaced by renaming, a lock only counts when the path still leads to the locked
// file: whoever waited while the file was replaced begins again with the one that took its place.
// The number of links does not tell that: there may be others, and an overlay file system does not
// count the one that was replaced.
#pragma once

#include "arena.h"
#include "file.h"

#include <sys/file.h>
#include <sys/stat.h>

namespace uci {

/// A regular file, locked, with what was true of it then.
struct LockedFile {
    File file;
    struct stat info {};
};

/// Opens and locks the file that the path leads to, waiting for other holders of the lock.
/// @param flags  as for open()
/// @param lock   LOCK_SH or LOCK_EX
/// @return UCI_ERR_NOTFOUND when there is no such regular file, UCI_ERR_IO
[[nodiscard]] int open_locked(const char* path, int flags, mode_t mode, int lock, LockedFile& out);

struct Text {
    char* data = nullptr;
    size_t size = 0;
};

/// The whole contents, followed by kPadding NUL bytes.
/// @return UCI_ERR_IO, UCI_ERR_MEM (also when the file is beyond all reason)
[[nodiscard]] int read_text(const LockedFile& source, Arena& arena, Text& out);

/// Waits for the lock of an open file. False on failure.
[[nodiscard]] bool lock_file(const File& file, int lock);

} // namespace uci
