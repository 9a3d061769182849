// SPDX-License-Identifier: MIT
#include "records/filled.h"

#include <cstring>
#include <optional>

#include "orlo/records.h"
#include "orlo/vendor_ops.h"
#include "text.h"

namespace orloctl {

namespace {

// No counter is found at this number, least of all all of them.
constexpr uint64_t untouched = 0xA5C3A5C3A5C3A5C3;

std::optional<uint64_t> load(const FilledRecord& record, const void* first, size_t entry,
                             const Counter& counter) {
    uint64_t value = 0;
    const auto* memory = static_cast<const unsigned char*>(first) + entry * record.size;
    memcpy(&value, memory + counter.offset, sizeof value);
    return value == untouched ? std::optional<uint64_t>() : value;
}

std::string entry_name(const FilledRecord& record, size_t entry) {
    std::string name = "radio " + std::to_string(entry / record.entries_by_radio);
    if (record.entries_by_radio > 1) {
        name += " VAP " + std::to_string(entry % record.entries_by_radio);
    }
    return name;
}

std::string shown(const std::optional<uint64_t>& value) {
    return value ? std::to_string(*value) : "unset";
}

// An entry a line.
void add_entries(const FilledRecord& record, const void* first, Table& table) {
    std::vector<std::string> titles = {""};
    for (const Counter& counter : record.counters) {
        titles.emplace_back(counter.name);
    }
    table.add(std::move(titles));
    for (size_t entry = 0; entry < record.count; entry++) {
        std::vector<std::string> row = {entry_name(record, entry)};
        for (const Counter& counter : record.counters) {
            row.push_back(shown(load(record, first, entry, counter)));
        }
        table.add(std::move(row));
    }
}

// A counter a line.
void add_counters(const FilledRecord& record, const void* first, Table& table) {
    std::vector<std::string> titles = {""};
    for (size_t entry = 0; entry < record.count; entry++) {
        titles.push_back(entry_name(record, entry));
    }
    table.add(std::move(titles));
    for (const Counter& counter : record.counters) {
        std::vector<std::string> row = {counter.name};
        for (size_t entry = 0; entry < record.count; entry++) {
            row.push_back(shown(load(record, first, entry, counter)));
        }
        table.add(std::move(row));
    }
}

} // namespace

#define COUNTER_OF(record, member)                                                                 \
    { #member, offsetof(record, member) }

// clang-format off
const FilledRecord radio_statistics_record = {
    "radio_statistics", sizeof(radio_statistics), ORLO_RADIOS, 1, {
    COUNTER_OF(radio_statistics, tx_fragments),
    COUNTER_OF(radio_statistics, multicast_tx_frames),
    COUNTER_OF(radio_statistics, failed),
    COUNTER_OF(radio_statistics, retries),
    COUNTER_OF(radio_statistics, multiple_retries),
    COUNTER_OF(radio_statistics, duplicate_frames),
    COUNTER_OF(radio_statistics, rx_fragments),
    COUNTER_OF(radio_statistics, multicast_rx_frames),
    COUNTER_OF(radio_statistics, tx_frames),
    COUNTER_OF(radio_statistics, wep_undecryptable),
    COUNTER_OF(radio_statistics, ack_failures),
    COUNTER_OF(radio_statistics, rts_failures),
    COUNTER_OF(radio_statistics, fcs_errors),
    COUNTER_OF(radio_statistics, rts_successes),
    COUNTER_OF(radio_statistics, rx_packets),
    COUNTER_OF(radio_statistics, rx_bytes),
    COUNTER_OF(radio_statistics, unused1),
    COUNTER_OF(radio_statistics, tx_packets),
    COUNTER_OF(radio_statistics, tx_bytes),
    COUNTER_OF(radio_statistics, tx_errors),
    COUNTER_OF(radio_statistics, rx_errors),
}};

const FilledRecord vap_statistics_record = {
    "vap_statistics", sizeof(vap_statistics), ORLO_VAPS, ORLO_VAPS_PER_RADIO, {
    COUNTER_OF(vap_statistics, rx_bytes),
    COUNTER_OF(vap_statistics, rx_packets),
    COUNTER_OF(vap_statistics, tx_bytes),
    COUNTER_OF(vap_statistics, tx_packets),
    COUNTER_OF(vap_statistics, rx_errors),
    COUNTER_OF(vap_statistics, tx_errors),
}};
// clang-format on

const FilledRecord* filled_record(const std::string& operation) {
    if (operation == "api_get_radio_statistics") {
        return &radio_statistics_record;
    }
    return operation == "api_get_vap_statistics" ? &vap_statistics_record : nullptr;
}

void* take_untouched(const FilledRecord& record, Arena& arena) {
    const size_t size = record.size * record.count;
    auto* memory = static_cast<unsigned char*>(arena.take(size));
    for (size_t at = 0; at + sizeof untouched <= size; at += sizeof untouched) {
        memcpy(memory + at, &untouched, sizeof untouched);
    }
    return memory;
}

std::string shown_entries(const FilledRecord& record, const void* first, size_t indent) {
    Table table;
    if (record.counters.size() > record.count) {
        add_counters(record, first, table);
    } else {
        add_entries(record, first, table);
    }
    return table.text(indent);
}

Json entries_json(const FilledRecord& record, const void* first) {
    Json array = json_array_new();
    for (size_t entry = 0; entry < record.count; entry++) {
        Json object = json_object_new();
        set(object, "radio", json_int(static_cast<long long>(entry / record.entries_by_radio)));
        if (record.entries_by_radio > 1) {
            set(object, "vap", json_int(static_cast<long long>(entry % record.entries_by_radio)));
        }
        for (const Counter& counter : record.counters) {
            const std::optional<uint64_t> value = load(record, first, entry, counter);
            set(object, counter.name, value ? json_count(*value) : json_null_new());
        }
        append(array, std::move(object));
    }
    return array;
}

} // namespace orloctl
