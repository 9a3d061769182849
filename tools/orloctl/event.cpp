// SPDX-License-Identifier: MIT
#include "event.h"

#include <cstring>
#include <sstream>

#include "text.h"

namespace orloctl {

namespace {

using Kind = Event::Kind;

constexpr int error_level = 1;
constexpr const char* separator = ", "; // of packages that are committed together
constexpr const char* apply_script = "orloagent_apply_settings.sh";

struct Name {
    Kind kind;
    const char* name;
};

// clang-format off
const Name names[] = {
    {Kind::log, "log"},
    {Kind::get, "get"}, {Kind::set, "set"}, {Kind::add_element, "add"},
    {Kind::remove_element, "del"}, {Kind::remove, "delete"},
    {Kind::save, "save"}, {Kind::commit, "commit"}, {Kind::revert, "revert"},
    {Kind::run, "run"}, {Kind::read, "read"}, {Kind::child, "child"},
    {Kind::driver, "driver"}, {Kind::send, "send"}, {Kind::open, "open"},
    {Kind::write, "write"}, {Kind::unlink, "unlink"}, {Kind::sleep, "sleep"},
};
// clang-format on

bool is_command(const Event& event) {
    return event.kind == Kind::run || event.kind == Kind::read;
}

bool edits_option(const Event& event) {
    return event.kind >= Kind::set && event.kind <= Kind::remove;
}

std::string quoted(const std::string& text) {
    return "'" + printable(text) + "'";
}

std::string value_text(const Event& event, const std::string& value, const Secrets& secrets) {
    return quoted(secrets.value(event.subject, value));
}

std::string edit_text(const Event& event, const Secrets& secrets) {
    const std::string before =
        event.before ? value_text(event, *event.before, secrets) : std::string("(none)");
    const std::string key = event.subject;
    switch (event.kind) {
    case Kind::set:
        return key + ": " + before + " -> " + value_text(event, event.detail, secrets);
    case Kind::remove:
        return key + ": " + before + " -> (none)";
    default:
        return key + ": " + value_text(event, event.detail, secrets);
    }
}

std::string with_visible_line_ends(std::string text) {
    for (size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at)) {
        text.replace(at, 1, "\\n");
    }
    return text;
}

std::string command_text(const Event& event, const Secrets& secrets) {
    std::string text = printable(secrets.text(event.subject));
    if (!event.detail.empty()) {
        text += " -> " + quoted(with_visible_line_ends(secrets.text(event.detail)));
    }
    return event.number == 0 ? text : text + " (exit status " + std::to_string(event.number) + ")";
}

std::string other_text(const Event& event, const Secrets& secrets) {
    switch (event.kind) {
    case Kind::log:
        return event.subject + ":" + std::to_string(event.line) + ": " +
               printable(secrets.text(event.detail));
    case Kind::get:
        return event.subject + (event.before ? " = " + value_text(event, *event.before, secrets)
                                             : std::string(" = (none)"));
    case Kind::sleep:
        return std::to_string(event.number) + " s";
    case Kind::driver:
    case Kind::send:
        return event.subject + " " + event.detail;
    default:
        return event.subject;
    }
}

// Those of events that became one, as join_event() puts them.
Json packages_json(const Event& event) {
    Json packages = json_array_new();
    for (size_t start = 0; start != std::string::npos;) {
        const size_t end = event.subject.find(separator, start);
        append(packages, json_text(event.subject.substr(start, end - start)));
        start = end == std::string::npos ? end : end + strlen(separator);
    }
    return packages;
}

} // namespace

const char* event_name(Event::Kind kind) {
    for (const Name& each : names) {
        if (each.kind == kind) {
            return each.name;
        }
    }
    return "";
}

bool is_aside(const Event& event) {
    return event.kind == Kind::get || event.kind == Kind::open ||
           (event.kind == Kind::save && !event.failed);
}

bool goes_on(const Event& event, const Event& next) {
    const bool is_in_parts =
        event.kind == Kind::sleep || event.kind == Kind::commit || event.kind == Kind::revert;
    return is_in_parts && next.kind == event.kind && !event.failed && !next.failed;
}

void join_event(Event& event, const Event& next) {
    event.number += next.number;
    event.subject += next.subject.empty() ? "" : separator + next.subject;
}

bool is_error_message(const Event& event) {
    return event.kind == Kind::log &&
           (event.number <= error_level || lower_case(event.detail).rfind("error", 0) == 0);
}

std::vector<std::string> restarted_services(const Event& event) {
    std::vector<std::string> services;
    const size_t script =
        event.kind == Kind::run ? event.subject.find(apply_script) : std::string::npos;
    if (script == std::string::npos) {
        return services;
    }
    std::istringstream words(event.subject.substr(script));
    std::string word;
    words >> word; // the script
    while (words >> word && word != "&") {
        services.push_back(word.substr(0, word.rfind('-')));
    }
    return services;
}

void learn(const Event& event, Secrets& secrets) {
    if (edits_option(event) || event.kind == Kind::get) {
        secrets.learn(event.subject, event.detail);
        secrets.learn(event.subject, event.before.value_or(""));
    }
}

std::string event_text(const Event& event, const Secrets& secrets) {
    const std::string text = edits_option(event) ? edit_text(event, secrets)
                             : is_command(event) ? command_text(event, secrets)
                                                 : other_text(event, secrets);
    return text + (event.failed ? " (failed)" : "");
}

Json event_json(const Event& event, const Secrets& secrets) {
    Json object = json_object_new();
    set(object, "event", json_text(event_name(event.kind)));
    if (event.kind == Kind::log) {
        set(object, "function", json_text(event.subject));
        set(object, "line", json_int(event.line));
        set(object, "level", json_int(event.number));
        set(object, "message", json_text(secrets.text(event.detail)));
    } else if (is_command(event)) {
        set(object, "command", json_text(secrets.text(event.subject)));
        set(object, "exit_status", json_int(event.number));
        if (event.kind == Kind::read) {
            set(object, "output", json_text(secrets.text(event.detail)));
        }
    } else if (edits_option(event) || event.kind == Kind::get) {
        set(object, "option", json_text(event.subject));
        set(object, "before",
            event.before ? json_text(secrets.value(event.subject, *event.before))
                         : json_null_new());
        if (event.kind != Kind::get && event.kind != Kind::remove) {
            set(object, "value", json_text(secrets.value(event.subject, event.detail)));
        }
    } else if (event.kind == Kind::commit || event.kind == Kind::revert) {
        set(object, "packages", packages_json(event));
    } else if (event.kind == Kind::sleep) {
        set(object, "seconds", json_int(event.number));
    } else {
        set(object, "what", json_text(event.subject));
        if (!event.detail.empty()) {
            set(object, "detail", json_text(event.detail));
        }
    }
    set(object, "failed", json_bool(event.failed));
    if (event.in_child) {
        set(object, "in_child", json_bool(true));
    }
    return object;
}

} // namespace orloctl
