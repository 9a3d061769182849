// SPDX-License-Identifier: MIT
// The private command "setcmd", and the probe that tells whether an interface has it.
#include "driver/private_command.h"

#include "driver/reply.h"
#include "driver/wireless_extension.h"
#include "orlo/exports.h"

#include <cstdio>
#include <cstring>

using orlo::wext_ioctl_on;

namespace {

constexpr int no_such_command = -2;
constexpr unsigned most_commands = 256;

// The private commands of an interface.
struct CommandTable {
    iw_priv_args commands[most_commands] = {};
    unsigned count = 0;

    bool read(const char* ifname) {
        iwreq request = {};
        request.u.data.pointer = commands;
        request.u.data.length = most_commands;
        if (wext_ioctl_on(ifname, SIOCGIWPRIV, &request) < 0) {
            return false;
        }
        // A driver may say more than there was room for.
        count = request.u.data.length < most_commands ? request.u.data.length : most_commands;
        return true;
    }

    const iw_priv_args* find(const char* name) const {
        for (unsigned i = 0; i < count; i++) {
            if (strncmp(commands[i].name, name, sizeof commands[i].name) == 0) {
                return &commands[i];
            }
        }
        return nullptr;
    }
};

bool takes_text(const iw_priv_args& command) {
    return (command.set_args & IW_PRIV_TYPE_MASK) == IW_PRIV_TYPE_CHAR &&
           (command.set_args & IW_PRIV_SIZE_MASK) != 0;
}

} // namespace

namespace orlo {

int mwl_setcmd_request(const char* ifname, unsigned operation, const void* in, unsigned in_length,
                       void* out, unsigned out_length) {
    CommandTable table;
    if (!table.read(ifname)) {
        return -1;
    }
    const iw_priv_args* setcmd = table.find("setcmd");
    if (setcmd == nullptr) {
        return no_such_command;
    }
    if (!takes_text(*setcmd)) {
        return -1;
    }
    char text[256] = {};
    snprintf(text, sizeof text, "iwinfo %u %p %u %p %u", operation, in, in_length, out, out_length);
    iwreq request = {};
    request.u.data.pointer = text;
    request.u.data.length = sizeof text; // the driver wants the buffer's size
    return wext_ioctl_on(ifname, static_cast<int>(setcmd->cmd), &request) < 0 ? -1 : 0;
}

} // namespace orlo

int mwl_probe(const char* ifname) {
    const unsigned char in[32] = {};
    unsigned char block[128] = {};
    // A refused request leaves the block as it is: what it holds tells enough.
    orlo::mwl_setcmd_request(ifname, orlo::probe_operation, in, sizeof in, block, sizeof block);
    return orlo::Reply(block, sizeof block).has_magic() ? 1 : 0;
}
