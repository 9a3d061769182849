// SPDX-License-Identifier: MIT
// The RADIUS servers of a VAP with enterprise security.
#include "uci/staging.h"
#include "vap/security.h"

namespace orlo {

namespace {

constexpr int server_count = 2;
constexpr int32_t accounting_disabled = -1;

const char* const server_option[server_count] = {"auth_server", "auth_server_second"};
const char* const secret_option[server_count] = {"auth_secret", "auth_secret_second"};

bool is_port(int32_t port) {
    return port >= 0 && port <= 65535;
}

} // namespace

bool SecurityTranslator::write_radius_servers(const radius_server (&servers)[2]) {
    int count = 0;
    for (; count < server_count; count++) {
        const radius_server& server = servers[count];
        LOG_TRACE_FOR(speaker_.operation, "===== RADIUS Server %d =====\n", count);
        speaker_.say(wording_.radius.ip, count, shown(server.ip));
        if (server.ip == nullptr) {
            break;
        }
        if (!write_radius_server(count, server)) {
            return false;
        }
    }
    if (count == 0) {
        LOG_TRACE_FOR(speaker_.operation, wording_.no_auth_server, count);
        return false;
    }
    if (count == 1) {
        forget_second_server();
    }
    return true;
}

// There is one option for each port: a second server's replace the first one's.
bool SecurityTranslator::write_radius_server(int index, const radius_server& server) {
    if (!write(server_option[index], server.ip)) {
        return false;
    }
    speaker_.say(wording_.radius.key, index, shown(server.key));
    if (server.key != nullptr) {
        if (!write(secret_option[index], server.key)) {
            return false;
        }
    } else if (remove(secret_option[index])) {
        speaker_.say(wording_.radius.deleted_secret);
    }
    speaker_.say(wording_.radius.auth_port, index, server.auth_port);
    if (!is_port(server.auth_port)) {
        return refuse(wording_.wrong_auth_port);
    }
    if (!write_number("auth_port", server.auth_port)) {
        return false;
    }
    speaker_.say(wording_.radius.account_port, index, server.account_port);
    if (server.account_port == accounting_disabled) {
        speaker_.say(wording_.radius.account_disabled, server.account_port);
        return true;
    }
    if (!is_port(server.account_port)) {
        LOG_TRACE_FOR(speaker_.operation, wording_.wrong_account_port, server.account_port);
        return false;
    }
    return write_number("acct_port", server.account_port);
}

void SecurityTranslator::forget_second_server() {
    if (remove(server_option[1])) {
        speaker_.say(wording_.radius.deleted_second_server);
    }
    if (remove(secret_option[1])) {
        speaker_.say(wording_.radius.deleted_second_secret);
    }
}

} // namespace orlo
