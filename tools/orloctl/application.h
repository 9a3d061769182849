// SPDX-License-Identifier: MIT
// Applying a description: its steps are called one after the other, and what became of the
// configuration is kept.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ledger.h"
#include "library.h"
#include "plan.h"

namespace orloctl {

// Told of each step as it comes; does nothing where it is not asked to.
struct StepWatcher {
    std::function<void(const Step&)> before = [](const Step&) {};
    std::function<void(const Step&, int result)> after = [](const Step&, int) {};
};

// Runs the steps until one fails; after that, nothing is left staged.
class Application {
public:
    Application(const Library& library, std::vector<Step> steps, StepWatcher watcher)
        : ops_(library.ops()), revert_(library.symbol<Revert>("uciRevertValue")),
          steps_(std::move(steps)), watcher_(std::move(watcher)), ledger_(read_store()) {}

    bool run();

    const Ledger& ledger() const { return ledger_; }

    // The step that failed, NULL when none has; what it returned, and its last log lines.
    const Step* failed() const { return done_ < steps_.size() ? &steps_[done_] : nullptr; }
    int result() const { return result_; }
    const std::vector<std::string>& reason() const { return reason_; }

    std::vector<std::string> titles_after_failure() const;

    // What the steps before the failure changed outside of the configuration.
    std::vector<std::string> changed_at_once() const;

    // All of it for a program.
    Json json() const;

private:
    using Revert = int(const char* package, const char* key);

    bool run_step(const Step& step);
    void discard();

    const vendor_ops& ops_;
    Revert& revert_;
    std::vector<Step> steps_;
    StepWatcher watcher_;
    Ledger ledger_;
    size_t done_ = 0; // steps that succeeded
    int result_ = 0;  // of the failed step
    std::vector<std::string> reason_;
};

// The step's name, radio and VAP.
Json step_json(const Step& step);

} // namespace orloctl
