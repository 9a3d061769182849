// SPDX-License-Identifier: MIT
// A virtual access point for one preview: it starts with somebody's configuration, and is gone when
// the program ends.
#pragma once

#include <map>
#include <string>

namespace orloctl {

using Files = std::map<std::string, std::string>; // texts by name

struct Configuration {
    std::string source; // its folder, or "the sample configuration"
    Files packages;     // none: those of the device root
    Files staged;       // changes that lie staged there
};

// The configuration in a folder; for "", that of the access point on which this runs, with what is
// staged there, or else the sample. Throws a Refusal when it cannot be read.
Configuration read_configuration(const std::string& folder);

// Goes on inside, in a process of its own, as orlo::device::enter() does. Throws a Refusal when
// there can be no virtual access point here.
void enter_throw_away(const Configuration& configuration);

} // namespace orloctl
