// SPDX-License-Identifier: MIT
// Finding the associated clients: the stations of ordinary VAPs stand in the driver's table, those
// of quilt VAPs in its debug file.
#include "clients/client_list.h"
#include "clients/quilt_stations.h"
#include "common/command.h"
#include "common/identity.h"
#include "common/log.h"
#include "common/text.h"
#include "uci/option.h"

#include <arpa/inet.h>
#include <cstdlib>
#include <cstring>
#include <endian.h>

using orlo::CommandOutput;
using orlo::OptionValue;
using orlo::Text;

namespace {

// Room for a table of stations, and for a line of the debug file.
constexpr size_t work_size = 0x16000;

// What the clients of a VAP have in common. What cannot be read stays 0.
struct Vap {
    int radio;
    int index;
    int area_auth;
    uint8_t bssid[6];
    uint32_t channel;
    OptionValue<33> ssid;
    int vlan_id;
};

// What a client has of its own.
struct Station {
    uint8_t mac[6];
    uint32_t mbit;
    int32_t signal;
    uint32_t ipv4; // network byte order
    uint8_t addr16[16];

    bool has_mac() const {
        constexpr uint8_t none[6] = {};
        return memcmp(mac, none, sizeof none) != 0;
    }
};

Vap read_vap(int radio, int index, const char* vap_ifname) {
    Vap vap = {};
    vap.radio = radio;
    vap.index = index;
    vap.area_auth = uci_is_vap_area_auth(radio, index);
    mwl_get_bssid(vap_ifname, vap.bssid);
    mwl_get_channel(Text<10>("wdev%d", radio), &vap.channel);
    vap.ssid.read("wireless", Text<32>("wifi%dvap%d.ssid", radio, index));
    OptionValue<8> vlan_id;
    if (vlan_id.read("wireless", Text<32>("wifi%dvap%d.vlan_id", radio, index))) {
        vap.vlan_id = atoi(vlan_id.c_str());
    }
    return vap;
}

// Lists a station as a client of the VAP. Its numbers are little-endian on every machine, but for
// the address, whose bytes keep their order.
bool fill_raw_data_into_assoc_client_list(const Vap& vap, const Station& station) {
    assoc_client_record record = {};
    memcpy(record.bssid, vap.bssid, sizeof record.bssid);
    record.radio = static_cast<uint8_t>(vap.radio);
    record.vap = static_cast<uint8_t>(vap.index);
    record.channel = static_cast<uint8_t>(vap.channel);
    memcpy(record.sta_mac, station.mac, sizeof record.sta_mac);
    memcpy(&record.ipv4, &station.ipv4, sizeof station.ipv4);
    memcpy(record.ssid, vap.ssid.c_str(), sizeof record.ssid - 1);
    record.vlan_id = htole16(static_cast<uint16_t>(vap.vlan_id));
    record.rate = htole32(station.mbit);
    record.ones = 0xFFFFFFFF;
    memcpy(record.addr16, station.addr16, sizeof record.addr16);
    record.signal = static_cast<int32_t>(htole32(static_cast<uint32_t>(station.signal)));
    record.area_auth = htole32(static_cast<uint32_t>(vap.area_auth));
    if (orlo::insert_assoc_client_list(&record, vap.radio, vap.index) != 0) {
        LOG_TRACE("error: failed to insert new associated client to linked list.\n");
        return false;
    }
    return true;
}

Station station_of(const mwl_assoc_entry& entry) {
    Station station = {};
    memcpy(station.mac, entry.mac, sizeof station.mac);
    station.mbit = entry.second_rate.rate / 1000;
    station.signal = entry.signal; // NOLINT(bugprone-signed-char-misuse): below zero indeed
    station.ipv4 = entry.ipv4;
    memcpy(station.addr16, entry.addr16, sizeof station.addr16);
    return station;
}

bool list_table(const Vap& vap, const char* vap_ifname) {
    char table[work_size] = {};
    int length = 0;
    if (mwl_get_assoclist(vap_ifname, table, &length) != 0) {
        return true;
    }
    mwl_assoc_entry entry;
    for (size_t at = 0; at + sizeof entry <= static_cast<size_t>(length); at += sizeof entry) {
        memcpy(&entry, table + at, sizeof entry);
        const Station station = station_of(entry);
        if (station.has_mac() && !fill_raw_data_into_assoc_client_list(vap, station)) {
            return false;
        }
    }
    return true;
}

// "a4:5e:60:01:02:03 60dB 02:00:00:00:01:00 1 5 30 11 192.168.1.20": the address may be missing,
// what stands between signal and address may not.
bool read_client_line(char* line, Station* station) {
    char* fields[8] = {};
    char* rest = nullptr;
    for (char*& field : fields) {
        field = strtok_r(line, " ", &rest);
        line = nullptr; // go on in the same line
    }
    if (fields[6] == nullptr) {
        return false;
    }
    *station = {};
    StringMacToHex(fields[0], station->mac);
    station->signal = static_cast<int32_t>(static_cast<uint32_t>(atoi(fields[1])) - 95U);
    station->ipv4 = fields[7] != nullptr ? inet_addr(fields[7]) : 0;
    return station->has_mac();
}

bool list_debug_file(const Vap& vap) {
    CommandOutput output(orlo::quilt_stations_command(vap.bssid));
    if (!output.started()) {
        LOG_TRACE_FOR("prepare_assoc_client_list",
                      "error: failed to execute command for getting associated client info.\n");
        return false;
    }
    char line[work_size];
    while (output.read_line(line, sizeof line)) {
        orlo::cut_line_end(line);
        Station station;
        if (read_client_line(line, &station) &&
            !fill_raw_data_into_assoc_client_list(vap, station)) {
            return false;
        }
    }
    return true;
}

bool list_clients_of(int radio, int index) {
    const Text<10> vap_ifname("wdev%dap%d", radio, index);
    if (wext_probe(vap_ifname) == 0 || uci_is_vap_ml_sta(radio, index) != 0) {
        return true;
    }
    const Vap vap = read_vap(radio, index, vap_ifname);
    return uci_is_vap_quilt(radio, index) != 0 ? list_debug_file(vap) : list_table(vap, vap_ifname);
}

} // namespace

int prepare_assoc_client_list() {
    LOG_TRACE("Entering .... \n");
    orlo::destroy_assoc_client_list();
    for (int radio = 0; radio < orlo::radio_count; radio++) {
        for (int index = 0; index < orlo::vaps_per_radio; index++) {
            if (!list_clients_of(radio, index)) {
                return -1;
            }
        }
    }
    LOG_TRACE("End .... \n");
    return 0;
}
