// SPDX-License-Identifier: MIT
// What an operation does outside of the library, one event each.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "json.h"
#include "secrets.h"

namespace orloctl {

struct Event {
    // clang-format off
    enum class Kind {
        log,
        get, set, add_element, remove_element, remove, save, commit, revert, // of the store
        run, read, child,                                                    // commands
        driver, send, open, write, unlink, sleep,
    };
    // clang-format on

    Kind kind = Kind::log;
    std::string subject;     // option, command, file, address, interface; of a log line
                             // the function
    std::string detail = {}; // value written or read, output, message, request
    std::optional<std::string> before = {}; // of an option that is written or removed
    int number = 0;                         // exit status, seconds, error, level of a log line
    int line = 0;                           // of a log line
    bool failed = false;
    bool in_child = false; // done by a process that the library has left behind
};

// "set", "add", "commit"...: the word for a kind, for people and for programs.
const char* event_name(Event::Kind kind);

// Whether it changes nothing and is left out of a short view: options and files that are read, and
// the store's own way of keeping a change that is an event itself.
bool is_aside(const Event& event);

// Whether the next event continues this one, as one commit of all packages does, or waiting second
// by second; and the two of them as one.
bool goes_on(const Event& event, const Event& next);
void join_event(Event& event, const Event& next);

// Whether it tells of something that went wrong: a message at error level, or one that begins with
// "error:", as most operations write them.
bool is_error_message(const Event& event);

// The services that a command restarts, "network", in order; none for most.
std::vector<std::string> restarted_services(const Event& event);

// What is secret in it, to be hidden from then on.
void learn(const Event& event, Secrets& secrets);

// One line for people, without its kind and line end.
std::string event_text(const Event& event, const Secrets& secrets);

Json event_json(const Event& event, const Secrets& secrets);

} // namespace orloctl
