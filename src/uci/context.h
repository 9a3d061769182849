// SPDX-License-Identifier: MIT
// One use of the configuration store: a context that lives for one lookup and one action, so that
// every call sees what is on disk now. Failures go to standard error with a number that tells the
// place: "uciSetValue (58): Failed to lookup value: wireless.wifi0.channel=36".
#pragma once

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <uci.h>

namespace orlo::uci {

class Context {
public:
    Context() : context_(uci_alloc_context()) {}
    ~Context() {
        if (context_ != nullptr) {
            uci_free_context(context_);
        }
    }
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;

    bool allocated() const { return context_ != nullptr; }
    operator uci_context*() const { return context_; }

private:
    uci_context* context_;
};

// "package.section.option=value", or its beginning, as the store looks it up. The store cuts the
// text it is given into pieces, so a message needs the copy that stays whole.
template <size_t N>
class Path {
public:
    __attribute__((format(printf, 2, 3))) explicit Path(const char* format, ...) {
        va_list arguments;
        va_start(arguments, format);
        vsnprintf(text_, N, format, arguments);
        va_end(arguments);
        memcpy(pieces_, text_, N);
    }

    bool lookup(uci_context* context, uci_ptr* found) {
        return uci_lookup_ptr(context, found, pieces_, true) == UCI_OK;
    }
    const char* text() const { return text_; }

private:
    char text_[N] = {};
    char pieces_[N];
};

// The names of all packages, released with the scope.
class PackageNames {
public:
    explicit PackageNames(uci_context* context)
        : listed_(uci_list_configs(context, &names_) == UCI_OK && names_ != nullptr) {}
    ~PackageNames() { free(names_); }
    PackageNames(const PackageNames&) = delete;
    PackageNames& operator=(const PackageNames&) = delete;

    bool listed() const { return listed_; }
    bool empty() const { return names_ == nullptr || names_[0] == nullptr; }
    char** begin() const { return names_; }

private:
    char** names_ = nullptr;
    bool listed_;
};

// Reports a failure of a wrapper at a place in it; returns the wrapper's result.
__attribute__((format(printf, 3, 4))) inline int fail(const char* wrapper, int place,
                                                      const char* format, ...) {
    fprintf(stderr, "%s (%d): ", wrapper, place);
    va_list arguments;
    va_start(arguments, format);
    vfprintf(stderr, format, arguments);
    va_end(arguments);
    return -1;
}

inline bool is_complete(const uci_ptr& found) {
    return (found.flags & uci_ptr::UCI_LOOKUP_COMPLETE) != 0;
}

} // namespace orlo::uci
