// SPDX-License-Identifier: MIT
// The clients that the whole device knows, and whether only they or all but they may associate.
#include "common/pending_services.h"
#include "ops/operations.h"
#include "uci/staging.h"

#include <cstring>

using orlo::read_inline;
using orlo::stage;

namespace {

// The steps below work in its name.
constexpr const char* apply_clients = "api_apply_known_clients";

constexpr const char* action_option = "macaddrlist.action";
constexpr const char* list_option = "macaddrlist.maclist";

const struct {
    const char* action;
    const char* value;
} actions[] = {{"white", "allow"}, {"black", "deny"}};

void log_success(const char* option, const char* value) {
    LOG_TRACE_FOR(apply_clients, "Set %s config %s option to %s successful.\n", "wireless", option,
                  value);
}

bool stage_action_value(const char* value) {
    if (!stage("wireless", action_option, value)) {
        LOG_TRACE_FOR(apply_clients, "error: Set %s config %s option to %s failed.\n", "wireless",
                      action_option, value);
        return false;
    }
    log_success(action_option, value);
    return true;
}

// The agent's text may fill its place without an end.
bool stage_action(const char (&action)[8]) {
    if (action[0] == '\0') {
        return true;
    }
    for (const auto& row : actions) {
        if (strncmp(action, row.action, sizeof action) == 0) {
            return stage_action_value(row.value);
        }
    }
    LOG_TRACE_FOR(apply_clients, "error: Authentication Action incorrect.\n");
    return false;
}

bool add_client(const known_client_node& node) {
    const auto mac = read_inline(node.mac);
    if (*mac == '\0') {
        LOG_TRACE_FOR(apply_clients, "error: This node is a null string in mac list.\n");
        return false;
    }
    if (uciAddListElement("wireless", list_option, mac) != 0) {
        LOG_TRACE_FOR(apply_clients, "error: Add Mac Address %s to mac list failed.\n",
                      mac.c_str());
        return false;
    }
    log_success(list_option, mac);
    return true;
}

bool replace_list(const known_client_node* first) {
    if (uciDeleteValue("wireless", list_option, 0) != 0) {
        LOG_TRACE_FOR(apply_clients, "Info: There is no mac in %s config list %s.\n", "wireless",
                      list_option);
    }
    for (const known_client_node* node = first; node != nullptr; node = node->next) {
        if (!add_client(*node)) {
            return false;
        }
    }
    return true;
}

} // namespace

int api_apply_known_clients(const struct knownClient_setup* setup) {
    if (setup == nullptr) {
        return LOG_AND_DISCARD("error: knownClient_setup is NULL.\n");
    }
    if (!stage_action(setup->action) || !replace_list(setup->mac_list)) {
        return orlo::discard_staged();
    }
    orlo::mark_changed(orlo::service_network);
    return 0;
}
