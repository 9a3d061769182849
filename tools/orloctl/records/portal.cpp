// SPDX-License-Identifier: MIT
// The captive portal of a VAP.
#include "records/registry.h"

namespace orloctl {

namespace {

using namespace forms;

constexpr int64_t highest_port = 65535;
constexpr int64_t radius_port = 1812;
constexpr int64_t accounting_port = 1813;
constexpr int64_t longest_timeout = 9999999; // seven digits are stored
constexpr size_t garden_entries = 50;

bool has_proxy_url(const cp_settings& cp, const Place& /*place*/) {
    return cp.http_proxy_enable != 1 || cp.http_proxy_base_url != nullptr;
}

bool has_redirect_url(const cp_settings& cp, const Place& /*place*/) {
    return !is(cp.redirect_mode, "fixed-url") || is_given(cp.redirect_url);
}

bool has_page_url(const cp_settings& cp, const Place& /*place*/) {
    return !is(cp.auth_mode, "ext-page-redirect") || is_given(cp.ext_page_url);
}

bool has_auth_server(const cp_settings& cp, const Place& /*place*/) {
    return !is(cp.auth_mode, "radius") || is_given(cp.auth_servers[0].server);
}

bool uses_garden(const cp_settings& cp, const Place& /*place*/) {
    return cp.walled_garden_enable != 0 || cp.walled_garden[0] == nullptr;
}

bool has_secret(const cp_auth_server& server, const Place& /*place*/) {
    return !is_given(server.server) || server.secret != nullptr;
}

} // namespace

// clang-format off
const Record cp_settings_record = {
    "cp_settings", "the captive portal of a VAP", sizeof(cp_settings), {
    {MEMBER_OF(cp_settings, enable), flag().or_else(1), "the VAP has one"},
    {MEMBER_OF(cp_settings, auth_mode),
     text().words({"click-through", "radius", "ext-page-redirect"}).required(),
     "guests agree, give name and password, or are sent to an external page"},
    {MEMBER_OF(cp_settings, http_proxy_enable), flag(), "guests use an HTTP proxy"},
    {MEMBER_OF(cp_settings, http_proxy_base_url), text(), "base URL of the proxy"},
    {MEMBER_OF(cp_settings, redirect_mode),
     text().words({"disable", "session-keep", "fixed-url"}).or_else("disable"),
     "where guests are sent once they are let in: nowhere, where they wanted to go, to a fixed URL"},
    {MEMBER_OF(cp_settings, redirect_url), text(), "that fixed URL"},
    {MEMBER_OF(cp_settings, ext_page_url), text(), "the external page"},
    {MEMBER_OF(cp_settings, auth_servers), array(cp_auth_server_record, 2),
     "RADIUS servers, primary and secondary; not with \"click-through\""},
    {MEMBER_OF(cp_settings, auth_port), number().in(0, highest_port).or_else(radius_port),
     "authentication port of both"},
    {MEMBER_OF(cp_settings, acct_enable), flag().or_not_given(), "accounting by RADIUS"},
    {MEMBER_OF(cp_settings, acct_port), number().in(0, highest_port).or_else(accounting_port),
     "accounting port of both"},
    {MEMBER_OF(cp_settings, walled_garden_enable), flag(),
     "replaces the walled garden; false: it stays as it is"},
    {MEMBER_OF(cp_settings, walled_garden), texts(garden_entries).not_empty(),
     "destinations that are open to everybody"},
    {MEMBER_OF(cp_settings, session_timeout), number().in(0, longest_timeout).or_not_given(),
     "how long a guest may stay"},
    {MEMBER_OF(cp_settings, session_timeout_action), text(), "what happens then; unchecked"},
}, {
    condition<&has_proxy_url>("http_proxy_base_url", "is missing, \"http_proxy_enable\" needs it"),
    condition<&has_redirect_url>("redirect_url", "is missing, \"fixed-url\" needs it"),
    condition<&has_page_url>("ext_page_url", "is missing, \"ext-page-redirect\" needs it"),
    condition<&has_auth_server>("auth_servers[0].server", "is missing, \"radius\" needs it"),
    condition<&uses_garden>("walled_garden", "is not looked at without \"walled_garden_enable\""),
}, "enable"};

const Record cp_auth_server_record = {
    "cp_auth_server", "a RADIUS server of a captive portal", sizeof(cp_auth_server), {
    {MEMBER_OF(cp_auth_server, server), text(), "its address; none: there is no such server"},
    {MEMBER_OF(cp_auth_server, secret), text(), "secret shared with it"},
}, {
    condition<&has_secret>("secret", "is missing, the server needs it"),
}};
// clang-format on

} // namespace orloctl
