// SPDX-License-Identifier: MIT
// orloctl status: both radios, their VAPs, the hashes and the profile id, at a glance.
#include <cstdlib>
#include <optional>

#include "commands.h"
#include "library.h"
#include "log_capture.h"
#include "result.h"
#include "text.h"
#include "value.h"

namespace orloctl {

namespace {

constexpr int radio_count = ORLO_RADIOS;

Value unknown() {
    return no_value("unknown");
}

Value number(int value) {
    return value < 0 ? unknown() : Value{std::to_string(value), json_int(value)};
}

// The access point as the library's operations report it.
class Device {
public:
    explicit Device(const Library& library) : library_(library), ops_(library.ops()) {}

    // The operations behind these two answer "no" also for an option that they cannot read.
    Value enabled(int radio) const {
        return is_readable("wireless", "config_disabled_option", radio)
                   ? yes_or_no(library_.symbol<int(int)>("is_radio_enabled")(radio) == 1)
                   : unknown();
    }
    Value force_disable(int radio) const {
        return is_readable("orloagent", "config_force_disable_option", radio)
                   ? yes_or_no(ops_.api_get_force_disable_status(radio) == 0)
                   : unknown();
    }

    Value channel(int radio) const { return number(ops_.api_get_channel(radio)); }
    Value second_channel(int radio) const {
        const int channel = ops_.api_get_2ndchannel(radio);
        return channel == 0 ? Value{"none", json_int(0)} : number(channel);
    }
    Value power_percent(int radio) const { return number(ops_.api_get_transmitpower(radio)); }
    Value max_power(int radio) const {
        const float power = ops_.api_get_MaxPowerInfo(radio, 0, "");
        return power == 0.0F ? unknown() : Value{shown_number(power), json_number(power)};
    }

    bool is_vap_enabled(int radio, int vap) const {
        return library_.symbol<int(int, int)>("is_vap_enabled")(radio, vap) == 1;
    }
    Value vap_state(int radio, int vap) const {
        if (!is_vap_enabled(radio, vap)) {
            return {"off", json_text("off")};
        }
        const bool up = library_.symbol<int(int, int)>("is_vap_up")(radio, vap) == 1;
        const char* state = up ? "up" : "down";
        return {state, json_text(state)};
    }
    Value vap_ssid(int radio, int vap) const { return text(vap_option(radio, vap, "ssid")); }
    Value vap_vlan(int radio, int vap) const {
        const std::optional<std::string> id = vap_option(radio, vap, "vlan_id");
        return id ? number(static_cast<int>(strtol(id->c_str(), nullptr, 10))) : unknown();
    }
    Value vap_hidden(int radio, int vap) const {
        const std::optional<std::string> hidden = vap_option(radio, vap, "hidden");
        return hidden ? yes_or_no(*hidden == "1") : unknown();
    }
    Value vap_security(int radio, int vap) const;

    Value profile_hash() const { return hash(ops_.api_profile_get_hash()); }
    Value config_hash() const { return hash(ops_.api_config_get_hash()); }
    Value profile_id() const {
        const int id = ops_.api_get_profile_id();
        return id == -1 ? Value{"not set in this process", json_null_new()}
                        : Value{std::to_string(id), json_int(id)};
    }

private:
    std::optional<std::string> option(const char* package, const char* key) const {
        auto& read = library_.symbol<int(const char*, const char*, char*, size_t)>("uciGetValue");
        char value[257] = {};
        return read(package, key, value, sizeof value) == 0 ? std::optional<std::string>(value)
                                                            : std::nullopt;
    }
    bool is_readable(const char* package, const char* option_table, int radio) const {
        const auto& options = library_.symbol<const char* const[radio_count]>(option_table);
        return option(package, options[radio]).has_value();
    }
    std::optional<std::string> vap_option(int radio, int vap, const char* name) const {
        const std::string section =
            library_.symbol<const char*(int, int)>("get_uci_ifname")(radio, vap);
        return option("wireless", (section + "." + name).c_str());
    }

    static Value text(const std::optional<std::string>& value) {
        return value ? text_value(*value) : unknown();
    }

    static Value hash(char* answer) {
        const std::optional<std::string> text = taken(answer);
        return text ? Value{*text, json_text(*text)} : unknown();
    }

