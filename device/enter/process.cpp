// SPDX-License-Identifier: MIT
// Waiting for the process inside, handing signals on, and leaving nothing behind.
#include "enter/process.h"

#include "enter/files.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <dirent.h>
#include <memory>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orlo::device {
namespace {

constexpr int handed_on[] = {SIGCHLD, SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGUSR1, SIGUSR2};

sigset_t handed_on_set() {
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : handed_on) {
        sigaddset(&set, signal);
    }
    return set;
}

int exit_status(int status) {
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

/// The parent of a process, from its line in /proc: pid, name in parentheses, state, parent.
pid_t parent_of(pid_t process) {
    char path[32];
    snprintf(path, sizeof path, "/proc/%d/stat", process);
    const std::unique_ptr<FILE, int (*)(FILE*)> file(fopen(path, "re"), fclose);
    char line[512];
    if (!file || fgets(line, sizeof line, file.get()) == nullptr) {
        return -1;
    }
    const std::string text(line);
    const size_t name_end = text.rfind(')');
    if (name_end == std::string::npos || text.size() < name_end + 4) {
        return -1;
    }
    return static_cast<pid_t>(strtol(text.c_str() + name_end + 4, nullptr, 10));
}

void send_kill_to_children() {
    const std::unique_ptr<DIR, int (*)(DIR*)> processes(opendir("/proc"), closedir);
    if (!processes) {
        return;
    }
    while (const dirent* entry = readdir(processes.get())) {
        if (isdigit(static_cast<unsigned char>(entry->d_name[0])) != 0) {
            const auto process = static_cast<pid_t>(strtol(entry->d_name, nullptr, 10));
            if (parent_of(process) == getpid()) {
                kill(process, SIGKILL);
            }
        }
    }
}

} // namespace

SignalsHeld::SignalsHeld() {
    const sigset_t set = handed_on_set();
    sigprocmask(SIG_BLOCK, &set, &before_);
}

SignalsHeld::~SignalsHeld() {
    sigprocmask(SIG_SETMASK, &before_, nullptr);
}

void tie_to_parent(int signal) {
    check(prctl(PR_SET_PDEATHSIG, signal), "prctl");
}

int wait_for(pid_t child, Wait manner, pid_t parent) {
    const sigset_t set = handed_on_set();
    const pid_t awaited = manner == Wait::ForChild ? child : -1;
    for (;;) {
        int status = 0;
        const pid_t ended = waitpid(awaited, &status, WNOHANG);
        if (ended == child) {
            return exit_status(status);
        }
        if (ended > 0) {
            continue;
        }
        if (manner == Wait::WhileParentLives && getppid() != parent) {
            kill(child, SIGKILL);
        }
        siginfo_t info{};
        const int signal = sigwaitinfo(&set, &info);
        const bool from_terminal = info.si_code == SI_KERNEL;
        if (signal > 0 && signal != SIGCHLD && !from_terminal) {
            kill(child, signal);
        }
    }
}

void kill_children() {
    constexpr int rounds = 2000;
    constexpr timespec pause{0, 1'000'000};
    for (int round = 0; round < rounds; round++) {
        const pid_t ended = waitpid(-1, nullptr, WNOHANG);
        if (ended < 0) {
            return;
        }
        if (ended == 0) {
            send_kill_to_children();
            nanosleep(&pause, nullptr);
        }
    }
}

} // namespace orlo::device
