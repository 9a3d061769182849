// SPDX-License-Identifier: MIT
// Listing the packages of the configuration directory.
#include "arena.h"
#include "file.h"
#include "model.h"
#include "text.h"

#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <sys/stat.h>

namespace uci {

namespace {

class Directory {
public:
    explicit Directory(const char* path) : directory_(opendir(path)) {}
    Directory(const Directory&) = delete;
    Directory& operator=(const Directory&) = delete;
    ~Directory() {
        if (directory_) {
            closedir(directory_);
        }
    }

    /// nullptr at the end, and when the directory could not be opened.
    dirent* next() { return directory_ ? readdir(directory_) : nullptr; }

private:
    DIR* directory_;
};

struct Names {
    struct Name {
        Name* next;
        char* text;
    };
    Arena arena;
    Name* first = nullptr;
    size_t count = 0;
    size_t bytes = 0; // of all texts with their ends
};

bool is_directory(const char* parent, const dirent& entry) {
    if (entry.d_type != DT_UNKNOWN && entry.d_type != DT_LNK) {
        return entry.d_type == DT_DIR;
    }
    struct stat info {};
    const Path path(parent, entry.d_name);
    return stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

/// A name that a lookup can name and that belongs to no directory.
bool is_package(const char* parent, const dirent& entry) {
    return is_package_name(entry.d_name) && !strchr(entry.d_name, '.') &&
           !is_directory(parent, entry);
}

bool add(Names& names, const char* text) {
    auto* const name = names.arena.make<Names::Name>();
    char* const copy = name ? names.arena.copy(text) : nullptr;
    if (!copy) {
        return false;
    }
    *name = {names.first, copy};
    names.first = name;
    names.count++;
    names.bytes += strlen(text) + 1;
    return true;
}

int collect(const char* path, Names& names) {
    bool empty = true;
    Directory directory(path);
    while (const dirent* const entry = directory.next()) {
        empty = empty && entry->d_name[0] == '.';
        if (is_package(path, *entry) && !add(names, entry->d_name)) {
            return UCI_ERR_MEM;
        }
    }
    return empty ? UCI_ERR_NOTFOUND : UCI_OK;
}

int compare(const void* a, const void* b) {
    return strcmp(*static_cast<const char* const*>(a), *static_cast<const char* const*>(b));
}

/// One block: the array of pointers, then the texts.
char** pack(const Names& names) {
    const size_t table = (names.count + 1) * sizeof(char*);
    auto** const list = static_cast<char**>(malloc(table + names.bytes));
    if (!list) {
        return nullptr;
    }
    char* text = reinterpret_cast<char*>(list) + table;
    size_t i = 0;
    for (const Names::Name* name = names.first; name; name = name->next) {
        const size_t size = strlen(name->text) + 1;
        memcpy(text, name->text, size);
        list[i++] = text;
        text += size;
    }
    list[i] = nullptr;
    qsort(list, names.count, sizeof(*list), compare);
    return list;
}

} // namespace

} // namespace uci

int uci_list_configs(uci_context* ctx, char*** list) {
    if (!ctx) {
        return UCI_ERR_INVAL;
    }
    if (!list) {
        return uci::finish(ctx, UCI_ERR_INVAL);
    }
    uci::Names names;
    int code = uci::collect(ctx->confdir, names);
    if (code == UCI_OK) {
        *list = uci::pack(names);
        code = *list ? UCI_OK : UCI_ERR_MEM;
    }
    return uci::finish(ctx, code);
}
