// SPDX-License-Identifier: MIT
#include "shell.h"

namespace orloctl {

namespace {

const ShellCommand shell_commands[] = {
    {"api_fw_validate", Shell::bare, 28},
    {"api_fw_upgrade", Shell::json, 190},
    {"api_disassociate_client", Shell::bare, 55},
    {"api_apply_system_login", Shell::single_quotes, 78},
    {"api_apply_timezone", Shell::double_quotes, 64},
    {"api_get_CQ_status", Shell::bare, 458}, // and in a text of JSON: no more acts there
};

const char* acting_characters(Shell place) {
    switch (place) {
    case Shell::never:
        break;
    case Shell::bare:
        return " \t\n|&;<>()$`\\\"'*?[]#~!{}";
    case Shell::single_quotes:
        return "'";
    case Shell::json:
        return "'\"\\\t\n";
    case Shell::double_quotes:
        return "$`\\\"";
    }
    return "";
}

std::string shown(char c) {
    switch (c) {
    case ' ':
        return "a blank";
    case '\t':
        return "a tab";
    case '\n':
        return "a line end";
    default:
        return {c};
    }
}

} // namespace

std::string acting_part(const std::string& text, Shell place) {
    const size_t found = text.find_first_of(acting_characters(place));
    return found == std::string::npos ? "" : shown(text[found]);
}

std::string shell_objection(const std::string& text, Shell place) {
    const std::string part = acting_part(text, place);
    return part.empty() ? "" : "the shell would act on " + part + " in it";
}

const char* shell_help(Shell place) {
    switch (place) {
    case Shell::never:
        break;
    case Shell::bare:
        return "unquoted";
    case Shell::single_quotes:
    case Shell::json:
        return "between single quotes";
    case Shell::double_quotes:
        return "between double quotes";
    }
    return "";
}

const ShellCommand* shell_command(const std::string& operation) {
    for (const ShellCommand& command : shell_commands) {
        if (operation == command.operation) {
            return &command;
        }
    }
    return nullptr;
}

} // namespace orloctl
