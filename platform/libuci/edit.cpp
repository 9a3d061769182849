// SPDX-License-Identifier: MIT
#include "edit.h"

#include "list.h"
#include "lookup.h"
#include "text.h"

#include <cstdlib>
#include <cstring>

namespace uci {

namespace {

bool exists(const uci_ptr& at) {
    return at.option ? at.o != nullptr : at.s != nullptr;
}

char* value_of(const uci_ptr& at) {
    return const_cast<char*>(at.value);
}

void remove_target(Package& package, uci_ptr& at) {
    if (at.option) {
        remove_option(package, *at.o);
    } else {
        remove_section(package, *at.s);
        at.s = nullptr;
    }
    at.o = nullptr;
}

int set_option(Package& package, uci_ptr& at, Change& change) {
    if (!at.o) {
        at.o = obtain_option(package, *at.s, at.option);
        if (!at.o) {
            return UCI_ERR_MEM;
        }
    } else if (at.o->type == UCI_TYPE_STRING && strcmp(at.o->v.string, at.value) == 0) {
        return UCI_OK;
    }
    set_string(*at.o, value_of(at));
    change = {true, UCI_CMD_CHANGE, value_of(at)};
    return UCI_OK;
}

int set_type(Package& package, uci_ptr& at, Change& change) {
    if (!is_type(at.value)) {
        return UCI_ERR_INVAL;
    }
    if (!at.s) {
        at.s = add_section(package, value_of(at), const_cast<char*>(at.section));
        if (!at.s) {
            return UCI_ERR_MEM;
        }
    } else if (strcmp(at.s->type, at.value) == 0) {
        return UCI_OK;
    } else {
        // Its generated name no longer fits the type, so an anonymous section becomes a named one;
        // it has always stayed anonymous when the length of the type stays.
        if (strlen(at.s->type) != strlen(at.value)) {
            at.s->anonymous = false;
        }
        at.s->type = value_of(at);
    }
    change = {true, UCI_CMD_CHANGE, value_of(at)};
    return UCI_OK;
}

int delete_item(uci_option& option, char* index, Change& change) {
    char* end = nullptr;
    const long wanted = strtol(index, &end, 10);
    if (end == index) {
        return UCI_ERR_MEM; // the code that callers know for "not a number"
    }
    long i = 0;
    for (uci_element& item : Elements(option.v.list)) {
        if (i++ == wanted) {
            list_remove(item.list);
            change = {true, UCI_CMD_REMOVE, index};
            break;
        }
    }
    return UCI_OK;
}

/// The record for a change at that place, without its command; the texts are copied.
uci_delta* prepare_record(Package& package, const uci_ptr& ptr) {
    auto* const record = package.arena.make<uci_delta>();
    if (!record) {
        return nullptr;
    }
    record->e.type = UCI_TYPE_DELTA;
    const struct {
        const char* text;
        char* known; // the same text, owned by the package already
        char*& copy;
    } texts[] = {
        {ptr.section, ptr.s ? ptr.s->e.name : nullptr, record->section},
        {ptr.option, ptr.o ? ptr.o->e.name : nullptr, record->e.name},
        {ptr.value, nullptr, record->value},
    };
    for (const auto& entry : texts) {
        entry.copy = !entry.text || entry.known ? entry.known : package.arena.copy(entry.text);
        if (entry.text && !entry.copy) {
            return nullptr;
        }
    }
    return record;
}

/// Looks the reference up if that has not been done, takes the step and records the change.
int edit(uci_context* ctx, uci_ptr* ptr, EditStep step) {
    if (!ctx) {
        return UCI_ERR_INVAL;
    }
    int code = look_up_once(ctx, ptr);
    if (code != UCI_OK) {
        return finish(ctx, code);
    }
    Package& package = own(ptr->p);
    const Arena::Mark mark = package.arena.mark();
    uci_delta* const record = prepare_record(package, *ptr);
    if (!record) {
        return finish(ctx, UCI_ERR_MEM);
    }
    uci_ptr at = *ptr;
    at.section = record->section;
    at.option = record->e.name;
    at.value = record->value;
    Change change;
    code = step(package, at, change);
    if (change.made) {
        record->cmd = change.command;
        record->value = change.value;
        list_append(package.delta, record->e.list);
    } else if (code != UCI_ERR_MEM) {
        package.arena.rewind(mark);
    }
    ptr->s = at.s;
    ptr->o = at.o;
    return finish(ctx, code);
}

} // namespace

int edit_set(Package& package, uci_ptr& at, Change& change) {
    if (!at.value || !at.section || (at.option && !at.s)) {
        return UCI_ERR_INVAL;
    }
    if (*at.value) {
        return at.option ? set_option(package, at, change) : set_type(package, at, change);
    }
    if (exists(at)) {
        remove_target(package, at);
        change = {true, UCI_CMD_REMOVE, nullptr};
    }
    return UCI_OK;
}

int edit_add_list(Package& package, uci_ptr& at, Change& change) {
    if (!at.value || !at.s) {
        return UCI_ERR_INVAL;
    }
    if (at.option) {
        uci_option* const option = at.o ? at.o : obtain_option(package, *at.s, at.option);
        if (!option) {
            return UCI_ERR_MEM;
        }
        if (!append_item(package, *option, value_of(at))) {
            if (!at.o) {
                remove_option(package, *option);
            }
            return UCI_ERR_MEM;
        }
        at.o = option;
    }
    // Without an option there is nothing to append to, but the call has always been recorded.
    change = {true, UCI_CMD_LIST_ADD, value_of(at)};
    return UCI_OK;
}

int edit_del_list(Package& /*package*/, uci_ptr& at, Change& change) {
    if (!at.value || !at.s) {
        return UCI_ERR_INVAL;
    }
    if (!at.o || at.o->type != UCI_TYPE_LIST) {
        return UCI_OK;
    }
    uci_element* item = nullptr;
    uci_element* next = nullptr;
    uci_foreach_element_safe(&at.o->v.list, next, item) {
        if (strcmp(item->name, at.value) == 0) {
            list_remove(item->list);
        }
    }
    change = {true, UCI_CMD_LIST_DEL, value_of(at)};
    return UCI_OK;
}

int edit_delete(Package& package, uci_ptr& at, Change& change) {
    if (!at.section) {
        return UCI_ERR_INVAL;
    }
    if (!exists(at)) {
        return UCI_ERR_NOTFOUND;
    }
    if (at.o && at.o->type == UCI_TYPE_LIST && at.value && *at.value) {
        return delete_item(*at.o, value_of(at), change);
    }
    remove_target(package, at);
    change = {true, UCI_CMD_REMOVE, nullptr};
    return UCI_OK;
}

int edit_rename(Package& package, uci_ptr& at, Change& /*change*/) {
    if (!exists(at)) {
        return UCI_ERR_NOTFOUND;
    }
    uci_element& element = at.option ? at.o->e : at.s->e;
    const uci_element* other = nullptr;
    if (at.option) {
        const uci_option* const option = find_option(package, *at.s, at.value);
        other = option ? &option->e : nullptr;
    } else {
        const uci_section* const section = find_section(package, at.value);
        other = section ? &section->e : nullptr;
    }
    if (other && other != &element) {
        return UCI_ERR_DUPLICATE; // two of a name would make the file unreadable
    }
    rename(package, element, value_of(at));
    if (!at.option) {
        at.s->anonymous = false;
    }
    return UCI_OK;
}

int edit_reorder(Package& package, uci_ptr& at, Change& /*change*/) {
    if (!at.s) {
        return UCI_ERR_NOTFOUND;
    }
    move_section(package, *at.s, strtoul(at.value, nullptr, 10));
    return UCI_OK;
}

} // namespace uci

int uci_set(uci_context* ctx, uci_ptr* ptr) {
    return uci::edit(ctx, ptr, uci::edit_set);
}

int uci_add_list(uci_context* ctx, uci_ptr* ptr) {
    return uci::edit(ctx, ptr, uci::edit_add_list);
}

int uci_del_list(uci_context* ctx, uci_ptr* ptr) {
    return uci::edit(ctx, ptr, uci::edit_del_list);
}

int uci_delete(uci_context* ctx, uci_ptr* ptr) {
    return uci::edit(ctx, ptr, uci::edit_delete);
}
