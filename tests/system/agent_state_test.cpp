// SPDX-License-Identifier: MIT
// The state word that the agent leaves with the library.
#include "support/access_point.h"

#include <climits>

namespace orlo::test {

using AgentState = AccessPoint;

TEST_F(AgentState, IsZeroUntilItIsSet) {
    EXPECT_EQ(ops.api_get_orloagent_state(), 0);
    EXPECT_THAT(door.trace(),
                ElementsAre("log api_get_orloagent_state: Entering...",
                            "log api_get_orloagent_state: End... orloagent_state: 0"));
}

TEST_F(AgentState, IsKeptUnchangedWhateverItIs) {
    EXPECT_EQ(ops.api_set_orloagent_state(INT_MIN), 0);
    EXPECT_EQ(ops.api_get_orloagent_state(), INT_MIN);
    EXPECT_EQ(ops.api_set_orloagent_state(7), 0);
    EXPECT_EQ(ops.api_get_orloagent_state(), 7);
    EXPECT_THAT(
        door.trace(),
        ElementsAre("log api_set_orloagent_state: Entering... current / new : 0 /-2147483648",
                    "log api_set_orloagent_state: End Successfully",
                    "log api_get_orloagent_state: Entering...",
                    "log api_get_orloagent_state: End... orloagent_state: -2147483648",
                    "log api_set_orloagent_state: Entering... current / new : -2147483648 /7",
                    "log api_set_orloagent_state: End Successfully",
                    "log api_get_orloagent_state: Entering...",
                    "log api_get_orloagent_state: End... orloagent_state: 7"));
}

} // namespace orlo::test
