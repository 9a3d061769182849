// SPDX-License-Identifier: MIT
// VAPs with WPA and RADIUS servers.
#include "vap/vap_profile.h"

namespace orlo::test {

using EnterpriseVap = VapProfile;

TEST_F(EnterpriseVap, WithTwoServersIsStagedInOrder) {
    vap_settings& vap = enable_enterprise(0, 0x2, 0x2);
    vap.mfp = 1;
    vap.wpa_enterprise.Session_refresh_rate = 0;
    vap.wpa_enterprise.session_key_refresh_action = "Reauthenticate";
    vap.wpa_enterprise.Radius_accounting = 1;
    vap.wpa_enterprise.dynamic_vlan = 1;
    vap.radius_server[1] = {nullptr, "10.0.0.2", "second secret", 2812, 2813};
    EXPECT_EQ(apply(), 0);
    EXPECT_THAT(security_edits(),
                ElementsAre("security=wpa-ent", "wpaversion=wpa2", "encryption=wpa2+ccmp",
                            "cipher=ccmp", "acct_en=1", "wpa_group_rekey=3600",
                            "session_key_refresh_rate=0",
                            "session_key_refresh_action=Reauthenticate", "dynamic_vlan=1",
                            "auth_server=10.0.0.1", "auth_secret=first secret", "auth_port=1812",
                            "acct_port=1813", "auth_server_second=10.0.0.2",
                            "auth_secret_second=second secret", "auth_port=2812", "acct_port=2813",
                            "ieee80211w=1"))
        << "the second server's ports replace the first one's";
}

TEST_F(EnterpriseVap, SaysWhatItIsGiven) {
    vap_settings& vap = enable_enterprise(0, 0x2, 0x2);
    vap.radius_server[1] = {nullptr, "10.0.0.2", nullptr, 0, -1};
    EXPECT_EQ(apply(), 0);
    const Trace log = own_log();
    const auto first = std::find(log.begin(), log.end(), "vap_settings[0].wpa_enterprise.wpa:0x2");
    ASSERT_NE(first, log.end());
    EXPECT_THAT(Trace(first, first + 21),
                testing::ElementsAreArray({
                    "vap_settings[0].wpa_enterprise.wpa:0x2",
                    "vap_settings[0].wpa_enterprise.cipher_suites:0x2",
                    "vap_settings[0].wpa_enterprise.pre_authentication:5",
                    "vap_settings[0].wpa_enterprise.pre_authentication_limit:6 NOT support.",
                    "vap_settings[0].wpa_enterprise.Radius_accounting:0",
                    "vap_settings[0].wpa_enterprise.dynamic_vlan:0",
                    "vap_settings[0].wpa_enterprise.require_vlan_id:7 NOT support.",
                    "vap_settings[0].wpa_enterprise.Bcast_refresh_rate:3600",
                    "vap_settings[0].wpa_enterprise.Session_refresh_rate:-1 NOT support.",
                    "===== RADIUS Server 0 =====",
                    "vap_settings[0].radius_server[0].ip:10.0.0.1",
                    "vap_settings[0].radius_server[0].key:first secret",
                    "vap_settings[0].radius_server[0].auth_port:1812",
                    "vap_settings[0].radius_server[0].account_port:1813",
                    "===== RADIUS Server 1 =====",
                    "vap_settings[0].radius_server[1].ip:10.0.0.2",
                    "vap_settings[0].radius_server[1].key:NULL",
                    "delete Value successfully",
                    "vap_settings[0].radius_server[1].auth_port:0",
                    "vap_settings[0].radius_server[1].account_port:-1",
                    "Info: account port = -1, means disabled.",
                }));
}

struct EnterpriseRow {
    uint32_t wpa;
    uint32_t cipher_suites;
    Trace options; // between "security" and "acct_en"
};

void PrintTo(const EnterpriseRow& row, std::ostream* stream) {
    *stream << "wpa " << row.wpa << " ciphers " << row.cipher_suites;
}

class EnterpriseRows : public VapProfile, public testing::WithParamInterface<EnterpriseRow> {};

TEST_P(EnterpriseRows, BecomeTheseOptions) {
    enable_enterprise(0, GetParam().wpa, GetParam().cipher_suites);
    EXPECT_EQ(apply(), 0);
    const Trace edits = security_edits();
    const auto last = std::find(edits.begin(), edits.end(), "acct_en=0");
    ASSERT_NE(last, edits.end());
    EXPECT_EQ(edits.front(), "security=wpa-ent");
    EXPECT_EQ(Trace(edits.begin() + 1, last), GetParam().options);
}

const EnterpriseRow enterprise_rows[] = {
    {0x4, 0x2, {"wpaversion=wpa3", "encryption=ccmp", "cipher=ccmp", "suite_b=192"}},
    {0x3, 0x3, {"wpaversion=mixed", "encryption=wpa-mixed+tkip+ccmp", "cipher=tkip+ccmp"}},
    {0x3, 0x2, {"wpaversion=mixed", "encryption=wpa-mixed+ccmp", "cipher=ccmp"}},
    {0x3, 0x1, {"wpaversion=mixed", "encryption=wpa-mixed+tkip", "cipher=tkip"}},
    {0x3, 0x0, {"wpaversion=mixed"}},
    {0x3, 0x7, {"wpaversion=mixed"}},
    {0x2, 0x3, {"wpaversion=wpa2", "encryption=wpa2+tkip+ccmp", "cipher=tkip+ccmp"}},
    {0x2, 0x2, {"wpaversion=wpa2", "encryption=wpa2+ccmp", "cipher=ccmp"}},
    {0x2, 0x1, {"wpaversion=wpa2", "encryption=wpa2+tkip", "cipher=tkip"}},
    {0x2, 0x0, {"wpaversion=wpa2"}},
    {0x2, 0x4, {"wpaversion=wpa2"}},
};

INSTANTIATE_TEST_SUITE_P(Versions, EnterpriseRows, testing::ValuesIn(enterprise_rows));

TEST_F(EnterpriseVap, Wpa3TakesNoOtherCipherThanCcmp) {
    for (uint32_t ciphers : {0x0U, 0x1U, 0x3U, 0x6U}) {
        enable_enterprise(0, 0x4, ciphers);
        EXPECT_EQ(apply(), -1);
        EXPECT_EQ(refusal(), "wlan1.0: Mixed chiper is not supported,CCMP is only supported. (no "
                             "line end)");
        EXPECT_THAT(staged(), IsEmpty());
    }
}

TEST_F(EnterpriseVap, OtherVersionsAreRefused) {
    for (uint32_t wpa : {0x0U, 0x1U, 0x5U, 0x6U, 0x7U}) {
        enable_enterprise(0, wpa, 0x2).wpa_enterprise.Radius_accounting = 2; // looked at later
        EXPECT_EQ(apply(), -1);
        EXPECT_EQ(refusal(), "The wpa version is not support :" + std::to_string(wpa) + " !");
        EXPECT_EQ(door.trace({"set"}).back(), "set wireless.wifi1vap0.security=wpa-ent");
        EXPECT_THAT(staged(), IsEmpty());
    }
}

TEST_F(EnterpriseVap, WithWpa3KeepsSuiteBAndLosesSae) {
    for (const char* option : {"sae", "sae_groups", "sae_password"}) {
        configure(std::string("wireless.wifi1vap0.") + option, "old");
    }
    enable_enterprise(0, 0x4, 0x2);
    EXPECT_EQ(apply(), 0);
    const Trace edits = security_edits();
    EXPECT_THAT(Trace(edits.end() - 4, edits.end()),
                ElementsAre("-sae", "-sae_groups", "-sae_password", "ieee80211w=2"));
    EXPECT_EQ(staged_value("wireless.wifi1vap0.suite_b"), "192");
}

TEST_F(EnterpriseVap, AWrongAccountingFlagKeepsWhatIsStaged) {
    ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
    for (int flag : {2, -1}) {
        enable_enterprise(0, 0x2, 0x2).wpa_enterprise.Radius_accounting = flag;
        EXPECT_EQ(apply(), -1);
        EXPECT_EQ(refusal(), "The Radius accounting is not correct!");
        EXPECT_THAT(door.trace({"revert"}), IsEmpty());
        EXPECT_THAT(staged(), testing::Contains("wireless.wifi1vap0.security=wpa-ent"));
        EXPECT_THAT(staged(), testing::Contains("wireless.wifi1vap0.wpaversion=wpa2"));
        EXPECT_THAT(staged(), testing::Contains("wireless.wifi1vap0.cipher=ccmp"));
        EXPECT_THAT(staged(), testing::Contains("orloagent.agent.confighash=abc"));
    }
    door.forget();
    ASSERT_EQ(ops.api_save_config(), 0);
    EXPECT_THAT(door.trace({"run"}), testing::Not(testing::Contains(HasSubstr("network-5"))))
        << "nor is the network marked";
}

TEST_F(EnterpriseVap, EachWrongSettingIsRefusedAndDiscardsEverything) {
    const struct {
        void (*change)(vap_settings*);
        const char* message;
    } rows[] = {
        {[](vap_settings* v) { v->wpa_enterprise.Bcast_refresh_rate = -1; },
         "The refresh rate is not correct!"},
        {[](vap_settings* v) { v->wpa_enterprise.Bcast_refresh_rate = 86401; },
         "The refresh rate is not correct!"},
        {[](vap_settings* v) { v->wpa_enterprise.dynamic_vlan = 2; },
         "error: wifi1vap0: The Dynamic VLAN is not correct."},
        {[](vap_settings* v) { v->wpa_enterprise.dynamic_vlan = -1; },
         "error: wifi1vap0: The Dynamic VLAN is not correct."},
        {[](vap_settings* v) { v->radius_server[0].ip = nullptr; },
         "Error: auth server[0] is not correct!"},
        {[](vap_settings* v) { v->radius_server[0].auth_port = -1; },
         "The auth server port is not correct!"},
        {[](vap_settings* v) { v->radius_server[0].auth_port = 65536; },
         "The auth server port is not correct!"},
        {[](vap_settings* v) { v->radius_server[0].account_port = -2; },
         "Error: account port(-2) is not correct!"},
        {[](vap_settings* v) { v->radius_server[0].account_port = 70000; },
         "Error: account port(70000) is not correct!"},
        {[](vap_settings* v) {
             v->radius_server[1] = {nullptr, "10.0.0.2", "s", 65536, 0};
         },
         "The auth server port is not correct!"},
        {[](vap_settings* v) {
             v->radius_server[1] = {nullptr, "10.0.0.2", "s", 0, 65536};
         },
         "Error: account port(65536) is not correct!"},
    };
    for (const auto& row : rows) {
        ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
        row.change(&enable_enterprise(0, 0x2, 0x2));
        EXPECT_EQ(apply(), -1);
        EXPECT_EQ(refusal(), row.message);
        EXPECT_EQ(door.trace().back(), "revert all");
        EXPECT_THAT(staged(), IsEmpty());
    }
}

TEST_F(EnterpriseVap, AServerIsCheckedFieldByField) {
    vap_settings& vap = enable_enterprise(0, 0x2, 0x2);
    vap.radius_server[0].auth_port = -1;
    EXPECT_EQ(apply(), -1);
    EXPECT_EQ(door.trace({"set"}).back(), "set wireless.wifi1vap0.auth_secret=first secret");
    EXPECT_FALSE(logged("vap_settings[0].radius_server[0].account_port:1813"));
    vap.radius_server[0].auth_port = 1;
    vap.radius_server[0].account_port = -2;
    EXPECT_EQ(apply(), -1);
    EXPECT_EQ(door.trace({"set"}).back(), "set wireless.wifi1vap0.auth_port=1");
    EXPECT_TRUE(logged("vap_settings[0].radius_server[0].account_port:-2"));
    vap.radius_server[0].ip = nullptr;
    EXPECT_EQ(apply(), -1);
    EXPECT_TRUE(logged("vap_settings[0].radius_server[0].ip:NULL"));
}

TEST_F(EnterpriseVap, SessionRekeyingIsOptional) {
    configure("wireless.wifi1vap0.session_key_refresh_action", "old");
    vap_settings& vap = enable_enterprise(0, 0x2, 0x2);
    vap.wpa_enterprise.Session_refresh_rate = -600;
    vap.wpa_enterprise.session_key_refresh_action = "";
    EXPECT_EQ(apply(), 0);
    EXPECT_THAT(door.trace({"set"}),
                testing::Not(testing::Contains(HasSubstr("session_key_refresh_rate"))));
    EXPECT_EQ(staged_value("wireless.wifi1vap0.session_key_refresh_action"), "(none)")
        << "an empty text is written";
}

TEST_F(EnterpriseVap, ASecondServerWithoutASecretForgetsItsOwn) {
    configure("wireless.wifi1vap0.auth_secret_second", "old");
    vap_settings& vap = enable_enterprise(0, 0x2, 0x2);
    vap.radius_server[1] = {nullptr, "10.0.0.2", nullptr, 1, 1};
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi1vap0.auth_secret_second"), "(none)");
    EXPECT_EQ(staged_value("wireless.wifi1vap0.auth_secret"), "first secret");
}

TEST_F(EnterpriseVap, TheBoundsThemselvesAreAccepted) {
    vap_settings& vap = enable_enterprise(0, 0x2, 0x2);
    vap.wpa_enterprise.Bcast_refresh_rate = 86400;
    vap.radius_server[0].auth_port = 65535;
    vap.radius_server[0].account_port = 65535;
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi1vap0.auth_port"), "65535");
    EXPECT_EQ(staged_value("wireless.wifi1vap0.acct_port"), "65535");
    vap.wpa_enterprise.Bcast_refresh_rate = 0;
    vap.radius_server[0].auth_port = 0;
    vap.radius_server[0].account_port = 0;
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi1vap0.wpa_group_rekey"), "0");
    EXPECT_EQ(staged_value("wireless.wifi1vap0.auth_port"), "0");
    EXPECT_EQ(staged_value("wireless.wifi1vap0.acct_port"), "0");
}

TEST_F(EnterpriseVap, WithoutAccountingKeepsTheStoredPort) {
    configure("wireless.wifi1vap0.acct_port", "4711");
    enable_enterprise(0, 0x2, 0x2).radius_server[0].account_port = -1;
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi1vap0.acct_port"), "4711");
    EXPECT_TRUE(logged("Info: account port = -1, means disabled."));
}

TEST_F(EnterpriseVap, WithOneServerForgetsTheSecond) {
    configure("wireless.wifi1vap0.auth_server_second", "10.0.0.9");
    configure("wireless.wifi1vap0.auth_secret_second", "old");
    enable_enterprise(0, 0x2, 0x2);
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi1vap0.auth_server_second"), "(none)");
    EXPECT_EQ(staged_value("wireless.wifi1vap0.auth_secret_second"), "(none)");
    const Trace log = own_log();
    const auto first = std::find(log.begin(), log.end(), "===== RADIUS Server 1 =====");
    ASSERT_NE(first, log.end());
    EXPECT_THAT(Trace(first + 1, first + 4),
                ElementsAre("vap_settings[0].radius_server[1].ip:NULL",
                            "delete wireless.auth_server_second successfully",
                            "delete wireless.auth_secret_second successfully"));
}

TEST_F(EnterpriseVap, ASecondServerThatCannotBeForgottenIsNoFailure) {
    configure("wireless.wifi1vap0.auth_server_second", "10.0.0.9");
    configure("wireless.wifi1vap0.auth_secret_second", "old");
    enable_enterprise(0, 0x2, 0x2);
    door.fail(Call::uci_delete);
    EXPECT_EQ(apply(), 0);
    EXPECT_FALSE(logged("delete wireless.auth_server_second successfully"));
    EXPECT_TRUE(logged("delete wireless.auth_secret_second successfully"));
}

TEST_F(EnterpriseVap, AServerWithoutASecretForgetsTheStoredOne) {
    configure("wireless.wifi1vap0.auth_secret", "old");
    enable_enterprise(0, 0x2, 0x2).radius_server[0].key = nullptr;
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi1vap0.auth_secret"), "(none)");
    EXPECT_TRUE(logged("delete Value successfully"));
    EXPECT_EQ(exported<decltype(::uciRevertValue)>("uciRevertValue")(nullptr, nullptr), 0);
    door.fail(Call::uci_delete);
    EXPECT_EQ(apply(), 0) << "and goes on when it cannot";
    EXPECT_FALSE(logged("delete Value successfully"));
}

TEST_F(EnterpriseVap, TheSecondServerIsNotReadWithoutTheFirst) {
    vap_settings& vap = enable_enterprise(0, 0x2, 0x2);
    vap.radius_server[0].ip = nullptr;
    vap.radius_server[1] = {nullptr, "10.0.0.2", "s", 1, 1};
    EXPECT_EQ(apply(), -1);
    EXPECT_FALSE(logged("===== RADIUS Server 1 ====="));
}

TEST_F(EnterpriseVap, EachFailedWriteEndsThePush) {
    vap_settings& vap = enable_enterprise(0, 0x4, 0x2);
    vap.wpa_enterprise.Session_refresh_rate = 60;
    vap.wpa_enterprise.session_key_refresh_action = "Disconnect";
    vap.radius_server[1] = {nullptr, "10.0.0.2", "second secret", 2812, 2813};
    ASSERT_EQ(apply(), 0);
    const Trace edits = security_edits();
    ASSERT_EQ(edits.size(), 19U);
    EXPECT_EQ(exported<decltype(::uciRevertValue)>("uciRevertValue")(nullptr, nullptr), 0);
    for (size_t i = 0; i + 1 < edits.size(); i++) {
        EXPECT_EQ(apply_with_failed_write(i), -1);
        EXPECT_EQ(refusal(), edits[i] == "dynamic_vlan=0"
                                 ? "error: failed to uci set: wireless.wifi1vap0.dynamic_vlan=0"
                                 : "Set Value Failed : wireless.wifi1vap0." + edits[i] + "!");
        EXPECT_THAT(staged(), IsEmpty());
    }
}

TEST_F(EnterpriseVap, AFailedWpa2IsLoggedAsMixed) {
    enable_enterprise(0, 0x2, 0x2);
    for (uint32_t ciphers : {0x0U, 0x1U, 0x2U, 0x3U}) {
        vaps_[0].wpa_enterprise.cipher_suites = ciphers;
        EXPECT_EQ(apply_with_failed_write(1), -1);
        EXPECT_EQ(door.trace({"set"}).back(), "set wireless.wifi1vap0.wpaversion=wpa2 (failed)");
        EXPECT_EQ(refusal(), "Set Value Failed : wireless.wifi1vap0.wpaversion=mixed!");
    }
    enable_personal(0, 0x2, 0x2);
    EXPECT_EQ(apply_with_failed_write(3), -1);
    EXPECT_EQ(refusal(), "Set Value Failed : wireless.wifi1vap0.wpaversion=wpa2!");
}

} // namespace orlo::test
