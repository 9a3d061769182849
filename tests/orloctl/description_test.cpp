// SPDX-License-Identifier: MIT
// Checking a description: every mistake has its sentence, and all of them are told.
#include "describe.h"

using namespace orloctl;

namespace {

// A description whose second radio has one more member.
std::string radio_1(const std::string& member) {
    return R"({"radios": [{"radio": 0}, {"radio": 1, )" + member + "}]}";
}

} // namespace

TEST(Description, holds_what_is_written) {
    const Description description = read_description(
        R"({"radios": [{"radio": 1, "enabled": true, "override": "force-disable", "channel": 36,
                        "second_channel": -1, "power_percent": 80}],
            "profile": {"id": 7, "profile_hash": "p", "config_hash": "c"}})",
        "ap.json", true);
    ASSERT_EQ(description->radios.count, 1U);
    const RadioDescription& radio = *description->radios.first;
    EXPECT_EQ(radio.radio, 1);
    EXPECT_EQ(radio.enabled, 1);
    EXPECT_STREQ(radio.override_status, "force-disable");
    EXPECT_EQ(radio.channel, 36);
    EXPECT_EQ(radio.second_channel, -1);
    EXPECT_EQ(radio.power_percent, 80);
    EXPECT_EQ(radio.settings, nullptr);
    EXPECT_EQ(radio.hardware, nullptr);
    EXPECT_EQ(radio.vaps, nullptr);
    EXPECT_EQ(description->profile.id, 7);
    EXPECT_STREQ(description->profile.profile_hash, "p");
    EXPECT_STREQ(description->profile.config_hash, "c");
}

TEST(Description, may_be_empty) {
    EXPECT_EQ(refusal("{}"), "accepted");
    EXPECT_EQ(refusal(R"({"radios": [], "profile": {}})"), "accepted");
}

TEST(Description, wrong_json_is_told_with_line_and_column) {
    EXPECT_EQ(refusal("{\n  \"radios\": [\n}").substr(0, 12), "ap.json:3:1:");
    EXPECT_EQ(refusal("").substr(0, 10), "ap.json:1:");
    EXPECT_EQ(refusal(R"({"radios": [], "radios": []})"),
              "ap.json:1:23: duplicate object key near '\"radios\"'");
}

TEST(Description, each_rule_of_a_radio_has_its_sentence) {
    const Case cases[] = {
        {radio_1(R"("channel": 170)"), "radios[1].channel: 170 is not 0 or in 36..165"},
        {radio_1(R"("channel": 35)"), "radios[1].channel: 35 is not 0 or in 36..165"},
        {radio_1(R"("channel": -1)"), "radios[1].channel: -1 is not 0 or in 36..165"},
        {radio_1(R"("second_channel": 6)"),
         "radios[1].second_channel: 6 is not -1, 0 or in 36..165"},
        {radio_1(R"("power_percent": 101)"), "radios[1].power_percent: 101 is not in 0..100"},
        {radio_1(R"("power_percent": -1)"), "radios[1].power_percent: -1 is not in 0..100"},
        {radio_1(R"("enabled": 2)"), "radios[1].enabled: 2 is not true or false"},
        {radio_1(R"("override": "off")"),
         R"(radios[1].override: "off" is not "not-override" or "force-disable")"},
        {radio_1(R"("chanel": 36)"),
         "radios[1].chanel: unknown member, known are radio, enabled, override, channel, "
         "second_channel, power_percent, settings, hardware, vaps, mesh, access"},
        {R"({"radios": [{"radio": 0, "channel": 14}]})",
         "radios[0].channel: 14 is not 0 or in 1..13"},
        {R"({"radios": [{"radio": 0, "second_channel": 36}]})",
         "radios[0].second_channel: 36 is not -1 or 0"},
        {R"({"radios": [{"radio": 2}]})", "radios[0].radio: 2 is not in 0..1"},
        {R"({"radios": [{"channel": 36}]})", "radios[0].radio: is missing"},
        {R"({"radios": [{"radio": 1}, {"radio": 0}, {"radio": 1}]})",
         "radios[2].radio: 1 is described already, by radios[0]"},
    };
    for (const Case& mistake : cases) {
        EXPECT_EQ(refusal(mistake.text), mistake.sentence) << mistake.text;
    }
}

