// SPDX-License-Identifier: MIT
#include "meshlink/mesh.h"

#include <filesystem>
#include <jansson.h>

namespace orlo::test {

namespace {

const std::string debug_folder = "/sys/kernel/debug/sta/";
const std::string answers = "/tmp/answers/";

} // namespace

Mesh::Mesh() {
    std::filesystem::create_directories(answers);
    std::filesystem::create_directories(debug_folder);
    std::filesystem::create_directories("/etc/qxw");
    write_file("/etc/qxw/path_to_root.sh", "#!/bin/sh\ncat " + answers + "path\n");
    std::filesystem::permissions("/etc/qxw/path_to_root.sh", std::filesystem::perms(0755));
    // A tool answers with the file that bears the name of its last word.
    for (const char* tool : {"hostapd_cli", "iwinfo"}) {
        replace_tool(tool, "for word; do :; done; cat " + answers + "$word");
    }
    carry_links_on(1, 1);
    answer_portal("N\n");
    answer_path("04:00:00:00:00:20 ---> 04:00:00:00:00:40 ---> 04:00:00:00:00:60\n");
    answer_mesh_status("Connected to - 04:00:00:00:00:5d Hop count - 2 Rssi to AP 47 dB\n");
    answer_list_sta("06:11:22:33:44:57\n06:aa:bb:cc:dd:e1\n");
    answer_all_sta("");
    answer_assoclist("");
    answer_net_dev("");
    door.now = 1000;
}

void Mesh::carry_links_on(int radio, int vap) {
    if (!mesh_vap_.empty()) {
        configure(mesh_vap_ + ".mode", "ap");
    }
    mesh_vap_ = "wireless.wifi" + std::to_string(radio) + "vap" + std::to_string(vap);
    configure(mesh_vap_ + ".mode", "qx_mesh");
    configure(mesh_vap_ + ".disabled", "0");
}

void Mesh::answer_portal(const std::string& output) {
    write_file(debug_folder + "mesh_is_portal_ap", output);
}

void Mesh::answer_path(const std::string& output) {
    write_file(answers + "path", output);
}

void Mesh::answer_mesh_status(const std::string& output) {
    write_file(debug_folder + "print_mesh_status", output);
}

void Mesh::answer_list_sta(const std::string& output) {
    write_file(answers + "list_sta", output);
}

void Mesh::answer_all_sta(const std::string& output) {
    write_file(answers + "all_sta", output);
}

void Mesh::answer_assoclist(const std::string& output) {
    write_file(answers + "assoclist", output);
}

void Mesh::answer_net_dev(const std::string& output) {
    write_file("/var/run/device/net-dev", output);
}

std::string Mesh::station(const std::string& mac, const std::string& received,
                          const std::string& sent) {
    return mac + "\nflags=[AUTH][ASSOC][AUTHORIZED]\ndot11RSNAStatsSTAAddress=" + mac +
           "\nrx_packets=1\nrx_bytes=" + received + "\ntx_bytes=" + sent + "\nconnected_time=9\n";
}

std::string Mesh::association(const std::string& mac, const std::string& receive_rate,
                              const std::string& transmit_rate) {
    return mac + "  -47 dBm / -95 dBm (SNR 48)  20 ms ago\n\tRX: " + receive_rate +
           " MBit/s, MCS 9, 80MHz      5210 Pkts.\n\tTX: " + transmit_rate +
           " MBit/s, MCS 9, 80MHz      4107 Pkts.\n\n";
}

void Mesh::start_station(const std::string& interface) {
    const std::string path = "/var/run/device/interfaces";
    write_file(path, interface + " up 04:00:00:00:00:61\n" + read_file(path));
}

std::string Mesh::text_of(json_t* report) {
    if (report == nullptr) {
        return "NULL";
    }
    char* text = json_dumps(report, JSON_COMPACT);
    std::string copy = text == nullptr ? "(no text)" : text;
    JsonMemory::release_text(text);
    json_decref(report);
    return copy;
}

std::string Mesh::status_report() {
    return text_of(ops.create_ml_status_report(nullptr));
}

std::string Mesh::statistics_report() {
    return text_of(ops.create_ml_statistics_report());
}

Trace Mesh::errors() const {
    const std::string kind = "log 8/1 ";
    Trace lines;
    for (const std::string& line : door.trace()) {
        if (line.find(kind) == 0) {
            lines.push_back(line.substr(kind.size()));
        }
    }
    return lines;
}

} // namespace orlo::test
