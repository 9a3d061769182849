// SPDX-License-Identifier: MIT
// The script that makes a saved configuration effective.
#include "program.h"

#include <gtest/gtest.h>
#include <unistd.h>

using namespace orlo::test;

namespace {

constexpr char script[] = "/usr/bin/orloagent_apply_settings.sh ";
constexpr char marker[] = "/tmp/orlo_network_restarting";

bool is_up(const std::string& interface) {
    return shell("grep -q '^" + interface + " up ' /var/run/device/interfaces").status == 0;
}

class Restart : public testing::Test {
protected:
    void SetUp() override {
        if (access("/usr/bin/uci", X_OK) != 0) {
            GTEST_SKIP() << "the device has no uci command in this build";
        }
        unlink("/var/log/journal");
        unlink("/var/log/messages");
    }

    /// Exchanges one option of the committed configuration.
    static void configure(const std::string& section, const std::string& disabled) {
        const Outcome outcome =
            shell("sed -i \"/config .* '" + section + "'/,/disabled/ " +
                  "s/disabled '.*'/disabled '" + disabled + "'/\" " + "/etc/config/wireless");
        ASSERT_EQ(outcome.status, 0) << outcome.err;
    }
};

TEST_F(Restart, of_the_network_brings_enabled_vaps_up_and_others_down) {
    configure("wifi0vap0", "1");
    configure("wifi1vap3", "0");
    write_file(marker, "");
    const Outcome outcome = shell(std::string(script) + "network-5 snmp-0");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_FALSE(is_up("wdev0ap0"));
    EXPECT_TRUE(is_up("wdev1ap0"));
    EXPECT_TRUE(is_up("wdev1ap3"));
    EXPECT_FALSE(is_up("wdev1ap4"));
    EXPECT_NE(access(marker, F_OK), 0);
    EXPECT_EQ(read_file("/var/log/journal"), "orloagent_apply_settings.sh network-5 snmp-0\n");
}

TEST_F(Restart, leaves_the_vaps_of_a_disabled_radio_down) {
    configure("wifi1", "1");
    shell(std::string(script) + "network-5");
    EXPECT_TRUE(is_up("wdev0ap0"));
    EXPECT_FALSE(is_up("wdev1ap0"));
}

TEST_F(Restart, of_other_services_touches_neither_vaps_nor_the_marker) {
    configure("wifi0vap0", "1");
    write_file(marker, "");
    shell(std::string(script) + "ntp-0 led-0");
    EXPECT_TRUE(is_up("wdev0ap0"));
    EXPECT_EQ(access(marker, F_OK), 0);
    EXPECT_EQ(read_file("/var/log/messages"), "orloagent_apply_settings.sh: restarting ntp\n"
                                              "orloagent_apply_settings.sh: restarting led\n"
                                              "orloagent_apply_settings.sh: done\n");
}

TEST_F(Restart, is_over_when_the_marker_has_gone) {
    configure("wifi1vap3", "0");
    write_file(marker, "");
    shell(std::string(script) + "network-5 >/dev/null 2>&1 &");
    for (int i = 0; i < 2000 && access(marker, F_OK) == 0; i++) {
        usleep(5000);
    }
    EXPECT_NE(access(marker, F_OK), 0);
    EXPECT_TRUE(is_up("wdev1ap3"));
    EXPECT_EQ(read_file("/var/log/messages"), "orloagent_apply_settings.sh: restarting network\n"
                                              "orloagent_apply_settings.sh: done\n");
}

} // namespace
