// SPDX-License-Identifier: MIT
#include "records/rule.h"

#include <algorithm>
#include <cctype>

#include "json.h"
#include "text.h"

namespace orloctl {

namespace {

std::string quoted(const std::string& text) {
    return "\"" + text + "\"";
}

// Which of the rules by radio counts at the place; none where they differ and the radio is not
// known.
std::optional<size_t> rule_at(const Form& form, const Place& place) {
    if (!form.differs_by_radio) {
        return 0;
    }
    const bool known =
        place.radio && *place.radio >= 0 && *place.radio < static_cast<int>(form.accepted.size());
    return known ? std::optional<size_t>(*place.radio) : std::nullopt;
}

const Accepted* accepted_at(const Form& form, const Place& place) {
    const std::optional<size_t> rule = rule_at(form, place);
    return rule ? &form.accepted[*rule] : nullptr;
}

bool accepts(const Accepted& accepted, int64_t value) {
    if (accepted.numbers.empty() && !accepted.span) {
        return true;
    }
    const bool single = std::find(accepted.numbers.begin(), accepted.numbers.end(), value) !=
                        accepted.numbers.end();
    return single ||
           (accepted.span && value >= accepted.span->first && value <= accepted.span->last);
}

std::string shown(const Form& form, int64_t value) {
    if (form.type == Type::mask) {
        return shown_mask(form, value);
    }
    for (const Name& name : form.names) {
        if (form.type == Type::choice && name.value == value) {
            return quoted(name.name);
        }
    }
    return std::to_string(value);
}

// "0 or in 36..165", "WPA2 or WPA3", "\"a\" or \"b\"", "true or false"; "" for anything.
std::string choices(const Form& form, const Accepted& accepted) {
    if (form.type == Type::flag || form.type == Type::flags) {
        return "true or false";
    }
    std::vector<std::string> parts;
    for (const int64_t number : accepted.numbers) {
        parts.push_back(shown(form, number));
    }
    if (accepted.span) {
        parts.push_back("in " + std::to_string(accepted.span->first) + ".." +
                        std::to_string(accepted.span->last));
    }
    for (const char* word : accepted.words) {
        parts.push_back(quoted(word));
    }
    return alternatives(parts);
}

std::string choices_help(const Form& form) {
    std::string first = choices(form, form.accepted[0]);
    if (!form.differs_by_radio) {
        return first;
    }
    return first + " (radio 0), " + choices(form, form.accepted[1]) + " (radio 1)";
}

std::string names_help(const Form& form) {
    std::vector<std::string> names;
    for (const Name& name : form.names) {
        names.push_back(quoted(name.name));
    }
    return joined(names, ", ");
}

std::string up_to(const Form& form) {
    return "array of up to " + std::to_string(form.count) + " ";
}

// The type without rules.
std::string type_name(const Form& form) {
    switch (form.type) {
    case Type::flag:
        return "true or false";
    case Type::number:
        return "integer";
    case Type::mask:
        return "array of " + names_help(form) + ":";
    case Type::choice:
        return "";
    case Type::flags:
        return form.names.empty() ? up_to(form) + "true or false" : "array of " + names_help(form);
    case Type::text:
        return form.separator == nullptr ? "text" : "text or array";
    case Type::texts:
        return up_to(form) + "texts";
    case Type::record:
    case Type::optional:
        return "object " + std::string(form.record->name);
    case Type::array:
    case Type::some:
        return up_to(form) + form.record->name;
    case Type::list:
        return "array of " + std::string(form.record->name);
    case Type::keyed:
    case Type::references:
        return "array of " + std::string(form.record->name) + ", each with " + quoted(form.key) +
               " 0.." + std::to_string(form.count - 1);
    case Type::addresses:
        return "array of addresses";
    }
    return "";
}

bool is_mac(const std::string& text) {
    constexpr size_t length = 17;
    for (size_t i = 0; i < text.size(); i++) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (i % 3 == 2 ? c != ':' : isxdigit(c) == 0) {
            return false;
        }
    }
    return text.size() == length;
}

} // namespace

