// SPDX-License-Identifier: MIT
// orloctl ops: what operations there are.
#include "commands.h"
#include "operations.h"
#include "text.h"

namespace orloctl {

namespace {

using Selection = std::vector<const Operation*>;

bool mentions(const Operation& operation, const std::string& word) {
    const std::string wanted = lower_case(word);
    return lower_case(operation.name).find(wanted) != std::string::npos ||
           lower_case(operation.summary).find(wanted) != std::string::npos;
}

Selection select(const std::vector<std::string>& words) {
    Selection all;
    for (const Operation& operation : operations()) {
        if (words.empty() || mentions(operation, words[0])) {
            all.push_back(&operation);
        }
    }
    return all;
}

bool is_exact(const std::string& word) {
    if (word.find_first_not_of("0123456789") == std::string::npos) {
        return true;
    }
    for (const Operation& operation : operations()) {
        if (operation.name == word) {
            return true;
        }
    }
    return false;
}

std::string listing(const Selection& selection) {
    Table table;
    for (const Operation* operation : selection) {
        table.add({std::to_string(operation->slot), operation->prototype});
        table.add({"", "  " + operation->summary});
    }
    return table.text();
}

std::string parameter_help(const Parameter& parameter, const ShellCommand* shell) {
    if (parameter.is_filled_in()) {
        return "filled in, printed behind the result";
    }
    switch (parameter.kind) {
    case Kind::integer:
        return "decimal or 0x";
    case Kind::number:
        return "";
    case Kind::text:
        return std::string("@null passes NULL, @@x passes \"@x\"") +
               (shell == nullptr ? ""
                                 : std::string("; reaches the shell ") + shell_help(shell->place));
    case Kind::ignored:
        return "never read, takes no word";
    case Kind::record:
        return std::string("JSON or @FILE, see 'orloctl records ") + parameter.form->record->name +
               "'";
    case Kind::text_out:
    case Kind::numbers_out:
    case Kind::word_out:
        break;
    }
    return "";
}

std::string details(const Operation& operation) {
    Table table;
    table.add({"slot", std::to_string(operation.slot)});
    table.add({"prototype", operation.prototype});
    table.add({"does", operation.summary});
    table.add({"result", meaning_help(operation.meaning)});
    table.add({"call", "orloctl call " + operation.usage()});
    std::string text = operation.name + "\n" + table.text(2);
    Table parameters;
    for (const Parameter& parameter : operation.parameters) {
        parameters.add(
            {parameter.name, parameter.type, parameter_help(parameter, operation.shell)});
    }
    return operation.parameters.empty() ? text : text + "  arguments\n" + parameters.text(4);
}

Json operation_json(const Operation& operation) {
    Json parameters = json_array_new();
    for (const Parameter& parameter : operation.parameters) {
        Json entry = json_object_new();
        set(entry, "name", json_text(parameter.name));
        set(entry, "type", json_text(parameter.type));
        set(entry, "takes_word", json_bool(parameter.takes_word()));
        append(parameters, std::move(entry));
    }
    Json object = json_object_new();
    set(object, "slot", json_int(operation.slot));
    set(object, "name", json_text(operation.name));
    set(object, "prototype", json_text(operation.prototype));
    set(object, "summary", json_text(operation.summary));
    set(object, "result", json_text(operation.result));
    set(object, "meaning", json_text(meaning_name(operation.meaning)));
    set(object, "parameters", std::move(parameters));
    return object;
}

Json listing_json(const Selection& selection) {
    Json array = json_array_new();
    for (const Operation* operation : selection) {
        append(array, operation_json(*operation));
    }
    return array;
}

Exit run(const CommandLine& line, Output& output) {
    if (line.words.size() > 1) {
        throw Refusal("'orloctl ops' takes one word: a name, a slot or a part of a description");
    }
    if (line.words.size() == 1 && is_exact(line.words[0])) {
        const Operation& operation = find_operation(line.words[0]);
        output.print(line.json ? json_document(operation_json(operation)) : details(operation));
        return exit_done;
    }
    const Selection selection = select(line.words);
    if (selection.empty()) {
        throw Refusal("no operation's name or description has '" + line.words[0] +
                      "'; 'orloctl ops' lists all");
    }
    output.print(line.json ? json_document(listing_json(selection)) : listing(selection));
    return exit_done;
}

std::string help() {
    return paragraph("Lists the operations: slot, prototype, description. A name or a slot shows "
                     "one operation's details; any other word selects those that mention it. With "
                     "--json: an array of operations, or the one operation.");
}

} // namespace

const Command ops_command = {
    "ops", "ops [NAME|SLOT|WORD]", "list and describe the operations", help, run, operation_names};

} // namespace orloctl
