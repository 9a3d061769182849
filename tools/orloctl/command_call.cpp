// SPDX-License-Identifier: MIT
// orloctl call: one operation, its arguments from the command line.
#include "call.h"
#include "commands.h"
#include "library.h"
#include "log_capture.h"
#include "text.h"

namespace orloctl {

namespace {

Exit run(const CommandLine& line, Output& output) {
    Call call = read_call(line);
    const Library library = open_library(line);
    call.make(library.ops());
    output.print(line.json ? json_document(call.json()) : call.text());
    if (call.has_failed() && !line.json) {
        print_reason(call.name());
    }
    return call.has_failed() ? exit_failed : exit_done;
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

const Command call_command = {"call", "call OP ARG... [--raw]", "call one operation", help,
                              run,    operation_names};

} // namespace orloctl
