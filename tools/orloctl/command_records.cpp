// SPDX-License-Identifier: MIT
// orloctl records, orloctl schema: the records that can be written in JSON.
#include "commands.h"
#include "records/document.h"
#include "records/registry.h"
#include "records/rule.h"
#include "records/schema.h"
#include "text.h"

namespace orloctl {

namespace {

Json field_json(const Field& field) {
    Json object = json_object_new();
    set(object, "name", json_text(field.name));
    set(object, "type", json_text(type_help(field.form)));
    set(object, "default", json_text(shown_default(field.form)));
    set(object, "meaning", json_text(field.meaning));
    set(object, "offset", json_int(static_cast<long long>(field.offset)));
    set(object, "size", json_int(static_cast<long long>(field.size)));
    return object;
}

Json record_json(const Record& record) {
    Json fields = json_array_new();
    for (const Field& field : record.fields) {
        append(fields, field_json(field));
    }
    Json object = json_object_new();
    set(object, "name", json_text(record.name));
    set(object, "meaning", json_text(record.meaning));
    set(object, "operations", json_texts(operations_with(record)));
    set(object, "size", json_int(static_cast<long long>(record.size)));
    set(object, "fields", std::move(fields));
    return object;
}

Json listing_json() {
    Json array = json_array_new();
    for (const Record* record : all_records()) {
        append(array, record_json(*record));
    }
    return array;
}

std::string listing() {
    Table table;
    for (const Record* record : all_records()) {
        const std::vector<std::string> operations = operations_with(*record);
        table.add({record->name, record->meaning + std::string(operations.empty() ? "" : ", for ") +
                                     joined(operations, ", ")});
    }
    return table.text();
}

void refuse_more_than_one_name(const CommandLine& line) {
    if (line.words.size() > 1) {
        throw Refusal("'orloctl " + line.command + "' takes the name of one record");
    }
}

Exit run_records(const CommandLine& line, Output& output) {
    refuse_more_than_one_name(line);
    if (line.words.empty()) {
        output.print(line.json ? json_document(listing_json()) : listing());
        return exit_done;
    }
    const Record& record = find_record(line.words[0]);
    output.print(line.json ? json_document(record_json(record)) : record_help(record));
    return exit_done;
}

std::string records_help() {
    return paragraph("Lists the records that are written in JSON: the description of an access "
                     "point, the records of operations, and those that they are made of. With a "
                     "name: the members of that record, what they accept and what they mean.") +
           "\n  orloctl records vap_settings\n";
}

Exit run_schema(const CommandLine& line, Output& output) {
    refuse_more_than_one_name(line);
    if (line.markdown) {
        output.print(records_markdown());
        return exit_done;
    }
    const Record& record = line.words.empty() ? access_point_record : find_record(line.words[0]);
    output.print(json_document(record_schema(record)));
    return exit_done;
}

std::string schema_help() {
    return paragraph("Prints the JSON Schema (draft 2020-12) of a record ('orloctl records' lists "
                     "them); without a name, of the description that 'orloctl apply' takes. "
                     "Editors complete and check files with it. Rules over several members stand "
                     "in its comments: 'orloctl apply' checks them.") +
           "\nOptions:\n" + option_help("schema");
}

} // namespace

const Command records_command = {"records",    "records [NAME]", "describe the records",
                                 records_help, run_records,      record_names};
const Command schema_command = {"schema",
                                "schema [NAME] [--markdown]",
                                "print a record's JSON Schema",
                                schema_help,
                                run_schema,
                                record_names};

} // namespace orloctl
