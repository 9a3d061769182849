// SPDX-License-Identifier: MIT
#include "faults/device_files.h"

#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace orlo::test {

namespace {

const char* const roots[] = {"/etc/config", "/etc/qxw", "/flash", "/tmp", "/var/log", "/var/run"};
const char* const files[] = {"/etc/TZ", "/etc/ap_reboot", "/etc/sysupgrade.conf"};

// With bare descriptors: thousands of runs restore what they changed.
std::string content_of(const std::string& path) {
    std::string text;
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    char piece[16384];
    for (ssize_t size = read(file, piece, sizeof piece); size > 0;
         size = read(file, piece, sizeof piece)) {
        text.append(piece, static_cast<size_t>(size));
    }
    close(file);
    return text;
}

void write_content(const std::string& path, const std::string& text) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    const ssize_t written = write(file, text.data(), text.size());
    close(file);
    if (written != static_cast<ssize_t>(text.size())) {
        abort();
    }
}

void add_file(const std::string& path, std::map<std::string, std::string>& contents) {
    struct stat status = {};
    if (lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode)) {
        contents[path] = content_of(path);
    }
}

// What other file systems show in a folder is not the access point's: a build folder below /tmp.
void add_folder(const std::string& path, dev_t device,
                std::map<std::string, std::string>& contents) {
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir(path.c_str()), closedir);
    struct stat status = {};
    if (folder == nullptr || fstat(dirfd(folder.get()), &status) != 0 ||
        (device != 0 && status.st_dev != device)) {
        return;
    }
    contents[path + "/"] = "";
    while (const dirent* entry = readdir(folder.get())) {
        const std::string inner = path + "/" + entry->d_name;
        if (strcmp(entry->d_name, ".") == 0 || strcmp(entry->d_name, "..") == 0) {
            continue;
        }
        if (entry->d_type == DT_DIR) {
            add_folder(inner, status.st_dev, contents);
        } else {
            add_file(inner, contents);
        }
    }
}

std::map<std::string, std::string> all_contents() {
    std::map<std::string, std::string> contents;
    for (const char* root : roots) {
        add_folder(root, 0, contents);
    }
    for (const char* file : files) {
        add_file(file, contents);
    }
    return contents;
}

} // namespace

DeviceFiles::DeviceFiles() : contents_(all_contents()) {}

std::vector<std::string> DeviceFiles::restore() const {
    const std::map<std::string, std::string> now = all_contents();
    std::vector<std::string> added;
    for (auto entry = now.rbegin(); entry != now.rend(); ++entry) { // what lies in a folder first
        const std::string& path = entry->first;
        if (contents_.count(path) == 0) {
            added.push_back(path);
            path.back() == '/' ? rmdir(path.c_str()) : unlink(path.c_str());
        }
    }
    for (const auto& [path, content] : contents_) {
        const auto found = now.find(path);
        if (path.back() == '/') {
            mkdir(path.c_str(), 0755);
        } else if (found == now.end() || found->second != content) {
            write_content(path, content);
        }
    }
    return added;
}

} // namespace orlo::test
