// SPDX-License-Identifier: MIT
// The quilt scan: a report of the stations that the quilt's VAPs hear or serve, from the lists of
// the driver's debug files.
#include "clients/quilt_stations.h"
#include "common/command.h"
#include "common/identity.h"
#include "common/json.h"
#include "common/log.h"
#include "common/text.h"
#include "ops/operations.h"

#include <cctype>
#include <cstdio>
#include <ctime>

using orlo::CommandOutput;
using orlo::Json;
using orlo::Text;

namespace {

constexpr int line_size = 128;
constexpr unsigned signal_offset = 95; // of the driver's values, in dB

struct Station {
    char mac[18];
    int signal;
    int channel;
};

void lower_case(char* text) {
    for (; *text != '\0'; text++) {
        *text = static_cast<char>(tolower(static_cast<unsigned char>(*text)));
    }
}

json_t* cqscan_entry_pack(const char* mac, int rssi, int channel, json_int_t detected) {
    return json_pack("{s:s,s:i,s:i,s:I}", "STA MAC Address", mac, "RSSI", rssi, "Channel", channel,
                     "Detected Time", detected);
}

enum class Added { yes, not_made, not_added };

// Puts the station into the object, in the place of what is known of it.
Added add_station(json_t* object, Station station, time_t now) {
    lower_case(station.mac);
    const auto rssi = static_cast<int>(static_cast<unsigned>(station.signal) - signal_offset);
    json_t* const entry = cqscan_entry_pack(station.mac, rssi, station.channel, now);
    if (entry == nullptr) {
        return Added::not_made;
    }
    // Takes the entry over, also when it fails.
    return json_object_set_new(object, station.mac, entry) == 0 ? Added::yes : Added::not_added;
}

void add_detected_client(json_t* object, const char* line, time_t now) {
    constexpr const char* get_detected = "get_cqscan_detected_clients";
    Station station = {};
    const int fields = sscanf(line, "%17s %ddB %*ddB %*s %*s %*s %d", station.mac, &station.signal,
                              &station.channel);
    if (fields != 2 && fields != 3) {
        LOG_ERROR_FOR(get_detected, "Parse error %d, %s\n", fields, line);
        return;
    }
    switch (add_station(object, station, now)) {
    case Added::not_made:
        LOG_ERROR_FOR(get_detected, "Failed to make JSON\n");
        break;
    case Added::not_added:
        LOG_ERROR_FOR(get_detected, "Failed to add JSON\n");
        break;
    case Added::yes:
        break;
    }
}

void add_assoc_client(json_t* object, int radio, int vap, int channel, const char* line,
                      time_t now) {
    constexpr const char* get_associated = "get_cqscan_assoc_clients";
    Station station = {};
    station.channel = channel;
    if (sscanf(line, "%17s %ddB", station.mac, &station.signal) != 2) {
        LOG_ERROR_FOR(get_associated, "%d.%d parse error, %s\n", radio, vap, line);
        return;
    }
    switch (add_station(object, station, now)) {
    case Added::not_made:
        LOG_ERROR_FOR(get_associated, "%d.%d failed to make JSON\n", radio, vap);
        break;
    case Added::not_added:
        LOG_ERROR_FOR(get_associated, "%d.%d failed to add JSON\n", radio, vap);
        break;
    case Added::yes:
        break;
    }
}

// A later source replaces what an earlier one said of the same station.
void find_stations(json_t* stations) {
    constexpr const char* get_scan = "api_get_cqscan";
    if (get_cqscan_detected_clients(stations) != 0) {
        LOG_ERROR_FOR(get_scan, "Failed to get detected clients\n");
    }
    for (int radio = 0; radio < orlo::radio_count; radio++) {
        for (int vap = 0; vap < orlo::vaps_per_radio; vap++) {
            if (get_cqscan_assoc_clients(radio, vap, stations) != 0) {
                LOG_ERROR_FOR(get_scan, "%d.%d failed to get associated clients\n", radio, vap);
            }
        }
    }
}

} // namespace

int get_cqscan_detected_clients(struct json_t* object) {
    const time_t now = time(nullptr);
    CommandOutput list("grep : /sys/kernel/debug/sta/sta_list");
    if (!list.started()) {
        return -1;
    }
    char line[line_size];
    while (list.read_line(line, sizeof line)) {
        add_detected_client(object, line, now);
    }
    return 0;
}

int get_cqscan_assoc_clients(int radio, int vap, struct json_t* object) {
    const char* const ifname = get_mwl_ifname(radio, vap);
    if (uci_is_vap_quilt(radio, vap) == 0 || mwl_probe(ifname) == 0) {
        return 0;
    }
    unsigned char bssid[6];
    if (mwl_get_bssid(ifname, bssid) < 0) {
        LOG_ERROR("%d.%d failed to get MAC address.\n", radio, vap);
        return -1;
    }
    uint32_t channel = 0;
    if (mwl_get_channel(ifname, &channel) < 0) {
        LOG_ERROR("%d.%d failed to get channel.\n", radio, vap);
        return -1;
    }
    const time_t now = time(nullptr);
    const Text<128> command = orlo::quilt_stations_command(bssid);
    CommandOutput list(command);
    if (!list.started()) {
        LOG_ERROR("Failed to open file, %s\n", command.c_str());
        return -1;
    }
    char line[line_size];
    while (list.read_line(line, sizeof line)) {
        add_assoc_client(object, radio, vap, static_cast<int>(channel), line, now);
    }
    return 0;
}

struct json_t* api_get_cqscan(void* /*unused*/) {
    if (api_is_quilt_capable() == 0) {
        return nullptr;
    }
    const Json stations(json_object()); // by address
    if (!stations) {
        LOG_ERROR("Failed to make JSON object\n");
        return nullptr;
    }
    json_t* const scan = json_array();
    if (scan == nullptr) {
        LOG_ERROR("Failed to make JSON array\n");
        return nullptr;
    }
    find_stations(stations.get());
    const char* mac = nullptr;
    json_t* station = nullptr;
    json_object_foreach(stations.get(), mac, station) {
        json_array_append(scan, station);
    }
    return scan;
}
