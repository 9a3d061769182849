// SPDX-License-Identifier: MIT
// What a description would do: shown, and nothing done.
#include "on_the_access_point.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <jansson.h>
#include <map>
#include <memory>

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace fs = std::filesystem;

namespace {

using Json = std::unique_ptr<json_t, decltype(&json_decref)>;

Json parsed(const Ended& ended) {
    Json json(json_loads(ended.out.c_str(), 0, nullptr), &json_decref);
    EXPECT_NE(json, nullptr) << ended.out << ended.err;
    return json;
}

std::string text(const json_t* object, const char* name) {
    const char* value = json_string_value(json_object_get(object, name));
    return value == nullptr ? "(none)" : value;
}

// Everything below a folder, with its times.
std::map<std::string, std::string> content_of(const std::string& folder) {
    std::map<std::string, std::string> content;
    std::error_code none;
    for (const auto& entry : fs::recursive_directory_iterator(folder, none)) {
        const auto time = entry.last_write_time().time_since_epoch().count();
        content[entry.path()] =
            std::to_string(time) + " " + (entry.is_regular_file() ? file_text(entry.path()) : "");
    }
    return content;
}

// A configuration of somebody's own.
class Backup {
public:
    Backup() {
        char path[] = "/tmp/orloctl-backup-XXXXXX";
        path_ = mkdtemp(path);
        fs::copy(DEVICE_ROOT "/etc/config", path_);
    }
    ~Backup() { fs::remove_all(path_); }
    Backup(const Backup&) = delete;
    Backup& operator=(const Backup&) = delete;

    const std::string& path() const { return path_; }

    void replace(const std::string& package, const std::string& old, const std::string& by) const {
        std::string text = file_text(path_ + "/" + package);
        ASSERT_NE(text.find(old), std::string::npos) << old;
        text.replace(text.find(old), old.size(), by);
        std::ofstream(path_ + "/" + package) << text;
    }

private:
    std::string path_;
};

class Preview : public OnTheAccessPoint {
protected:
    // orloctl on this machine, where there is no access point.
    static Ended preview(std::vector<std::string> words, const std::string& input = "",
                         const std::vector<std::string>& environment = {}) {
        words.insert(words.begin(), {ORLOCTL, "preview"});
        return run_program({words, input, environment});
    }
};

const std::string office = EXAMPLES "/office.json";
const std::string radio_profile_file = EXAMPLES "/radio-profile.json";

const char* const radio_profile =
    R"(Tried on a copy of the sample configuration; nothing else was touched.

api_apply_radio_status radio 0: nothing changes
api_apply_wireless_interface radio 0
  wireless.wifi0.channel: '6' -> '1'
  wireless.wifi0.txpower: 'Max' -> 'High'
  run /usr/sbin/iwconfig wdev0 channel 1
  run /usr/sbin/iwconfig wdev0 commit
  commit wireless
  run /usr/sbin/iwpriv wdev0 setcmd "radiomode 0"
  run /usr/sbin/iwconfig wdev0 commit
  commit wireless
  read /usr/sbin/iwpriv wdev0 getcmd "getsyncscanpwr /etc/R8K_2G_TX_Power_Table" | cut -d ':' -f 3
  run /usr/sbin/iwpriv wdev0 setcmd "loadpwrgrpstbl /etc/R8K_2G_TX_Power_Table 75"
  run /usr/sbin/iwpriv wdev0 setcmd "applypwr"
  commit wireless
api_apply_radio_status radio 1: nothing changes
api_apply_wireless_interface radio 1
  wireless.wifi1.channel: 'auto' -> '36'
  wireless.wifi1.secondchannel: (none) -> '149'
  run /usr/sbin/iwconfig wdev1 channel 36
  run /usr/sbin/iwconfig wdev1 commit
  commit wireless
  run /usr/sbin/iwpriv wdev1 setcmd "radiomode 1 149"
  run /usr/sbin/iwconfig wdev1 commit
  commit wireless
  read /usr/sbin/iwpriv wdev1 getcmd "getsyncscanpwr /etc/R8K_5G_TX_Power_Table" | cut -d ':' -f 3
  run /usr/sbin/iwpriv wdev1 setcmd "loadpwrgrpstbl /etc/R8K_5G_TX_Power_Table 100"
  run /usr/sbin/iwpriv wdev1 setcmd "applypwr"
  commit wireless
api_profile_set_hash
  orloagent.agent.profilehash: '0' -> '4f1c0a6e5b7d4b0f9a2e8c3d6b1f7e20'
api_config_set_hash
  orloagent.agent.confighash: '0' -> '9d2b71c8e04a4c55a1f36e7780c4d912'
api_set_profile_id: nothing changes
api_save_config
  commit network, openflow, orloagent, quilt, snmpd, system, wifi_qos, wireless
  run /usr/bin/lua /usr/lib/lua/luci/chvlan.lua
  write /tmp/orlo_network_restarting
  run /usr/bin/orloagent_apply_settings.sh network-5 &
  restart network

8 operations: 6 values would change (orloagent, wireless); 16 commands would
run; network would restart; nothing would be refused.
)";

