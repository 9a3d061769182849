#include "plan.h"

namespace orloctl {

namespace {

using Steps = std::vector<Step>;

void plan_radio(const RadioProfile& profile, Steps& steps) {
    if (profile.enabled) {
        steps.push_back({"api_apply_radio_status", profile.radio, [profile](const vendor_ops& ops) {
                             return ops.api_apply_radio_status(profile.radio.value_or(0),
                                                               *profile.enabled ? 1 : 0);
                         }});
    }
    if (profile.has_channel_or_power()) {
        steps.push_back(
            {"api_apply_wireless_interface", profile.radio, [profile](const vendor_ops& ops) {
                 return ops.api_apply_wireless_interface(
                     profile.radio.value_or(0),
                     profile.override_status.value_or("not-override").c_str(),
                     profile.channel.value_or(0), profile.second_channel.value_or(0),
                     profile.power_percent.value_or(0));
             }});
    }
}

void plan_profile(const Profile& profile, Steps& steps) {
    if (profile.profile_hash) {
        steps.push_back({"api_profile_set_hash", {}, [hash = *profile.profile_hash](auto& ops) {
                             return ops.api_profile_set_hash(hash.c_str());
                         }});
    }
    if (profile.config_hash) {
        steps.push_back({"api_config_set_hash", {}, [hash = *profile.config_hash](auto& ops) {
                             return ops.api_config_set_hash(hash.c_str());
                         }});
    }
    if (profile.id) {
        steps.push_back({"api_set_profile_id", {}, [id = *profile.id](auto& ops) {
                             return ops.api_set_profile_id(id);
                         }});
    }
}

} // namespace

std::vector<Step> plan(const Description& description, bool save) {
    Steps steps;
    for (const RadioProfile& radio : description.radios) {
        plan_radio(radio, steps);
    }
    plan_profile(description.profile, steps);
    if (save) {
        steps.push_back({"api_save_config", {}, [](auto& ops) { return ops.api_save_config(); }});
    }
    return steps;
}

} // namespace orloctl
