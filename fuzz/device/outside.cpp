// SPDX-License-Identifier: MIT
// The linker leads the library's calls of NAME to __wrap_NAME; __real_NAME is the one meant.
#include "device/outside.h"

#include "require.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <glib.h>
#include <linux/wireless.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

namespace fuzz {

namespace {

Input* current = nullptr;
int existing = 0;

} // namespace

Outside::Outside(Input& input) {
    current = &input;
    existing = 0;
}

Outside::~Outside() {
    current = nullptr;
}

Input* answering() {
    return current;
}

namespace {

// Whoever waits for a file to go shall not wait for ever.
bool exists(const char* path) {
    constexpr int most = 16;
    return current->answer(std::string("exists ") + path) != nullptr && existing++ < most;
}

FILE* stream_of(const std::string& text) {
    return fmemopen(const_cast<char*>(text.data()), text.size(), "r");
}

// As much of an answer as there is room for.
void fill(void* to, size_t room, const std::string& answer) {
    memcpy(to, answer.data(), answer.size() < room ? answer.size() : room);
}

// "iwinfo OPERATION IN-ADDRESS IN-SIZE OUT-ADDRESS OUT-SIZE": the driver fills the second buffer.
int private_command(const iwreq& request, const std::string& answer) {
    unsigned operation = 0;
    void* in = nullptr;
    unsigned in_size = 0;
    void* out = nullptr;
    unsigned out_size = 0;
    const auto* text = static_cast<const char*>(request.u.data.pointer);
    const int fields =
        sscanf(text, "iwinfo %u %p %u %p %u", &operation, &in, &in_size, &out, &out_size);
    REQUIRE(fields == 5);
    fill(out, out_size, answer);
    return 0;
}

constexpr unsigned private_number = SIOCIWFIRSTPRIV + 4;

// The driver's private commands: one, if the input does not tell others.
int private_commands(iwreq& request, const std::string* answer) {
    auto* commands = static_cast<iw_priv_args*>(request.u.data.pointer);
    const size_t room = request.u.data.length * sizeof *commands;
    if (answer != nullptr) {
        fill(commands, room, *answer);
        request.u.data.length = static_cast<unsigned short>(answer->size());
        return 0;
    }
    *commands = {private_number, IW_PRIV_TYPE_CHAR | 256, 0, "setcmd"};
    request.u.data.length = 1;
    return 0;
}

int answer_driver(unsigned number, iwreq& request) {
    char question[32];
    snprintf(question, sizeof question, "ioctl %x", number);
    const std::string* const answer = current->answer(question);
    if (number == SIOCGIWPRIV) {
        return private_commands(request, answer);
    }
    if (answer == nullptr) {
        return -1;
    }
    if (number == SIOCGIWRANGE) {
        fill(request.u.data.pointer, request.u.data.length, *answer);
    } else if (number == SIOCGIWFREQ || number == SIOCGIWAP || number == SIOCGIWNAME) {
        fill(&request.u, sizeof request.u, *answer);
    } else {
        return private_command(request, *answer);
    }
    return 0;
}

} // namespace

} // namespace fuzz

using fuzz::answering;

extern "C" {

FILE* __real_popen(const char* command, const char* mode);
FILE* __wrap_popen(const char* command, const char* mode) {
    if (answering() == nullptr) {
        return __real_popen(command, mode);
    }
    const std::string* const answer = answering()->answer(std::string("read ") + command);
    return fuzz::stream_of(answer == nullptr ? "" : *answer);
}

int __real_pclose(FILE* stream);
int __wrap_pclose(FILE* stream) {
    return answering() == nullptr ? __real_pclose(stream) : fclose(stream);
}

FILE* __real_fopen(const char* path, const char* mode);
FILE* __wrap_fopen(const char* path, const char* mode) {
    if (answering() == nullptr) {
        return __real_fopen(path, mode);
    }
    if (mode[0] != 'r') {
        return __real_fopen("/dev/null", "w");
    }
    const std::string* const answer = answering()->answer(std::string("open ") + path);
    return answer == nullptr ? nullptr : fuzz::stream_of(*answer);
}

int __real_open(const char* path, int flags, ...);
int __wrap_open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = va_arg(arguments, mode_t);
    va_end(arguments);
    if (answering() == nullptr) {
        return __real_open(path, flags, mode);
    }
    const std::string* const answer = answering()->answer(std::string("open ") + path);
    const int fd = answer == nullptr ? -1 : memfd_create("answer", MFD_CLOEXEC);
    if (fd >= 0) {
        REQUIRE(pwrite(fd, answer->data(), answer->size(), 0) ==
                static_cast<ssize_t>(answer->size()));
    }
    return fd;
}

int __real_system(const char* command);
int __wrap_system(const char* command) {
    return answering() == nullptr ? __real_system(command) : 0;
}

int __real_access(const char* path, int mode);
int __wrap_access(const char* path, int mode) {
    if (answering() == nullptr) {
        return __real_access(path, mode);
    }
    return fuzz::exists(path) ? 0 : -1;
}

gboolean __real_g_file_test(const char* path, GFileTest test);
gboolean __wrap_g_file_test(const char* path, GFileTest test) {
    if (answering() == nullptr) {
        return __real_g_file_test(path, test);
    }
    return fuzz::exists(path) ? TRUE : FALSE;
}

int __real_unlink(const char* path);
int __wrap_unlink(const char* path) {
    return answering() == nullptr ? __real_unlink(path) : 0;
}

unsigned __real_sleep(unsigned seconds);
unsigned __wrap_sleep(unsigned seconds) {
    return answering() == nullptr ? __real_sleep(seconds) : 0;
}

time_t __real_time(time_t* stored);
time_t __wrap_time(time_t* stored) {
    if (answering() == nullptr) {
        return __real_time(stored);
    }
    constexpr time_t now = 1700000000;
    if (stored != nullptr) {
        *stored = now;
    }
    return now;
}

// There is no child, but its parent goes on.
pid_t __real_fork();
pid_t __wrap_fork() {
    return answering() == nullptr ? __real_fork() : 4711;
}

int __real_ioctl(int fd, unsigned long number, ...);
int __wrap_ioctl(int fd, unsigned long number, ...) {
    va_list arguments;
    va_start(arguments, number);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    if (answering() == nullptr) {
        return __real_ioctl(fd, number, argument);
    }
    return fuzz::answer_driver(static_cast<unsigned>(number), *static_cast<iwreq*>(argument));
}

ssize_t __real_sendto(int fd, const void* data, size_t size, int flags, const sockaddr* to,
                      socklen_t to_size);
ssize_t __wrap_sendto(int fd, const void* data, size_t size, int flags, const sockaddr* to,
                      socklen_t to_size) {
    if (answering() == nullptr) {
        return __real_sendto(fd, data, size, flags, to, to_size);
    }
    return static_cast<ssize_t>(size);
}

// The agent's log keeps nothing, but each message is made.
void orlo_agent_debug_log(int /*module*/, int /*level*/, const char* /*function*/, int /*line*/,
                          const char* format, ...) {
    char message[4096];
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(message, sizeof message, format, arguments);
    va_end(arguments);
}

int is_debug_module_level_enabled(int /*module*/, int /*level*/) {
    return 1;
}

} // extern "C"
