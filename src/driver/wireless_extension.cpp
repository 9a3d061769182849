// SPDX-License-Identifier: MIT
// The driver's standard wireless-extension requests: name, channel and BSSID of an interface.
#include "driver/wireless_extension.h"

#include "common/text.h"
#include "orlo/exports.h"

#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

using orlo::Text;
using orlo::wext_ioctl_on;

namespace {

// One socket for the life of the process, made by the first query.
int query_socket = -1;

// "wdev1" for "wdev1ap3"; any other name as it is, cut beyond what a request takes.
Text<32> mwl_radio_ifname(const char* ifname) {
    int radio = 0;
    int vap = 0;
    if (sscanf(ifname, "wdev%dap%d", &radio, &vap) == 2) {
        return Text<32>("wdev%d", radio);
    }
    return Text<32>("%s", ifname);
}

double wext_freq_value(const iw_freq& frequency) {
    double value = frequency.m;
    for (int step = 0; step < frequency.e; step++) {
        value *= 10.0;
    }
    return value;
}

// Looks a frequency up in the list of the interface's channels.
int channel_of_frequency(const char* ifname, double frequency, uint32_t* channel) {
    // The driver is offered more room than the system's structure takes; only that part is read.
    unsigned char reply[588] = {};
    iw_range range;
    static_assert(sizeof range <= sizeof reply);

    iwreq request = {};
    request.u.data.pointer = reply;
    request.u.data.length = sizeof reply;
    if (wext_ioctl_on(ifname, SIOCGIWRANGE, &request) < 0) {
        return -1;
    }
    memcpy(&range, reply, sizeof range);
    for (int i = 0; i < range.num_frequency && i < IW_MAX_FREQUENCIES; i++) {
        if (wext_freq_value(range.freq[i]) == frequency) {
            *channel = range.freq[i].i;
            return 0;
        }
    }
    return -1;
}

} // namespace

namespace orlo {

int wext_ioctl_on(const char* ifname, int request, iwreq* argument) {
    if (strncmp(ifname, "mon.", 4) == 0) {
        ifname += 4;
    }
    // A name of 16 characters or more is cut, without a terminator.
    memcpy(argument->ifr_name, ifname, strnlen(ifname, IFNAMSIZ));
    return iwinfo_ioctl(request, argument);
}

} // namespace orlo

int iwinfo_ioctl(int request, void* argument) {
    if (query_socket == -1) {
        query_socket = socket(AF_INET, SOCK_DGRAM, 0);
        if (query_socket != -1) {
            fcntl(query_socket, F_SETFD, fcntl(query_socket, F_GETFD) | FD_CLOEXEC);
        }
    }
    return ioctl(query_socket, static_cast<unsigned long>(request), argument);
}

int wext_probe(const char* ifname) {
    iwreq request = {};
    return wext_ioctl_on(ifname, SIOCGIWNAME, &request) >= 0 ? 1 : 0;
}

int mwl_get_channel(const char* ifname, uint32_t* channel) {
    const Text<32> asked = mwl_radio_ifname(ifname); // a VAP runs on its radio's channel
    iwreq request = {};
    if (wext_ioctl_on(asked, SIOCGIWFREQ, &request) < 0) {
        return -1;
    }
    if (request.u.freq.m <= 999) {
        *channel = static_cast<uint32_t>(request.u.freq.m);
        return 0;
    }
    return channel_of_frequency(asked, wext_freq_value(request.u.freq), channel);
}

int mwl_get_bssid(const char* ifname, unsigned char* bssid) {
    iwreq request = {};
    if (wext_ioctl_on(ifname, SIOCGIWAP, &request) < 0) {
        return -1;
    }
    memcpy(bssid, request.u.ap_addr.sa_data, 6);
    return 0;
}
