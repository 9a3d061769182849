// SPDX-License-Identifier: MIT
// orloctl trace: one operation, and everything that it does outside of the library.
#include "call.h"
#include "commands.h"
#include "library.h"
#include "paint.h"
#include "recorder.h"
#include "text.h"

namespace orloctl {

namespace {

constexpr size_t name_width = 8; // of the longest event's name, and two blanks

std::string padded(std::string text) {
    text.resize(text.size() < name_width ? name_width : text.size() + 1, ' ');
    return text;
}

class Trace {
public:
    Trace(const CommandLine& line, Output& output)
        : line_(line), output_(output), paint_(output), secrets_(line.show_keys) {}

    Call& watch(Call& call, const Library& library);
    Json json(const Call& call) const;
    void print_result(const Call& call);

private:
    void print(const Event& event);
    bool is_left_out(const Event& event) const { return !line_.reads && is_aside(event); }

    const CommandLine& line_;
    Output& output_;
    Paint paint_;
    Secrets secrets_;
    std::vector<Event> events_;
};

Call& Trace::watch(Call& call, const Library& library) {
    call.learn(secrets_);
    Recorder& recorder = Recorder::instance();
    recorder.start(&library.ops(), [this](const Event& event) { print(event); });
    call.make(library.ops());
    events_ = recorder.stop();
    return call;
}

void Trace::print(const Event& event) {
    learn(event, secrets_);
    if (line_.json || is_left_out(event)) {
        return;
    }
    const std::string name = padded(event_name(event.kind));
    const std::string text = (event.in_child ? "(child) " : "") + event_text(event, secrets_);
    const bool is_bad = event.failed || is_error_message(event);
    output_.print(paint_.marked(name) +
                  (is_bad                           ? paint_.bad(text)
                   : event.kind == Event::Kind::log ? paint_.aside(text)
                                                    : text) +
                  "\n");
}

Json Trace::json(const Call& call) const {
    Json events = json_array_new();
    for (const Event& event : events_) {
        if (!is_left_out(event)) {
            append(events, event_json(event, secrets_));
        }
    }
    Json object = call.json();
    set(object, "events", std::move(events));
    return object;
}

void Trace::print_result(const Call& call) {
    const std::string text = padded("result") + call.text();
    output_.print(call.has_failed() ? paint_.bad(text) : paint_.good(text));
}

Exit run(const CommandLine& line, Output& output) {
    Call call = read_call(line);
    const Library library = open_library(line);
    Trace trace(line, output);
    trace.watch(call, library);
    if (line.json) {
        output.print(json_document(trace.json(call)));
    } else {
        trace.print_result(call);
    }
    return call.has_failed() ? exit_failed : exit_done;
}

std::string help() {
    return paragraph("Calls one operation, as 'orloctl call' does and with the same words, and "
                     "prints what it does outside of the library, in order, as it happens:") +
           "\n"
           "  log      a log line of the library: FUNCTION:LINE: MESSAGE\n"
           "  set      an option that is staged: OPTION: OLD -> NEW\n"
           "  add del  an element that a list gets or loses\n"
           "  delete   an option or section that goes\n"
           "  commit   packages whose staged changes are kept; revert: discarded\n"
           "  run      a shell command, with its exit status if that is not 0\n"
           "  read     a shell command whose output is read, and what was read of it\n"
           "  child    a process that goes on by itself; what it does follows at the end\n"
           "  driver   a request to the wireless driver\n"
           "  write    a file that is written; unlink: removed\n"
           "  send     a datagram\n"
           "  sleep    seconds that the operation waits\n"
           "  result   what 'orloctl call' prints\n"
           "\n" +
           paragraph("It really calls the operation: what is staged stays staged, what is "
                     "committed is in force. Keys, secrets and passwords are shown as ******** "
                     "unless --show-keys is given. With --json: what 'orloctl call' prints, and "
                     "the events.") +
           "\nExamples:\n"
           "  orloctl trace api_set_Channel 1 44\n"
           "  orloctl trace --reads api_get_channel 1\n"
           "\nOptions:\n" +
           option_help("trace");
}

} // namespace

const Command trace_command = {"trace",
                               "trace OP ARG... [--reads]",
                               "call one operation and show what it does",
                               help,
                               run,
                               operation_names};

} // namespace orloctl
