// SPDX-License-Identifier: MIT
// Operations that stage settings of a system service, and what a save restarts afterwards.
#pragma once

#include "support/access_point.h"

#include <string>

namespace orlo::test {

class SystemService : public AccessPoint {
protected:
    // Saves; the services that are restarted then, as the apply-settings script is told: "ntp-0".
    std::string restarted() {
        door.forget();
        EXPECT_EQ(ops.api_save_config(), 0);
        const std::string script = "run /usr/bin/orloagent_apply_settings.sh ";
        for (const std::string& line : door.trace({"run"})) {
            if (line.find(script) == 0) {
                return line.substr(script.size(), line.rfind(" &") - script.size());
            }
        }
        return "";
    }

    // Stages a change that belongs to another operation.
    void stage_another_change() { ASSERT_EQ(ops.api_config_set_hash("another change"), 0); }

    static bool another_change_is_staged() {
        return staged_value("orloagent.agent.confighash") == "another change";
    }
};

} // namespace orlo::test
