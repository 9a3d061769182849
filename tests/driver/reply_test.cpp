// SPDX-License-Identifier: MIT
// Reading a reply of the driver by offset.
#include "driver/reply.h"

#include "support/access_point.h"

namespace orlo::test {

using DriverReply = AccessPoint;

TEST_F(DriverReply, HasNumbersWithTheLowestByteFirst) {
    const unsigned char bytes[] = {0x10, 0x01, 0x02, 0x03, 0xF4};
    const Reply reply(bytes, sizeof bytes);
    EXPECT_EQ(reply.byte(4), 0xF4);
    EXPECT_EQ(reply.number(1), 0xF4030201U);
    EXPECT_EQ(reply.from(1).number(0), 0xF4030201U);
}

TEST_F(DriverReply, IsZeroBeyondItsEnd) {
    const auto bytes = std::make_unique<unsigned char[]>(3);
    bytes[0] = 0x0A;
    bytes[1] = 0x0B;
    bytes[2] = 0x0C;
    const Reply reply(bytes.get(), 3);
    EXPECT_EQ(reply.byte(3), 0);
    EXPECT_EQ(reply.byte(SIZE_MAX), 0);
    EXPECT_EQ(reply.number(0), 0x000C0B0AU);
    EXPECT_EQ(reply.number(2), 0x0000000CU);
    EXPECT_EQ(reply.number(100), 0U);
    EXPECT_EQ(reply.from(2).number(0), 0x0000000CU);
    EXPECT_EQ(reply.from(3).number(0), 0U);
    EXPECT_EQ(reply.from(1000).byte(0), 0);
    uint8_t copied[3] = {1, 1, 1};
    reply.copy(1, &copied);
    EXPECT_THAT(copied, ElementsAre(0x0B, 0x0C, 0));
    EXPECT_FALSE(reply.has_magic());
}

} // namespace orlo::test
