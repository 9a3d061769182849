// SPDX-License-Identifier: MIT
// The configuration store's calls, as far as the library uses them: options hold what the input
// says, changes are forgotten.
#include "device/outside.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <uci.h>

namespace {

// A context with its one package, one section and one option, which every lookup finds there.
struct Session {
    uci_context context = {};
    uci_package package = {};
    uci_section section = {};
    uci_option option = {};
    std::string value;
    std::string package_name;

    Session() {
        package.delta.next = package.delta.prev = &package.delta;
        package.saved_delta.next = package.saved_delta.prev = &package.saved_delta;
        package.e.type = UCI_TYPE_PACKAGE;
        section.e.type = UCI_TYPE_SECTION;
        option.e.type = UCI_TYPE_OPTION;
        option.type = UCI_TYPE_STRING;
    }
};

Session& session_of(uci_context* context) {
    return *reinterpret_cast<Session*>(context); // its first member
}

// Cuts at the character, and returns what stands behind it.
char* cut(char* text, char at) {
    char* const found = text == nullptr ? nullptr : strchr(text, at);
    if (found == nullptr) {
        return nullptr;
    }
    *found = '\0';
    return found + 1;
}

} // namespace

extern "C" {

uci_context* uci_alloc_context() {
    return &(new Session)->context;
}

void uci_free_context(uci_context* context) {
    delete &session_of(context);
}

int uci_lookup_ptr(uci_context* context, uci_ptr* found, char* text, bool /*extended*/) {
    Session& session = session_of(context);
    const std::string question = std::string("get ") + text;
    *found = {};
    found->value = cut(text, '=');
    found->package = text;
    found->section = cut(text, '.');
    found->option =
        found->section == nullptr ? nullptr : cut(const_cast<char*>(found->section), '.');
    session.package_name = text;
    session.package.e.name = session.package_name.data();
    found->p = &session.package;
    found->s = found->section == nullptr ? nullptr : &session.section;
    found->last = found->section == nullptr ? &session.package.e : &session.section.e;
    int flags = uci_ptr::UCI_LOOKUP_DONE;
    flags |= found->option == nullptr ? uci_ptr::UCI_LOOKUP_COMPLETE : 0;
    const std::string* const answer =
        found->value == nullptr ? fuzz::answering()->answer(question) : nullptr;
    if (answer != nullptr && found->option != nullptr) {
        session.value = fuzz::Input::without_line_end(*answer);
        session.value.resize(strlen(session.value.c_str()));
        session.option.v.string = session.value.data();
        found->o = &session.option;
        found->last = &session.option.e;
        flags |= uci_ptr::UCI_LOOKUP_COMPLETE;
    }
    found->flags = static_cast<decltype(found->flags)>(flags);
    return UCI_OK;
}

int uci_set(uci_context* /*context*/, uci_ptr* /*found*/) {
    return UCI_OK;
}

int uci_add_list(uci_context* /*context*/, uci_ptr* /*found*/) {
    return UCI_OK;
}

int uci_del_list(uci_context* /*context*/, uci_ptr* /*found*/) {
    return UCI_OK;
}

int uci_delete(uci_context* /*context*/, uci_ptr* /*found*/) {
    return UCI_OK;
}

int uci_save(uci_context* /*context*/, uci_package* /*package*/) {
    return UCI_OK;
}

int uci_commit(uci_context* /*context*/, uci_package** /*package*/, bool /*overwrite*/) {
    return UCI_OK;
}

int uci_revert(uci_context* /*context*/, uci_ptr* /*found*/) {
    return UCI_OK;
}

int uci_unload(uci_context* /*context*/, uci_package* /*package*/) {
    return UCI_OK;
}

int uci_list_configs(uci_context* /*context*/, char*** names) {
    static const char name[] = "wireless";
    auto* const block = static_cast<char**>(malloc(2 * sizeof(char*) + sizeof name));
    if (block == nullptr) {
        return UCI_ERR_MEM;
    }
    block[0] = reinterpret_cast<char*>(block + 2);
    block[1] = nullptr;
    memcpy(block[0], name, sizeof name);
    *names = block;
    return UCI_OK;
}

} // extern "C"