void wrong(const std::string& path, const std::string& what, Problems& problems) {
    problems.push_back((path.empty() ? "the description" : path) + ": " + what);
}

void too_long(const std::string& path, size_t size, size_t longest, Problems& problems) {
    wrong(path,
          "a text of " + std::to_string(size) + " bytes is longer than " + std::to_string(longest),
          problems);
}

void check_number(const Form& form, int64_t value, const Place& place, Problems& problems) {
    const Accepted* accepted = accepted_at(form, place);
    const bool not_given = form.has_not_given && value == form.fallback;
    if (accepted == nullptr || not_given || accepts(*accepted, value)) {
        return;
    }
    wrong(place.path, shown(form, value) + " is not " + choices(form, *accepted), problems);
}

void check_text(const Form& form, const std::string& value, const Place& place,
                Problems& problems) {
    const Accepted* accepted = accepted_at(form, place);
    if (accepted != nullptr && !accepted->words.empty() &&
        std::find(accepted->words.begin(), accepted->words.end(), value) == accepted->words.end()) {
        wrong(place.path,
              json_excerpt(json_text(value).get()) + " is not " + choices(form, *accepted),
              problems);
    }
    if (value.size() < form.shortest) {
        wrong(place.path, "is empty", problems);
    }
    if (form.longest > 0 && value.size() > form.longest) {
        too_long(place.path, value.size(), form.longest, problems);
    }
    if (form.is_mac && !value.empty() && !is_mac(value)) {
        wrong(place.path,
              json_excerpt(json_text(value).get()) + " is not an address like 02:00:00:00:00:01",
              problems);
    }
    const std::string objection = shell_objection(value, form.shell);
    if (!objection.empty()) {
        wrong(place.path, objection, problems);
    }
}

const char* fallback_text(const Form& form, const Place& place) {
    const std::optional<size_t> rule = rule_at(form, place);
    return rule ? form.fallback_text[*rule] : nullptr;
}

std::string shown_mask(const Form& form, int64_t value) {
    std::vector<std::string> names;
    int64_t rest = value;
    for (const Name& bit : form.names) {
        if ((value & bit.value) != 0) {
            names.emplace_back(bit.name);
            rest &= ~static_cast<int64_t>(bit.value);
        }
    }
    return rest != 0 || names.empty() ? std::to_string(value) : joined(names, "+");
}

std::string type_help(const Form& form) {
    std::string help = type_name(form);
    const std::string accepted = choices_help(form);
    const bool is_flag = form.type == Type::flag || form.type == Type::flags;
    if (!is_flag && !accepted.empty()) {
        help += (help.empty() ? "" : " ") + accepted;
    }
    if (*form.unit != '\0') {
        help += std::string(" ") + form.unit;
    }
    if (form.longest > 0) {
        help += " of at most " + std::to_string(form.longest) + " bytes";
    }
    if (form.shell != Shell::never) {
        help += std::string(", reaches the shell ") + shell_help(form.shell);
    }
    if (form.selected != nullptr) {
        help += ", for " + quoted(form.selected) + " only";
    }
    return form.is_required ? help + ", required" : help;
}

std::string shown_default(const Form& form) {
    switch (form.type) {
    case Type::flag:
    case Type::number:
    case Type::choice:
    case Type::mask:
        if (form.is_required || form.has_not_given) {
            return "";
        }
        return form.type == Type::flag ? (form.fallback == 0 ? "false" : "true")
                                       : shown(form, form.fallback);
    case Type::text:
        if (form.fallback_text[0] == nullptr) {
            return "";
        }
        return form.differs_by_radio
                   ? quoted(form.fallback_text[0]) + ", " + quoted(form.fallback_text[1])
                   : quoted(form.fallback_text[0]);
    default:
        return "";
    }
}

} // namespace orloctl
