// SPDX-License-Identifier: MIT
// The captive portal of a VAP, and its virtual address on the LAN. The portal itself is part of the
// device and reads these options when the network restarts.
#include "common/pending_services.h"
#include "ops/operations.h"
#include "uci/staging.h"

#include <cstring>

using orlo::shown;
using orlo::stage;
using orlo::Text;

namespace {

// The steps below work in its name.
constexpr const char* apply_portal = "api_apply_captive_portal_to_vap";

struct Mode {
    const char* name;
    const char* value;
    bool has_page;    // of its own, elsewhere
    bool has_servers; // that know the clients
};

const Mode modes[] = {
    {"click-through", "1", false, false},
    {"radius", "2", false, true},
    {"ext-page-redirect", "3", true, true},
};

struct Redirection {
    const char* name;
    const char* value;
    bool has_url;
};

const Redirection redirections[] = {
    {"disable", "disabled", false},
    {"session-keep", "session-keep", false},
    {"fixed-url", "fixed-url", true},
};

struct ServerOptions {
    const char* server;
    const char* secret;
};

const ServerOptions server_options[] = {
    {"cp_pri_auth_server", "cp_pri_auth_secret"},
    {"cp_sec_auth_server", "cp_sec_auth_secret"},
};

template <class Row, size_t N>
const Row* find(const Row (&rows)[N], const char* name) {
    for (const Row& row : rows) {
        if (name != nullptr && strcmp(name, row.name) == 0) {
            return &row;
        }
    }
    return nullptr;
}

bool is_given(const char* text) {
    return text != nullptr && *text != '\0';
}

// One VAP's portal being staged. Each step says whether it succeeded, and logs why not.
class Portal {
public:
    Portal(int radio, int vap) : radio_(radio), vap_(vap) {}

    bool turn_off() const { return set("captive_portal", "0"); }

    bool turn_on(const cp_settings& cp) const {
        const Mode* mode = find(modes, cp.auth_mode);
        if (mode == nullptr) {
            LOG_TRACE_FOR(apply_portal, "error: cp->auth_mode: Unknown value %s\n",
                          shown(cp.auth_mode));
            return false;
        }
        return stage_proxy(cp) && stage_redirection(cp) && stage_session(cp) &&
               stage_mode(*mode, cp) && (!mode->has_servers || stage_servers(cp)) &&
               stage_walled_garden(cp);
    }

private:
    bool stage_proxy(const cp_settings& cp) const {
        if (cp.http_proxy_enable != 1) {
            return set("cp_http_proxy", "0");
        }
        return set("cp_http_proxy", "1") && set("cp_http_proxy_base_url", cp.http_proxy_base_url);
    }

    bool stage_redirection(const cp_settings& cp) const {
        const Redirection* redirection = find(redirections, cp.redirect_mode);
        if (redirection == nullptr) {
            LOG_TRACE_FOR(apply_portal, "error: cp->redirect_mode: Unknown value %s\n",
                          shown(cp.redirect_mode));
            return false;
        }
        return set("cp_redirect_mode", redirection->value) &&
               (!redirection->has_url || set("cp_redirect_url", cp.redirect_url));
    }

    bool stage_session(const cp_settings& cp) const {
        if (cp.session_timeout >= 0 &&
            !set("cp_session_timeout", Text<8>("%d", cp.session_timeout))) {
            return false;
        }
        return cp.session_timeout_action == nullptr ||
               set("cp_session_timeout_action", cp.session_timeout_action);
    }

    // Without servers there is none for accounting either.
    bool stage_mode(const Mode& mode, const cp_settings& cp) const {
        return set("captive_portal", mode.value) && (mode.has_servers || remove("cp_acct_en")) &&
               (!mode.has_page || set("cp_ext_page_url", cp.ext_page_url));
    }

