// SPDX-License-Identifier: MIT
// Entering and leaving a virtual access point, seen from outside through its launcher.
#include "program.h"

#include <chrono>
#include <dirent.h>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <pty.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace orlo::test;

namespace {

/// The folder of the instance that a launcher uses in the chroot form; empty when there is none.
std::string instance_of(pid_t launcher) {
    const std::string start = "virtual-ap-" + std::to_string(launcher) + "-";
    for (const std::string place : {BUILD_FOLDER, "/dev/shm", "/tmp"}) {
        const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir(place.c_str()), closedir);
        while (const dirent* entry = folder ? readdir(folder.get()) : nullptr) {
            if (std::string(entry->d_name).rfind(start, 0) == 0) {
                return place + "/" + entry->d_name;
            }
        }
    }
    return "";
}

bool soon(const std::function<bool()>& condition) {
    for (int i = 0; i < 200; i++) {
        if (condition()) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

class Entering : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        if (!is_possible(VIRTUAL_AP, GetParam())) {
            GTEST_SKIP() << "this form is not possible on this machine";
        }
    }

    std::vector<std::string> settings() const {
        return {std::string("ORLO_VIRTUAL_AP=") + GetParam()};
    }

    static std::vector<std::string> launch(std::vector<std::string> command) {
        command.insert(command.begin(), {VIRTUAL_AP, "--"});
        return command;
    }

    Outcome on_device(const std::string& script) const {
        return run(launch({"sh", "-c", script}), settings());
    }
};

TEST_P(Entering, a_command_runs_on_an_access_point_of_the_chosen_form) {
    const Outcome outcome = on_device("cat /etc/virtual-ap; id -u; pwd");
    EXPECT_EQ(outcome.out, std::string(GetParam()) + "\n0\n/\n");
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
}

TEST_P(Entering, the_exit_status_of_the_command_is_handed_on) {
    EXPECT_EQ(on_device("exit 7").status, 7);
}

TEST_P(Entering, a_command_that_dies_of_a_signal_ends_with_128_more) {
    EXPECT_EQ(on_device("kill -SEGV $$").status, 128 + SIGSEGV);
    EXPECT_EQ(on_device("kill -KILL $$").status, 128 + SIGKILL);
}

TEST_P(Entering, an_unknown_command_ends_with_127) {
    const Outcome outcome = run(launch({"no-such-tool"}), settings());
    EXPECT_EQ(outcome.status, 127);
    EXPECT_EQ(outcome.err, "virtual-ap: no-such-tool: No such file or directory\n");
}

TEST_P(Entering, a_signal_sent_to_the_launcher_reaches_the_command) {
    Program program(launch({"sh", "-c",
                            "trap 'echo asked to end; exit 5' TERM; echo ready;"
                            "while :; do usleep 1000; done"}),
                    settings());
    ASSERT_EQ(program.read_line(), "ready");
    program.send(SIGTERM);
    const Outcome outcome = program.finish();
    EXPECT_EQ(outcome.out, "asked to end\n");
    EXPECT_EQ(outcome.status, 5);
}

TEST_P(Entering, a_command_that_the_signal_kills_ends_the_launcher_too) {
    Program program(launch({"sh", "-c", "echo ready; read line"}), settings());
    ASSERT_EQ(program.read_line(), "ready");
    program.send(SIGTERM);
    // The shell's input stays open: only the signal can have ended it.
    EXPECT_TRUE(soon([&] { return program.has_ended(); }));
    EXPECT_EQ(program.finish().status, 128 + SIGTERM);
}

