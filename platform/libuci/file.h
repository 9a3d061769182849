// SPDX-License-Identifier: MIT
// Paths and open files.
#pragma once

#include <climits>
#include <cstddef>
#include <string_view>

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

/// Writes everything at the file's position. False on any failure, errno tells which.
[[nodiscard]] bool write_all(const File& file, std::string_view text);

/// Brings everything written to the disk.
[[nodiscard]] bool sync_file(const File& file);

} // namespace uci
