// SPDX-License-Identifier: MIT
// Firmware: checking an image, installing it, and whether an installation is flagged.
#include "support/access_point.h"

#include <cstdlib>
#include <sys/wait.h>
#include <unistd.h>

namespace orlo::test {

namespace {

// A tool that ends the shell that runs it, so that there is no exit code.
constexpr const char* kill_the_shell = "kill -KILL $PPID";

} // namespace

class FirmwareImage : public AccessPoint {
protected:
    const std::string own_ = "log api_fw_validate: ";
    const std::string check_ = "run /usr/bin/qxcommand -check firmware=";
    const std::string image_ = "/tmp/firmware.bin";
};

TEST_F(FirmwareImage, IsValidWhenTheCheckerSaysSo) {
    write_file(image_, "\x27\x05\x19\x56 and its content");
    EXPECT_EQ(ops.api_fw_validate(image_.c_str()), 0);
    EXPECT_THAT(door.trace(), ElementsAre(own_ + "Entering... path:" + image_, check_ + image_,
                                          own_ + "End... return: Success"));
    EXPECT_THAT(journal(), ElementsAre("qxcommand -check firmware=/tmp/firmware.bin"));
}

TEST_F(FirmwareImage, IsInvalidWhateverElseBecomesOfTheChecker) {
    write_file(image_, "something else");
    EXPECT_EQ(ops.api_fw_validate(image_.c_str()), -1) << "which ends with 1";
    EXPECT_THAT(door.trace(), ElementsAre(own_ + "Entering... path:" + image_, check_ + image_,
                                          own_ + "End... return: Fail"));
    replace_tool("qxcommand", kill_the_shell);
    EXPECT_EQ(ops.api_fw_validate(image_.c_str()), -1);
    replace_tool("qxcommand", "exit 0");
    EXPECT_EQ(ops.api_fw_validate(image_.c_str()), 0);
    door.fail(Call::system);
    EXPECT_EQ(ops.api_fw_validate(image_.c_str()), -1);
    EXPECT_EQ(door.trace().back(), own_ + "End... return: Fail");
}

TEST_F(FirmwareImage, NeedsAPath) {
    EXPECT_EQ(ops.api_fw_validate(nullptr), -1);
    EXPECT_THAT(door.trace(), ElementsAre(own_ + "Firmware path is NULL"));
}

TEST_F(FirmwareImage, HasAPathOf28CharactersForTheChecker) {
    const std::string path = "/tmp/" + std::string(23, 'a');
    ops.api_fw_validate(path.c_str());
    ops.api_fw_validate((path + "bcd").c_str());
    EXPECT_THAT(door.trace({"run"}), ElementsAre(check_ + path, check_ + path));
    EXPECT_EQ(door.trace({"log"})[2], own_ + "Entering... path:" + path + "bcd");
}

TEST_F(FirmwareImage, HasAPathThatTheShellReads) {
    ops.api_fw_validate("a b;echo $HOME");
    EXPECT_THAT(journal(), ElementsAre("qxcommand -check firmware=a b"));
}

class FirmwareFlag : public AccessPoint {
protected:
    int flagged(const std::string& nvram) {
        write_file("/var/run/device/nvram", nvram);
        door.forget();
        return ops.api_get_fwupgrade_status();
    }

