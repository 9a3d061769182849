// SPDX-License-Identifier: MIT
#include "locked_file.h"

#include "scan.h"
#include "uci.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace uci {

namespace {

static_assert(sizeof(off_t) == 8 && sizeof(ino_t) == 8,
              "files would fail to open, or be overlooked");

/// Far beyond any configuration; keeps a file gone wild from eating the memory of the device.
constexpr off_t kLargestFile = off_t{16} << 20;

/// How often a file may be replaced while we wait for its lock.
constexpr int kLockAttempts = 100;

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

} // namespace

bool lock_file(const File& file, int lock) {
    int result = 0;
    do {
        result = flock(file.fd(), lock);
    } while (result != 0 && errno == EINTR);
    return result == 0 || errno == ENOSYS; // better unlocked than not at all
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
    out.data = static_cast<char*>(arena.allocate(wanted + kPadding));
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
    memset(out.data + out.size, 0, kPadding);
    return UCI_OK;
}

} // namespace uci
