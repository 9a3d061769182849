// SPDX-License-Identifier: MIT
#include "plan.h"

#include <cstdlib>
#include <memory>
#include <utility>

#include "records/registry.h"
#include "records/writer.h"

namespace orloctl {

namespace {

Json argument(int32_t number) {
    return json_int(number);
}

Json argument(const char* text) {
    return text == nullptr ? json_null_new() : json_text(text);
}

Json argument(const radio_settings* settings) {
    return write_record(radio_settings_record, settings);
}

Json argument(const hw_specific_settings* settings) {
    return write_record(hw_specific_settings_record, settings);
}

Json argument(const vap_settings* vaps) {
    return write_records(*record_argument("api_apply_vap"), vaps);
}

Json argument(const mac_auth_radius_server* server) {
    return write_record(mac_auth_radius_server_record, server);
}

Json argument(const cp_settings* portal) {
    return write_record(cp_settings_record, portal);
}

Json argument(const quilt_settings* quilt) {
    return write_record(quilt_settings_record, quilt);
}

Json argument(const wds_settings* links) {
    return write_records(*record_argument("api_apply_wds"), links);
}

Json argument(const mesh_link_vap_settings* vap) {
    return write_record(mesh_link_vap_settings_record, vap);
}

Json argument(const knownClient_setup* clients) {
    return write_record(knownClient_setup_record, clients);
}

Json argument(const dst_rule* rule) {
    return write_record(dst_rule_record, rule);
}

// Adds steps of a radio or VAP, or of none.
class Planner {
public:
    explicit Planner(std::vector<Step>& steps, std::optional<int> radio = std::nullopt,
                     std::optional<int> vap = std::nullopt)
        : steps_(steps), radio_(radio), vap_(vap) {}

    template <class... Parameters, class... Arguments>
    Step& add(const char* name, int (*vendor_ops::*operation)(Parameters...),
              Arguments... arguments) {
        Json shown = json_array_new();
        (append(shown, argument(arguments)), ...);
        const auto call = [operation, arguments...](const vendor_ops& ops) {
            return (ops.*operation)(arguments...);
        };
        return add_call(name, call, std::move(shown));
    }

