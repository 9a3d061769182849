// SPDX-License-Identifier: MIT
#include "report.h"

#include "exit.h"
#include "log_capture.h"

namespace orloctl {

Json report(const std::string& operation, const std::function<json_t*()>& ask) {
    start_call_log();
    Json report(ask());
    if (report == nullptr) {
        std::vector<std::string> reason = last_log_lines();
        reason.insert(reason.begin(), operation + " has nothing to report");
        throw Failure(joined(reason, "\n  "));
    }
    return report;
}

Value text_member(const json_t* object, const char* name) {
    const json_t* text = json_object_get(object, name);
    return json_is_string(text) ? text_value(json_string_value(text)) : no_value("unknown");
}

Value integer_member(const json_t* object, const char* name) {
    const json_t* number = json_object_get(object, name);
    if (!json_is_integer(number)) {
        return no_value("unknown");
    }
    const json_int_t value = json_integer_value(number);
    return {std::to_string(value), json_int(value)};
}

std::vector<std::string> texts_member(const json_t* object, const char* name) {
    const json_t* array = json_object_get(object, name);
    std::vector<std::string> texts;
    for (size_t i = 0; i < json_array_size(array); i++) {
        const json_t* text = json_array_get(array, i);
        if (json_is_string(text)) {
            texts.emplace_back(json_string_value(text));
        }
    }
    return texts;
}

Listing::Listing(std::vector<Column> columns) : columns_(std::move(columns)) {
    std::vector<std::string> titles;
    for (const Column& column : columns_) {
        titles.emplace_back(column.title);
    }
    table_.add(std::move(titles));
}

void Listing::add(std::vector<Value> values) {
    std::vector<std::string> cells;
    Json object = json_object_new();
    for (size_t i = 0; i < columns_.size(); i++) {
        cells.push_back(std::move(values[i].shown));
        set(object, columns_[i].member, std::move(values[i].json));
    }
    table_.add(std::move(cells));
    append(array_, std::move(object));
}

} // namespace orloctl
