// Records in JSON: one table of fields describes a record, and reading, checking, the sentences
// about mistakes and the help all come from it.
//
//     const Field<RadioProfile> radio_fields[] = {
//         {"power_percent", &RadioProfile::power_percent, numbers({0, 100}), "..."},
//
// A record's members are std::optional: without a value where the description has none.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "json.h"

namespace orloctl {

struct Span {
    int first;
    int last;
};

// What a field accepts beside its type.
struct Rule {
    bool required = false;
    std::vector<int> single;                  // single numbers, beside the span
    std::array<std::optional<Span>, 2> spans; // by radio; two alike where the radio is no matter
    bool by_radio = false;
    std::vector<const char*> words; // a text must be one of these
    size_t longest = 0;             // a text's greatest length in bytes; 0: any
};

Rule anything();
Rule numbers(Span span);
Rule required_number(Span span);
Rule numbers_by_radio(std::vector<int> single, std::optional<Span> radio_0,
                      std::optional<Span> radio_1);
Rule one_of(std::vector<const char*> words);
Rule at_most(size_t length);

template <class Record>
struct Field {
    const char* name;
    std::variant<std::optional<int> Record::*, std::optional<bool> Record::*,
                 std::optional<std::string> Record::*>
        member;
    Rule rule;
    const char* meaning;
};

// Everything that is wrong with a description: "radios[1].channel: 170 is not 0 or in 36..165".
using Problems = std::vector<std::string>;

// ---- Single values. A value of another type than the member's is a problem. ----

void read_value(const json_t* value, const std::string& path, std::optional<int>& member,
                Problems& problems);
void read_value(const json_t* value, const std::string& path, std::optional<bool>& member,
                Problems& problems);
void read_value(const json_t* value, const std::string& path, std::optional<std::string>& member,
                Problems& problems);

// `radio` selects the span: without a known one, rules that differ by radio are not checked.
void check_value(std::optional<int> value, const Rule& rule, std::optional<int> radio,
                 const std::string& path, Problems& problems);
void check_value(std::optional<bool> value, const Rule& rule, std::optional<int> radio,
                 const std::string& path, Problems& problems);
void check_value(const std::optional<std::string>& value, const Rule& rule,
                 std::optional<int> radio, const std::string& path, Problems& problems);

bool is_object(const json_t* value, const std::string& path, Problems& problems);
bool is_array(const json_t* value, const std::string& path, Problems& problems);

// Members that none of `known` names.
void check_members(json_t* object, const std::string& path, const std::vector<std::string>& known,
                   Problems& problems);

// A member's path: "profile.id"; of a whole description, whose path is "", its name alone.
std::string member_path(const std::string& path, const char* name);

// The rule in words, for the help.
std::string rule_help(const Rule& rule);

// ---- Records. ----

template <class Record, size_t N>
std::vector<std::string> field_names(const Field<Record> (&fields)[N]) {
    std::vector<std::string> names;
    for (const auto& field : fields) {
        names.emplace_back(field.name);
    }
    return names;
}

// The members by their types; unknown and missing ones are problems.
template <class Record, size_t N>
Record read_record(json_t* object, const std::string& path, const Field<Record> (&fields)[N],
                   Problems& problems) {
    Record record;
    if (!is_object(object, path, problems)) {
        return record;
    }
    check_members(object, path, field_names(fields), problems);
    for (const auto& field : fields) {
        const json_t* value = json_object_get(object, field.name);
        const std::string place = member_path(path, field.name);
        if (value != nullptr) {
            std::visit([&](auto member) { read_value(value, place, record.*member, problems); },
                       field.member);
        } else if (field.rule.required) {
            problems.push_back(place + ": is missing");
        }
    }
    return record;
}

// The members' values by their rules.
template <class Record, size_t N>
void check_record(const Record& record, const std::string& path, const Field<Record> (&fields)[N],
                  std::optional<int> radio, Problems& problems) {
    for (const auto& field : fields) {
        const std::string place = member_path(path, field.name);
        std::visit(
            [&](auto member) { check_value(record.*member, field.rule, radio, place, problems); },
            field.member);
    }
}

// The fields for the help: name, type and rule, and below them the meaning.
template <class Record, size_t N>
std::vector<std::vector<std::string>> record_help(const Field<Record> (&fields)[N]) {
    constexpr const char* types[] = {"integer", "true or false", "text"};
    std::vector<std::vector<std::string>> rows;
    for (const auto& field : fields) {
        rows.push_back({field.name, types[field.member.index()] + rule_help(field.rule)});
        rows.push_back({"", field.meaning});
    }
    return rows;
}

} // namespace orloctl
