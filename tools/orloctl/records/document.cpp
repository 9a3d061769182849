// SPDX-License-Identifier: MIT
#include "records/document.h"

#include "records/registry.h"
#include "records/rule.h"
#include "text.h"

namespace orloctl {

namespace {

std::string type_and_default(const Form& form) {
    const std::string fallback = shown_default(form);
    return type_help(form) + (fallback.empty() ? "" : ", default " + fallback);
}

std::vector<std::string> rules(const Record& record) {
    std::vector<std::string> lines;
    if (record.switched_by != nullptr) {
        lines.push_back(std::string("\"") + record.switched_by +
                        "\" false: nothing else is looked at");
    }
    for (const Condition& condition : record.conditions) {
        lines.push_back(std::string(condition.member) + ": " + condition.sentence);
    }
    return lines;
}

// Markdown reads "|" as the end of a cell.
std::string cell(const std::string& text) {
    std::string result;
    for (const char c : text) {
        result += c == '|' ? "\\|" : std::string(1, c);
    }
    return result;
}

std::string record_markdown(const Record& record) {
    std::string text = std::string("## ") + record.name + "\n\n" + record.meaning;
    const std::vector<std::string> operations = operations_with(record);
    text += operations.empty() ? "" : ", taken by `" + joined(operations, "`, `") + "`";
    text += "\n\n| member | value | meaning |\n|---|---|---|\n";
    for (const Field& field : record.fields) {
        text += std::string("| `") + field.name + "` | " + cell(type_and_default(field.form)) +
                " | " + cell(field.meaning) + " |\n";
    }
    const std::vector<std::string> lines = rules(record);
    return lines.empty() ? text : text + "\n- " + joined(lines, "\n- ") + "\n";
}

} // namespace

std::string field_table(const Record& record, size_t indent) {
    Table table;
    for (const Field& field : record.fields) {
        table.add({field.name, type_and_default(field.form)});
        table.add({"", field.meaning});
    }
    return table.text(indent);
}

std::string record_help(const Record& record) {
    const std::vector<std::string> operations = operations_with(record);
    std::string text = std::string(record.name) + ": " + record.meaning + "\n";
    text += operations.empty() ? "" : "taken by " + joined(operations, ", ") + "\n";
    text += "\n" + field_table(record, 2);
    const std::vector<std::string> lines = rules(record);
    if (!lines.empty()) {
        text += "\n";
    }
    for (const std::string& line : lines) {
        text += paragraph(line);
    }
    return text;
}

std::string records_markdown() {
    std::string text = "# Records\n\nWhat a description of an access point, and the records of "
                       "single operations, may hold.\n";
    for (const Record* record : all_records()) {
        text += "\n" + record_markdown(*record);
    }
    return text;
}

} // namespace orloctl
