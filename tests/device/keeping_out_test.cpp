// SPDX-License-Identifier: MIT
// What runs on a virtual access point cannot change the machine around it. Compared are things that
// any machine has; nothing here would do harm if it did get through.
#include "program.h"

#include <gtest/gtest.h>
#include <net/if.h>
#include <unistd.h>

using namespace orlo::test;

namespace {

std::string script_for(const std::string& path) {
    return "path=" + path + "; echo planted >$path && cat $path";
}

std::string host_name() {
    char name[256] = "";
    gethostname(name, sizeof name - 1);
    return name;
}

class KeepingOut : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        if (!is_possible(VIRTUAL_AP, GetParam())) {
            GTEST_SKIP() << "this form is not possible on this machine";
        }
    }

    Outcome on_device(const std::string& script) const {
        return run({VIRTUAL_AP, "sh", "-c", script},
                   {std::string("ORLO_VIRTUAL_AP=") + GetParam()});
    }

    bool is_namespaces() const { return GetParam() == std::string("namespaces"); }
};

TEST_P(KeepingOut, files_written_there_do_not_appear_here) {
    const std::string name = "virtual-ap-planted-" + std::to_string(getpid());
    for (const std::string folder : {"/etc/", "/tmp/", "/var/", "/"}) {
        const std::string path = folder + name;
        EXPECT_EQ(on_device(script_for(path)).out, "planted\n");
        EXPECT_NE(access(path.c_str(), F_OK), 0) << path;
    }
}

TEST_P(KeepingOut, files_of_this_machine_are_not_there) {
    char path[] = "/tmp/virtual-ap-secret-XXXXXX";
    const int file = mkstemp(path);
    ASSERT_GE(file, 0);
    close(file);
    EXPECT_EQ(on_device(std::string("ls ") + path + " 2>/dev/null").out, "");
    unlink(path);
}

TEST_P(KeepingOut, the_build_folder_can_be_read_but_not_written) {
    const std::string folder = BUILD_FOLDER;
    EXPECT_NE(on_device("echo x >" + folder + "/planted").status, 0);
    EXPECT_NE(access((folder + "/planted").c_str(), F_OK), 0);
    EXPECT_EQ(on_device("test -x " + folder + "/virtual-ap").status == 0, is_namespaces())
        << "in the chroot form it is not there at all";
}

TEST_P(KeepingOut, programs_cannot_be_written_to) {
    if (!is_namespaces()) {
        GTEST_SKIP() << "the chroot form has programs of its own instead";
    }
    for (const std::string path : {"/usr/bin/planted", "/bin/planted", "/sbin/ifconfig",
                                   "/usr/lib/planted", "/lib/planted"}) {
        const Outcome outcome = on_device("echo x >" + path);
        EXPECT_NE(outcome.status, 0) << path;
        EXPECT_NE(outcome.err.find("Read-only file system"), std::string::npos) << outcome.err;
    }
}

TEST_P(KeepingOut, a_stand_in_overwritten_in_place_stays_whole_in_the_template) {
    const std::string path = BUILD_FOLDER "/device-root/usr/sbin/iwpriv";
    const std::string before = read_file(path);
    ASSERT_NE(before, "");
    on_device("echo '# changed' >>/usr/sbin/iwpriv");
    EXPECT_EQ(read_file(path), before);
}

TEST_P(KeepingOut, the_host_name_stays) {
    const std::string before = host_name();
    on_device("hostname planted 2>/dev/null");
    EXPECT_EQ(host_name(), before);
}

TEST_P(KeepingOut, no_interface_of_this_machine_is_shown_or_changed) {
    char loopback[IF_NAMESIZE] = "";
    ASSERT_NE(if_indextoname(1, loopback), nullptr);
    const std::string flags = "/sys/class/net/" + std::string(loopback) + "/flags";
    const std::string before = read_file(flags);
    on_device(std::string("ifconfig ") + loopback + " down; ifconfig br-lan down");
    EXPECT_EQ(read_file(flags), before);
    EXPECT_EQ(on_device("ifconfig | grep -c 'Link encap'").out, "7\n");
}

TEST_P(KeepingOut, processes_of_this_machine_are_not_shown) {
    const Outcome outcome = on_device("ps");
    EXPECT_EQ(outcome.out.find("test-device"), std::string::npos) << outcome.out;
}

INSTANTIATE_TEST_SUITE_P(Forms, KeepingOut, testing::Values("namespaces", "chroot"),
                         [](const auto& form) { return std::string(form.param); });

} // namespace
