// SPDX-License-Identifier: MIT
#include "faults/expectation.h"

#include <sstream>

namespace orlo::test {

namespace {

bool take_last(std::string& text, char flag) {
    const bool there = !text.empty() && text.back() == flag;
    if (there) {
        text.pop_back();
    }
    return there;
}

std::string kind_of_store_use(StoreUse use) {
    switch (use) {
    case StoreUse::get:
        return "get";
    case StoreUse::set:
        return "set";
    case StoreUse::commit:
        return "commit";
    case StoreUse::revert:
        return "revert";
    case StoreUse::none:
        break;
    }
    return "store";
}

} // namespace

Expectations read_expectations(const std::string& failures) {
    Expectations all;
    std::istringstream words(failures);
    for (std::string word; words >> word;) {
        const size_t sign = word.find('=');
        Expectation expected;
        expected.answer = word.substr(sign + 1);
        expected.is_silent = take_last(expected.answer, '.');
        expected.logs_error = take_last(expected.answer, '+');
        expected.takes_the_rest = take_last(expected.answer, '>');
        expected.discards = take_last(expected.answer, '!');
        expected.varies = expected.answer == "~";
        all[word.substr(0, sign)] = expected;
    }
    return all;
}

const Expectations::value_type* find_expectation(const Expectations& all, const std::string& kind,
                                                 const std::string& what) {
    const Expectations::value_type* general = nullptr;
    for (const Expectations::value_type& entry : all) {
        const size_t colon = entry.first.find(':');
        if (entry.first.substr(0, colon) != kind) {
            continue;
        }
        if (colon == std::string::npos) {
            general = &entry;
        } else if (what.find(entry.first.substr(colon + 1)) != std::string::npos) {
            return &entry;
        }
    }
    return general;
}

std::string kind_of(const Step& step, Manner manner) {
    switch (step.call) {
    case Call::access:
    case Call::g_file_test:
        return "look";
    case Call::calloc:
    case Call::realloc:
    case Call::strdup:
        return "memory";
    case Call::fopen:
    case Call::open:
        return "open";
    case Call::fork:
        return "fork";
    case Call::ioctl:
        return "ioctl";
    case Call::json:
        return "json";
    case Call::popen:
        return manner == Manner::fails ? "read" : manner == Manner::empty ? "empty" : "endless";
    case Call::sendto:
        return "send";
    case Call::socket:
        return "socket";
    case Call::system:
        return manner == Manner::fails ? "run" : manner == Manner::exits ? "exit" : "kill";
    case Call::unlink:
        return "remove";
    default:
        return kind_of_store_use(step.use);
    }
}

std::vector<Manner> manners_of(const Step& step) {
    switch (step.call) {
    case Call::popen:
        return {Manner::fails, Manner::empty, Manner::endless};
    case Call::system:
        return {Manner::fails, Manner::exits, Manner::killed};
    default:
        return {Manner::fails};
    }
}

} // namespace orlo::test