TEST_P(Entering, background_programs_do_not_outlive_the_command) {
    // finish() reads until every writer has gone, so a survivor would hold it for a minute.
    const auto start = std::chrono::steady_clock::now();
    const Outcome outcome = on_device("setsid usleep 60000000 & (usleep 60000000 &) ; echo gone");
    EXPECT_EQ(outcome.out, "gone\n");
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST_P(Entering, nothing_is_left_when_the_command_has_ended) {
    Program program(
        launch({"sh", "-c", "mkdir -p /tmp/a/b; echo x >/tmp/a/b/c; echo ready; read l"}),
        settings());
    ASSERT_EQ(program.read_line(), "ready");
    const bool on_disk = !instance_of(program.id()).empty();
    EXPECT_EQ(on_disk, GetParam() == std::string("chroot"));
    const pid_t launcher = program.id();
    EXPECT_EQ(program.finish().status, 1);
    EXPECT_EQ(instance_of(launcher), "");
}

TEST_P(Entering, nothing_is_left_when_the_launcher_is_killed) {
    Program program(launch({"sh", "-c", "usleep 60000000 & echo ready; usleep 60000000"}),
                    settings());
    ASSERT_EQ(program.read_line(), "ready");
    const pid_t launcher = program.id();
    program.send(SIGKILL);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(program.finish().status, 128 + SIGKILL);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
    EXPECT_TRUE(soon([&] { return instance_of(launcher).empty(); }));
}

TEST_P(Entering, nothing_is_left_when_the_whole_process_group_is_killed) {
    Program program(launch({"sh", "-c", "usleep 60000000 & echo ready; usleep 60000000"}),
                    settings(), Group::Own);
    ASSERT_EQ(program.read_line(), "ready");
    const pid_t launcher = program.id();
    kill(-launcher, SIGKILL);
    EXPECT_EQ(program.finish().status, 128 + SIGKILL);
    EXPECT_TRUE(soon([&] { return instance_of(launcher).empty(); }));
}

TEST_P(Entering, what_a_lost_keeper_leaves_goes_with_the_next_entry) {
    Program program(launch({"sh", "-c", "echo ready; exec usleep 60000000"}), settings());
    ASSERT_EQ(program.read_line(), "ready");
    const std::string id = std::to_string(program.id());
    const std::string keeper = read_file("/proc/" + id + "/task/" + id + "/children");
    if (keeper.empty()) {
        GTEST_SKIP() << "this kernel does not tell the children of a process";
    }
    const pid_t launcher = program.id();
    kill(std::stoi(keeper), SIGKILL);
    EXPECT_EQ(program.finish().status, 128 + SIGKILL);
    on_device("true");
    EXPECT_EQ(instance_of(launcher), "");
}

TEST_P(Entering, each_command_gets_a_fresh_access_point) {
    EXPECT_EQ(on_device("echo other >/etc/config/wireless").status, 0);
    EXPECT_NE(on_device("cat /etc/config/wireless").out, "other\n");
}

TEST_P(Entering, two_access_points_at_a_time_do_not_see_each_other) {
    Program first(launch({"sh", "-c", "echo first >/tmp/name; echo ready; read l; cat /tmp/name"}),
                  settings());
    ASSERT_EQ(first.read_line(), "ready");
    EXPECT_EQ(on_device("cat /tmp/name 2>/dev/null; echo second >/tmp/name").out, "");
    first.write("go on\n");
    EXPECT_EQ(first.finish().out, "first\n");
}

TEST_P(Entering, the_shell_reads_a_script_from_its_input) {
    Program program({VIRTUAL_AP}, settings());
    program.write("echo $((6 * 7))\nexit 3\n");
    const Outcome outcome = program.finish();
    EXPECT_EQ(outcome.out, "42\n");
    EXPECT_EQ(outcome.status, 3);
}

TEST_P(Entering, a_terminal_gets_a_welcome_and_a_prompt) {
    int terminal = -1;
    const pid_t launcher = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (launcher == 0) {
        setenv("ORLO_VIRTUAL_AP", GetParam(), 1);
        execl(VIRTUAL_AP, VIRTUAL_AP, nullptr);
        _exit(126);
    }
    ASSERT_GT(launcher, 0);
    ASSERT_EQ(write(terminal, "exit 9\n", 7), 7);
    std::string shown;
    char buffer[256];
    ssize_t got = 0;
    while ((got = read(terminal, buffer, sizeof buffer)) > 0) {
        shown.append(buffer, static_cast<size_t>(got));
    }
    close(terminal);
    int status = 0;
    waitpid(launcher, &status, 0);
    EXPECT_NE(shown.find("This is a virtual access point."), std::string::npos) << shown;
    EXPECT_NE(shown.find("ap# "), std::string::npos) << shown;
    EXPECT_EQ(WEXITSTATUS(status), 9);
}

TEST_P(Entering, the_journal_is_printed_after_the_command) {
    const Outcome outcome = run({VIRTUAL_AP, "--journal", "sh", "-c",
                                 "iwpriv wdev1 setcmd 'radiomode 1 106'; echo out; sync; exit 4"},
                                settings());
    EXPECT_EQ(outcome.out, "out\niwpriv wdev1 setcmd 'radiomode 1 106'\nsync\n");
    EXPECT_EQ(outcome.status, 4);
}

INSTANTIATE_TEST_SUITE_P(Forms, Entering, testing::Values("namespaces", "chroot"),
                         [](const auto& form) { return std::string(form.param); });

TEST(Launcher, help_tells_how_to_use_it) {
    const Outcome outcome = run({VIRTUAL_AP, "--help"});
    EXPECT_EQ(outcome.out.rfind("usage: virtual-ap", 0), 0U);
    EXPECT_EQ(outcome.status, 0);
}

TEST(Launcher, an_unknown_option_is_a_usage_error) {
    const Outcome outcome = run({VIRTUAL_AP, "--jounral"});
    EXPECT_EQ(outcome.err.rfind("virtual-ap: unknown option --jounral\n", 0), 0U);
    EXPECT_EQ(outcome.status, 2);
}

TEST(Launcher, an_unknown_form_is_named) {
    const Outcome outcome = run({VIRTUAL_AP, "true"}, {"ORLO_VIRTUAL_AP=jail"});
    EXPECT_EQ(outcome.err, "cannot enter the virtual access point: ORLO_VIRTUAL_AP is \"jail\", "
                           "not \"namespaces\" or \"chroot\"\n");
    EXPECT_EQ(outcome.status, 2);
}

TEST(Launcher, without_namespaces_root_gets_the_chroot_form) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can";
    }
    const Outcome outcome = run({WITHOUT_NAMESPACES, VIRTUAL_AP, "cat", "/etc/virtual-ap"});
    EXPECT_EQ(outcome.out, "chroot\n");
    EXPECT_EQ(outcome.err, "");
}

TEST(Launcher, where_neither_form_is_possible_both_causes_are_named) {
    const Outcome outcome = run({WITHOUT_NAMESPACES, "--no-chroot", VIRTUAL_AP, "true"});
    EXPECT_EQ(outcome.err,
              "cannot enter the virtual access point: no user namespaces (unshare: Operation not "
              "permitted) and no chroot (chroot: Operation not permitted); run it as root, or let "
              "ordinary users create user namespaces\n");
    EXPECT_EQ(outcome.status, 77);
}

} // namespace
