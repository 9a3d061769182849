// SPDX-License-Identifier: MIT
// Running a command and taking its first line.
#include "common/command.h"

#include "support/access_point.h"

namespace orlo::test {

class FirstLine : public AccessPoint {
protected:
    // What a buffer full of '#' holds after the call.
    std::string line_of(const std::string& command, int room, int strip) {
        char out[2100];
        memset(out, '#', sizeof out);
        result_ = execute_system_call(command.c_str(), out, room, strip);
        const std::string text(out, sizeof out);
        return text.substr(0, text.find_last_not_of('#') + 1);
    }

    int result_ = 1;
};

TEST_F(FirstLine, IsCopiedWithTheNulThatReplacesItsLineEnd) {
    EXPECT_EQ(line_of("echo 6; echo 7", 8, 1), std::string("6\0", 2));
    EXPECT_EQ(result_, 0);
}

TEST_F(FirstLine, IsCopiedAsItIsWithoutStripping) {
    EXPECT_EQ(line_of("echo 6", 8, 0), "6\n") << "and no terminator is added";
    EXPECT_EQ(line_of("printf 6", 8, 0), "6");
}

TEST_F(FirstLine, LosesItsLastCharacterWhateverItIs) {
    EXPECT_EQ(line_of("printf 6", 8, 1), std::string("\0", 1));
    EXPECT_EQ(line_of("printf 67", 8, 1), std::string("6\0", 2));
}

TEST_F(FirstLine, IsCutWithAWarningOnlyWhenItIsLongerThanItsBuffer) {
    EXPECT_EQ(line_of("echo 1234567", 8, 1), std::string("1234567\0", 8));
    EXPECT_THAT(door.trace({"log"}), IsEmpty()) << "as long as its buffer";
    EXPECT_EQ(line_of("echo 12345678", 8, 1), "1234567");
    EXPECT_THAT(door.trace({"log"}), ElementsAre("log execute_system_call: Warning! Result will be "
                                                 "cut due to not enough space"));
    EXPECT_EQ(result_, 0);
}

TEST_F(FirstLine, IsReadUpTo511Characters) {
    EXPECT_EQ(line_of("printf '%0600d' 0", 2000, 0), std::string(511, '0'));
}

TEST_F(FirstLine, NeedsNoBuffer) {
    for (int room : {1, 0, -1, -2147483647 - 1}) {
        door.forget();
        EXPECT_EQ(line_of("echo 123", room, 1), "") << room;
        EXPECT_EQ(result_, 0);
        EXPECT_THAT(door.trace({"log"}), testing::SizeIs(1)) << "the cut is noted";
    }
    EXPECT_EQ(execute_system_call("echo 123", nullptr, 8, 1), 0);
}

TEST_F(FirstLine, OfACommandThatPrintsNothingOrDoesNotStartFails) {
    EXPECT_EQ(line_of("exit 3", 8, 1), "");
    EXPECT_EQ(result_, -1);
    door.fail(Call::popen);
    EXPECT_EQ(line_of("echo 6", 8, 1), "");
    EXPECT_EQ(result_, -1);
    EXPECT_THAT(door.trace({"log"}),
                ElementsAre("log execute_system_call: Read data from exit 3 failed",
                            "log execute_system_call: Execute echo 6 failed"));
}

} // namespace orlo::test
