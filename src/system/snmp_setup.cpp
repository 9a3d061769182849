// SPDX-License-Identifier: MIT
// The SNMP settings as the daemon's configuration, package "snmpd".
#include "system/snmp.h"

#include "uci/staging.h"

namespace orlo {

namespace {

constexpr const char* package = "snmpd";

// The options of a setup, written in the name of the function that makes it.
class Options {
public:
    explicit Options(const char* operation) : operation_(operation) {}

    bool set(const char* key, const char* value) const {
        if (!stage(package, key, value)) {
            LOG_ERROR_FOR(operation_, "failed to set %s.%s=%s\n", package, key, shown(value));
            return false;
        }
        return true;
    }

    bool set(const char* key, int number) const { return set(key, Text<16>("%d", number)); }

    // What is not there counts as removed.
    bool remove(const char* key) const {
        if (uciDeleteValue(package, key, 0) != 0) {
            LOG_ERROR_FOR(operation_, "failed to delete %s.%s\n", package, key);
            return false;
        }
        return true;
    }

    struct Row {
        const char* key;
        const char* value;
    };

    template <size_t N>
    bool set_all(const Row (&rows)[N]) const {
        for (const Row& row : rows) {
            if (!set(row.key, row.value)) {
                return false;
            }
        }
        return true;
    }

private:
    const char* operation_;
};

// A key without an option makes the section, the value being its type.
// clang-format off
const Options::Row community_access[] = {
    {"public_access", "access"},
    {"public_access.group", "public"},
    {"public_access.context", "none"},
    {"public_access.level", "noauth"},
    {"public_access.version", "any"},
    {"public_access.prefix", "exact"},
    {"public_access.read", "all"},
    {"public_access.write", "none"},
    {"public_access.notify", "none"},
};
const Options::Row user_access[] = {
    {"snmpv3_access", "access"},
    {"snmpv3_access.group", "snmpv3"},
    {"snmpv3_access.context", "none"},
    {"snmpv3_access.level", "priv"},
    {"snmpv3_access.version", "usm"},
    {"snmpv3_access.prefix", "exact"},
    {"snmpv3_access.read", "all"},
    {"snmpv3_access.write", "none"},
    {"snmpv3_access.notify", "none"},
};
// clang-format on

// Who may ask: everybody, or the manager alone, which is a network when its mask says so.
bool set_source(const Options& options, const snmp_settings& snmp) {
    if (snmp.restrict_source == 0) {
        return options.set("general.restrict_enable", "0") &&
               options.set("public.source", "default");
    }
    if (!options.set("general.restrict_enable", "1")) {
        return false;
    }
    const char* address = snmp.manager_address;
    if (is_valid_ipv4_text(address) != 0 && snmp.manager_mask != 32) {
        return options.set("public.source", Text<32>("%s/%d", address, snmp.manager_mask));
    }
    return options.set("public.source", address);
}

bool has_trap_receiver(const snmp_settings& snmp) {
    for (const snmp_trap_host* host : snmp.trap_hosts) {
        if (host != nullptr && host->server_address != nullptr) {
            return true;
        }
    }
    return false;
}

bool set_trap_community(const Options& options, const snmp_settings& snmp) {
    return has_trap_receiver(snmp) ? options.set("trapsink.community", snmp.trap_community)
                                   : options.remove("trapsink.community");
}

int setup_snmp_v1v2c(const snmp_settings& snmp) {
    const Options options(__func__);
    const bool done = options.remove("snmpv3_access") && //
                      options.set_all(community_access) &&
                      options.set("public.community", snmp.read_only_community) &&
                      options.set("agent.agentaddress", snmp.port) &&
                      set_source(options, snmp) && //
                      set_trap_community(options, snmp);
    return done ? 0 : -1;
}

int setup_snmp_v3(const snmp_settings& snmp) {
    const Options options(__func__);
    const Options::Row user[] = {
        {"snmpv3", "group"},
        {"snmpv3.secname", snmp.username},
        {"snmpv3_user", "user"},
        {"snmpv3_user.username", snmp.username},
        {"snmpv3_user.password", snmp.password},
    };
    const bool done = options.remove("public_access") && //
                      options.set_all(user_access) &&    //
                      options.set_all(user) &&           //
                      options.set("agent.agentaddress", snmp.port);
    return done ? 0 : -1;
}

struct Version {
    const char* name;
    int (*setup)(const snmp_settings& snmp);
};

const Version versions[] = {{"v1/v2c", setup_snmp_v1v2c}, {"v3", setup_snmp_v3}};

bool set_trap_types(const Options& options, const snmp_settings& snmp) {
    for (size_t i = 0; i < trap_type_count; i++) {
        if (trap_types[i] != nullptr &&
            !options.set(Text<128>("traptype.%s", trap_types[i]), snmp.trap_types[i])) {
            return false;
        }
    }
    return true;
}

// The stored hosts make room for those that are to receive traps.
bool set_trap_hosts(const Options& options, const snmp_settings& snmp) {
    for (int i = 0; i < trap_host_count; i++) {
        const Text<128> key("trapsink.host%d", i);
        const snmp_trap_host* host = snmp.trap_hosts[i];
        if (!options.remove(key)) {
            return false;
        }
        if (host != nullptr && host->status != 0 && !options.set(key, host->server_address)) {
            return false;
        }
    }
    return true;
}

} // namespace

int setup_snmp(const snmp_settings& snmp) {
    const Options options(__func__);
    if (!options.set("general.enabled", snmp.status)) {
        return -1;
    }
    if (snmp.status == 0) {
        return 0;
    }
    const Version& version = versions[snmp.version];
    if (!options.set("general.version", version.name)) {
        return -1;
    }
    if (version.setup(snmp) != 0) {
        LOG_ERROR("error: failed to set snmp %s setup.\n", version.name);
        return -1;
    }
    return set_trap_types(options, snmp) && set_trap_hosts(options, snmp) ? 0 : -1;
}

} // namespace orlo
