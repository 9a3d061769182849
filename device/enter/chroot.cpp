// SPDX-License-Identifier: MIT
// The second form, for root in a container that refuses namespaces: an instance of the template on
// disk, chroot, and no right left that reaches beyond files. Programs are links to the template's
// where the file system allows it.
#include "enter/files.h"
#include "enter/forms.h"
#include "enter/instance.h"
#include "enter/process.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <iterator>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <system_error>
#include <unistd.h>

namespace orlo::device {
namespace {

/// What root keeps inside: file work, changing users, and the way back out at exit.
constexpr unsigned kept_rights[] = {CAP_CHOWN,  CAP_DAC_OVERRIDE, CAP_FOWNER,    CAP_FSETID,
                                    CAP_SETGID, CAP_SETUID,       CAP_SYS_CHROOT};

/// In an access point nobody has the right to make device files; those around it do for one inside.
void make_devices(int instance) {
    const Fd dev = open_folder(instance, "dev");
    for (const DeviceFile& device : device_files) {
        const dev_t number = makedev(device.major, device.minor);
        const std::string path = "/dev/" + std::string(device.name);
        if (inside() && linkat(AT_FDCWD, path.c_str(), dev.get(), device.name, 0) == 0) {
            continue;
        }
        check(mknodat(dev.get(), device.name, S_IFCHR | 0666, number), "mknod");
        check(fchmodat(dev.get(), device.name, 0666, 0), device.name);
    }
}

/// Folders that are filled otherwise stay empty: where the template is the access point around this
/// one, they hold what is not its own, and the instance itself. Hidden files are an instance's.
void copy_template(int from, int instance) {
    for (const std::string& name : names_in(from)) {
        if (name[0] == '.') {
            continue;
        }
        if (is_mount_point(name)) {
            check(mkdirat(instance, name.c_str(), 0755), name);
        } else {
            copy_entry(from, instance, name.c_str(), Sharing::Allowed);
        }
    }
}

/// Programs started inside cannot check for leaks without the real /proc. They look for their
/// sanitizer's options in this file, whoever they are. (This process went in with its own.)
void forgo_leak_checks(int instance) {
    const Fd proc = open_folder(instance, "proc");
    check(mkdirat(proc.get(), "self", 0755), "proc/self");
    const Fd self = open_folder(proc.get(), "self");
    const Fd file(openat(self.get(), "environ", O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0444));
    constexpr char options[] = "ASAN_OPTIONS=detect_leaks=0";
    check(write(file.get(), options, sizeof options), "proc/self/environ");
}

void fill_instance(const Entry& entry, int instance) {
    copy_template(open_folder(AT_FDCWD, entry.root).get(), instance);
    check(fchmod(instance, 0755), "chmod");
    check(fchmodat(instance, "tmp", 01777, 0), "tmp");
    make_devices(instance);
    forgo_leak_checks(instance);
}

uint64_t kept_mask() {
    uint64_t mask = 0;
    for (const unsigned right : kept_rights) {
        mask |= uint64_t{1} << right;
    }
    return mask;
}

/// Also from the bounding set, or every program started as root would have them again.
void drop_rights() {
    const uint64_t keep = kept_mask();
    for (unsigned right = 0; prctl(PR_CAPBSET_READ, right) >= 0; right++) {
        const bool kept = right < 64 && (keep >> right & 1) != 0;
        if (!kept && prctl(PR_CAPBSET_READ, right) == 1) {
            check(prctl(PR_CAPBSET_DROP, right), "drop rights");
        }
    }
    prctl(PR_CAP_AMBIENT, PR_CAP_AMBIENT_CLEAR_ALL, 0, 0, 0);
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct data[2]{};
    check(syscall(SYS_capget, &header, data), "capget");
    for (size_t half = 0; half < std::size(data); half++) {
        const auto allowed = static_cast<uint32_t>(keep >> (32 * half));
        data[half].permitted &= allowed;
        data[half].effective = data[half].permitted;
        data[half].inheritable = 0;
    }
    check(syscall(SYS_capset, &header, data), "capset");
}

int machine_root = -1;

/// Leak checking and coverage run after the program's own exit handlers and need the real /proc
/// and the build folder.
void go_back() {
    if (fchdir(machine_root) == 0 && chroot(".") == 0) {
        close(machine_root);
    }
}

void go_in(int instance) {
    machine_root = open("/", O_PATH | O_DIRECTORY | O_CLOEXEC);
    check(machine_root, "open /");
    check(fchdir(instance), "instance");
    check(chroot("."), "chroot");
    check(chdir("/"), "chdir");
    write_file(marker_file, "chroot\n");
    drop_rights();
    atexit(go_back);
}

} // namespace

void enter_chroot(const Entry& entry, pid_t caller) {
    check(chroot("/"), "chroot");
    const Instance instance = make_instance(entry.root, caller);
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    tie_to_parent(SIGTERM);
    const pid_t child = fork();
    if (child == 0) {
        tie_to_parent(SIGKILL);
        fill_instance(entry, instance.folder.get());
        go_in(instance.folder.get());
        return;
    }
    const int fork_error = errno;
    // A signal to the whole process group must leave somebody to clean up.
    setpgid(0, 0);
    const int status = child < 0 ? 1 : wait_for(child, Wait::WhileParentLives, caller);
    kill_children();
    remove_tree(instance.parent.get(), instance.name);
    if (child < 0) {
        throw std::system_error(fork_error, std::generic_category(), "fork");
    }
    _exit(status);
}

} // namespace orlo::device
