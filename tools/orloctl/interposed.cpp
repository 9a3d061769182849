// SPDX-License-Identifier: MIT
// The functions between the library and the world. They stand in the program, so the loader binds
// the library to them; calls that are not watched go straight on.
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <linux/wireless.h>
#include <sys/wait.h>
#include <unistd.h>

#include "driver/observer.h"
#include "recorder.h"
#include "watch/interposing.h"

using orlo::device::path_of;
using orloctl::Event;
using orloctl::Recorder;
using Kind = orloctl::Event::Kind;

namespace {

Recorder& recorder() {
    return Recorder::instance();
}

#define WATCHED (recorder().watches(__builtin_return_address(0)))

int exit_status(int wait_status) {
    return WIFSIGNALED(wait_status) ? 128 + WTERMSIG(wait_status) : WEXITSTATUS(wait_status);
}

// What a lookup found there, the elements of a list joined by blanks; a section's type.
std::optional<std::string> value_of(const uci_ptr& found) {
    if ((found.flags & uci_ptr::UCI_LOOKUP_COMPLETE) == 0) {
        return std::nullopt;
    }
    if (found.o == nullptr) {
        return found.s == nullptr ? "" : found.s->type;
    }
    if (found.o->type == UCI_TYPE_STRING) {
        return found.o->v.string;
    }
    std::string text;
    uci_element* element = nullptr;
    uci_foreach_element(&found.o->v.list, element) {
        text += (text.empty() ? "" : " ") + std::string(element->name);
    }
    return text;
}

// A call of the store that changes what was looked up.
template <class Function>
int edit(Kind kind, Function* function, uci_context* context, uci_ptr* found) {
    Event event{kind, path_of(*found), found->value == nullptr ? "" : found->value,
                value_of(*found)};
    recorder().looked_up_for(event.subject);
    int result = 0;
    {
        const Recorder::Within within;
        result = function(context, found);
    }
    event.failed = result != UCI_OK;
    recorder().add(std::move(event));
    return result;
}

// A call of the store that works on a whole package.
template <class Call>
int on_package(Kind kind, const std::string& package, const Call& call) {
    recorder().looked_up_for(package);
    int result = 0;
    {
        const Recorder::Within within;
        result = call();
    }
    Event event{kind, package};
    event.failed = result != UCI_OK;
    recorder().add(std::move(event));
    return result;
}

std::string shown_name(const iwreq& request) {
    return {request.u.name, strnlen(request.u.name, sizeof request.u.name)};
}

std::string shown_frequency(const iwreq& request) {
    const iw_freq& frequency = request.u.freq;
    const std::string mantissa = std::to_string(frequency.m);
    return frequency.e == 0 ? mantissa : mantissa + "e" + std::to_string(frequency.e);
}

std::string shown_address(const iwreq& request) {
    char text[sizeof "00:00:00:00:00:00"];
    const char* const mac = request.u.ap_addr.sa_data;
    const auto byte = [mac](int i) { return static_cast<unsigned>(mac[i]) & 0xFFU; };
    snprintf(text, sizeof text, "%02x:%02x:%02x:%02x:%02x:%02x", byte(0), byte(1), byte(2), byte(3),
             byte(4), byte(5));
    return text;
}

struct RequestName {
    unsigned long number;
    const char* name;
    std::string (*answer)(const iwreq& request); // NULL: it lies elsewhere
};

const RequestName request_names[] = {
    {SIOCGIWNAME, "asked for its name", shown_name},
    {SIOCGIWFREQ, "asked for its frequency", shown_frequency},
    {SIOCGIWRANGE, "asked for its channels", nullptr},
    {SIOCGIWAP, "asked for its BSSID", shown_address},
    {SIOCGIWPRIV, "asked for its private commands", nullptr},
};

std::string shown_request(unsigned long number, const iwreq& request, int error) {
    for (const RequestName& known : request_names) {
        if (known.number == number) {
            const bool has_answer = known.answer != nullptr && error == 0;
            return known.name + (has_answer ? " -> " + known.answer(request) : std::string());
        }
    }
    char text[64];
    snprintf(text, sizeof text, "%s %#lx",
             number >= SIOCIWFIRSTPRIV ? "told private command" : "request", number);
    return text;
}

void observe_request(unsigned long number, const iwreq& request, int error) {
    if (!recorder().is_watching()) {
        return;
    }
    const size_t length = strnlen(request.ifr_name, sizeof request.ifr_name);
    Event event{Kind::driver, std::string(request.ifr_name, length),
                shown_request(number, request, error)};
    event.number = error;
    event.failed = error != 0;
    recorder().add(std::move(event));
}

const bool observing = [] {
    orlo::device::request_observer = observe_request;
    return true;
}();

} // namespace

