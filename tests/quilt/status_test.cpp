// SPDX-License-Identifier: MIT
// What the agent asks of the quilt: whether there is one, and its status.
#include "support/access_point.h"

#include <cstdlib>
#include <sys/stat.h>

namespace orlo::test {

using QuiltQuestions = AccessPoint;

TEST_F(QuiltQuestions, ADeviceIsCapableWithTheQuiltsVersionFile) {
    EXPECT_EQ(ops.api_is_quilt_capable(), 0);
    ASSERT_EQ(system("mkdir -p /etc/qxw"), 0);
    EXPECT_EQ(ops.api_is_quilt_capable(), 0) << "the folder alone";
    write_file("/etc/qxw/cq_version", "");
    EXPECT_EQ(ops.api_is_quilt_capable(), 1);
    for (const char* model : {"QX-R331", "QX-R33100", "qx-r3310", "QX-Rm7711", "QX-Rm3310 "}) {
        configure("system.@system[0].model", model);
        EXPECT_EQ(ops.api_is_quilt_capable(), 1) << model;
    }
    configure("system.@system[0].model", "");
    EXPECT_EQ(ops.api_is_quilt_capable(), 1) << "without a model";
    ASSERT_EQ(system("cd /etc/qxw && rm cq_version && mkdir cq_version"), 0);
    EXPECT_EQ(ops.api_is_quilt_capable(), 1) << "whatever its kind";
}

TEST_F(QuiltQuestions, ThreeModelsAreNeverCapable) {
    ASSERT_EQ(system("mkdir -p /etc/qxw && touch /etc/qxw/cq_version"), 0);
    for (const char* model : {"QX-Rm7710", "QX-R3310", "QX-Rm3310"}) {
        configure("system.@system[0].model", model);
        EXPECT_EQ(ops.api_is_quilt_capable(), 0) << model;
    }
}

TEST_F(QuiltQuestions, AnyVapOfEitherRadioMakesAQuilt) {
    EXPECT_EQ(ops.api_is_any_vap_quilt(), 0);
    for (int i = 0; i < 32; i++) {
        const std::string option =
            "wireless.wifi" + std::to_string(i / 16) + "vap" + std::to_string(i % 16) + ".mode";
        configure(option, "quilt");
        EXPECT_EQ(ops.api_is_any_vap_quilt(), 1) << option;
        configure(option, "ap");
    }
    EXPECT_EQ(ops.api_is_any_vap_quilt(), 0);
    EXPECT_THAT(door.trace(), IsEmpty()) << "nothing is logged";
}

TEST_F(QuiltQuestions, TheResponderIsPresentWithItsStartScript) {
    EXPECT_EQ(ops.api_is_responser_present(), 0);
    ASSERT_EQ(system("mkdir -p /etc/init.d"), 0);
    EXPECT_EQ(ops.api_is_responser_present(), 0);
    write_file("/etc/init.d/responser", "");
    EXPECT_EQ(ops.api_is_responser_present(), 1);
    ASSERT_EQ(system("cd /etc/init.d && rm responser && mkdir responser"), 0);
    EXPECT_EQ(ops.api_is_responser_present(), 1) << "whatever its kind";
    EXPECT_THAT(door.trace(), IsEmpty()) << "nothing is logged";
}

TEST_F(QuiltQuestions, TheScanIsOnWhenItsOptionIsTheNumberOne) {
    for (const char* on : {"1", "01", "+1", "1x", "00000001"}) {
        configure("quilt.config_quilt.cqscan", on);
        EXPECT_EQ(ops.api_is_cqscan_enabled(), 1) << on;
    }
    for (const char* off : {"0", "2", "-1", "10", "x1", "on", "000000001"}) {
        configure("quilt.config_quilt.cqscan", off);
        EXPECT_EQ(ops.api_is_cqscan_enabled(), 0) << off;
    }
    EXPECT_THAT(door.trace(), IsEmpty());
    configure("quilt.config_quilt.cqscan", "");
    EXPECT_EQ(ops.api_is_cqscan_enabled(), 0);
    EXPECT_THAT(door.trace(), ElementsAre("log 5/1 api_is_cqscan_enabled: failed to get "
                                          "quilt.cqscan"));
}

class QuiltStatus : public AccessPoint {
protected:
    QuiltStatus() { configure("wireless.wifi1vap15.mode", "quilt"); }

