// SPDX-License-Identifier: MIT
// The administrator's name and password.
#include "common/command.h"
#include "common/file.h"
#include "ops/operations.h"
#include "uci/staging.h"

#include <cstring>

using orlo::CommandOutput;
using orlo::outcome;
using orlo::shown;
using orlo::Text;

namespace {

// The steps below work in its name.
constexpr const char* apply_login = "api_apply_system_login";

constexpr const char* password_script = "/usr/lib/lua/luci/chpasswd.lua";

// Ends every session of the web interface but the all-zero one, which is everybody's. `status`
// becomes that of the last command run; false when one could not be started, or none be listed.
bool destroy_sessions(int& status) {
    CommandOutput sessions("ubus call session list | grep ubus_rpc_session | awk '{print $2}' | "
                           "tr -d '\",'");
    if (!sessions.started()) {
        LOG_TRACE_FOR(apply_login, "Execute destroy session failed\n");
        return false;
    }
    char session[64];
    while (status >= 0 && sessions.read_line(session, sizeof session)) {
        if (strstr(session, "00000000") != nullptr) {
            continue;
        }
        orlo::cut_line_end(session);
        status = orlo::run_logged(
            apply_login,
            Text<128>("/bin/ubus call session destroy '{\"ubus_rpc_session\": \"%s\"}'", session));
    }
    return status >= 0;
}

int end_with(int status) {
    LOG_TRACE_FOR(apply_login, "End... return: %s\n", outcome(status));
    return status;
}

} // namespace

// The result is the status of the last session that was ended: agents know it so. What the script
// makes of name and password is not looked at.
int api_apply_system_login(const char* username, const char* password) {
    int status = 0;
    LOG_TRACE("Entering... username:%s password:%s\n", shown(username), shown(password));
    if (username == nullptr || password == nullptr) {
        return end_with(-1);
    }
    if (!orlo::exists(password_script)) {
        LOG_TRACE("Execute username/password modification failed\n");
        return end_with(-1);
    }
    if (!destroy_sessions(status)) {
        return -1;
    }
    const Text<128> change("%s %s '%s' '%s'", "/usr/bin/lua", password_script, username, password);
    if (orlo::run_logged(__func__, change) < 0) {
        return orlo::discard_staged();
    }
    return end_with(status);
}
