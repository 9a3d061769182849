// SPDX-License-Identifier: MIT
#include "output.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace orloctl {

Output::Output() : descriptor_(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)) {
    if (descriptor_ < 0) {
        error_ = errno;
        return;
    }
    dup2(STDERR_FILENO, STDOUT_FILENO);
}

Output::~Output() {
    if (descriptor_ >= 0) {
        close(descriptor_);
    }
}

bool Output::is_terminal() const {
    return descriptor_ >= 0 && isatty(descriptor_) == 1;
}

bool Output::has_screen() const {
    const char* kind = getenv("TERM");
    return is_terminal() && kind != nullptr && *kind != '\0' && strcmp(kind, "dumb") != 0;
}

void Output::print(const std::string& text) {
    size_t written = 0;
    while (written < text.size() && error_ == 0) {
        const ssize_t count = write(descriptor_, text.data() + written, text.size() - written);
        if (count >= 0) {
            written += static_cast<size_t>(count);
        } else if (errno != EINTR) {
            error_ = errno;
        }
    }
}

} // namespace orloctl
