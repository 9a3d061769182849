// SPDX-License-Identifier: MIT
// The SNMP daemon's settings as the library gets them, and every rule about them.
#include "describe.h"
#include "operations.h"

using namespace orloctl;

namespace {

std::string snmp(const std::string& members) {
    return R"({"system": {"snmp": {)" + members + "}}}";
}

std::string v2(const std::string& members) {
    return snmp(R"("version": "v1/v2c", "read_only_community": "c")" +
                (members.empty() ? "" : ", " + members));
}

std::string v3(const std::string& members) {
    return snmp("\"version\": \"v3\", " + members);
}

const snmp_settings& settings(const Description& description) {
    return *description->system.snmp;
}

std::string text_of(size_t size) {
    return "\"" + std::string(size, 'x') + "\"";
}

} // namespace

TEST(SnmpRecord, has_what_is_written_member_by_member) {
    const Description description = description_of(snmp(R"(
        "status": true, "version": "v1/v2c", "read_only_community": "reading", "port": 1161,
        "restrict_source": true, "manager_address": "192.0.2.0", "manager_mask": 24,
        "trap_community": "traps", "trap_types": ["link", "dfs-detected"],
        "trap_hosts": [{"id": 2, "server_address": "192.0.2.12"},
                       {"id": 0, "status": false, "server_address": "192.0.2.10"}],
        "radio_status": [true, false], "username": "user", "password": "pass")"));
    const snmp_settings& snmp = settings(description);
    EXPECT_EQ(snmp.status, 1);
    EXPECT_EQ(snmp.version, 0);
    EXPECT_EQ(shown(snmp.read_only_community), "reading");
    EXPECT_EQ(snmp.port, 1161);
    EXPECT_EQ(snmp.restrict_source, 1);
    EXPECT_EQ(shown(snmp.manager_address), "192.0.2.0");
    EXPECT_EQ(snmp.manager_mask, 24);
    EXPECT_EQ(shown(snmp.trap_community), "traps");
    for (int type = 0; type < 9; type++) {
        EXPECT_EQ(snmp.trap_types[type], type == 1 || type == 8 ? 1 : 0) << type;
    }
    ASSERT_NE(snmp.trap_hosts[0], nullptr);
    EXPECT_EQ(snmp.trap_hosts[0]->id, 0);
    EXPECT_EQ(snmp.trap_hosts[0]->status, 0);
    EXPECT_EQ(shown(snmp.trap_hosts[0]->server_address), "192.0.2.10");
    EXPECT_EQ(snmp.trap_hosts[1], nullptr);
    ASSERT_NE(snmp.trap_hosts[2], nullptr);
    EXPECT_EQ(snmp.trap_hosts[2]->id, 2);
    EXPECT_EQ(snmp.trap_hosts[2]->status, 1);
    EXPECT_EQ(snmp.radio_status[0], 1);
    EXPECT_EQ(snmp.radio_status[1], 0);
    EXPECT_EQ(shown(snmp.username), "user");
    EXPECT_EQ(shown(snmp.password), "pass");
}

TEST(SnmpRecord, what_is_left_out_gets_its_default) {
    const Description description = description_of(v2(""));
    const snmp_settings& snmp = settings(description);
    EXPECT_EQ(snmp.status, 1);
    EXPECT_EQ(snmp.port, 161);
    EXPECT_EQ(snmp.restrict_source, 0);
    EXPECT_EQ(snmp.manager_address, nullptr);
    EXPECT_EQ(snmp.manager_mask, 32);
    EXPECT_EQ(snmp.trap_community, nullptr);
    for (const int32_t type : snmp.trap_types) {
        EXPECT_EQ(type, 0);
    }
    EXPECT_EQ(snmp.trap_hosts[0], nullptr);
    EXPECT_EQ(snmp.radio_status[0], -1); // the radios tell
    EXPECT_EQ(snmp.username, nullptr);
}

TEST(SnmpRecord, each_trap_type_has_its_name_and_its_place) {
    const struct {
        const char* name;
        int place;
    } names[] = {
        {"cold-start", 0},       {"link", 1},           {"authentication", 2}, {"association", 3},
        {"filtered-station", 5}, {"radius-success", 6}, {"radius-failure", 7}, {"dfs-detected", 8}};
    for (const auto& each : names) {
        const Description by_name =
            description_of(v2(std::string("\"trap_types\": [\"") + each.name + "\"]"));
        for (int type = 0; type < 9; type++) {
            EXPECT_EQ(settings(by_name).trap_types[type], type == each.place ? 1 : 0) << each.name;
        }
    }
    const Description by_place = description_of(v2(R"("trap_types": [true, 0, 1])"));
    EXPECT_EQ(settings(by_place).trap_types[0], 1);
    EXPECT_EQ(settings(by_place).trap_types[1], 0);
    EXPECT_EQ(settings(by_place).trap_types[2], 1);
    EXPECT_EQ(settings(by_place).trap_types[8], 0);
}

TEST(SnmpRecord, each_rule_of_a_value_has_its_sentence) {
    const std::string at = "system.snmp.";
    const Case cases[] = {
        {v2(R"("port": 65536)"), at + "port: 65536 is not in 0..65535"},
        {v2(R"("port": 0)"), "accepted"},
        {v2(R"("port": -1)"), at + "port: -1 is not in 0..65535"},
        {v2(R"("manager_mask": 33)"), at + "manager_mask: 33 is not in 0..32"},
        {v2(R"("restrict_source": 2, "manager_address": "m")"),
         at + "restrict_source: 2 is not true or false"},
        {v2(R"("status": 2)"), at + "status: 2 is not true or false"},
        {v2(R"("trap_community": "")"), at + "trap_community: is empty"},
        {v2("\"trap_community\": " + text_of(257)),
         at + "trap_community: a text of 257 bytes is longer than 256"},
        {snmp(R"("version": "v1/v2c", "read_only_community": )" + text_of(256)), "accepted"},
        {snmp(R"("version": "v1/v2c", "read_only_community": )" + text_of(257)),
         at + "read_only_community: a text of 257 bytes is longer than 256"},
        {v2("\"manager_address\": " + text_of(256)),
         at + "manager_address: a text of 256 bytes is longer than 255"},
        {v3("\"password\": \"p\", \"username\": " + text_of(13)),
         at + "username: a text of 13 bytes is longer than 12"},
        {v3("\"username\": \"u\", \"password\": " + text_of(33)),
         at + "password: a text of 33 bytes is longer than 32"},
        {v3("\"username\": " + text_of(12) + ", \"password\": " + text_of(32)), "accepted"},
        {v2(R"("trap_types": ["cold_start"])"),
         at + R"(trap_types[0]: "cold_start" is not "cold-start", "link", "authentication", )"
              R"("association", "filtered-station", "radius-success", "radius-failure" or )"
              R"("dfs-detected")"},
        {v2(R"("trap_types": ["link", true])"),
         at + R"(trap_types[1]: true is not "cold-start", "link", "authentication", )"
              R"("association", "filtered-station", "radius-success", "radius-failure" or )"
              R"("dfs-detected")"},
        {v2(R"("trap_types": [1, 2])"), at + "trap_types[1]: 2 is not true or false"},
        {v2(R"("trap_types": [0,0,0,0,0,0,0,0,0,0])"),
         at + "trap_types: 10 elements are more than 9"},
        {v2(R"("radio_status": [true, true, true])"),
         at + "radio_status: 3 elements are more than 2"},
        {v2(R"("radio_status": [null, 2])"), at + "radio_status[1]: 2 is not true or false"},
        {v2(R"("trap_hosts": [{"id": 0, "server_address": ""}], "trap_community": "t")"),
         at + "trap_hosts[0].server_address: is empty"},
        {v2(R"("trap_hosts": [{"id": 1}])"),
         at + "trap_hosts[0].server_address: is missing, it is sent traps"},
        {v2(R"("trap_hosts": [{"id": 1, "status": false}])"), "accepted"},
    };
    expect_sentences(cases);
}

TEST(SnmpRecord, each_version_needs_its_own_texts) {
    const std::string at = "system.snmp.";
    const Case cases[] = {
        {snmp(""), at + "version: is missing"},
        {snmp(R"("version": "v2")"), at + R"(version: "v2" is not "v1/v2c" or "v3")"},
        {snmp(R"("version": 2)"), at + R"(version: 2 is not "v1/v2c" or "v3")"},
        {snmp(R"("version": 0, "read_only_community": "c")"), "accepted"},
        {snmp(R"("version": "v1/v2c")"),
         at + "read_only_community: is missing, \"v1/v2c\" needs it"},
        {v2(R"("restrict_source": true)"),
         at + "manager_address: is missing, \"restrict_source\" needs it"},
        {v2(R"("trap_hosts": [{"id": 2, "status": false, "server_address": "h"}])"),
         at + "trap_community: is missing, a trap host of \"v1/v2c\" needs it"},
        {v3(R"("password": "p")"), at + "username: is missing, \"v3\" needs it"},
        {v3(R"("username": "u")"), at + "password: is missing, \"v3\" needs it"},
        {v3(R"("username": "u", "password": "p", "restrict_source": true,
               "trap_hosts": [{"id": 0, "server_address": "h"}])"),
         "accepted"},
        {snmp(R"("status": false, "version": "v3")"), "accepted"},
        {snmp(R"("status": false, "version": "v1/v2c")"), "accepted"},
        {snmp(R"("status": false, "version": "v3", "port": 65536)"),
         at + "port: 65536 is not in 0..65535"}, // the library checks it, too
    };
    expect_sentences(cases);
}

TEST(SnmpRecord, a_trap_host_lies_where_its_id_says) {
    const std::string hosts = "system.snmp.trap_hosts";
    const Case cases[] = {
        {v2(R"("trap_hosts": [{}])"), hosts + "[0].id: is missing"},
        {v2(R"("trap_hosts": [{"id": 3}])"), hosts + "[0].id: 3 is not in 0..2"},
        {v2(R"("trap_hosts": [{"id": 1, "status": 0}, {"id": 1, "status": 0}])"),
         hosts + "[1].id: 1 is described already, by " + hosts + "[0]"},
        {v2(R"("trap_hosts": [null])"), hosts + "[0]: null is not an object"},
        {v2(R"("trap_hosts": {})"), hosts + ": {} is not an array"},
        {v2(R"("trap_hosts": [{}, {}, {}, {}])"), hosts + ": 4 elements are more than 3"},
    };
    expect_sentences(cases);
    expect_sentences(cases, false);
}

TEST(SnmpRecord, outside_of_a_description_it_must_tell_of_the_radios) {
    const auto refused = [](const std::string& record) -> std::string {
        try {
            read_arguments(find_operation("api_apply_snmp"), {record}, true);
        } catch (const Refusal& refusal) {
            return refusal.what();
        }
        return "accepted";
    };
    const std::string begin = R"({"version": "v3", "username": "u", "password": "p")";
    const std::string sentence =
        "snmp.radio_status: must be told for both radios, but in a description";
    EXPECT_EQ(refused(begin + "}"), sentence);
    EXPECT_EQ(refused(begin + R"(, "radio_status": [true]})"), sentence);
    EXPECT_EQ(refused(begin + R"(, "radio_status": [null, true]})"), sentence);
    EXPECT_EQ(refused(begin + R"(, "radio_status": [true, false]})"), "accepted");
}

TEST(SnmpRecord, unchecked_values_reach_the_record) {
    const Description description =
        description_of(snmp(R"("version": 7, "port": -1, "trap_types": [5, -6], "radio_status": [3],
                "trap_hosts": [{"id": 1, "status": 9}])"),
                       false);
    const snmp_settings& snmp = settings(description);
    EXPECT_EQ(snmp.version, 7);
    EXPECT_EQ(snmp.port, -1);
    EXPECT_EQ(snmp.trap_types[0], 5);
    EXPECT_EQ(snmp.trap_types[1], -6);
    EXPECT_EQ(snmp.radio_status[0], 3);
    EXPECT_EQ(snmp.trap_hosts[1]->status, 9);
    EXPECT_EQ(refusal(v2(R"("trap_types": [99999999999])"), false),
              "system.snmp.trap_types[0]: 99999999999 does not fit an int (-2147483648 to "
              "2147483647)");
}
