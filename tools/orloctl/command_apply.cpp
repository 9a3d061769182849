// SPDX-License-Identifier: MIT
// orloctl apply: a description of the access point, applied in the agent's order.
#include <cstdio>

#include "application.h"
#include "commands.h"
#include "description.h"
#include "json.h"
#include "library.h"
#include "paint.h"
#include "plan.h"
#include "records/document.h"
#include "records/registry.h"
#include "text.h"

namespace orloctl {

namespace {

void print_list(const char* heading, const std::vector<std::string>& lines, const char* none) {
    if (lines.empty()) {
        fprintf(stderr, "%s\n", none);
        return;
    }
    fprintf(stderr, "%s\n  %s\n", heading, joined(lines, "\n  ").c_str());
}

void report_failure(const Application& application) {
    const Ledger& ledger = application.ledger();
    const std::string heading = "orloctl: " + application.failed()->title() + " failed:";
    print_list(heading.c_str(), application.reason(),
               (heading + " the library logged no reason").c_str());
    print_list("committed before the failure, still in force:", ledger.committed(),
               "nothing had been committed");
    if (!application.changed_at_once().empty()) {
        print_list("changed at once, still in force:", application.changed_at_once(), "");
    }
    print_list("discarded:", ledger.discarded(), "nothing was left to discard");
    if (!ledger.staged().empty()) {
        print_list("could not be discarded, still staged:", ledger.staged(), "");
    }
    if (!ledger.unreadable().empty()) {
        print_list("packages that cannot be read:", ledger.unreadable(), "");
    }
    if (!application.titles_after_failure().empty()) {
        print_list("not done:", application.titles_after_failure(), "");
    }
}

void report_staged(const Application& application, Output& output) {
    const std::vector<std::string> staged = application.ledger().staged();
    output.print(staged.empty() ? "nothing is staged\n"
                                : "staged, not saved:\n  " + joined(staged, "\n  ") + "\n");
}

// Names each step as it goes.
StepWatcher progress(Output& output) {
    const Paint paint(output);
    StepWatcher watcher;
    watcher.before = [&output](const Step& step) { output.print(step.title() + " ... "); };
    watcher.after = [&output, paint](const Step& /*step*/, int result) {
        output.print(result == 0 ? paint.good("ok") + "\n"
                                 : paint.bad("failed (" + std::to_string(result) + ")") + "\n");
    };
    return watcher;
}

Json calls_json(const std::vector<Step>& steps) {
    Json array = json_array_new();
    for (const Step& step : steps) {
        Json object = json_object_new();
        set(object, "operation", json_text(step.operation));
        set(object, "arguments", Json(json_incref(step.arguments.get())));
        append(array, std::move(object));
    }
    return array;
}

// Changes of somebody else are committed, or discarded, together with ours.
void warn_of_staged(const Store& store) {
    if (!store.staged.empty()) {
        print_list("orloctl: staged already, and committed or discarded with the description:",
                   texts(store.staged), "");
    }
}

Exit run(const CommandLine& line, Output& output) {
    if (line.words.size() != 1) {
        throw Refusal("'orloctl apply' takes one FILE; \"-\" reads standard input");
    }
    const std::string& path = line.words[0];
    const Description description =
        read_description(read_file(path), path == "-" ? "standard input" : path, !line.raw);
    std::vector<Step> steps = plan(description, !line.no_save);
    if (line.dry_run) {
        output.print(json_document(calls_json(steps)));
        return exit_done;
    }
    const Library library = open_library(line);
    warn_of_staged(read_store());

    Application application(library, std::move(steps),
                            line.json ? StepWatcher() : progress(output));
    const bool applied = application.run();
    if (line.json) {
        output.print(json_document(application.json()));
    }
    if (!applied) {
        report_failure(application);
        return exit_failed;
    }
    if (line.no_save && !line.json) {
        report_staged(application, output);
    }
    return exit_done;
}

std::string help() {
    return paragraph("Applies a description of the access point, written in JSON. All of it is "
                     "checked before anything is called. Then, in the agent's order and as far as "
                     "they are described: the country and SNMP; each radio of the list (status, "
                     "settings, hardware, channels of the mesh, channels and power, VAPs, the mesh "
                     "VAP, who may use them); the channel quilt, WDS links, known clients, the "
                     "portal's address; LEDs, reset button, syslog, OpenFlow; "
                     "the hashes and the profile id; the time, the login; api_save_config. "
                     "--dry-run shows the operations, 'orloctl preview' what they would do.") +
           "\n" +
           paragraph("When an operation fails the rest is not done and every staged change is "
                     "discarded. What was committed before stays: api_apply_wireless_interface "
                     "commits package wireless itself, in its channel and power steps, and so does "
                     "api_apply_hw_specific and api_apply_mesh_link_radio when they move the radio "
                     "to another channel. So does "
                     "what takes effect at once: time zone, clock, login. All of it is listed.") +
           "\n" +
           paragraph("A description may hold what follows; what it leaves out is left alone. But "
                     "a radio with any of override, channel, second_channel and power_percent gets "
                     "\"not-override\" and 0 for the others of these four; of a radio with vaps "
                     "those that it does not list get disabled; a WDS link disables all VAPs but "
                     "the first of its radio, and a mesh VAP those from 2 on.") +
           "\n  {\"radios\": [{\"radio\": 1, \"channel\": 36}], \"profile\": {\"id\": 7}}\n\n" +
           field_table(access_point_record, 2) + "\n  system\n" + field_table(system_record, 4) +
           "\n  radios[]\n" + field_table(radio_record, 4) + "\n  profile\n" +
           field_table(profile_record, 4) + "\n" +
           paragraph("'orloctl records NAME' describes an object, for example time, vap_settings "
                     "or cp_settings; 'orloctl schema' prints all of it for editors.") +
           "\n" +
           paragraph("A zone or login in which the shell would find more than a text is refused; "
                     "--raw passes everything on unchecked.") +
           "\n" +
           paragraph("With --json: what was done, what failed and why, what is committed, "
                     "changed at once, discarded and staged, which packages cannot be read.") +
           "\nOptions:\n" + option_help("apply");
}

} // namespace

const Command apply_command = {"apply", "apply FILE [--no-save] [--raw] [--dry-run]",
                               "apply a description of the access point", help, run};

} // namespace orloctl
