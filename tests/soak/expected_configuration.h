// SPDX-License-Identifier: MIT
// What the configuration of the access point must be, as a session goes on: options by their full
// name, "wireless.wifi0.channel", those of them that the session's calls have decided.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace orlo::test {

class ExpectedConfiguration {
public:
    // An empty value removes the option.
    void stage(const std::string& option, const std::string& value);
    void stage(const std::string& option, int value) { stage(option, std::to_string(value)); }

    // Nothing is expected any more of the options whose names begin so.
    void forget(const std::string& prefix);

    // What is staged under a prefix ("wireless.", or "" for all) becomes permanent.
    void commit(const std::string& prefix = "");

    // With what is staged; "" when it is not there, or nothing is expected of it.
    std::string value(const std::string& option) const;

    // Those that differ in the configuration as it is: "option: is X, expected Y".
    std::vector<std::string> differences(const std::map<std::string, std::string>& actual) const;

    size_t size() const { return committed_.size(); }

private:
    std::map<std::string, std::string> staged_;
    std::map<std::string, std::string> committed_; // "": must not be there
};

// The whole configuration as the store has it. Anonymous sections go by "@type[index]", elements of
// lists are joined by blanks.
std::map<std::string, std::string> actual_configuration();

} // namespace orlo::test
