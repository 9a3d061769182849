// SPDX-License-Identifier: MIT
// What a description would do, gathered step by step while it is applied to an access point that is
// thrown away.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "application.h"
#include "event.h"
#include "noise.h"
#include "paint.h"
#include "secrets.h"
#include "store.h"

namespace orloctl {

// An option or section that has another value than before. None: it is not there.
struct Change {
    std::string key;
    std::optional<Values> before;
    std::optional<Values> after;
};

// The changes from one store to the other, in the order in which the events touch them; those that
// no event tells of come last.
std::vector<Change> changes_between(const Store& before, const Store& after,
                                    const std::vector<Event>& events);

struct PreviewedStep {
    std::string title;
    Json json; // operation, radio and VAP
    const char* at_once;
    int result;
    std::vector<Change> changes;
    std::vector<Event> events;
};

class Preview {
public:
    Preview(const Library& library, Secrets secrets, Noise& noise);

    // To be told of each step.
    StepWatcher watcher();

    // Everything for people; `source` names the configuration, and what lay staged there comes
    // first. Then for programs.
    std::string text(const Application& application, const std::string& source,
                     const Paint& paint) const;
    Json json(const Application& application, const std::string& source) const;

private:
    void note(const Step& step, int result);

    std::string step_text(const PreviewedStep& step, const Paint& paint) const;
    std::string change_text(const Change& change) const;
    std::string changes_text(const PreviewedStep& step, const Paint& paint) const;
    std::string effects_text(const PreviewedStep& step, const Paint& paint) const;
    std::string failure_text(const Application& application, const Paint& paint) const;
    std::string summary(const Application& application) const;

    Json step_json(const PreviewedStep& step) const;
    Json change_json(const Change& change) const;
    Json failure_json(const Application& application) const;
    std::vector<std::string> shown(const std::vector<StagedChange>& changes) const;

    std::vector<std::string> printed_lines() const;
    std::vector<std::string> services() const;
    std::vector<Change> all_changes() const;
    size_t count(Event::Kind kind) const;

    const Library& library_;
    Secrets secrets_;
    Noise& noise_;
    std::string printed_; // by the last step
    Store start_;
    Store now_;
    std::vector<PreviewedStep> steps_;
};

} // namespace orloctl
