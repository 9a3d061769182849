// SPDX-License-Identifier: MIT
// The regulatory country, and who may change it.
#include "system/service.h"

#include <climits>

namespace orlo::test {

class Country : public SystemService {
protected:
    const std::string own_ = "log api_apply_country_code: ";

    int apply(const char* country) {
        door.forget();
        return ops.api_apply_country_code(country);
    }
};

TEST_F(Country, IsStaged) {
    EXPECT_EQ(apply("DE"), 0);
    EXPECT_THAT(door.trace(), ElementsAre(own_ + "Entering... country:DE ",
                                          "set system.country.countrycode=DE", own_ + "End..."));
    EXPECT_EQ(committed_value("system.country.countrycode"), "US");
    EXPECT_EQ(restarted(), "network-5");
}

TEST_F(Country, IsAnyText) {
    const std::string longer(300, 'c');
    EXPECT_EQ(apply(longer.c_str()), 0);
    EXPECT_EQ(staged_value("system.country.countrycode"), longer);
    EXPECT_EQ(apply(""), 0);
    EXPECT_EQ(staged_value("system.country.countrycode"), "(none)");
}

TEST_F(Country, ThatCannotBeStagedDiscardsNothing) {
    stage_another_change();
    door.fail(Call::uci_set);
    EXPECT_EQ(apply("DE"), -1);
    EXPECT_THAT(door.trace(), ElementsAre(own_ + "Entering... country:DE ",
                                          "set system.country.countrycode=DE (failed)",
                                          own_ + "Set countrycode Failed"));
    EXPECT_EQ(apply(nullptr), -1);
    EXPECT_THAT(door.trace(),
                ElementsAre(own_ + "Entering... country:NULL ", own_ + "Set countrycode Failed"));
    EXPECT_TRUE(another_change_is_staged());
    EXPECT_EQ(restarted(), "");
}

// ---- Who may change it ----

class ChangingTheCountry : public SystemService {
protected:
    const std::string own_ = "log api_get_country_configurable: ";
    static constexpr const char* command =
        "/usr/sbin/fw_printenv | grep user_config_country_code | cut -d'=' -f2";

    int is_allowed() {
        door.forget();
        return ops.api_get_country_configurable();
    }

    // What the boot loader's environment holds beside other variables.
    static void variable(const std::string& line) {
        replace_tool("fw_printenv", "echo 'ethaddr=02:00:00:00:00:01'\n" +
                                        (line.empty() ? "" : "printf '%b' '" + line + "'\n") +
                                        "echo 'bootdelay=1'");
    }
};

TEST_F(ChangingTheCountry, IsAllowedByYesInAnyCase) {
    const struct {
        const char* value;
        int allowed;
    } rows[] = {{"yes", 1}, {"YES", 1}, {"yEs", 1},  {"yes-please", 1}, {"Yes1", 1},      {"no", 0},
                {"ye", 0},  {"", 0},    {" yes", 0}, {"1", 0},          {"yes=anyway", 1}};
    for (const auto& row : rows) {
        variable(std::string("user_config_country_code=") + row.value + "\n");
        EXPECT_EQ(is_allowed(), row.allowed) << row.value;
        EXPECT_THAT(door.trace(),
                    ElementsAre(own_ + "Entering... ", std::string("read ") + command,
                                own_ + "End... return: " + std::to_string(row.allowed)));
    }
}

TEST_F(ChangingTheCountry, IsDecidedByTheFirstOfItsLines) {
    variable("user_config_country_code=no\nother_user_config_country_code=yes\n");
    EXPECT_EQ(is_allowed(), 0);
    variable("other_user_config_country_code=yes\nuser_config_country_code=no\n");
    EXPECT_EQ(is_allowed(), 1);
    variable("user_config_country_code=yes" + std::string(1000, 'x') + "\n");
    EXPECT_EQ(is_allowed(), 1);
}

TEST_F(ChangingTheCountry, StaysAsItWasWithoutAVariable) {
    variable("");
    EXPECT_EQ(is_allowed(), 0) << "at first";
    variable("user_config_country_code=yes\n");
    EXPECT_EQ(is_allowed(), 1);
    variable("");
    EXPECT_EQ(is_allowed(), 1);
    for (const char* script : {"exit 0", "exit 1", "kill -9 $$"}) {
        replace_tool("fw_printenv", script);
        EXPECT_EQ(is_allowed(), 1) << script;
    }
    for (int given : {0, 7, -3, INT_MIN}) {
        EXPECT_EQ(ops.api_set_country_configurable(given), 0);
        EXPECT_EQ(is_allowed(), given) << "as it was given";
        EXPECT_EQ(door.trace().back(), own_ + "End... return: " + std::to_string(given));
    }
}

TEST_F(ChangingTheCountry, IsUnknownWhenTheEnvironmentCannotBeAsked) {
    door.fail(Call::popen);
    EXPECT_EQ(is_allowed(), -1);
    EXPECT_THAT(door.trace(),
                ElementsAre(own_ + "Entering... ", std::string("read ") + command + " (failed)",
                            own_ + "Error opening pipe!"));
    variable("");
    EXPECT_EQ(is_allowed(), 0) << "and stays as it was";
}

TEST_F(ChangingTheCountry, IsWrittenIntoTheEnvironment) {
    const std::string own = "log api_set_country_configurable: ";
    const struct {
        int allowed;
        const char* value;
    } rows[] = {{1, "yes"}, {0, "no"}, {-1, "yes"}, {2, "yes"}};
    for (const auto& row : rows) {
        door.forget();
        EXPECT_EQ(ops.api_set_country_configurable(row.allowed), 0);
        EXPECT_THAT(door.trace(),
                    ElementsAre(own + "Entering... allowed=" + std::to_string(row.allowed),
                                std::string("run /usr/sbin/fw_setenv user_config_country_code ") +
                                    row.value,
                                own + "End... (no line end)"));
        EXPECT_EQ(journal().back(), std::string("fw_setenv user_config_country_code ") + row.value);
    }
    EXPECT_EQ(restarted(), "");
}

TEST_F(ChangingTheCountry, IsWhatTheEnvironmentSaysOnceItTookIt) {
    EXPECT_EQ(ops.api_set_country_configurable(0), 0);
    EXPECT_EQ(is_allowed(), 0);
    EXPECT_EQ(ops.api_set_country_configurable(7), 0);
    EXPECT_EQ(is_allowed(), 1);
}

TEST_F(ChangingTheCountry, IsRememberedWhateverTheEnvironmentSays) {
    for (const char* script : {"exit 1", "kill -9 $$"}) {
        replace_tool("fw_setenv", script);
        EXPECT_EQ(ops.api_set_country_configurable(5), 0) << script;
    }
    door.fail(Call::system);
    EXPECT_EQ(ops.api_set_country_configurable(6), 0);
    variable("");
    EXPECT_EQ(is_allowed(), 6);
}

} // namespace orlo::test
