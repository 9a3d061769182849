// SPDX-License-Identifier: MIT
#include "clients/clients.h"

#include <dirent.h>
#include <unistd.h>

namespace orlo::test {

static const std::string station_folder = "/var/run/device/stations/";

Clients::Clients() {
    door.debug_enabled = false;
    if (DIR* folder = opendir(station_folder.c_str())) {
        while (const dirent* entry = readdir(folder)) {
            unlink((station_folder + entry->d_name).c_str());
        }
        closedir(folder);
    }
    door.forget(); // where the library's objects are linked directly, that was seen
}

int Clients::prepare() {
    return exported<decltype(::prepare_assoc_client_list)>("prepare_assoc_client_list")();
}

void Clients::stations(const std::string& interface, const std::string& lines) {
    write_file(station_folder + interface, lines);
}

void Clients::many_stations(const std::string& interface, int count) {
    std::string lines;
    for (int i = 1; i <= count; i++) {
        const uint8_t mac[6] = {2, 0, 0, 0, static_cast<uint8_t>(i >> 8), static_cast<uint8_t>(i)};
        lines += mac_of(mac) + " rx-packets=" + std::to_string(i) + "\n";
    }
    stations(interface, lines);
}

void Clients::debug_file(const std::string& lines) {
    write_file("/sys/kernel/debug/sta/sta_assoc_list", lines);
}

void Clients::tell_of(const std::string& interface, const std::string& lines) {
    tell_driver(interface, "name IEEE 802.11\nprivate setcmd 8be4 2100 0\n" + lines);
}

assoc_client_node* Clients::list(int radio, int vap) {
    auto** lists = static_cast<assoc_client_node**>(dlsym(vendor_library(), "assoc_client_list"));
    return lists[radio * 16 + vap];
}

size_t Clients::length(int radio, int vap) {
    size_t count = 0;
    for (const auto* node = list(radio, vap); node != nullptr; node = node->next) {
        count++;
    }
    return count;
}

const assoc_client_record& Clients::record(int radio, int vap, size_t index) {
    static const assoc_client_record none = {};
    const assoc_client_node* node = list(radio, vap);
    for (; node != nullptr && index > 0; index--) {
        node = node->next;
    }
    EXPECT_NE(node, nullptr) << "VAP " << radio << "." << vap << " has no such client";
    return node == nullptr ? none : node->record;
}

std::string Clients::macs(int radio, int vap) {
    std::string text;
    for (const auto* node = list(radio, vap); node != nullptr; node = node->next) {
        text += (text.empty() ? "" : " ") + mac_of(node->record.sta_mac);
    }
    return text;
}

std::vector<std::string> Clients::everybody() {
    std::vector<std::string> lines;
    for (int radio = 0; radio < 2; radio++) {
        for (int vap = 0; vap < 16; vap++) {
            if (list(radio, vap) != nullptr) {
                lines.push_back(std::to_string(radio) + "." + std::to_string(vap) + " " +
                                macs(radio, vap));
            }
        }
    }
    return lines;
}

std::string mac_of(const uint8_t* mac) {
    char text[18];
    snprintf(text, sizeof text, "%02x:%02x:%02x:%02x:%02x:%02x", mac[0], mac[1], mac[2], mac[3],
             mac[4], mac[5]);
    return text;
}

} // namespace orlo::test
