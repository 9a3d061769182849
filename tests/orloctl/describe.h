// SPDX-License-Identifier: MIT
// Reading descriptions in tests of records: what is refused, and with which words.
#pragma once

#include <gtest/gtest.h>
#include <string>

#include "description.h"
#include "exit.h"

inline orloctl::Description description_of(const std::string& text, bool checked = true) {
    return orloctl::read_description(text, "ap.json", checked);
}

// What is wrong with a description, as a person is told.
inline std::string refusal(const std::string& text, bool checked = true) {
    try {
        description_of(text, checked);
    } catch (const orloctl::Refusal& refused) {
        return refused.what();
    }
    return "accepted";
}

// A description of radio 1.
inline std::string radio(const std::string& members) {
    return R"({"radios": [{"radio": 1, )" + members + "}]}";
}

struct Case {
    std::string text;
    std::string sentence;
};

template <size_t N>
void expect_sentences(const Case (&cases)[N], bool checked = true) {
    for (const Case& each : cases) {
        EXPECT_EQ(refusal(each.text, checked), each.sentence) << each.text;
    }
}

// A text that a record points to, "(none)" for NULL.
inline std::string shown(const char* text) {
    return text == nullptr ? "(none)" : text;
}