// Refused by the library once radio 1 has been moved.
const char* const wrong_channel = R"({"profile": {"id": 3}, "radios": [
    {"radio": 0, "settings": {"wmm": false}},
    {"radio": 1, "channel": 36},
    {"radio": 1, "channel": 170}]})";

} // namespace

TEST_F(Preview, shows_operation_by_operation_what_a_description_would_do) {
    const Ended ended = preview({radio_profile_file});
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.out, radio_profile);
    EXPECT_EQ(ended.err, "");
}

TEST_F(Preview, is_the_same_where_only_chroot_is_possible) {
    const Ended ended = preview({radio_profile_file}, "", {"ORLO_VIRTUAL_AP=chroot"});
    if (ended.status == 2) {
        GTEST_SKIP() << ended.err;
    }
    EXPECT_EQ(ended.out, radio_profile) << ended.err;
}

TEST_F(Preview, leaves_the_configuration_and_what_is_staged_on_the_machine_alone) {
    const Backup backup;
    const auto before = content_of(backup.path());
    const auto staged_before = content_of("/tmp/.uci");
    const auto config_before = content_of("/etc/config");
    const Ended ended = preview({office, "--config", backup.path()});
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_THAT(ended.out, StartsWith("Tried on a copy of " + backup.path() + "; "));
    EXPECT_THAT(ended.out, HasSubstr("wireless.wifi1vap3.ssid: 'wlan1.3' -> 'Office Lab'\n"));
    EXPECT_EQ(content_of(backup.path()), before);
    EXPECT_EQ(content_of("/tmp/.uci"), staged_before);
    EXPECT_EQ(content_of("/etc/config"), config_before);
}

TEST_F(Preview, starts_from_the_configuration_that_is_named) {
    const Backup backup;
    backup.replace("wireless", "option txpower 'Max'", "option txpower 'High'");
    backup.replace("orloagent", "option profilehash '0'", "option profilehash 'other'");
    const Ended ended = preview({radio_profile_file, "--config", backup.path()});
    EXPECT_THAT(ended.out, Not(HasSubstr("txpower")));
    EXPECT_THAT(ended.out, HasSubstr("orloagent.agent.profilehash: 'other' -> '4f1c0a6e5b"));
}

TEST_F(Preview, on_an_access_point_starts_from_its_own_and_leaves_it_alone) {
    const std::string state = "cat /etc/config/* /tmp/.uci/* /var/log/journal "
                              "/var/run/device/interfaces /var/run/device/radio?/* 2>/dev/null";
    const Ended ended =
        there("uci set wireless.wifi0.txpower=High; uci commit; uci set system.country."
              "countrycode=AT; uci set wireless.wifi0vap0.key='old secret'; : >/var/log/journal; " +
              state +
              " >/tmp/before; orloctl preview /usr/share/examples/radio-profile.json; "
              "echo \"status $?\"; " +
              state + " | cmp - /tmp/before && echo untouched");
    EXPECT_THAT(ended.out, StartsWith("Tried on a copy of /etc/config; nothing else was touched.\n"
                                      "\n"
                                      "Staged there already, and committed or discarded with the "
                                      "description:\n"
                                      "  system.country.countrycode=AT\n"
                                      "  wireless.wifi0vap0.key=********\n"
                                      "\n"
                                      "api_apply_radio_status radio 0: nothing changes\n"))
        << ended.err;
    EXPECT_THAT(ended.out, Not(HasSubstr("txpower")));
    EXPECT_THAT(ended.out, EndsWith("nothing would be refused.\nstatus 0\nuntouched\n"));
    EXPECT_EQ(ended.err, "");
}

