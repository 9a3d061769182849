// SPDX-License-Identifier: MIT
#include "throw_away.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

#include "description.h"
#include "enter/files.h"
#include "enter/virtual_ap.h"
#include "exit.h"
#include "library.h"

namespace orloctl {

namespace {

constexpr const char* own_folder = "/etc/config";
constexpr const char* staged_folder = "/tmp/.uci";
constexpr FileKind configuration_file = {"a configuration file", 4};

using Folder = std::unique_ptr<DIR, int (*)(DIR*)>;

bool is_file(const std::string& path) {
    struct stat info = {};
    return stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

// As the store lists packages: plain files, hidden ones left out.
Files read_files(const std::string& path, const Folder& folder) {
    Files files;
    while (const dirent* entry = folder ? readdir(folder.get()) : nullptr) {
        const std::string file = path + "/" + entry->d_name;
        if (entry->d_name[0] != '.' && is_file(file)) {
            files[entry->d_name] = read_file(file, configuration_file);
        }
    }
    return files;
}

Files read_packages(const std::string& path) {
    const Folder folder(opendir(path.c_str()), &closedir);
    if (folder == nullptr) {
        throw Refusal("cannot read the configuration in " + path + ": " + strerror(errno));
    }
    Files files = read_files(path, folder);
    if (files.empty()) {
        throw Refusal("there is no configuration in " + path +
                      ": name a folder of packages, as /etc/config is one, with --config DIR");
    }
    return files;
}

void write_files(const std::string& folder, const Files& files) {
    for (const auto& [name, text] : files) {
        std::string path = folder;
        path += "/" + name;
        orlo::device::write_file(path, text);
    }
}

void replace_configuration(const Configuration& configuration) {
    const Folder folder(opendir(own_folder), &closedir);
    for (const auto& [name, text] : read_files(own_folder, folder)) {
        unlink((std::string(own_folder) + "/" + name).c_str());
    }
    write_files(own_folder, configuration.packages);
    mkdir(staged_folder, 0700);
    write_files(staged_folder, configuration.staged);
}

} // namespace

Configuration read_configuration(const std::string& folder) {
    if (!folder.empty()) {
        return {folder, read_packages(folder), {}};
    }
    if (!is_access_point()) {
        return {"the sample configuration", {}, {}};
    }
    Configuration own = {own_folder, read_packages(own_folder), {}};
    const Folder staged(opendir(staged_folder), &closedir);
    if (staged != nullptr) {
        own.staged = read_files(staged_folder, staged);
    }
    return own;
}

void enter_throw_away(const Configuration& configuration) {
    try {
        orlo::device::try_to_enter(orlo::device::entry_wherever_this_is());
    } catch (const orlo::device::NoAccessPoint& reason) {
        throw Refusal(reason.what());
    }
    if (!configuration.packages.empty()) {
        replace_configuration(configuration);
    }
}

} // namespace orloctl
