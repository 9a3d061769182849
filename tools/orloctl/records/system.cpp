// SPDX-License-Identifier: MIT
// Settings of the device as a whole.
#include <cstring>

#include "description.h"
#include "records/registry.h"

namespace orloctl {

namespace {

using namespace forms;

constexpr int64_t longest_timeout = 9999999; // seven digits are stored
constexpr int64_t highest_port = 65535;
constexpr int64_t syslog_port = 514;

bool has_log_host(const SyslogDescription& syslog, const Place& /*place*/) {
    return syslog.enabled != 1 || is_given(syslog.host);
}

bool has_timeout(const OpenflowCriticalModeDescription& critical, const Place& /*place*/) {
    return is(critical.mode, "secure") || critical.timeout != not_described;
}

bool fits_command(const LoginDescription& login, const Place& /*place*/) {
    return strlen(login.username) + strlen(login.password) <=
           shell_command("api_apply_system_login")->room;
}

} // namespace

// clang-format off
const Record system_record = {
    "system", "the device as a whole", sizeof(SystemDescription), {
    {MEMBER_OF(SystemDescription, country), text().not_empty().bytes(9),
     "code of the country whose rules the radios obey"},
    {MEMBER_OF(SystemDescription, leds), flag().or_not_given(not_described), "the LEDs are lit"},
    {MEMBER_OF(SystemDescription, reset_button), flag().or_not_given(not_described),
     "the reset button works"},
    {MEMBER_OF(SystemDescription, time), record(time_record), "zone and source of the time"},
    {MEMBER_OF(SystemDescription, syslog), optional(syslog_record), "where log lines are sent"},
    {MEMBER_OF(SystemDescription, openflow), record(openflow_record), "the OpenFlow agent"},
    {MEMBER_OF(SystemDescription, snmp), optional(snmp_settings_record), "the SNMP daemon"},
    {MEMBER_OF(SystemDescription, login), optional(login_record), "the administrator"},
}};

const Record syslog_record = {
    "syslog", "remote logging", sizeof(SyslogDescription), {
    {MEMBER_OF(SyslogDescription, enabled), flag().or_else(1), "log lines are sent"},
    {MEMBER_OF(SyslogDescription, host), text(), "to this host; none: the stored one is deleted"},
    {MEMBER_OF(SyslogDescription, port), number().in(1, highest_port).or_else(syslog_port),
     "its port"},
    {MEMBER_OF(SyslogDescription, severity), number().in(0, 7).or_not_given(),
     "least severity that is logged; 0: emergencies alone, 7: everything"},
    {MEMBER_OF(SyslogDescription, fixed_facility), text(), "not served"},
}, {
    condition<&has_log_host>("host", "is missing, logging to it is enabled"),
}};

const Record openflow_record = {
    "openflow", "the OpenFlow agent", sizeof(OpenflowDescription), {
    {MEMBER_OF(OpenflowDescription, enabled), flag().or_not_given(not_described),
     "switches it on or off"},
    {MEMBER_OF(OpenflowDescription, controllers), list(openflow_controller_record, "index"),
     "those that are listed; others stay as they are"},
    {MEMBER_OF(OpenflowDescription, critical_mode), optional(openflow_critical_mode_record),
     "what happens to traffic while no controller answers"},
}};

const Record openflow_controller_record = {
    "openflow_controller", "an OpenFlow controller", sizeof(OpenflowControllerDescription), {
    {MEMBER_OF(OpenflowControllerDescription, index), number().in(0, INT_MAX).required().or_else(-1),
     "which one"},
    {MEMBER_OF(OpenflowControllerDescription, address), text().required(),
     "where it is; empty: there is no such controller"},
}};

const Record openflow_critical_mode_record = {
    "openflow_critical_mode", "traffic without a controller", sizeof(OpenflowCriticalModeDescription), {
    {MEMBER_OF(OpenflowCriticalModeDescription, mode),
     text().words({"normal", "drop", "secure"}).required(), "what happens to it"},
    {MEMBER_OF(OpenflowCriticalModeDescription, timeout),
     number().in(0, longest_timeout).in_unit("seconds").or_not_given(not_described),
     "how long a controller may be silent; not with \"secure\""},
}, {
    condition<&has_timeout>("timeout", "is missing, only \"secure\" has none"),
}};

const Record login_record = {
    "login", "the administrator's name and password, changed at once", sizeof(LoginDescription), {
    {MEMBER_OF(LoginDescription, username), text().not_empty().required().reaches(Shell::single_quotes),
     "name"},
    {MEMBER_OF(LoginDescription, password), text().not_empty().required().reaches(Shell::single_quotes),
     "password; the library logs it"},
}, {
    condition<&fits_command>("password", "must not have more than 78 bytes together with the username"),
}};
// clang-format on

} // namespace orloctl