    const std::string own_ = "log api_get_fwupgrade_status: ";
    const std::string query_ = "read fw_printnvram | grep \"orlo_fwup_flag\" | cut -d '=' -f 2";
};

TEST_F(FirmwareFlag, IsUpWhenItsValueBeginsWithOne) {
    EXPECT_EQ(flagged("serial=1\norlo_fwup_flag=1\n"), 1);
    EXPECT_THAT(door.trace(),
                ElementsAre(own_ + "Enter .... ", query_, own_ + "End .... orlo_fwup_flag = 1 "));
    EXPECT_EQ(flagged("orlo_fwup_flag=1000000 and more\n"), 1);
    EXPECT_EQ(flagged("orlo_fwup_flag=1"), 1);
}

TEST_F(FirmwareFlag, IsDownForAnyOtherValue) {
    for (const char* value : {"0", "01", "yes", " 1", "-1", "2"}) {
        EXPECT_EQ(flagged(std::string("orlo_fwup_flag=") + value + "\n"), 0) << value;
        EXPECT_EQ(door.trace().back(), own_ + "End .... orlo_fwup_flag = " + value[0] + " ");
    }
}

TEST_F(FirmwareFlag, IsDownWhenThereIsNoneAndShownAsANul) {
    EXPECT_EQ(flagged("serial=1\n"), 0);
    EXPECT_EQ(door.trace().back(), own_ + "End .... orlo_fwup_flag =  (no line end)");
    EXPECT_EQ(flagged(""), 0);
}

TEST_F(FirmwareFlag, OfSeveralTheFirstCounts) {
    EXPECT_EQ(flagged("orlo_fwup_flag_old=0\norlo_fwup_flag=1\n"), 0);
}

TEST_F(FirmwareFlag, IsUnknownWhenItCannotBeAskedFor) {
    door.fail(Call::popen);
    EXPECT_EQ(flagged("orlo_fwup_flag=1\n"), -1);
    EXPECT_THAT(door.trace(), ElementsAre(own_ + "Enter .... ", query_ + " (failed)"));
}

class FirmwareUpgrade : public AccessPoint {
protected:
    static std::string reminder(const std::string& path) {
        return "run sleep 20; /bin/ubus call orloagent fwupgrade '{\"id\":1, \"msg\":\"" + path +
               "\"}'";
    }

