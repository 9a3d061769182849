// SPDX-License-Identifier: MIT
// The OpenFlow agent.
#include "system/service.h"

#include <climits>
#include <functional>

namespace orlo::test {

class OpenFlow : public SystemService {
protected:
    // What an operation, whose write fails, does from its entry line on.
    Trace failing(const std::function<int()>& operation, int nth = 1) {
        stage_another_change();
        door.forget();
        door.fail(Call::uci_set, nth);
        EXPECT_EQ(operation(), -1);
        EXPECT_THAT(staged(), IsEmpty());
        const Trace lines = door.trace();
        EXPECT_EQ(restarted(), "");
        return {lines.begin() + 1, lines.end()};
    }
};

TEST_F(OpenFlow, IsSwitchedByAnyNumber) {
    const std::string own = "log api_apply_openflow_enable: ";
    const struct {
        int enable;
        const char* value;
    } rows[] = {{1, "1"}, {0, "0"}, {2, "1"}, {-1, "1"}};
    for (const auto& row : rows) {
        door.forget();
        EXPECT_EQ(ops.api_apply_openflow_enable(row.enable), 0);
        EXPECT_THAT(door.trace(),
                    ElementsAre(own + "Entering... enable: " + std::to_string(row.enable),
                                std::string("set openflow.config.enable=") + row.value,
                                own + "End... return: 0"));
    }
    EXPECT_EQ(restarted(), "network-5");
}

TEST_F(OpenFlow, ThatCannotBeSwitchedDiscardsEverything) {
    EXPECT_THAT(failing([this] { return ops.api_apply_openflow_enable(-7); }),
                ElementsAre("set openflow.config.enable=1 (failed)",
                            "log 5/1 api_apply_openflow_enable: Failed to set value, -7 to "
                            "openflow.config.enable",
                            "revert all"));
}

TEST_F(OpenFlow, HasAControllerUnderAnyNumber) {
    const std::string own = "log api_apply_openflow_controller: ";
    for (int index : {0, 1, 99, INT_MAX}) {
        const std::string i = std::to_string(index);
        const std::string entering = std::string(own)
                                         .append("Entering... index: ")
                                         .append(i)
                                         .append(", controller: tcp:10.0.0.9:6653");
        door.forget();
        EXPECT_EQ(ops.api_apply_openflow_controller(index, "tcp:10.0.0.9:6653"), 0);
        EXPECT_THAT(door.trace(),
                    ElementsAre(entering,
                                "set openflow.config.controller" + i + "=tcp:10.0.0.9:6653",
                                own + "End... return: 0"));
    }
    EXPECT_EQ(restarted(), "network-5");
}

TEST_F(OpenFlow, AnEmptyControllerIsRemoved) {
    configure("openflow.config.controller3", "tcp:10.0.0.9:6653");
    EXPECT_EQ(ops.api_apply_openflow_controller(3, ""), 0);
    EXPECT_EQ(staged_value("openflow.config.controller3"), "(none)");
}

TEST_F(OpenFlow, AControllerThatCannotBeStagedDiscardsEverything) {
    EXPECT_THAT(failing([this] { return ops.api_apply_openflow_controller(4, "tcp:host"); }),
                ElementsAre("set openflow.config.controller4=tcp:host (failed)",
                            "log 5/1 api_apply_openflow_controller: Failed to set value, tcp:host "
                            "to openflow.config.controller4",
                            "revert all"));
}

TEST_F(OpenFlow, AControllerIsNeeded) {
    const std::string own = "log api_apply_openflow_controller: ";
    stage_another_change();
    door.forget();
    EXPECT_EQ(ops.api_apply_openflow_controller(4, nullptr), -1);
    EXPECT_THAT(door.trace(),
                ElementsAre(own + "Entering... index: 4, controller: NULL",
                            "log 5/1 api_apply_openflow_controller: Failed to set value, NULL to "
                            "openflow.config.controller4",
                            "revert all"));
    EXPECT_EQ(ops.api_apply_openflow_controller(-1, "tcp:host"), -1) << "no name of an option";
    EXPECT_THAT(staged(), IsEmpty());
    EXPECT_EQ(restarted(), "");
}

TEST_F(OpenFlow, WithoutAControllerOpensClosesOrIsSecure) {
    const std::string own = "log api_apply_openflow_critical_mode: ";
    const struct {
        const char* mode;
        const char* fail_mode;
    } timed[] = {{"normal", "open"}, {"drop", "close"}};
    for (const auto& row : timed) {
        door.forget();
        EXPECT_EQ(ops.api_apply_openflow_critical_mode(row.mode, 30), 0);
        EXPECT_THAT(door.trace(),
                    ElementsAre(own + "Entering... mode: " + row.mode + ", timeout: 30",
                                std::string("set openflow.config.fail_mode=") + row.fail_mode,
                                "set openflow.config.fail_timeout=30", own + "End... return: 0"));
    }
    for (const char* mode :
         {"open", "close", "secure", "Normal", "drop ", "", static_cast<const char*>(nullptr)}) {
        door.forget();
        EXPECT_EQ(ops.api_apply_openflow_critical_mode(mode, 99), 0);
        const std::string shown = mode == nullptr ? "NULL" : mode;
        const std::string entering =
            std::string(own).append("Entering... mode: ").append(shown).append(", timeout: 99");
        EXPECT_THAT(door.trace(), ElementsAre(entering, "set openflow.config.fail_mode=secure",
                                              own + "End... return: 0"));
        EXPECT_EQ(staged_value("openflow.config.fail_timeout"), "30") << "left as it was";
    }
    EXPECT_EQ(restarted(), "network-5");
}

TEST_F(OpenFlow, ATimeoutIsCutAtSevenCharacters) {
    for (int timeout : {0, -1, 1234567}) {
        EXPECT_EQ(ops.api_apply_openflow_critical_mode("drop", timeout), 0);
        EXPECT_EQ(staged_value("openflow.config.fail_timeout"), std::to_string(timeout));
    }
    EXPECT_EQ(ops.api_apply_openflow_critical_mode("drop", INT_MIN), 0);
    EXPECT_EQ(staged_value("openflow.config.fail_timeout"), "-214748");
}

TEST_F(OpenFlow, AFailModeThatCannotBeStagedDiscardsEverything) {
    const auto normal = [this] { return ops.api_apply_openflow_critical_mode("normal", 12345678); };
    EXPECT_THAT(failing(normal),
                ElementsAre("set openflow.config.fail_mode=open (failed)",
                            "log 5/1 api_apply_openflow_critical_mode: Failed to set value, open "
                            "to openflow.config.fail_mode",
                            "revert all"));
    EXPECT_THAT(failing(normal, 2),
                ElementsAre("set openflow.config.fail_mode=open",
                            "set openflow.config.fail_timeout=1234567 (failed)",
                            "log 5/1 api_apply_openflow_critical_mode: Failed to set value, "
                            "12345678 to openflow.config.fail_timeout",
                            "revert all"));
}

} // namespace orlo::test
