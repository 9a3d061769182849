// SPDX-License-Identifier: MIT
#include "noise.h"

#include <fcntl.h>
#include <unistd.h>

namespace orloctl {

namespace {

constexpr int streams[2] = {STDOUT_FILENO, STDERR_FILENO};

} // namespace

Noise::Noise(bool passes) {
    if (passes) {
        return;
    }
    caught_.reset(tmpfile());
    if (caught_ == nullptr) {
        return; // then it passes
    }
    fcntl(fileno(caught_.get()), F_SETFL, O_APPEND);
    for (int i = 0; i < 2; i++) {
        before_[i] = fcntl(streams[i], F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
        dup2(fileno(caught_.get()), streams[i]);
    }
}

Noise::~Noise() {
    for (int i = 0; i < 2; i++) {
        if (before_[i] >= 0) {
            dup2(before_[i], streams[i]);
            close(before_[i]);
        }
    }
}

std::string Noise::take() {
    std::string text;
    if (caught_ == nullptr) {
        return text;
    }
    fflush(nullptr);
    rewind(caught_.get());
    char part[512];
    for (size_t count = 0; (count = fread(part, 1, sizeof part, caught_.get())) > 0;) {
        text.append(part, count);
    }
    const int ignored = ftruncate(fileno(caught_.get()), 0);
    static_cast<void>(ignored);
    return text;
}

} // namespace orloctl
