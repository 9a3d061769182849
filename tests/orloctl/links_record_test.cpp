// SPDX-License-Identifier: MIT
// WDS and mesh links as the library gets them, and every rule about them.
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

std::string mesh(const std::string& members, const std::string& others = "") {
    return radio(others + "\"mesh\": {" + members + "}");
}

// With `members` behind, or instead of, the usual ones.
std::string mesh_vap(const std::string& index, const std::string& ssid, const std::string& key,
                     const std::string& members = R"("acceptor": true, "connector": false)") {
    return R"("vap": {"vap": )" + index + R"(, "ssid": ")" + ssid + R"(", "key": ")" + key +
           "\", " + members + "}";
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

TEST(LinksRecord, a_mesh_has_what_is_written) {
    const Description description =
        description_of(mesh(R"("eligible_channels": [36, 40], "bandwidth": 80, )" +
                            mesh_vap("1", "mesh", "passphrase")));
    const MeshLinkDescription& mesh_link = *description->radios.first->mesh;
    EXPECT_EQ(shown(mesh_link.eligible_channels), "36 40");
    EXPECT_EQ(mesh_link.bandwidth, 80);
    EXPECT_EQ(mesh_link.vap->acceptor, 1);
    EXPECT_EQ(mesh_link.vap->connector, 0);
    EXPECT_EQ(mesh_link.vap->vap, 1);
    EXPECT_EQ(shown(mesh_link.vap->ssid), "mesh");
    EXPECT_EQ(shown(mesh_link.vap->key), "passphrase");
    EXPECT_EQ(description_of(radio(R"("enabled": true)"))->radios.first->mesh, nullptr);
    EXPECT_EQ(description_of(mesh(""))->radios.first->mesh->vap, nullptr);
}

TEST(LinksRecord, each_rule_of_a_mesh_has_its_sentence) {
    const std::string at = "radios[0].mesh.";
    const std::string together = at + "bandwidth: goes with \"eligible_channels\", one needs the "
                                      "other";
    const std::string numbers = at + "eligible_channels: must be numbers with one blank between "
                                     "them";
    const Case cases[] = {
        {mesh(""), "accepted"},
        {mesh(R"("eligible_channels": "36 40", "bandwidth": 20)"), "accepted"},
        {mesh(R"("eligible_channels": "36")"), together},
        {mesh(R"("bandwidth": 20)"), together},
        {mesh(R"("eligible_channels": "36  40", "bandwidth": 20)"), numbers},
        {mesh(R"("eligible_channels": "", "bandwidth": 20)"), numbers},
        {mesh(R"("eligible_channels": "36,40", "bandwidth": 20)"), numbers},
        {mesh(R"("eligible_channels": "36 ", "bandwidth": 20)"), numbers},
        {mesh(R"("eligible_channels": [36], "bandwidth": 160)"),
         at + "bandwidth: 160 is not 20, 40 or 80"},
        {mesh(R"("vap": {})"), at + "vap.acceptor: is missing\n" + at +
                                   "vap.connector: is missing\n" + at + "vap.vap: is missing\n" +
                                   at + "vap.ssid: is missing\n" + at + "vap.key: is missing"},
        {mesh(mesh_vap("0", "m", "passphrase")), "accepted"},
        {mesh(mesh_vap("2", "m", "passphrase")), at + "vap.vap: 2 is not in 0..1"},
        {mesh(mesh_vap("1", "", "passphrase")), at + "vap.ssid: is empty"},
        {mesh(mesh_vap("1", std::string(33, 's'), "passphrase")),
         at + "vap.ssid: a text of 33 bytes is longer than 32"},
        {mesh(mesh_vap("1", "m", "1234567")),
         at + "vap.key: must have 8 to 63 characters, or 64 hexadecimal digits"},
        {mesh(mesh_vap("1", "m", "passphrase", R"("acceptor": 2, "connector": 2)")),
         at + "vap.acceptor: 2 is not true or false\n" + at +
             "vap.connector: 2 is not true or false"},
    };
    expect_sentences(cases);
}

TEST(LinksRecord, the_radio_of_a_mesh_has_room_for_it) {
    const std::string sentence =
        "radios[0].vaps: enables a VAP that the mesh takes or switches off";
    const auto with_vaps = [](const std::string& mesh_index, const std::string& vaps) {
        return mesh(mesh_vap(mesh_index, "m", "passphrase"), "\"vaps\": [" + vaps + "], ");
    };
    const Case cases[] = {
        {with_vaps("1", vap(0, true)), "accepted"},
        {with_vaps("0", vap(1, true)), "accepted"},
        {with_vaps("1", ""), "accepted"},
        {with_vaps("1", vap(0, true) + ", " + vap(15, false)), "accepted"},
        {with_vaps("1", vap(1, true)), sentence},
        {with_vaps("0", vap(0, true)), sentence},
        {with_vaps("1", vap(2, true)), sentence},
        {with_vaps("1", vap(15, true)), sentence},
        {mesh("", "\"vaps\": [" + vap(15, true) + "], "), "accepted"},
        {links(R"({"radio_intf": "wlan1", "security": "none", "wds_mode": "child", "ssid": "l"})",
               R"([{"radio": 1, "mesh": {)" + mesh_vap("1", "m", "passphrase") + "}}]"),
         "wds: the radio of a link has VAP 0 enabled, and no other"},
        {links(R"({"radio_intf": "wlan0", "security": "none", "wds_mode": "child", "ssid": "l"})",
               R"([{"radio": 1, "mesh": {)" + mesh_vap("1", "m", "passphrase") + "}}]"),
         "accepted"},
    };
    expect_sentences(cases);
}

TEST(LinksRecord, a_mesh_passes_unchecked_where_the_library_shall_refuse_it) {
    const Description description = description_of(
        mesh(R"("eligible_channels": "x", "bandwidth": 160, "vap": {"vap": 99, "acceptor": 7})"),
        false);
    const MeshLinkDescription& mesh_link = *description->radios.first->mesh;
    EXPECT_EQ(shown(mesh_link.eligible_channels), "x");
    EXPECT_EQ(mesh_link.bandwidth, 160);
    EXPECT_EQ(mesh_link.vap->vap, 99);
    EXPECT_EQ(mesh_link.vap->acceptor, 7);
    EXPECT_EQ(mesh_link.vap->connector, 0);
    EXPECT_EQ(mesh_link.vap->ssid, nullptr);
}
