// SPDX-License-Identifier: MIT
// Reading and staging single options.
#include "orlo/exports.h"
#include "uci/context.h"

using orlo::uci::Context;
using orlo::uci::fail;
using orlo::uci::is_complete;
using orlo::uci::Path;

namespace {

constexpr size_t long_path = 512;
constexpr size_t short_path = 256;

// What differs between the wrappers that stage "package.key=value".
struct Edit {
    const char* wrapper;
    int (*apply)(uci_context*, uci_ptr*);
    struct {
        int place;
        const char* message;
    } no_input, no_memory, no_lookup, no_apply, no_save;
};

const Edit set_value = {
    "uciSetValue",
    uci_set,
    {43, "The input value are not correct.\n"},
    {50, "Out of memory.\n"},
    {58, "Failed to lookup value: %s\n"},
    {67, "Failed to set value: %s\n"},
    {76, "Failed to save value: %s\n"},
};

const Edit add_list_element = {
    "uciAddListElement",
    uci_add_list,
    {150, "The input value are not correct.\n"},
    {157, "Out of memory.\n"},
    {166, "Failed to lookup list element: %s\n"},
    {175, "Failed to add list element: %s\n"},
    {184, "Failed to save list element: %s\n"},
};

const Edit delete_list_element = {
    "uciDelListElement",
    uci_del_list,
    {204, "The input value are not correct.\n"},
    {211, "Out of memory.\n"},
    {220, "Failed to lookup list element: %s\n"},
    {229, "Failed to delete list element: %s\n"},
    {238, "Failed to save \"delete list element\": %s\n"},
};

template <size_t N>
int stage_edit(const Edit& edit, const char* package, const char* key, const char* value) {
    if (package == nullptr || key == nullptr || value == nullptr) {
        return fail(edit.wrapper, edit.no_input.place, "%s", edit.no_input.message);
    }
    Context context;
    if (!context.allocated()) {
        return fail(edit.wrapper, edit.no_memory.place, "%s", edit.no_memory.message);
    }
    Path<N> path("%s.%s=%s", package, key, value);
    uci_ptr found;
    if (!path.lookup(context, &found)) {
        return fail(edit.wrapper, edit.no_lookup.place, edit.no_lookup.message, path.text());
    }
    if (edit.apply(context, &found) != UCI_OK) {
        return fail(edit.wrapper, edit.no_apply.place, edit.no_apply.message, path.text());
    }
    if (uci_save(context, found.p) != UCI_OK) {
        return fail(edit.wrapper, edit.no_save.place, edit.no_save.message, path.text());
    }
    return 0;
}

} // namespace

int uciSetValue(const char* package, const char* key, const char* value) {
    return stage_edit<long_path>(set_value, package, key, value);
}

int uciAddListElement(const char* package, const char* key, const char* value) {
    return stage_edit<long_path>(add_list_element, package, key, value);
}

int uciDelListElement(const char* package, const char* key, const char* value) {
    return stage_edit<short_path>(delete_list_element, package, key, value);
}

int uciGetValue(const char* package, const char* key, char* out, size_t out_size) {
    if (package == nullptr || key == nullptr) {
        return fail(__func__, 95, "The input value are not correct.\n");
    }
    Context context;
    if (!context.allocated()) {
        return fail(__func__, 102, "Out of memory.\n");
    }
    Path<short_path> path("%s.%s", package, key);
    uci_ptr found;
    if (!path.lookup(context, &found)) {
        return fail(__func__, 111, "Failed to lookup value: %s\n", path.text());
    }
    if (!is_complete(found)) {
        return fail(__func__, 119, "Failed to lookup value: %s\n", path.text());
    }
    if (found.last->type != UCI_TYPE_OPTION || found.o->type != UCI_TYPE_STRING) {
        return fail(__func__, 128, "Failed to lookup value: %s\n", path.text());
    }
    if (out != nullptr) {
        strncpy(out, found.o->v.string, out_size < 256 ? out_size : 256);
    }
    return 0;
}

int uciDeleteValue(const char* package, const char* key, int must_exist) {
    if (package == nullptr || key == nullptr) {
        return fail(__func__, 340, "The input value are not correct.\n");
    }
    Context context;
    if (!context.allocated()) {
        return fail(__func__, 347, "Out of memory.\n");
    }
    Path<short_path> path("%s.%s", package, key);
    uci_ptr found;
    if (!path.lookup(context, &found)) {
        return fail(__func__, 356, "Failed to lookup value: %s\n", path.text());
    }
    if (!is_complete(found)) {
        return must_exist == 0 ? 0 : fail(__func__, 366, "Can not lookup value: %s\n", path.text());
    }
    if (uci_delete(context, &found) != UCI_OK) {
        return fail(__func__, 379, "Failed to delete.\n");
    }
    if (uci_save(context, found.p) != UCI_OK) {
        return fail(__func__, 386, "Failed to save.\n");
    }
    return 0;
}
