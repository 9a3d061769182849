// SPDX-License-Identifier: MIT
// Marks: what keeps a commit that is killed from losing changes or applying them twice.
//
// A commit changes two files, the configuration file and that of the staged changes, and may be
// killed in between. So before the new configuration file takes its place, a mark is appended to
// the staged changes that names it by its inode and time. To every reader the records above a mark
// are done when the configuration file is the one named, and still to be done otherwise. The mark
// is a record about a package that cannot be this one, which readers that know nothing of marks
// skip:
//
//   -!commit.INODE_SECONDS_NANOSECONDS
#pragma once

#include "buffer.h"
#include "locked_file.h"
#include "records.h"

#include <string_view>
#include <sys/stat.h>

namespace uci {

constexpr const char* kMarkPackage = "!commit";

inline bool is_mark(const Record& record) {
    return record.to.package == kMarkPackage;
}

/// Writes the mark for a configuration file.
void write_mark(Buffer& out, const struct stat& config);

/// How much of the records is done: all up to the last mark for that configuration file.
/// @return UCI_ERR_MEM
[[nodiscard]] int find_done(const Text& text, const struct stat& config, size_t& done);

} // namespace uci
