// SPDX-License-Identifier: MIT
#include "replacement.h"

#include "locked_file.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace uci {

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
