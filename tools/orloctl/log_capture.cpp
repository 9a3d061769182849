// SPDX-License-Identifier: MIT
#include "log_capture.h"

#include <cstdarg>
#include <cstdio>
#include <deque>

#include "orlo/debug.h"
#include "recorder.h"
#include "text.h"

namespace orloctl {

namespace {

constexpr size_t longest_line = 1024;
constexpr size_t lines_kept = 3;

struct {
    LogFunction next = nullptr;
    bool print_all = false;
    std::deque<std::string> lines;
} capture;

bool begins_with(const std::string& text, const char* beginning) {
    return text.rfind(beginning, 0) == 0;
}

// The message as it is shown: without the blanks and the line end around it.
std::string trimmed(const std::string& message) {
    const size_t first = message.find_first_not_of(" \t\n");
    const size_t last = message.find_last_not_of(" \t\n");
    return first == std::string::npos ? "" : message.substr(first, last - first + 1);
}

void keep(const std::string& message) {
    if (message.empty() || begins_with(message, "Enter")) {
        return;
    }
    capture.lines.push_back(message);
    if (capture.lines.size() > lines_kept) {
        capture.lines.pop_front();
    }
}

} // namespace

void forward_log_to(LogFunction function) {
    capture.next = function;
}

void print_all_log_lines() {
    capture.print_all = true;
}

void start_call_log() {
    capture.lines.clear();
}

std::vector<std::string> last_log_lines() {
    return {capture.lines.begin(), capture.lines.end()};
}

void print_reason(const std::string& operation) {
    const std::vector<std::string> lines = last_log_lines();
    if (!capture.print_all && !lines.empty()) {
        fprintf(stderr, "%s: %s\n", operation.c_str(), joined(lines, "\n  ").c_str());
    }
}

} // namespace orloctl

__attribute__((visibility("default"))) void orlo_agent_debug_log(int module, int level,
                                                                 const char* function_name,
                                                                 int line, const char* format,
                                                                 ...) {
    using namespace orloctl;
    char message[longest_line];
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(message, sizeof message, format, arguments);
    va_end(arguments);

    const std::string shown = trimmed(message);
    keep(shown);
    if (Recorder::instance().is_watching()) {
        Event event{Event::Kind::log, function_name, shown};
        event.number = level;
        event.line = line;
        Recorder::instance().add(std::move(event));
    }
    const Recorder::Within within; // what logging does is not the operation's
    if (capture.print_all) {
        fprintf(stderr, "%s:%d: %s\n", function_name, line, shown.c_str());
    } else if (capture.next != nullptr) {
        capture.next(module, level, function_name, line, "%s", message);
    }
}
