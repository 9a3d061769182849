// SPDX-License-Identifier: MIT
// Copying the template and removing an instance, by descriptor.
#include "enter/files.h"

#include <cerrno>
#include <climits>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace orlo::device {
namespace {

/// Scripts and settings are copied even where links are wanted: writing to one in place must not
/// change the template. A running program of this size or more cannot be written to anyway.
constexpr off_t large_file = 65536;

using Dir = std::unique_ptr<DIR, int (*)(DIR*)>;

Dir list_folder(int folder) {
    Fd own(openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    check(own.get(), "open folder");
    Dir dir(fdopendir(own.get()), closedir);
    check(dir ? 0 : -1, "read folder");
    own.release();
    return dir;
}

bool is_dots(const char* name) {
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

void copy_bytes(int from, int to, const char* name) {
    char buffer[64 * 1024];
    for (;;) {
        const ssize_t got = read(from, buffer, sizeof buffer);
        check(got, name);
        if (got == 0) {
            return;
        }
        for (ssize_t done = 0; done < got;) {
            const ssize_t put = write(to, buffer + done, static_cast<size_t>(got - done));
            check(put, name);
            done += put;
        }
    }
}

void copy_file(int from, int to, const char* name, const struct stat& info, Sharing sharing) {
    if (sharing == Sharing::Allowed && info.st_size >= large_file &&
        linkat(from, name, to, name, 0) == 0) {
        return;
    }
    const Fd source(openat(from, name, O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
    check(source.get(), name);
    const Fd target(openat(to, name, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    check(target.get(), name);
    copy_bytes(source.get(), target.get(), name);
    check(fchmod(target.get(), info.st_mode & 07777), name);
}

/// A link cannot be changed in place, so sharing one with the template is safe.
void copy_link(int from, int to, const char* name, Sharing sharing) {
    if (sharing == Sharing::Allowed && linkat(from, name, to, name, 0) == 0) {
        return;
    }
    char text[PATH_MAX];
    const ssize_t length = readlinkat(from, name, text, sizeof text - 1);
    check(length, name);
    text[length] = '\0';
    check(symlinkat(text, to, name), name);
}

bool is_same_file_system(int folder, const struct stat& entry) {
    struct stat info {};
    check(fstat(folder, &info), "folder");
    return info.st_dev == entry.st_dev;
}

void remove_entry(int parent, const char* name, dev_t device);

void remove_content(int folder, dev_t device) {
    const int own = openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const Dir dir(own < 0 ? nullptr : fdopendir(own), closedir);
    if (!dir) {
        return;
    }
    while (const dirent* entry = readdir(dir.get())) {
        if (!is_dots(entry->d_name)) {
            remove_entry(folder, entry->d_name, device);
        }
    }
}

void remove_entry(int parent, const char* name, dev_t device) {
    if (unlinkat(parent, name, 0) == 0 || (errno != EISDIR && errno != EPERM)) {
        return;
    }
    {
        const Fd folder(openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        struct stat info {};
        if (fstat(folder.get(), &info) != 0 || info.st_dev != device) {
            return;
        }
        remove_content(folder.get(), device);
    }
    unlinkat(parent, name, AT_REMOVEDIR);
}

} // namespace

void check(long result, const std::string& what) {
    if (result < 0) {
        throw std::system_error(errno, std::generic_category(), what);
    }
}

Fd::~Fd() {
    if (fd_ >= 0) {
        close(fd_);
    }
}

int Fd::release() {
    const int fd = fd_;
    fd_ = -1;
    return fd;
}

Fd open_folder(int parent, const std::string& name) {
    Fd folder(openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    check(folder.get(), name);
    return folder;
}

std::vector<std::string> names_in(int folder) {
    std::vector<std::string> names;
    const Dir dir = list_folder(folder);
    while (const dirent* entry = readdir(dir.get())) {
        if (!is_dots(entry->d_name)) {
            names.emplace_back(entry->d_name);
        }
    }
    return names;
}

void copy_entry(int from, int to, const char* name, Sharing sharing) {
    struct stat info {};
    check(fstatat(from, name, &info, AT_SYMLINK_NOFOLLOW), name);
    if (S_ISLNK(info.st_mode)) {
        copy_link(from, to, name, sharing);
    } else if (S_ISREG(info.st_mode)) {
        copy_file(from, to, name, info, sharing);
    } else if (S_ISDIR(info.st_mode)) {
        check(mkdirat(to, name, 0700), name);
        const Fd source = open_folder(from, name);
        const Fd target = open_folder(to, name);
        if (is_same_file_system(from, info)) {
            copy_tree(source.get(), target.get(), sharing);
        }
        check(fchmod(target.get(), info.st_mode & 07777), name);
    }
}

void copy_tree(int from, int to, Sharing sharing) {
    for (const std::string& name : names_in(from)) {
        copy_entry(from, to, name.c_str(), sharing);
    }
}

void remove_tree(int parent, const std::string& name) noexcept {
    struct stat info {};
    if (fstatat(parent, name.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0) {
        remove_entry(parent, name.c_str(), info.st_dev);
    }
}

void make_folders(const std::string& path) {
    for (size_t end = path.find('/', 1);; end = path.find('/', end + 1)) {
        const std::string part = path.substr(0, end);
        if (mkdir(part.c_str(), 0755) != 0 && errno != EEXIST) {
            check(-1, part);
        }
        if (end == std::string::npos) {
            return;
        }
    }
}

void write_file(const std::string& path, const std::string& text) {
    const Fd file(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644));
    check(file.get(), path);
    check(write(file.get(), text.data(), text.size()), path);
}

} // namespace orlo::device
