// SPDX-License-Identifier: MIT
// orloctl call: one operation, its arguments from the command line.
#include "commands.h"
#include "library.h"
#include "log_capture.h"
#include "operations.h"
#include "text.h"

namespace orloctl {

namespace {

std::string shown_call(const Operation& operation, const Reading& reading,
                       const std::vector<Argument>& arguments) {
    std::string text = reading.shown + "\n";
    for (size_t i = 0; i < arguments.size(); i++) {
        if (operation.parameters[i].is_filled_in()) {
            text += operation.parameters[i].name + ":" +
                    shown_argument(operation.parameters[i], arguments[i]);
        }
    }
    return text;
}

Json call_json(const Operation& operation, const Result& result, const Reading& reading,
               const std::vector<Argument>& arguments) {
    Json outputs = json_object_new();
    for (size_t i = 0; i < arguments.size(); i++) {
        if (operation.parameters[i].is_filled_in()) {
            set(outputs, operation.parameters[i].name.c_str(),
                argument_json(operation.parameters[i], arguments[i]));
        }
    }
    Json object = json_object_new();
    set(object, "operation", json_text(operation.name));
    set(object, "slot", json_int(operation.slot));
    set(object, "meaning", json_text(meaning_name(operation.meaning)));
    set(object, "result", result_json(result));
    set(object, "shown", json_text(reading.shown));
    set(object, "ok", json_bool(!reading.failed));
    set(object, "outputs", std::move(outputs));
    set(object, "log", json_texts(reading.failed ? last_log_lines() : std::vector<std::string>()));
    return object;
}

Exit run(const CommandLine& line, Output& output) {
    if (line.words.empty()) {
        throw Refusal("'orloctl call' needs an operation: orloctl call OP ARG... ('orloctl ops' "
                      "lists them)");
    }
    const Operation& operation = find_operation(line.words[0]);
    std::vector<Argument> arguments =
        read_arguments(operation, {line.words.begin() + 1, line.words.end()}, !line.raw);
    const Library library = open_library(line);

    start_call_log();
    const Result result = operation.call(library.ops(), arguments);
    const Reading reading = read_result(operation.meaning, result);
    if (line.json) {
        output.print(json_document(call_json(operation, result, reading, arguments)));
    } else {
        output.print(shown_call(operation, reading, arguments));
    }
    if (!reading.failed) {
        return exit_done;
    }
    if (!line.json) {
        print_reason(operation.name);
    }
    return exit_failed;
}

std::string meanings() {
    Table table;
    for (const Meaning meaning : {Meaning::status, Meaning::yesno, Meaning::check, Meaning::number,
                                  Meaning::count, Meaning::text, Meaning::json, Meaning::nothing}) {
        table.add({meaning_name(meaning), meaning_help(meaning)});
    }
    return table.text(2);
}

std::string help() {
    return paragraph(
               "Calls one operation, by name or slot number. Its words are those of its "
               "prototype: integers decimal or 0x, texts as they are (@null passes NULL, "
               "@@x passes \"@x\"); \"--\" comes before a text that begins with \"-\". "
               "A record is JSON, or @FILE with JSON, and is checked ('orloctl records' "
               "lists what can be written so). A text that reaches the shell ('orloctl ops NAME' "
               "tells) is refused when the shell would act on a part of it, or when the "
               "command has no room for it; --raw passes it on. "
               "What the operation fills in is printed behind its result; arguments that it "
               "never reads take no word. Changes that it stages stay staged.") +
           "\nResults are shown by their meaning ('orloctl ops NAME' tells an operation's):\n" +
           meanings() +
           paragraph("Failed and none end with exit code 1, and with the library's last log lines "
                     "on standard error.") +
           "\nExamples:\n"
           "  orloctl call api_set_Channel 1 36\n"
           "  orloctl call 81 1 -1\n"
           "  orloctl call api_apply_radio '{\"interface_name\": \"wlan1\", \"wmm\": true}'\n"
           "  orloctl call api_apply_vap 0 @vaps.json\n"
           "  orloctl call api_get_radio_statistics\n"
           "\nOptions:\n" +
           option_help("call");
}

} // namespace

const Command call_command = {"call", "call OP ARG... [--raw]", "call one operation", help, run};

} // namespace orloctl
