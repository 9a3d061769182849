// SPDX-License-Identifier: MIT
// The request to send traps for radios that are about to go up or down.
#include "system/snmp_settings.h"

#include <climits>

namespace orlo::test {

class SnmpTrap : public SnmpSettings {
protected:
    static constexpr const char* path = "/tmp/orlo_send_snmp_trap";

    // "" takes the option away: the state is not known then.
    static void radio_is(int radio, const std::string& disabled) {
        configure("wireless.wifi" + std::to_string(radio) + ".disabled", disabled);
    }

    std::string request() {
        EXPECT_EQ(apply(), 0);
        EXPECT_TRUE(exists(path));
        return read_file(path);
    }
};

TEST_F(SnmpTrap, IsRequestedForEachChangeOfARadio) {
    const struct {
        const char* disabled;
        int future;
        const char* code; // "" when there is no trap
    } rows[] = {
        {"0", 1, ""},        {"0", 0, "2"}, {"1", 1, "3"}, {"1", 0, ""},       {"", 1, ""},
        {"", 0, ""},         {"x", 1, ""},  {"x", 0, ""},  {"0", 2, "2"},      {"0", -1, "2"},
        {"0", INT_MIN, "2"}, {"1", 2, ""},  {"1", -1, ""}, {"1", INT_MAX, ""}, {"", 2, ""},
    };
    for (const auto& first : rows) {
        for (const auto& second : rows) {
            radio_is(0, first.disabled);
            radio_is(1, second.disabled);
            snmp_.radio_status[0] = first.future;
            snmp_.radio_status[1] = second.future;
            std::string expected;
            expected += *first.code == '\0' ? "" : std::string(first.code) + " 0\n";
            expected += *second.code == '\0' ? "" : std::string(second.code) + " 1\n";
            EXPECT_EQ(request(), expected)
                << first.disabled << first.future << ", " << second.disabled << second.future;
        }
    }
}

TEST_F(SnmpTrap, GoesByTheStagedState) {
    radio_is(0, "0");
    radio_is(1, "0");
    ASSERT_EQ(ops.api_apply_radio_status(0, 0), 0);
    snmp_.radio_status[0] = 1;
    EXPECT_EQ(request(), "3 0\n");
}

TEST_F(SnmpTrap, AnEarlierRequestIsReplaced) {
    write_file(path, "3 0\n3 1\nand more\n");
    radio_is(0, "0");
    radio_is(1, "0");
    EXPECT_EQ(request(), "");
}

TEST_F(SnmpTrap, IsRequestedEvenWhenSnmpIsOff) {
    radio_is(0, "0");
    radio_is(1, "1");
    snmp_.status = 0;
    snmp_.radio_status[0] = 0;
    snmp_.radio_status[1] = 1;
    EXPECT_EQ(request(), "2 0\n3 1\n");
    EXPECT_EQ(restarted(), "snmp-0");
}

TEST_F(SnmpTrap, IsAsked) {
    radio_is(0, "0");
    EXPECT_EQ(apply(), 0);
    EXPECT_THAT(door.trace(), testing::Contains("log api_get_radio_status: Entering... radio: 0"));
    EXPECT_THAT(door.trace(), testing::Contains("log api_get_radio_status: Entering... radio: 1"));
}

TEST_F(SnmpTrap, ThatCannotBeRequestedIsNoFailure) {
    radio_is(0, "0");
    snmp_.radio_status[0] = 0;
    door.fail(Call::fopen);
    EXPECT_EQ(apply(), 0);
    const Trace lines = door.trace();
    EXPECT_THAT(Trace(lines.end() - 2, lines.end()),
                ElementsAre("log 5/1 send_snmp_trap: warning: Can't open the send trap file of "
                            "SNMP.",
                            "log api_apply_snmp: End..."));
    EXPECT_FALSE(exists(path));
    EXPECT_EQ(restarted(), "snmp-0");
}

} // namespace orlo::test
