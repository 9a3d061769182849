// The description of an access point, as a person writes it for "orloctl apply".
#pragma once

#include <climits>
#include <cstdint>
#include <string>

#include "json.h"
#include "records/field.h"
#include "records/memory.h"

namespace orloctl {

// A number that the description leaves out; -1 means something to some operations.
constexpr int32_t not_described = INT_MIN;

// Texts are NULL, records and VAPs too, when they are not described.
struct RadioDescription {
    int32_t radio; // 0: 2.4 GHz, 1: 5 GHz
    int32_t enabled;
    const char* override_status;
    int32_t channel;
    int32_t second_channel;
    int32_t power_percent;
    const radio_settings* settings;
    hw_specific_settings* hardware;
    vap_settings* vaps; // all of the radio's

    // Whether there is something for api_apply_wireless_interface.
    bool has_channel_or_power() const {
        return override_status != nullptr || channel != not_described ||
               second_channel != not_described || power_percent != not_described;
    }
};

struct ProfileDescription {
    int32_t id;
    const char* profile_hash;
    const char* config_hash;
};

struct AccessPointDescription {
    List<const RadioDescription> radios;
    ProfileDescription profile;
};

// A description and the memory in which it lies.
class Description {
public:
    Description() : root_(static_cast<AccessPointDescription*>(arena_.take(sizeof *root_))) {}

    const AccessPointDescription& operator*() const { return *root_; }
    const AccessPointDescription* operator->() const { return root_; }

private:
    friend Description read_description(const std::string& text, const std::string& source,
                                        bool checked);

    Arena arena_;
    AccessPointDescription* root_;
};

// What read_file() reads, as it says when a file is larger.
struct FileKind {
    const char* name;
    size_t megabytes;
};
constexpr FileKind description_file = {"a description", 1};

// The text of a file, or of standard input for "-". Throws a Refusal when it cannot be read.
std::string read_file(const std::string& path, const FileKind& kind = description_file);

// Throws a Refusal that tells the place; `source` names the text in it.
Json parse_json(const std::string& text, const std::string& source);

// Throws a Refusal that lists everything that is wrong. Unless it is `checked`, only what cannot be
// passed on to the library is.
Description read_description(const std::string& text, const std::string& source, bool checked);

} // namespace orloctl
