// SPDX-License-Identifier: MIT
// Which records are described, and what they are for.
#pragma once

#include <string>
#include <vector>

#include "records/field.h"

namespace orloctl {

extern const Record access_point_record; // the root of a description
extern const Record system_record;
extern const Record radio_record;
extern const Record profile_record;

extern const Record time_record;
extern const Record ntp_record;
extern const Record manual_time_record;
extern const Record daylight_saving_record;
extern const Record dst_rule_record;
extern const Record syslog_record;
extern const Record openflow_record;
extern const Record openflow_controller_record;
extern const Record openflow_critical_mode_record;
extern const Record snmp_settings_record;
extern const Record snmp_trap_host_record;
extern const Record login_record;

extern const Record radio_settings_record;
extern const Record hw_specific_settings_record;

extern const Record vap_settings_record;
extern const Record wep_record;
extern const Record wpa_personal_record;
extern const Record wpa_enterprise_record;
extern const Record dot1x_record;
extern const Record radius_server_record;
extern const Record fast_roaming_record;
extern const Record fast_roaming_ft_record;
extern const Record rrm_record;
extern const Record wnm_record;

extern const Record vap_access_record;
extern const Record mac_auth_radius_server_record;
extern const Record cp_settings_record;
extern const Record cp_auth_server_record;
extern const Record knownClient_setup_record;

extern const Record wds_settings_record;
extern const Record wds_wpa_record;
extern const Record mesh_link_record;
extern const Record mesh_link_vap_settings_record;

extern const Record quilt_settings_record;
extern const Record quilt_vap_record;
extern const Record quilt_wpa_personal_record;
extern const Record quilt_wpa_enterprise_record;

// All of them, those that others are made of behind these.
const std::vector<const Record*>& all_records();

std::vector<std::string> record_names();

// Throws a Refusal that proposes what may have been meant, or lists the names.
const Record& find_record(const std::string& name);

// The form of an operation's record argument; NULL when its record is not described.
const Form* record_argument(const std::string& operation);

// The operations that take a record.
std::vector<std::string> operations_with(const Record& record);

} // namespace orloctl
