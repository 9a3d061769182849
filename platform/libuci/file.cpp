// SPDX-License-Identifier: MIT
#include "file.h"

#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace uci {

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

bool sync_file(const File& file) {
    return fsync(file.fd()) == 0;
}

} // namespace uci
