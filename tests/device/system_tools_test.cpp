// SPDX-License-Identifier: MIT
// The tools of the system around the radios: boot loader, bus, hostapd, support archive, login.
#include "program.h"

#include <gtest/gtest.h>
#include <unistd.h>

using namespace orlo::test;

namespace {

class SystemTools : public testing::Test {
protected:
    void SetUp() override { unlink("/var/log/journal"); }

    static void set_state(const std::string& file, const std::string& text) {
        write_file("/var/run/device/" + file, text);
    }
    static std::string state(const std::string& file) {
        return read_file("/var/run/device/" + file);
    }
};

TEST_F(SystemTools, the_boot_loaders_environment_is_read_and_set) {
    set_state("environment", "ethaddr=02:00:00:00:ff:01\nempty=\n");
    EXPECT_EQ(shell("fw_printenv ethaddr | cut -d'=' -f2").out, "02:00:00:00:ff:01\n");
    EXPECT_EQ(shell("/usr/sbin/fw_setenv user_config_country_code yes").status, 0);
    EXPECT_EQ(shell("/usr/sbin/fw_printenv | grep user_config_country_code | cut -d'=' -f2").out,
              "yes\n");
    shell("fw_setenv ethaddr; fw_setenv bootcmd bootm 0x1000");
    EXPECT_EQ(shell("fw_printenv").out, "empty=\nuser_config_country_code=yes\n"
                                        "bootcmd=bootm 0x1000\n");
    const Outcome missing = shell("fw_printenv eth");
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.err, "fw_printenv: ## Error: \"eth\" not defined\n");
    EXPECT_EQ(shell("fw_setenv 'a b' c").status, 1);
    EXPECT_EQ(shell("fw_setenv").status, 1);
}

TEST_F(SystemTools, flags_that_survive_an_upgrade_are_apart_from_it) {
    set_state("nvram", "serial=7\norlo_fwup_flag=1\n");
    EXPECT_EQ(shell("fw_printnvram | grep \"orlo_fwup_flag\" | cut -d '=' -f 2").out, "1\n");
    EXPECT_NE(shell("fw_printenv orlo_fwup_flag").status, 0);
}

TEST_F(SystemTools, the_bus_knows_the_agents_methods) {
    EXPECT_EQ(shell("/bin/ubus call orloagent fwupgrade '{\"id\":1, \"msg\":\"/tmp/a b\"}'").status,
              0);
    EXPECT_EQ(shell("ubus call orloagent syncscan '{\"action\": \"start\"}'").status, 0);
    EXPECT_EQ(state("agent"), "fwupgrade=/tmp/a b\nsyncscan=start\n");
    set_state("cqstatus", "{\"members\": 3}\n");
    EXPECT_EQ(shell("ubus call orloagent cqstatus '{\"statusfile\":\"/tmp/cq\"}'").status, 0);
    EXPECT_EQ(read_file("/tmp/cq"), "{\"members\": 3}\n");
    unlink("/var/run/device/cqstatus");
    EXPECT_EQ(shell("ubus call orloagent cqstatus '{\"statusfile\":\"/tmp/cq\"}'").status, 9);
    EXPECT_EQ(read_file("/var/log/journal"),
              "ubus call orloagent fwupgrade '{\"id\":1, \"msg\":\"/tmp/a b\"}'\n"
              "ubus call orloagent syncscan '{\"action\": \"start\"}'\n"
              "ubus call orloagent cqstatus '{\"statusfile\":\"/tmp/cq\"}'\n"
              "ubus call orloagent cqstatus '{\"statusfile\":\"/tmp/cq\"}'\n");
}

TEST_F(SystemTools, the_bus_lists_and_destroys_sessions) {
    set_state("sessions", "00000000000000000000000000000000\na1\n");
    const std::string ids = "ubus call session list | grep ubus_rpc_session | awk '{print $2}' | "
                            "tr -d '\",'";
    EXPECT_EQ(shell(ids).out, "00000000000000000000000000000000\na1\n");
    const std::string destroy = "ubus call session destroy '{\"ubus_rpc_session\": \"a1\"}'";
    EXPECT_EQ(shell(destroy).status, 0);
    EXPECT_EQ(shell(ids).out, "00000000000000000000000000000000\n");
    EXPECT_EQ(shell(destroy).status, 4);
    EXPECT_EQ(shell(destroy).err, "Command failed: Not found\n");
}

TEST_F(SystemTools, the_bus_refuses_what_nobody_serves) {
    EXPECT_EQ(shell("ubus call nobody list").status, 4);
    EXPECT_EQ(shell("ubus call session login").status, 3);
    EXPECT_EQ(shell("ubus call orloagent syncscan '{\"action\": \"pause\"}'").status, 2);
    EXPECT_EQ(shell("ubus call orloagent fwupgrade '{\"id\": 1}'").status, 2);
    EXPECT_EQ(shell("ubus call orloagent fwupgrade start").status, 1);
    EXPECT_EQ(shell("ubus monitor").status, 1);
}

