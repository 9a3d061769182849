// SPDX-License-Identifier: MIT
// What is hidden from those who look over somebody's shoulder.
#include "secrets.h"

#include <gtest/gtest.h>

using orloctl::Secrets;

TEST(Secrets, are_known_by_their_names) {
    for (const char* name :
         {"key", "key1", "wireless.wifi0vap0.wpakey", "wepkey4", "aes_key", "auth_secret",
          "auth_secret_second", "cp_pri_auth_secret", "sae_password", "password", "passphrase",
          "snmpd.public.community", "read_only_community", "quilt.config_quilt.secret"}) {
        EXPECT_TRUE(Secrets::is_secret(name)) << name;
    }
    for (const char* name :
         {"ssid", "key_holder_list", "wpa_group_rekey", "rekey", "r0_key_lifetime",
          "session_key_refresh_rate", "wireless.key.ssid", ""}) {
        EXPECT_FALSE(Secrets::is_secret(name)) << name;
    }
}

TEST(Secrets, are_hidden_as_values_and_wherever_they_stand_in_a_text) {
    Secrets secrets(false);
    secrets.learn("wireless.wifi0vap0.key", "open sesame");
    secrets.learn("ssid", "Lobby");
    EXPECT_EQ(secrets.value("a.b.key", "anything"), "********");
    EXPECT_EQ(secrets.value("a.b.key", ""), "");
    EXPECT_EQ(secrets.value("a.b.ssid", "Lobby"), "Lobby");
    EXPECT_EQ(secrets.text("key:open sesame, again:open sesame"), "key:********, again:********");
    EXPECT_EQ(secrets.text("Lobby"), "Lobby");
}

TEST(Secrets, that_are_parts_of_others_leave_nothing_of_them) {
    Secrets secrets(false);
    secrets.learn("key", "sesame");
    secrets.learn("key", "open sesame now");
    EXPECT_EQ(secrets.text("'open sesame now'"), "'********'");
}

TEST(Secrets, too_short_to_be_told_from_other_words_are_hidden_by_name_only) {
    Secrets secrets(false);
    secrets.learn("key", "1");
    EXPECT_EQ(secrets.text("radio 1"), "radio 1");
    EXPECT_EQ(secrets.value("key", "1"), "********");
}

TEST(Secrets, do_not_include_the_community_that_everybody_knows) {
    Secrets secrets(false);
    secrets.learn("snmpd.public.community", "public");
    EXPECT_EQ(secrets.text("snmpd.public.community"), "snmpd.public.community");
    EXPECT_EQ(secrets.value("snmpd.public.community", "public"), "public");
}

TEST(Secrets, are_found_in_descriptions) {
    const orloctl::Json json(json_loads(
        R"({"vaps": [{"wpa": {"key": "open sesame"}}], "secret": ["first one"]})", 0, nullptr));
    Secrets secrets(false);
    secrets.learn(json.get());
    EXPECT_EQ(secrets.text("open sesame, first one"), "********, ********");
}

TEST(Secrets, are_shown_to_those_who_ask) {
    Secrets secrets(true);
    secrets.learn("key", "open sesame");
    EXPECT_EQ(secrets.text("open sesame"), "open sesame");
    EXPECT_EQ(secrets.value("key", "open sesame"), "open sesame");
}
