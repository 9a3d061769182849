// SPDX-License-Identifier: MIT
// The door into the virtual access point: a throw-away device root in which the library, the tools
// and the tests run as they do on an access point, without touching the machine they run on.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace orlo::device {

/// How the access point keeps the machine out.
enum class Mode {
    Namespaces, ///< own users, mounts, processes and network; programs are read-only
    Chroot,     ///< own files only, as root without the rights that reach beyond them
};

struct Entry {
    std::string root;                 ///< the template, `device-root` of the build folder
    std::vector<std::string> visible; ///< folders that can be read at their own path; in the
                                      ///< chroot form only again while the program exits
    bool force_chroot = false;        ///< as ORLO_VIRTUAL_AP=chroot in the environment does
};

/// The template and the build folder beside the running program.
Entry entry_beside_program();

/// A template that the running program finds where it is: the access point around it, as that now
/// stands; the one beside it in a build folder; the installed one. Nothing is visible beside it.
/// Throws NoAccessPoint when there is none.
Entry entry_wherever_this_is();

/// Why there can be no access point here, in one sentence, and the status with which a program
/// ends for that reason.
struct NoAccessPoint : std::runtime_error {
    NoAccessPoint(const std::string& sentence, int status)
        : std::runtime_error(sentence), status(status) {}
    int status;
};

/// Makes a fresh access point and returns inside it, in a process of its own, with "/" as working
/// directory. To be called first thing in main(), while there is one thread.
///
/// The calling process stays outside: it waits, hands signals on, ends with the status of the
/// process inside (128 + n after signal n), and nothing of the access point is left by then, no
/// file and no background process. When no form is possible, it says so in one sentence on
/// standard error and ends with status 77.
///
/// ORLO_VIRTUAL_AP=namespaces or =chroot in the environment allows only that form.
Mode enter(const Entry& entry);

/// As enter(), but throws NoAccessPoint when no form is possible.
Mode try_to_enter(const Entry& entry);

/// True in a process that runs inside an access point.
bool inside();

} // namespace orlo::device
