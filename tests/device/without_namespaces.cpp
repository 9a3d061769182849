// SPDX-License-Identifier: MIT
// Runs a command as in a container that refuses namespaces and mounts: a filter on system calls,
// and without the right to administer the system.
//
// usage: without-namespaces [--no-chroot] COMMAND [ARG...]
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

#include <linux/capability.h>
#include <linux/filter.h>
#include <linux/seccomp.h>

namespace {

constexpr unsigned refused_calls[] = {SYS_unshare, SYS_setns, SYS_mount, SYS_umount2,
                                      SYS_pivot_root};
constexpr unsigned new_namespace = CLONE_NEWUSER | CLONE_NEWNS | CLONE_NEWPID | CLONE_NEWUTS |
                                   CLONE_NEWIPC | CLONE_NEWNET | CLONE_NEWCGROUP;

void refuse_call(std::vector<sock_filter>& filter, unsigned number, unsigned error) {
    filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, number, 0, 1));
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | error));
}

/// Programs fork with clone, so that one is refused only with flags for namespaces.
void refuse_clone_into_namespaces(std::vector<sock_filter>& filter) {
    filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_clone, 0, 4));
    filter.push_back(BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args)));
    filter.push_back(BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, new_namespace, 0, 1));
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EPERM));
    filter.push_back(BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)));
}

std::vector<sock_filter> make_filter(bool allow_chroot) {
    std::vector<sock_filter> filter;
    filter.push_back(BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)));
    for (const unsigned number : refused_calls) {
        refuse_call(filter, number, EPERM);
    }
    refuse_call(filter, SYS_clone3, ENOSYS);
    if (!allow_chroot) {
        refuse_call(filter, SYS_chroot, EPERM);
    }
    refuse_clone_into_namespaces(filter);
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    return filter;
}

bool install(std::vector<sock_filter> filter) {
    const sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

/// From the bounding set as well, or starting the command as root would bring it back.
bool drop_administration() {
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct data[2]{};
    if (geteuid() == 0 && prctl(PR_CAPBSET_DROP, CAP_SYS_ADMIN) != 0) {
        return false;
    }
    if (syscall(SYS_capget, &header, data) != 0) {
        return false;
    }
    data[0].effective &= ~(1U << CAP_SYS_ADMIN);
    data[0].permitted &= ~(1U << CAP_SYS_ADMIN);
    return syscall(SYS_capset, &header, data) == 0;
}

} // namespace

int main(int argc, char** argv) {
    const bool allow_chroot = argc < 2 || strcmp(argv[1], "--no-chroot") != 0;
    char** command = argv + (allow_chroot ? 1 : 2);
    if (argc - (command - argv) < 1) {
        fputs("usage: without-namespaces [--no-chroot] COMMAND [ARG...]\n", stderr);
        return 2;
    }
    if (!drop_administration() || !install(make_filter(allow_chroot))) {
        perror("without-namespaces");
        return 1;
    }
    execvp(command[0], command);
    perror(command[0]);
    return 127;
}
