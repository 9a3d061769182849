// SPDX-License-Identifier: MIT
// The operations that the table itself answers.
#include "support/access_point.h"

#include <climits>
#include <sys/stat.h>

namespace orlo::test {

using FixedOperations = AccessPoint;

TEST_F(FixedOperations, ReservedSlotsAnswerZeroAndDoNothing) {
    int touched = 42;
    EXPECT_EQ(ops.api_reserved_13(&touched, nullptr, &touched), 0);
    EXPECT_EQ(ops.api_reserved_19(INT_MIN), 0);
    EXPECT_EQ(ops.api_reserved_42(1, -1), 0);
    EXPECT_EQ(ops.api_reserved_43(INT_MAX, 0), 0);
    EXPECT_EQ(ops.api_reserved_44(0, INT_MIN), 0);
    EXPECT_EQ(touched, 42);
    EXPECT_THAT(door.trace(), IsEmpty());
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(FixedOperations, ReservedSlotsAreFunctionsOfTheirOwn) {
    EXPECT_NE(ops.api_reserved_42, ops.api_reserved_43);
    EXPECT_NE(ops.api_reserved_43, ops.api_reserved_44);
    EXPECT_NE(ops.api_reserved_42, ops.api_reserved_44);
}

TEST_F(FixedOperations, ACaptivePortalNeedsItsKernelModule) {
    EXPECT_EQ(ops.api_is_captive_portal_capable(), 0);
    ASSERT_EQ(system("mkdir -p /lib/modules/4.14.76"), 0);
    EXPECT_EQ(ops.api_is_captive_portal_capable(), 0) << "other modules";
    write_file("/lib/modules/4.14.76/qxkk_cp.ko", "");
    EXPECT_EQ(ops.api_is_captive_portal_capable(), 1);
    ASSERT_EQ(system("cd /lib/modules/4.14.76 && rm qxkk_cp.ko && mkdir qxkk_cp.ko"), 0);
    EXPECT_EQ(ops.api_is_captive_portal_capable(), 1) << "whatever its kind";
    EXPECT_THAT(door.trace(), IsEmpty()) << "nothing is logged";
}

TEST_F(FixedOperations, ACaptivePortalIsOnUnlessItsOptionIsZeroOrMissing) {
    EXPECT_EQ(ops.api_is_captive_portal_enabled(1, 3), 0) << "no option";
    configure("wireless.wifi1vap3.captive_portal", "0");
    EXPECT_EQ(ops.api_is_captive_portal_enabled(1, 3), 0);
    configure("wireless.wifi1vap3.captive_portal", "1");
    EXPECT_EQ(ops.api_is_captive_portal_enabled(1, 3), 1);
    for (const char* other : {"whatever", "00", "0x", "no"}) {
        configure("wireless.wifi1vap3.captive_portal", other);
        EXPECT_EQ(ops.api_is_captive_portal_enabled(1, 3), 1) << other;
    }
    EXPECT_EQ(ops.api_is_captive_portal_enabled(0, 3), 0) << "another VAP";
    EXPECT_EQ(stderr_of([&] { ops.api_is_captive_portal_enabled(INT_MIN, INT_MIN); }),
              "uciGetValue (111): Failed to lookup value: "
              "wireless.wifi-2147483648vap-2147483648.captive_portal\n")
        << "no such VAP";
    EXPECT_THAT(door.trace(), IsEmpty()) << "nothing is logged";
}

} // namespace orlo::test
