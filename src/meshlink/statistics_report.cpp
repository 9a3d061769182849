// SPDX-License-Identifier: MIT
// The statistics report: the traffic of each mesh link since the last report.
#include "common/json.h"
#include "meshlink/counters.h"
#include "meshlink/log.h"
#include "meshlink/place.h"
#include "meshlink/vap.h"
#include "ops/operations.h"
#include "orlo/exports.h"

#include <cstring>

using orlo::CounterTable;
using orlo::Json;
using orlo::ml_counter;
using orlo::Sample;

namespace {

// A step below works in its name.
constexpr const char* vap_report = "create_ml_vap_json";

// What the last report read: of the links that were made to the mesh VAP, and of the one upward.
Sample last_vap_sample;
Sample last_sta_sample;

json_t* ml_vap_entry_json(const ml_counter& link, const ml_counter& rates) {
    MESH_ENTER();
    return json_pack("{s:s,s:i,s:i,s:I,s:I,s:i}", "MAC Address", link.name, "Radio ID", link.radio,
                     "VAP ID", link.vap, "Bytes Transmitted",
                     static_cast<json_int_t>(rates.tx_bytes), "Bytes Received",
                     static_cast<json_int_t>(rates.rx_bytes), "Link Speed", link.link_speed);
}

json_t* ml_sta_entry_json(const ml_counter& link, const ml_counter& rates) {
    MESH_ENTER();
    return json_pack("{s:i,s:i,s:I,s:I,s:i}", "Radio ID", link.radio, "VAP ID", link.vap,
                     "Bytes Transmitted", static_cast<json_int_t>(rates.tx_bytes), "Bytes Received",
                     static_cast<json_int_t>(rates.rx_bytes), "Link Speed", link.link_speed);
}

// An entry for each reading of the link in the last sample, or one without rates for a new link.
bool append_vap_entries(const Json& entries, const ml_counter& link) {
    bool is_new = true;
    for (int i = 0; i < last_vap_sample.count; i++) {
        const ml_counter& last = last_vap_sample.records[i];
        if (strcmp(link.name, last.name) != 0) {
            continue;
        }
        const ml_counter rates = orlo::diff_ml_counter(&link, &last);
        if (json_array_append_new(entries.get(), ml_vap_entry_json(link, rates)) != 0) {
            return false;
        }
        MESH_LOG_FOR(vap_report, orlo::mesh_value_level, "diff: %s, tx:%lld, rx: %lld, diff: %ld\n",
                     link.name, static_cast<long long>(rates.tx_bytes),
                     static_cast<long long>(rates.rx_bytes), static_cast<long>(rates.timestamp));
        is_new = false;
    }
    if (!is_new) {
        return true;
    }
    if (json_array_append_new(entries.get(), ml_vap_entry_json(link, ml_counter{})) != 0) {
        return false;
    }
    MESH_LOG_FOR(vap_report, orlo::mesh_value_level, "new: %s, tx: 0, rx: 0\n", link.name);
    return true;
}

json_t* create_ml_vap_json() {
    MESH_ENTER();
    Json entries(json_array());
    if (!entries) {
        MESH_ERROR("failed to get JSON array\n");
        return nullptr;
    }
    CounterTable current;
    if (!orlo::get_ml_vap_counters(&current)) {
        MESH_ERROR("failed to get ml vap counter information\n");
        return nullptr;
    }
    for (const ml_counter& link : current) {
        if (!append_vap_entries(entries, link)) {
            MESH_ERROR("failed to create ml vap item\n");
            return nullptr;
        }
    }
    current.replace(&last_vap_sample);
    return entries.hand_on();
}

json_t* create_ml_sta_json() {
    MESH_ENTER();
    Json entries(json_array());
    if (!entries) {
        MESH_ERROR("failed to get JSON array\n");
        return nullptr;
    }
    if (orlo::is_ml_root()) {
        last_sta_sample.forget();
        return entries.hand_on();
    }
    CounterTable current;
    if (!orlo::get_ml_sta_counter(&current)) {
        MESH_ERROR("failed to get ml sta counter information\n");
        return nullptr;
    }
    const ml_counter& link = *current.begin();
    const ml_counter rates = orlo::diff_ml_counter(&link, last_sta_sample.records);
    if (json_array_append_new(entries.get(), ml_sta_entry_json(link, rates)) != 0) {
        MESH_ERROR("failed to create ml sta item\n");
        return nullptr;
    }
    MESH_VALUE("diff: tx:%lld, rx: %lld, diff: %ld\n", static_cast<long long>(rates.tx_bytes),
               static_cast<long long>(rates.rx_bytes), static_cast<long>(rates.timestamp));
    current.replace(&last_sta_sample);
    return entries.hand_on();
}

} // namespace

json_t* create_ml_statistics_report() {
    MESH_ENTER();
    if (!orlo::is_ml_enable()) {
        MESH_INFO("NVX-ML is disabled\n");
        return nullptr;
    }
    const Json vaps(create_ml_vap_json());
    const Json stas(create_ml_sta_json());
    if (!vaps || !stas) {
        MESH_ERROR("failed to get information, vap: %p, sta: %p\n",
                   static_cast<const void*>(vaps.get()), static_cast<const void*>(stas.get()));
        return nullptr;
    }
    if (json_array_size(vaps.get()) == 0 && json_array_size(stas.get()) == 0) {
        MESH_VALUE("no statistics data, skipped.\n");
        return nullptr;
    }
    json_t* report = json_pack("{s:O,s:O}", "ML VAP", vaps.get(), "ML STA", stas.get());
    if (report == nullptr) {
        MESH_ERROR("failed to pack JSON\n");
    }
    return report;
}
