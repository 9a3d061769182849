// SPDX-License-Identifier: MIT
// What orloctl knows of the operations, and the arguments that it lets through to them.
#include "operations.h"

#include <gmock/gmock.h>
#include <set>

#include "exit.h"
#include "run_program.h"

using namespace orloctl;
using testing::HasSubstr;

namespace {

template <class Function>
std::string refusal(Function function) {
    try {
        function();
    } catch (const Refusal& refused) {
        return refused.what();
    }
    return "accepted";
}

std::string call_refusal(const std::string& operation, const std::vector<std::string>& words) {
    return refusal([&] { read_arguments(find_operation(operation), words, true); });
}

} // namespace

TEST(Operations, all_132_slots_are_known_in_their_order) {
    ASSERT_EQ(operations().size(), 132U);
    for (size_t slot = 0; slot < operations().size(); slot++) {
        EXPECT_EQ(operations()[slot].slot, static_cast<int>(slot));
    }
}

TEST(Operations, every_argument_has_a_name_a_type_and_a_place_in_the_prototype) {
    for (const Operation& operation : operations()) {
        std::string list;
        for (const Parameter& parameter : operation.parameters) {
            const bool pointer = parameter.type.back() == '*';
            list +=
                (list.empty() ? "" : ", ") + parameter.type + (pointer ? "" : " ") + parameter.name;
        }
        EXPECT_THAT(operation.prototype,
                    HasSubstr(operation.name + "(" + (list.empty() ? "void" : list) + ")"));
    }
}

TEST(Operations, prototypes_read_as_in_c) {
    EXPECT_EQ(find_operation("api_set_Channel").prototype,
              "int api_set_Channel(int radio, int channel)");
    EXPECT_EQ(find_operation("api_config_get_hash").prototype, "char *api_config_get_hash(void)");
}

TEST(Operations, an_operation_is_found_by_name_or_slot) {
    EXPECT_EQ(find_operation("80").name, "api_set_Channel");
    EXPECT_EQ(find_operation("api_set_Channel").slot, 80);
    EXPECT_EQ(find_operation("131").slot, 131);
}

TEST(Operations, what_was_meant_is_proposed) {
    EXPECT_EQ(refusal([] { find_operation("api_set_Chanel"); }),
              "unknown operation 'api_set_Chanel'; did you mean api_set_Channel? ('orloctl ops "
              "WORD' searches)");
    EXPECT_EQ(refusal([] { find_operation("API_SAVE_CONFIG"); }),
              "unknown operation 'API_SAVE_CONFIG'; did you mean api_save_config? ('orloctl ops "
              "WORD' searches)");
    EXPECT_EQ(refusal([] { find_operation("make_coffee"); }),
              "unknown operation 'make_coffee' ('orloctl ops WORD' searches)");
    EXPECT_EQ(refusal([] { find_operation(""); }),
              "unknown operation '' ('orloctl ops WORD' searches)");
    EXPECT_EQ(refusal([] { find_operation("132"); }),
              "slot 132 does not exist: slots are 0 to 131");
    EXPECT_EQ(refusal([] { find_operation("99999999999999999999999"); }),
              "slot 99999999999999999999999 does not exist: slots are 0 to 131");
}

TEST(Operations, wrong_counts_of_arguments_are_refused_with_the_usage) {
    EXPECT_EQ(call_refusal("api_set_Channel", {"1"}),
              "api_set_Channel takes 2 arguments, 1 given; usage: orloctl call api_set_Channel "
              "RADIO CHANNEL");
    EXPECT_EQ(call_refusal("api_get_channel", {"1", "2"}),
              "api_get_channel takes 1 argument, 2 given; usage: orloctl call api_get_channel "
              "RADIO");
    EXPECT_EQ(call_refusal("api_save_config", {"1"}),
              "api_save_config takes 0 arguments, 1 given; usage: orloctl call api_save_config");
}

TEST(Operations, a_wrong_argument_is_named) {
    EXPECT_EQ(call_refusal("api_set_Channel", {"1", "abc"}),
              "argument 2 (channel): 'abc' is not an integer");
}

TEST(Operations, each_record_is_read_from_json_or_filled_in) {
    for (const Operation& operation : operations()) {
        for (const Parameter& parameter : operation.parameters) {
            if (parameter.kind == Kind::record) {
                EXPECT_NE(parameter.form == nullptr, parameter.filled == nullptr)
                    << operation.name << " " << parameter.name;
            }
        }
    }
}

