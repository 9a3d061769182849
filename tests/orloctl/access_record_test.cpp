// SPDX-License-Identifier: MIT
// MAC authentication, captive portals and known clients as the library gets them, and every rule
// about them.
#include "describe.h"

using namespace orloctl;

namespace {

std::string access(const std::string& members) {
    return radio(R"("access": [{"vap": 2, )" + members + "}]");
}

std::string servers(const std::string& list) {
    return access("\"mac_auth_servers\": " + list);
}

std::string portal(const std::string& members) {
    return access("\"captive_portal\": {" + members + "}");
}

std::string agreed(const std::string& members) {
    return portal("\"auth_mode\": \"click-through\", " + members);
}

std::string clients(const std::string& members) {
    return "{\"known_clients\": {" + members + "}}";
}

const VapAccessDescription& only_access(const Description& description) {
    return *description->radios.first->access.first;
}

std::string garden(size_t entries) {
    std::string list;
    for (size_t i = 0; i < entries; i++) {
        list += (i == 0 ? "\"d" : ", \"d") + std::to_string(i) + "\"";
    }
    return "\"walled_garden_enable\": true, \"walled_garden\": [" + list + "]";
}

} // namespace

TEST(AccessRecord, mac_authentication_has_what_is_written) {
    const Description description = description_of(access(R"(
        "mac_filter_mode": 2, "mac_auth_critical_mode": 1,
        "mac_auth_servers": [{"index": 2, "ip": "192.0.2.2", "key": "two"},
            {"index": 1, "ip": "192.0.2.1", "key": "one", "port": 1645,
             "username_separator": "colon", "username_case": "upper",
             "password_format": "fixed-password", "password": "fixed"}])"));
    const VapAccessDescription& access = only_access(description);
    EXPECT_EQ(access.vap, 2);
    EXPECT_EQ(access.mac_filter_mode, 2);
    EXPECT_EQ(access.mac_auth_critical_mode, 1);
    EXPECT_EQ(access.captive_portal, nullptr);
    ASSERT_EQ(access.mac_auth_servers.count, 2U);
    const mac_auth_radius_server& secondary = access.mac_auth_servers.first[0];
    EXPECT_EQ(secondary.index, 2U);
    EXPECT_EQ(shown(secondary.ip), "192.0.2.2");
    EXPECT_EQ(shown(secondary.key), "two");
    EXPECT_EQ(secondary.port, 1812U);
    EXPECT_EQ(shown(secondary.username_separator), "hyphen");
    EXPECT_EQ(shown(secondary.username_case), "lower");
    EXPECT_EQ(shown(secondary.password_format), "username");
    EXPECT_EQ(secondary.password, nullptr);
    const mac_auth_radius_server& primary = access.mac_auth_servers.first[1];
    EXPECT_EQ(primary.index, 1U);
    EXPECT_EQ(primary.port, 1645U);
    EXPECT_EQ(shown(primary.username_separator), "colon");
    EXPECT_EQ(shown(primary.username_case), "upper");
    EXPECT_EQ(shown(primary.password_format), "fixed-password");
    EXPECT_EQ(shown(primary.password), "fixed");
}

TEST(AccessRecord, each_rule_of_mac_authentication_has_its_sentence) {
    const std::string at = "radios[0].access[0].";
    const std::string server = at + "mac_auth_servers[0].";
    const Case cases[] = {
        {radio(R"("access": [{}])"), at + "vap: is missing"},
        {radio(R"("access": [{"vap": 16}])"), at + "vap: 16 is not in 0..15"},
        {radio(R"("access": [{"vap": 1}, {"vap": 1}])"),
         "radios[0].access[1].vap: 1 is described already, by radios[0].access[0]"},
        {access(R"("mac_filter_mode": 7, "mac_auth_critical_mode": -3)"), "accepted"},
        {servers("[]"), "accepted"},
        {servers("[{}]"),
         server + "index: is missing\n" + server + "ip: is missing\n" + server + "key: is missing"},
        {servers(R"([{"index": 0, "ip": "a", "key": "k"}])"), server + "index: 0 is not in 1..2"},
        {servers(R"([{"index": 3, "ip": "a", "key": "k"}])"), server + "index: 3 is not in 1..2"},
        {servers(R"([{"index": 1, "ip": "", "key": ""}])"), "accepted"},
        {servers(R"([{"index": 1, "ip": "a", "key": "k", "port": 65536}])"),
         server + "port: 65536 is not in 0..65535"},
        {servers(R"([{"index": 1, "ip": "a", "key": "k", "password_format": "fixed-password"}])"),
         server + "password: is missing, \"fixed-password\" needs it"},
        {servers(R"([{"index": 2, "ip": "a", "key": "k", "password_format": "fixed-password"}])"),
         "accepted"},
        {servers(R"([{"index": 1, "ip": "a", "key": "k"}, {"index": 1, "ip": "b", "key": "k"}])"),
         at + "mac_auth_servers[1].index: 1 is described already, by " + at +
             "mac_auth_servers[0]"},
    };
    expect_sentences(cases);
}

TEST(AccessRecord, a_portal_has_what_is_written_member_by_member) {
    const Description description = description_of(portal(R"(
        "enable": true, "auth_mode": "radius", "http_proxy_enable": true,
        "http_proxy_base_url": "proxy", "redirect_mode": "fixed-url", "redirect_url": "url",
        "ext_page_url": "page", "auth_servers": [{"server": "one", "secret": "first"},
                                                 {"server": "two", "secret": "second"}],
        "auth_port": 1645, "acct_enable": true, "acct_port": 1646, "walled_garden_enable": true,
        "walled_garden": ["a", "b"], "session_timeout": 60, "session_timeout_action": "act")"));
    const cp_settings& cp = *only_access(description).captive_portal;
    EXPECT_EQ(cp.enable, 1);
    EXPECT_EQ(shown(cp.auth_mode), "radius");
    EXPECT_EQ(cp.http_proxy_enable, 1);
    EXPECT_EQ(shown(cp.http_proxy_base_url), "proxy");
    EXPECT_EQ(shown(cp.redirect_mode), "fixed-url");
    EXPECT_EQ(shown(cp.redirect_url), "url");
    EXPECT_EQ(shown(cp.ext_page_url), "page");
    EXPECT_EQ(shown(cp.auth_servers[0].server) + shown(cp.auth_servers[0].secret), "onefirst");
    EXPECT_EQ(shown(cp.auth_servers[1].server) + shown(cp.auth_servers[1].secret), "twosecond");
    EXPECT_EQ(cp.auth_port, 1645);
    EXPECT_EQ(cp.acct_enable, 1);
    EXPECT_EQ(cp.acct_port, 1646);
    EXPECT_EQ(cp.walled_garden_enable, 1);
    EXPECT_EQ(shown(cp.walled_garden[0]), "a");
    EXPECT_EQ(shown(cp.walled_garden[1]), "b");
    EXPECT_EQ(cp.walled_garden[2], nullptr);
    EXPECT_EQ(cp.session_timeout, 60);
    EXPECT_EQ(shown(cp.session_timeout_action), "act");
}

TEST(AccessRecord, of_a_portal_what_is_left_out_gets_its_default) {
    const Description description = description_of(portal(R"("auth_mode": "click-through")"));
    const cp_settings& cp = *only_access(description).captive_portal;
    EXPECT_EQ(cp.enable, 1);
    EXPECT_EQ(cp.http_proxy_enable, 0);
    EXPECT_EQ(shown(cp.redirect_mode), "disable");
    EXPECT_EQ(cp.auth_servers[0].server, nullptr);
    EXPECT_EQ(cp.auth_port, 1812);
    EXPECT_EQ(cp.acct_enable, -1);
    EXPECT_EQ(cp.acct_port, 1813);
    EXPECT_EQ(cp.walled_garden_enable, 0);
    EXPECT_EQ(cp.walled_garden[0], nullptr);
    EXPECT_EQ(cp.session_timeout, -1);
    EXPECT_EQ(cp.session_timeout_action, nullptr);
}

TEST(AccessRecord, each_rule_of_a_portal_has_its_sentence) {
    const std::string at = "radios[0].access[0].captive_portal.";
    const Case cases[] = {
        {portal(""), at + "auth_mode: is missing"},
        {portal(R"("enable": false)"), "accepted"},
        {portal(R"("enable": false, "auth_mode": "garbage", "session_timeout": -9)"), "accepted"},
        {portal(R"("enable": 2)"), at + "enable: 2 is not true or false"},
        {portal(R"("auth_mode": "none")"),
         at + R"(auth_mode: "none" is not "click-through", "radius" or "ext-page-redirect")"},
        {agreed(R"("redirect_mode": "disabled")"),
         at + R"(redirect_mode: "disabled" is not "disable", "session-keep" or "fixed-url")"},
        {agreed(R"("redirect_mode": "fixed-url")"),
         at + "redirect_url: is missing, \"fixed-url\" needs it"},
        {agreed(R"("http_proxy_enable": true)"),
         at + "http_proxy_base_url: is missing, \"http_proxy_enable\" needs it"},
        {portal(R"("auth_mode": "ext-page-redirect")"),
         at + "ext_page_url: is missing, \"ext-page-redirect\" needs it"},
        {portal(R"("auth_mode": "radius")"),
         at + "auth_servers[0].server: is missing, \"radius\" needs it"},
        {portal(R"("auth_mode": "radius", "auth_servers": [{"server": "a"}])"),
         at + "auth_servers[0].secret: is missing, the server needs it"},
        {agreed(R"("auth_servers": [{}, {"server": "a"}])"),
         at + "auth_servers[1].secret: is missing, the server needs it"},
        {agreed(R"("auth_servers": [{}, {}, {}])"),
         at + "auth_servers: 3 elements are more than 2"},
        {agreed(R"("auth_port": 65536)"), at + "auth_port: 65536 is not in 0..65535"},
        {agreed(R"("acct_port": -1)"), at + "acct_port: -1 is not in 0..65535"},
        {agreed(R"("acct_enable": 2)"), at + "acct_enable: 2 is not true or false"},
        {agreed(R"("acct_enable": -1, "session_timeout": -1)"), "accepted"},
        {agreed(R"("session_timeout": 10000000)"),
         at + "session_timeout: 10000000 is not in 0..9999999"},
        {agreed(R"("walled_garden": ["a"])"),
         at + "walled_garden: is not looked at without \"walled_garden_enable\""},
        {agreed(garden(0)), "accepted"},
        {agreed(garden(50)), "accepted"},
        {agreed(garden(51)), at + "walled_garden: 51 elements are more than 50"},
        {agreed(R"("walled_garden_enable": true, "walled_garden": ["a", ""])"),
         at + "walled_garden[1]: is empty"},
        {agreed(R"("walled_garden_enable": true, "walled_garden": ["a", 5])"),
         at + "walled_garden[1]: 5 is not a text"},
        {agreed(R"("walled_garden_enable": true, "walled_garden": "a")"),
         at + "walled_garden: \"a\" is not an array"},
    };
    expect_sentences(cases);
}

TEST(AccessRecord, a_full_garden_is_full) {
    const Description description = description_of(agreed(garden(50)));
    const cp_settings& cp = *only_access(description).captive_portal;
    EXPECT_EQ(shown(cp.walled_garden[0]), "d0");
    EXPECT_EQ(shown(cp.walled_garden[49]), "d49");
    EXPECT_EQ(cp.session_timeout, -1); // behind it
}

TEST(AccessRecord, known_clients_are_a_chain_in_their_order) {
    const Description description = description_of(
        clients(R"("action": "white", "mac_list": ["02:00:00:00:00:01", "0A:00:00:00:00:02"])"));
    const knownClient_setup& setup = *description->known_clients;
    EXPECT_STREQ(setup.action, "white");
    ASSERT_NE(setup.mac_list, nullptr);
    EXPECT_STREQ(setup.mac_list->mac, "02:00:00:00:00:01");
    ASSERT_NE(setup.mac_list->next, nullptr);
    EXPECT_STREQ(setup.mac_list->next->mac, "0A:00:00:00:00:02");
    EXPECT_EQ(setup.mac_list->next->next, nullptr);

    const Description cleared = description_of(clients(R"("mac_list": [])"));
    EXPECT_STREQ(cleared->known_clients->action, "");
    EXPECT_EQ(cleared->known_clients->mac_list, nullptr);
    EXPECT_EQ(description_of("{}")->known_clients, nullptr);
}

TEST(AccessRecord, each_rule_of_known_clients_has_its_sentence) {
    const std::string like = " is not an address like 02:00:00:00:00:01";
    const auto listed = [](const std::string& address) {
        return clients("\"mac_list\": [\"" + address + "\"]");
    };
    const Case cases[] = {
        {clients(R"("action": "black")"), "known_clients.mac_list: is missing"},
        {clients(R"("action": "grey", "mac_list": [])"),
         "known_clients.action: \"grey\" is not \"white\" or \"black\""},
        {listed(""), "known_clients.mac_list[0]: is empty"},
        {listed("02-00-00-00-00-01"), "known_clients.mac_list[0]: \"02-00-00-00-00-01\"" + like},
        {listed("02:00:00:00:00:0"), "known_clients.mac_list[0]: \"02:00:00:00:00:0\"" + like},
        {listed("02:00:00:00:00:0g"), "known_clients.mac_list[0]: \"02:00:00:00:00:0g\"" + like},
        {listed("02:00:00:00:00:01"), "accepted"},
    };
    expect_sentences(cases);
    const Case impossible[] = {
        {listed("123456789012345678"),
         "known_clients.mac_list[0]: a text of 18 bytes is longer than 17"},
        {clients(R"("action": "whitelist", "mac_list": [])"),
         "known_clients.action: a text of 9 bytes is longer than 8"},
        {clients(R"("mac_list": [5])"), "known_clients.mac_list[0]: 5 is not a text"},
        {clients(R"("mac_list": "a")"), "known_clients.mac_list: \"a\" is not an array"},
    };
    expect_sentences(impossible, false);
    const Description unchecked = description_of(listed("seventeen letters"), false);
    EXPECT_STREQ(unchecked->known_clients->mac_list->mac, "seventeen letters");
}

TEST(AccessRecord, the_portals_address_may_be_none) {
    EXPECT_EQ(shown(description_of(R"({"portal_address": "192.0.2.1"})")->portal_address),
              "192.0.2.1");
    EXPECT_EQ(shown(description_of(R"({"portal_address": ""})")->portal_address), "");
    EXPECT_EQ(description_of("{}")->portal_address, nullptr);
}
