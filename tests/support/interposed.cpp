// SPDX-License-Identifier: MIT
// The functions behind the door. They stand in the test program, so the library finds them before
// the real ones; calls that do not come from the library go straight on.
#include "orlo/debug.h"
#include "support/access_point.h"
#include "support/door.h"
#include "watch/interposing.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <optional>
#include <unistd.h>

using orlo::device::object_of;
using orlo::device::path_of;
using orlo::device::text_of;
using orlo::test::Call;
using orlo::test::Door;

namespace {

Door& door() {
    return Door::instance();
}

// Whether code lies in the object that holds the operations table.
bool is_library(const void* code) {
    static const void* const library = object_of(dlsym(orlo::test::vendor_library(), "Vendor_Ops"));
    return object_of(code) == library;
}
#define CALLED_BY_LIBRARY (door().is_open() && is_library(__builtin_return_address(0)))

// A store call that edits: recorded with its outcome.
template <class Function>
int edit(Call call, const char* verb, bool with_value, Function* function, uci_context* context,
         uci_ptr* found) {
    const std::string line = std::string(verb) + " " + path_of(*found) +
                             (with_value ? std::string("=") + found->value : std::string());
    const int result =
        door().should_fail(call, line.c_str()) ? UCI_ERR_IO : function(context, found);
    door().record(line + (result == UCI_OK ? "" : " (failed)"));
    return result;
}

} // namespace

extern "C" {

void orlo_agent_debug_log(int module, int level, const char* function_name, int /*line*/,
                          const char* format, ...) {
    char message[4096];
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(message, sizeof message, format, arguments);
    va_end(arguments);

    std::string line = "log ";
    if (module != 5 || level != 5) {
        line += std::to_string(module) + "/" + std::to_string(level) + " ";
    }
    line += std::string(function_name) + ": " + message;
    if (line.back() == '\n') {
        line.pop_back();
    } else {
        line += " (no line end)";
    }
    door().record(line);
}

int is_debug_module_level_enabled(int module, int level) {
    return module == 5 && level == 5 && door().debug_enabled ? 1 : 0;
}

unsigned sleep(unsigned seconds) {
    if (!CALLED_BY_LIBRARY) {
        return REAL(sleep)(seconds);
    }
    door().slept(seconds);
    return 0;
}

time_t time(time_t* stored) {
    if (!CALLED_BY_LIBRARY || door().now == 0) {
        return REAL(time)(stored);
    }
    if (stored != nullptr) {
        *stored = door().now;
    }
    return door().now;
}

#ifndef __SANITIZE_ADDRESS__
// Also called while the program is still being loaded, when nobody can tell yet who calls.
#define MEMORY_FOR_LIBRARY (door().watches_memory() && CALLED_BY_LIBRARY)

void* realloc(void* memory, size_t size) {
    static auto* const real_realloc = REAL(realloc);
    if (!MEMORY_FOR_LIBRARY) {
        return real_realloc(memory, size);
    }
    if (door().should_fail(Call::realloc)) {
        return nullptr;
    }
    door().released(memory);
    return door().allocated(real_realloc(memory, size));
}

void* calloc(size_t count, size_t size) {
    static auto* const real_calloc = REAL(calloc);
    if (!MEMORY_FOR_LIBRARY) {
        return real_calloc(count, size);
    }
    return door().should_fail(Call::calloc) ? nullptr : door().allocated(real_calloc(count, size));
}

char* strdup(const char* text) {
    static auto* const real_strdup = REAL(strdup);
    if (!MEMORY_FOR_LIBRARY) {
        return real_strdup(text);
    }
    return door().should_fail(Call::strdup, text)
               ? nullptr
               : static_cast<char*>(door().allocated(real_strdup(text)));
}

void free(void* memory) {
    static auto* const real_free = REAL(free);
    door().released(memory);
    real_free(memory);
}
#endif

int system(const char* command) {
    if (!CALLED_BY_LIBRARY) {
        return REAL(system)(command);
    }
    if (door().should_fail(Call::system, command)) {
        door().record(std::string("run ") + command + " (failed)");
        errno = EAGAIN;
        return -1;
    }
    door().record(std::string("run ") + command);
    const std::optional<int> status = door().on_run ? door().on_run(command) : std::nullopt;
    return status ? *status : REAL(system)(command);
}

FILE* popen(const char* command, const char* mode) {
    if (!CALLED_BY_LIBRARY) {
        return REAL(popen)(command, mode);
    }
    if (door().should_fail(Call::popen, command)) {
        door().record(std::string("read ") + command + " (failed)");
        errno = EMFILE;
        return nullptr;
    }
    door().record(std::string("read ") + command);
    const std::optional<std::string> output =
        door().on_read ? door().on_read(command) : std::nullopt;
    // pclose() closes any stream.
    return output ? REAL(fopen)(output->c_str(), mode) : REAL(popen)(command, mode);
}

FILE* fopen(const char* path, const char* mode) {
    if (!CALLED_BY_LIBRARY) {
        return REAL(fopen)(path, mode);
    }
    if (door().should_fail(Call::fopen, path)) {
        errno = EMFILE;
        return nullptr;
    }
    const std::string other = door().take_redirection();
    return REAL(fopen)(other.empty() ? path : other.c_str(), mode);
}

int access(const char* path, int mode) {
    if (CALLED_BY_LIBRARY && door().should_fail(Call::access, path)) {
        errno = ENOENT;
        return -1;
    }
    return REAL(access)(path, mode);
}

int open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    if (CALLED_BY_LIBRARY && door().should_fail(Call::open, path)) {
        errno = EMFILE;
        return -1;
    }
    return REAL(open)(path, flags, mode);
}

