#include "fields.h"

#include <algorithm>
#include <limits>

#include "text.h"

namespace orloctl {

namespace {

std::string quoted(const std::string& text) {
    return "\"" + text + "\"";
}

bool accepts(const Rule& rule, const std::optional<Span>& span, int value) {
    if (rule.single.empty() && !span) {
        return true;
    }
    const bool single =
        std::find(rule.single.begin(), rule.single.end(), value) != rule.single.end();
    return single || (span && value >= span->first && value <= span->last);
}

// "0 or in 36..165", "-1 or 0", "in 0..100".
std::string accepted_numbers(const Rule& rule, const std::optional<Span>& span) {
    std::vector<std::string> choices;
    for (const int number : rule.single) {
        choices.push_back(std::to_string(number));
    }
    if (span) {
        choices.push_back("in " + std::to_string(span->first) + ".." + std::to_string(span->last));
    }
    return alternatives(choices);
}

std::string accepted_words(const Rule& rule) {
    std::vector<std::string> choices;
    for (const char* word : rule.words) {
        choices.push_back(quoted(word));
    }
    return alternatives(choices);
}

void wrong(const std::string& path, const std::string& what, Problems& problems) {
    problems.push_back((path.empty() ? "the description" : path) + ": " + what);
}

} // namespace

Rule anything() {
    return {};
}

Rule numbers(Span span) {
    Rule rule;
    rule.spans = {span, span};
    return rule;
}

Rule required_number(Span span) {
    Rule rule = numbers(span);
    rule.required = true;
    return rule;
}

Rule numbers_by_radio(std::vector<int> single, std::optional<Span> radio_0,
                      std::optional<Span> radio_1) {
    Rule rule;
    rule.single = std::move(single);
    rule.spans = {radio_0, radio_1};
    rule.by_radio = true;
    return rule;
}

Rule one_of(std::vector<const char*> words) {
    Rule rule;
    rule.words = std::move(words);
    return rule;
}

Rule at_most(size_t length) {
    Rule rule;
    rule.longest = length;
    return rule;
}

void read_value(const json_t* value, const std::string& path, std::optional<int>& member,
                Problems& problems) {
    if (!json_is_integer(value)) {
        wrong(path, json_excerpt(value) + " is not an integer", problems);
        return;
    }
    const json_int_t number = json_integer_value(value);
    if (number < std::numeric_limits<int>::min() || number > std::numeric_limits<int>::max()) {
        wrong(path, json_excerpt(value) + " does not fit an int (-2147483648 to 2147483647)",
              problems);
        return;
    }
    member = static_cast<int>(number);
}

void read_value(const json_t* value, const std::string& path, std::optional<bool>& member,
                Problems& problems) {
    if (json_is_boolean(value)) {
        member = json_is_true(value);
    } else {
        wrong(path, json_excerpt(value) + " is not true or false", problems);
    }
}

void read_value(const json_t* value, const std::string& path, std::optional<std::string>& member,
                Problems& problems) {
    if (json_is_string(value)) {
        member = std::string(json_string_value(value), json_string_length(value));
    } else {
        wrong(path, json_excerpt(value) + " is not a text", problems);
    }
}

void check_value(std::optional<int> value, const Rule& rule, std::optional<int> radio,
                 const std::string& path, Problems& problems) {
    const bool known_radio = radio && *radio >= 0 && *radio < static_cast<int>(rule.spans.size());
    if (!value || (rule.by_radio && !known_radio)) {
        return;
    }
    const auto& span = rule.spans[rule.by_radio ? static_cast<size_t>(*radio) : 0];
    if (!accepts(rule, span, *value)) {
        wrong(path, std::to_string(*value) + " is not " + accepted_numbers(rule, span), problems);
    }
}

void check_value(std::optional<bool> /*value*/, const Rule& /*rule*/, std::optional<int> /*radio*/,
                 const std::string& /*path*/, Problems& /*problems*/) {}

void check_value(const std::optional<std::string>& value, const Rule& rule,
                 std::optional<int> /*radio*/, const std::string& path, Problems& problems) {
    if (!value) {
        return;
    }
    const bool listed = std::find(rule.words.begin(), rule.words.end(), *value) != rule.words.end();
    if (!rule.words.empty() && !listed) {
        wrong(path, json_excerpt(json_text(*value).get()) + " is not " + accepted_words(rule),
              problems);
    }
    if (rule.longest > 0 && value->size() > rule.longest) {
        wrong(path,
              "a text of " + std::to_string(value->size()) + " bytes is longer than " +
                  std::to_string(rule.longest),
              problems);
    }
}

bool is_object(const json_t* value, const std::string& path, Problems& problems) {
    if (!json_is_object(value)) {
        wrong(path, json_excerpt(value) + " is not an object", problems);
    }
    return json_is_object(value);
}

bool is_array(const json_t* value, const std::string& path, Problems& problems) {
    if (!json_is_array(value)) {
        wrong(path, json_excerpt(value) + " is not an array", problems);
    }
    return json_is_array(value);
}

void check_members(json_t* object, const std::string& path, const std::vector<std::string>& known,
                   Problems& problems) {
    for (void* i = json_object_iter(object); i != nullptr; i = json_object_iter_next(object, i)) {
        const char* name = json_object_iter_key(i);
        if (std::find(known.begin(), known.end(), name) == known.end()) {
            wrong(member_path(path, name), "unknown member, known are " + joined(known, ", "),
                  problems);
        }
    }
}

std::string member_path(const std::string& path, const char* name) {
    return path.empty() ? name : path + "." + name;
}

std::string rule_help(const Rule& rule) {
    std::string help;
    if (rule.by_radio) {
        help = " " + accepted_numbers(rule, rule.spans[0]) + " (radio 0), " +
               accepted_numbers(rule, rule.spans[1]) + " (radio 1)";
    } else if (rule.spans[0] || !rule.single.empty()) {
        help = " " + accepted_numbers(rule, rule.spans[0]);
    }
    if (!rule.words.empty()) {
        help = " " + accepted_words(rule);
    }
    if (rule.longest > 0) {
        help = " of at most " + std::to_string(rule.longest) + " bytes";
    }
    return rule.required ? help + ", required" : help;
}

} // namespace orloctl
