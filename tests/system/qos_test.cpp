// SPDX-License-Identifier: MIT
// QoS classes, which this device does not have.
#include "support/access_point.h"

#include <climits>

namespace orlo::test {

using Qos = AccessPoint;

TEST_F(Qos, IsNotSupported) {
    int touched = 42;
    EXPECT_EQ(ops.api_apply_qos_ap(INT_MIN, &touched, nullptr), 0);
    EXPECT_EQ(ops.api_apply_qos_station(INT_MAX, nullptr, &touched), 0);
    EXPECT_EQ(touched, 42);
    EXPECT_THAT(door.trace(), ElementsAre("log api_apply_qos_ap: Entering, not support",
                                          "log api_apply_qos_ap: End... return: 0",
                                          "log api_apply_qos_station: Entering, not support",
                                          "log api_apply_qos_station: End... return: 0"));
    EXPECT_FALSE(saving_restarts_network());
}

} // namespace orlo::test
