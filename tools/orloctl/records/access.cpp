// SPDX-License-Identifier: MIT
// Who may associate with a VAP, and with the device.
#include "description.h"
#include "records/registry.h"

namespace orloctl {

namespace {

using namespace forms;

constexpr int64_t highest_port = 65535;
constexpr int64_t radius_port = 1812;

bool has_fixed_password(const mac_auth_radius_server& server, const Place& /*place*/) {
    return server.index != 1 || !is(server.password_format, "fixed-password") ||
           server.password != nullptr;
}

} // namespace

// clang-format off
const Record vap_access_record = {
    "vap_access", "who may use a VAP", sizeof(VapAccessDescription), {
    {MEMBER_OF(VapAccessDescription, vap),
     number().in(0, ORLO_VAPS_PER_RADIO - 1).required().or_else(-1), "which one"},
    {MEMBER_OF(VapAccessDescription, mac_filter_mode), number().or_not_given(not_described),
     "filter by address; 0: off, 2 and 3: the servers are asked, 4: area authentication; unchecked"},
    {MEMBER_OF(VapAccessDescription, mac_auth_servers), list(mac_auth_radius_server_record, "index"),
     "RADIUS servers that know the addresses; one that is not listed stays as it is"},
    {MEMBER_OF(VapAccessDescription, mac_auth_critical_mode), number().or_not_given(not_described),
     "what counts while no server answers; unchecked, takes effect with the next network restart"},
    {MEMBER_OF(VapAccessDescription, captive_portal), optional(cp_settings_record),
     "what guests meet first"},
}};

const Record mac_auth_radius_server_record = {
    "mac_auth_radius_server", "a RADIUS server that authenticates stations by address",
    sizeof(mac_auth_radius_server), {
    {MEMBER_OF(mac_auth_radius_server, index), number().in(1, 2).required(),
     "1: primary, 2: secondary, which shares all behind \"key\" with the primary"},
    {MEMBER_OF(mac_auth_radius_server, ip), text().required(), "its address; empty: none"},
    {MEMBER_OF(mac_auth_radius_server, key), text().required(), "secret shared with it; empty: none"},
    {MEMBER_OF(mac_auth_radius_server, port), number().in(0, highest_port).or_else(radius_port),
     "authentication port"},
    {MEMBER_OF(mac_auth_radius_server, username_separator), text().or_else("hyphen"),
     "what stands between the octets of an address; unchecked"},
    {MEMBER_OF(mac_auth_radius_server, username_case), text().or_else("lower"),
     "case of its letters; unchecked"},
    {MEMBER_OF(mac_auth_radius_server, password_format), text().or_else("username"),
     "what the password is, \"username\" or \"fixed-password\"; unchecked"},
    {MEMBER_OF(mac_auth_radius_server, password), text(), "the fixed password"},
}, {
    condition<&has_fixed_password>("password", "is missing, \"fixed-password\" needs it"),
}};

const Record knownClient_setup_record = {
    "knownClient_setup", "the known clients of the device", sizeof(knownClient_setup), {
    {MEMBER_OF(knownClient_setup, action), text().words({"white", "black"}),
     "\"white\": only these may associate, \"black\": these may not; none: as it is"},
    {MEMBER_OF(knownClient_setup, mac_list), addresses().like_mac().required(),
     "their addresses; they replace those that are stored, also when there are none"},
}};
// clang-format on

} // namespace orloctl
