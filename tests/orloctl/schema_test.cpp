// SPDX-License-Identifier: MIT
// The JSON schema of a description, and descriptions that nobody would write.
#include "records/schema.h"

#include <gtest/gtest.h>
#include <random>
#include <set>

#include "description.h"
#include "exit.h"
#include "plan.h"
#include "records/registry.h"

using namespace orloctl;

namespace {

const json_t* at(const json_t* value, const std::vector<const char*>& path) {
    for (const char* name : path) {
        value = json_object_get(value, name);
    }
    return value;
}

std::string excerpt(const Json& schema, const std::vector<const char*>& path) {
    Json value = Json(json_deep_copy(at(schema.get(), path)));
    json_object_del(value.get(), "description");
    char* text = json_dumps(value.get(), JSON_COMPACT | JSON_SORT_KEYS | JSON_ENCODE_ANY);
    std::string result = text == nullptr ? "(none)" : text;
    free(text);
    return result;
}

bool accepts(const std::string& text, bool checked) {
    try {
        const Description description = read_description(text, "ap.json", checked);
        EXPECT_FALSE(plan(description, true).empty());
        return true;
    } catch (const Refusal& refused) {
        EXPECT_STRNE(refused.what(), "");
        return false;
    }
}

// Between them they have every form of value.
std::vector<std::string> rich_descriptions() {
    return {read_file(EXAMPLES "/office.json"), R"({
        "system": {
            "country": "AT", "leds": true, "syslog": {"host": "192.0.2.1"},
            "time": {"zone": "UTC", "manual": {"year": 2026, "month": 1, "day": 2, "hour": 3,
                                               "minute": 4}},
            "openflow": {"controllers": [{"index": 1, "address": "192.0.2.2"}]},
            "snmp": {"version": "v1/v2c", "read_only_community": "c", "trap_community": "t",
                     "trap_types": ["link"], "radio_status": [true, null],
                     "trap_hosts": [{"id": 2, "server_address": "192.0.2.3"}]},
            "login": {"username": "u", "password": "p"}},
        "radios": [{"radio": 0, "mesh": {
            "eligible_channels": [1, 6], "bandwidth": 20,
            "vap": {"vap": 1, "acceptor": true, "connector": true, "ssid": "m",
                    "key": "passphrase"}}}, {"radio": 1, "access": [
            {"vap": 3, "mac_auth_servers": [{"index": 1, "ip": "a", "key": "k"}],
             "captive_portal": {"auth_mode": "radius", "walled_garden_enable": true,
                                "walled_garden": ["a", "b"],
                                "auth_servers": [{"server": "a", "secret": "s"}]}}]}],
        "quilt": {"mgmt_vlan": 1, "secret": "s", "quilt_radio": [
            {"radio": 0, "vap": 3, "bssid": "02:00:00:00:00:03", "ssid": "q", "vlan_id": 4,
             "mac_filter_mode": 2, "mac_auth_server": [{"index": 1, "ip": "a", "key": "k"}],
             "wireless_security": "wpa-personal",
             "wpa_personal": {"wpa": ["WPA2"], "key": "passphrase"},
             "cp": {"auth_mode": "click-through"}}]},
        "wds": [{"radio_intf": "wlan1", "security": "wpa", "wds_mode": "child", "ssid": "l",
                 "wpa": {"key": "passphrase", "version": ["WPA2"]}}],
        "known_clients": {"action": "white", "mac_list": ["02:00:00:00:00:01"]},
        "portal_address": "192.0.2.4"})"};
}

// Replaces the n-th value of the tree; false when there are not as many.
struct Replacer {
    size_t left;
    json_t* value;

    bool replace(json_t* tree) {
        if (json_is_object(tree)) {
            const char* name = nullptr;
            json_t* member = nullptr;
            json_object_foreach(tree, name, member) {
                if (left-- == 0) {
                    return json_object_set(tree, name, value) == 0;
                }
                if (replace(member)) {
                    return true;
                }
            }
        }
        for (size_t i = 0; i < json_array_size(tree); i++) {
            if (left-- == 0) {
                return json_array_set(tree, i, value) == 0;
            }
            if (replace(json_array_get(tree, i))) {
                return true;
            }
        }
        return false;
    }
};

} // namespace

