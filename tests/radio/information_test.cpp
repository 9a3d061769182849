// SPDX-License-Identifier: MIT
// What the agent asks about a radio: type, width, state, modulation, utilisation, neighbours.
#include "support/access_point.h"

#include <climits>
#include <cstring>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace orlo::test {

namespace {

std::string owned(char* text) {
    const std::unique_ptr<char, decltype(&free)> owner(text, free);
    return text == nullptr ? "(NULL)" : text;
}

} // namespace

using RadioType = AccessPoint;

TEST_F(RadioType, IsTranslatedFromTheConfiguredMode) {
    const struct {
        const char* mode;
        const char* type;
    } rows[] = {
        {"11axg", "b/g/n/ax"},  {"11bg", "b/g"}, {"11a", "a"},
        {"11axa", "a/n/ac/ax"}, {"11ax", ""},    {"11axgg", ""},
        {"11AXG", ""},          {"11axg ", ""},  {"auto", ""},
    };
    for (const auto& row : rows) {
        configure("wireless.wifi1.hwmode", row.mode);
        door.forget();
        EXPECT_EQ(owned(ops.api_get_radio_type(1)), row.type) << row.mode;
        EXPECT_THAT(door.trace(),
                    ElementsAre("log api_get_radio_type: Entering... radio: 1",
                                "log api_get_radio_type: cmd: wifi1.hwmode",
                                std::string("log api_get_radio_type: End... type: ") + row.type));
    }
}

TEST_F(RadioType, OfARadioWithoutModeIsNone) {
    configure("wireless.wifi0.hwmode", "");
    EXPECT_EQ(owned(ops.api_get_radio_type(0)), "(NULL)");
    EXPECT_THAT(door.trace(), ElementsAre("log api_get_radio_type: Entering... radio: 0",
                                          "log api_get_radio_type: cmd: wifi0.hwmode",
                                          "log api_get_radio_type: Get wifi0.hwmode Failed"));
    EXPECT_EQ(owned(ops.api_get_radio_type(2)), "(NULL)");
    EXPECT_EQ(owned(ops.api_get_radio_type(INT_MIN)), "(NULL)");
    EXPECT_EQ(door.trace().back(), "log api_get_radio_type: Get wifi-2147483648.hwmode Failed");
}

TEST_F(RadioType, OfAModeThatIsMuchTooLongIsEmpty) {
    configure("wireless.wifi0.hwmode", std::string(200, 'x'));
    EXPECT_EQ(owned(ops.api_get_radio_type(0)), "");
}

using Bandwidth = AccessPoint;

TEST_F(Bandwidth, IsThatOfTheConfiguredMode) {
    const struct {
        const char* mode;
        int width;
    } rows[] = {
        {"HT20", 20},     {"HT20xyz", 20}, {"HT40+", 40},
        {"HT40+xyz", 40}, {"HT80", 80},    {"HT80+80", 8080},
    };
    for (const auto& row : rows) {
        configure("wireless.wifi0.htmode", row.mode);
        door.forget();
        EXPECT_EQ(ops.api_get_bandwidth(0), row.width) << row.mode;
        EXPECT_THAT(door.trace(), ElementsAre("log api_get_bandwidth: Entering... radio:0 ",
                                              "log api_get_bandwidth: End... wifi0 bandwidth " +
                                                  std::to_string(row.width) + " MHz"));
    }
}

TEST_F(Bandwidth, OfAnyOtherModeIsUnknown) {
    for (const char* mode : {"HT40-", "HT40", "HT80xyz", "HT80+80x", "HT80+", "HT160", "ht20",
                             "HT2", " HT20", "auto"}) {
        configure("wireless.wifi1.htmode", mode);
        door.forget();
        EXPECT_EQ(ops.api_get_bandwidth(1), -1) << mode;
        EXPECT_THAT(door.trace(),
                    ElementsAre("log api_get_bandwidth: Entering... radio:1 ",
                                "log api_get_bandwidth: error: Get wifi1 bandwidth failed."));
    }
}

TEST_F(Bandwidth, OfARadioWithoutModeIsUnknown) {
    configure("wireless.wifi1.htmode", "");
    for (const int radio : {1, 2, -1, INT_MAX, INT_MIN}) {
        door.forget();
        EXPECT_EQ(ops.api_get_bandwidth(radio), -1);
        EXPECT_EQ(door.trace().back(), "log api_get_bandwidth: error: Get wifi" +
                                           std::to_string(radio) + " bandwidth failed.");
    }
}

