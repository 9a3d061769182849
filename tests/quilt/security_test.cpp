// SPDX-License-Identifier: MIT
// Security of quilt VAPs: what an ordinary VAP has, and where a quilt differs.
#include "quilt/quilt_record.h"

#include <algorithm>

namespace orlo::test {

namespace {

const Trace security_options = {"security",
                                "encryption",
                                "key",
                                "wpakey",
                                "wpaversion",
                                "cipher",
                                "sae",
                                "sae_groups",
                                "sae_password",
                                "suite_b",
                                "acct_en",
                                "wpa_group_rekey",
                                "dynamic_vlan",
                                "auth_server",
                                "auth_secret",
                                "auth_port",
                                "acct_port",
                                "ieee80211w",
                                "auth_server_second",
                                "auth_secret_second",
                                "session_key_refresh_rate",
                                "session_key_refresh_action"};

bool is_security(const std::string& edit) {
    const size_t begin = edit[0] == '-' ? 1 : 0;
    const std::string option = edit.substr(begin, edit.find('=') - begin);
    return std::count(security_options.begin(), security_options.end(), option) != 0;
}

} // namespace

class QuiltSecurity : public QuiltRecord {
protected:
    Trace security_edits() const {
        Trace edits;
        for (const std::string& edit : edits_of("wifi1vap3")) {
            if (is_security(edit)) {
                edits.push_back(edit);
            }
        }
        return edits;
    }

    // What the operation says of the security: its lines from one to the end.
    Trace own_log_from(const std::string& first) const {
        const Trace lines = door.log_of("api_apply_channel_quilt");
        return {std::find(lines.begin(), lines.end(), first), lines.end()};
    }

    // Applies the quilt's first entry as VAP 3 of radio 1; the others are disabled.
    int apply_as_ordinary_vap(const quilt_vap& entry) {
        static vap_settings vaps[16];
        vap_settings& vap = vaps[3];
        vap.status = 1;
        vap.ssid = entry.ssid;
        vap.bcast_ssid = entry.bcast_ssid;
        vap.vlan_id = entry.vlan_id;
        vap.band_steer = entry.band_steer;
        vap.mfp = entry.mfp;
        vap.inactivity_timer = ORLO_NOT_GIVEN;
        vap.deauth_dup_auth = ORLO_NOT_GIVEN;
        vap.assoc_advertisement = ORLO_NOT_GIVEN;
        vap.dtim_period = ORLO_NOT_GIVEN;
        vap.proxy_arp = ORLO_NOT_GIVEN;
        vap.wireless_security = entry.wireless_security;
        if (strcmp(entry.wireless_security, "wpa-personal") == 0) {
            const quilt_wpa_personal& personal = entry.wpa_personal;
            vap.wpa_personal = {personal.wpa, personal.cipher_suites, personal.refresh_rate, 0,
                                personal.key};
        } else {
            const quilt_wpa_enterprise& enterprise = entry.wpa_enterprise;
            vap.wpa_enterprise = {};
            vap.wpa_enterprise.wpa = enterprise.wpa;
            vap.wpa_enterprise.cipher_suites = enterprise.cipher_suites;
            vap.wpa_enterprise.Bcast_refresh_rate = enterprise.Bcast_refresh_rate;
            vap.wpa_enterprise.Session_refresh_rate = ORLO_NOT_GIVEN;
            vap.wpa_enterprise.Radius_accounting = enterprise.Radius_accounting;
            vap.wpa_enterprise.dynamic_vlan = enterprise.dynamic_vlan;
            memcpy(vap.radius_server, enterprise.radius_server, sizeof vap.radius_server);
        }
        door.forget();
        return ops.api_apply_vap(1, vaps);
    }

