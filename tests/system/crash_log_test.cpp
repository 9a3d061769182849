// SPDX-License-Identifier: MIT
// Crash logs and the support archive.
#include "support/access_point.h"

#include <sys/stat.h>
#include <unistd.h>

namespace orlo::test {

using CrashLog = AccessPoint;

TEST_F(CrashLog, IsCleanedWithEverythingBesideIt) {
    write_file("/flash/crash/exception.log", "x");
    ASSERT_EQ(system("mkdir -p /flash/crash/older; touch /flash/crash/older/a /flash/kept"), 0);
    EXPECT_EQ(ops.api_clean_crashlog(), 0);
    EXPECT_THAT(door.trace(), ElementsAre("log api_clean_crashlog: Entering",
                                          "run rm -rf /flash/crash/* > /dev/null",
                                          "log api_clean_crashlog: End..."));
    EXPECT_NE(rmdir("/flash"), 0);
    EXPECT_TRUE(exists("/flash/kept"));
    EXPECT_EQ(rmdir("/flash/crash"), 0) << "it is empty";
}

TEST_F(CrashLog, CountsAsCleanedWhateverBecomesOfTheCommand) {
    door.fail(Call::system);
    EXPECT_EQ(ops.api_clean_crashlog(), 0);
    EXPECT_THAT(door.trace(), ElementsAre("log api_clean_crashlog: Entering",
                                          "run rm -rf /flash/crash/* > /dev/null (failed)",
                                          "log api_clean_crashlog: End..."));
}

TEST_F(CrashLog, IsThereWhateverItsKind) {
    EXPECT_EQ(ops.api_check_crashlog(), 0);
    write_file("/flash/crash/exception.log", "");
    EXPECT_EQ(ops.api_check_crashlog(), 1);
    ASSERT_EQ(unlink("/flash/crash/exception.log"), 0);
    ASSERT_EQ(mkdir("/flash/crash/exception.log", 0755), 0);
    EXPECT_EQ(ops.api_check_crashlog(), 1);
    EXPECT_THAT(
        door.trace(),
        ElementsAre("log api_check_crashlog: Entering", "log api_check_crashlog: End, ret = 0",
                    "log api_check_crashlog: Entering", "log api_check_crashlog: End, ret = 1",
                    "log api_check_crashlog: Entering", "log api_check_crashlog: End, ret = 1"));
}

class SupportArchive : public AccessPoint {
protected:
    // The whole of a dump whose two steps end as told; "" stands for a step that is not run.
    void expect_trace(const std::string& archived, const std::string& encoded) {
        const bool is_archived = archived == success;
        const bool is_encoded = encoded == success;
        Trace expected = {
            "log api_dump_crash_log: Entering...",
            "log archive_tech_info_file: Entering...",
            archive_ + not_started(archived),
            "log archive_tech_info_file: " + archived,
            "log archive_tech_info_file: End... return: " + word(is_archived),
        };
        if (!encoded.empty()) {
            expected.insert(
                expected.end(),
                {"log base64_encode_tech_info_file: Entering...", encode_ + not_started(encoded),
                 "log base64_encode_tech_info_file: " + encoded,
                 "log base64_encode_tech_info_file: End... return: " + word(is_encoded)});
            if (zip_is_made_) {
                expected.push_back("unlink " + zip_);
            }
        }
        expected.push_back("log api_dump_crash_log: End... return: " +
                           word(is_archived && is_encoded));
        EXPECT_EQ(door.trace(), expected);
        door.forget();
    }

    static std::string word(bool done) { return done ? "Success" : "Fail"; }
    static std::string not_started(const std::string& message) {
        return message == error ? " (failed)" : "";
    }

