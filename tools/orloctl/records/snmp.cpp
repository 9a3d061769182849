// SPDX-License-Identifier: MIT
// The SNMP daemon.
#include <algorithm>

#include "records/registry.h"

namespace orloctl {

namespace {

using namespace forms;

constexpr int64_t highest_port = 65535;
constexpr int64_t snmp_port = 161;

enum Version { v1_v2c = 0, v3 = 1 };

// With the daemon off nothing but that is applied, and no text is needed.
bool needs(const snmp_settings& snmp, Version version) {
    return snmp.status == 1 && snmp.version == version;
}

bool has_community(const snmp_settings& snmp, const Place& /*place*/) {
    return !needs(snmp, v1_v2c) || snmp.read_only_community != nullptr;
}

bool has_manager(const snmp_settings& snmp, const Place& /*place*/) {
    return !needs(snmp, v1_v2c) || snmp.restrict_source == 0 || snmp.manager_address != nullptr;
}

bool has_trap_community(const snmp_settings& snmp, const Place& /*place*/) {
    const bool has_receiver = std::any_of(
        std::begin(snmp.trap_hosts), std::end(snmp.trap_hosts), [](const snmp_trap_host* host) {
            return host != nullptr && host->server_address != nullptr;
        });
    return !needs(snmp, v1_v2c) || !has_receiver || snmp.trap_community != nullptr;
}

bool has_username(const snmp_settings& snmp, const Place& /*place*/) {
    return !needs(snmp, v3) || snmp.username != nullptr;
}

bool has_password(const snmp_settings& snmp, const Place& /*place*/) {
    return !needs(snmp, v3) || snmp.password != nullptr;
}

bool tells_radios(const snmp_settings& snmp, const Place& place) {
    return place.in_description ||
           (snmp.radio_status[0] != ORLO_NOT_GIVEN && snmp.radio_status[1] != ORLO_NOT_GIVEN);
}

bool has_address(const snmp_trap_host& host, const Place& /*place*/) {
    return host.status == 0 || host.server_address != nullptr;
}

Form community() {
    return text().not_empty().bytes(256);
}

Form address() {
    return text().not_empty().bytes(255);
}

} // namespace

// clang-format off
const Record snmp_settings_record = {
    "snmp_settings", "the SNMP daemon", sizeof(snmp_settings), {
    {MEMBER_OF(snmp_settings, status), flag().or_else(1), "it runs; false: nothing but this is applied"},
    {MEMBER_OF(snmp_settings, version), choice({{"v1/v2c", v1_v2c}, {"v3", v3}}).required(),
     "of the protocol"},
    {MEMBER_OF(snmp_settings, read_only_community), community(), "v1/v2c: community that may read"},
    {MEMBER_OF(snmp_settings, port), number().in(0, highest_port).or_else(snmp_port), "its port"},
    {MEMBER_OF(snmp_settings, restrict_source), flag(), "v1/v2c: it serves the manager alone"},
    {MEMBER_OF(snmp_settings, manager_address), address(), "that manager: IPv4 address or host"},
    {MEMBER_OF(snmp_settings, manager_mask), number().in(0, 32).or_else(32),
     "length of the address' prefix; 32: this address alone"},
    {MEMBER_OF(snmp_settings, trap_community), community(), "v1/v2c: community of the traps"},
    {MEMBER_OF(snmp_settings, trap_types),
     flags(9, {{"cold-start", 0}, {"link", 1}, {"authentication", 2}, {"association", 3},
               {"filtered-station", 5}, {"radius-success", 6}, {"radius-failure", 7}, {"dfs-detected", 8}}),
     "what traps are sent about"},
    {MEMBER_OF(snmp_settings, trap_hosts), references(snmp_trap_host_record, 3, "id"),
     "who gets them; those that are not listed are deleted"},
    {MEMBER_OF(snmp_settings, radio_status), flags(ORLO_RADIOS).or_not_given(),
     "which radios will be up, for link traps; a description of the access point knows it"},
    {MEMBER_OF(snmp_settings, username), text().not_empty().bytes(12), "v3: name"},
    {MEMBER_OF(snmp_settings, password), text().not_empty().bytes(32), "v3: password"},
}, {
    condition<&has_community>("read_only_community", "is missing, \"v1/v2c\" needs it"),
    condition<&has_manager>("manager_address", "is missing, \"restrict_source\" needs it"),
    condition<&has_trap_community>("trap_community", "is missing, a trap host of \"v1/v2c\" needs it"),
    condition<&has_username>("username", "is missing, \"v3\" needs it"),
    condition<&has_password>("password", "is missing, \"v3\" needs it"),
    condition<&tells_radios>("radio_status", "must be told for both radios, but in a description"),
}};

const Record snmp_trap_host_record = {
    "snmp_trap_host", "a receiver of traps", sizeof(snmp_trap_host), {
    {MEMBER_OF(snmp_trap_host, id), number().in(0, 2).required(), "which one"},
    {MEMBER_OF(snmp_trap_host, status), flag().or_else(1), "it is sent traps"},
    {MEMBER_OF(snmp_trap_host, server_address), address(), "where it is"},
}, {
    condition<&has_address>("server_address", "is missing, it is sent traps"),
}};
// clang-format on

} // namespace orloctl
