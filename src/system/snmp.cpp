// SPDX-License-Identifier: MIT
#include "system/snmp.h"

#include "common/identity.h"
#include "common/pending_services.h"
#include "ops/operations.h"
#include "uci/staging.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace orlo {

const char* const trap_types[trap_type_count] = {
    "typeColdStart",   "typeLink",        "typeAuthentication",    "typeAssociation",
    nullptr,           "typeFilteredSta", "typeRadiusAuthSuccess", "typeRadiusAuthFail",
    "typeDfsDetected",
};

namespace {

// Whether a radio's state is known and will be another one.
bool is_about_to_change(int radio, bool to_up) {
    char* state = api_get_radio_status(radio);
    const bool changes =
        state != nullptr && strcmp(state, "none") != 0 && strcmp(state, to_up ? "up" : "down") != 0;
    free(state);
    return changes;
}

} // namespace

void send_snmp_trap(const snmp_settings& snmp) {
    // As SNMP numbers the two traps.
    constexpr int link_down = 2;
    constexpr int link_up = 3;
    FILE* request = fopen("/tmp/orlo_send_snmp_trap", "w");
    if (request == nullptr) {
        LOG_ERROR("warning: Can't open the send trap file of SNMP.\n");
        return;
    }
    for (int radio = 0; radio < radio_count; radio++) {
        const bool to_up = snmp.radio_status[radio] == 1;
        if (is_about_to_change(radio, to_up)) {
            fprintf(request, "%d %d\n", to_up ? link_up : link_down, radio);
        }
    }
    fclose(request);
}

} // namespace orlo

int api_apply_snmp(const struct snmp_settings* snmp) {
    if (snmp == nullptr) {
        LOG_ERROR("error: snmp is NULL\n");
        return -1;
    }
    LOG_TRACE("Entering... status:%d\n", snmp->status);
    if (orlo::check_snmp(*snmp) != 0) {
        LOG_ERROR("error: failed in validation\n");
        return -1;
    }
    if (orlo::setup_snmp(*snmp) != 0) {
        LOG_ERROR("error: failed in configuration\n");
        return orlo::discard_staged();
    }
    orlo::send_snmp_trap(*snmp);
    orlo::mark_changed(orlo::service_snmp);
    LOG_TRACE("End...\n");
    return 0;
}
