// SPDX-License-Identifier: MIT
#include "processes.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <linux/limits.h>
#include <map>
#include <sched.h>
#include <sys/mount.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

int wait_for(pid_t pid) {
    int status = 0;
    waitpid(pid, &status, 0);
    return status;
}

/// A child that waits to be traced, or has exited where that is not possible.
pid_t start_traced(const std::function<int()>& act) {
    const pid_t pid = fork();
    if (pid == 0) {
        if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) {
            _exit(99);
        }
        raise(SIGSTOP);
        _exit(act());
    }
    return pid;
}

int go_on(pid_t pid) {
    ptrace(PTRACE_SYSCALL, pid, nullptr, nullptr);
    return wait_for(pid);
}

/// The path of a file that the process has open, "" for anything else.
std::string path_of(pid_t pid, uint64_t fd) {
    std::array<char, PATH_MAX> path{};
    const std::string link = "/proc/" + std::to_string(pid) + "/fd/" + std::to_string(fd);
    return readlink(link.c_str(), path.data(), path.size() - 1) > 0 ? path.data() : "";
}

/// "config/.p.uci-Ab12Cd" as "config/.p.uci".
std::string without_random(const std::string& path) {
    const size_t random = path.rfind(".uci-");
    return random == std::string::npos ? path : path.substr(0, random + 4);
}

const char* name_of(uint64_t call) {
    static const std::map<uint64_t, const char*> kNames = {
        {SYS_write, "write"},         {SYS_fsync, "fsync"},      {SYS_fdatasync, "fdatasync"},
        {SYS_ftruncate, "ftruncate"}, {SYS_renameat2, "rename"}, {SYS_renameat, "rename"},
#ifdef SYS_rename
        {SYS_rename, "rename"},
#endif
    };
    const auto found = kNames.find(call);
    return found == kNames.end() ? nullptr : found->second;
}

bool write_text(const char* path, const std::string& text) {
    const int fd = open(path, O_WRONLY | O_CLOEXEC);
    const bool written = write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    close(fd);
    return written;
}

/// Mounts that this process makes are seen by no one else from now on.
bool enter_own_mounts() {
    const std::string uid = std::to_string(getuid());
    const std::string gid = std::to_string(getgid());
    return unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 &&
           write_text("/proc/self/setgroups", "deny") &&
           write_text("/proc/self/uid_map", "0 " + uid + " 1") &&
           write_text("/proc/self/gid_map", "0 " + gid + " 1") &&
           mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

} // namespace

int in_child(const std::function<int()>& act) {
    const pid_t pid = fork();
    if (pid == 0) {
        _exit(act());
    }
    const int status = wait_for(pid);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

Fate killed_at(int step, const std::function<int()>& act) {
    const pid_t pid = start_traced(act);
    int status = wait_for(pid);
    if (WIFEXITED(status)) {
        return Fate::kUntraceable;
    }
    for (int i = 0; i < step && WIFSTOPPED(status); i++) {
        status = go_on(pid);
    }
    if (!WIFSTOPPED(status)) {
        return Fate::kFinished;
    }
    kill(pid, SIGKILL);
    wait_for(pid);
    return Fate::kKilled;
}

std::optional<std::vector<std::string>> traced(const std::string& directory,
                                               const std::function<int()>& act) {
    const pid_t pid = start_traced(act);
    int status = wait_for(pid);
    if (WIFEXITED(status)) {
        return std::nullopt;
    }
    ptrace(PTRACE_SETOPTIONS, pid, nullptr, PTRACE_O_TRACESYSGOOD); // tells calls from signals
    std::vector<std::string> steps;
    while (WIFSTOPPED(status)) {
        __ptrace_syscall_info info{};
        if (ptrace(PTRACE_GET_SYSCALL_INFO, pid, sizeof(info), &info) <= 0) {
            kill(pid, SIGKILL);
            wait_for(pid);
            return std::nullopt;
        }
        const bool entering = info.op == PTRACE_SYSCALL_INFO_ENTRY;
        const char* const name = entering ? name_of(info.entry.nr) : nullptr;
        if (name && std::string(name) == "rename") {
            steps.emplace_back(name);
        } else if (name) {
            const std::string path = path_of(pid, info.entry.args[0]);
            if (path.compare(0, directory.size(), directory) == 0) {
                steps.push_back(std::string(name) + ' ' +
                                without_random(path.substr(directory.size() + 1)));
            }
        }
        status = go_on(pid);
    }
    return steps;
}

std::optional<std::string> on_small_disk(const std::string& directory, const std::string& options,
                                         const std::function<std::string()>& act) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        return std::nullopt;
    }
    const int code = in_child([&] {
        if (!enter_own_mounts() ||
            mount("small", directory.c_str(), "tmpfs", 0, options.c_str()) != 0) {
            return 99;
        }
        const std::string report = act();
        return write(ends[1], report.data(), report.size()) < 0 ? 1 : 0;
    });
    close(ends[1]);
    std::string report(4096, '\0'); // a pipe holds as much
    const ssize_t size = read(ends[0], report.data(), report.size());
    close(ends[0]);
    report.resize(size > 0 ? static_cast<size_t>(size) : 0);
    return code == 99 ? std::nullopt : std::optional(report);
}
