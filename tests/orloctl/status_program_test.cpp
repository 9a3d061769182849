// SPDX-License-Identifier: MIT
// orloctl status, with a double of the vendor library.
#include "program.h"

using testing::HasSubstr;

TEST_F(Orloctl, status_shows_what_can_be_read_and_calls_the_rest_unknown) {
    const Ended ended = orloctl({"status"});
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.out, "                 radio 0  radio 1\n"
                         "enabled          yes      unknown\n"
                         "force-disable    yes      unknown\n"
                         "channel          0        0\n"
                         "second channel   none     none\n"
                         "power percent    0        0\n"
                         "max power (dBm)  20.1     20.1\n"
                         "\n"
                         "radio  VAP  state  VLAN  security      hidden  SSID\n"
                         "0      0    up     20    WPA+WPA2 ent  no      two?lines\n"
                         "0      1    down   4094  WPA2+WPA3     yes     Caf\xC3\xA9 1234567890 "
                         "1234567890 1234\n"
                         "\n"
                         "profile id    0\n"
                         "profile hash  a text\n"
                         "config hash   a text\n");
}

TEST_F(Orloctl, status_as_json_holds_what_the_table_shows) {
    let_fail("api_get_channel");
    const Json object = parsed(orloctl({"status", "--json"}).out);
    json_t* radios = json_object_get(object.get(), "radios");
    ASSERT_EQ(json_array_size(radios), 2U);
    EXPECT_TRUE(json_is_true(json_object_get(json_array_get(radios, 0), "enabled")));
    EXPECT_TRUE(json_is_null(json_object_get(json_array_get(radios, 1), "enabled")));
    EXPECT_TRUE(json_is_null(json_object_get(json_array_get(radios, 0), "channel")));
    json_t* profile = json_object_get(object.get(), "profile");
    EXPECT_STREQ(json_string_value(json_object_get(profile, "profile_hash")), "a text");
    EXPECT_THAT(orloctl({"status"}).out, HasSubstr("channel          unknown  unknown\n"));
}

TEST_F(Orloctl, status_lists_enabled_vaps_or_all_of_them) {
    const Json enabled = parsed(orloctl({"status", "--json"}).out);
    json_t* vaps = json_object_get(enabled.get(), "vaps");
    ASSERT_EQ(json_array_size(vaps), 2U);
    const json_t* second = json_array_get(vaps, 1);
    EXPECT_EQ(json_integer_value(json_object_get(second, "radio")), 0);
    EXPECT_EQ(json_integer_value(json_object_get(second, "vap")), 1);
    EXPECT_EQ(json_integer_value(json_object_get(second, "vlan_id")), 4094);
    EXPECT_STREQ(json_string_value(json_object_get(second, "state")), "down");
    EXPECT_STREQ(json_string_value(json_object_get(second, "security")), "WPA2+WPA3");
    EXPECT_TRUE(json_is_true(json_object_get(second, "hidden")));

    const Json all = parsed(orloctl({"status", "--json", "--all"}).out);
    vaps = json_object_get(all.get(), "vaps");
    ASSERT_EQ(json_array_size(vaps), 32U);
    EXPECT_TRUE(json_is_null(json_object_get(json_array_get(vaps, 31), "hidden")));
    const std::string table = orloctl({"status", "--all"}).out;
    EXPECT_THAT(table, HasSubstr("0      2    off    unknown  open          unknown  unknown\n"));
    EXPECT_THAT(table, HasSubstr("0      3    off    unknown  WEP           unknown  unknown\n"));
    EXPECT_THAT(table, HasSubstr("0      4    off    unknown  something     unknown  unknown\n"));
    EXPECT_THAT(table, HasSubstr("1      15   off    unknown  unknown       unknown  unknown\n"));
}

TEST_F(Orloctl, an_unset_profile_id_is_told_as_such) {
    let_fail("api_get_profile_id");
    EXPECT_THAT(orloctl({"status"}).out, HasSubstr("profile id    not set in this process\n"));
}
