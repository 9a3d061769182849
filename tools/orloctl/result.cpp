// SPDX-License-Identifier: MIT
#include "result.h"

#include <cstdlib>

#include "text.h"

namespace orloctl {

namespace {

struct MeaningText {
    Meaning meaning;
    const char* name;
    const char* help;
};

const MeaningText meanings[] = {
    {Meaning::status, "status", "0 is \"ok\", anything else \"failed\""},
    {Meaning::yesno, "yesno", "1 is yes, 0 is no, a negative value \"failed\""},
    {Meaning::check, "check", "0 is yes, -1 is no"},
    {Meaning::number, "number", "a number; \"none\" for a negative one"},
    {Meaning::count, "count", "a count of 64 bits"},
    {Meaning::text, "text", "a text, or none"},
    {Meaning::json, "json", "a JSON value, or none"},
    {Meaning::nothing, "nothing", "no answer"},
};

const MeaningText& find(Meaning meaning) {
    for (const MeaningText& entry : meanings) {
        if (entry.meaning == meaning) {
            return entry;
        }
    }
    return meanings[0];
}

Reading read_integer(Meaning meaning, int64_t value) {
    const std::string number = std::to_string(value);
    const Reading failure = {"failed (" + number + ")", true};
    switch (meaning) {
    case Meaning::status:
        return value == 0 ? Reading{"ok", false} : failure;
    case Meaning::yesno:
        return value < 0 ? failure : Reading{value == 0 ? "no" : "yes", false};
    case Meaning::check:
        return {value == 0 ? "yes" : "no", false};
    case Meaning::number:
        return value < 0 ? Reading{"none (" + number + ")", true} : Reading{number, false};
    case Meaning::count:
    case Meaning::text:
    case Meaning::json:
    case Meaning::nothing:
        break;
    }
    return {number, false};
}

} // namespace

const char* meaning_name(Meaning meaning) {
    return find(meaning).name;
}

const char* meaning_help(Meaning meaning) {
    return find(meaning).help;
}

Result take(int64_t number) {
    return number;
}

Result take(float number) {
    return number;
}

Result take(char* text) {
    const std::unique_ptr<char, decltype(&free)> owned(text, &free);
    return owned == nullptr ? std::optional<std::string>() : std::optional<std::string>(text);
}

Result take(json_t* value) {
    return Json(value);
}

Reading read_result(Meaning meaning, const Result& result) {
    if (const auto* integer = std::get_if<int64_t>(&result)) {
        return read_integer(meaning, *integer);
    }
    if (const auto* number = std::get_if<float>(&result)) {
        return {shown_number(*number), false};
    }
    if (const auto* text = std::get_if<std::optional<std::string>>(&result)) {
        return {text->value_or("none (NULL)"), !text->has_value()};
    }
    if (const auto* json = std::get_if<Json>(&result)) {
        const bool none = *json == nullptr;
        std::string shown = none ? "none (NULL)" : json_document(*json);
        while (!shown.empty() && shown.back() == '\n') {
            shown.pop_back();
        }
        return {shown, none};
    }
    return {"done", false};
}

Json result_json(const Result& result) {
    if (const auto* integer = std::get_if<int64_t>(&result)) {
        return json_int(*integer);
    }
    if (const auto* number = std::get_if<float>(&result)) {
        return json_number(*number);
    }
    const auto* text = std::get_if<std::optional<std::string>>(&result);
    if (text != nullptr && text->has_value()) {
        return json_text(**text);
    }
    const auto* json = std::get_if<Json>(&result);
    if (json != nullptr && *json != nullptr) {
        return Json(json_incref(json->get()));
    }
    return json_null_new();
}

} // namespace orloctl
