// SPDX-License-Identifier: MIT
// Operations that other products serve; here they stay in the table and only log.
#include "common/log.h"
#include "ops/operations.h"

namespace {

int do_nothing(const char* operation) {
    LOG_TRACE_FOR(operation, "Entering, do nothing.\n");
    LOG_TRACE_FOR(operation, "End...\n");
    return 0;
}

} // namespace

int api_apply_vlan_id(int /*vlan_id*/) {
    return do_nothing(__func__);
}

int api_apply_untagged_vlan(int /*a*/, int /*b*/) {
    return do_nothing(__func__);
}

int api_apply_dhcp(int /*a*/) {
    return do_nothing(__func__);
}

int api_apply_static_ip(const char* /*a*/, const char* /*b*/, const char* /*c*/) {
    return do_nothing(__func__);
}

int api_apply_dns(const char* /*a*/, const char* /*b*/, const char* /*c*/) {
    return do_nothing(__func__);
}

int api_get_AuthFailCount() {
    return do_nothing(__func__);
}

int api_get_AssocFailCount() {
    return do_nothing(__func__);
}

int api_disassociate_area_auth_clients() {
    LOG_TRACE("Entering, todo porting !!!\n");
    LOG_TRACE("End...\n");
    return 0;
}

int api_apply_link_aggregation(void* /*a*/) {
    LOG_TRACE("Entering, do nothing - not support\n");
    LOG_TRACE("End... return: 0\n");
    return 0;
}
