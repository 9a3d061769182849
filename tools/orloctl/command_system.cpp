// SPDX-License-Identifier: MIT
// orloctl system: what the device is, and the state of its system.
#include "commands.h"
#include "library.h"
#include "text.h"
#include "value.h"

namespace orloctl {

namespace {

Value not_available() {
    return no_value("not available");
}

// The library answers "" for what it cannot read.
Value text(char* answer) {
    const std::optional<std::string> text = taken(answer);
    return text && !text->empty() ? text_value(*text) : not_available();
}

Value model(const vendor_ops& ops) {
    return text(ops.api_get_system_information("model"));
}

Value platform(const vendor_ops& ops) {
    return text(ops.api_get_system_information("platform"));
}

Value country(const vendor_ops& ops) {
    return text(ops.api_get_system_information("country"));
}

Value mac_address(const vendor_ops& ops) {
    return text(ops.api_get_system_information("base-mac"));
}

Value firmware_version(const vendor_ops& ops) {
    return text(ops.api_get_fw_version("version"));
}

Value agent_state(const vendor_ops& ops) {
    const int state = ops.api_get_orloagent_state();
    return {std::to_string(state), json_int(state)};
}

Value crash_log(const vendor_ops& ops) {
    return yes_or_no(ops.api_check_crashlog() == 1);
}

Value upgrade_flag(const vendor_ops& ops) {
    const int flagged = ops.api_get_fwupgrade_status();
    return flagged < 0 ? not_available() : yes_or_no(flagged == 1);
}

struct Row {
    const char* title;
    const char* member;
    Value (*value)(const vendor_ops& ops);
};

const Row rows[] = {
    {"model", "model", model},
    {"platform", "platform", platform},
    {"country", "country", country},
    {"MAC address", "mac_address", mac_address},
    {"firmware version", "firmware_version", firmware_version},
    {"agent state", "agent_state", agent_state},
    {"crash log", "crash_log", crash_log},
    {"upgrade flagged", "upgrade_flagged", upgrade_flag},
};

Exit run(const CommandLine& line, Output& output) {
    take_no_words(line);
    const Library library = open_library(line);
    Table table;
    Json object = json_object_new();
    for (const Row& row : rows) {
        Value value = row.value(library.ops());
        table.add({row.title, value.shown});
        set(object, row.member, std::move(value.json));
    }
    output.print(line.json ? json_document(object) : table.text());
    return exit_done;
}

std::string help() {
    return paragraph("Shows what the device is, whether it has kept a crash log, and whether a "
                     "firmware upgrade is flagged. A value that cannot be read is \"not "
                     "available\" (null with --json). The agent's state word lives in the process "
                     "that set it: here it is orloctl's own, 0.");
}

} // namespace

const Command system_command = {"system", "system", "show what the device is", help, run};

} // namespace orloctl
