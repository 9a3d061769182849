// SPDX-License-Identifier: MIT
// The answers of the simulated driver. Nothing is kept between requests: each answer is read from
// the state files, so a test or a stand-in that writes a file changes the next answer.
#include "driver/answers.h"

#include "driver/private_commands.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <net/ethernet.h>
#include <net/if_arp.h>
#include <sys/socket.h>

#include <linux/wireless.h>

namespace orlo::device {
namespace {

/// The kernel's frequency mantissa has 32 bits and a sign.
bool read_frequency(std::string_view mantissa, std::string_view exponent, iw_freq& frequency) {
    long long m = 0;
    long long e = 0;
    if (!read_number(mantissa, INT32_MIN, INT32_MAX, m) ||
        !read_number(exponent, INT16_MIN, INT16_MAX, e)) {
        return false;
    }
    frequency.m = static_cast<decltype(frequency.m)>(m);
    frequency.e = static_cast<decltype(frequency.e)>(e);
    return true;
}

/// The operating channel of the radio that wdevR or wdevRapV belongs to, as the stand-in of
/// iwconfig stores it.
bool read_operating_channel(std::string_view interface, long long& channel) {
    constexpr std::string_view prefix = "wdev";
    if (interface.size() <= prefix.size() || interface.substr(0, prefix.size()) != prefix) {
        return false;
    }
    char path[64];
    snprintf(path, sizeof path, "/var/run/device/radio%c/channel", interface[prefix.size()]);
    StateFile file;
    if (!file.read(path)) {
        return false;
    }
    std::string_view text = file.text();
    return read_number(next_part(text, '\n'), INT32_MIN, INT32_MAX, channel);
}

int answer_name(const Interface& interface, iwreq& request) {
    const std::string_view name = interface.state.value("name");
    if (name.empty()) {
        return EOPNOTSUPP;
    }
    memset(request.u.name, 0, sizeof request.u.name);
    name.copy(request.u.name, sizeof request.u.name - 1);
    return 0;
}

int answer_frequency(const Interface& interface, iwreq& request) {
    iw_freq frequency{};
    std::string_view fixed = interface.state.value("frequency");
    if (!fixed.empty()) {
        const std::string_view mantissa = next_word(fixed);
        if (!read_frequency(mantissa, next_word(fixed), frequency)) {
            return EINVAL;
        }
        request.u.freq = frequency;
        return 0;
    }
    long long channel = 0;
    if (!read_operating_channel(interface.name, channel)) {
        return EINVAL;
    }
    frequency.m = static_cast<decltype(frequency.m)>(channel);
    request.u.freq = frequency;
    return 0;
}

/// One CHANNEL:MANTISSA:EXPONENT of a range line.
bool read_range_entry(std::string_view text, iw_freq& entry) {
    long long channel = 0;
    if (!read_number(next_part(text, ':'), 0, UINT8_MAX, channel)) {
        return false;
    }
    const std::string_view mantissa = next_part(text, ':');
    if (!read_frequency(mantissa, text, entry)) {
        return false;
    }
    entry.i = static_cast<decltype(entry.i)>(channel);
    return true;
}

int answer_range(const Interface& interface, iwreq& request) {
    std::string_view entries = interface.state.value("range");
    if (entries.empty()) {
        return EOPNOTSUPP;
    }
    iw_range range{};
    range.we_version_compiled = WIRELESS_EXT;
    range.we_version_source = WIRELESS_EXT;
    unsigned count = 0;
    while (!entries.empty() && count < IW_MAX_FREQUENCIES) {
        if (!read_range_entry(next_word(entries), range.freq[count])) {
            return EINVAL;
        }
        count++;
    }
    range.num_channels = static_cast<decltype(range.num_channels)>(count);
    range.num_frequency = static_cast<decltype(range.num_frequency)>(count);
    // A driver may say more than it lists, and may have a structure larger than the system's.
    long long said = count;
    long long size = sizeof range;
    read_number(interface.state.value("range-count"), 0, UINT8_MAX, said);
    read_number(interface.state.value("range-size"), 0, UINT16_MAX, size);
    range.num_frequency = static_cast<decltype(range.num_frequency)>(said);
    if (request.u.data.pointer == nullptr) {
        return EFAULT;
    }
    if (request.u.data.length < sizeof range || request.u.data.length < size ||
        request.u.data.flags != 0) {
        return E2BIG;
    }
    memcpy(request.u.data.pointer, &range, sizeof range);
    request.u.data.length = sizeof range;
    return 0;
}

int answer_access_point(const Interface& interface, iwreq& request) {
    const std::string_view bssid = interface.state.value("bssid");
    if (bssid.empty()) {
        return EOPNOTSUPP;
    }
    unsigned char mac[ETH_ALEN];
    if (!read_mac(bssid, mac)) {
        return EINVAL;
    }
    sockaddr address{};
    address.sa_family = ARPHRD_ETHER;
    memcpy(address.sa_data, mac, sizeof mac);
    request.u.ap_addr = address;
    return 0;
}

constexpr Request requests[] = {
    {SIOCGIWNAME, "name", answer_name},
    {SIOCGIWFREQ, "freq", answer_frequency},
    {SIOCGIWRANGE, "range", answer_range},
    {SIOCGIWAP, "ap", answer_access_point},
    {SIOCGIWPRIV, "private", answer_private_table},
};

// Its number is the interface's own.
constexpr Request setcmd = {0, "setcmd", answer_setcmd};

} // namespace

const Request* find_request(const Interface& interface, unsigned long number) {
    if (is_setcmd(interface, number)) {
        return &setcmd;
    }
    const auto* end = std::end(requests);
    const auto* found = std::find_if(std::begin(requests), end, [number](const Request& request) {
        return request.number == number;
    });
    return found == end ? nullptr : found;
}

} // namespace orlo::device
