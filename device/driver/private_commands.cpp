// SPDX-License-Identifier: MIT
// A private command is a line `private NAME NUMBER SET GET` of the interface's state file. "setcmd"
// is the one that the driver really has: it reads a request as text and writes the reply to the
// address that stands in the text.
#include "driver/private_commands.h"

#include "driver/stations.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <sys/socket.h>

#include <linux/wireless.h>

namespace orlo::device {
namespace {

constexpr unsigned own_magic = 0x4D52564C;
constexpr size_t head_size = 16;
constexpr size_t reply_size = 32768;
constexpr size_t probe_size = 128;
constexpr unsigned text_size = 256;
constexpr unsigned request_size = 32;

/// A line, without the word `private`.
bool read_command(std::string_view line, iw_priv_args& command) {
    command = {};
    const std::string_view name = next_word(line);
    name.copy(command.name, sizeof command.name);
    unsigned number = 0;
    unsigned set = 0;
    unsigned get = 0;
    if (name.empty() || !read_hex(next_word(line), number) || !read_hex(next_word(line), set) ||
        !read_hex(next_word(line), get) || set > UINT16_MAX || get > UINT16_MAX) {
        return false;
    }
    command.cmd = number;
    command.set_args = static_cast<decltype(command.set_args)>(set);
    command.get_args = static_cast<decltype(command.get_args)>(get);
    return true;
}

/// Goes through the commands of an interface's state file.
class Commands {
public:
    explicit Commands(const StateFile& state) : rest_(state.text()) {}

    bool next(iw_priv_args& command) {
        while (!rest_.empty()) {
            std::string_view line = next_part(rest_, '\n');
            if (next_word(line) == "private" && read_command(line, command)) {
                return true;
            }
        }
        return false;
    }

private:
    std::string_view rest_;
};

bool find_setcmd(const Interface& interface, iw_priv_args& command) {
    Commands commands(interface.state);
    while (commands.next(command)) {
        if (strncmp(command.name, "setcmd", sizeof command.name) == 0) {
            return true;
        }
    }
    return false;
}

/// A number of the state file; the standard one without its line.
long long number_of(const Interface& interface, std::string_view key, long long standard) {
    read_number(interface.state.value(key), INT32_MIN, INT32_MAX, standard);
    return standard;
}

unsigned magic_of(const Interface& interface) {
    unsigned magic = own_magic;
    read_hex(interface.state.value("magic"), magic);
    return magic;
}

/// The request in the text of "setcmd".
struct TextRequest {
    unsigned operation = 0;
    void* in = nullptr;
    unsigned in_length = 0;
    void* out = nullptr;
    unsigned out_length = 0;

    bool read(const iw_point& data) {
        char text[text_size + 1] = {};
        memcpy(text, data.pointer, std::min<size_t>(data.length, text_size));
        int end = 0;
        return sscanf(text, "iwinfo %u %p %u %p %u%n", &operation, &in, &in_length, &out,
                      &out_length, &end) == 5 &&
               text[end] == '\0';
    }
};

/// The whole reply, before it is cut to what the caller takes. False when there is none.
bool make_reply(const Interface& interface, unsigned operation, unsigned char (&reply)[reply_size],
                size_t& size) {
    memset(reply, filler, head_size);
    put_number(reply, magic_of(interface));
    if (operation == 1) {
        memset(reply, filler, probe_size);
        put_number(reply, magic_of(interface));
        size = probe_size;
        return true;
    }
    if (operation != 2) {
        return false;
    }
    const int count = read_stations(interface.name, reply + head_size, reply_size - head_size);
    put_number(reply + 8, static_cast<unsigned>(number_of(interface, "station-count", count)));
    size = head_size + static_cast<size_t>(std::max(count, 0)) * station_size;
    return count >= 0;
}

} // namespace

int answer_private_table(const Interface& interface, iwreq& request) {
    const auto others = static_cast<size_t>(number_of(interface, "private-others", 0));
    size_t total = others;
    iw_priv_args command;
    for (Commands commands(interface.state); commands.next(command);) {
        total++;
    }
    if (total == 0) {
        return EOPNOTSUPP;
    }
    if (request.u.data.flags != 0) {
        return EINVAL;
    }
    const size_t offered = request.u.data.length;
    request.u.data.length = static_cast<decltype(request.u.data.length)>(total);
    if (total > offered) {
        return E2BIG;
    }
    if (request.u.data.pointer == nullptr) {
        return EFAULT;
    }
    auto* to = static_cast<unsigned char*>(request.u.data.pointer);
    command = {0x8BE0, 0, 0, "other"};
    for (size_t i = 0; i < others; i++, to += sizeof command) {
        memcpy(to, &command, sizeof command);
    }
    for (Commands commands(interface.state); commands.next(command); to += sizeof command) {
        memcpy(to, &command, sizeof command);
    }
    request.u.data.length = static_cast<decltype(request.u.data.length)>(
        number_of(interface, "private-count", static_cast<long long>(total)));
    return 0;
}

bool is_setcmd(const Interface& interface, unsigned long number) {
    iw_priv_args command;
    return find_setcmd(interface, command) && command.cmd == number;
}

int answer_setcmd(const Interface& interface, iwreq& request) {
    iw_priv_args command;
    if (!find_setcmd(interface, command) || request.u.data.flags != 0) {
        return EINVAL;
    }
    const unsigned most = command.set_args & IW_PRIV_SIZE_MASK; // callers know what 0 means
    if (most != 0 && request.u.data.length > most) {
        return E2BIG;
    }
    if (request.u.data.pointer == nullptr) {
        return EFAULT;
    }
    TextRequest wanted;
    if (!wanted.read(request.u.data) || wanted.in_length != request_size) {
        return EINVAL;
    }
    if (wanted.in == nullptr || wanted.out == nullptr) {
        return EFAULT;
    }
    if (number_of(interface, "reply-room", wanted.out_length) != wanted.out_length) {
        return ENOBUFS;
    }
    constexpr unsigned char nothing[request_size] = {};
    if (memcmp(wanted.in, nothing, sizeof nothing) != 0) {
        return EINVAL;
    }
    unsigned char reply[reply_size];
    size_t size = 0;
    if (!make_reply(interface, wanted.operation, reply, size)) {
        return EINVAL;
    }
    const auto cut = static_cast<size_t>(number_of(interface, "reply-size", reply_size));
    memcpy(wanted.out, reply, std::min({size, cut, static_cast<size_t>(wanted.out_length)}));
    return 0;
}

} // namespace orlo::device