    int ask(int check_hash, const char* path = "/tmp/cq_status") {
        door.forget();
        return ops.api_get_CQ_status(check_hash, path);
    }

    // What the agent writes when it is asked.
    static void status_is(const std::string& text) { write_file("/var/run/device/cqstatus", text); }
};

const char* const ask_agent =
    "/bin/ubus call orloagent cqstatus '{\"statusfile\":\"/tmp/cq_status\"}'";
const char* const take_sum = "read md5sum /tmp/cq_status | sed -r 's/^(\\w*) .*/\\1/'";
const char* const no_sum =
    "log 5/1 api_get_CQ_status: Failed to get hash of /tmp/cq_status. (no line end)";
const char* const sum_of_one = "5bbf5a52328e7439ae6e719dfe712200"; // of "one\n"

TEST_F(QuiltStatus, IsWrittenByTheAgent) {
    status_is("one\n");
    for (int round = 0; round < 2; round++) {
        EXPECT_EQ(ask(0), 0) << "each time";
        EXPECT_THAT(door.trace(),
                    ElementsAre("log api_get_CQ_status: Entering...",
                                std::string("log api_get_CQ_status: cmd =[\n") + ask_agent + "\n]",
                                std::string("run ") + ask_agent,
                                "log api_get_CQ_status: End, will return 0"));
        EXPECT_EQ(read_file("/tmp/cq_status"), "one\n");
    }
    EXPECT_EQ(journal().back(),
              "ubus call orloagent cqstatus '{\"statusfile\":\"/tmp/cq_status\"}'");
}

TEST_F(QuiltStatus, IsNoneWithoutAQuilt) {
    configure("wireless.wifi1vap15.mode", "ap");
    write_file("/tmp/cq_status", "before");
    EXPECT_EQ(ask(1), -1);
    EXPECT_THAT(door.trace(), ElementsAre("log api_get_CQ_status: Entering..."));
    EXPECT_EQ(read_file("/tmp/cq_status"), "before") << "which is not touched";
    EXPECT_THAT(journal(), IsEmpty());
    configure("wireless.wifi1vap15.mode", "quilt");
    EXPECT_EQ(ask(1, nullptr), -1) << "nor without a path";
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(QuiltStatus, IsShownWhereDebugLinesAreKept) {
    status_is("shown\n");
    EXPECT_EQ(stderr_of([&] { ask(0); }), "shown\n");
    door.debug_enabled = false;
    EXPECT_EQ(stderr_of([&] { ask(0); }), "");
}

TEST_F(QuiltStatus, IsDeliveredOnceWhenItsSumIsChecked) {
    status_is("one\n");
    EXPECT_EQ(ask(1), 0);
    EXPECT_THAT(door.trace({"log", "read"}),
                ElementsAre("log api_get_CQ_status: Entering...",
                            std::string("log api_get_CQ_status: cmd =[\n") + ask_agent + "\n]",
                            take_sum,
                            std::string("log api_get_CQ_status: Check Hash: \n\n") + sum_of_one,
                            "log api_get_CQ_status: End, will return 0"));
    EXPECT_TRUE(exists("/tmp/cq_status"));
    EXPECT_EQ(ask(-1), -1);
    const Trace lines = door.trace();
    EXPECT_THAT(Trace(lines.end() - 3, lines.end()),
                ElementsAre(std::string("log api_get_CQ_status: Check Hash: \n") + sum_of_one +
                                "\n" + sum_of_one,
                            "log api_get_CQ_status: No CQ status update", "unlink /tmp/cq_status"));
    EXPECT_FALSE(exists("/tmp/cq_status"));
    EXPECT_EQ(ask(1, "/tmp/another"), -1) << "wherever it is written";
    EXPECT_FALSE(exists("/tmp/another"));
    status_is("two\n");
    EXPECT_EQ(ask(1), 0);
    status_is("one\n");
    EXPECT_EQ(ask(1), 0) << "compared with the last one only";
}

TEST_F(QuiltStatus, ThatIsNotCheckedIsNotRemembered) {
    status_is("one\n");
    EXPECT_EQ(ask(1), 0);
    status_is("two\n");
    EXPECT_EQ(ask(0), 0);
    EXPECT_EQ(ask(1), 0) << "still new";
    EXPECT_EQ(ask(0), 0) << "delivered again";
    EXPECT_TRUE(exists("/tmp/cq_status"));
}

TEST_F(QuiltStatus, ThatTheAgentDoesNotWriteHasNoSum) {
    replace_tool("ubus", "exit 4");
    EXPECT_EQ(ask(1), -1);
    EXPECT_EQ(door.trace({"log"}).back(), no_sum);
    EXPECT_EQ(door.trace().back(), "unlink /tmp/cq_status");
    EXPECT_THAT(door.trace({"log"}),
                testing::Contains(std::string("log execute_system_call: Read data from ") +
                                  (take_sum + 5) + " failed"));
    EXPECT_EQ(ask(0), 0) << "which is not noticed without a check";
    write_file("/tmp/cq_status", "of before\n");
    EXPECT_EQ(ask(1), 0) << "nor when a file is there";
}

TEST_F(QuiltStatus, WithoutASumIsTakenAway) {
    status_is("one\n");
    door.fail(Call::popen);
    EXPECT_EQ(ask(1), -1);
    EXPECT_EQ(door.trace({"log"}).back(), no_sum);
    EXPECT_EQ(door.trace().back(), "unlink /tmp/cq_status");
    EXPECT_FALSE(exists("/tmp/cq_status"));
    EXPECT_EQ(ask(1), 0) << "nothing was remembered";
}

// Longer than any sum: the agent's own folder of tools may hold another one.
TEST_F(QuiltStatus, IsToldApartByTheFirst63CharactersOfItsSum) {
    ASSERT_EQ(system("mkdir /tmp/tools"), 0);
    ASSERT_EQ(setenv("PATH", (std::string("/tmp/tools:") + getenv("PATH")).c_str(), 1), 0);
    const auto sum_is = [](const std::string& sum) {
        write_file("/tmp/tools/md5sum", "#!/bin/sh\necho '" + sum + "  name'\n");
        ASSERT_EQ(chmod("/tmp/tools/md5sum", 0755), 0);
    };
    const std::string kept(62, 's');
    sum_is(kept + "a1");
    EXPECT_EQ(ask(1), 0);
    EXPECT_THAT(door.trace(),
                testing::Contains("log api_get_CQ_status: Check Hash: \n\n" + kept + "a"));
    sum_is(kept + "a2");
    EXPECT_EQ(ask(1), -1);
    sum_is(kept + "b");
    EXPECT_EQ(ask(1), 0);
}

TEST_F(QuiltStatus, GoesOnWhenTheCommandDoesNotRun) {
    write_file("/tmp/cq_status", "of before\n");
    door.fail(Call::system);
    EXPECT_EQ(ask(1), 0);
    EXPECT_THAT(door.trace({"run"}), ElementsAre(std::string("run ") + ask_agent + " (failed)"));
}

TEST_F(QuiltStatus, AtALongPathIsFound) {
    const std::string path = "/tmp/" + std::string(240, 'x');
    status_is("one\n");
    EXPECT_EQ(ask(1, path.c_str()), 0);
    EXPECT_EQ(read_file(path), "one\n");
    EXPECT_EQ(ask(1, path.c_str()), -1);
    EXPECT_FALSE(exists(path));
}

TEST_F(QuiltStatus, AtAPathThatIsTooLongIsNotFound) {
    const std::string path = "/tmp/" + std::string(600, 'x');
    EXPECT_EQ(ask(1, path.c_str()), -1);
    EXPECT_EQ(door.trace({"run"}).front().size(), 4 + 511U) << "the command is cut";
}

} // namespace orlo::test
