// SPDX-License-Identifier: MIT
// What the SNMP settings may hold. Every field is looked at, also those that status or version make
// irrelevant for the daemon.
#include "common/log.h"
#include "system/snmp.h"

#include <cstring>

namespace orlo {

namespace {

bool is_in_range(const char* operation, const char* field, int value, int least, int most) {
    if (value < least || value > most) {
        LOG_TRACE_FOR(operation, "error: %s is not in range(%d,%d)\n", field, least, most);
        return false;
    }
    return true;
}

// The length of a text. One that is not given is no mistake.
bool has_length(const char* operation, const char* field, const char* text, int most) {
    if (text == nullptr) {
        return true;
    }
    const auto length = static_cast<int>(strnlen(text, static_cast<size_t>(most) + 1));
    return is_in_range(operation, field, length, 1, most);
}

int check_manager(const char* operation, const snmp_settings& snmp) {
    if (snmp.restrict_source != 1 || snmp.manager_address == nullptr) {
        return 0;
    }
    LOG_TRACE_FOR(operation, "%s\n", snmp.manager_address);
    LOG_TRACE_FOR(operation, "%d\n", snmp.manager_mask);
    return has_length(operation, "snmp.management-system-address.server-address",
                      snmp.manager_address, 255)
               ? 0
               : -1;
}

int check_snmp_v1v2c(const snmp_settings& snmp) {
    if (snmp.read_only_community != nullptr) {
        LOG_TRACE("%s\n", snmp.read_only_community);
    }
    if (!has_length(__func__, "snmp.read-only-community-name", snmp.read_only_community, 256)) {
        return -1;
    }
    LOG_TRACE("%d\n", snmp.restrict_source);
    if (!is_in_range(__func__, "snmp.restrict-the-source-of-snmp-requests", snmp.restrict_source, 0,
                     1) ||
        check_manager(__func__, snmp) != 0 ||
        !has_length(__func__, "snmp.community-name-for-traps", snmp.trap_community, 256)) {
        return -1;
    }
    return 0;
}

int check_snmp_v3(const snmp_settings& snmp) {
    return has_length(__func__, "snmp.username", snmp.username, 12) &&
                   has_length(__func__, "snmp.password", snmp.password, 32)
               ? 0
               : -1;
}

int check_trap_types(const char* operation, const snmp_settings& snmp) {
    for (size_t i = 0; i < trap_type_count; i++) {
        if (trap_types[i] == nullptr) {
            continue;
        }
        LOG_TRACE_FOR(operation, "%s:%d\n", trap_types[i], snmp.trap_types[i]);
        if (!is_in_range(operation, "snmp.trap-types", snmp.trap_types[i], 0, 1)) {
            return -1;
        }
    }
    return 0;
}

int check_trap_hosts(const char* operation, const snmp_settings& snmp) {
    for (int i = 0; i < trap_host_count; i++) {
        const snmp_trap_host* host = snmp.trap_hosts[i];
        if (host == nullptr) {
            continue;
        }
        LOG_TRACE_FOR(operation, "host[%d].id:%d host.status:%d host.server-address:%s\n", i,
                      host->id, host->status, shown(host->server_address));
        if (!is_in_range(operation, "snmp.trap-host.id", host->id, 0, 2) ||
            !is_in_range(operation, "snmp.trap-host.status", host->status, 0, 1) ||
            !has_length(operation, "snmp.trap-host.server-address", host->server_address, 255)) {
            return -1;
        }
    }
    return 0;
}

} // namespace

int check_snmp(const snmp_settings& snmp) {
    constexpr int (*check_version[])(const snmp_settings&) = {check_snmp_v1v2c, check_snmp_v3};
    constexpr uint32_t version_count = sizeof check_version / sizeof check_version[0];
    if (!is_in_range(__func__, "snmp.status", snmp.status, 0, 1)) {
        return -1;
    }
    LOG_TRACE("SNMP version enum: %d\n", snmp.version);
    const auto version = static_cast<uint32_t>(snmp.version);
    if (version >= version_count) {
        LOG_ERROR("error: invalid version %d\n", snmp.version);
        return -1;
    }
    if (check_version[version](snmp) != 0) {
        return -1;
    }
    LOG_TRACE("%d\n", snmp.port);
    if (!is_in_range(__func__, "snmp.port", snmp.port, 0, 65535) ||
        check_trap_types(__func__, snmp) != 0 || check_trap_hosts(__func__, snmp) != 0) {
        return -1;
    }
    return 0;
}

} // namespace orlo
