// The description of an access point, as a person writes it for "orloctl apply".
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace orloctl {

struct RadioProfile {
    std::optional<int> radio; // 0: 2.4 GHz, 1: 5 GHz
    std::optional<bool> enabled;
    std::optional<std::string> override_status;
    std::optional<int> channel;
    std::optional<int> second_channel;
    std::optional<int> power_percent;

    // Whether there is something for api_apply_wireless_interface.
    bool has_channel_or_power() const {
        return override_status || channel || second_channel || power_percent;
    }
};

struct Profile {
    std::optional<int> id;
    std::optional<std::string> profile_hash;
    std::optional<std::string> config_hash;
};

struct Description {
    std::vector<RadioProfile> radios;
    Profile profile;
};

enum class Checking { full, types_only };

// The text of a file, or of standard input for "-". Throws a Refusal when it cannot be read.
std::string read_file(const std::string& path);

// Throws a Refusal that lists everything that is wrong; `source` names the text in it.
Description read_description(const std::string& text, const std::string& source, Checking checking);

// What a description may hold, for the help.
std::string description_help();

} // namespace orloctl
