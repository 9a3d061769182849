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
    std::function<int(const vendor_ops&)> call;
    Json arguments; // an array

    std::string title() const {
        return radio ? operation + " radio " + std::to_string(*radio) : operation;
    }
};

// Each radio's status, settings, hardware, channels and power, VAPs; the hashes and the profile id;
// the save. The steps need the description; VAPs can be applied once, as their lists are consumed.
std::vector<Step> plan(const Description& description, bool save);

} // namespace orloctl