TEST(Description, each_type_has_its_sentence) {
    const Case cases[] = {
        {"[]", "the description: [] is not an object"},
        {R"("text")", "the description: \"text\" is not an object"},
        {R"({"radios": {}})", "radios: {} is not an array"},
        {R"({"radios": [5]})", "radios[0]: 5 is not an object"},
        {R"({"profile": null})", "profile: null is not an object"},
        {radio_1(R"("channel": "36")"), "radios[1].channel: \"36\" is not an integer"},
        {radio_1(R"("channel": 36.0)"), "radios[1].channel: 36.0 is not an integer"},
        {radio_1(R"("channel": true)"), "radios[1].channel: true is not an integer"},
        {radio_1(R"("channel": null)"), "radios[1].channel: null is not an integer"},
        {radio_1(R"("channel": 99999999999)"),
         "radios[1].channel: 99999999999 does not fit an int (-2147483648 to 2147483647)"},
        {radio_1(R"("enabled": "1")"), "radios[1].enabled: \"1\" is not true or false"},
        {radio_1(R"("override": 0)"), "radios[1].override: 0 is not a text"},
        {R"({"profil": {}})",
         "profil: unknown member, known are system, radios, quilt, wds, known_clients, "
         "portal_address, profile"},
    };
    for (const Case& mistake : cases) {
        EXPECT_EQ(refusal(mistake.text), mistake.sentence) << mistake.text;
        EXPECT_EQ(refusal(mistake.text, false), mistake.sentence) << mistake.text;
    }
}

TEST(Description, each_rule_of_the_profile_has_its_sentence) {
    const Case cases[] = {
        {R"({"profile": {"id": -1}})", "profile.id: -1 is not in 0..2147483647"},
        {R"({"profile": {"profile_hash": ")" + std::string(128, 'a') + "\"}}",
         "profile.profile_hash: a text of 128 bytes is longer than 127"},
        {R"({"profile": {"hash": "a"}})",
         "profile.hash: unknown member, known are id, profile_hash, config_hash"},
    };
    for (const Case& mistake : cases) {
        EXPECT_EQ(refusal(mistake.text), mistake.sentence) << mistake.text;
    }
    EXPECT_EQ(refusal(R"({"profile": {"profile_hash": ")" + std::string(127, 'a') + "\"}}"),
              "accepted");
}

TEST(Description, the_ends_of_ranges_are_inside) {
    for (const std::string channel : {"0", "36", "165"}) {
        EXPECT_EQ(refusal(radio_1("\"channel\": " + channel)), "accepted");
    }
    for (const std::string channel : {"0", "1", "13"}) {
        EXPECT_EQ(refusal(R"({"radios": [{"radio": 0, "channel": )" + channel + "}]}"), "accepted");
    }
    for (const std::string percent : {"0", "100"}) {
        EXPECT_EQ(refusal(radio_1("\"power_percent\": " + percent)), "accepted");
    }
}

TEST(Description, all_mistakes_are_told_at_once) {
    EXPECT_EQ(refusal(R"({"radios": [{"radio": 0, "channel": 14, "power": 5},
                                     {"radio": 1, "enabled": "yes"}],
                          "profile": {"id": "seven"}})"),
              "radios[0].power: unknown member, known are radio, enabled, override, channel, "
              "second_channel, power_percent, settings, hardware, vaps, mesh, access\n"
              "radios[0].channel: 14 is not 0 or in 1..13\n"
              "radios[1].enabled: \"yes\" is not true or false\n"
              "profile.id: \"seven\" is not an integer");
}