    static constexpr const char* success = "Run system command successful";
    static constexpr const char* error = "System command error";
    const std::string archive_ = "run /bin/archive-tech-info.sh /tmp/tech_support_info";
    const std::string encode_ = "run /usr/bin/openssl base64 -in /tmp/tech_support_info.zip -out "
                                "/tmp/tech_support_info";
    const std::string zip_ = "/tmp/tech_support_info.zip";
    bool zip_is_made_ = true;
};

TEST_F(SupportArchive, IsMadeEncodedAndLeftToTheAgent) {
    write_file("/flash/crash/exception.log", "the crash");
    EXPECT_EQ(ops.api_dump_crash_log(), 0);
    expect_trace(success, success);
    EXPECT_THAT(journal(), ElementsAre("archive-tech-info.sh /tmp/tech_support_info"));
    EXPECT_FALSE(exists(zip_));
    ASSERT_EQ(system("base64 -d </tmp/tech_support_info >/tmp/decoded.zip && "
                     "unzip -p /tmp/decoded.zip flash/crash/exception.log >/tmp/unpacked"),
              0);
    EXPECT_EQ(read_file("/tmp/unpacked"), "the crash");
}

TEST_F(SupportArchive, IsNotEncodedWhenItCouldNotBeMade) {
    replace_tool("archive-tech-info.sh", "touch $1.zip; exit 3");
    EXPECT_EQ(ops.api_dump_crash_log(), -1);
    expect_trace("Run system command fail and exit code is 3", "");
    EXPECT_TRUE(exists(zip_)) << "nor removed";
    EXPECT_FALSE(exists("/tmp/tech_support_info"));
    replace_tool("archive-tech-info.sh", "kill -TERM $PPID");
    EXPECT_EQ(ops.api_dump_crash_log(), -1);
    expect_trace("System command already exit, exit status = 15", "");
    replace_tool("archive-tech-info.sh", "exit 255");
    EXPECT_EQ(ops.api_dump_crash_log(), -1);
    expect_trace("Run system command fail and exit code is 255", "");
    door.fail(Call::system);
    EXPECT_EQ(ops.api_dump_crash_log(), -1);
    expect_trace(error, "");
}

TEST_F(SupportArchive, IsRemovedAlsoWhenItCouldNotBeEncoded) {
    ASSERT_EQ(mkdir("/tmp/tech_support_info", 0755), 0);
    EXPECT_EQ(ops.api_dump_crash_log(), -1);
    expect_trace(success, "Run system command fail and exit code is 1");
    EXPECT_FALSE(exists(zip_));
    door.fail(Call::system, 2);
    EXPECT_EQ(ops.api_dump_crash_log(), -1);
    expect_trace(success, error);
    EXPECT_FALSE(exists(zip_));
}

TEST_F(SupportArchive, NeedNotBeThereToBeRemoved) {
    replace_tool("archive-tech-info.sh", "exit 0");
    zip_is_made_ = false;
    EXPECT_EQ(ops.api_dump_crash_log(), -1);
    expect_trace(success, "Run system command fail and exit code is 1");
}

TEST_F(SupportArchive, ThatCannotBeRemovedIsStillDone) {
    door.fail(Call::unlink);
    EXPECT_EQ(ops.api_dump_crash_log(), 0);
    EXPECT_TRUE(exists(zip_));
}

class ArchiveRunning : public AccessPoint {
protected:
    const std::string own_ = "log api_is_dump_crash_log_executing: ";
    const std::string query_ = "read ps | grep archive-tech-info.sh | grep -v grep";
};

TEST_F(ArchiveRunning, IsSeenInTheProcessList) {
    if (!exists("/proc/self/statm")) {
        GTEST_SKIP() << "this form of the access point has no process list";
    }
    ASSERT_EQ(mkfifo("/tmp/gate", 0600), 0);
    replace_tool("archive-tech-info.sh", "echo ready; read -r go </tmp/gate");
    FILE* script = popen("/bin/archive-tech-info.sh /tmp/x", "r");
    char ready[8] = {};
    ASSERT_NE(fgets(ready, sizeof ready, script), nullptr);
    EXPECT_EQ(ops.api_is_dump_crash_log_executing(), 0);
    EXPECT_THAT(door.trace(),
                ElementsAre(query_, own_ + "Entering...", own_ + "End... return: Success"));
    write_file("/tmp/gate", "go\n");
    ASSERT_EQ(pclose(script), 0);
    EXPECT_EQ(ops.api_is_dump_crash_log_executing(), -1);
}

TEST_F(ArchiveRunning, IsNotSeenOtherwise) {
    EXPECT_EQ(ops.api_is_dump_crash_log_executing(), -1);
    EXPECT_THAT(door.trace(),
                ElementsAre(query_, own_ + "Entering...", own_ + "End... return: Fail"));
}

TEST_F(ArchiveRunning, IsUnknownWhenItCannotBeAskedFor) {
    door.fail(Call::popen);
    EXPECT_EQ(ops.api_is_dump_crash_log_executing(), -1);
    EXPECT_THAT(door.trace(),
                ElementsAre(query_ + " (failed)", own_ + "Failed to execute ps command."));
}

} // namespace orlo::test
