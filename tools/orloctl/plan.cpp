#include "plan.h"

#include "records/registry.h"
#include "records/writer.h"

namespace orloctl {

namespace {

Json argument(int32_t number) {
    return json_int(number);
}

Json argument(const char* text) {
    return json_text(text);
}

Json argument(const radio_settings* settings) {
    return write_record(radio_settings_record, settings);
}

Json argument(const hw_specific_settings* settings) {
    return write_record(hw_specific_settings_record, settings);
}

Json argument(const vap_settings* vaps) {
    return write_keyed(*record_argument("api_apply_vap"), vaps);
}

// Adds steps of a radio, or of none.
class Planner {
public:
    Planner(std::vector<Step>& steps, std::optional<int> radio) : steps_(steps), radio_(radio) {}

    template <class... Parameters, class... Arguments>
    void add(const char* name, int (*vendor_ops::*operation)(Parameters...),
             Arguments... arguments) {
        Json shown = json_array_new();
        (append(shown, argument(arguments)), ...);
        const auto call = [operation, arguments...](const vendor_ops& ops) {
            return (ops.*operation)(arguments...);
        };
        steps_.push_back({name, radio_, call, std::move(shown)});
    }

private:
    std::vector<Step>& steps_;
    std::optional<int> radio_;
};

int32_t described(int32_t number) {
    return number == not_described ? 0 : number;
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
}

void plan_profile(const ProfileDescription& profile, std::vector<Step>& steps) {
    Planner planner(steps, std::nullopt);
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

} // namespace

std::vector<Step> plan(const Description& description, bool save) {
    std::vector<Step> steps;
    for (const RadioDescription& radio : description->radios) {
        plan_radio(radio, steps);
    }
    plan_profile(description->profile, steps);
    if (save) {
        Planner(steps, std::nullopt).add("api_save_config", &vendor_ops::api_save_config);
    }
    return steps;
}

} // namespace orloctl
