// SPDX-License-Identifier: MIT
#include "marks.h"

#include "scan.h"

#include <cstdio>
#include <cstring>

namespace uci {

namespace {

/// What a mark says of a configuration file, in the form of a section's name.
struct Identity {
    explicit Identity(const struct stat& config) {
        snprintf(text, sizeof(text), "%llu_%llu_%lu",
                 static_cast<unsigned long long>(config.st_ino),
                 static_cast<unsigned long long>(config.st_mtim.tv_sec),
                 static_cast<unsigned long>(config.st_mtim.tv_nsec));
    }
    char text[64];
};

/// Nearly never: this saves looking at all records.
bool may_hold_marks(const Text& text) {
    const std::string_view mark = kMarkPackage;
    const char* const end = text.data + text.size;
    for (const char* c = text.data;; c++) {
        c = static_cast<const char*>(memchr(c, mark[0], static_cast<size_t>(end - c)));
        if (!c) {
            return false;
        }
        if (strncmp(c, mark.data(), mark.size()) == 0) {
            return true;
        }
    }
}

} // namespace

void write_mark(Buffer& out, const struct stat& config) {
    write_record(out, UCI_CMD_REMOVE, kMarkPackage, Identity(config).text, nullptr, nullptr);
}

int find_done(const Text& text, const struct stat& config, size_t& done) {
    done = 0;
    if (!may_hold_marks(text)) {
        return UCI_OK;
    }
    Arena arena;
    Text copy;
    copy.data = arena.copy({text.data, text.size}, kPadding);
    copy.size = text.size;
    if (!copy.data) {
        return UCI_ERR_MEM;
    }
    const Identity identity(config);
    RecordReader reader(copy);
    Record record;
    for (RecordKind kind = RecordKind::kUnreadable; kind != RecordKind::kEnd;) {
        kind = reader.next(record);
        if (kind == RecordKind::kRecord && is_mark(record) && record.to.section == identity.text) {
            done = reader.end();
        }
    }
    return UCI_OK;
}

} // namespace uci
