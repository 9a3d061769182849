// SPDX-License-Identifier: MIT
#include "preview.h"

#include <algorithm>
#include <set>
#include <sstream>

#include "recorder.h"
#include "text.h"

namespace orloctl {

namespace {

std::optional<Values> value_in(const Store& store, const std::string& key) {
    const auto found = store.values.find(key);
    return found == store.values.end() ? std::nullopt : std::optional<Values>(found->second);
}

// A key with one dot is a section's, whose value is its type.
bool is_section(const std::string& key) {
    return std::count(key.begin(), key.end(), '.') == 1;
}

std::string package_of(const std::string& key) {
    return key.substr(0, key.find('.'));
}

std::string counted(size_t count, const char* thing) {
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

std::string lines(const std::vector<std::string>& texts) {
    return texts.empty() ? "" : "  " + joined(texts, "\n  ") + "\n";
}

std::string value_text(const std::string& key, const std::optional<Values>& values,
                       const Secrets& secrets) {
    if (!values) {
        return "(none)";
    }
    std::vector<std::string> elements;
    for (const std::string& value : *values) {
        elements.push_back("'" + printable(secrets.value(key, value)) + "'");
    }
    return joined(elements, " ");
}

Json value_json(const std::string& key, const std::optional<Values>& values,
                const Secrets& secrets) {
    if (!values) {
        return json_null_new();
    }
    if (values->size() == 1) {
        return json_text(secrets.value(key, values->front()));
    }
    Json array = json_array_new();
    for (const std::string& value : *values) {
        append(array, json_text(secrets.value(key, value)));
    }
    return array;
}

// What goes beyond the options that are staged, which the changes tell.
bool is_effect(const Event& event) {
    return event.kind >= Event::Kind::commit && event.kind != Event::Kind::driver &&
           event.kind != Event::Kind::sleep && !is_aside(event);
}

// What a command prints belongs to the simulation.
std::string effect_text(Event event, const Secrets& secrets) {
    event.detail.clear();
    return event_text(event, secrets);
}

} // namespace

std::vector<Change> changes_between(const Store& before, const Store& after,
                                    const std::vector<Event>& events) {
    const std::vector<std::string> differing = differing_keys(before, after);
    std::set<std::string> left(differing.begin(), differing.end());
    std::vector<Change> changes;
    const auto add = [&](const std::string& key) {
        if (left.erase(key) == 1) {
            changes.push_back({key, value_in(before, key), value_in(after, key)});
        }
    };
    for (const Event& event : events) {
        add(event.subject);
    }
    for (const std::string& key : differing) {
        add(key);
    }
    return changes;
}

Preview::Preview(const Library& library, Secrets secrets, Noise& noise)
    : library_(library), secrets_(std::move(secrets)), noise_(noise), start_(read_store()),
      now_(start_) {
    for (const auto& [key, values] : start_.values) {
        secrets_.learn(key, joined(values, " "));
    }
}

StepWatcher Preview::watcher() {
    Recorder::instance().skip_sleeps();
    StepWatcher watcher;
    watcher.before = [this](const Step& /*step*/) { Recorder::instance().start(&library_.ops()); };
    watcher.after = [this](const Step& step, int result) { note(step, result); };
    return watcher;
}

void Preview::note(const Step& step, int result) {
    PreviewedStep previewed = {step.title(), orloctl::step_json(step),   step.at_once, result,
                               {},           Recorder::instance().stop()};
    printed_ = noise_.take();
    for (const Event& event : previewed.events) {
        learn(event, secrets_);
    }
    Store after = read_store();
    previewed.changes = changes_between(now_, after, previewed.events);
    now_ = std::move(after);
    steps_.push_back(std::move(previewed));
}

// ---- For people ----

std::string Preview::change_text(const Change& change) const {
    if (!is_section(change.key)) {
        return change.key + ": " + value_text(change.key, change.before, secrets_) + " -> " +
               value_text(change.key, change.after, secrets_);
    }
    if (change.before && change.after) {
        return change.key + ": now a section of type " + change.after->front();
    }
    return change.key + (change.after ? ": new section of type " + change.after->front()
                                      : ": section of type " + change.before->front() + " deleted");
}

std::string Preview::changes_text(const PreviewedStep& step, const Paint& paint) const {
    std::string text;
    for (const Change& change : step.changes) {
        const std::string line = change_text(change);
        text += "  " +
                (!change.before  ? paint.good(line)
                 : !change.after ? paint.bad(line)
                                 : line) +
                "\n";
    }
    return text;
}

// What a person wants to know beside the options: commands, and what else takes effect.
std::string Preview::effects_text(const PreviewedStep& step, const Paint& paint) const {
    std::string text;
    const bool refuses = step.result != 0; // then the failure tells why, and what is discarded
    const auto add = [&](const char* name, const std::string& rest) {
        text += "  " + paint.marked(name) + " " + rest + "\n";
    };
    for (const Event& event : step.events) {
        if (is_error_message(event) && !refuses) {
            text += "  " + paint.bad("says " + printable(secrets_.text(event.detail))) + "\n";
        } else if (is_effect(event) && !(refuses && event.kind == Event::Kind::revert)) {
            add(event_name(event.kind), effect_text(event, secrets_));
        }
        const std::vector<std::string> services = restarted_services(event);
        if (!services.empty()) {
            add("restart", joined(services, ", "));
        }
    }
    if (step.at_once != nullptr) {
        add("at once", step.at_once);
    }
    return text;
}

std::string Preview::step_text(const PreviewedStep& step, const Paint& paint) const {
    const bool refuses = step.result != 0;
    // What a step that refuses discards was staged by others: the failure tells of it.
    const std::string text = (refuses ? "" : changes_text(step, paint)) + effects_text(step, paint);
    if (refuses) {
        return paint.bad(step.title + " would refuse (" + std::to_string(step.result) + ")") +
               "\n" + text;
    }
    return text.empty() ? paint.aside(step.title + ": nothing changes") + "\n"
                        : paint.title(step.title) + "\n" + text;
}

std::vector<std::string> Preview::shown(const std::vector<StagedChange>& changes) const {
    std::vector<std::string> texts;
    for (StagedChange change : changes) {
        change.value = secrets_.value(change.key, change.value);
        texts.push_back(change.text());
    }
    return texts;
}

// Goes on where the step that refuses has ended.
std::string Preview::failure_text(const Application& application, const Paint& paint) const {
    std::string text;
    for (const std::string& line : application.reason()) {
        text += "  " + paint.bad("says " + printable(secrets_.text(line))) + "\n";
    }
    if (application.reason().empty()) {
        text += "  " + paint.bad("says no reason") + "\n";
    }
    std::vector<std::string> kept;
    for (const Change& change : all_changes()) {
        kept.push_back(change_text(change));
    }
    for (const std::string& change : application.changed_at_once()) {
        kept.push_back(change);
    }
    const auto section = [&](const char* title, const std::vector<std::string>& content) {
        text += content.empty() ? "" : paint.title(title) + "\n" + lines(content);
    };
    text += "\n";
    section("What it would print:", printed_lines());
    section("What would be discarded:", shown(application.ledger().discarded_changes()));
    section("What would be in force all the same:", kept);
    section("What would not be done:", application.titles_after_failure());
    return text;
}

std::vector<std::string> Preview::printed_lines() const {
    std::vector<std::string> lines;
    std::istringstream text(printed_);
    for (std::string line; std::getline(text, line);) {
        lines.push_back(printable(secrets_.text(line)));
    }
    return lines;
}

// Of all steps together: an option that ends as it began is none.
std::vector<Change> Preview::all_changes() const {
    return changes_between(start_, read_store(), {});
}

size_t Preview::count(Event::Kind kind) const {
    size_t count = 0;
    for (const PreviewedStep& step : steps_) {
        count += static_cast<size_t>(
            std::count_if(step.events.begin(), step.events.end(),
                          [kind](const Event& event) { return event.kind == kind; }));
    }
    return count;
}

std::vector<std::string> Preview::services() const {
    std::vector<std::string> services;
    for (const PreviewedStep& step : steps_) {
        for (const Event& event : step.events) {
            for (const std::string& service : restarted_services(event)) {
                services.push_back(service);
            }
        }
    }
    return services;
}

std::string Preview::summary(const Application& application) const {
    const std::vector<Change> changes = all_changes();
    std::set<std::string> packages;
    for (const Change& change : changes) {
        packages.insert(package_of(change.key));
    }
    const std::vector<std::string> restarts = services();
    const std::string changed = changes.empty()
                                    ? "no option changes"
                                    : counted(changes.size(), "value") + " would change (" +
                                          joined({packages.begin(), packages.end()}, ", ") + ")";
    const std::string still_staged =
        application.failed() == nullptr && !now_.staged.empty() ? ", staged and not saved" : "";
    return paragraph(
        counted(steps_.size(), "operation") + ": " + changed + still_staged + "; " +
        counted(count(Event::Kind::run) + count(Event::Kind::read), "command") + " would run; " +
        (restarts.empty() ? "no service" : joined(restarts, ", ")) + " would restart; " +
        (application.failed() == nullptr ? "nothing would be refused."
                                         : application.failed()->title() + " would refuse."));
}

std::string Preview::text(const Application& application, const std::string& source,
                          const Paint& paint) const {
    std::string text = "Tried on a copy of " + source + "; nothing else was touched.\n\n";
    if (!start_.staged.empty()) {
        text += "Staged there already, and committed or discarded with the description:\n" +
                lines(shown(start_.staged)) + "\n";
    }
    for (const PreviewedStep& step : steps_) {
        text += step_text(step, paint);
    }
    if (application.failed() != nullptr) {
        text += failure_text(application, paint);
    }
    return text + "\n" + summary(application);
}

// ---- For programs ----

Json Preview::change_json(const Change& change) const {
    Json object = json_object_new();
    set(object, is_section(change.key) ? "section" : "option", json_text(change.key));
    set(object, "old", value_json(change.key, change.before, secrets_));
    set(object, "new", value_json(change.key, change.after, secrets_));
    return object;
}

Json Preview::step_json(const PreviewedStep& step) const {
    Json changes = json_array_new();
    for (const Change& change : step.changes) {
        append(changes, change_json(change));
    }
    Json events = json_array_new();
    std::vector<std::string> restarts;
    std::vector<std::string> errors;
    for (const Event& event : step.events) {
        if (is_error_message(event)) {
            errors.push_back(secrets_.text(event.detail));
        }
        if (is_effect(event)) {
            append(events, event_json(event, secrets_));
        }
        for (const std::string& service : restarted_services(event)) {
            restarts.push_back(service);
        }
    }
    Json object(json_copy(step.json.get()));
    set(object, "result", json_int(step.result));
    set(object, "changes", std::move(changes));
    set(object, "effects", std::move(events));
    set(object, "restarts", json_texts(restarts));
    set(object, "errors", json_texts(errors));
    set(object, "at_once", step.at_once == nullptr ? json_null_new() : json_text(step.at_once));
    return object;
}

Json Preview::failure_json(const Application& application) const {
    if (application.failed() == nullptr) {
        return json_null_new();
    }
    Json reason = json_array_new();
    for (const std::string& line : application.reason()) {
        append(reason, json_text(secrets_.text(line)));
    }
    Json object = orloctl::step_json(*application.failed());
    set(object, "result", json_int(application.result()));
    set(object, "log", std::move(reason));
    set(object, "printed", json_texts(printed_lines()));
    set(object, "discarded", json_texts(shown(application.ledger().discarded_changes())));
    set(object, "changed_at_once", json_texts(application.changed_at_once()));
    set(object, "not_done", json_texts(application.titles_after_failure()));
    return object;
}

Json Preview::json(const Application& application, const std::string& source) const {
    Json steps = json_array_new();
    for (const PreviewedStep& step : steps_) {
        append(steps, step_json(step));
    }
    Json changes = json_array_new();
    for (const Change& change : all_changes()) {
        append(changes, change_json(change));
    }
    Json object = json_object_new();
    set(object, "ok", json_bool(application.failed() == nullptr));
    set(object, "configuration", json_text(source));
    set(object, "staged_before", json_texts(shown(start_.staged)));
    set(object, "operations", std::move(steps));
    set(object, "changes", std::move(changes));
    set(object, "restarts", json_texts(services()));
    set(object, "failed", failure_json(application));
    return object;
}

} // namespace orloctl