    // Both must do the same, but for the SAE groups.
    void compare_with_ordinary_vap() {
        quilt_vap& entry = quilt_.quilt_radio[0];
        const int quilt_result = apply();
        const Trace quilt_edits = security_edits();
        const Trace quilt_staged = staged();
        EXPECT_EQ(quilt_staged.empty(), quilt_result != 0);
        const int ordinary_result = apply_as_ordinary_vap(entry);
        Trace ordinary_edits = security_edits();
        for (std::string& edit : ordinary_edits) {
            edit += edit == "sae_groups=19 20 21" ? " 25 26" : "";
        }
        EXPECT_EQ(quilt_result, ordinary_result);
        EXPECT_EQ(quilt_edits, ordinary_edits);
        exported<decltype(::uciRevertValue)>("uciRevertValue")(nullptr, nullptr);
    }
};

TEST_F(QuiltSecurity, WithAPassphraseBecomesTheOptionsOfAnyVap) {
    for (uint32_t wpa = 0; wpa <= 8; wpa++) {
        for (uint32_t ciphers = 0; ciphers <= 4; ciphers++) {
            for (int mfp : {0, 1}) {
                enable_personal(0, wpa, ciphers).mfp = mfp;
                compare_with_ordinary_vap();
            }
        }
    }
}

TEST_F(QuiltSecurity, WithServersBecomesTheOptionsOfAnyVap) {
    for (uint32_t wpa = 0; wpa <= 8; wpa++) {
        for (uint32_t ciphers = 0; ciphers <= 4; ciphers++) {
            for (int mfp : {0, 1}) {
                quilt_vap& vap = enable_enterprise(0, wpa, ciphers);
                vap.mfp = mfp;
                compare_with_ordinary_vap();
                vap.wpa_enterprise.Radius_accounting = 1;
                vap.wpa_enterprise.dynamic_vlan = 1;
                vap.wpa_enterprise.radius_server[1] = {nullptr, "10.0.0.2", nullptr, 2812, -1};
                compare_with_ordinary_vap();
            }
        }
    }
}

TEST_F(QuiltSecurity, WithAPassphraseIsStagedAndLogged) {
    configure("wireless.wifi1vap3.suite_b", "192");
    quilt_.quilt_radio[11] = enable_personal(0, 0x4, 0x2);
    quilt_.quilt_radio[0].enable = 0;
    EXPECT_EQ(apply(), 0);
    EXPECT_THAT(security_edits(),
                ElementsAre("security=wpa-psk", "key=open sesame", "wpakey=open sesame",
                            "wpaversion=wpa3", "encryption=ccmp", "cipher=ccmp", "sae=1",
                            "sae_groups=19 20 21 25 26", "sae_password=open sesame",
                            "wpa_group_rekey=3600", "-suite_b", "ieee80211w=2"));
    // All but the first print the entry's index.
    EXPECT_THAT(own_log_from("info: wpa_personal.key:open sesame"),
                ElementsAre("info: wpa_personal.key:open sesame", "info: wpa_personal.wpa:0xb",
                            "info: wpa_personal.cipher_suites:0xb",
                            "info: wpa_personal.refresh_rate:11", "configure mfp by CQ settings 11",
                            "End, return 0"));
    EXPECT_THAT(door.trace(), testing::Contains("log apply_mfp: vap_settings[3].mfp:2"));
}

TEST_F(QuiltSecurity, WithServersIsStagedAndLogged) {
    for (const char* option :
         {"sae", "sae_groups", "sae_password", "auth_server_second", "auth_secret_second"}) {
        configure(std::string("wireless.wifi1vap3.") + option, "old");
    }
    quilt_vap& vap = enable_enterprise(2, 0x2, 0x3);
    vap.mfp = 1;
    vap.wpa_enterprise.Radius_accounting = 1;
    vap.wpa_enterprise.dynamic_vlan = 1;
    EXPECT_EQ(apply(), 0);
    EXPECT_THAT(security_edits(),
                ElementsAre("security=wpa-ent", "wpaversion=wpa2", "encryption=wpa2+tkip+ccmp",
                            "cipher=tkip+ccmp", "acct_en=1", "wpa_group_rekey=3600",
                            "dynamic_vlan=1", "auth_server=10.0.0.1", "auth_secret=first secret",
                            "auth_port=1812", "acct_port=1813", "-auth_server_second",
                            "-auth_secret_second", "-sae", "-sae_groups", "-sae_password",
                            "ieee80211w=1"));
    EXPECT_THAT(
        own_log_from("info: wpa_enterprise.wpa:0x2"),
        ElementsAre(
            "info: wpa_enterprise.wpa:0x2", "info: wpa_enterprise.cipher_suites:0x3",
            "info: wpa_enterprise.pre_authentication:5", "info: wpa_enterprise.radius_accounting:1",
            "info: wpa_enterprise.dynamic_vlan:1", "info: wpa_enterprise.bcast_refresh_rate:3600",
            "===== RADIUS Server 0 =====", "info: radius_server[0].ip:10.0.0.1",
            "info: radius_server[0].key:first secret", "info: radius_server[0].auth_port:1812",
            "info: radius_server[0].account_port:1813",
            "===== RADIUS Server 1 =====", "info: radius_server[1].ip:NULL",
            "info: delete wireless.auth_server_second successfully",
            "info: delete wireless.auth_secret_second successfully",
            "configure mfp by CQ settings 2", "End, return 0"));
}

TEST_F(QuiltSecurity, ASecondServerWithoutSecretAndAccountingIsLogged) {
    quilt_vap& vap = enable_enterprise(0, 0x4, 0x2);
    vap.wpa_enterprise.radius_server[1] = {nullptr, "10.0.0.2", nullptr, 2812, -1};
    EXPECT_EQ(apply(), 0);
    EXPECT_THAT(own_log_from("info: radius_server[1].ip:10.0.0.2"),
                ElementsAre("info: radius_server[1].ip:10.0.0.2", "info: radius_server[1].key:NULL",
                            "info: delete Value successfully",
                            "info: radius_server[1].auth_port:2812",
                            "info: radius_server[1].account_port:-1",
                            "info: account port = -1, means disabled.",
                            "configure mfp by CQ settings 0", "End, return 0"));
    EXPECT_EQ(staged_value("wireless.wifi1vap3.suite_b"), "192");
}

TEST_F(QuiltSecurity, OfAnUnknownNameIsNotWritten) {
    for (const char* name : {"", "wep", "dynamic-wep", "WPA-personal", "none ", "wpa"}) {
        put(enable(6).wireless_security, name);
        configure("wireless.wifi1vap3.suite_b", "192");
        EXPECT_EQ(apply(), 0) << name;
        EXPECT_THAT(security_edits(), ElementsAre("-suite_b"));
        EXPECT_EQ(door.log_of("api_apply_channel_quilt").end()[-2],
                  "Security is not \"wpa-personal\" or \"wpa-enterprise\"ignore "
                  "quilt_settings->quilt_radio[6].mfp:0");
        exported<decltype(::uciRevertValue)>("uciRevertValue")(nullptr, nullptr);
    }
}

TEST_F(QuiltSecurity, APassphraseThatFillsItsFieldIsReadToItsEnd) {
    memset(enable_personal(0, 0x2, 0x2).wpa_personal.key, 'k', 65);
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi1vap3.wpakey"), std::string(65, 'k'));
}

TEST_F(QuiltSecurity, EachWrongSettingIsRefusedAndDiscardsEverything) {
    const struct {
        bool personal;
        void (*change)(quilt_vap*);
        const char* message;
    } rows[] = {
        {true, [](quilt_vap* v) { v->wpa_personal.wpa = 1; },
         "error: The wpa version is not support :1 !"},
        {true,
         [](quilt_vap* v) {
             v->wpa_personal.wpa = 0x6;
             v->wpa_personal.cipher_suites = 3;
         },
         "wlan1.3: Mixed cipher is not supported,CCMP is only supported. (no line end)"},
        {true, [](quilt_vap* v) { v->wpa_personal.refresh_rate = -1; },
         "error: The refresh_rate is not correct!"},
        {true, [](quilt_vap* v) { v->wpa_personal.refresh_rate = 86401; },
         "error: The refresh_rate is not correct!"},
        {false, [](quilt_vap* v) { v->wpa_enterprise.wpa = 6; },
         "error: The wpa version is not support :6 !"},
        {false,
         [](quilt_vap* v) {
             v->wpa_enterprise.wpa = 4;
             v->wpa_enterprise.cipher_suites = 1;
         },
         "wlan1.3: Mixed cipher is not supported,CCMP is only supported. (no line end)"},
        {false, [](quilt_vap* v) { v->wpa_enterprise.Bcast_refresh_rate = -1; },
         "error: The refresh rate is not correct!"},
        {false, [](quilt_vap* v) { v->wpa_enterprise.Bcast_refresh_rate = 86401; },
         "error: The refresh rate is not correct!"},
        {false, [](quilt_vap* v) { v->wpa_enterprise.dynamic_vlan = 2; },
         "error: wifi1vap3: The Dynamic VLAN is not correct."},
        {false, [](quilt_vap* v) { v->wpa_enterprise.radius_server[0].ip = nullptr; },
         "error: auth server[0] is not correct!"},
        {false, [](quilt_vap* v) { v->wpa_enterprise.radius_server[0].auth_port = 65536; },
         "error: The auth server port is not correct!"},
        {false, [](quilt_vap* v) { v->wpa_enterprise.radius_server[0].auth_port = -1; },
         "error: The auth server port is not correct!"},
        {false, [](quilt_vap* v) { v->wpa_enterprise.radius_server[0].account_port = -2; },
         "error: account port(-2) is not correct!"},
        {false, [](quilt_vap* v) { v->wpa_enterprise.radius_server[0].account_port = 65536; },
         "error: account port(65536) is not correct!"},
    };
    for (const auto& row : rows) {
        ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
        quilt_vap& vap = row.personal ? enable_personal(0, 2, 2) : enable_enterprise(0, 2, 2);
        row.change(&vap);
        EXPECT_EQ(apply(), -1);
        EXPECT_EQ(refusal(), row.message);
        EXPECT_EQ(door.trace().back(), "revert all");
        EXPECT_THAT(staged(), IsEmpty());
    }
}

TEST_F(QuiltSecurity, TheBoundsThemselvesAreAccepted) {
    for (int bound : {0, 86400}) {
        enable_personal(0, 2, 2).wpa_personal.refresh_rate = bound;
        EXPECT_EQ(apply(), 0);
        EXPECT_EQ(staged_value("wireless.wifi1vap3.wpa_group_rekey"), std::to_string(bound));
    }
    for (int bound : {0, 65535}) {
        quilt_vap& vap = enable_enterprise(0, 2, 2);
        vap.wpa_enterprise.radius_server[0].auth_port = bound;
        vap.wpa_enterprise.radius_server[0].account_port = bound;
        EXPECT_EQ(apply(), 0);
        EXPECT_EQ(staged_value("wireless.wifi1vap3.auth_port"), std::to_string(bound));
        EXPECT_EQ(staged_value("wireless.wifi1vap3.acct_port"), std::to_string(bound));
    }
}

TEST_F(QuiltSecurity, AWrongAccountingFlagLeavesEverythingStaged) {
    ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
    for (int flag : {2, -1}) {
        enable_enterprise(0, 0x2, 0x2).wpa_enterprise.Radius_accounting = flag;
        EXPECT_EQ(apply(), -1);
        EXPECT_EQ(refusal(), "error: The Radius accounting is not correct!");
        EXPECT_THAT(door.trace({"revert"}), IsEmpty());
        EXPECT_THAT(staged(), testing::Contains("wireless.wifi1vap3.cipher=ccmp"));
        EXPECT_THAT(staged(), testing::Contains("quilt.config_quilt.vlan_id=7"));
        EXPECT_THAT(staged(), testing::Contains("orloagent.agent.confighash=abc"));
    }
}

// The step refuses before the flag could be checked by the operation itself.
TEST_F(QuiltSecurity, AWrongFrameProtectionFlagIsRefusedAsItIsWritten) {
    for (int flag : {2, -1}) {
        ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
        enable_personal(4, 0x2, 0x2).mfp = flag;
        EXPECT_EQ(apply(), -1);
        const Trace lines = door.trace();
        EXPECT_THAT(Trace(lines.end() - 3, lines.end()),
                    ElementsAre("log api_apply_channel_quilt: configure mfp by CQ settings 4",
                                "log apply_mfp: invalid mfp: " + std::to_string(flag),
                                "revert all"));
        EXPECT_THAT(staged(), IsEmpty());
    }
}

TEST_F(QuiltSecurity, EachFailedWriteEndsTheCall) {
    constexpr int writes_before = 2 + 9;
    quilt_vap& enterprise = enable_enterprise(0, 0x4, 0x2);
    enterprise.wpa_enterprise.radius_server[1] = {nullptr, "10.0.0.2", "second secret", 2, 3};
    const quilt_vap with_servers = enterprise;
    const quilt_vap with_passphrase = enable_personal(0, 0x6, 0x2);
    for (const quilt_vap& vap : {with_servers, with_passphrase}) {
        quilt_.quilt_radio[0] = vap;
        ASSERT_EQ(apply(), 0);
        const Trace edits = security_edits();
        ASSERT_EQ(exported<decltype(::uciRevertValue)>("uciRevertValue")(nullptr, nullptr), 0);
        for (size_t i = 0; i < edits.size(); i++) {
            const std::string edited = "wireless.wifi1vap3." + edits[i];
            door.fail(Call::uci_set, writes_before + static_cast<int>(i) + 1);
            EXPECT_EQ(apply(), -1);
            EXPECT_EQ(door.trace({"set"}).back(), "set " + edited + " (failed)");
            if (edits[i].compare(0, 10, "ieee80211w") == 0) {
                EXPECT_EQ(door.log_of("apply_mfp").back(), "Set Value Failed : " + edited + "!");
                EXPECT_EQ(refusal(), "configure mfp by CQ settings 0");
            } else {
                EXPECT_EQ(refusal(), edits[i] == "dynamic_vlan=0"
                                         ? "error: failed to uci set: " + edited
                                         : "error: Set Value Failed : " + edited + "!");
            }
            EXPECT_EQ(door.trace().back(), "revert all");
            EXPECT_THAT(staged(), IsEmpty());
        }
    }
}

TEST_F(QuiltSecurity, AFailedWpa2WithServersIsLoggedAsMixed) {
    enable_enterprise(0, 0x2, 0x2);
    door.fail(Call::uci_set, 2 + 9 + 2);
    EXPECT_EQ(apply(), -1);
    EXPECT_EQ(refusal(), "error: Set Value Failed : wireless.wifi1vap3.wpaversion=mixed!");
}

TEST_F(QuiltSecurity, OptionsThatCannotBeTakenAwayEndTheCall) {
    const struct {
        const char* option;
        const char* message;
    } rows[] = {
        {"key", "error: delete Value Failed"},
        {"sae", "Delete Value Failed : wireless.wifi1vap3.sae!"},
        {"sae_groups", "Delete Value Failed : wireless.wifi1vap3.sae_groups!"},
        {"sae_password", "Delete Value Failed : wireless.wifi1vap3.sae_password!"},
        {"suite_b", "Delete Value Failed : wireless.wifi1vap3.suite_b!"},
    };
    for (const auto& row : rows) {
        const std::string option = std::string("wireless.wifi1vap3.") + row.option;
        configure(option, "old");
        enable(0);
        door.fail(Call::uci_delete);
        EXPECT_EQ(apply(), -1);
        EXPECT_EQ(refusal(), row.message);
        EXPECT_EQ(door.trace().back(), "revert all");
        EXPECT_THAT(staged(), IsEmpty());
        configure(option, "");
    }
}

} // namespace orlo::test
