// The operations that a description causes.
#include "plan.h"

#include <gmock/gmock.h>

using namespace orloctl;
using testing::ElementsAre;

namespace {

std::vector<std::string> titles(const std::string& text, bool save = true) {
    std::vector<std::string> result;
    const Description description = read_description(text, "test", true);
    for (const Step& step : plan(description, save)) {
        result.push_back(step.title());
    }
    return result;
}

} // namespace

TEST(Plan, radios_come_in_the_order_of_the_file_then_hashes_id_and_save) {
    EXPECT_THAT(titles(R"({"profile": {"id": 7, "config_hash": "c", "profile_hash": "p"},
                           "radios": [{"radio": 1, "channel": 36, "enabled": true},
                                      {"radio": 0, "enabled": false, "power_percent": 50}]})"),
                ElementsAre("api_apply_radio_status radio 1",
                            "api_apply_wireless_interface radio 1",
                            "api_apply_radio_status radio 0",
                            "api_apply_wireless_interface radio 0", "api_profile_set_hash",
                            "api_config_set_hash", "api_set_profile_id", "api_save_config"));
}

TEST(Plan, what_is_not_described_is_left_alone) {
    EXPECT_THAT(titles(R"({})"), ElementsAre("api_save_config"));
    EXPECT_THAT(titles(R"({"radios": [{"radio": 0}]})"), ElementsAre("api_save_config"));
    EXPECT_THAT(
        titles(R"({"radios": [{"radio": 0, "enabled": true}], "profile": {"id": 1}})", false),
        ElementsAre("api_apply_radio_status radio 0", "api_set_profile_id"));
}

TEST(Plan, any_of_four_members_applies_the_radio_interface) {
    for (const std::string member : {R"("override": "not-override")", R"("channel": 0)",
                                     R"("second_channel": -1)", R"("power_percent": 10)"}) {
        EXPECT_THAT(titles(R"({"radios": [{"radio": 1, )" + member + "}]}", false),
                    ElementsAre("api_apply_wireless_interface radio 1"));
    }
}

TEST(Plan, settings_and_hardware_come_before_the_channels_and_vaps_behind_them) {
    EXPECT_THAT(titles(R"({"radios": [{"radio": 0, "vaps": [], "settings": {}, "enabled": true,
                                       "channel": 6,
                                       "hardware": {"mode": "bg", "eligible_channels": [6],
                                                    "channel_bandwidth": 20}}]})"),
                ElementsAre("api_apply_radio_status radio 0", "api_apply_radio radio 0",
                            "api_apply_hw_specific radio 0", "api_apply_wireless_interface radio 0",
                            "api_apply_vap radio 0", "api_save_config"));
}

TEST(Plan, each_step_tells_its_arguments) {
    const Description description = read_description(
        R"({"radios": [{"radio": 1, "settings": {"wmm": true}, "power_percent": 50,
                        "vaps": [{"vap": 4, "status": false}]}]})",
        "test", true);
    std::vector<std::string> arguments;
    for (const Step& step : plan(description, false)) {
        arguments.push_back(json_excerpt(step.arguments.get()));
    }
    EXPECT_THAT(arguments,
                ElementsAre(R"([{"interface_name":"wlan1","wmm":true}])",
                            R"([1,"not-override",0,0,50])", R"([1,[{"vap":4,"status":false}]])"));
}
