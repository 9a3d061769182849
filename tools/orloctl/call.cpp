// SPDX-License-Identifier: MIT
#include "call.h"

#include "exit.h"
#include "log_capture.h"
#include "records/writer.h"

namespace orloctl {

void Call::make(const vendor_ops& ops) {
    start_call_log();
    result_ = operation_.call(ops, arguments_);
    reading_ = read_result(operation_.meaning, result_);
}

void Call::learn(Secrets& secrets) const {
    for (size_t i = 0; i < arguments_.size(); i++) {
        const Parameter& parameter = operation_.parameters[i];
        const auto* text = std::get_if<Text>(&arguments_[i]);
        const auto* records = std::get_if<Records>(&arguments_[i]);
        if (text != nullptr && *text) {
            secrets.learn(parameter.name, **text);
        } else if (records != nullptr && parameter.form != nullptr && records->first != nullptr) {
            secrets.learn(write_records(*parameter.form, records->first).get());
        }
    }
}

std::string Call::text() const {
    std::string text = reading_.shown + "\n";
    for (size_t i = 0; i < arguments_.size(); i++) {
        if (operation_.parameters[i].is_filled_in()) {
            text += operation_.parameters[i].name + ":" +
                    shown_argument(operation_.parameters[i], arguments_[i]);
        }
    }
    return text;
}

Json Call::json() const {
    Json outputs = json_object_new();
    for (size_t i = 0; i < arguments_.size(); i++) {
        if (operation_.parameters[i].is_filled_in()) {
            set(outputs, operation_.parameters[i].name.c_str(),
                argument_json(operation_.parameters[i], arguments_[i]));
        }
    }
    Json object = json_object_new();
    set(object, "operation", json_text(operation_.name));
    set(object, "slot", json_int(operation_.slot));
    set(object, "meaning", json_text(meaning_name(operation_.meaning)));
    set(object, "result", result_json(result_));
    set(object, "shown", json_text(reading_.shown));
    set(object, "ok", json_bool(!reading_.failed));
    set(object, "outputs", std::move(outputs));
    set(object, "log", json_texts(reading_.failed ? last_log_lines() : std::vector<std::string>()));
    return object;
}

Call read_call(const CommandLine& line) {
    const std::string command = "orloctl " + line.command;
    if (line.words.empty()) {
        throw Refusal("'" + command + "' needs an operation: " + command +
                      " OP ARG... ('orloctl ops' lists them)");
    }
    const Operation& operation = find_operation(line.words[0]);
    return {operation,
            read_arguments(operation, {line.words.begin() + 1, line.words.end()}, !line.raw)};
}

} // namespace orloctl
