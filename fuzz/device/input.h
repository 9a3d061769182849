// SPDX-License-Identifier: MIT
// An input of the device's targets, a text that people can read and write:
//
//     api_is_cqscan_enabled               the calls
//     api_get_CQ_status 1 /tmp/quilt
//     %% md5sum                           what a command in which this stands prints
//     d41d8cd98f00b204e9800998ecf8427e
//     %% get wireless.wifi0vap1.mode      what the store holds
//     quilt
//     %% open /etc/version                what a file holds
//     2.0
//     %% exists cq_version                that a file is there
//     %% ioctl 8b05                       the bytes with which the driver answers
//
// What the library asks is "read COMMAND", "open PATH", "exists PATH", "get PACKAGE.SECTION.OPTION"
// or "ioctl NUMBER"; the title of an answer is any piece of it. Answers to the same question take
// turns. What has no answer prints nothing, does not exist, or fails.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace fuzz {

using Call = std::vector<std::string>;

class Input {
public:
    Input(const uint8_t* data, size_t size);

    // The words of each line before the answers.
    [[nodiscard]] const std::vector<Call>& calls() const { return calls_; }

    // NULL without an answer.
    const std::string* answer(const std::string& question);

    // The last line end of an answer is its own only if more than one line was given.
    static std::string without_line_end(const std::string& answer);

    // As it is read, with another text under a title.
    [[nodiscard]] std::string with_answer(const std::string& title, const std::string& text) const;

private:
    struct Answer {
        std::string title;
        std::string text;
        int used = 0;
    };

    std::vector<Call> calls_;
    std::vector<Answer> answers_;
};

} // namespace fuzz
