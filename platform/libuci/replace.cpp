// SPDX-License-Identifier: MIT
#include "replace.h"

#include "buffer.h"
#include "list.h"

#include <cstring>

namespace uci {

namespace {

void write_option(Buffer& out, uci_option& option) {
    if (option.type == UCI_TYPE_STRING) {
        (out << "\toption " << option.e.name << ' ').quote(option.v.string) << '\n';
        return;
    }
    for (const uci_element& item : Elements(option.v.list)) {
        (out << "\tlist " << option.e.name << ' ').quote(item.name) << '\n';
    }
}

void write_package(Buffer& out, const Package& package) {
    for (uci_element& element : Elements(const_cast<uci_list&>(package.sections))) {
        uci_section& section = *uci_to_section(&element);
        out << "\nconfig " << section.type;
        if (!section.anonymous) {
            (out << ' ').quote(section.e.name);
        }
        out << '\n';
        for (uci_element& option : Elements(section.options)) {
            write_option(out, *uci_to_option(&option));
        }
    }
    out << '\n';
}

/// The new file under its temporary name, complete and on the disk.
bool prepare(Replacement& fresh, const Package& package, mode_t mode, std::string_view text) {
    const char* const slash = strrchr(package.path, '/');
    const char* const name = slash ? slash + 1 : package.path;
    const std::string_view directory =
        slash ? std::string_view(package.path, static_cast<size_t>(slash - package.path)) : ".";
    return fresh.create(directory, name) && fresh.write(text, mode & 07777);
}

} // namespace

int replace_config(const Package& package, const LockedFile& config, const LockedFile& staging,
                   const Staged& staged) {
    Buffer text;
    write_package(text, package);
    if (!text.ok()) {
        return UCI_ERR_MEM;
    }
    // Both locks are kept until the end; so is that of the new file, which readers would otherwise
    // find together with records that it contains already.
    Replacement fresh;
    struct stat info {};
    if (!prepare(fresh, package, config.info.st_mode, text.text()) ||
        fstat(fresh.file().fd(), &info) != 0) {
        return UCI_ERR_IO;
    }
    const bool has_staging = staging.file.is_open();
    if ((has_staging && !mark_committed(staging, staged, info)) || !fresh.publish(package.path)) {
        if (has_staging) {
            unmark(staging, staged);
        }
        return UCI_ERR_IO;
    }
    // The records may only go when the new file is there for good, even if the power fails.
    return fresh.sync_name() && (!has_staging || empty_staging(staging)) ? UCI_OK : UCI_ERR_IO;
}

} // namespace uci
