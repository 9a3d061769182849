// SPDX-License-Identifier: MIT
// Wireless-extension requests by interface name.
#pragma once

#include <linux/wireless.h>

namespace orlo {

// Issues a request on the interface, with the library's own socket; "mon.wdev0ap1" is asked as
// "wdev0ap1". The request's name field must be cleared. The result is ioctl's.
int wext_ioctl_on(const char* ifname, int request, iwreq* argument);

} // namespace orlo
