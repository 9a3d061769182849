// SPDX-License-Identifier: MIT
#include "records/registry.h"

#include "description.h"
#include "exit.h"
#include "nearest.h"
#include "text.h"

namespace orloctl {

namespace {

struct RecordArgument {
    const char* operation;
    Form form;
};

const std::vector<RecordArgument>& record_arguments() {
    static const std::vector<RecordArgument> all = {
        {"api_apply_radio", forms::record(radio_settings_record)},
        {"api_apply_hw_specific", forms::record(hw_specific_settings_record)},
        {"api_apply_vap", forms::keyed(vap_settings_record, ORLO_VAPS_PER_RADIO, "vap")},
        {"api_apply_mac_auth_radius_server", forms::record(mac_auth_radius_server_record)},
        {"api_apply_captive_portal_to_vap", forms::record(cp_settings_record)},
        {"api_apply_known_clients", forms::record(knownClient_setup_record)},
        {"api_apply_wds", forms::some(wds_settings_record, wds_links)},
        {"api_apply_channel_quilt", forms::record(quilt_settings_record)},
        {"api_apply_mesh_link_vap", forms::record(mesh_link_vap_settings_record)},
        {"api_apply_daylight_saving", forms::record(dst_rule_record)},
        {"api_apply_snmp", forms::record(snmp_settings_record)},
    };
    return all;
}

} // namespace

const std::vector<const Record*>& all_records() {
    static const std::vector<const Record*> all = {
        &access_point_record,
        &system_record,
        &radio_record,
        &profile_record,
        &time_record,
        &ntp_record,
        &manual_time_record,
        &daylight_saving_record,
        &dst_rule_record,
        &syslog_record,
        &openflow_record,
        &openflow_controller_record,
        &openflow_critical_mode_record,
        &snmp_settings_record,
        &snmp_trap_host_record,
        &login_record,
        &radio_settings_record,
        &hw_specific_settings_record,
        &vap_settings_record,
        &wep_record,
        &wpa_personal_record,
        &wpa_enterprise_record,
        &dot1x_record,
        &radius_server_record,
        &fast_roaming_record,
        &fast_roaming_ft_record,
        &rrm_record,
        &wnm_record,
        &vap_access_record,
        &mac_auth_radius_server_record,
        &cp_settings_record,
        &cp_auth_server_record,
        &wds_settings_record,
        &wds_wpa_record,
        &mesh_link_record,
        &mesh_link_vap_settings_record,
        &quilt_settings_record,
        &quilt_vap_record,
        &quilt_wpa_personal_record,
        &quilt_wpa_enterprise_record,
        &knownClient_setup_record,
    };
    return all;
}

std::vector<std::string> record_names() {
    std::vector<std::string> names;
    for (const Record* record : all_records()) {
        names.emplace_back(record->name);
    }
    return names;
}

const Record& find_record(const std::string& name) {
    for (const Record* record : all_records()) {
        if (name == record->name) {
            return *record;
        }
    }
    const std::string near = proposal(name, record_names());
    throw Refusal("unknown record '" + name + "'" +
                  (near.empty() ? ", known are " + joined(record_names(), ", ") : near));
}

const Form* record_argument(const std::string& operation) {
    for (const RecordArgument& argument : record_arguments()) {
        if (operation == argument.operation) {
            return &argument.form;
        }
    }
    return nullptr;
}

std::vector<std::string> operations_with(const Record& record) {
    std::vector<std::string> operations;
    for (const RecordArgument& argument : record_arguments()) {
        if (argument.form.record == &record) {
            operations.emplace_back(argument.operation);
        }
    }
    return operations;
}

} // namespace orloctl
