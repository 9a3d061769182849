// SPDX-License-Identifier: MIT
// The data model: contexts, packages, sections and options, and the basic steps that change them.
// Nothing here records a change or touches a file. All texts handed in must live as long as the
// package, that is, lie in its arena.
#pragma once

#include "arena.h"
#include "index.h"
#include "list.h"
#include "uci.h"

#include <cstddef>
#include <string_view>

namespace uci {

struct Context : uci_context {
    uci_element default_delta_path; // the first element of delta_path

    // The last configuration file that did not parse; reason is nullptr when it did.
    const char* parse_reason;
    size_t parse_line;
};

struct Package : uci_package {
    Arena arena;
    size_t elements = 0;   // sections and options that have been made
    unsigned searches = 0; // before there was an index
    Index index;
};

inline Context& own(uci_context* ctx) {
    return *static_cast<Context*>(ctx);
}
inline Package& own(uci_package* p) {
    return *static_cast<Package*>(p);
}

/// Remembers a result for uci_perror.
inline int finish(uci_context* ctx, int code) {
    ctx->err = code;
    return code;
}

/// An empty package that belongs to no context's list yet, nullptr when out of memory.
/// @param memory  how much its contents will take, about
Package* create_package(uci_context* ctx, std::string_view name, std::string_view path,
                        size_t memory);

/// Frees a package that is in no list.
void destroy_package(Package* package);

/// Puts a package into the context, in the place of an older one if there is such.
void install_package(uci_context* ctx, Package& package, Package* replaced);

uci_section* find_section(Package& package, std::string_view name);
uci_option* find_option(Package& package, uci_section& section, std::string_view name);

/// A new section, the last one. nullptr when out of memory; nothing is changed then.
/// @param name  nullptr generates one for an anonymous section.
uci_section* add_section(Package& package, char* type, char* name);

/// A new option, the last one, that has no value yet (a string of nullptr). nullptr when out of
/// memory; nothing is changed then.
/// @param name  that no other option of the section has, ended by NUL
inline uci_option* add_option(Package& package, uci_section& section, std::string_view name) {
    if (package.index.in_use() && !package.index.make_room(package.arena)) {
        return nullptr;
    }
    auto* const option = package.arena.make<uci_option>();
    if (!option) {
        return nullptr;
    }
    option->e.type = UCI_TYPE_OPTION;
    option->e.name = const_cast<char*>(name.data());
    option->section = &section;
    list_append(section.options, option->e.list);
    package.elements++;
    if (package.index.in_use()) {
        package.index.insert(option->e);
    }
    return option;
}

/// The option of that name, a new one if there is none yet.
uci_option* obtain_option(Package& package, uci_section& section, std::string_view name);

/// Appends to an option, which becomes a list if it is none. False when out of memory; nothing is
/// changed then.
[[nodiscard]] bool append_item(Package& package, uci_option& option, char* text);

void set_string(uci_option& option, char* value);
void remove_option(Package& package, uci_option& option);
void remove_section(Package& package, uci_section& section);

/// Gives a section or option a name that none of its neighbours has.
void rename(Package& package, uci_element& element, char* name);

/// Moves a section to a position counted from 0; beyond the end is last.
void move_section(Package& package, uci_section& section, size_t position);

} // namespace uci
