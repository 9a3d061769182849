#include "records/registry.h"

#include <algorithm>

#include "exit.h"
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
    };
    return all;
}

} // namespace

const std::vector<const Record*>& all_records() {
    static const std::vector<const Record*> all = {
        &access_point_record,
        &radio_record,
        &profile_record,
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
    };
    return all;
}

const Record& find_record(const std::string& name) {
    std::vector<std::string> names;
    for (const Record* record : all_records()) {
        if (name == record->name) {
            return *record;
        }
        names.emplace_back(record->name);
    }
    throw Refusal("unknown record '" + name + "', known are " + joined(names, ", "));
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
