// SPDX-License-Identifier: MIT
// Replacing a file at once: readers find the old one or the complete new one, also after a power
// failure.
#pragma once

#include "file.h"

#include <climits>
#include <string_view>
#include <sys/stat.h>

namespace uci {

/// A locked temporary file that takes the place of another one, or vanishes.
class Replacement {
public:
    Replacement() = default;
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;
    ~Replacement();

    /// Creates ".NAME.uci-XXXXXX" in a directory.
    [[nodiscard]] bool create(std::string_view directory, std::string_view name);

    /// Writes the contents, gives the file exactly that mode and brings both to the disk.
    [[nodiscard]] bool write(std::string_view text, mode_t mode);

    /// Renames it over a file; symbolic links to that file stay.
    [[nodiscard]] bool publish(const char* path);

    /// Brings the new name to the disk, as far as the file system can do that.
    [[nodiscard]] bool sync_name();

    [[nodiscard]] const File& file() const { return file_; }

private:
    Path path_;
    char resolved_[PATH_MAX] = ""; // the file that was replaced
    File file_;
    bool temporary_ = false; // the file exists under its temporary name
};

} // namespace uci
