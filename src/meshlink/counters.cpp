// SPDX-License-Identifier: MIT
#include "meshlink/counters.h"

#include "common/text.h"
#include "meshlink/address.h"
#include "meshlink/command.h"
#include "meshlink/log.h"
#include "meshlink/vap.h"

#include <cstdio>
#include <cstring>
#include <ctime>

namespace orlo {

namespace {

constexpr int usual_links = 4; // as many as a mesh VAP accepts when it is set up here

int known_link_speed(const char* interface, const char* address) {
    const int speed = get_link_speed(interface, address);
    return speed > 0 ? speed : 0;
}

// The interface of the mesh station, by the digit in the name of the first one that is up.
const char* station_interface(const char* operation) {
    const char* const names[] = {"mesh0", "mesh1", "mesh2", "mesh3", "mesh4",
                                 "mesh5", "mesh6", "mesh7", "mesh8", "mesh9"};
    MeshCommand listed(operation, "ifconfig | grep -e '^mesh[0-9]' | cut -d ' ' -f 1");
    char line[32] = {};
    if (!listed.started() || !listed.read_line(line) || strlen(line) < 5) {
        return nullptr;
    }
    const char digit = line[4];
    return digit >= '0' && digit <= '9' ? names[digit - '0'] : nullptr;
}

// "RECEIVED SENT", of this moment.
bool read_counters(const char* line, ml_counter* link) {
    long long received = 0;
    long long sent = 0;
    if (sscanf(line, "%lld %lld", &received, &sent) != 2) {
        return false;
    }
    link->tx_bytes = sent;
    link->rx_bytes = received;
    link->timestamp = time(nullptr);
    return true;
}

// "ADDRESS RECEIVED SENT": who is connected, and the counters.
bool read_link(const char* line, ml_counter* link) {
    int address_end = 0;
    if (sscanf(line, "%17s%n", link->raw_mac, &address_end) != 1 ||
        !read_counters(line + address_end, link)) {
        return false;
    }
    memcpy(link->name, normalize_ml_mac(link->raw_mac).text, sizeof link->name);
    return true;
}

// The growth of a counter: none when it went backwards.
int64_t growth(int64_t current, int64_t previous) {
    int64_t grown = 0;
    if (current <= previous) {
        return 0;
    }
    return __builtin_sub_overflow(current, previous, &grown) ? INT64_MAX : grown;
}

int64_t rate(int64_t grown, int64_t seconds) {
    return seconds == 0 ? 0 : grown / seconds;
}

} // namespace

bool CounterTable::make_room(int records) {
    if (records <= room_) {
        return true;
    }
    const auto size = static_cast<size_t>(records);
    auto* grown = static_cast<ml_counter*>(realloc(records_, size * sizeof(ml_counter)));
    if (grown == nullptr) {
        return false;
    }
    memset(grown + room_, 0, (size - static_cast<size_t>(room_)) * sizeof(ml_counter));
    records_ = grown;
    room_ = records;
    return true;
}

void CounterTable::replace(Sample* sample) {
    sample->forget();
    *sample = {records_, count_};
    records_ = nullptr;
    count_ = room_ = 0;
}

bool get_ml_vap_counters(CounterTable* table) {
    MESH_ENTER();
    int radio = 0;
    int vap = 0;
    if (get_ml_vap_uci_interface_name(&radio, &vap) == nullptr) {
        MESH_ERROR("failed to get NVX-ML vap\n");
        return false;
    }
    if (!table->make_room(usual_links)) {
        MESH_ERROR("failed to allocate memory\n");
        return false;
    }
    const char* interface = hostapd_interface(radio, vap);
    MeshCommand stations(__func__,
                         Text<256>("hostapd_cli -i %s -p /var/run/hostapd-wifi%d/ all_sta | "
                                   "grep -e bytes -e STAAddress | "
                                   "awk -F= '{if(NR%%3==0){ORS=\"\\n\"}else{ORS=\" \"} print $2}'",
                                   interface, radio));
    if (!stations.started()) {
        return false;
    }
    char line[64] = {};
    while (stations.read_line(line)) {
        if (!table->make_room(table->count() + 1)) {
            MESH_ERROR("failed to allocate memory\n");
            return false;
        }
        ml_counter* link = table->next();
        if (!read_link(line, link)) {
            MESH_ERROR("invalid output: %s\n", line);
            continue;
        }
        link->radio = radio;
        link->vap = vap;
        MESH_VALUE("%d: STA: %s, tx: %lld, rx:%lld, time: %ld\n", table->count(), link->raw_mac,
                   static_cast<long long>(link->tx_bytes), static_cast<long long>(link->rx_bytes),
                   static_cast<long>(link->timestamp));
        table->count_next();
    }
    stations.close();
    for (ml_counter& link : *table) {
        link.link_speed = known_link_speed(interface, link.raw_mac);
    }
    return true;
}

bool get_ml_sta_counter(CounterTable* table) {
    MESH_ENTER();
    const char* interface = station_interface(__func__);
    if (interface == nullptr) {
        MESH_ERROR("there is no ML-STA interface\n");
        return false;
    }
    int radio = 0;
    int vap = 0;
    if (get_ml_vap_uci_interface_name(&radio, &vap) == nullptr) {
        MESH_ERROR("failed to get radio/vap id\n");
        return false;
    }
    if (!table->make_room(1)) {
        MESH_ERROR("failed to allocate memory\n");
        return false;
    }
    MeshCommand counters(__func__,
                         Text<64>("grep %s: /proc/net/dev | awk '{print $2,$10}'", interface));
    if (!counters.started()) {
        return false;
    }
    ml_counter* link = table->next();
    link->radio = radio;
    link->vap = vap;
    char line[64] = {};
    if (counters.read_line(line)) { // otherwise the counters and their time are zero
        if (!read_counters(line, link)) {
            MESH_ERROR("invalid output: %s\n", line);
            return false;
        }
        MESH_VALUE("tx: %lld, rx: %lld, last_updated: %ld\n",
                   static_cast<long long>(link->tx_bytes), static_cast<long long>(link->rx_bytes),
                   static_cast<long>(link->timestamp));
    }
    counters.close();
    link->link_speed = known_link_speed(interface, nullptr);
    table->count_next();
    return true;
}

ml_counter diff_ml_counter(const ml_counter* current, const ml_counter* previous) {
    MESH_ENTER();
    ml_counter difference = {};
    if (current == nullptr || previous == nullptr) {
        return difference;
    }
    const int64_t seconds = current->timestamp - previous->timestamp;
    difference.tx_bytes = rate(growth(current->tx_bytes, previous->tx_bytes), seconds);
    difference.rx_bytes = rate(growth(current->rx_bytes, previous->rx_bytes), seconds);
    difference.timestamp = seconds;
    return difference;
}

} // namespace orlo
