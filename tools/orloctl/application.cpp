// SPDX-License-Identifier: MIT
#include "application.h"

#include "log_capture.h"

namespace orloctl {

bool Application::run() {
    while (done_ < steps_.size()) {
        if (!run_step(steps_[done_])) {
            return false;
        }
        done_++;
    }
    return true;
}

bool Application::run_step(const Step& step) {
    watcher_.before(step);
    start_call_log();
    result_ = step.call(ops_);
    watcher_.after(step, result_);
    if (result_ == 0) {
        ledger_.succeeded(read_store());
        return true;
    }
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

// A positive result says that the failed step has got as far as that, too.
std::vector<std::string> Application::changed_at_once() const {
    std::vector<std::string> changes;
    for (size_t i = 0; i < done_ + (result_ > 0 ? 1 : 0); i++) {
        if (steps_[i].at_once != nullptr) {
            changes.push_back(std::string(steps_[i].at_once) + ", by " + steps_[i].operation);
        }
    }
    return changes;
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

} // namespace orloctl
