// SPDX-License-Identifier: MIT
// Running commands and looking at what became of them.
#include "common/command.h"

#include "support/access_point.h"

#include <cstdio>
#include <sys/wait.h>

namespace orlo::test {

TEST(ExitCode, IsInTheSecondByteOfAWaitStatus) {
    EXPECT_EQ(exit_code(0), 0);
    EXPECT_EQ(exit_code(3 << 8), 3);
    EXPECT_EQ(exit_code(0xFF00), 255);
    EXPECT_EQ(exit_code(9), 0) << "ended by a signal";
    EXPECT_EQ(exit_code(0x7B0305), 3);
    EXPECT_EQ(exit_code(-1), 255) << "could not be started";
}

using Running = AccessPoint;

TEST_F(Running, LogsOnlyACommandThatCannotBeStarted) {
    EXPECT_EQ(run_logged("op", "exit 3"), 3 << 8);
    EXPECT_EQ(run_logged("op", "kill -KILL $$"), 9);
    EXPECT_THAT(door.trace({"log"}), IsEmpty());
    door.fail(Call::system);
    EXPECT_EQ(run_logged("op", "true %s"), -1);
    EXPECT_THAT(door.trace({"log"}), ElementsAre("log op: Execute system call 'true %s' failed"));
}

TEST_F(Running, LeavesNeitherADescriptorNorAProcess) {
    const int next = next_descriptor();
    {
        CommandOutput output("echo first; echo second");
        char line[16];
        EXPECT_TRUE(output.read_line(line, sizeof line));
        CommandOutput closed("exit 1");
        EXPECT_TRUE(closed.printed_nothing());
        closed.close();
    }
    for (const char* command : {"echo first; echo second", "exit 1"}) {
        char text[32] = {};
        snprintf(text, sizeof text, "%s", command);
        replace_by_output(text, sizeof text);
        execute_system_call(command, text, sizeof text, 1);
    }
    EXPECT_EQ(next_descriptor(), next);
    EXPECT_EQ(waitpid(-1, nullptr, 0), -1) << "every command has been waited for";
}

TEST_F(Running, StrictlyTellsEveryEnd) {
    EXPECT_EQ(run_strictly("op", "true"), 0);
    EXPECT_EQ(run_strictly("op", "exit 200"), -1);
    EXPECT_EQ(run_strictly("op", "kill -KILL $$"), -1);
    door.fail(Call::system);
    EXPECT_EQ(run_strictly("op", "true"), -1);
    EXPECT_THAT(door.trace(),
                ElementsAre("run true", "log op: Run system command successful", "run exit 200",
                            "log op: Run system command fail and exit code is 200",
                            "run kill -KILL $$",
                            "log op: System command already exit, exit status = 9",
                            "run true (failed)", "log op: System command error"));
}

TEST_F(Running, StrictlyShowsTheWholeStatusOfACommandThatASignalEnded) {
    constexpr int with_core_dump = 0x86;
    door.on_run = [](const std::string&) { return with_core_dump; };
    EXPECT_EQ(run_strictly("op", "true"), -1);
    EXPECT_THAT(door.trace({"log"}),
                ElementsAre("log op: System command already exit, exit status = 134"));
}

} // namespace orlo::test
