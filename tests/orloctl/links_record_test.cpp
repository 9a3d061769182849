// WDS links as the library gets them, and every rule about them.
#include "describe.h"

using namespace orloctl;

namespace {

const std::string open_link = R"({"radio_intf": "wlan0", "security": "none", "wds_mode": "parent",
                                  "ssid": "link"})";

std::string links(const std::string& list, const std::string& radios = "") {
    return "{\"wds\": [" + list + "]" + (radios.empty() ? "" : ", \"radios\": " + radios) + "}";
}

std::string link(const std::string& members) {
    return links(R"({"radio_intf": "wlan1", )" + members + "}");
}

std::string secured(const std::string& wpa) {
    return link(R"("security": "wpa", "wds_mode": "child", "ssid": "link", "wpa": {)" + wpa + "}");
}

std::string keyed(const std::string& members) {
    return secured(R"("key": "passphrase", )" + members);
}

std::string vap(int index, bool enabled) {
    return R"({"vap": )" + std::to_string(index) +
           (enabled ? R"(, "ssid": "s", "vlan_id": 1})" : R"(, "status": false})");
}

} // namespace

TEST(LinksRecord, a_link_has_what_is_written) {
    const Description description = description_of(links(R"(
        {"radio_intf": "wlan1", "wds_mode": "child", "ssid": "link", "security": "wpa",
         "wpa": {"key": "passphrase", "version": ["WPA2"], "cipher": ["TKIP", "CCMP"],
                 "mfp": true, "bcast_key_refresh_rate": 60}})"));
    const wds_settings* links = description->wds;
    EXPECT_EQ(shown(links[0].radio_intf), "wlan1");
    EXPECT_EQ(shown(links[0].security), "wpa");
    EXPECT_EQ(shown(links[0].wds_mode), "child");
    EXPECT_EQ(shown(links[0].ssid), "link");
    EXPECT_EQ(shown(links[0].wpa.key), "passphrase");
    EXPECT_EQ(links[0].wpa.version, 2);
    EXPECT_EQ(links[0].wpa.cipher, 3);
    EXPECT_EQ(links[0].wpa.mfp, 1);
    EXPECT_EQ(links[0].wpa.bcast_key_refresh_rate, 60);
    EXPECT_EQ(links[1].radio_intf, nullptr);
}

TEST(LinksRecord, what_is_left_out_gets_its_default_or_is_no_link) {
    const Description secure = description_of(keyed(R"("version": ["WPA", "WPA2"])"));
    EXPECT_EQ(secure->wds[0].wpa.version, 3);
    EXPECT_EQ(secure->wds[0].wpa.cipher, 2);
    EXPECT_EQ(secure->wds[0].wpa.mfp, 0);
    EXPECT_EQ(secure->wds[0].wpa.bcast_key_refresh_rate, 3600);
    const Description none = description_of(links(""));
    ASSERT_NE(none->wds, nullptr);
    EXPECT_EQ(none->wds[0].radio_intf, nullptr);
    EXPECT_EQ(none->wds[1].radio_intf, nullptr);
    EXPECT_EQ(description_of("{}")->wds, nullptr);
}

TEST(LinksRecord, each_rule_of_a_link_has_its_sentence) {
    const std::string at = "wds[0].";
    const Case cases[] = {
        {links(open_link), "accepted"},
        {links("{}"), at + "radio_intf: is missing\n" + at + "security: is missing\n" + at +
                          "wds_mode: is missing\n" + at + "ssid: is missing"},
        {links(R"({"radio_intf": "wlan2", "security": "none", "wds_mode": "child", "ssid": "l"})"),
         at + R"(radio_intf: "wlan2" is not "wlan0" or "wlan1")"},
        {link(R"("security": "wep", "wds_mode": "child", "ssid": "l")"),
         at + R"(security: "wep" is not "wpa" or "none")"},
        {link(R"("security": "none", "wds_mode": "both", "ssid": "l")"),
         at + R"(wds_mode: "both" is not "parent" or "child")"},
        {link(R"("security": "none", "wds_mode": "child", "ssid": "")"), at + "ssid: is empty"},
        {link(R"("security": "none", "wds_mode": "child", "ssid": "l", "wpa": {})"),
         at + "wpa: is possible with security \"wpa\" only"},
        {link(R"("security": "wpa", "wds_mode": "child", "ssid": "l")"),
         at + "wpa.key: is missing\n" + at + "wpa.version: is missing"},
        {keyed(R"("version": ["WPA"])"), at + "wpa.version: WPA is not WPA2 or WPA+WPA2"},
        {keyed(R"("version": ["WPA3"])"), at + "wpa.version: WPA3 is not WPA2 or WPA+WPA2"},
        {keyed(R"("version": 2, "cipher": ["TKIP"])"),
         at + "wpa.cipher: TKIP is not CCMP or TKIP+CCMP"},
        {keyed(R"("version": 2, "mfp": 2)"), at + "wpa.mfp: 2 is not true or false"},
        {keyed(R"("version": 2, "mfp": 1)"), "accepted"},
        {keyed(R"("version": 3, "mfp": 1)"), at + "wpa.mfp: is possible with WPA2 alone"},
        {keyed(R"("version": 2, "bcast_key_refresh_rate": 86401)"),
         at + "wpa.bcast_key_refresh_rate: 86401 is not in 0..86400"},
        {keyed(R"("version": 2, "bcast_key_refresh_rate": 86400)"), "accepted"},
        {keyed(R"("version": 2, "bcast_key_refresh_rate": -1)"),
         at + "wpa.bcast_key_refresh_rate: -1 is not in 0..86400"},
        {secured(R"("version": 2, "key": "1234567")"),
         at + "wpa.key: must have 8 to 63 characters, or 64 hexadecimal digits"},
        {links(open_link + ", " + open_link), "wds[1].radio_intf: is the radio of wds[0] as well"},
        {links(open_link + ", " + open_link + ", " + open_link), "wds: 3 elements are more than 2"},
    };
    expect_sentences(cases);
}

TEST(LinksRecord, the_radio_of_a_link_has_one_vap) {
    const std::string sentence = "wds: the radio of a link has VAP 0 enabled, and no other";
    const auto with_vaps = [](int radio, const std::string& vaps) {
        return links(open_link,
                     R"([{"radio": )" + std::to_string(radio) + ", \"vaps\": [" + vaps + "]}]");
    };
    const Case cases[] = {
        {with_vaps(0, vap(0, true)), "accepted"},
        {with_vaps(0, vap(0, true) + ", " + vap(3, false)), "accepted"},
        {with_vaps(0, vap(0, true) + ", " + vap(15, true)), sentence},
        {with_vaps(0, vap(0, false)), sentence},
        {with_vaps(0, ""), sentence},
        {with_vaps(1, vap(5, true)), "accepted"}, // the other radio
        {links(open_link, R"([{"radio": 0}])"), "accepted"},
        {links("", R"([{"radio": 0, "vaps": []}])"), "accepted"},
    };
    expect_sentences(cases);
}

TEST(LinksRecord, unchecked_values_reach_the_records) {
    const Description description = description_of(
        links(R"({"radio_intf": "wlan2", "security": "wpa", "wpa": {"version": 1, "mfp": 9}},
                 {"ssid": "second"})"),
        false);
    EXPECT_EQ(shown(description->wds[0].radio_intf), "wlan2");
    EXPECT_EQ(description->wds[0].wpa.version, 1);
    EXPECT_EQ(description->wds[0].wpa.mfp, 9);
    EXPECT_EQ(description->wds[0].ssid, nullptr);
    EXPECT_EQ(shown(description->wds[1].ssid), "second");
}