    bool stage_servers(const cp_settings& cp) const {
        return set_number("cp_auth_port", cp.auth_port) && stage_accounting(cp) &&
               stage_server(server_options[0], cp.auth_servers[0]) &&
               stage_server(server_options[1], cp.auth_servers[1]);
    }

    bool stage_accounting(const cp_settings& cp) const {
        if (cp.acct_enable == ORLO_NOT_GIVEN) {
            return true;
        }
        if (cp.acct_enable != 1) {
            return set("cp_acct_en", "0");
        }
        return set("cp_acct_en", "1") && set_number("cp_acct_port", cp.acct_port);
    }

    bool stage_server(const ServerOptions& options, const cp_auth_server& server) const {
        if (!is_given(server.server)) {
            return remove(options.server) && remove(options.secret);
        }
        return set(options.server, server.server) && set(options.secret, server.secret);
    }

    bool stage_walled_garden(const cp_settings& cp) const {
        if (cp.walled_garden_enable == 0) {
            return true;
        }
        if (!remove("cp_walled_garden")) {
            return false;
        }
        for (const char* entry : cp.walled_garden) {
            if (!is_given(entry)) {
                break;
            }
            if (uciAddListElement("wireless", key_of("cp_walled_garden"), entry) != 0) {
                LOG_TRACE_FOR(apply_portal, "error: Add walled garden entry %s failed.\n", entry);
                return false;
            }
        }
        return true;
    }

    bool set(const char* option, const char* value) const {
        if (!stage("wireless", key_of(option), value)) {
            LOG_TRACE_FOR(apply_portal, "Error: Set Value Failed\n");
            return false;
        }
        return true;
    }

    bool set_number(const char* option, int32_t value) const {
        return set(option, Text<16>("%d", value));
    }

    bool remove(const char* option) const {
        if (uciDeleteValue("wireless", key_of(option), 0) != 0) {
            LOG_TRACE_FOR(apply_portal, "Error: Delete Value Failed\n");
            return false;
        }
        return true;
    }

    Text<256> key_of(const char* option) const {
        return Text<256>("wifi%dvap%d.%s", radio_, vap_, option);
    }

    int radio_;
    int vap_;
};

int do_nothing(const char* operation) {
    LOG_TRACE_FOR(operation, "Entering, do nothing - not support CP yet\n");
    LOG_TRACE_FOR(operation, "End... return: 0\n");
    return 0;
}

} // namespace

int api_apply_captive_portal_to_vap(int radio, int vap, const struct cp_settings* cp) {
    LOG_TRACE("Entering... radio:%d vap:%d\n", radio, vap);
    if (cp == nullptr) {
        return -1;
    }
    const Portal portal(radio, vap);
    const bool staged = cp->enable == 1 ? portal.turn_on(*cp) : portal.turn_off();
    if (!staged) {
        return orlo::discard_staged();
    }
    orlo::mark_changed(orlo::service_network);
    LOG_TRACE("End Successfully\n");
    return 0;
}

int api_apply_cp_virt_ip(const char* addr) {
    LOG_TRACE("Entering... addr:%s\n", shown(addr));
    if (is_given(addr)) {
        if (!stage("network", "lan.cp_virt_ip", addr)) {
            return LOG_AND_DISCARD("Error: Set Value Failed\n");
        }
    } else if (uciDeleteValue("network", "lan.cp_virt_ip", 0) != 0) {
        return LOG_AND_DISCARD("Error: Delete Value Failed\n");
    }
    orlo::mark_changed(orlo::service_network);
    LOG_TRACE("End Successfully\n");
    return 0;
}

int api_get_captive_portal_status(void* /*unused*/) {
    return do_nothing(__func__);
}

int api_get_captive_portal_statistics(void* /*unused*/) {
    return do_nothing(__func__);
}

int api_apply_captive_portal_status(int /*unused*/) {
    return do_nothing(__func__);
}

int api_apply_captive_portal(void* /*unused1*/, void* /*unused2*/, void* /*unused3*/) {
    return do_nothing(__func__);
}
