// SPDX-License-Identifier: MIT
#include "meshlink/place.h"

#include "common/json.h"
#include "common/text.h"
#include "meshlink/address.h"
#include "meshlink/command.h"
#include "meshlink/log.h"
#include "meshlink/vap.h"

#include <cctype>
#include <cstdio>
#include <cstring>

namespace orlo {

namespace {

constexpr const char* portal_command = "cat /sys/kernel/debug/sta/mesh_is_portal_ap";

constexpr const char* path_command = "/etc/qxw/path_to_root.sh | sed 's/ --- \\?> / /g' | "
                                     "awk '{for(i=NF;i>0;i--) print $i}'";

// "ADDRESS,HOPS,RSSI"
constexpr const char* parent_command =
    "cat /sys/kernel/debug/sta/print_mesh_status | sed 's/.*Connected to - //' | "
    "sed 's/ .*Hop count - /,/' | sed 's/ .*Rssi to AP /,/' | cut -d ' ' -f 0";

constexpr size_t address_length = 17;
constexpr const char* no_address = "00:00:00:00:00:00";

void to_lower(char* text) {
    for (; *text != '\0'; text++) {
        *text = static_cast<char>(tolower(static_cast<unsigned char>(*text)));
    }
}

} // namespace

bool is_ml_root() {
    MESH_ENTER();
    MeshCommand portal(__func__, portal_command);
    if (!portal.started()) {
        return true;
    }
    char line[16] = {};
    if (!portal.read_line(line)) {
        MESH_ERROR("failed to get result\n");
        return true;
    }
    return line[0] != 'N';
}

json_t* get_ml_path() {
    MESH_ENTER();
    Json path(json_array());
    if (!path) {
        MESH_ERROR("failed to create JSON array\n");
        return nullptr;
    }
    MeshCommand hops(__func__, path_command);
    if (!hops.started()) {
        return nullptr;
    }
    char hop[32] = {};
    while (hops.read_line(hop)) {
        hop[address_length] = '\0';
        if (strcmp(hop, no_address) == 0) {
            MESH_VALUE("skip %s\n", hop);
            continue;
        }
        to_lower(hop);
        MESH_VALUE("add path %s to array\n", hop);
        json_array_append_new(path.get(), json_string(hop));
    }
    return path.hand_on();
}

json_t* get_ml_children() {
    MESH_ENTER();
    Json children(json_array());
    if (!children) {
        MESH_ERROR("failed to create JSON array\n");
        return nullptr;
    }
    int radio = 0;
    int vap = 0;
    if (get_ml_vap_uci_interface_name(&radio, &vap) == nullptr) {
        MESH_ERROR("failed to get NVX-ML vap\n");
        return nullptr;
    }
    MeshCommand stations(__func__,
                         Text<128>("hostapd_cli -i %s -p /var/run/hostapd-wifi%d/ list_sta",
                                   hostapd_interface(radio, vap), radio));
    if (!stations.started()) {
        return nullptr;
    }
    char station[32] = {};
    while (stations.read_line(station)) {
        station[address_length] = '\0';
        const MeshAddress child = normalize_ml_mac(station);
        MESH_VALUE("add child %s to array\n", child.text);
        json_array_append_new(children.get(), json_string(child.text));
    }
    return children.hand_on();
}

json_t* get_ml_parent() {
    MESH_ENTER();
    if (is_ml_root()) {
        MESH_INFO("AP is root\n");
        return nullptr;
    }
    MeshCommand status(__func__, parent_command);
    if (!status.started()) {
        return nullptr;
    }
    char line[64] = {};
    static_cast<void>(status.read_line(line)); // without a line there are no fields either
    char address[64] = {};
    int hops = 0;
    int rssi = 0;
    if (sscanf(line, "%63[^,],%d,%d", address, &hops, &rssi) != 3) {
        MESH_ERROR("invalid result, %s\n", line);
        return nullptr;
    }
    if (hops < 1) {
        MESH_INFO("AP has no parent\n");
        return nullptr;
    }
    const MeshAddress parent = normalize_ml_parent_mac(address);
    MESH_VALUE("parent: %s, score %d, hop: %d\n", parent.text, rssi, hops);
    json_t* packed = json_pack("{s:s,s:i}", "macaddr", parent.text, "score", rssi);
    if (packed == nullptr) {
        MESH_ERROR("failed to pack JSON\n");
    }
    return packed;
}

} // namespace orlo
