// SPDX-License-Identifier: MIT
// Remote logging.
#include "common/pending_services.h"
#include "ops/operations.h"
#include "system/together.h"

using orlo::outcome;
using orlo::shown;
using orlo::StagedTogether;
using orlo::Text;

namespace {

constexpr const char* apply_syslog = "api_apply_syslog";

void stage_severity(StagedTogether& options, int severity) {
    if (severity < 0 || severity > 7) {
        LOG_TRACE_FOR(apply_syslog, "info: bypass applying severity due to out of range\n");
        return;
    }
    options.set("@system[0].severity", Text<8>("%d", severity));
}

// A receiver is a host with a port; without either there is none.
void stage_receiver(StagedTogether& options, const char* host, int port) {
    const bool is_given = host != nullptr && port >= 1 && port <= 65535;
    options.set("@system[0].log_ip", is_given ? host : "");
    options.set("@system[0].log_port", Text<8>("%d", is_given ? port : 514));
}

int apply(int status, const char* host, int port, int severity) {
    StagedTogether options("system");
    stage_severity(options, severity);
    options.set("@system[0].log_remote", Text<8>("%d", status));
    stage_receiver(options, host, port);
    if (!options.all()) {
        return orlo::discard_staged();
    }
    orlo::mark_changed(orlo::service_log_relay);
    return 0;
}

} // namespace

int api_apply_syslog(int status, const char* host, int port, int severity,
                     const char* fixed_facility) {
    LOG_TRACE("Entering... status:%d host:%s port:%d severity:%d fixed_facility:%s\n", status,
              shown(host), port, severity, shown(fixed_facility));
    const int result = apply(status, host, port, severity);
    LOG_TRACE("End... return: %s\n", outcome(result));
    return result;
}
