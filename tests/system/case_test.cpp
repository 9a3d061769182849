// SPDX-License-Identifier: MIT
// The LEDs and the reset button.
#include "system/service.h"

#include <climits>

namespace orlo::test {

using Leds = SystemService;

TEST_F(Leds, AreOffInEcoMode) {
    const std::string own = "log api_apply_led_status: ";
    const struct {
        int status;
        const char* eco_mode;
    } rows[] = {{0, "1"}, {1, "0"}};
    for (const auto& row : rows) {
        door.forget();
        EXPECT_EQ(ops.api_apply_led_status(row.status), 0);
        EXPECT_THAT(door.trace(),
                    ElementsAre(own + "Entering... status:" + std::to_string(row.status),
                                std::string("set system.eco_mode.eco_mode=") + row.eco_mode,
                                own + "End... return: Success"));
    }
    EXPECT_EQ(restarted(), "led-0");
}

TEST_F(Leds, AreOnOrOff) {
    const std::string own = "log api_apply_led_status: ";
    for (int status : {2, -1, INT_MAX, INT_MIN}) {
        stage_another_change();
        door.forget();
        EXPECT_EQ(ops.api_apply_led_status(status), -1);
        EXPECT_THAT(door.trace(), ElementsAre(own + "Entering... status:" + std::to_string(status),
                                              own + "Set Value Failed", "revert all",
                                              own + "End... return: Fail"));
        EXPECT_THAT(staged(), IsEmpty());
    }
    EXPECT_EQ(restarted(), "");
}

TEST_F(Leds, ThatCannotBeStagedDiscardEverything) {
    stage_another_change();
    door.forget();
    door.fail(Call::uci_set);
    EXPECT_EQ(ops.api_apply_led_status(0), -1);
    EXPECT_THAT(door.trace(),
                ElementsAre("log api_apply_led_status: Entering... status:0",
                            "set system.eco_mode.eco_mode=1 (failed)",
                            "log api_apply_led_status: Set Value Failed", "revert all",
                            "log api_apply_led_status: End... return: Fail"));
    EXPECT_THAT(staged(), IsEmpty());
    EXPECT_EQ(restarted(), "");
}

using ResetButton = SystemService;

TEST_F(ResetButton, IsDisabledByZero) {
    const std::string own = "log api_apply_reset_button: ";
    const struct {
        int status;
        const char* disable;
    } rows[] = {{0, "1"}, {1, "0"}};
    for (const auto& row : rows) {
        door.forget();
        EXPECT_EQ(ops.api_apply_reset_button(row.status), 0);
        EXPECT_THAT(door.trace(),
                    ElementsAre(own + "Entering... reset:" + std::to_string(row.status),
                                std::string("set system.reset_button.disable=") + row.disable,
                                own + "End... return: Success"));
    }
    EXPECT_EQ(restarted(), "") << "no service";
}

TEST_F(ResetButton, IsEnabledOrDisabled) {
    const std::string own = "log api_apply_reset_button: ";
    for (int status : {2, -1, INT_MAX, INT_MIN}) {
        stage_another_change();
        door.forget();
        EXPECT_EQ(ops.api_apply_reset_button(status), -1);
        EXPECT_THAT(door.trace(),
                    ElementsAre(own + "Entering... reset:" + std::to_string(status),
                                own + "Set Value Failed", own + "End... return: Fail"));
        EXPECT_TRUE(another_change_is_staged());
    }
}

TEST_F(ResetButton, ThatCannotBeStagedDiscardsNothing) {
    stage_another_change();
    door.forget();
    door.fail(Call::uci_set);
    EXPECT_EQ(ops.api_apply_reset_button(1), -1);
    EXPECT_THAT(door.trace(), ElementsAre("log api_apply_reset_button: Entering... reset:1",
                                          "set system.reset_button.disable=0 (failed)",
                                          "log api_apply_reset_button: Set Value Failed",
                                          "log api_apply_reset_button: End... return: Fail"));
    EXPECT_TRUE(another_change_is_staged());
}

} // namespace orlo::test
