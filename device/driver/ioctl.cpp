// SPDX-License-Identifier: MIT
// The simulated driver's place in the program: the symbol `ioctl`, which libraries opened later
// find before the C library's. Wireless-extension requests are answered from the state files while
// their folder exists; everything else, and everything on a real device, goes to the kernel.
#include "driver/answers.h"
#include "driver/fault.h"
#include "driver/observer.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <iterator>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <linux/wireless.h>

namespace orlo::device {

int (*demanded_error)() = nullptr;

namespace {

struct ErrorName {
    std::string_view name;
    int number;
};

constexpr ErrorName error_names[] = {
    {"E2BIG", E2BIG},         {"EAGAIN", EAGAIN}, {"EBUSY", EBUSY},   {"EFAULT", EFAULT},
    {"EINTR", EINTR},         {"EINVAL", EINVAL}, {"EIO", EIO},       {"ENETDOWN", ENETDOWN},
    {"ENODEV", ENODEV},       {"ENOMEM", ENOMEM}, {"ENOTTY", ENOTTY}, {"EOPNOTSUPP", EOPNOTSUPP},
    {"ETIMEDOUT", ETIMEDOUT}, {"EPERM", EPERM},
};

/// The error that a line `fail NAME ERROR` or `fail-after NAME ERROR` demands, 0 without such a
/// line. A word that is no error name still fails the request, so that a typing error shows.
int demanded_failure(const StateFile& state, std::string_view when, std::string_view request) {
    const std::string_view error = state.value(when, request);
    if (error.empty()) {
        return 0;
    }
    for (const ErrorName& known : error_names) {
        if (known.name == error) {
            return known.number;
        }
    }
    return EPROTO;
}

/// Reads the interface that a request names. A name never leads out of the folder.
bool read_interface(const iwreq& request, Interface& interface) {
    const size_t length = strnlen(request.ifr_name, sizeof request.ifr_name);
    interface.name = {request.ifr_name, length};
    if (interface.name.empty() || interface.name[0] == '.' ||
        interface.name.find('/') != std::string_view::npos) {
        return false;
    }
    char path[64];
    snprintf(path, sizeof path, "%s/%.*s", driver_folder, static_cast<int>(length),
             request.ifr_name);
    return interface.state.read(path);
}

int answer(int fd, unsigned long number, iwreq* request) {
    if (fcntl(fd, F_GETFD) < 0) {
        return EBADF;
    }
    if (request == nullptr) {
        return EFAULT;
    }
    Interface interface;
    if (!read_interface(*request, interface)) {
        return ENODEV;
    }
    const Request* known = find_request(interface, number);
    if (known == nullptr) {
        return EOPNOTSUPP;
    }
    int failure = demanded_failure(interface.state, "fail", known->name);
    if (failure == 0) {
        failure = known->answer(interface, *request);
    }
    return failure != 0 ? failure : demanded_failure(interface.state, "fail-after", known->name);
}

bool is_wireless(unsigned long number) {
    return number >= SIOCIWFIRST && number <= 0x8BFF;
}

/// As ioctl does: asks the simulated driver where there is one, else the kernel.
int request_wireless(int fd, unsigned long number, iwreq* request) {
    if (access(driver_folder, F_OK) != 0) {
        return static_cast<int>(syscall(SYS_ioctl, fd, number, request));
    }
    const int before = errno;
    int error = demanded_error == nullptr ? 0 : demanded_error();
    if (error == 0) {
        error = answer(fd, number, request);
    }
    errno = error != 0 ? error : before;
    return error != 0 ? -1 : 0;
}

} // namespace

RequestObserver request_observer = nullptr;

} // namespace orlo::device

/// What the linker is told to look for. `ioctl` alone would not do: a library that comes before the
/// archive, as a sanitizer's does, has one too.
extern "C" {
extern const char orlo_simulated_driver;
const char orlo_simulated_driver = 1;
}

extern "C" __attribute__((visibility("default"))) int ioctl(int fd, unsigned long number,
                                                            ...) noexcept {
    using namespace orlo::device;
    va_list arguments;
    va_start(arguments, number);
    void* argument = va_arg(arguments, void*);
    va_end(arguments);
    if (!is_wireless(number)) {
        return static_cast<int>(syscall(SYS_ioctl, fd, number, argument));
    }
    auto* const request = static_cast<iwreq*>(argument);
    const int result = request_wireless(fd, number, request);
    if (request_observer != nullptr && request != nullptr) {
        const int error = errno;
        request_observer(number, *request, result < 0 ? error : 0);
        errno = error;
    }
    return result;
}
