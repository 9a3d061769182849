// SPDX-License-Identifier: MIT
#include "support/door.h"

#include "driver/fault.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <iterator>
#include <sys/wait.h>
#include <unistd.h>

namespace orlo::test {

Door& Door::instance() {
    static Door door;
    return door;
}

void Door::open() {
    open_ = true;
    device::demanded_error = [] { return instance().should_fail(Call::ioctl) ? EIO : 0; };
}

void Door::fail(Call call, int n) {
    calls_left_[static_cast<int>(call)] = n;
}

void Door::fail_always(Call call) {
    always_fails_[static_cast<int>(call)] = true;
}

bool Door::should_fail(Call call, const char* what) {
    int& left = calls_left_[static_cast<int>(call)];
    const bool reached = left == 1;
    left -= left > 0 ? 1 : 0;
    return reached || always_fails_[static_cast<int>(call)] || (on_call && on_call(call, what));
}

bool Door::expects_failure(Call call) const {
    return calls_left_[static_cast<int>(call)] > 0 || always_fails_[static_cast<int>(call)];
}

bool Door::fails_memory() const {
    return expects_failure(Call::calloc) || expects_failure(Call::realloc) ||
           expects_failure(Call::strdup);
}

void* Door::allocated(void* memory) {
    if (memory != nullptr && block_count_ < static_cast<int>(std::size(blocks_))) {
        blocks_[block_count_++] = memory;
    }
    return memory;
}

void Door::released(const void* memory) {
    for (int i = block_count_ - 1; i >= 0; i--) {
        if (blocks_[i] == memory) {
            blocks_[i] = blocks_[--block_count_];
            return;
        }
    }
}

void Door::record(const std::string& line) {
    lines_.push_back(line);
    if (to_parent_ >= 0) {
        dprintf(to_parent_, "%s\n", line.c_str());
    }
}

pid_t Door::fork_with(pid_t (*real_fork)()) {
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC) != 0) {
        return -1;
    }
    record("fork");
    child_ = real_fork();
    if (child_ == 0) {
        to_parent_ = ends[1];
        return 0;
    }
    close(ends[1]);
    from_child_ = ends[0];
    return child_;
}

Child Door::child() const {
    Child child;
    int status = 0;
    if (waitpid(child_, &status, 0) != child_) {
        return child; // it has been waited for already
    }
    child.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    FILE* lines = fdopen(from_child_, "r");
    char line[4096];
    while (fgets(line, sizeof line, lines) != nullptr) {
        child.trace.emplace_back(line, strcspn(line, "\n"));
    }
    fclose(lines);
    return child;
}

void Door::listed_packages() {
    all_packages_ = true;
    record("list");
}

// A commit of all packages is one line, however many there are.
void Door::on_package(const char* verb, const std::string& package, bool failed) {
    if (!all_packages_) {
        record(std::string(verb) + " " + package + (failed ? " (failed)" : ""));
        return;
    }
    if (lines_.back() == "list") {
        lines_.back() = std::string(verb) + " all";
    }
    if (failed) {
        lines_.back() += " (failed at " + package + ")";
    }
}

void Door::slept(unsigned seconds) {
    record("sleep " + std::to_string(seconds));
    sleeps_++;
    if (on_sleep) {
        on_sleep(sleeps_);
    } else {
        usleep(1000); // background commands get on
    }
}

Trace Door::trace(const std::vector<std::string>& kinds) const {
    Trace chosen;
    for (const std::string& line : lines_) {
        const std::string kind = line.substr(0, line.find(' '));
        if (std::find(kinds.begin(), kinds.end(), kind) != kinds.end()) {
            chosen.push_back(line);
        }
    }
    return chosen;
}

Trace Door::log_of(const std::string& operation) const {
    const std::string own = "log " + operation + ": ";
    Trace messages;
    for (const std::string& line : lines_) {
        if (line.compare(0, own.size(), own) == 0) {
            messages.push_back(line.substr(own.size()));
        }
    }
    return messages;
}

} // namespace orlo::test