using RadioState = AccessPoint;

TEST_F(RadioState, IsUpOrDownAsItIsConfigured) {
    const struct {
        const char* disabled;
        const char* state;
        const char* end;
    } rows[] = {
        {"0", "up", "End... buf: 0"},      {"1", "down", "End... buf: 1"},
        {"true", "none", "End... failed"}, {"2", "none", "End... failed"},
        {"00", "none", "End... failed"},   {"1 ", "none", "End... failed"},
    };
    for (const auto& row : rows) {
        configure("wireless.wifi1.disabled", row.disabled);
        door.forget();
        EXPECT_EQ(owned(ops.api_get_radio_status(1)), row.state) << row.disabled;
        EXPECT_THAT(door.trace(), ElementsAre("log api_get_radio_status: Entering... radio: 1",
                                              "log api_get_radio_status: cmd: wifi1.disabled",
                                              std::string("log api_get_radio_status: ") + row.end));
    }
}

TEST_F(RadioState, ThatIsNotConfiguredIsNone) {
    configure("wireless.wifi0.disabled", "");
    EXPECT_EQ(owned(ops.api_get_radio_status(0)), "none");
    EXPECT_THAT(door.trace(), ElementsAre("log api_get_radio_status: Entering... radio: 0",
                                          "log api_get_radio_status: cmd: wifi0.disabled",
                                          "log api_get_radio_status: Get wifi0.disabled Failed"));
    EXPECT_EQ(owned(ops.api_get_radio_status(-7)), "none");
    EXPECT_EQ(door.trace().back(), "log api_get_radio_status: Get wifi-7.disabled Failed");
}

using FixedInformation = AccessPoint;

TEST_F(FixedInformation, TheModulationIsAlwaysTheSame) {
    for (const int radio : {0, 1, -5}) {
        door.forget();
        EXPECT_EQ(owned(ops.api_get_radio_modulation(radio)), "OFDM");
        EXPECT_THAT(door.trace(), ElementsAre("log api_get_radio_modulation: Entering... radio:" +
                                                  std::to_string(radio),
                                              "log api_get_radio_modulation: End... "
                                              "modulation:OFDM"));
    }
}

TEST_F(FixedInformation, TheUseOfAirTimeIsNotMeasured) {
    EXPECT_EQ(ops.api_get_wlanutil(1), 0);
    EXPECT_THAT(door.trace(), ElementsAre("log api_get_wlanutil: Entering... radio:1, not support",
                                          "log api_get_wlanutil: End... wlan_util=0"));
}

class Neighbors : public AccessPoint {
protected:
    static constexpr const char* list = "/tmp/neighbor_ap_list";
    char buffer[24] = "0123456789012345678901#";
};

TEST_F(Neighbors, AreToldByThePathOfTheirList) {
    write_file(list, "");
    EXPECT_EQ(ops.api_get_neighbors(buffer, nullptr), 0);
    EXPECT_STREQ(buffer, list);
    EXPECT_EQ(buffer[22], '#') << "nothing behind the path is written";
    EXPECT_THAT(door.trace(), ElementsAre("log api_get_neighbors: Entering...",
                                          "log api_get_neighbors: File is exist: "
                                          "/tmp/neighbor_ap_list"));
}

TEST_F(Neighbors, WithoutAListAreNotTold) {
    EXPECT_EQ(ops.api_get_neighbors(buffer, buffer), -1);
    EXPECT_STREQ(buffer, "0123456789012345678901#");
    EXPECT_THAT(door.trace(), ElementsAre("log api_get_neighbors: Entering...",
                                          "log api_get_neighbors: File is not exist"));
    write_file(list, "");
    door.fail(Call::fopen);
    EXPECT_EQ(ops.api_get_neighbors(buffer, nullptr), -1) << "nor when it cannot be opened";
}

TEST_F(Neighbors, WithoutABufferAreNotTold) {
    write_file(list, "");
    EXPECT_EQ(ops.api_get_neighbors(nullptr, nullptr), -1);
}

} // namespace orlo::test
