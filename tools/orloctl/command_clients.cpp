// SPDX-License-Identifier: MIT
// orloctl clients: the associated stations, listed anew or from a file.
#include <fcntl.h>
#include <sys/stat.h>

#include "commands.h"
#include "description.h"
#include "library.h"
#include "log_capture.h"
#include "stations.h"
#include "text.h"
#include "watch.h"

namespace orloctl {

namespace {

constexpr const char* written_file = "/tmp/assoc_client_detail";
constexpr FileKind detail_file = {"a detail file", 16};

// The operation does not tell whether it succeeded: when it fails, the file of an earlier time
// stays. So that one is made to look old.
void list_stations_anew(const vendor_ops& ops) {
    const timespec long_ago[] = {{0, 0}, {0, 0}};
    utimensat(AT_FDCWD, written_file, long_ago, 0);
    start_call_log();
    const int result = ops.api_generate_assoc_client_file();
    struct stat file = {};
    if (result != 0 || stat(written_file, &file) != 0 || file.st_mtime == 0) {
        std::vector<std::string> reason = last_log_lines();
        reason.insert(reason.begin(),
                      "api_generate_assoc_client_file did not write " + std::string(written_file));
        throw Failure(joined(reason, "\n  "));
    }
}

std::string shown(const std::optional<std::string>& text) {
    return text.value_or("unknown");
}

template <class Number>
std::string shown(const std::optional<Number>& number) {
    return number ? std::to_string(*number) : "unknown";
}

std::string station_table(const std::vector<Station>& stations) {
    if (stations.empty()) {
        return "no station is associated\n";
    }
    Table table;
    table.add({"radio", "VAP", "MAC", "IPv4", "dBm", "Mbit/s", "VLAN", "SSID"});
    for (const Station& station : stations) {
        table.add({std::to_string(station.radio), std::to_string(station.vap), station.mac,
                   shown(station.ipv4), std::to_string(station.signal), shown(station.rate),
                   shown(station.vlan_id), printable(station.ssid)});
    }
    return table.text();
}

template <class Number>
Json number_or_null(const std::optional<Number>& number) {
    return number ? json_int(*number) : json_null_new();
}

Json station_json(const Station& station) {
    Json object = json_object_new();
    set(object, "radio", json_int(station.radio));
    set(object, "vap", json_int(station.vap));
    set(object, "bssid", json_text(station.bssid));
    set(object, "channel", number_or_null(station.channel));
    set(object, "ssid", json_text(station.ssid));
    set(object, "mac", json_text(station.mac));
    set(object, "ipv4", station.ipv4 ? json_text(*station.ipv4) : json_null_new());
    set(object, "signal_dbm", json_int(station.signal));
    set(object, "rate_mbps", number_or_null(station.rate));
    set(object, "vlan_id", number_or_null(station.vlan_id));
    set(object, "area_auth", json_bool(station.area_auth));
    return object;
}

Json stations_json(const std::vector<Station>& stations) {
    Json array = json_array_new();
    for (const Station& station : stations) {
        append(array, station_json(station));
    }
    return array;
}

std::string stations_in(const std::string& path, const CommandLine& line) {
    const std::vector<Station> stations = read_stations(read_file(path, detail_file), path);
    return line.json ? json_frame(line, stations_json(stations)) : station_table(stations);
}

Exit run(const CommandLine& line, Output& output) {
    if (!line.words.empty()) {
        throw Refusal("'orloctl clients' takes no argument, '" + line.words[0] +
                      "' given; a file is named with --file");
    }
    if (line.watch && line.file == "-") {
        throw Refusal("standard input can be read once: no --watch with --file -");
    }
    if (!line.file.empty()) {
        show(line, output, [&] { return stations_in(line.file, line); });
        return exit_done;
    }
    const Library library = open_library(line);
    show(line, output, [&] {
        list_stations_anew(library.ops());
        return stations_in(written_file, line);
    });
    return exit_done;
}

std::string help() {
    return paragraph(
               "Lists the associated stations: calls api_generate_assoc_client_file and shows "
               "what that writes to " +
               std::string(written_file) +
               ". With --file: shows such a file, also where there is no access point. What "
               "is not known is \"unknown\" (null with --json): an address that was not "
               "seen, the rate on quilt VAPs.") +
           "\nOptions:\n" + option_help("clients");
}

} // namespace

const Command clients_command = {"clients", "clients [--file FILE] [--watch]",
                                 "list the associated stations", help, run};

} // namespace orloctl
