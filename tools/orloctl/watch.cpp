// SPDX-License-Identifier: MIT
#include "watch.h"

#include <cmath>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <poll.h>

#include "exit.h"

namespace orloctl {

namespace {

constexpr const char* clear_screen = "\033[H\033[2J";

volatile sig_atomic_t interrupted = 0;

timespec read_interval(const CommandLine& line) {
    constexpr double longest = 86400; // a day
    if (line.every.empty()) {
        return {2, 0};
    }
    if (!line.watch) {
        throw Refusal("option --every needs --watch");
    }
    char* end = nullptr;
    const double seconds = strtod(line.every.c_str(), &end);
    if (*end != '\0' || !(seconds >= 0 && seconds <= longest)) {
        throw Refusal("--every: '" + line.every + "' is no number of seconds, 0 to 86400");
    }
    const double whole = std::floor(seconds);
    return {static_cast<time_t>(whole), static_cast<long>((seconds - whole) * 1e9)};
}

// While it lives, an interruption ends waiting and nothing else: a library that is writing a file
// finishes it.
class Interruptions {
public:
    Interruptions() {
        struct sigaction action = {};
        action.sa_handler = [](int) { interrupted = 1; };
        action.sa_flags = SA_RESTART;
        sigaction(SIGINT, &action, &before_int_);
        sigaction(SIGTERM, &action, &before_term_);
    }
    ~Interruptions() {
        sigaction(SIGINT, &before_int_, nullptr);
        sigaction(SIGTERM, &before_term_, nullptr);
    }
    Interruptions(const Interruptions&) = delete;
    Interruptions& operator=(const Interruptions&) = delete;

    // True when the wait was interrupted, or would have been.
    static bool end_wait(const timespec& interval) {
        sigset_t both;
        sigset_t usual;
        sigemptyset(&both);
        sigaddset(&both, SIGINT);
        sigaddset(&both, SIGTERM);
        sigprocmask(SIG_BLOCK, &both, &usual); // or one could come between the look and the wait
        if (interrupted == 0) {
            ppoll(nullptr, 0, &interval, &usual);
        }
        sigprocmask(SIG_SETMASK, &usual, nullptr);
        return interrupted != 0;
    }

private:
    struct sigaction before_int_ = {};
    struct sigaction before_term_ = {};
};

} // namespace

std::string json_frame(const CommandLine& line, const Json& value) {
    return line.watch ? json_line(value) : json_document(value);
}

void show(const CommandLine& line, Output& output, const std::function<std::string()>& frame) {
    const timespec interval = read_interval(line);
    if (!line.watch) {
        output.print(frame());
        return;
    }
    const Interruptions interruptions;
    const bool clears = output.has_screen() && !line.json;
    const char* const between = line.json || clears ? "" : "\n";
    for (const char* before = "";; before = between) {
        const std::string text = frame();
        output.print((clears ? clear_screen : before) + text);
        if (output.error() != 0 || Interruptions::end_wait(interval)) {
            return;
        }
    }
}

} // namespace orloctl
