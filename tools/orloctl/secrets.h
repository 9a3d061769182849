// SPDX-License-Identifier: MIT
// Keys, secrets and passwords, which are not for every eye that sees a terminal or a log.
#pragma once

#include <set>
#include <string>

#include "json.h"

namespace orloctl {

// Knows what is secret by its name, remembers the values met under such names, and hides them in
// whatever is shown.
class Secrets {
public:
    explicit Secrets(bool shown) : shown_(shown) {}

    // Whether an option ("wireless.wifi0vap0.key"), a member or an argument of this name is secret.
    static bool is_secret(const std::string& name);

    void learn(const std::string& name, const std::string& value);

    // Everything that is secret in a description, or in an argument of this name.
    void learn(const json_t* value, const std::string& name = "");

    // The value of an option.
    std::string value(const std::string& name, const std::string& value) const;

    // A text in which secrets may stand: a command, a log line.
    std::string text(std::string text) const;

private:
    bool shown_;
    std::set<std::string> values_;
};

} // namespace orloctl