TEST_F(Preview, can_be_made_within_an_access_point_of_the_chroot_form) {
    const Ended ended = run_program(
        {{VIRTUAL_AP, "--", "orloctl", "preview", "/usr/share/examples/radio-profile.json"},
         "",
         {"ORLO_VIRTUAL_AP=chroot"}});
    if (ended.status == 77) {
        GTEST_SKIP() << ended.err;
    }
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_THAT(ended.out, HasSubstr("  wireless.wifi0.channel: '6' -> '1'\n"));
    EXPECT_THAT(ended.out, EndsWith("run; network would restart; nothing would be refused.\n"));
}

TEST_F(Preview, tells_the_truth_about_an_apply) {
    const Ended ended =
        there("orloctl preview /usr/share/examples/hotspot.json --no-save --json --show-keys "
              ">/tmp/preview; "
              "uci show | sort >/tmp/before; orloctl apply --no-save "
              "/usr/share/examples/hotspot.json >/dev/null; "
              "uci show | sort >/tmp/after; grep -vxFf /tmp/before /tmp/after; cat /tmp/preview");
    const size_t json_start = ended.out.find('{');
    ASSERT_NE(json_start, std::string::npos);
    const Json json = parsed({0, ended.out.substr(json_start), ended.err});
    std::vector<std::string> lines;
    size_t index = 0;
    json_t* change = nullptr;
    json_array_foreach(json_object_get(json.get(), "changes"), index, change) {
        const json_t* value = json_object_get(change, "new");
        std::string shown = json_is_string(value) ? "'" + text(change, "new") + "'" : "";
        size_t i = 0;
        json_t* element = nullptr;
        json_array_foreach(value, i, element) {
            shown += (i == 0 ? "'" : " '") + std::string(json_string_value(element)) + "'";
        }
        lines.push_back(text(change, "option") + "=" + shown);
    }
    std::istringstream applied(ended.out.substr(0, json_start));
    std::vector<std::string> really;
    for (std::string line; std::getline(applied, line);) {
        really.push_back(line);
    }
    // anonymous sections have a short name in one listing and a long one in the other
    const auto strip = [](std::vector<std::string>& all) {
        for (std::string& line : all) {
            const size_t section = line.find('.');
            line.erase(section, line.rfind('.', line.find('=')) - section);
        }
        std::sort(all.begin(), all.end());
    };
    strip(lines);
    strip(really);
    EXPECT_GT(really.size(), 40U);
    EXPECT_EQ(lines, really);
}

TEST_F(Preview, finds_nothing_left_to_do_once_the_description_is_applied) {
    const Ended ended = there("orloctl apply --no-save /usr/share/examples/office.json "
                              ">/dev/null; uci commit; "
                              "orloctl preview /usr/share/examples/office.json");
    EXPECT_THAT(ended.out, Not(HasSubstr(" -> ")));
    EXPECT_THAT(ended.out, HasSubstr("api_apply_vap radio 1: nothing changes\n"));
    EXPECT_THAT(ended.out, HasSubstr("14 operations: no option changes; "));
}