TEST(Description, values_pass_unchecked_where_the_library_shall_refuse_them) {
    EXPECT_EQ(refusal(R"({"radios": [{"radio": 5, "channel": 170, "override": "Off"},
                                     {"radio": 5}]})",
                      false),
              "accepted");
}

TEST(Description, a_flag_may_be_written_as_a_number) {
    EXPECT_EQ(refusal(radio_1(R"("enabled": 1)")), "accepted");
    EXPECT_EQ(refusal(radio_1(R"("enabled": 0)")), "accepted");
}

TEST(Description, the_examples_are_right) {
    const std::string path = EXAMPLES "/radio-profile.json";
    const Description description = read_description(read_file(path), path, true);
    EXPECT_EQ(description->radios.count, 2U);
    EXPECT_NE(description->profile.profile_hash, nullptr);
}

TEST(Description, the_office_has_its_settings_hardware_and_vaps) {
    const std::string path = EXAMPLES "/office.json";
    const Description description = read_description(read_file(path), path, true);
    ASSERT_EQ(description->radios.count, 2U);
    const RadioDescription& radio = description->radios.first[1];
    EXPECT_STREQ(radio.settings->interface_name, "wlan1");
    EXPECT_STREQ(radio.hardware->eligible_channels, "36 40 44 48 149 153 157 161");
    EXPECT_STREQ(radio.vaps[3].ssid, "Office Lab");
    EXPECT_EQ(radio.vaps[3].status, 1);
    EXPECT_EQ(radio.vaps[4].status, 0);
    EXPECT_EQ(radio.vaps[15].status, 0);
}

TEST(Description, the_hotspot_has_its_portals_and_its_time) {
    const std::string path = EXAMPLES "/hotspot.json";
    const Description description = read_description(read_file(path), path, true);
    for (const RadioDescription& radio : description->radios) {
        ASSERT_EQ(radio.access.count, 1U);
        const cp_settings& portal = *radio.access.first->captive_portal;
        EXPECT_STREQ(portal.auth_mode, "ext-page-redirect");
        EXPECT_STREQ(portal.ext_page_url, "https://portal.example.net/welcome");
        EXPECT_STREQ(portal.walled_garden[2], "192.0.2.0/28");
        EXPECT_EQ(portal.walled_garden[3], nullptr);
        EXPECT_STREQ(portal.auth_servers[1].secret, "second-portal-secret");
    }
    EXPECT_STREQ(description->system.time.zone, "Europe/Vienna");
    EXPECT_STREQ(description->system.time.daylight_saving->end.month, "October");
    EXPECT_STREQ(description->portal_address, "198.51.100.1");
}

TEST(Description, the_wds_child_has_its_link) {
    const std::string path = EXAMPLES "/wds-child.json";
    const Description description = read_description(read_file(path), path, true);
    ASSERT_NE(description->wds, nullptr);
    EXPECT_STREQ(description->wds[0].radio_intf, "wlan1");
    EXPECT_STREQ(description->wds[0].wds_mode, "child");
    EXPECT_EQ(description->wds[0].wpa.mfp, 1);
    EXPECT_EQ(description->wds[1].radio_intf, nullptr);
    EXPECT_STREQ(description->radios.first[1].vaps[0].ssid, description->wds[0].ssid);
}

TEST(Description, a_file_that_cannot_be_read_is_refused) {
    const auto reading = [](const std::string& path) -> std::string {
        try {
            return "read " + std::to_string(read_file(path).size()) + " bytes";
        } catch (const Refusal& refused) {
            return refused.what();
        }
    };
    EXPECT_EQ(reading("/nowhere/ap.json"),
              "cannot read /nowhere/ap.json: No such file or directory");
    EXPECT_EQ(reading("/"), "cannot read /: Is a directory");
    EXPECT_EQ(reading("/dev/zero"), "/dev/zero is larger than a description can be (1 MB)");
}
