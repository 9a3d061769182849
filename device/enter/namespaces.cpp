// SPDX-License-Identifier: MIT
// The first form: namespaces of users, mounts, processes, network, host name and messages. The
// user namespace is never left out, not even for root: it alone keeps the clock, the network and
// the boot state of the machine out of reach of what runs inside.
#include "enter/files.h"
#include "enter/forms.h"
#include "enter/process.h"

#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace orlo::device {
namespace {

/// One line that maps root inside to the caller's own id.
void map_ids(uid_t user, gid_t group) {
    write_file("/proc/self/setgroups", "deny");
    write_file("/proc/self/uid_map", "0 " + std::to_string(user) + " 1\n");
    write_file("/proc/self/gid_map", "0 " + std::to_string(group) + " 1\n");
}

void bind(const std::string& from, const std::string& to) {
    check(mount(from.c_str(), to.c_str(), "none", MS_BIND, ""), "mount " + from);
}

/// A folder with mounts below it that belong to the outer machine can only be shown whole.
void bind_folder(const std::string& from, const std::string& to) {
    if (mount(from.c_str(), to.c_str(), "none", MS_BIND, "") != 0) {
        check(mount(from.c_str(), to.c_str(), "none", MS_BIND | MS_REC, ""), "mount " + from);
    }
}

/// A remount has to repeat the restrictions that the outer machine put on the file system.
unsigned long restrictions_of(const std::string& path) {
    struct statvfs info {};
    check(statvfs(path.c_str(), &info), path);
    constexpr unsigned long pairs[][2] = {
        {ST_NOSUID, MS_NOSUID},   {ST_NODEV, MS_NODEV},           {ST_NOEXEC, MS_NOEXEC},
        {ST_NOATIME, MS_NOATIME}, {ST_NODIRATIME, MS_NODIRATIME}, {ST_RELATIME, MS_RELATIME},
    };
    unsigned long flags = 0;
    for (const auto& pair : pairs) {
        flags |= (info.f_flag & pair[0]) != 0 ? pair[1] : 0;
    }
    return flags;
}

void make_read_only(const std::string& path) {
    const unsigned long flags = MS_BIND | MS_REMOUNT | MS_RDONLY | restrictions_of(path);
    check(mount("none", path.c_str(), "none", flags, ""), "remount " + path);
}

void show_programs(const std::string& from, const std::string& to) {
    bind(from, to);
    make_read_only(to);
}

void fill_from_template(const std::string& source, const std::string& target) {
    const Fd from = open_folder(AT_FDCWD, source);
    const Fd to = open_folder(AT_FDCWD, target);
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(opendir(source.c_str()), closedir);
    check(entries ? 0 : -1, source);
    while (const dirent* entry = readdir(entries.get())) {
        const std::string name = entry->d_name;
        if (name[0] == '.') {
            continue;
        }
        check(mkdirat(to.get(), entry->d_name, 0755), name);
        if (holds_programs(name)) {
            const std::string below = "/" + name;
            show_programs(source + below, target + below);
        } else if (!is_mount_point(name)) {
            copy_tree(open_folder(from.get(), name).get(), open_folder(to.get(), name).get(),
                      Sharing::None);
        }
    }
}

void make_devices(const std::string& target) {
    for (const DeviceFile& device : device_files) {
        const std::string path = "/dev/" + std::string(device.name);
        if (access(path.c_str(), F_OK) == 0) {
            write_file(target + path, "");
            bind(path, target + path);
        }
    }
    constexpr const char* links[][2] = {{"/proc/self/fd", "/dev/fd"},
                                        {"/proc/self/fd/0", "/dev/stdin"},
                                        {"/proc/self/fd/1", "/dev/stdout"},
                                        {"/proc/self/fd/2", "/dev/stderr"}};
    for (const auto& link : links) {
        check(symlink(link[0], (target + link[1]).c_str()), link[1]);
    }
}

/// Where the machine hides parts of its own /proc, a fresh one is refused.
void show_processes(const std::string& proc) {
    if (mount("proc", proc.c_str(), "proc", MS_NOSUID | MS_NODEV | MS_NOEXEC, "") != 0) {
        check(mount("/proc", proc.c_str(), "none", MS_BIND | MS_REC, ""), "mount /proc");
    }
}

/// The kernel's own view of the interfaces in here, for those who want it in the place of the plain
/// files below /sys. It can only be had while the machine's is still in sight, and is refused where
/// the machine hides parts of that.
void show_interfaces(const std::string& folder) {
    check(mkdir(folder.c_str(), 0755), "mkdir " + folder);
    constexpr unsigned long flags = MS_RDONLY | MS_NOSUID | MS_NODEV | MS_NOEXEC;
    if (mount("sysfs", folder.c_str(), "sysfs", flags, "") != 0) {
        check(rmdir(folder.c_str()), "rmdir " + folder);
    }
}

void make_root(const Entry& entry) {
    check(mount("none", "/", "none", MS_REC | MS_PRIVATE, ""), "mount");
    const std::string target = entry.root + "/mnt";
    constexpr unsigned long flags = MS_NOSUID | MS_NODEV;
    check(mount("device", target.c_str(), "tmpfs", flags, "mode=0755,size=64m"), "mount tmpfs");
    fill_from_template(entry.root, target);
    make_devices(target);
    check(mount("tmp", (target + "/tmp").c_str(), "tmpfs", flags, "mode=1777,size=64m"),
          "mount /tmp");
    show_processes(target + "/proc");
    show_interfaces(target + "/mnt/sys");
    for (const std::string& folder : entry.visible) {
        make_folders(target + folder);
        bind_folder(folder, target + folder);
        make_read_only(target + folder); // "rm -rf /tmp/*" inside must not empty a build below /tmp
    }
    write_file(target + marker_file, "namespaces\n");
    check(chdir(target.c_str()), target);
    check(syscall(SYS_pivot_root, ".", "."), "pivot_root");
    check(umount2(".", MNT_DETACH), "umount");
    check(chdir("/"), "chdir");
}

void start_loopback() {
    const Fd channel(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    check(channel.get(), "socket");
    ifreq request{};
    memcpy(request.ifr_name, "lo", 3);
    check(ioctl(channel.get(), SIOCGIFFLAGS, &request), "loopback");
    request.ifr_flags = static_cast<short>(request.ifr_flags | IFF_UP);
    check(ioctl(channel.get(), SIOCSIFFLAGS, &request), "loopback");
}

/// Returns in the child; the process that calls it stays and ends like the child.
void continue_in_child(Wait manner, pid_t parent) {
    const pid_t child = fork();
    check(child, "fork");
    if (child > 0) {
        _exit(wait_for(child, manner, parent));
    }
    tie_to_parent(SIGKILL);
}

} // namespace

void enter_namespaces(const Entry& entry, pid_t caller) {
    const uid_t user = geteuid();
    const gid_t group = getegid();
    check(unshare(CLONE_NEWUSER | CLONE_NEWNS | CLONE_NEWPID | CLONE_NEWUTS | CLONE_NEWIPC |
                  CLONE_NEWNET),
          "unshare");
    // New rights make a process opaque to itself; leak checking and the id maps need it readable.
    prctl(PR_SET_DUMPABLE, 1);
    map_ids(user, group);
    tie_to_parent(SIGTERM);
    continue_in_child(Wait::WhileParentLives, caller);
    // Pid 1 would not die of its own raise() and would get every orphan: it only reaps.
    continue_in_child(Wait::AndReapAll, 0);
    make_root(entry);
    start_loopback();
    constexpr const char name[] = "virtual-ap";
    static_cast<void>(!sethostname(name, sizeof name - 1));
}

} // namespace orlo::device
