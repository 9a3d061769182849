// SPDX-License-Identifier: MIT
#include "common/text.h"
#include "meshlink/command.h"
#include "meshlink/counters.h"
#include "meshlink/log.h"

#include <climits>
#include <cstdio>
#include <cstring>

namespace orlo {

namespace {

using Command = Text<192>;

// Each station has three lines: its address, its receive rate and its transmit rate.
Command stations_of(const char* interface, const char* address) {
    const auto chosen =
        address == nullptr ? Text<64>("head -n 3") : Text<64>("grep -ie %s -A 2", address);
    return Command("iwinfo %s assoclist | %s | "
                   "awk '{if(NR%%3==1){ORS=\" \"; print $1}else if(NR%%3==2){ORS=\" \"; print $2}"
                   "else{ORS=\"\\n\"; print$2}}'",
                   interface, chosen.c_str());
}

// An address comes from another program's output; anything else in it must not reach a shell.
bool is_address(const char* text) {
    return text[strspn(text, "0123456789abcdefABCDEF:")] == '\0';
}

// A rate that no int holds becomes the one that comes closest; one that is no number, the least.
int speed_of(double megabits) {
    const double speed = megabits * 1024 * 1024;
    if (speed >= INT_MAX) {
        return INT_MAX;
    }
    return speed > INT_MIN ? static_cast<int>(speed) : INT_MIN;
}

} // namespace

int get_link_speed(const char* interface, const char* address) {
    MESH_ENTER();
    if (address != nullptr && !is_address(address)) {
        MESH_ERROR("invalid output %s\n", address);
        return -1;
    }
    MeshCommand stations(__func__, stations_of(interface, address));
    if (!stations.started()) {
        return -1;
    }
    double megabits = 0;
    char line[128] = {};
    if (stations.read_line(line)) {
        if (sscanf(line, "%*s %*f %lf\n", &megabits) != 1) {
            MESH_ERROR("invalid output %s\n", line);
            return -1;
        }
        MESH_VALUE("tx: %.1f\n", megabits);
    }
    return speed_of(megabits);
}

} // namespace orlo
