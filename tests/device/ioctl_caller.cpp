// SPDX-License-Identifier: MIT
// A library that calls ioctl, as the vendor library does; it knows nothing of the simulated driver.
#include <sys/ioctl.h>

extern "C" __attribute__((visibility("default"))) int call_ioctl(int fd, unsigned long number,
                                                                 void* argument) {
    return ioctl(fd, number, argument);
}