int g_file_test(const char* path, int test) {
    using Test = int(const char*, int);
    if (CALLED_BY_LIBRARY && door().should_fail(Call::g_file_test, path)) {
        return 0;
    }
    // Of the library's own dependencies, not of the program's.
    void* const next = dlsym(orlo::test::vendor_library(), "g_file_test");
    return reinterpret_cast<Test*>(next)(path, test);
}

int unlink(const char* path) {
    if (!CALLED_BY_LIBRARY) {
        return REAL(unlink)(path);
    }
    const bool fails = door().should_fail(Call::unlink, path);
    door().record(std::string("unlink ") + path + (fails ? " (failed)" : ""));
    if (fails) {
        errno = EACCES;
        return -1;
    }
    return REAL(unlink)(path);
}

pid_t fork() {
    if (!CALLED_BY_LIBRARY) {
        return REAL(fork)();
    }
    if (door().should_fail(Call::fork)) {
        door().record("fork (failed)");
        errno = EAGAIN;
        return -1;
    }
    return door().fork_with(REAL(fork));
}

int socket(int domain, int type, int protocol) {
    if (CALLED_BY_LIBRARY && door().should_fail(Call::socket)) {
        errno = EMFILE;
        return -1;
    }
    return REAL(socket)(domain, type, protocol);
}

ssize_t sendto(int socket, const void* data, size_t size, int flags, const sockaddr* to,
               socklen_t to_size) {
    if (!CALLED_BY_LIBRARY) {
        return REAL(sendto)(socket, data, size, flags, to, to_size);
    }
    const std::string line = "send " + std::to_string(size) + " bytes to " + text_of(to, to_size);
    if (door().should_fail(Call::sendto)) {
        door().record(line + " (failed)");
        errno = ENOBUFS;
        return -1;
    }
    door().record(line);
    return REAL(sendto)(socket, data, size, flags, to, to_size);
}

uci_context* uci_alloc_context() {
    if (!CALLED_BY_LIBRARY) {
        return REAL(uci_alloc_context)();
    }
    if (door().should_fail(Call::uci_alloc_context)) {
        return nullptr;
    }
    door().allocated_context();
    return REAL(uci_alloc_context)();
}

void uci_free_context(uci_context* context) {
    if (CALLED_BY_LIBRARY) {
        door().released_context();
    }
    REAL(uci_free_context)(context);
}

int uci_lookup_ptr(uci_context* context, uci_ptr* found, char* text, bool extended) {
    const bool fails = CALLED_BY_LIBRARY && door().should_fail(Call::uci_lookup_ptr, text);
    return fails ? UCI_ERR_IO : REAL(uci_lookup_ptr)(context, found, text, extended);
}

int uci_set(uci_context* context, uci_ptr* found) {
    return CALLED_BY_LIBRARY ? edit(Call::uci_set, "set", true, REAL(uci_set), context, found)
                             : REAL(uci_set)(context, found);
}

int uci_add_list(uci_context* context, uci_ptr* found) {
    return CALLED_BY_LIBRARY
               ? edit(Call::uci_add_list, "add", true, REAL(uci_add_list), context, found)
               : REAL(uci_add_list)(context, found);
}

int uci_del_list(uci_context* context, uci_ptr* found) {
    return CALLED_BY_LIBRARY
               ? edit(Call::uci_del_list, "del", true, REAL(uci_del_list), context, found)
               : REAL(uci_del_list)(context, found);
}

int uci_delete(uci_context* context, uci_ptr* found) {
    return CALLED_BY_LIBRARY
               ? edit(Call::uci_delete, "delete", false, REAL(uci_delete), context, found)
               : REAL(uci_delete)(context, found);
}

int uci_save(uci_context* context, uci_package* package) {
    const bool fails = CALLED_BY_LIBRARY && door().should_fail(Call::uci_save);
    return fails ? UCI_ERR_IO : REAL(uci_save)(context, package);
}

int uci_commit(uci_context* context, uci_package** package, bool overwrite) {
    if (!CALLED_BY_LIBRARY) {
        return REAL(uci_commit)(context, package, overwrite);
    }
    const std::string name = (*package)->e.name + std::string(overwrite ? " (overwriting)" : "");
    const int result = door().should_fail(Call::uci_commit, name.c_str())
                           ? UCI_ERR_IO
                           : REAL(uci_commit)(context, package, overwrite);
    door().on_package("commit", name, result != UCI_OK);
    return result;
}

int uci_revert(uci_context* context, uci_ptr* found) {
    if (!CALLED_BY_LIBRARY) {
        return REAL(uci_revert)(context, found);
    }
    const std::string path = path_of(*found);
    const int result = door().should_fail(Call::uci_revert, path.c_str())
                           ? UCI_ERR_IO
                           : REAL(uci_revert)(context, found);
    door().on_package("revert", path, result != UCI_OK);
    return result;
}

int uci_list_configs(uci_context* context, char*** names) {
    if (!CALLED_BY_LIBRARY) {
        return REAL(uci_list_configs)(context, names);
    }
    if (door().should_fail(Call::uci_list_configs)) {
        door().record("list (failed)");
        return UCI_ERR_NOTFOUND;
    }
    door().listed_packages();
    return REAL(uci_list_configs)(context, names);
}

} // extern "C"
