// SPDX-License-Identifier: MIT
// Watches what the library does outside of itself: orloctl defines the functions that the library
// calls (interposed.cpp), and those tell the recorder.
//
// Nothing is recorded unless an operation is being watched. A call is the library's when it comes
// from its code, or, when a call ends a function of the library, from orloctl's own: nothing of
// orloctl runs in the meantime. What the library's own helpers (the store, jansson) do is theirs.
#pragma once

#include <cstdio>
#include <functional>
#include <map>
#include <vector>

#include "event.h"

namespace orloctl {

class Recorder {
public:
    static Recorder& instance();

    // From now on, until stop(), what the library that `of_library` lies in does is recorded. Each
    // event is told as soon as it is whole, in order, if somebody listens.
    using Listener = std::function<void(const Event&)>;
    void start(const void* of_library, Listener listener = nullptr);

    // What was recorded, that of a process which the library left behind included: it is waited
    // for.
    std::vector<Event> stop();

    // Makes the library's sleeps short: in a throw-away access point nobody waits for anything but
    // the device's own scripts.
    void skip_sleeps() { skips_sleeps_ = true; }
    bool skips_sleeps() const { return skips_sleeps_; }

    // ---- For the functions in between ----

    // Whether a call from this place is to be recorded.
    bool watches(const void* caller) const;
    bool is_watching() const { return library_ != nullptr && depth_ == 0; }

    void add(Event event);

    // A command whose output is read: whole when it is closed.
    void opened(const FILE* pipe, Event event);
    void read_line(const FILE* pipe, const char* line);
    void closed(const FILE* pipe, int status);

    // Takes back that the option was looked up, when that was for writing it.
    void looked_up_for(const std::string& option);

    pid_t fork_with(pid_t (*real_fork)());

    // While it lives, nothing is recorded: what a watched call causes belongs to it.
    class Within {
    public:
        Within() { instance().depth_++; }
        ~Within() { instance().depth_--; }
        Within(const Within&) = delete;
        Within& operator=(const Within&) = delete;
    };

private:
    size_t settled() const; // events that cannot change any more
    void tell_whole_ones();
    void take_in_child();

    const void* library_ = nullptr;
    Listener listener_;
    std::vector<Event> events_;
    std::map<const FILE*, size_t> open_; // commands that are being read, by their place in events_
    size_t told_ = 0;
    int depth_ = 0;
    bool skips_sleeps_ = false;
    pid_t child_ = -1;
    int from_child_ = -1; // the pipe that a child's events come through
    int to_parent_ = -1;  // in the child: its other end
};

} // namespace orloctl
