// SPDX-License-Identifier: MIT
// Filtering a VAP's stations by address: the filter's mode, and the RADIUS servers that know the
// addresses.
#include "common/pending_services.h"
#include "ops/operations.h"
#include "uci/staging.h"

#include <cstring>

using orlo::shown;
using orlo::stage;
using orlo::Text;

namespace {

// The steps below work in its name.
constexpr const char* apply_server = "api_apply_mac_auth_radius_server";

enum ServerIndex { primary = 1, secondary = 2 };

bool is_server(uint32_t index) {
    return index == primary || index == secondary;
}

using Key = Text<128>;

// `failure` is the line that says so: the value, then the option.
bool stage_text(const Key& key, const char* value, const char* failure) {
    if (!stage("wireless", key, value)) {
        LOG_ERROR_FOR(apply_server, failure, shown(value), key.c_str());
        return false;
    }
    return true;
}

bool stage_address_and_key(int radio, int vap, const mac_auth_radius_server& server) {
    const char* suffix = server.index == primary ? "" : "_second";
    return stage_text(Key("wifi%dvap%d.mac_auth_server%s", radio, vap, suffix), server.ip,
                      "Failed to set ip address %s to %s\n") &&
           stage_text(Key("wifi%dvap%d.mac_auth_secret%s", radio, vap, suffix), server.key,
                      "Failed to set radius key %s to %s\n");
}

bool stage_port(int radio, int vap, uint32_t port) {
    const Key key("wifi%dvap%d.mac_auth_port", radio, vap);
    if (!stage("wireless", key, Text<8>("%u", port))) {
        LOG_ERROR_FOR(apply_server, "Failed to set port %u to %s\n", port, key.c_str());
        return false;
    }
    return true;
}

// A fixed password of before stays with any other format.
bool stage_password(int radio, int vap, const mac_auth_radius_server& server) {
    if (!stage_text(Key("wifi%dvap%d.mac_auth_password_format", radio, vap), server.password_format,
                    "Failed to set password %s to %s\n")) {
        return false;
    }
    return strcmp(server.password_format, "fixed-password") != 0 ||
           stage_text(Key("wifi%dvap%d.mac_auth_password", radio, vap), server.password,
                      "Failed to set fixed password %s to %s\n");
}

// What both servers share is the primary one's.
bool stage_shared(int radio, int vap, const mac_auth_radius_server& server) {
    return stage_port(radio, vap, server.port) &&
           stage_text(Key("wifi%dvap%d.mac_auth_username_separator", radio, vap),
                      server.username_separator, "Failed to set separator %s to %s\n") &&
           stage_text(Key("wifi%dvap%d.mac_auth_username_case", radio, vap), server.username_case,
                      "Failed to set character case %s to %s\n") &&
           stage_password(radio, vap, server);
}

} // namespace

int api_apply_mac_filter_mode(int radio, int vap, int mode) {
    LOG_TRACE("Entering... radio:%d vap:%d mode:%d\n", radio, vap, mode);
    if (!orlo::stage_number("wireless", Key("wifi%dvap%d.macfilter", radio, vap), mode)) {
        return LOG_AND_DISCARD("Error: Set Value Failed\n");
    }
    orlo::mark_changed(orlo::service_network);
    LOG_TRACE("End Successfully\n");
    return 0;
}

int api_apply_mac_auth_radius_server(int radio, int vap,
                                     const struct mac_auth_radius_server* server) {
    LOG_TRACE("Entering...\n");
    if (server == nullptr || !is_server(server->index)) { // what else is staged stays
        LOG_TRACE("End return -1\n");
        return -1;
    }
    if (!stage_address_and_key(radio, vap, *server) ||
        (server->index == primary && !stage_shared(radio, vap, *server))) {
        orlo::discard_staged();
        LOG_TRACE("End return -1\n");
        return -1;
    }
    orlo::mark_changed(orlo::service_network);
    LOG_TRACE("End return 0\n");
    return 0;
}

// Marks nothing: on its own it waits for the next restart of the network.
int api_apply_mac_auth_critical_mode(int radio, int vap, int mode) {
    const Key key("wifi%dvap%d.mac_critical_mode", radio, vap);
    if (!stage("wireless", key, Text<8>("%d", mode))) {
        LOG_ERROR("Failed to set critical mode %d to %s\n", mode, key.c_str());
        return orlo::discard_staged();
    }
    return 0;
}
