// SPDX-License-Identifier: MIT
// The operations that a description causes, in the agent's order.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "description.h"
#include "json.h"
#include "orlo/vendor_ops.h"

namespace orloctl {

struct Step {
    std::string operation;
    std::optional<int> radio; // whose step it is
    std::optional<int> vap;
    std::function<int(const vendor_ops&)> call;
    Json arguments;                // an array
    const char* at_once = nullptr; // what it changes that cannot be discarded any more

    std::string title() const {
        return operation + (radio ? " radio " + std::to_string(*radio) : "") +
               (vap ? " VAP " + std::to_string(*vap) : "");
    }
};

// The country, and SNMP, whose traps tell what the radios are about to do; each radio's status,
// settings, hardware, channels and power, VAPs and access to them; links, which take a VAP as it
// is; the rest of the device, the hashes and the profile id; what takes effect at once; the save.
// The steps need the description; VAPs can be applied once, as their lists are consumed.
std::vector<Step> plan(const Description& description, bool save);

} // namespace orloctl
