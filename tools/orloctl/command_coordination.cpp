// SPDX-License-Identifier: MIT
// orloctl block, release and wait-vaps: what stands around an apply. Each calls one operation that
// answers 0 or -1.
#include "commands.h"
#include "json.h"
#include "library.h"
#include "log_capture.h"
#include "text.h"

namespace orloctl {

namespace {

struct Question {
    const char* operation;
    int (*vendor_ops::*ask)();
    const char* member; // of the JSON object: the answer
    const char* yes;
    const char* no;
};

constexpr Question block = {
    "api_is_config_applying_check",
    &vendor_ops::api_is_config_applying_check,
    "blocked",
    "the web interface is blocked until 'orloctl release'",
    "not blocked: the web interface is busy, or is blocked already",
};

constexpr Question release = {
    "api_release_web_ui_block",
    &vendor_ops::api_release_web_ui_block,
    "released",
    "the web interface is free again",
    "not released: the web interface is not blocked",
};

constexpr Question wait_vaps = {
    "api_is_vap_established_check", &vendor_ops::api_is_vap_established_check,  "established",
    "every configured VAP is up",   "given up: not every configured VAP is up",
};

template <const Question& question>
Exit run(const CommandLine& line, Output& output) {
    take_no_words(line);
    const Library library = open_library(line);
    start_call_log();
    const bool yes = (library.ops().*question.ask)() == 0;
    if (line.json) {
        Json object = json_object_new();
        set(object, question.member, json_bool(yes));
        set(object, "log", json_texts(yes ? std::vector<std::string>() : last_log_lines()));
        output.print(json_document(object));
    } else {
        output.print(std::string(yes ? question.yes : question.no) + "\n");
    }
    if (yes) {
        return exit_done;
    }
    if (!line.json) {
        print_reason(question.operation);
    }
    return exit_failed;
}

std::string block_help() {
    return paragraph("Keeps the device's web interface from applying a configuration of its own, "
                     "as the agent does before it applies one. Ends with exit code 1 when the web "
                     "interface is restarting the network, or when somebody has blocked it "
                     "already: try again later. 'orloctl release' ends it; it outlives orloctl.");
}

std::string release_help() {
    return paragraph("Lets the device's web interface apply configurations again. Ends with exit "
                     "code 1 when it was not blocked.");
}

std::string wait_vaps_help() {
    return paragraph("Waits until every VAP that the configuration enables on an enabled radio is "
                     "up; mesh-link VAPs that accept no link are not waited for. Looks up to five "
                     "times, 30 seconds apart, and then ends with exit code 1. With no VAP enabled "
                     "there is nothing to wait for.");
}

} // namespace

const Command block_command = {"block", "block", "keep the web interface from applying", block_help,
                               run<block>};

const Command release_command = {"release", "release", "let the web interface apply again",
                                 release_help, run<release>};

const Command wait_vaps_command = {"wait-vaps", "wait-vaps",
                                   "wait until the configured VAPs are up", wait_vaps_help,
                                   run<wait_vaps>};

} // namespace orloctl
