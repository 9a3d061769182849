// SPDX-License-Identifier: MIT
// The two forms of an access point. Each function is called in the keeper's process and returns
// only in the process inside; it throws std::system_error with the step that failed.
#pragma once

#include "enter/virtual_ap.h"

#include <string>
#include <sys/types.h>

namespace orlo::device {

/// Folders of the template that hold programs; all others hold what the device may change.
bool holds_programs(const std::string& folder);

/// Folders that are made, and filled otherwise, by each form.
bool is_mount_point(const std::string& folder);

/// Device files that programs inside need.
struct DeviceFile {
    const char* name;
    unsigned major;
    unsigned minor;
};
extern const DeviceFile device_files[6];

/// Where a fresh root remembers that it is one, and of which form.
extern const char* const marker_file;

void enter_namespaces(const Entry& entry, pid_t caller);
void enter_chroot(const Entry& entry, pid_t caller);

} // namespace orlo::device