TEST_F(Preview, of_a_refusal_tells_the_operation_the_reason_and_what_would_remain) {
    const Ended ended = preview({"--raw", "-"}, wrong_channel);
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.out,
                EndsWith("api_apply_wireless_interface radio 1 would refuse (-1)\n"
                         "  says wifi1 force-disable off: set radio status with AP Profile "
                         "setting.\n"
                         "  says error: Invalid channel 170 for radio 1 !\n"
                         "  says error: Set wifi1 channel 170 failed.\n"
                         "\n"
                         "What would be discarded:\n"
                         "  wifi_qos.wifi0.WMM=0\n"
                         "What would be in force all the same:\n"
                         "  wireless.wifi1.channel: 'auto' -> '36'\n"
                         "What would not be done:\n"
                         "  api_set_profile_id\n"
                         "  api_save_config\n"
                         "\n"
                         "3 operations: 1 value would change (wireless); 2 commands would run; no "
                         "service\n"
                         "would restart; api_apply_wireless_interface radio 1 would refuse.\n"));
    EXPECT_EQ(ended.err, "");
}

TEST_F(Preview, of_a_refusal_tells_what_the_library_prints) {
    const Backup backup;
    fs::remove(backup.path() + "/wifi_qos");
    const Ended ended = preview({"--config", backup.path(), "-"},
                                R"({"radios": [{"radio": 0, "settings": {"wmm": false}}]})");
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.out, HasSubstr("What it would print:\n"
                                     "  uciSetValue (58): Failed to lookup value: "
                                     "wifi_qos.wifi0.WMM=0\n"));
    EXPECT_EQ(ended.err, "");
}

TEST_F(Preview, as_json_tells_the_same) {
    const Ended ended = preview({"--raw", "--json", "-"}, wrong_channel);
    EXPECT_EQ(ended.status, 1);
    const Json json = parsed(ended);
    EXPECT_TRUE(json_is_false(json_object_get(json.get(), "ok")));
    EXPECT_EQ(text(json.get(), "configuration"), "the sample configuration");
    const json_t* operations = json_object_get(json.get(), "operations");
    ASSERT_EQ(json_array_size(operations), 3U);
    const json_t* second = json_array_get(operations, 1);
    EXPECT_EQ(text(second, "operation"), "api_apply_wireless_interface");
    const json_t* change = json_array_get(json_object_get(second, "changes"), 0);
    EXPECT_EQ(text(change, "option"), "wireless.wifi1.channel");
    EXPECT_EQ(text(change, "old"), "auto");
    EXPECT_EQ(text(change, "new"), "36");
    const json_t* command = json_array_get(json_object_get(second, "effects"), 0);
    EXPECT_EQ(text(command, "command"), "/usr/sbin/iwconfig wdev1 channel 36");
    const json_t* failed = json_object_get(json.get(), "failed");
    EXPECT_EQ(text(failed, "operation"), "api_apply_wireless_interface");
    EXPECT_EQ(json_array_size(json_object_get(failed, "log")), 3U);
    EXPECT_EQ(json_array_size(json_object_get(failed, "not_done")), 2U);
    EXPECT_EQ(json_array_size(json_object_get(failed, "discarded")), 1U);
}

TEST_F(Preview, shows_keys_only_when_asked) {
    const Ended masked = preview({office});
    const Ended shown = preview({office, "--show-keys"});
    for (const char* secret : {"second-radius-secret", "first-radius-secret"}) {
        EXPECT_THAT(masked.out, Not(HasSubstr(secret)));
    }
    EXPECT_THAT(masked.out,
                HasSubstr("wireless.wifi1vap0.auth_secret_second: (none) -> '********'"));
    EXPECT_THAT(
        shown.out,
        HasSubstr("wireless.wifi1vap0.auth_secret_second: (none) -> 'second-radius-secret'"));
    EXPECT_THAT(shown.out, Not(HasSubstr("*****")));
    const std::string login =
        R"({"system": {"login": {"username": "admin", "password": "hush!!"}}})";
    EXPECT_THAT(
        preview({"-"}, login).out,
        HasSubstr("  run /usr/bin/lua /usr/lib/lua/luci/chpasswd.lua 'admin' '********'\n"));
    EXPECT_THAT(preview({"-", "--json"}, login).out, Not(HasSubstr("hush")));
}

