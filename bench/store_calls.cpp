// SPDX-License-Identifier: MIT
// Recording works by standing in front of the store: the library finds these functions before those
// of libuci.
#include "store_calls.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <uci.h>

namespace orlo::bench {

namespace {

using Kind = StoreCall::Kind;

std::vector<StoreCall>* recording = nullptr;

[[noreturn]] void give_up(const char* why) {
    fprintf(stderr, "the store's calls cannot be repeated: %s\n", why);
    exit(1);
}

void record(Kind kind, const char* text = "") {
    if (recording != nullptr) {
        recording->push_back({kind, text});
    }
}

template <class Function>
Function* behind(const char* name) {
    void* const found = dlsym(RTLD_NEXT, name);
    if (found == nullptr) {
        give_up(name);
    }
    return reinterpret_cast<Function*>(found);
}

} // namespace

std::vector<StoreCall> store_calls_of(const std::function<void()>& operation) {
    std::vector<StoreCall> calls;
    recording = &calls;
    operation();
    recording = nullptr;
    return calls;
}

void repeat(const std::vector<StoreCall>& calls) {
    uci_context* context = nullptr;
    uci_ptr found = {};
    char text[2048];
    int result = UCI_OK;
    for (const StoreCall& call : calls) {
        switch (call.kind) {
        case Kind::open:
            context = uci_alloc_context();
            break;
        case Kind::look_up:
            memcpy(text, call.text.c_str(), call.text.size() + 1);
            result = uci_lookup_ptr(context, &found, text, true);
            break;
        case Kind::set:
            result = uci_set(context, &found);
            break;
        case Kind::add_to_list:
            result = uci_add_list(context, &found);
            break;
        case Kind::erase:
            result = uci_delete(context, &found);
            break;
        case Kind::save:
            result = uci_save(context, found.p);
            break;
        case Kind::close:
            uci_free_context(context);
            break;
        }
        if (result != UCI_OK) {
            give_up(call.text.c_str());
        }
    }
}

std::string as_script(const std::vector<StoreCall>& calls) {
    std::string script;
    std::string text;
    for (const StoreCall& call : calls) {
        const char* verb = call.kind == Kind::set           ? "set"
                           : call.kind == Kind::add_to_list ? "add_list"
                           : call.kind == Kind::erase       ? "delete"
                                                            : nullptr;
        if (call.kind == Kind::look_up) {
            text = call.text;
        } else if (verb != nullptr) {
            script.append("uci ").append(verb).append(" '").append(text).append("'\n");
        }
    }
    return script;
}

} // namespace orlo::bench

using orlo::bench::behind;
using orlo::bench::give_up;
using orlo::bench::record;
using orlo::bench::recording;
using Kind = orlo::bench::StoreCall::Kind;

#define BEHIND(function) behind<decltype(::function)>(#function)

extern "C" {

uci_context* uci_alloc_context() {
    static auto* const next = BEHIND(uci_alloc_context);
    record(Kind::open);
    return next();
}

void uci_free_context(uci_context* context) {
    static auto* const next = BEHIND(uci_free_context);
    record(Kind::close);
    next(context);
}

int uci_lookup_ptr(uci_context* context, uci_ptr* found, char* text, bool extended) {
    static auto* const next = BEHIND(uci_lookup_ptr);
    if (!extended) {
        give_up("a lookup that is not extended");
    }
    record(Kind::look_up, text);
    return next(context, found, text, extended);
}

int uci_set(uci_context* context, uci_ptr* found) {
    static auto* const next = BEHIND(uci_set);
    record(Kind::set);
    return next(context, found);
}

int uci_add_list(uci_context* context, uci_ptr* found) {
    static auto* const next = BEHIND(uci_add_list);
    record(Kind::add_to_list);
    return next(context, found);
}

int uci_delete(uci_context* context, uci_ptr* found) {
    static auto* const next = BEHIND(uci_delete);
    record(Kind::erase);
    return next(context, found);
}

int uci_save(uci_context* context, uci_package* package) {
    static auto* const next = BEHIND(uci_save);
    record(Kind::save);
    return next(context, package);
}

int uci_revert(uci_context* context, uci_ptr* found) {
    static auto* const next = BEHIND(uci_revert);
    if (recording != nullptr) {
        give_up("the operation has failed and reverts");
    }
    return next(context, found);
}

} // extern "C"
