// SPDX-License-Identifier: MIT
#include "model.h"

#include "list.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace uci {

namespace {

// Programs may have been compiled against these sizes.
static_assert(sizeof(void*) != 8 || sizeof(uci_element) == 32);
static_assert(sizeof(void*) != 8 || sizeof(uci_package) == 128);
static_assert(sizeof(void*) != 8 || sizeof(uci_section) == 72);
static_assert(sizeof(void*) != 8 || sizeof(uci_option) == 64);
static_assert(sizeof(void*) != 8 || sizeof(uci_delta) == 56);
static_assert(sizeof(void*) != 8 || sizeof(uci_ptr) == 72);

/// "cfg", the number of the section in two or more hex digits, and four hex digits that depend on
/// the type: the same file always gives the same names, whatever the options are.
char* generate_name(Package& package, const char* type) {
    uint32_t hash = 5381;
    for (const char* c = type; *c; c++) {
        hash = hash * 33 + static_cast<unsigned char>(*c);
    }
    char name[32];
    const int size = snprintf(name, sizeof(name), "cfg%02x%04x",
                              static_cast<unsigned>(package.n_section), hash & 0xffff);
    return package.arena.copy({name, static_cast<size_t>(size)});
}

uci_element* create_item(Package& package, char* text) {
    auto* const item = package.arena.make<uci_element>();
    if (item) {
        item->type = UCI_TYPE_ITEM;
        item->name = text;
    }
    return item;
}

/// So many searches are done before making an index would have been faster.
constexpr unsigned kSearchesWithoutIndex = 16;

/// Without memory for it there is none.
void make_index(Package& package) {
    if (!package.index.reserve(package.arena, package.elements)) {
        return;
    }
    for (uci_element& section : Elements(package.sections)) {
        package.index.insert(section);
        for (uci_element& option : Elements(uci_to_section(&section)->options)) {
            package.index.insert(option);
        }
    }
}

uci_element* find(Package& package, const void* owner, uci_list& list, std::string_view name) {
    if (!package.index.in_use() && package.searches++ >= kSearchesWithoutIndex) {
        make_index(package);
    }
    if (package.index.in_use()) {
        return package.index.find(owner, name);
    }
    for (uci_element& element : Elements(list)) {
        if (name == element.name) {
            return &element;
        }
    }
    return nullptr;
}

} // namespace

Package* create_package(uci_context* ctx, std::string_view name, std::string_view path,
                        size_t memory) {
    void* const place = malloc(sizeof(Package));
    if (!place) {
        return nullptr;
    }
    auto* const package = new (place) Package{};
    package->e.type = UCI_TYPE_PACKAGE;
    package->ctx = ctx;
    package->has_delta = true;
    list_init(package->e.list);
    list_init(package->sections);
    list_init(package->delta);
    list_init(package->saved_delta);
    if (package->arena.reserve(memory)) {
        package->e.name = package->arena.copy(name);
        package->path = package->arena.copy(path);
    }
    if (!package->e.name || !package->path) {
        destroy_package(package);
        return nullptr;
    }
    return package;
}

void destroy_package(Package* package) {
    package->~Package();
    free(package);
}

void install_package(uci_context* ctx, Package& package, Package* replaced) {
    if (!replaced) {
        list_append(ctx->root, package.e.list);
        return;
    }
    list_insert_before(replaced->e.list, package.e.list);
    list_remove(replaced->e.list);
    destroy_package(replaced);
}

uci_section* find_section(Package& package, std::string_view name) {
    uci_element* const found =
        find(package, static_cast<const uci_package*>(&package), package.sections, name);
    return found ? uci_to_section(found) : nullptr;
}

uci_option* find_option(Package& package, uci_section& section, std::string_view name) {
    uci_element* const found = find(package, &section, section.options, name);
    return found ? uci_to_option(found) : nullptr;
}

uci_section* add_section(Package& package, char* type, char* name) {
    if (package.index.in_use() && !package.index.make_room(package.arena)) {
        return nullptr;
    }
    auto* const section = package.arena.make<uci_section>();
    if (!section) {
        return nullptr;
    }
    package.n_section++;
    section->e.type = UCI_TYPE_SECTION;
    section->e.name = name ? name : generate_name(package, type);
    if (!section->e.name) {
        package.n_section--;
        return nullptr;
    }
    section->anonymous = name == nullptr;
    section->type = type;
    section->package = &package;
    list_init(section->options);
    list_append(package.sections, section->e.list);
    package.elements++;
    if (package.index.in_use()) {
        package.index.insert(section->e);
    }
    return section;
}

uci_option* obtain_option(Package& package, uci_section& section, std::string_view name) {
    uci_option* const option = find_option(package, section, name);
    return option ? option : add_option(package, section, name);
}

bool append_item(Package& package, uci_option& option, char* text) {
    uci_element* const item = create_item(package, text);
    uci_element* first = nullptr;
    if (option.type == UCI_TYPE_STRING && option.v.string) {
        first = create_item(package, option.v.string);
        if (!first) {
            return false;
        }
    }
    if (!item) {
        return false;
    }
    if (option.type == UCI_TYPE_STRING) {
        option.type = UCI_TYPE_LIST;
        list_init(option.v.list);
    }
    if (first) {
        list_append(option.v.list, first->list);
    }
    list_append(option.v.list, item->list);
    return true;
}

void set_string(uci_option& option, char* value) {
    option.type = UCI_TYPE_STRING;
    option.v.string = value;
}

void remove_option(Package& package, uci_option& option) {
    if (package.index.in_use()) {
        package.index.erase(option.e);
    }
    list_remove(option.e.list);
}

void remove_section(Package& package, uci_section& section) {
    if (package.index.in_use()) {
        for (uci_element& option : Elements(section.options)) {
            package.index.erase(option);
        }
        package.index.erase(section.e);
    }
    list_remove(section.e.list);
}

void rename(Package& package, uci_element& element, char* name) {
    if (package.index.in_use()) {
        package.index.erase(element);
    }
    element.name = name;
    if (package.index.in_use()) {
        package.index.insert(element);
    }
}

void move_section(Package& package, uci_section& section, size_t position) {
    list_remove(section.e.list);
    uci_list* place = package.sections.next;
    while (position > 0 && place != &package.sections) {
        place = place->next;
        position--;
    }
    list_insert_before(*place, section.e.list);
}

} // namespace uci
