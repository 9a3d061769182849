// SPDX-License-Identifier: MIT
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
struct NtpDescription {
    const char* server;
    int32_t interval; // 0: not described
};

struct ManualTimeDescription {
    int32_t year;
    int32_t month;
    int32_t day;
    int32_t hour;
    int32_t minute;
    int32_t preserve_time_status;
};

struct DaylightSavingDescription {
    int32_t enabled;
    dst_rule start;
    dst_rule end;
    int32_t offset;
};

struct TimeDescription {
    const char* zone;
    const DaylightSavingDescription* daylight_saving;
    const ManualTimeDescription* manual;
    const NtpDescription* ntp;
};

struct SyslogDescription {
    int32_t enabled;
    const char* host;
    int32_t port;
    int32_t severity; // -1: not described
    const char* fixed_facility;
};

struct OpenflowControllerDescription {
    int32_t index;
    const char* address; // "": no such controller
};

struct OpenflowCriticalModeDescription {
    const char* mode;
    int32_t timeout;
};

struct OpenflowDescription {
    int32_t enabled;
    List<const OpenflowControllerDescription> controllers;
    const OpenflowCriticalModeDescription* critical_mode;
};

struct LoginDescription {
    const char* username;
    const char* password;
};

struct SystemDescription {
    const char* country;
    int32_t leds;
    int32_t reset_button;
    TimeDescription time;
    const SyslogDescription* syslog;
    OpenflowDescription openflow;
    const snmp_settings* snmp; // its `radio_status` may be left to the radios
    const LoginDescription* login;
};

struct VapAccessDescription {
    int32_t vap;
    int32_t mac_filter_mode;
    List<const mac_auth_radius_server> mac_auth_servers;
    int32_t mac_auth_critical_mode;
    const cp_settings* captive_portal;
};

struct MeshLinkDescription {
    const char* eligible_channels;
    int32_t bandwidth;
    const mesh_link_vap_settings* vap;
};

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
    const MeshLinkDescription* mesh;
    List<const VapAccessDescription> access;

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

constexpr size_t wds_links = 2; // that api_apply_wds takes

struct AccessPointDescription {
    SystemDescription system;
    List<const RadioDescription> radios;
    quilt_settings* quilt;
    const wds_settings* wds; // as many as there can be
    const knownClient_setup* known_clients;
    const char* portal_address; // "": none
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