TEST(Schema, has_every_record_and_every_member) {
    for (const Record* root : all_records()) {
        const Json schema = record_schema(*root);
        EXPECT_STREQ(json_string_value(at(schema.get(), {"title"})), root->name);
        const json_t* definitions = at(schema.get(), {"$defs"});
        EXPECT_TRUE(json_is_object(at(definitions, {root->name})));
        for (const Record* record : all_records()) {
            const json_t* properties = at(definitions, {record->name, "properties"});
            if (properties == nullptr) {
                continue; // not part of the root
            }
            EXPECT_EQ(json_object_size(properties), record->fields.size()) << record->name;
            for (const Field& field : record->fields) {
                const json_t* property = json_object_get(properties, field.name);
                EXPECT_TRUE(json_is_object(property)) << record->name << "." << field.name;
                EXPECT_STREQ(json_string_value(json_object_get(property, "description")),
                             field.meaning);
            }
        }
    }
}

TEST(Schema, of_a_description_defines_all_records_and_refers_to_no_other) {
    const Json schema = record_schema(access_point_record);
    EXPECT_EQ(json_object_size(at(schema.get(), {"$defs"})), all_records().size());
    const std::string text = json_document(schema);
    const std::string mark = "\"$ref\": \"#/$defs/";
    std::set<std::string> used; // the root by the schema itself
    for (size_t i = text.find(mark); i != std::string::npos; i = text.find(mark, i + 1)) {
        const size_t start = i + mark.size();
        const std::string name = text.substr(start, text.find('"', start) - start);
        EXPECT_TRUE(json_is_object(at(schema.get(), {"$defs", name.c_str()}))) << name;
        used.insert(name);
    }
    EXPECT_EQ(used.size(), all_records().size());
}

TEST(Schema, tells_what_a_member_accepts) {
    const Json schema = record_schema(access_point_record);
    const auto member = [&](const char* record, const char* name) {
        return excerpt(schema, {"$defs", record, "properties", name});
    };
    EXPECT_EQ(member("vap_settings", "dtim_period"),
              R"({"anyOf":[{"maximum":255,"minimum":1,"type":"integer"},{"enum":[-1]}]})");
    EXPECT_EQ(member("vap_settings", "vlan_id"),
              R"({"maximum":4094,"minimum":1,"type":"integer"})");
    EXPECT_EQ(member("vap_settings", "bcast_ssid"),
              R"({"anyOf":[{"enum":[0,1]},{"type":"boolean"}],"default":true})");
    EXPECT_EQ(member("vap_settings", "ssid"), R"({"maxLength":32,"type":"string"})");
    EXPECT_EQ(member("wpa_enterprise", "wpa"),
              R"({"anyOf":[{"enum":[2,3,4]},{"items":{"enum":["WPA","WPA2","WPA3"]},)"
              R"("type":"array"}]})");
    EXPECT_EQ(member("radius_server", "auth_port"),
              R"({"default":1812,"maximum":65535,"minimum":0,"type":"integer"})");
    EXPECT_EQ(member("vap_settings", "radius_server"),
              R"({"items":{"$ref":"#/$defs/radius_server","unevaluatedProperties":false},)"
              R"("maxItems":2,"type":"array"})");
    EXPECT_EQ(member("hw_specific_settings", "mode"),
              R"({"enum":["bg-n-ax","bg","a-n-ac-ax","a"],"type":"string"})");
    EXPECT_EQ(member("snmp_settings", "version"),
              R"({"anyOf":[{"enum":[0,1]},{"enum":["v1/v2c","v3"]}]})");
    EXPECT_EQ(member("snmp_settings", "radio_status"),
              R"({"items":{"anyOf":[{"enum":[0,1,-1]},{"type":"boolean"},{"type":"null"}]},)"
              R"("maxItems":2,"type":"array"})");
    EXPECT_EQ(member("snmp_settings", "trap_types"),
              R"({"items":{"anyOf":[{"enum":[0,1]},{"type":"boolean"},{"enum":["cold-start",)"
              R"("link","authentication","association","filtered-station","radius-success",)"
              R"("radius-failure","dfs-detected"]}]},"maxItems":9,"type":"array"})");
    EXPECT_EQ(member("snmp_settings", "trap_hosts"),
              R"({"items":{"$ref":"#/$defs/snmp_trap_host","unevaluatedProperties":false},)"
              R"("maxItems":3,"type":"array"})");
    EXPECT_EQ(member("cp_settings", "walled_garden"),
              R"({"items":{"minLength":1,"type":"string"},"maxItems":50,"type":"array"})");
    EXPECT_EQ(member("knownClient_setup", "mac_list"),
              R"({"items":{"minLength":1,"pattern":"^([0-9A-Fa-f]{2}:){5}[0-9A-Fa-f]{2}$",)"
              R"("type":"string"},"type":"array"})");
    EXPECT_EQ(member("access_point", "wds"),
              R"({"items":{"$ref":"#/$defs/wds_settings","unevaluatedProperties":false},)"
              R"("maxItems":2,"type":"array"})");
    EXPECT_EQ(member("radio", "vaps"),
              R"({"items":{"$ref":"#/$defs/vap_settings","properties":{"vap":{"maximum":15,)"
              R"("minimum":0,"type":"integer"}},"required":["vap"],)"
              R"("unevaluatedProperties":false},"type":"array"})");
}

