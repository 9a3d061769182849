// SPDX-License-Identifier: MIT
// Files of the store: paths, whole-file reading and writing, locks, and replacing a file at once.
//
// Locks are flock() locks on the files themselves. As files are replaced by renaming, a lock only
// counts when the path still leads to the locked file; open_locked sees to that.
#pragma once

#include "arena.h"

#include <climits>
#include <cstddef>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>

namespace uci {

/// A path put together from pieces; too long a path is an error when it is used.
class Path {
public:
    Path() = default;
    Path(std::string_view directory, std::string_view name) { *this << directory << "/" << name; }

    Path& operator<<(std::string_view piece);

    /// Never opens anything when the path was too long: it is empty then.
    [[nodiscard]] const char* c_str() const { return text_; }
    char* data() { return text_; }

private:
    size_t size_ = 0;
    char text_[PATH_MAX] = "";
};

/// An open file descriptor.
class File {
public:
    File() = default;
    explicit File(int fd) : fd_(fd) {}
    File(File&& other) noexcept : fd_(other.release()) {}
    File& operator=(File&& other) noexcept;
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() { close(); }

    [[nodiscard]] bool is_open() const { return fd_ >= 0; }
    [[nodiscard]] int fd() const { return fd_; }
    void close();

private:
    int release();

    int fd_ = -1;
};

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

/// The whole contents, followed by a NUL byte.
/// @return UCI_ERR_IO, UCI_ERR_MEM (also when the file is beyond all reason)
[[nodiscard]] int read_text(const LockedFile& source, Arena& arena, Text& out);

/// Writes everything at the file's position. False on any failure, errno tells which.
[[nodiscard]] bool write_all(const File& file, std::string_view text);

/// A locked temporary file that takes the place of another one, or vanishes.
class Replacement {
public:
    Replacement() = default;
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;
    ~Replacement();

    /// Creates ".NAME.uci-XXXXXX" in a directory.
    [[nodiscard]] bool create(std::string_view directory, std::string_view name);

    /// Writes the contents, gives the file exactly that mode and brings both to the disk.
    [[nodiscard]] bool write(std::string_view text, mode_t mode);

    /// Renames it over a file; symbolic links to that file stay.
    [[nodiscard]] bool publish(const char* path);

    /// Brings the new name to the disk, as far as the file system can do that.
    [[nodiscard]] bool sync_name();

    [[nodiscard]] const File& file() const { return file_; }

private:
    Path path_;
    char resolved_[PATH_MAX] = ""; // the file that was replaced
    File file_;
    bool temporary_ = false; // the file exists under its temporary name
};

} // namespace uci
