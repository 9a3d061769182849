// SPDX-License-Identifier: MIT
// The access point itself: agent state, firmware, maintenance, time, device settings, SNMP,
// coordination of applies.
#include "faults/cases.h"

namespace orlo::test {

// NOLINTNEXTLINE(readability-function-size): a table
std::vector<Case> system_cases() {
    // clang-format off
    return {
        {0, "api_set_orloagent_state", {"7"}, "0", ""},
        {1, "api_get_orloagent_state", {}, "0", ""},
        {2, "api_fw_validate", {"/tmp/image"}, "0", "run=-1 exit=-1 kill=-1",
            "printf '\\047\\005\\031\\126' >/tmp/image"},
        {3, "api_get_fwupgrade_status", {}, "1", "read=-1. empty=0 endless=0",
            "echo orlo_fwup_flag=1 >/var/run/device/nvram"},
        {4, "api_fw_upgrade", {"/tmp/image"}, "0",
            "run=-1 exit=-1 kill=same fork=-1"},
        {5, "api_clean_crashlog", {}, "0", "run=same exit=same kill=same"},
        {6, "api_check_crashlog", {}, "1", "look=0", "mkdir -p /flash/crash; : >/flash/crash/exception.log"},
        {7, "api_dump_crash_log", {}, "0", "run=-1 exit=-1 kill=-1 look=same remove=same"},
        {8, "api_is_dump_crash_log_executing", {}, "-1", "read=same empty=same endless=0"},
        {9, "api_disassociate_client", {"02:11:22:33:44:55", "0", "0"}, "0",
            "run=same exit=same kill=same"},
        {10, "api_disassociate_area_auth_clients", {}, "0", ""},
        {11, "api_get_management_ip", {}, "0", "read=same empty=same endless=same"},
        {12, "api_apply_system_login", {"admin", "secret"}, "0",
            "look=-1 read=-1 empty=same endless=same run:destroy=-1 exit:destroy=256 kill:destroy=9 "
            "run:chpasswd=-1! exit:chpasswd=same kill:chpasswd=same",
            "echo 0123456789abcdef0123456789abcdef >/var/run/device/sessions"},
        {13, "api_reserved_13", {}, "0", ""},
        {14, "api_apply_vlan_id", {"7"}, "0", ""},
        {15, "api_apply_untagged_vlan", {"1", "7"}, "0", ""},
        {16, "api_apply_dhcp", {"1"}, "0", ""},
        {17, "api_apply_static_ip", {"192.0.2.1", "255.255.255.0", "192.0.2.254"}, "0", ""},
        {18, "api_apply_dns", {"192.0.2.1", "192.0.2.2", "192.0.2.3"}, "0", ""},
        {19, "api_reserved_19", {"1"}, "0", ""},

        {32, "api_apply_country_code", {"AT"}, "0", "set=-1"},
        {33, "api_get_country_configurable", {}, "1", "read=-1 empty=0 endless=0",
            "echo user_config_country_code=yes >>/var/run/device/environment"},
        {34, "api_set_country_configurable", {"1"}, "0", "run=same exit=same kill=same"},
        {35, "api_apply_syslog", {"1", "192.0.2.9", "514", "6", "local0"}, "0", "set=-1!>"},
        {36, "api_apply_systime_ntp", {"192.0.2.1", "3600"}, "0", "set=-1!>"},
        {37, "api_apply_timezone", {"Europe/Vienna"}, "0",
            "set=-1! get=same read=-1! empty=same endless=same open=same"},
        {38, "api_apply_systime_manual", {"0", "2024", "2", "29", "12", "30"}, "0",
            "set=-1!> run=-1! exit=-1! kill=-1!"},
        {39, "api_apply_daylight_saving",
            {"1", R"({"ordinal": "last", "weekday": "Sunday", "month": "March", "hour": 2})",
             R"({"ordinal": "last", "weekday": "Sunday", "month": "October", "hour": 3})", "60"},
            "0", "set=-1! get=same read=-1! empty=same endless=same open=same"},
        {40, "api_apply_led_status", {"1"}, "0", "set=-1!"},
        {41, "api_apply_reset_button", {"0"}, "0", "set=-1"},
        {42, "api_reserved_42", {"1", "2"}, "0", ""},
        {43, "api_reserved_43", {"1", "2"}, "0", ""},
        {44, "api_reserved_44", {"1", "2"}, "0", ""},
        {45, "api_apply_openflow_enable", {"1"}, "0", "set=-1!+"},
        {46, "api_apply_openflow_controller", {"0", "tcp:192.0.2.7:6633"}, "0", "set=-1!+"},
        {47, "api_apply_openflow_critical_mode", {"normal", "30"}, "0", "set=-1!+"},
        {48, "api_get_system_information", {"model"}, "\"AP-VIRTUAL\"", "get=\"\" memory=null"},

        {54, "api_get_fw_version", {"version"}, "*", "open=\"\" memory=null"},
        {55, "api_set_ap_detection", {"1", "on"}, "0", "set=-1 commit=-1"},
        {56, "api_set_channel_hopping", {"1"}, "0", ""},
        {57, "api_set_ap_detection_configured", {"1"}, "0", "set=-1"},
        {58, "api_get_ap_detection_configured", {}, "1", "get=0",
            "uci set orloagent.agent.ap_detection_configured=1"},
        {67, "api_apply_snmp",
            {R"({"status": true, "version": "v1/v2c", "read_only_community": "reading",
                 "port": 1161, "restrict_source": true, "manager_address": "192.0.2.0",
                 "manager_mask": 24, "trap_community": "traps",
                 "trap_types": ["link", "dfs-detected"], "radio_status": [true, false],
                 "trap_hosts": [{"id": 2, "server_address": "192.0.2.12"},
                                {"id": 0, "status": false, "server_address": "192.0.2.10"}]})"},
            "0", "set=-1!+ get=same open=same+ memory=same"},
        {69, "api_apply_link_aggregation", {}, "0", ""},

        {103, "api_get_AuthFailCount", {}, "0", ""},
        {104, "api_get_AssocFailCount", {}, "0", ""},
        {105, "api_system_reboot", {}, "0", "open=same run=same exit=same kill=same"},
        {106, "api_apply_qos_ap", {"1"}, "0", ""},
        {107, "api_apply_qos_station", {"1"}, "0", ""},
        {109, "api_start_stop_syncscan", {"1"}, "0", "run=-1. exit=-1. kill=same"},
        {110, "api_is_config_applying_check", {}, "0", "look=same open=same"},
        {111, "api_release_web_ui_block", {}, "0", "look=-1 remove=-1.", ": >/tmp/radio_setting"},
        {112, "api_get_watchdog_timeout", {}, "0", ""},
        {113, "api_is_vap_established_check", {}, "0", "get=same read=same empty=same endless=same"},
        {114, "api_mark_config_apply_flag", {}, "null", ""},
        {115, "api_show_mem_usage", {"tag"}, "0", "open=same"},
        {130, "api_is_sending_operation_logs_enabled", {}, "0", "get=1",
            "uci set orloagent.agent.ap_syslog=0"},
    };
    // clang-format on
}

} // namespace orlo::test