extern "C" {

int system(const char* command) {
    if (!WATCHED) {
        return REAL(system)(command);
    }
    int status = 0;
    {
        const Recorder::Within within;
        status = REAL(system)(command);
    }
    Event event{Kind::run, command == nullptr ? "" : command};
    event.failed = status < 0;
    event.number = status < 0 ? 0 : exit_status(status);
    recorder().add(std::move(event));
    return status;
}

FILE* popen(const char* command, const char* mode) {
    FILE* const pipe = REAL(popen)(command, mode);
    if (WATCHED) {
        const int error = errno;
        Event event{Kind::read, command};
        event.failed = pipe == nullptr;
        if (pipe == nullptr) {
            recorder().add(std::move(event));
        } else {
            recorder().opened(pipe, std::move(event));
        }
        errno = error;
    }
    return pipe;
}

int pclose(FILE* pipe) {
    const int status = REAL(pclose)(pipe);
    if (WATCHED) {
        recorder().closed(pipe, exit_status(status));
    }
    return status;
}

char* fgets(char* line, int size, FILE* file) {
    char* const result = REAL(fgets)(line, size, file);
    if (result != nullptr && WATCHED) {
        recorder().read_line(file, line);
    }
    return result;
}

FILE* fopen(const char* path, const char* mode) {
    FILE* const file = REAL(fopen)(path, mode);
    if (WATCHED) {
        const int error = errno;
        Event event{*mode == 'r' && mode[1] != '+' ? Kind::open : Kind::write, path};
        event.failed = file == nullptr;
        recorder().add(std::move(event));
        errno = error;
    }
    return file;
}

int unlink(const char* path) {
    const int result = REAL(unlink)(path);
    if (WATCHED) {
        const int error = errno;
        Event event{Kind::unlink, path};
        event.failed = result != 0;
        recorder().add(std::move(event));
        errno = error;
    }
    return result;
}

pid_t fork() {
    if (!WATCHED) {
        return REAL(fork)();
    }
    recorder().add({Kind::child, "goes on by itself"});
    return recorder().fork_with(REAL(fork));
}

unsigned sleep(unsigned seconds) {
    if (!WATCHED) {
        return REAL(sleep)(seconds);
    }
    Event event{Kind::sleep, ""};
    event.number = static_cast<int>(seconds);
    recorder().add(std::move(event));
    if (!recorder().skips_sleeps()) {
        return REAL(sleep)(seconds);
    }
    usleep(50000); // the device's scripts get on
    return 0;
}

ssize_t sendto(int socket, const void* data, size_t size, int flags, const sockaddr* to,
               socklen_t to_size) {
    const ssize_t sent = REAL(sendto)(socket, data, size, flags, to, to_size);
    if (WATCHED) {
        const int error = errno;
        Event event{Kind::send, std::to_string(size) + " bytes to",
                    orlo::device::text_of(to, to_size)};
        event.failed = sent < 0;
        recorder().add(std::move(event));
        errno = error;
    }
    return sent;
}

int uci_lookup_ptr(uci_context* context, uci_ptr* found, char* text, bool extended) {
    if (!WATCHED) {
        return REAL(uci_lookup_ptr)(context, found, text, extended);
    }
    const std::string asked = text; // which the store cuts to pieces
    int result = 0;
    {
        const Recorder::Within within;
        result = REAL(uci_lookup_ptr)(context, found, text, extended);
    }
    Event event{Kind::get, result == UCI_OK ? path_of(*found) : asked.substr(0, asked.find('='))};
    event.failed = result != UCI_OK;
    event.before = event.failed ? std::nullopt : value_of(*found);
    recorder().add(std::move(event));
    return result;
}

int uci_set(uci_context* context, uci_ptr* found) {
    return WATCHED ? edit(Kind::set, REAL(uci_set), context, found) : REAL(uci_set)(context, found);
}

int uci_add_list(uci_context* context, uci_ptr* found) {
    return WATCHED ? edit(Kind::add_element, REAL(uci_add_list), context, found)
                   : REAL(uci_add_list)(context, found);
}

int uci_del_list(uci_context* context, uci_ptr* found) {
    return WATCHED ? edit(Kind::remove_element, REAL(uci_del_list), context, found)
                   : REAL(uci_del_list)(context, found);
}

int uci_delete(uci_context* context, uci_ptr* found) {
    return WATCHED ? edit(Kind::remove, REAL(uci_delete), context, found)
                   : REAL(uci_delete)(context, found);
}

int uci_save(uci_context* context, uci_package* package) {
    if (!WATCHED) {
        return REAL(uci_save)(context, package);
    }
    return on_package(Kind::save, package->e.name,
                      [&] { return REAL(uci_save)(context, package); });
}

int uci_commit(uci_context* context, uci_package** package, bool overwrite) {
    if (!WATCHED) {
        return REAL(uci_commit)(context, package, overwrite);
    }
    return on_package(Kind::commit, (*package)->e.name,
                      [&] { return REAL(uci_commit)(context, package, overwrite); });
}

int uci_revert(uci_context* context, uci_ptr* found) {
    if (!WATCHED) {
        return REAL(uci_revert)(context, found);
    }
    return on_package(Kind::revert, path_of(*found),
                      [&] { return REAL(uci_revert)(context, found); });
}

} // extern "C"