TEST_F(Preview, tells_of_sections_that_come_and_go) {
    const std::string v3 = R"({"system": {"snmp": {"status": true, "version": "v3",
                               "username": "u", "password": "12345678"}}})";
    const Ended comes = preview({"-", "--show-keys"}, v3);
    EXPECT_EQ(comes.status, 0) << comes.out << comes.err;
    EXPECT_THAT(comes.out, HasSubstr("  snmpd.snmpv3_user: new section of type user\n"
                                     "  snmpd.snmpv3_user.username: (none) -> 'u'\n"));
    EXPECT_THAT(comes.out, HasSubstr("  snmpd.public_access: section of type access deleted\n"));
}

TEST_F(Preview, without_the_save_leaves_the_changes_staged) {
    const Ended ended =
        preview({"-", "--no-save"}, R"({"radios": [{"radio": 0, "enabled": false}]})");
    EXPECT_EQ(ended.out, "Tried on a copy of the sample configuration; nothing else was touched.\n"
                         "\n"
                         "api_apply_radio_status radio 0\n"
                         "  wireless.wifi0.disabled: '0' -> '1'\n"
                         "\n"
                         "1 operation: 1 value would change (wireless), staged and not saved; 0 "
                         "commands\n"
                         "would run; no service would restart; nothing would be refused.\n");
}

TEST_F(Preview, refuses_what_cannot_be_previewed_in_a_sentence) {
    EXPECT_EQ(preview({}).err,
              "orloctl: 'orloctl preview' takes one FILE; \"-\" reads standard input\n");
    EXPECT_EQ(preview({office, "--config", "/nowhere"}).err,
              "orloctl: cannot read the configuration in /nowhere: No such file or directory\n");
    EXPECT_THAT(preview({office, "--config", "/proc/self/task"}).err,
                StartsWith("orloctl: there is no configuration in /proc/self/task"));
    EXPECT_EQ(preview({"-"}, R"({"radios": [{"radio": 2}]})").err,
              "orloctl: radios[0].radio: 2 is not in 0..1\n");
    const Ended wrong_form = preview({office}, "", {"ORLO_VIRTUAL_AP=jail"});
    EXPECT_EQ(wrong_form.status, 2);
    EXPECT_EQ(wrong_form.err, "orloctl: cannot enter the virtual access point: ORLO_VIRTUAL_AP is "
                              "\"jail\", not \"namespaces\" or \"chroot\"\n");
}

TEST_F(Preview, where_nothing_is_possible_says_in_one_sentence_what_is_missing) {
    const Ended ended =
        run_program({{WITHOUT_NAMESPACES, "--no-chroot", ORLOCTL, "preview", office}, "", {}});
    EXPECT_EQ(ended.status, 2);
    EXPECT_EQ(ended.out, "");
    EXPECT_THAT(ended.err,
                testing::MatchesRegex("orloctl: cannot enter the virtual access point: no user "
                                      "namespaces \\(.*\\) and no chroot \\(.*\\); run it as root, "
                                      "or let ordinary users create user namespaces\n"));
}

TEST_F(Preview, finds_the_root_of_the_access_point_where_it_is_installed) {
    const Backup prefix; // some folder
    const std::string program = prefix.path() + "/bin/orloctl";
    const std::string root = prefix.path() + "/bin/" ORLO_DEVICE_FOLDER;
    fs::create_directories(prefix.path() + "/bin");
    fs::copy(ORLOCTL, program);
    const std::vector<std::string> words = {program, "preview", "--library", VENDOR_LIBRARY,
                                            radio_profile_file};
    const Ended missing = run_program({words, "", {}});
    EXPECT_EQ(missing.status, 2);
    EXPECT_EQ(missing.err,
              "orloctl: cannot enter the virtual access point: there is no device root "
              "in " +
                  prefix.path() + "/bin or its " ORLO_DEVICE_FOLDER "\n");
    fs::create_directories(root);
    fs::create_directory_symlink(DEVICE_ROOT, root + "/device-root");
    const Ended ended = run_program({words, "", {}});
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_EQ(ended.out, radio_profile);
}