TEST(Operations, a_record_is_json_with_the_operations_own_radio) {
    std::vector<Argument> arguments = read_arguments(
        find_operation("api_apply_hw_specific"),
        {"1", R"({"mode": "a", "eligible_channels": [36, 40], "channel_bandwidth": 80})"}, true);
    const auto* settings = pass<hw_specific_settings*>(arguments[1]);
    EXPECT_STREQ(settings->mode, "a");
    EXPECT_STREQ(settings->eligible_channels, "36 40");
    EXPECT_EQ(settings->channel_bandwidth, 80U);
    EXPECT_EQ(call_refusal("api_apply_hw_specific", {"0", R"({"mode": "a"})"}),
              "settings.mode: \"a\" is not \"bg-n-ax\" or \"bg\"\n"
              "settings.eligible_channels: is missing\n"
              "settings.channel_bandwidth: is missing");
}

TEST(Operations, vaps_are_an_array_and_lie_at_their_index) {
    std::vector<Argument> arguments = read_arguments(
        find_operation("api_apply_vap"),
        {"0", R"([{"vap": 5, "ssid": "five", "vlan_id": 5}, {"vap": 2, "status": false}])"}, true);
    const auto* vaps = pass<vap_settings*>(arguments[1]);
    EXPECT_EQ(vaps[5].status, 1);
    EXPECT_STREQ(vaps[5].ssid, "five");
    EXPECT_EQ(vaps[2].status, 0);
    EXPECT_EQ(vaps[0].status, 0);
    EXPECT_EQ(call_refusal("api_apply_vap", {"0", R"([{"vap": 3, "ssid": "x", "vlan_id": 0}])"}),
              "settings[0].vlan_id: 0 is not in 1..4094");
    EXPECT_EQ(call_refusal("api_apply_vap", {"0", "{}"}), "settings: {} is not an array");
}

TEST(Operations, a_record_may_lie_in_a_file_or_be_none) {
    const TemporaryFile file(R"({"interface_name": "wlan1", "wmm": true})");
    const Operation& operation = find_operation("api_apply_radio");
    std::vector<Argument> arguments = read_arguments(operation, {"@" + file.path()}, true);
    EXPECT_STREQ(pass<const radio_settings*>(arguments[0])->interface_name, "wlan1");
    EXPECT_EQ(pass<const radio_settings*>(arguments[0])->wmm, 1);
    EXPECT_EQ(pass<const radio_settings*>(arguments[0])->apsd, -1);
    std::vector<Argument> none = read_arguments(operation, {"@null"}, true);
    EXPECT_EQ(pass<const radio_settings*>(none[0]), nullptr);
    EXPECT_EQ(call_refusal("api_apply_radio", {"@/nowhere.json"}),
              "cannot read /nowhere.json: No such file or directory");
    EXPECT_THAT(call_refusal("api_apply_radio", {"{"}), HasSubstr("argument 1 (settings):1:1: "));
    EXPECT_THAT(call_refusal("api_apply_radio", {""}), HasSubstr("argument 1 (settings):1:0: "));
}

TEST(Operations, values_of_a_record_pass_unchecked_where_the_library_shall_refuse_them) {
    const std::string record = R"({"interface_name": "wlan2", "rts_threshold": 9999})";
    std::vector<Argument> arguments =
        read_arguments(find_operation("api_apply_radio"), {record}, false);
    EXPECT_EQ(pass<const radio_settings*>(arguments[0])->rts_threshold, 9999);
    EXPECT_EQ(call_refusal("api_apply_radio", {record}),
              "settings.rts_threshold: 9999 is not in 0..2347");
}

TEST(Operations, arguments_that_are_filled_in_or_ignored_take_no_word) {
    EXPECT_EQ(read_arguments(find_operation("api_get_neighbors"), {}, true).size(), 2U);
    EXPECT_EQ(read_arguments(find_operation("api_get_PowerPercent"), {"1", "20"}, true).size(), 3U);
    EXPECT_EQ(read_arguments(find_operation("api_reserved_13"), {}, true).size(), 3U);
    EXPECT_EQ(read_arguments(find_operation("api_get_vap_statistics"), {}, true).size(), 1U);
    EXPECT_EQ(find_operation("api_get_radio_statistics").usage(), "api_get_radio_statistics");
}
