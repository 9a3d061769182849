// SPDX-License-Identifier: MIT
#include "files.h"

#include "uci.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace uci {

namespace {

/// Far beyond any configuration; keeps a file gone wild from eating the memory of the device.
constexpr off_t kLargestFile = off_t{64} << 20;

/// How often a file may be replaced while we wait for its lock.
constexpr int kLockAttempts = 100;

bool lock_file(const File& file, int lock) {
    int result = 0;
    do {
        result = flock(file.fd(), lock);
    } while (result != 0 && errno == EINTR);
    return result == 0 || errno == ENOSYS; // better unlocked than not at all
}

int open_error() {
    switch (errno) {
    case ENOENT:
    case ENOTDIR:
    case ELOOP:
    case ENAMETOOLONG:
    case ENXIO: // a socket
    case EISDIR:
        return UCI_ERR_NOTFOUND;
    default:
        return UCI_ERR_IO;
    }
}

bool leads_to(const char* path, const struct stat& info) {
    struct stat there {};
    return stat(path, &there) == 0 && there.st_ino == info.st_ino && there.st_dev == info.st_dev;
}

bool sync_file(const File& file) {
    return fsync(file.fd()) == 0;
}

} // namespace

Path& Path::operator<<(std::string_view piece) {
    if (piece.size() >= sizeof(text_) - size_) {
        size_ = sizeof(text_) - 1; // no further piece fits
        text_[0] = '\0';
        return *this;
    }
    memcpy(text_ + size_, piece.data(), piece.size());
    size_ += piece.size();
    text_[size_] = '\0';
    return *this;
}

File& File::operator=(File&& other) noexcept {
    if (this != &other) {
        close();
        fd_ = other.release();
    }
    return *this;
}

void File::close() {
    if (fd_ >= 0) {
        ::close(fd_);
        fd_ = -1;
    }
}

int File::release() {
    const int fd = fd_;
    fd_ = -1;
    return fd;
}

int open_locked(const char* path, int flags, mode_t mode, int lock, LockedFile& out) {
    for (int attempt = 0; attempt < kLockAttempts; attempt++) {
        // Not blocking: the name might belong to a pipe.
        File file(open(path, flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, mode));
        if (!file.is_open()) {
            return open_error();
        }
        if (!lock_file(file, lock) || fstat(file.fd(), &out.info) != 0) {
            return UCI_ERR_IO;
        }
        if (!S_ISREG(out.info.st_mode)) {
            return UCI_ERR_NOTFOUND;
        }
        if (leads_to(path, out.info)) {
            out.file = static_cast<File&&>(file);
            return UCI_OK;
        }
    }
    return UCI_ERR_IO;
}

int read_text(const LockedFile& source, Arena& arena, Text& out) {
    if (source.info.st_size > kLargestFile) {
        return UCI_ERR_MEM;
    }
    const auto wanted = static_cast<size_t>(source.info.st_size);
    out.data = static_cast<char*>(arena.allocate(wanted + 1));
    if (!out.data) {
        return UCI_ERR_MEM;
    }
    out.size = 0;
    while (out.size < wanted) {
        const ssize_t got = pread(source.file.fd(), out.data + out.size, wanted - out.size,
                                  static_cast<off_t>(out.size));
        if (got < 0 && errno != EINTR) {
            return UCI_ERR_IO;
        }
        if (got == 0) {
            break;
        }
        out.size += got > 0 ? static_cast<size_t>(got) : 0;
    }
    out.data[out.size] = '\0';
    return UCI_OK;
}

bool write_all(const File& file, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(file.fd(), text.data(), text.size());
        if (written < 0 && errno != EINTR) {
            return false;
        }
        text.remove_prefix(written > 0 ? static_cast<size_t>(written) : 0);
    }
    return true;
}

Replacement::~Replacement() {
    if (temporary_) {
        unlink(path_.c_str());
    }
}

bool Replacement::create(std::string_view directory, std::string_view name) {
    path_ << directory << "/." << name << ".uci-XXXXXX";
    file_ = File(mkostemp(path_.data(), O_CLOEXEC));
    temporary_ = file_.is_open();
    return temporary_ && lock_file(file_, LOCK_EX);
}

bool Replacement::write(std::string_view text, mode_t mode) {
    return write_all(file_, text) && fchmod(file_.fd(), mode) == 0 && sync_file(file_);
}

bool Replacement::publish(const char* path) {
    if (!realpath(path, resolved_) || rename(path_.c_str(), resolved_) != 0) {
        return false;
    }
    temporary_ = false;
    return true;
}

bool Replacement::sync_name() {
    char* const slash = strrchr(resolved_, '/');
    slash[slash == resolved_ ? 1 : 0] = '\0';
    const File directory(open(resolved_, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return directory.is_open() && (sync_file(directory) || errno == EINVAL);
}

} // namespace uci
