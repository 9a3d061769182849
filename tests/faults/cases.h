// SPDX-License-Identifier: MIT
// A representative call of every operation, and what has to become of it when a step fails.
//
// The words of `failures` say so of each kind of step that the call takes, and of no other:
//
//     set=-1!      when a change cannot be staged the answer is -1, and all that is staged, by
//                  whomever, is discarded
//     get=same     when an option cannot be read the answer is the same as without a failure
//     set=-1!>     likewise, but the steps that are left are taken before
//     read=null+   when a command cannot be started for its output the answer is NULL, and a line
//                  of the log's error level tells so
//     read=-1.     neither the log nor standard error tells so
//     get=*        the answer is any but null
//     read=command the answer is the text of the command
//     run=~        what becomes of it differs from step to step; the tests of the operation tell
//     set:ssid=-2  of those steps only in whose command, path or option the word stands
//
// Unless there is a "!", what was staged by others stays staged. The kinds of step:
//
//     get set commit       uses of the configuration store: each in turn finds no memory, no such
//     revert               option, no room to write; discarding can fail only when something else
//                          has failed first, so that it needs no word
//     run exit kill        a command that is run for its effect: is not started, ends with status
//                          1, is ended by a signal
//     read empty endless   a command that is run for its output: is not started, prints nothing,
//                          prints a line of a million characters
//     open look remove     a file cannot be opened, seems not to be there, cannot be removed
//     fork socket send     as their names say
//     ioctl                a request to the driver fails
//     memory json          the heap has no memory, or none for JSON values
//
// That a file is not there is an answer, and a heap without memory has none for a log line: neither
// needs to be told.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace orlo::test {

struct Case {
    int slot;
    const char* operation;
    std::vector<std::string> words; // of `orloctl call`
    const char* answer;             // of the undisturbed call, as JSON; "*": anything but null
    const char* failures;
    const char* setup = "";               // a shell script that prepares the access point
    std::vector<std::string> before = {}; // operations that are called first, without arguments
};

void PrintTo(const Case& one, std::ostream* out);

// In slot order.
std::vector<Case> all_cases();

std::vector<Case> system_cases();
std::vector<Case> radio_cases();
std::vector<Case> vap_cases();
std::vector<Case> client_cases();
std::vector<Case> quilt_and_mesh_cases();

} // namespace orlo::test