    const Library& library_;
    const vendor_ops& ops_;
};

// The options "security" and "wpaversion" as people know them.
Value Device::vap_security(int radio, int vap) const {
    const struct {
        const char* option;
        const char* shown;
    } versions[] = {
        {"wpa2", "WPA2"}, {"mixed", "WPA+WPA2"}, {"wpa2mixed", "WPA2+WPA3"}, {"wpa3", "WPA3"}};
    const std::optional<std::string> security = vap_option(radio, vap, "security");
    if (security == "none") {
        return text("open");
    }
    if (security == "wep") {
        return text("WEP");
    }
    if (security != "wpa-psk" && security != "wpa-ent") {
        return text(security);
    }
    std::string shown = vap_option(radio, vap, "wpaversion").value_or("WPA");
    for (const auto& version : versions) {
        shown = shown == version.option ? version.shown : shown;
    }
    return text(security == "wpa-ent" ? shown + " ent" : shown);
}

struct RadioRow {
    const char* title;
    const char* member;
    Value (Device::*value)(int radio) const;
};

const RadioRow radio_rows[] = {
    {"enabled", "enabled", &Device::enabled},
    {"force-disable", "force_disable", &Device::force_disable},
    {"channel", "channel", &Device::channel},
    {"second channel", "second_channel", &Device::second_channel},
    {"power percent", "power_percent", &Device::power_percent},
    {"max power (dBm)", "max_power_dbm", &Device::max_power},
};

struct ProfileRow {
    const char* title;
    const char* member;
    Value (Device::*value)() const;
};

const ProfileRow profile_rows[] = {
    {"profile id", "id", &Device::profile_id},
    {"profile hash", "profile_hash", &Device::profile_hash},
    {"config hash", "config_hash", &Device::config_hash},
};

struct VapColumn {
    const char* title;
    const char* member;
    Value (Device::*value)(int radio, int vap) const;
};

// The longest SSID still fits a terminal.
const VapColumn vap_columns[] = {
    {"state", "state", &Device::vap_state},
    {"VLAN", "vlan_id", &Device::vap_vlan},
    {"security", "security", &Device::vap_security},
    {"hidden", "hidden", &Device::vap_hidden},
    {"SSID", "ssid", &Device::vap_ssid},
};

// Radio and index of the VAPs to show.
std::vector<std::pair<int, int>> shown_vaps(const Device& device, bool all) {
    std::vector<std::pair<int, int>> vaps;
    for (int radio = 0; radio < radio_count; radio++) {
        for (int vap = 0; vap < ORLO_VAPS_PER_RADIO; vap++) {
            if (all || device.is_vap_enabled(radio, vap)) {
                vaps.emplace_back(radio, vap);
            }
        }
    }
    return vaps;
}

std::string vap_table(const Device& device, bool all) {
    Table table;
    std::vector<std::string> titles = {"radio", "VAP"};
    for (const VapColumn& column : vap_columns) {
        titles.emplace_back(column.title);
    }
    table.add(titles);
    const auto vaps = shown_vaps(device, all);
    for (const auto& [radio, vap] : vaps) {
        std::vector<std::string> row = {std::to_string(radio), std::to_string(vap)};
        for (const VapColumn& column : vap_columns) {
            row.push_back((device.*column.value)(radio, vap).shown);
        }
        table.add(std::move(row));
    }
    return vaps.empty() ? "no VAP is enabled\n" : table.text();
}

Json vaps_json(const Device& device, bool all) {
    Json array = json_array_new();
    for (const auto& [radio, vap] : shown_vaps(device, all)) {
        Json object = json_object_new();
        set(object, "radio", json_int(radio));
        set(object, "vap", json_int(vap));
        for (const VapColumn& column : vap_columns) {
            set(object, column.member, (device.*column.value)(radio, vap).json);
        }
        append(array, std::move(object));
    }
    return array;
}

std::string status_table(const Device& device, bool all) {
    Table radios;
    radios.add({"", "radio 0", "radio 1"});
    for (const RadioRow& row : radio_rows) {
        radios.add({row.title, (device.*row.value)(0).shown, (device.*row.value)(1).shown});
    }
    Table profile;
    for (const ProfileRow& row : profile_rows) {
        profile.add({row.title, (device.*row.value)().shown});
    }
    return radios.text() + "\n" + vap_table(device, all) + "\n" + profile.text();
}

Json status_json(const Device& device, bool all) {
    Json radios = json_array_new();
    for (int radio = 0; radio < radio_count; radio++) {
        Json object = json_object_new();
        set(object, "radio", json_int(radio));
        for (const RadioRow& row : radio_rows) {
            set(object, row.member, (device.*row.value)(radio).json);
        }
        append(radios, std::move(object));
    }
    Json profile = json_object_new();
    for (const ProfileRow& row : profile_rows) {
        set(profile, row.member, (device.*row.value)().json);
    }
    Json object = json_object_new();
    set(object, "radios", std::move(radios));
    set(object, "vaps", vaps_json(device, all));
    set(object, "profile", std::move(profile));
    return object;
}

Exit run(const CommandLine& line, Output& output) {
    take_no_words(line);
    const Library library = open_library(line);
    const Device device(library);
    output.print(line.json ? json_document(status_json(device, line.all))
                           : status_table(device, line.all));
    return exit_done;
}

std::string help() {
    return paragraph("Shows both radios, their enabled VAPs, the hashes and the profile id. A VAP "
                     "is up or down; \"off\" is a disabled one, \"ent\" stands for enterprise. A "
                     "value that cannot be read is \"unknown\" (null with --json); a hash of 0 "
                     "means that none is stored. The profile id lives in the process that set "
                     "it.") +
           "\nOptions:\n" + option_help("status");
}

} // namespace

const Command status_command = {"status", "status [--all]",
                                "show the radios, VAPs and what is applied", help, run};

} // namespace orloctl
