// SPDX-License-Identifier: MIT
// Rebooting on behalf of the agent.
#include "support/access_point.h"

#include <sys/stat.h>

namespace orlo::test {

class Reboot : public AccessPoint {
protected:
    static constexpr const char* marker = "/etc/ap_reboot";
    const std::string own_ = "log api_system_reboot: ";
};

TEST_F(Reboot, LeavesItsMarkRotatesTheLogsAndRunsTheScript) {
    write_file("/var/log/messages", "before\n");
    EXPECT_EQ(ops.api_system_reboot(), 0);
    EXPECT_THAT(door.trace(),
                ElementsAre(own_ + "Entering...", own_ + "Create /etc/ap_reboot success.",
                            own_ + "Starting to reboot AP.", "run /sbin/scinfo-logrotate.sh FORCE",
                            "run /usr/bin/orloagent_system_reboot.sh"));
    EXPECT_THAT(journal(), ElementsAre("scinfo-logrotate.sh FORCE", "orloagent_system_reboot.sh",
                                       "sync", "reboot"));
    EXPECT_TRUE(exists(marker));
    EXPECT_EQ(read_file("/var/log/messages.1"), "before\n");
}

TEST_F(Reboot, EmptiesAMarkThatIsThere) {
    write_file(marker, "left over");
    EXPECT_EQ(ops.api_system_reboot(), 0);
    EXPECT_EQ(read_file(marker), "");
    EXPECT_TRUE(exists(marker));
}

TEST_F(Reboot, LeavesNoFileOpen) {
    const int next = next_descriptor();
    ops.api_system_reboot();
    EXPECT_EQ(next_descriptor(), next);
}

TEST_F(Reboot, WithoutItsMarkThereIsNone) {
    ASSERT_EQ(mkdir(marker, 0755), 0);
    EXPECT_EQ(ops.api_system_reboot(), 0);
    EXPECT_THAT(door.trace(),
                ElementsAre(own_ + "Entering...", own_ + "error: Create /etc/ap_reboot fail."));
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(Reboot, GoesOnWithoutALogRotation) {
    door.fail(Call::fopen, 2);
    EXPECT_EQ(ops.api_system_reboot(), 0);
    EXPECT_THAT(door.trace({"run"}), ElementsAre("run /usr/bin/orloagent_system_reboot.sh"));
    EXPECT_THAT(journal(), ElementsAre("orloagent_system_reboot.sh", "sync", "reboot"));
}

TEST_F(Reboot, HasTheLogsRotatedBeforeTheScriptRuns) {
    replace_tool("scinfo-logrotate.sh", "exit 3");
    EXPECT_EQ(ops.api_system_reboot(), 0);
    EXPECT_THAT(journal(), ElementsAre("scinfo-logrotate.sh FORCE", "orloagent_system_reboot.sh",
                                       "sync", "reboot"))
        << "its failure changes nothing";
}

TEST_F(Reboot, DoesNotLookAtWhatBecomesOfItsCommands) {
    door.fail_always(Call::system);
    EXPECT_EQ(ops.api_system_reboot(), 0);
    EXPECT_THAT(door.trace({"run"}),
                ElementsAre("run /sbin/scinfo-logrotate.sh FORCE (failed)",
                            "run /usr/bin/orloagent_system_reboot.sh (failed)"));
    EXPECT_EQ(door.trace({"log"}).back(), own_ + "Starting to reboot AP.");
}

} // namespace orlo::test
