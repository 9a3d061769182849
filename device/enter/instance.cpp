// SPDX-License-Identifier: MIT
// Instances are locked while they are used. A keeper removes its own; one that was killed together
// with its whole tree of processes, as test drivers do after a time-out, leaves a folder that the
// next entry finds unlocked and removes.
#include "enter/instance.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <system_error>
#include <unistd.h>

namespace orlo::device {
namespace {

constexpr char prefix[] = "virtual-ap-";
/// Only a folder with this file in it is ever removed as an instance.
constexpr char proof[] = ".instance";

/// Whether a file system takes an instance: its programs and device files, and all of its size.
bool takes_instances(const std::string& place) {
    constexpr unsigned long long enough = 256ULL << 20;
    struct statvfs info {};
    return statvfs(place.c_str(), &info) == 0 && (info.f_flag & (ST_NOEXEC | ST_NODEV)) == 0 &&
           info.f_bavail * info.f_frsize >= enough;
}

bool lock(const Fd& folder) {
    return flock(folder.get(), LOCK_EX | LOCK_NB) == 0;
}

bool is_own(const Fd& folder) {
    struct stat info {};
    return fstat(folder.get(), &info) == 0 && info.st_uid == geteuid() && info.st_nlink > 0;
}

void remove_unused(const Fd& parent) {
    const int listing = openat(parent.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const std::unique_ptr<DIR, int (*)(DIR*)> names(listing < 0 ? nullptr : fdopendir(listing),
                                                    closedir);
    while (const dirent* entry = names ? readdir(names.get()) : nullptr) {
        if (strncmp(entry->d_name, prefix, sizeof prefix - 1) != 0) {
            continue;
        }
        const Fd folder(
            openat(parent.get(), entry->d_name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        if (is_own(folder) && faccessat(folder.get(), proof, F_OK, 0) == 0 && lock(folder)) {
            remove_tree(parent.get(), entry->d_name);
        }
    }
}

} // namespace

Instance make_instance(const std::string& root, pid_t caller) {
    const std::string beside = root.substr(0, root.rfind('/'));
    for (const std::string& place : {std::string("/dev/shm"), beside, std::string("/tmp")}) {
        std::string path = place + "/" + prefix + std::to_string(caller) + "-XXXXXX";
        if (!takes_instances(place) || mkdtemp(path.data()) == nullptr) {
            continue;
        }
        Instance instance{open_folder(AT_FDCWD, place), path.substr(place.size() + 1),
                          open_folder(AT_FDCWD, path)};
        check(lock(instance.folder) ? 0 : -1, "lock the instance");
        check(Fd(openat(instance.folder.get(), proof, O_WRONLY | O_CREAT | O_CLOEXEC, 0444)).get(),
              proof);
        remove_unused(instance.parent);
        return instance;
    }
    throw std::system_error(errno, std::generic_category(), "make a folder for the instance");
}

} // namespace orlo::device
