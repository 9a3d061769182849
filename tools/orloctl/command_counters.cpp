// SPDX-License-Identifier: MIT
// orloctl counters: the traffic of ports, radios and VAPs, and with --watch how fast it grows.
#include <algorithm>
#include <chrono>
#include <cstdio>

#include "commands.h"
#include "library.h"
#include "text.h"
#include "traffic.h"
#include "watch.h"

namespace orloctl {

namespace {

using Clock = std::chrono::steady_clock;

struct Column {
    const char* title;
    const char* member;
};

const Column columns[traffic_kinds] = {
    {"rx bytes", "rx_bytes"}, {"rx packets", "rx_packets"}, {"rx errors", "rx_errors"},
    {"tx bytes", "tx_bytes"}, {"tx packets", "tx_packets"}, {"tx errors", "tx_errors"},
};

// What was read at one moment, and the rates since the last one where the row was there, too.
struct Sample {
    std::vector<TrafficRow> rows;
    std::vector<Rates> rates;
    Clock::time_point time;
};

Rates rates_since(const Sample& last, const TrafficRow& row, Clock::time_point now) {
    const auto before =
        std::find_if(last.rows.begin(), last.rows.end(), [&](const TrafficRow& each) {
            return each.radio == row.radio && each.vap == row.vap;
        });
    const std::chrono::duration<double> passed = now - last.time;
    return before == last.rows.end() ? Rates() : rates(before->counts, row.counts, passed.count());
}

Sample read(const Library& library, bool all, const Sample& last) {
    Sample sample = {read_traffic(library, all), {}, Clock::now()};
    for (const TrafficRow& row : sample.rows) {
        sample.rates.push_back(rates_since(last, row, sample.time));
    }
    return sample;
}

std::string shown(const std::optional<uint64_t>& count) {
    return count ? std::to_string(*count) : "-";
}

std::string shown(const std::optional<double>& rate) {
    if (!rate) {
        return "-";
    }
    char text[64];
    snprintf(text, sizeof text, *rate < 100 ? "%.1f" : "%.0f", *rate);
    return text;
}

// `values(i)` are those of row i.
template <class Values>
std::string table(const char* title, const Sample& sample, const Values& values) {
    Table table;
    std::vector<std::string> titles = {title};
    for (const Column& column : columns) {
        titles.emplace_back(column.title);
    }
    table.add(std::move(titles));
    for (size_t i = 0; i < sample.rows.size(); i++) {
        std::vector<std::string> cells = {sample.rows[i].name()};
        for (const auto& value : values(i)) {
            cells.push_back(shown(value));
        }
        table.add(std::move(cells));
    }
    return table.text();
}

std::string tables(const CommandLine& line, const Sample& sample) {
    const std::string totals = table("", sample, [&](size_t i) { return sample.rows[i].counts; });
    return line.watch ? totals + "\n" +
                            table("per second", sample, [&](size_t i) { return sample.rates[i]; })
                      : totals;
}

Json rates_json(const Rates& rates) {
    Json object = json_object_new();
    for (size_t kind = 0; kind < traffic_kinds; kind++) {
        const bool known = rates[kind].has_value();
        set(object, columns[kind].member,
            known ? json_number(static_cast<float>(*rates[kind])) : json_null_new());
    }
    return object;
}

Json row_json(const CommandLine& line, const Sample& sample, size_t i) {
    const TrafficRow& row = sample.rows[i];
    Json object = json_object_new();
    if (row.radio) {
        set(object, "radio", json_int(*row.radio));
    }
    if (row.vap) {
        set(object, "vap", json_int(*row.vap));
    }
    for (size_t kind = 0; kind < traffic_kinds; kind++) {
        const bool counted = row.counts[kind].has_value();
        set(object, columns[kind].member,
            counted ? json_count(*row.counts[kind]) : json_null_new());
    }
    if (line.watch) {
        set(object, "per_second", rates_json(sample.rates[i]));
    }
    return object;
}

Json sample_json(const CommandLine& line, const Sample& sample) {
    Json object = json_object_new();
    Json radios = json_array_new();
    Json vaps = json_array_new();
    for (size_t i = 0; i < sample.rows.size(); i++) {
        Json row = row_json(line, sample, i);
        if (!sample.rows[i].radio) {
            set(object, "ports", std::move(row));
        } else {
            append(sample.rows[i].vap ? vaps : radios, std::move(row));
        }
    }
    set(object, "radios", std::move(radios));
    set(object, "vaps", std::move(vaps));
    return object;
}

Exit run(const CommandLine& line, Output& output) {
    if (!line.words.empty()) {
        throw Refusal("'orloctl counters' takes no argument, '" + line.words[0] + "' given");
    }
    const Library library = open_library(line);
    Sample last;
    show(line, output, [&] {
        last = read(library, line.all, last);
        return line.json ? json_frame(line, sample_json(line, last)) : tables(line, last);
    });
    return exit_done;
}

std::string help() {
    return paragraph("Shows what the wired ports together, each radio and each enabled VAP have "
                     "received (rx) and sent (tx) so far. With --watch also how much per second "
                     "since the last time. \"-\" (null with --json) is what is not counted (errors "
                     "of the wired ports) or not known (a rate, the first time and after an "
                     "interface was made anew). An interface that does not exist counts 0. JSON "
                     "rounds counters of 2^63 and more.") +
           "\nOptions:\n" + option_help("counters");
}

} // namespace

const Command counters_command = {"counters", "counters [--all] [--watch]",
                                  "show the traffic of ports, radios and VAPs", help, run};

} // namespace orloctl
