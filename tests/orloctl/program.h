// SPDX-License-Identifier: MIT
// The program as a person or a script runs it, with a double of the vendor library.
#pragma once

#include <gmock/gmock.h>
#include <jansson.h>
#include <memory>

#include "run_program.h"

using Json = std::unique_ptr<json_t, decltype(&json_decref)>;

inline Json parsed(const std::string& text) {
    return Json(json_loadb(text.data(), text.size(), 0, nullptr), &json_decref);
}

inline std::string text_member(const Json& object, const char* name) {
    const char* text = json_string_value(json_object_get(object.get(), name));
    return text == nullptr ? "(none)" : text;
}

class Orloctl : public testing::Test {
protected:
    // orloctl with the double, also where there is no access point.
    Ended orloctl(std::vector<std::string> words, const std::string& input = "") {
        words.insert(words.begin(), {ORLOCTL, "--here", "--library", DOUBLE_VENDOR});
        return run_program({words, input, environment_});
    }

    // orloctl as it stands.
    static Ended bare(std::vector<std::string> words,
                      const std::vector<std::string>& environment = {}) {
        words.insert(words.begin(), ORLOCTL);
        return run_program({words, "", environment});
    }

    void let_fail(const std::string& operation) {
        environment_.push_back("DOUBLE_FAILS=" + operation);
    }

    // What operations with a JSON value answer.
    void let_answer(const std::string& json) { environment_.push_back("DOUBLE_JSON=" + json); }

    void set_environment(const std::string& assignment) { environment_.push_back(assignment); }

    std::string journal() const { return journal_.text(); }

private:
    TemporaryFile journal_;
    std::vector<std::string> environment_ = {"DOUBLE_JOURNAL=" + journal_.path()};
};
