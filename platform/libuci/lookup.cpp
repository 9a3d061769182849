// SPDX-License-Identifier: MIT
#include "lookup.h"

#include "list.h"
#include "load.h"
#include "reference.h"
#include "text.h"

#include <cstdlib>
#include <cstring>

namespace uci {

namespace {

using LookupFlags = decltype(uci_ptr::flags);

void raise(uci_ptr& ptr, LookupFlags flag) {
    ptr.flags = static_cast<LookupFlags>(ptr.flags | flag);
}

/// The texts of a reference that was filled in by hand, perhaps with a package instead of a name.
void take_given_texts(const uci_ptr& given, Reference& parts) {
    const auto view = [](const char* text) {
        return text ? std::string_view(text) : std::string_view();
    };
    parts.package = view(given.package || !given.p ? given.package : given.p->e.name);
    parts.section = view(given.section);
    parts.option = view(given.option);
    parts.value = const_cast<char*>(given.value);
    parts.plain_section = is_name(parts.section);
}

void fill(uci_ptr& ptr, const Reference& parts) {
    ptr = uci_ptr{};
    ptr.target = parts.has_option()    ? UCI_TYPE_OPTION
                 : parts.has_section() ? UCI_TYPE_SECTION
                                       : UCI_TYPE_PACKAGE;
    ptr.package = parts.package.data();
    ptr.section = parts.section.data();
    ptr.option = parts.option.data();
    ptr.value = parts.value;
    raise(ptr, uci_ptr::UCI_LOOKUP_DONE);
    if (parts.has_section() && !parts.plain_section) {
        raise(ptr, uci_ptr::UCI_LOOKUP_EXTENDED);
    }
}

/// "@TYPE[INDEX]": an empty type matches all, an empty index is 0, a negative one counts from the
/// end.
struct Position {
    std::string_view type;
    long index = 0;
};

bool parse_position(const char* text, Position& position) {
    const char* const bracket = *text == '@' ? strchr(text, '[') : nullptr;
    if (!bracket) {
        return false;
    }
    position.type = {text + 1, static_cast<size_t>(bracket - text - 1)};
    char* end = nullptr;
    position.index = strtol(bracket + 1, &end, 10);
    return strcmp(end, "]") == 0 && (position.type.empty() || is_type(position.type));
}

uci_section* find_at(Package& package, const Position& position) {
    const bool backwards = position.index < 0;
    unsigned long left = static_cast<unsigned long>(position.index);
    left = backwards ? ~left : left; // -1 is the last one
    for (uci_list* link = &package.sections;;) {
        link = backwards ? link->prev : link->next;
        if (link == &package.sections) {
            return nullptr;
        }
        uci_section* const section = uci_to_section(list_to_element(link));
        if ((position.type.empty() || position.type == section->type) && left-- == 0) {
            return section;
        }
    }
}

int find_section_of(Package& package, uci_ptr& ptr, bool extended) {
    if (!(ptr.flags & uci_ptr::UCI_LOOKUP_EXTENDED)) {
        ptr.s = find_section(package, ptr.section);
        return UCI_OK;
    }
    Position position;
    if (!extended) {
        return UCI_ERR_INVAL;
    }
    if (!parse_position(ptr.section, position)) {
        ptr = uci_ptr{};
        return UCI_ERR_INVAL;
    }
    ptr.s = find_at(package, position);
    if (ptr.s) {
        ptr.section = ptr.s->e.name;
    }
    return UCI_OK;
}

/// Finds everything that the reference names, as deep as it exists.
int resolve(Package& package, uci_ptr& ptr, bool extended) {
    ptr.p = &package;
    ptr.last = &package.e;
    if (ptr.section) {
        const int code = find_section_of(package, ptr, extended);
        if (code != UCI_OK) {
            return code;
        }
        ptr.last = ptr.s ? &ptr.s->e : ptr.last;
    }
    if (ptr.s && ptr.option) {
        ptr.o = find_option(package, *ptr.s, ptr.option);
        ptr.last = ptr.o ? &ptr.o->e : ptr.last;
    }
    if (ptr.last->type == ptr.target) {
        raise(ptr, uci_ptr::UCI_LOOKUP_COMPLETE);
    }
    return UCI_OK;
}

int look_up(uci_context* ctx, uci_ptr& ptr, char* text, bool extended) {
    Reference parts;
    own(ctx).parse_reason = nullptr;
    if (!text) {
        take_given_texts(ptr, parts);
    } else if (!split_reference(text, strlen(text), parts)) {
        ptr = uci_ptr{};
        return UCI_ERR_PARSE;
    }
    if (!parts.package.data()) {
        return UCI_ERR_INVAL;
    }
    fill(ptr, parts);
    uci_package* package = uci_lookup_package(ctx, ptr.package);
    if (!package) {
        Package* loaded = nullptr;
        const int code = load_package(ctx, ptr.package, loaded);
        if (code != UCI_OK) {
            return code;
        }
        install_package(ctx, *loaded, nullptr);
        package = loaded;
    }
    return resolve(own(package), ptr, extended);
}

} // namespace

int look_up_once(uci_context* ctx, uci_ptr* ptr) {
    if (!ptr) {
        return UCI_ERR_INVAL;
    }
    if (!(ptr->flags & uci_ptr::UCI_LOOKUP_DONE)) {
        const int code = look_up(ctx, *ptr, nullptr, true);
        if (code != UCI_OK) {
            return code;
        }
    }
    return ptr->p ? UCI_OK : UCI_ERR_INVAL;
}

} // namespace uci

int uci_lookup_ptr(uci_context* ctx, uci_ptr* ptr, char* str, bool extended) {
    if (!ctx) {
        return UCI_ERR_INVAL;
    }
    return uci::finish(ctx, ptr ? uci::look_up(ctx, *ptr, str, extended) : UCI_ERR_INVAL);
}
