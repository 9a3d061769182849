// SPDX-License-Identifier: MIT
// The administrator's name and password.
#include "support/access_point.h"

namespace orlo::test {

class Login : public AccessPoint {
protected:
    static std::string destroy(const std::string& session) {
        return "run /bin/ubus call session destroy '{\"ubus_rpc_session\": \"" + session + "\"}'";
    }

    static void log_in(const std::vector<std::string>& sessions) {
        std::string lines;
        for (const std::string& session : sessions) {
            lines += session + "\n";
        }
        write_file("/var/run/device/sessions", lines);
    }

    // In place of the list: how "ubus call session destroy" ends.
    static void end_sessions_with(const std::string& script) {
        replace_tool("ubus",
                     "[ \"$3\" = destroy ] || { "
                     "while read -r id; do echo \"\\\"ubus_rpc_session\\\": \\\"$id\\\",\"; "
                     "done </var/run/device/sessions; exit; }\n" +
                         script);
    }

    const std::string everybody_ = std::string(32, '0');
    const std::string own_ = "log api_apply_system_login: ";
    const std::string entering_ = own_ + "Entering... username:admin password:new secret";
    const std::string list_ = "read ubus call session list | grep ubus_rpc_session | "
                              "awk '{print $2}' | tr -d '\",'";
    const std::string script_ = "run /usr/bin/lua /usr/lib/lua/luci/chpasswd.lua ";
};

TEST_F(Login, IsChangedAfterEverySessionButEverybodysHasEnded) {
    log_in({"a1", everybody_, "b2"});
    EXPECT_EQ(ops.api_apply_system_login("admin", "new secret"), 0);
    EXPECT_THAT(door.trace(),
                ElementsAre(entering_, list_, destroy("a1"), destroy("b2"),
                            script_ + "'admin' 'new secret'", own_ + "End... return: Success"));
    EXPECT_EQ(read_file("/var/run/device/sessions"), everybody_ + "\n");
    EXPECT_EQ(read_file("/var/run/device/login"), "name=admin\npassword=new secret\n");
    EXPECT_THAT(journal(), ElementsAre("ubus call session list",
                                       "ubus call session destroy '{\"ubus_rpc_session\": \"a1\"}'",
                                       "ubus call session destroy '{\"ubus_rpc_session\": \"b2\"}'",
                                       "chpasswd.lua admin 'new secret'"));
}

TEST_F(Login, IsChangedAlsoWhenNobodyIsLoggedIn) {
    log_in({});
    EXPECT_EQ(ops.api_apply_system_login("admin", "new secret"), 0);
    EXPECT_THAT(door.trace(), ElementsAre(entering_, list_, script_ + "'admin' 'new secret'",
                                          own_ + "End... return: Success"));
}

TEST_F(Login, SparesEverySessionWithEightZerosInARow) {
    log_in({"1234000000005678", "0000000", "00000000"});
    EXPECT_EQ(ops.api_apply_system_login("admin", "x"), 0);
    EXPECT_THAT(door.trace({"run"}), ElementsAre(destroy("0000000"), script_ + "'admin' 'x'"));
}

TEST_F(Login, ReturnsTheStatusOfTheLastSessionThatEnded) {
    log_in({"a1", "b2"});
    end_sessions_with("case $4 in *b2*) exit 1 ;; esac");
    EXPECT_EQ(ops.api_apply_system_login("admin", "new secret"), 256);
    EXPECT_THAT(door.trace(),
                ElementsAre(entering_, list_, destroy("a1"), destroy("b2"),
                            script_ + "'admin' 'new secret'", own_ + "End... return: Fail"));
    EXPECT_TRUE(exists("/var/run/device/login")) << "changed all the same";
    end_sessions_with("case $4 in *a1*) exit 1 ;; esac");
    EXPECT_EQ(ops.api_apply_system_login("admin", "new secret"), 0) << "the first does not count";
    end_sessions_with("kill -KILL $PPID");
    EXPECT_EQ(ops.api_apply_system_login("admin", "new secret"), 9);
}

TEST_F(Login, DoesNotLookAtTheScriptsExitCode) {
    replace_tool("chpasswd.lua", "exit 3");
    EXPECT_EQ(ops.api_apply_system_login("admin", "new secret"), 0);
    EXPECT_EQ(door.trace().back(), own_ + "End... return: Success");
    EXPECT_FALSE(exists("/var/run/device/login"));
}

TEST_F(Login, WithoutTheScriptLeavesSessionsAlone) {
    door.fail(Call::access);
    EXPECT_EQ(ops.api_apply_system_login("admin", "new secret"), -1);
    EXPECT_THAT(door.trace(),
                ElementsAre(entering_, own_ + "Execute username/password modification failed",
                            own_ + "End... return: Fail"));
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(Login, WithoutANameOrAPasswordDoesNothing) {
    EXPECT_EQ(ops.api_apply_system_login(nullptr, "x"), -1);
    EXPECT_EQ(ops.api_apply_system_login("admin", nullptr), -1);
    EXPECT_THAT(door.trace(), ElementsAre(own_ + "Entering... username:NULL password:x",
                                          own_ + "End... return: Fail",
                                          own_ + "Entering... username:admin password:NULL",
                                          own_ + "End... return: Fail"));
}

TEST_F(Login, FailsWhenTheSessionsCannotBeListed) {
    ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
    door.forget();
    door.fail(Call::popen);
    EXPECT_EQ(ops.api_apply_system_login("admin", "new secret"), -1);
    EXPECT_THAT(door.trace(), ElementsAre(entering_, list_ + " (failed)",
                                          own_ + "Execute destroy session failed"));
    EXPECT_THAT(staged(), ElementsAre("orloagent.agent.confighash=abc")) << "nothing is discarded";
}

TEST_F(Login, StopsAtASessionWhoseEndingCannotBeStarted) {
    ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
    log_in({"a1", "b2", "c3"});
    door.forget();
    door.fail(Call::system, 2);
    EXPECT_EQ(ops.api_apply_system_login("admin", "new secret"), -1);
    EXPECT_THAT(door.trace(),
                ElementsAre(entering_, list_, destroy("a1"), destroy("b2") + " (failed)",
                            own_ + "Execute system call '" + destroy("b2").substr(4) + "' failed"));
    EXPECT_THAT(staged(), ElementsAre("orloagent.agent.confighash=abc")) << "nothing is discarded";
}

TEST_F(Login, DiscardsEverythingWhenTheScriptCannotBeStarted) {
    ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
    log_in({"a1"});
    door.forget();
    door.fail(Call::system, 2);
    EXPECT_EQ(ops.api_apply_system_login("admin", "new secret"), -1);
    EXPECT_THAT(door.trace(), ElementsAre(entering_, list_, destroy("a1"),
                                          script_ + "'admin' 'new secret' (failed)",
                                          own_ + "Execute system call '" + script_.substr(4) +
                                              "'admin' 'new secret'' failed",
                                          "revert all"));
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(Login, TakesASessionsLineInPiecesOf63Characters) {
    log_in({std::string(70, 'a')});
    ops.api_apply_system_login("admin", "x");
    EXPECT_THAT(door.trace({"run"}),
                ElementsAre(destroy(std::string(63, 'a')), destroy(std::string(7, 'a')),
                            script_ + "'admin' 'x'"));
}

TEST_F(Login, CutsItsCommandAt127Characters) {
    const std::string name(30, 'n');
    const std::string password(48, 'p');
    ops.api_apply_system_login(name.c_str(), password.c_str());
    EXPECT_EQ(door.trace({"run"}).back(), script_ + "'" + name + "' '" + password + "'");
    EXPECT_EQ(read_file("/var/run/device/login"), "name=" + name + "\npassword=" + password + "\n");
    ops.api_apply_system_login(name.c_str(), (password + "qr").c_str());
    EXPECT_EQ(door.trace({"run"}).back(), script_ + "'" + name + "' '" + password + "q")
        << "and the shell gets an open quote";
}

TEST_F(Login, HasTextsThatCanBreakOutOfTheirQuotes) {
    log_in({});
    ops.api_apply_system_login("a'b'", "$HOME;x");
    EXPECT_EQ(journal().back(), "chpasswd.lua ab '$HOME;x'");
}

} // namespace orlo::test