TEST(Schema, requires_what_is_required_unless_the_switch_is_off) {
    const Json schema = record_schema(access_point_record);
    EXPECT_EQ(excerpt(schema, {"$defs", "vap_settings", "if"}),
              R"({"properties":{"status":{"enum":[false,0]}},"required":["status"]})");
    EXPECT_EQ(excerpt(schema, {"$defs", "vap_settings", "else"}),
              R"({"required":["ssid","vlan_id"]})");
    EXPECT_EQ(excerpt(schema, {"$defs", "fast_roaming", "then"}),
              R"({"required":["aes_key","key_holder_list"]})");
    EXPECT_EQ(excerpt(schema, {"$defs", "radio", "required"}), R"(["radio"])");
    EXPECT_EQ(at(schema.get(), {"$defs", "radio_settings", "required"}), nullptr);
    EXPECT_EQ(excerpt(schema, {"$defs", "vap_settings", "dependentSchemas", "wep"}),
              R"({"properties":{"wireless_security":{"const":"wep"}},)"
              R"("required":["wireless_security"]})");
}

TEST(Description, rich_ones_are_accepted_as_they_stand) {
    for (const std::string& text : rich_descriptions()) {
        EXPECT_TRUE(accepts(text, true)) << text;
    }
}

TEST(Description, survives_wild_texts) {
    const std::vector<std::string> right = rich_descriptions();
    std::mt19937 random(1); // NOLINT: the same texts in every run
    const std::string tokens[] = {"null", "-1",       "[]",      "{}",      "\"\"",
                                  "1e99", "[[",       "},",      "\\u0000", "99999999999999999999",
                                  "true", "\"\xff\"", "\"WPA3\""};
    for (int i = 0; i < 1500; i++) {
        std::string text = right[static_cast<size_t>(i) / 2 % right.size()];
        for (size_t n = random() % 4 + 1; n > 0; n--) {
            const size_t place = random() % text.size();
            switch (random() % 3) {
            case 0:
                text[place] = static_cast<char>(random());
                break;
            case 1:
                text.erase(place, random() % 40);
                break;
            default:
                text.insert(place, tokens[random() % std::size(tokens)]);
                break;
            }
        }
        accepts(text, i % 2 == 0);
    }
}

TEST(Description, survives_values_of_any_type_in_any_place) {
    const char* const values[] = {
        "null",  "true", "-1",     "0",     "4294967296", "1.5",           "\"\"",
        "\"x\"", "[]",   "[null]", "[[1]]", "{}",         R"({"vap": 1})", R"({"status": true})"};
    for (const std::string& text : rich_descriptions()) {
        const Json right = parse_json(text, "ap.json");
        size_t count = 0;
        for (bool found = true; found; count++) {
            for (const char* value : values) {
                const Json replacement(json_loads(value, JSON_DECODE_ANY, nullptr));
                const Json tree(json_deep_copy(right.get()));
                found = Replacer{count, replacement.get()}.replace(tree.get());
                accepts(json_document(tree), true);
                accepts(json_document(tree), false);
            }
        }
        EXPECT_GT(count, 50U);
    }
}
