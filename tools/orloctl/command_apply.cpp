// SPDX-License-Identifier: MIT
// orloctl apply: a description of the access point, applied in the agent's order.
#include <cstdio>

#include "commands.h"
#include "description.h"
#include "json.h"
#include "ledger.h"
#include "library.h"
#include "log_capture.h"
#include "plan.h"
#include "records/document.h"
#include "records/registry.h"
#include "text.h"

namespace orloctl {

namespace {

// Runs the steps until one fails; after that, nothing is left staged.
class Application {
public:
    Application(const Library& library, std::vector<Step> steps, Output* progress)
        : ops_(library.ops()), revert_(library.symbol<Revert>("uciRevertValue")),
          steps_(std::move(steps)), progress_(progress), ledger_(read_store()) {}

    bool run() {
        while (done_ < steps_.size()) {
            if (!run_step(steps_[done_])) {
                return false;
            }
            done_++;
        }
        return true;
    }

    void report_failure() const;
    void report_staged() const;
    Json json() const;

private:
    using Revert = int(const char* package, const char* key);

    bool run_step(const Step& step);
    void discard();
    void show(const std::string& text) {
        if (progress_ != nullptr) {
            progress_->print(text);
        }
    }
    std::vector<std::string> titles_after_failure() const;
    std::vector<std::string> changed_at_once() const;

    const vendor_ops& ops_;
    Revert& revert_;
    std::vector<Step> steps_;
    Output* progress_;
    Ledger ledger_;
    size_t done_ = 0; // steps that succeeded
    int result_ = 0;  // of the failed step
    std::vector<std::string> reason_;
};

bool Application::run_step(const Step& step) {
    show(step.title() + " ... ");
    start_call_log();
    result_ = step.call(ops_);
    if (result_ == 0) {
        show("ok\n");
        ledger_.succeeded(read_store());
        return true;
    }
    show("failed (" + std::to_string(result_) + ")\n");
    reason_ = last_log_lines();
    discard();
    return false;
}

void Application::discard() {
    const Store left = read_store();
    revert_(nullptr, nullptr);
    ledger_.failed(left, read_store());
}

std::vector<std::string> Application::titles_after_failure() const {
    std::vector<std::string> titles;
    for (size_t i = done_ + 1; i < steps_.size(); i++) {
        titles.push_back(steps_[i].title());
    }
    return titles;
}

// What the steps before the failure changed outside of the configuration; a positive result says
// that the failed one has got as far as that, too.
std::vector<std::string> Application::changed_at_once() const {
    std::vector<std::string> changes;
    for (size_t i = 0; i < done_ + (result_ > 0 ? 1 : 0); i++) {
        if (steps_[i].at_once != nullptr) {
            changes.push_back(std::string(steps_[i].at_once) + ", by " + steps_[i].operation);
        }
    }
    return changes;
}

void print_list(const char* heading, const std::vector<std::string>& lines, const char* none) {
    if (lines.empty()) {
        fprintf(stderr, "%s\n", none);
        return;
    }
    fprintf(stderr, "%s\n  %s\n", heading, joined(lines, "\n  ").c_str());
}

void Application::report_failure() const {
    const std::string heading = "orloctl: " + steps_[done_].title() + " failed:";
    print_list(heading.c_str(), reason_, (heading + " the library logged no reason").c_str());
    print_list("committed before the failure, still in force:", ledger_.committed(),
               "nothing had been committed");
    if (!changed_at_once().empty()) {
        print_list("changed at once, still in force:", changed_at_once(), "");
    }
    print_list("discarded:", ledger_.discarded(), "nothing was left to discard");
    if (!ledger_.staged().empty()) {
        print_list("could not be discarded, still staged:", ledger_.staged(), "");
    }
    if (!ledger_.unreadable().empty()) {
        print_list("packages that cannot be read:", ledger_.unreadable(), "");
    }
    if (done_ + 1 < steps_.size()) {
        print_list("not done:", titles_after_failure(), "");
    }
}

void Application::report_staged() const {
    if (progress_ == nullptr) {
        return;
    }
    const std::vector<std::string> staged = ledger_.staged();
    progress_->print(staged.empty() ? "nothing is staged\n"
                                    : "staged, not saved:\n  " + joined(staged, "\n  ") + "\n");
}

Json step_json(const Step& step) {
    Json object = json_object_new();
    set(object, "operation", json_text(step.operation));
    set(object, "radio", step.radio ? json_int(*step.radio) : json_null_new());
    set(object, "vap", step.vap ? json_int(*step.vap) : json_null_new());
    return object;
}

Json Application::json() const {
    Json done = json_array_new();
    for (size_t i = 0; i < done_; i++) {
        append(done, step_json(steps_[i]));
    }
    Json not_done = json_array_new();
    for (size_t i = done_ + 1; i < steps_.size(); i++) {
        append(not_done, step_json(steps_[i]));
    }
    Json failed = json_null_new();
    if (done_ < steps_.size()) {
        failed = step_json(steps_[done_]);
        set(failed, "result", json_int(result_));
        set(failed, "log", json_texts(reason_));
    }
    Json object = json_object_new();
    set(object, "ok", json_bool(done_ == steps_.size()));
    set(object, "done", std::move(done));
    set(object, "failed", std::move(failed));
    set(object, "not_done", std::move(not_done));
    set(object, "committed", json_texts(ledger_.committed()));
    set(object, "changed_at_once", json_texts(changed_at_once()));
    set(object, "discarded", json_texts(ledger_.discarded()));
    set(object, "staged", json_texts(ledger_.staged()));
    set(object, "unreadable", json_texts(ledger_.unreadable()));
    return object;
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

    Application application(library, std::move(steps), line.json ? nullptr : &output);
    const bool applied = application.run();
    if (line.json) {
        output.print(json_document(application.json()));
    }
    if (!applied) {
        application.report_failure();
        return exit_failed;
    }
    if (line.no_save) {
        application.report_staged();
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
                     "--dry-run shows the operations.") +
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