    const std::string own_ = "log api_fw_upgrade: ";
    const std::string keep_ = "run echo \"/etc/ap_fwupgrade\" >> /etc/sysupgrade.conf; sync";
};

TEST_F(FirmwareUpgrade, IsLeftToTheAgentTwentySecondsLater) {
    const std::string list = read_file("/etc/sysupgrade.conf");
    EXPECT_EQ(ops.api_fw_upgrade("/tmp/firmware.bin"), 0);
    EXPECT_THAT(door.trace(), ElementsAre(own_ + "Entering... path:/tmp/firmware.bin", "fork",
                                          keep_, own_ + "End... parent return: Success"));
    EXPECT_EQ(read_file("/etc/sysupgrade.conf"), list + "/etc/ap_fwupgrade\n");

    const Child child = door.child();
    EXPECT_EQ(child.status, 0);
    EXPECT_THAT(child.trace,
                ElementsAre(reminder("/tmp/firmware.bin"), own_ + "End... child process: Success"));
    EXPECT_THAT(journal(), testing::IsSupersetOf({"sync", "sleep 20",
                                                  "ubus call orloagent fwupgrade "
                                                  "'{\"id\":1, \"msg\":\"/tmp/firmware.bin\"}'"}));
    EXPECT_EQ(read_file("/var/run/device/agent"), "fwupgrade=/tmp/firmware.bin\n");
}

TEST_F(FirmwareUpgrade, ReturnsWhileTheChildStillWaits) {
    ASSERT_EQ(system("mkfifo /tmp/gate"), 0);
    replace_tool("sleep", "read -r go </tmp/gate");
    EXPECT_EQ(ops.api_fw_upgrade("/tmp/firmware.bin"), 0);
    EXPECT_FALSE(exists("/var/run/device/agent")) << "the agent has not been called";
    write_file("/tmp/gate", "go\n");
    EXPECT_EQ(door.child().status, 0);
    EXPECT_TRUE(exists("/var/run/device/agent"));
}

TEST_F(FirmwareUpgrade, LeavesItsOneChildToTheAgentToReap) {
    EXPECT_EQ(ops.api_fw_upgrade("/tmp/firmware.bin"), 0);
    EXPECT_EQ(door.child().status, 0) << "nobody has";
    EXPECT_EQ(waitpid(-1, nullptr, 0), -1) << "and there is no other";
}

TEST_F(FirmwareUpgrade, HasAChildThatRunsNothingOfTheAgents) {
    static constexpr const char* handled = "/tmp/handled";
    atexit([] {
        FILE* file = fopen(handled, "a");
        if (file != nullptr) {
            fprintf(file, "%d\n", getpid());
            fclose(file);
        }
    });
    FILE* buffered = fopen("/tmp/buffered", "w");
    fputs("once\n", buffered);
    const std::string parent = std::to_string(getpid()) + "\n";

    ops.api_fw_upgrade("/tmp/firmware.bin");
    std::ignore = !system(("echo " + std::to_string(getpid()) + " >>/tmp/returned").c_str());
    EXPECT_EQ(door.child().status, 0);
    fclose(buffered);
    EXPECT_EQ(read_file("/tmp/returned"), parent) << "the child came back into the agent";
    EXPECT_FALSE(exists(handled)) << "the agent's exit handlers ran in the child";
    EXPECT_EQ(read_file("/tmp/buffered"), "once\n") << "the child wrote the agent's buffers";
}

TEST_F(FirmwareUpgrade, HasAChildThatWritesWhatItHasBufferedItself) {
    FILE* log = fopen("/tmp/log", "w");
    const pid_t parent = getpid();
    door.on_run = [&](const std::string&) -> std::optional<int> {
        if (getpid() != parent) {
            fputs("of the child\n", log);
        }
        return std::nullopt;
    };
    ops.api_fw_upgrade("/tmp/firmware.bin");
    EXPECT_EQ(door.child().status, 0);
    fclose(log);
    EXPECT_EQ(read_file("/tmp/log"), "of the child\n");
}

TEST_F(FirmwareUpgrade, HasAChildThatFailsWhenTheAgentRefuses) {
    replace_tool("ubus", "exit 7");
    EXPECT_EQ(ops.api_fw_upgrade("/tmp/firmware.bin"), 0);
    const Child child = door.child();
    EXPECT_EQ(child.status, 255);
    EXPECT_EQ(child.trace.back(), own_ + "End... child process: Fail");
}

TEST_F(FirmwareUpgrade, HasAChildThatOnlyLooksAtTheExitCode) {
    replace_tool("ubus", kill_the_shell);
    EXPECT_EQ(ops.api_fw_upgrade("/tmp/firmware.bin"), 0);
    const Child child = door.child();
    EXPECT_EQ(child.status, 0);
    EXPECT_EQ(child.trace.back(), own_ + "End... child process: Success");
}

TEST_F(FirmwareUpgrade, HasAChildThatFailsWhenItCannotStartTheCommand) {
    door.fail_always(Call::system);
    EXPECT_EQ(ops.api_fw_upgrade("/tmp/firmware.bin"), -1);
    EXPECT_THAT(door.trace(),
                ElementsAre(own_ + "Entering... path:/tmp/firmware.bin", "fork",
                            keep_ + " (failed)", own_ + "End... parent return: Fail"));
    const Child child = door.child();
    EXPECT_EQ(child.status, 255);
    EXPECT_THAT(child.trace, ElementsAre(reminder("/tmp/firmware.bin") + " (failed)",
                                         own_ + "End... child process: Fail"));
}

TEST_F(FirmwareUpgrade, FailsWithTheListOfSurvivingFilesButStaysScheduled) {
    replace_tool("sync", "exit 1");
    EXPECT_EQ(ops.api_fw_upgrade("/tmp/firmware.bin"), -1);
    EXPECT_EQ(door.trace().back(), own_ + "End... parent return: Fail");
    EXPECT_EQ(door.child().status, 0);
    EXPECT_EQ(read_file("/var/run/device/agent"), "fwupgrade=/tmp/firmware.bin\n");
    replace_tool("sync", kill_the_shell);
    EXPECT_EQ(ops.api_fw_upgrade("/tmp/firmware.bin"), 0) << "no exit code";
    door.child();
}

TEST_F(FirmwareUpgrade, NeedsAPathAndAChild) {
    EXPECT_EQ(ops.api_fw_upgrade(nullptr), -1);
    EXPECT_THAT(door.trace(), ElementsAre(own_ + "Firmware path is NULL"));
    door.forget();
    door.fail(Call::fork);
    EXPECT_EQ(ops.api_fw_upgrade("/tmp/firmware.bin"), -1);
    EXPECT_THAT(door.trace(), ElementsAre(own_ + "Entering... path:/tmp/firmware.bin",
                                          "fork (failed)", own_ + "End... Fail to fork"));
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(FirmwareUpgrade, CutsItsCommandAt255Characters) {
    const std::string longest(190, 'a');
    ops.api_fw_upgrade(longest.c_str());
    EXPECT_EQ(door.child().trace.front(), reminder(longest));
    ops.api_fw_upgrade((longest + "bcdefgh").c_str());
    const Child child = door.child();
    EXPECT_EQ(child.trace.front(), reminder(longest + "bcd").substr(0, 4 + 255));
    EXPECT_EQ(child.status, 255) << "its quote is not closed";
}

} // namespace orlo::test
