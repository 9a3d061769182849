// SPDX-License-Identifier: MIT
// enter(): tries the forms in turn, each in a keeper of its own, because a process that failed half
// way into namespaces cannot come back; then waits outside.
#include "enter/virtual_ap.h"

#include "enter/files.h"
#include "enter/forms.h"
#include "enter/process.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <fcntl.h>
#include <iterator>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orlo::device {

const char* const marker_file = "/etc/virtual-ap";
const DeviceFile device_files[6] = {{"null", 1, 3},   {"zero", 1, 5},    {"full", 1, 7},
                                    {"random", 1, 8}, {"urandom", 1, 9}, {"tty", 5, 0}};

namespace {

constexpr int status_impossible = 77; ///< test drivers take it for "skipped"
constexpr int status_wrong_use = 2;
constexpr char entered[] = "entered";

constexpr const char* program_folders[] = {"bin", "sbin", "usr", "lib", "lib64"};
constexpr const char* mount_points[] = {"dev", "mnt", "proc", "tmp"};

template <size_t N>
bool contains(const char* const (&names)[N], const std::string& name) {
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

/// How the process inside tells the caller that it is there, or why it is not.
class Report {
public:
    Report() { check(pipe2(ends_, O_CLOEXEC), "pipe"); }
    ~Report() {
        close_end(0);
        close_end(1);
    }
    Report(const Report&) = delete;
    Report& operator=(const Report&) = delete;

    void send(const std::string& text) {
        const ssize_t ignored = write(ends_[1], text.data(), text.size());
        static_cast<void>(ignored);
    }

    std::string receive() {
        close_end(1);
        std::string text;
        char buffer[256];
        ssize_t got = 0;
        while (text != entered && (got = read(ends_[0], buffer, sizeof buffer)) > 0) {
            text.append(buffer, static_cast<size_t>(got));
        }
        return text;
    }

private:
    void close_end(int end) {
        if (ends_[end] >= 0) {
            close(ends_[end]);
            ends_[end] = -1;
        }
    }
    int ends_[2] = {-1, -1};
};

using Form = void (*)(const Entry&, pid_t);

/// Returns nothing in the process inside, and the reason in the caller when the form failed. When
/// it worked, the caller waits here and ends.
std::string attempt(Form form, const Entry& entry) {
    const SignalsHeld held;
    Report report;
    const pid_t caller = getpid();
    fflush(nullptr);
    const pid_t keeper = fork();
    check(keeper, "fork");
    if (keeper == 0) {
        try {
            form(entry, caller);
            report.send(entered);
            return "";
        } catch (const std::exception& failure) {
            report.send(failure.what());
            _exit(status_impossible);
        }
    }
    const std::string text = report.receive();
    if (text == entered) {
        _exit(wait_for(keeper, Wait::ForChild));
    }
    waitpid(keeper, nullptr, 0);
    return text.empty() ? "ended too early" : text;
}

[[noreturn]] void refuse(const std::string& reason, int status) {
    throw NoAccessPoint("cannot enter the virtual access point: " + reason, status);
}

[[noreturn]] void end(const NoAccessPoint& reason) {
    fprintf(stderr, "%s\n", reason.what());
    _exit(reason.status);
}

struct Wanted {
    bool namespaces = true;
    bool chroot = true;
};

Wanted wanted_forms(const Entry& entry) {
    const char* only = getenv("ORLO_VIRTUAL_AP");
    if (only == nullptr || *only == '\0') {
        return {!entry.force_chroot, true};
    }
    if (strcmp(only, "chroot") == 0) {
        return {false, true};
    }
    if (strcmp(only, "namespaces") == 0) {
        return {true, false};
    }
    refuse(std::string("ORLO_VIRTUAL_AP is \"") + only + "\", not \"namespaces\" or \"chroot\"",
           status_wrong_use);
}

std::string real_path(const std::string& path) {
    char resolved[PATH_MAX];
    if (realpath(path.c_str(), resolved) == nullptr) {
        refuse(path + ": " + strerror(errno), status_wrong_use);
    }
    return resolved;
}

std::string program_folder() {
    const std::string program = real_path("/proc/self/exe");
    return program.substr(0, program.rfind('/'));
}

Entry resolved(const Entry& entry) {
    Entry result = entry;
    result.root = real_path(entry.root);
    for (std::string& folder : result.visible) {
        folder = real_path(folder);
    }
    if (access((result.root + marker_file).c_str(), F_OK) != 0) {
        refuse(result.root + " is not a device root", status_wrong_use);
    }
    return result;
}

void make_at_home() {
    setenv("PATH", "/usr/sbin:/usr/bin:/sbin:/bin", 1);
    setenv("HOME", "/", 1);
    for (const char* name : {"ORLO_VIRTUAL_AP", "TMPDIR", "ENV", "LD_LIBRARY_PATH"}) {
        unsetenv(name);
    }
    umask(022);
}

/// The causes of both forms in one sentence, and what would help.
std::string join_causes(const std::string& namespaces, const std::string& chroot) {
    std::string text;
    if (!namespaces.empty()) {
        text = "no user namespaces (" + namespaces + ")";
    }
    if (!chroot.empty()) {
        text += (text.empty() ? "" : " and ") + std::string("no chroot (") + chroot + ")";
    }
    return text + "; run it as root, or let ordinary users create user namespaces";
}

} // namespace

bool holds_programs(const std::string& folder) {
    return contains(program_folders, folder);
}

bool is_mount_point(const std::string& folder) {
    return contains(mount_points, folder);
}

Entry entry_beside_program() {
    try {
        const std::string folder = program_folder();
        return {folder + "/device-root", {folder}, false};
    } catch (const NoAccessPoint& reason) {
        end(reason);
    }
}

Entry entry_wherever_this_is() {
    if (inside()) {
        return {"/", {}, false};
    }
    const std::string folder = program_folder();
    for (const char* place : {"/device-root", "/" ORLO_DEVICE_FOLDER "/device-root"}) {
        if (access((folder + place + marker_file).c_str(), F_OK) == 0) {
            return {folder + place, {}, false};
        }
    }
    refuse("there is no device root in " + folder + " or its " ORLO_DEVICE_FOLDER,
           status_wrong_use);
}

Mode try_to_enter(const Entry& entry) {
    const Entry device = resolved(entry);
    const Wanted wanted = wanted_forms(entry);
    // A caller that ignores its children would have them reaped before they can be waited for.
    signal(SIGCHLD, SIG_DFL);
    std::string no_namespaces;
    std::string no_chroot;
    try {
        if (wanted.namespaces && (no_namespaces = attempt(enter_namespaces, device)).empty()) {
            make_at_home();
            return Mode::Namespaces;
        }
        if (wanted.chroot && (no_chroot = attempt(enter_chroot, device)).empty()) {
            make_at_home();
            return Mode::Chroot;
        }
    } catch (const std::exception& failure) {
        refuse(failure.what(), status_impossible);
    }
    refuse(join_causes(no_namespaces, no_chroot), status_impossible);
}

Mode enter(const Entry& entry) {
    try {
        return try_to_enter(entry);
    } catch (const NoAccessPoint& reason) {
        end(reason);
    }
}

bool inside() {
    return access(marker_file, F_OK) == 0;
}

} // namespace orlo::device