TEST_F(SystemTools, hostapd_answers_for_interfaces_that_are_up) {
    const std::string up = "/usr/sbin/hostapd_cli -i wdev0ap0 -P /var/run/hostapd.pid ";
    EXPECT_EQ(shell(up + "disassociate 02:AA:00:00:00:01").out, "OK\n");
    const Outcome malformed = shell(up + "disassociate 02:aa:00:00:00");
    EXPECT_EQ(malformed.out, "FAIL\n");
    EXPECT_EQ(malformed.status, 0);
    EXPECT_EQ(shell(up + "dance").out, "UNKNOWN COMMAND\n");
    EXPECT_EQ(shell("hostapd_cli -i wdev0ap5 disassociate 02:aa:00:00:00:01").status, 255);
    EXPECT_EQ(shell("hostapd_cli -i wdev0ap16 disassociate 02:aa:00:00:00:01").status, 255);
    EXPECT_EQ(shell("hostapd_cli disassociate 02:aa:00:00:00:01").status, 255);
}

TEST_F(SystemTools, a_firmware_image_is_known_by_its_start) {
    const std::string check = "/usr/bin/qxcommand -check firmware=";
    write_file("/tmp/good", std::string("\x27\x05\x19\x56\0rest", 9));
    write_file("/tmp/short", "\x27\x05\x19");
    EXPECT_EQ(shell(check + "/tmp/good").status, 0);
    EXPECT_EQ(shell(check + "/tmp/short").err, "qxcommand: \"/tmp/short\" is no firmware image\n");
    EXPECT_EQ(shell(check + "/tmp/short").status, 1);
    EXPECT_EQ(shell(check + "/tmp/missing").status, 1);
    EXPECT_EQ(shell(check).status, 1);
    EXPECT_EQ(shell("qxcommand -check").status, 1);
}

TEST_F(SystemTools, the_support_archive_is_a_zip_of_configuration_messages_and_crashes) {
    write_file("/var/log/messages", std::string(5000, 'm'));
    write_file("/flash/crash/it's a crash", "");
    const Outcome outcome = shell("/bin/archive-tech-info.sh /tmp/info");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(shell("unzip -p /tmp/info.zip var/log/messages").out, std::string(5000, 'm'));
    EXPECT_EQ(shell("mkdir /tmp/unpacked && cd /tmp/unpacked && unzip -q /tmp/info.zip && "
                    "for file in $(find etc -type f); do cmp $file /$file || echo $file; done; "
                    "ls flash/crash")
                  .out,
              "it's a crash\n");
    EXPECT_LT(read_file("/tmp/info.zip").size(), 12000U) << "it is packed";
    EXPECT_EQ(shell("archive-tech-info.sh /nowhere/info").status, 1);
    EXPECT_EQ(shell("archive-tech-info.sh").status, 1);
}

TEST_F(SystemTools, the_password_script_keeps_the_login) {
    EXPECT_EQ(shell("/usr/bin/lua /usr/lib/lua/luci/chpasswd.lua 'it'\\''s' 'a b'").status, 0);
    EXPECT_EQ(state("login"), "name=it's\npassword=a b\n");
    EXPECT_EQ(shell("lua /usr/lib/lua/luci/chpasswd.lua only").status, 1);
    EXPECT_EQ(read_file("/var/log/journal"), "chpasswd.lua 'it'\\''s' 'a b'\nchpasswd.lua only\n");
}

TEST_F(SystemTools, a_lua_script_is_recorded_and_replaced_as_others_are) {
    const std::string script = "lua /usr/lib/lua/luci/chpasswd.lua ";
    shell(script + "\"$(printf 'one\\ntwo\\047')\" ''");
    EXPECT_EQ(read_file("/var/log/journal"), "chpasswd.lua $'one\\ntwo\\'' ''\n");
    shell("mkdir -p /var/run/device/replaced");
    write_file("/var/run/device/replaced/chpasswd.lua", "#!/bin/sh\necho \"<$1|$2>\"; exit 3\n");
    shell("chmod +x /var/run/device/replaced/chpasswd.lua");
    const Outcome outcome = shell(script + "'a  b' \"it's\"");
    EXPECT_EQ(outcome.out, "<a  b|it's>\n");
    EXPECT_EQ(outcome.status, 3);
    unlink("/var/run/device/replaced/chpasswd.lua");
}

TEST_F(SystemTools, a_reboot_is_recorded_step_by_step) {
    EXPECT_EQ(shell("/usr/bin/orloagent_system_reboot.sh").status, 0);
    EXPECT_EQ(read_file("/var/log/journal"), "orloagent_system_reboot.sh\nsync\nreboot\n");
}

TEST_F(SystemTools, messages_are_rotated_when_they_are_many_or_somebody_insists) {
    write_file("/var/log/messages", "few\n");
    unlink("/var/log/messages.1");
    EXPECT_EQ(shell("/sbin/scinfo-logrotate.sh").status, 0);
    EXPECT_EQ(read_file("/var/log/messages"), "few\n");
    EXPECT_EQ(shell("/sbin/scinfo-logrotate.sh FORCE").status, 0);
    EXPECT_EQ(read_file("/var/log/messages"), "");
    EXPECT_EQ(read_file("/var/log/messages.1"), "few\n");
    write_file("/var/log/messages", std::string(65536, 'x'));
    shell("scinfo-logrotate.sh");
    EXPECT_EQ(read_file("/var/log/messages"), "");
}

} // namespace
