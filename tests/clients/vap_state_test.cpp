// SPDX-License-Identifier: MIT
// What is reported of a VAP beside its counters: its SSID and whether it is up.
#include "support/access_point.h"

#include <climits>
#include <memory>

namespace orlo::test {

class VapSsid : public AccessPoint {
protected:
    std::string get(int radio, int vap) const {
        const std::unique_ptr<char, decltype(&free)> text(ops.api_get_vap_ssid(radio, vap), free);
        return text == nullptr ? "(NULL)" : text.get();
    }
};

TEST_F(VapSsid, IsTheConfiguredOne) {
    configure("wireless.wifi1vap15.ssid", "Caf\xC3\xA9 5 GHz");
    EXPECT_EQ(get(1, 15), "Caf\xC3\xA9 5 GHz");
    EXPECT_THAT(door.trace(), ElementsAre("log api_get_vap_ssid: Entering... radio=2 vap=15",
                                          "log api_get_vap_ssid: End... ssid=Caf\xC3\xA9 5 GHz"));
}

TEST_F(VapSsid, OfADisabledVapIsToldAsWell) {
    configure("wireless.wifi0vap7.disabled", "1");
    configure("wireless.wifi0vap7.ssid", "sleeping");
    EXPECT_EQ(get(0, 7), "sleeping");
}

TEST_F(VapSsid, MayBeStagedOnly) {
    ASSERT_EQ(exported<decltype(uciSetValue)>("uciSetValue")("wireless", "wifi0vap0.ssid", "new"),
              0);
    EXPECT_EQ(get(0, 0), "new");
}

TEST_F(VapSsid, ThatIsNotSetIsNone) {
    configure("wireless.wifi0vap2.ssid", "");
    EXPECT_EQ(get(0, 2), "(NULL)");
    EXPECT_THAT(door.trace(),
                ElementsAre("log api_get_vap_ssid: Entering... radio=1 vap=2",
                            "log api_get_vap_ssid: uci get wireless.wifi0vap2.ssid Failed!"));
}

TEST_F(VapSsid, OfAVapThatDoesNotExistIsNone) {
    EXPECT_EQ(get(2, 0), "(NULL)");
    EXPECT_EQ(get(0, 16), "(NULL)");
    door.forget();
    EXPECT_EQ(get(INT_MAX, INT_MIN), "(NULL)");
    EXPECT_THAT(
        door.trace(),
        ElementsAre("log api_get_vap_ssid: Entering... radio=-2147483648 vap=-2147483648",
                    "log api_get_vap_ssid: uci get wireless.wifi2147483647vap-2147483648.ss "
                    "Failed!"));
}

TEST_F(VapSsid, OfThirtyTwoCharactersIsWholeAndALongerTextEndsBehindThirtyThree) {
    configure("wireless.wifi0vap0.ssid", std::string(32, 's'));
    EXPECT_EQ(get(0, 0), std::string(32, 's'));
    configure("wireless.wifi0vap0.ssid", std::string(200, 's'));
    EXPECT_EQ(get(0, 0), std::string(33, 's'));
}

using VapStatus = AccessPoint;

TEST_F(VapStatus, IsUpWhileItsInterfaceIsListed) {
    EXPECT_EQ(ops.api_get_vap_status(1, 0), 1);
    EXPECT_THAT(door.trace(), ElementsAre("log api_get_vap_status: Entering... radio=2 vap=0",
                                          "read ifconfig | grep -e '^wdev1ap0 ' | awk '{print $1}'",
                                          "log api_get_vap_status: End... status=1"));
}

TEST_F(VapStatus, IsDownOtherwise) {
    EXPECT_EQ(ops.api_get_vap_status(0, 15), 0);
    EXPECT_THAT(door.trace(),
                ElementsAre("log api_get_vap_status: Entering... radio=1 vap=15",
                            "read ifconfig | grep -e '^wdev0ap15 ' | awk '{print $1}'",
                            "log api_get_vap_status: End... status=0"));
    door.fail(Call::popen);
    EXPECT_EQ(ops.api_get_vap_status(1, 0), 0) << "when it cannot be told";
}

TEST_F(VapStatus, OfAVapThatDoesNotExistIsDown) {
    EXPECT_EQ(ops.api_get_vap_status(2, 0), 0);
    EXPECT_EQ(ops.api_get_vap_status(0, 16), 0);
    EXPECT_EQ(ops.api_get_vap_status(-1, -1), 0);
    EXPECT_EQ(door.trace().back(), "log api_get_vap_status: End... status=0");
}

} // namespace orlo::test
