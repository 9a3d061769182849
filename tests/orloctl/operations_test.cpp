// What orloctl knows of the operations, and the arguments that it lets through to them.
#include "operations.h"

#include <gmock/gmock.h>
#include <set>

#include "exit.h"

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
    return refusal([&] { read_arguments(find_operation(operation), words); });
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

TEST(Operations, operations_that_take_a_record_are_refused_for_now) {
    EXPECT_THAT(call_refusal("api_apply_vap", {"1"}),
                HasSubstr("takes a record (struct vap_settings); describe it in a file and use "
                          "'orloctl apply'"));
    EXPECT_THAT(call_refusal("api_apply_snmp", {}), HasSubstr("(struct snmp_settings)"));
}

TEST(Operations, arguments_that_are_filled_in_or_ignored_take_no_word) {
    EXPECT_EQ(read_arguments(find_operation("api_get_neighbors"), {}).size(), 2U);
    EXPECT_EQ(read_arguments(find_operation("api_get_PowerPercent"), {"1", "20"}).size(), 3U);
    EXPECT_EQ(read_arguments(find_operation("api_reserved_13"), {}).size(), 3U);
}
