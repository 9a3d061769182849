// SPDX-License-Identifier: MIT
// The file work of entering: descriptors that close themselves, copying the template and removing
// an instance. Everything below a folder is reached through its descriptor, so that neither a link
// nor a moved folder can lead the work anywhere else.
#pragma once

#include <string>
#include <vector>

namespace orlo::device {

/// Throws std::system_error ("what: reason from errno") when a system call has failed.
void check(long result, const std::string& what);

class Fd {
public:
    explicit Fd(int fd) : fd_(fd) {}
    ~Fd();
    Fd(Fd&& other) noexcept : fd_(other.release()) {}
    Fd(const Fd&) = delete;
    Fd& operator=(const Fd&) = delete;
    Fd& operator=(Fd&&) = delete;

    int get() const { return fd_; }
    int release();

private:
    int fd_;
};

/// Opens a folder, never through a link in its last part.
Fd open_folder(int parent, const std::string& name);

enum class Sharing {
    None,
    Allowed, ///< links, and files too large to be scripts, may be the template's own
};

/// What a folder holds, itself and the one above left out.
std::vector<std::string> names_in(int folder);

/// Copies `name` in the folder `from`, with all it holds, to the folder `to`.
void copy_entry(int from, int to, const char* name, Sharing sharing);

/// Copies what `from` holds into the existing folder `to`: files, folders, links and modes. Of a
/// folder that another file system is mounted on there is only the folder.
void copy_tree(int from, int to, Sharing sharing);

/// Removes `name` below `parent` with all it holds. Links are removed, not followed; a folder of
/// another file system is left alone, and so are then the folders around it.
void remove_tree(int parent, const std::string& name) noexcept;

/// Makes a folder and those above it.
void make_folders(const std::string& path);

void write_file(const std::string& path, const std::string& text);

} // namespace orlo::device
