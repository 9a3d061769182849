// orloctl status: both radios, the hashes and the profile id, at a glance.
#include <cstdlib>
#include <memory>
#include <optional>

#include "commands.h"
#include "library.h"
#include "log_capture.h"
#include "result.h"
#include "text.h"

namespace orloctl {

namespace {

constexpr int radio_count = 2;

// One value for people and for programs.
struct Value {
    std::string shown;
    Json json;
};

Value unknown() {
    return {"unknown", json_null_new()};
}

Value number(int value) {
    return value < 0 ? unknown() : Value{std::to_string(value), json_int(value)};
}

Value yes_or_no(bool value) {
    return {value ? "yes" : "no", json_bool(value)};
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

    Value profile_hash() const { return hash(ops_.api_profile_get_hash()); }
    Value config_hash() const { return hash(ops_.api_config_get_hash()); }
    Value profile_id() const {
        const int id = ops_.api_get_profile_id();
        return id == -1 ? Value{"not set in this process", json_null_new()}
                        : Value{std::to_string(id), json_int(id)};
    }

private:
    bool is_readable(const char* package, const char* option_table, int radio) const {
        const auto& options = library_.symbol<const char* const[radio_count]>(option_table);
        auto& read = library_.symbol<int(const char*, const char*, char*, size_t)>("uciGetValue");
        char value[257] = {};
        return read(package, options[radio], value, sizeof value) == 0;
    }

    static Value hash(char* answer) {
        const std::unique_ptr<char, decltype(&free)> text(answer, &free);
        return text == nullptr ? unknown() : Value{text.get(), json_text(text.get())};
    }

    const Library& library_;
    const vendor_ops& ops_;
};

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

std::string status_table(const Device& device) {
    Table radios;
    radios.add({"", "radio 0", "radio 1"});
    for (const RadioRow& row : radio_rows) {
        radios.add({row.title, (device.*row.value)(0).shown, (device.*row.value)(1).shown});
    }
    Table profile;
    for (const ProfileRow& row : profile_rows) {
        profile.add({row.title, (device.*row.value)().shown});
    }
    return radios.text() + "\n" + profile.text();
}

Json status_json(const Device& device) {
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
    set(object, "profile", std::move(profile));
    return object;
}

Exit run(const CommandLine& line, Output& output) {
    if (!line.words.empty()) {
        throw Refusal("'orloctl status' takes no argument, '" + line.words[0] + "' given");
    }
    const Library library = open_library(line);
    const Device device(library);
    output.print(line.json ? json_document(status_json(device)) : status_table(device));
    return exit_done;
}

std::string help() {
    return paragraph("Shows both radios, the hashes and the profile id. A value that cannot be "
                     "read is \"unknown\" (null with --json); a hash of 0 means that none is "
                     "stored. The profile id lives in the process that set it.");
}

} // namespace

const Command status_command = {"status", "status", "show the radios and what is applied", help,
                                run};

} // namespace orloctl