    Step& add_call(const char* name, std::function<int(const vendor_ops&)> call, Json arguments) {
        steps_.push_back({name, radio_, vap_, std::move(call), std::move(arguments)});
        return steps_.back();
    }

private:
    std::vector<Step>& steps_;
    std::optional<int> radio_;
    std::optional<int> vap_;
};

int32_t described(int32_t number) {
    return number == not_described ? 0 : number;
}

// The radio's configured state, as SNMP wants it told.
int32_t configured_status(const vendor_ops& ops, int radio) {
    const std::unique_ptr<char, decltype(&free)> status(ops.api_get_radio_status(radio), &free);
    return is(status.get(), "up") ? 1 : 0;
}

// What the description makes of a radio, where it tells.
int32_t described_status(const RadioDescription& radio) {
    if (is(radio.override_status, "force-disable")) {
        return 0;
    }
    return radio.enabled == not_described ? ORLO_NOT_GIVEN : radio.enabled;
}

// The daemon announces radios that are about to go up or down. Those that neither the record nor
// the rest of the description tells of stay as they are.
void plan_snmp(const AccessPointDescription& description, std::vector<Step>& steps) {
    snmp_settings snmp = *description.system.snmp;
    for (const RadioDescription& radio : description.radios) {
        const bool is_radio = radio.radio >= 0 && radio.radio < ORLO_RADIOS;
        if (is_radio && snmp.radio_status[radio.radio] == ORLO_NOT_GIVEN) {
            snmp.radio_status[radio.radio] = described_status(radio);
        }
    }
    Json shown = json_array_new();
    append(shown, write_record(snmp_settings_record, &snmp));
    const auto call = [snmp](const vendor_ops& ops) {
        snmp_settings complete = snmp;
        for (int radio = 0; radio < ORLO_RADIOS; radio++) {
            if (complete.radio_status[radio] == ORLO_NOT_GIVEN) {
                complete.radio_status[radio] = configured_status(ops, radio);
            }
        }
        return ops.api_apply_snmp(&complete);
    };
    Planner(steps).add_call("api_apply_snmp", call, std::move(shown)).at_once =
        "the request for link traps";
}

void plan_access(int radio, const VapAccessDescription& access, std::vector<Step>& steps) {
    Planner planner(steps, radio, access.vap);
    if (access.mac_filter_mode != not_described) {
        planner.add("api_apply_mac_filter_mode", &vendor_ops::api_apply_mac_filter_mode, radio,
                    access.vap, access.mac_filter_mode);
    }
    for (const mac_auth_radius_server& server : access.mac_auth_servers) {
        planner.add("api_apply_mac_auth_radius_server",
                    &vendor_ops::api_apply_mac_auth_radius_server, radio, access.vap, &server);
    }
    if (access.mac_auth_critical_mode != not_described) {
        planner.add("api_apply_mac_auth_critical_mode",
                    &vendor_ops::api_apply_mac_auth_critical_mode, radio, access.vap,
                    access.mac_auth_critical_mode);
    }
    if (access.captive_portal != nullptr) {
        planner.add("api_apply_captive_portal_to_vap", &vendor_ops::api_apply_captive_portal_to_vap,
                    radio, access.vap, access.captive_portal);
    }
}

void plan_radio(const RadioDescription& radio, std::vector<Step>& steps) {
    Planner planner(steps, radio.radio);
    if (radio.enabled != not_described) {
        planner.add("api_apply_radio_status", &vendor_ops::api_apply_radio_status, radio.radio,
                    radio.enabled);
    }
    if (radio.settings != nullptr) {
        planner.add("api_apply_radio", &vendor_ops::api_apply_radio, radio.settings);
    }
    if (radio.hardware != nullptr) {
        planner.add("api_apply_hw_specific", &vendor_ops::api_apply_hw_specific, radio.radio,
                    radio.hardware);
    }
    if (radio.mesh != nullptr && radio.mesh->eligible_channels != nullptr) {
        planner.add("api_apply_mesh_link_radio", &vendor_ops::api_apply_mesh_link_radio,
                    radio.radio, described(radio.mesh->bandwidth), radio.mesh->eligible_channels);
    }
    if (radio.has_channel_or_power()) {
        planner.add("api_apply_wireless_interface", &vendor_ops::api_apply_wireless_interface,
                    radio.radio,
                    radio.override_status == nullptr ? "not-override" : radio.override_status,
                    described(radio.channel), described(radio.second_channel),
                    described(radio.power_percent));
    }
    if (radio.vaps != nullptr) {
        planner.add("api_apply_vap", &vendor_ops::api_apply_vap, radio.radio, radio.vaps);
    }
    if (radio.mesh != nullptr && radio.mesh->vap != nullptr) {
        planner.add("api_apply_mesh_link_vap", &vendor_ops::api_apply_mesh_link_vap, radio.radio,
                    radio.mesh->vap);
    }
    for (const VapAccessDescription& access : radio.access) {
        plan_access(radio.radio, access, steps);
    }
}

// What all radios have in common.
void plan_network(const AccessPointDescription& description, std::vector<Step>& steps) {
    Planner planner(steps);
    if (description.quilt != nullptr) {
        planner.add("api_apply_channel_quilt", &vendor_ops::api_apply_channel_quilt,
                    description.quilt);
    }
    if (description.wds != nullptr) {
        planner.add("api_apply_wds", &vendor_ops::api_apply_wds, description.wds);
    }
    if (description.known_clients != nullptr) {
        planner.add("api_apply_known_clients", &vendor_ops::api_apply_known_clients,
                    description.known_clients);
    }
    if (description.portal_address != nullptr) {
        planner.add("api_apply_cp_virt_ip", &vendor_ops::api_apply_cp_virt_ip,
                    description.portal_address);
    }
}

void plan_openflow(const OpenflowDescription& openflow, std::vector<Step>& steps) {
    Planner planner(steps);
    if (openflow.enabled != not_described) {
        planner.add("api_apply_openflow_enable", &vendor_ops::api_apply_openflow_enable,
                    openflow.enabled);
    }
    for (const OpenflowControllerDescription& controller : openflow.controllers) {
        planner.add("api_apply_openflow_controller", &vendor_ops::api_apply_openflow_controller,
                    controller.index, controller.address);
    }
    if (openflow.critical_mode != nullptr) {
        planner.add("api_apply_openflow_critical_mode",
                    &vendor_ops::api_apply_openflow_critical_mode, openflow.critical_mode->mode,
                    described(openflow.critical_mode->timeout));
    }
}

void plan_system(const SystemDescription& system, std::vector<Step>& steps) {
    Planner planner(steps);
    if (system.leds != not_described) {
        planner.add("api_apply_led_status", &vendor_ops::api_apply_led_status, system.leds);
    }
    if (system.reset_button != not_described) {
        planner.add("api_apply_reset_button", &vendor_ops::api_apply_reset_button,
                    system.reset_button);
    }
    if (system.syslog != nullptr) {
        const SyslogDescription& syslog = *system.syslog;
        planner.add("api_apply_syslog", &vendor_ops::api_apply_syslog, syslog.enabled, syslog.host,
                    syslog.port, syslog.severity, syslog.fixed_facility);
    }
    plan_openflow(system.openflow, steps);
}

void plan_profile(const ProfileDescription& profile, std::vector<Step>& steps) {
    Planner planner(steps);
    if (profile.profile_hash != nullptr) {
        planner.add("api_profile_set_hash", &vendor_ops::api_profile_set_hash,
                    profile.profile_hash);
    }
    if (profile.config_hash != nullptr) {
        planner.add("api_config_set_hash", &vendor_ops::api_config_set_hash, profile.config_hash);
    }
    if (profile.id != not_described) {
        planner.add("api_set_profile_id", &vendor_ops::api_set_profile_id, profile.id);
    }
}

// The zone first: a zone ends daylight saving, and clocks are set in local time.
void plan_time(const TimeDescription& time, std::vector<Step>& steps) {
    Planner planner(steps);
    if (time.zone != nullptr) {
        planner.add("api_apply_timezone", &vendor_ops::api_apply_timezone, time.zone).at_once =
            "/etc/TZ";
    }
    if (time.daylight_saving != nullptr) {
        const DaylightSavingDescription& saving = *time.daylight_saving;
        planner
            .add("api_apply_daylight_saving", &vendor_ops::api_apply_daylight_saving,
                 saving.enabled, &saving.start, &saving.end, saving.offset)
            .at_once = "/etc/TZ";
    }
    if (time.manual != nullptr) {
        const ManualTimeDescription& manual = *time.manual;
        planner
            .add("api_apply_systime_manual", &vendor_ops::api_apply_systime_manual,
                 manual.preserve_time_status, manual.year, manual.month, manual.day, manual.hour,
                 manual.minute)
            .at_once = "the clock";
    }
    if (time.ntp != nullptr) {
        planner.add("api_apply_systime_ntp", &vendor_ops::api_apply_systime_ntp, time.ntp->server,
                    time.ntp->interval);
    }
}

void plan_login(const LoginDescription& login, std::vector<Step>& steps) {
    Planner(steps)
        .add("api_apply_system_login", &vendor_ops::api_apply_system_login, login.username,
             login.password)
        .at_once = "the administrator's login";
}

} // namespace

std::vector<Step> plan(const Description& description, bool save) {
    std::vector<Step> steps;
    const SystemDescription& system = description->system;
    if (system.country != nullptr) {
        Planner(steps).add("api_apply_country_code", &vendor_ops::api_apply_country_code,
                           system.country);
    }
    if (system.snmp != nullptr) {
        plan_snmp(*description, steps);
    }
    for (const RadioDescription& radio : description->radios) {
        plan_radio(radio, steps);
    }
    plan_network(*description, steps);
    plan_system(system, steps);
    plan_profile(description->profile, steps);
    plan_time(system.time, steps);
    if (system.login != nullptr) {
        plan_login(*system.login, steps);
    }
    if (save) {
        Planner(steps).add("api_save_config", &vendor_ops::api_save_config);
    }
    return steps;
}

} // namespace orloctl
