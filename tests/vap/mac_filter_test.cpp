// SPDX-License-Identifier: MIT
// Filtering a VAP's stations by address.
#include "support/access_point.h"

#include <climits>
#include <cstring>

namespace orlo::test {

// ---- The filter's mode ----

using MacFilter = AccessPoint;

TEST_F(MacFilter, ModeIsStagedAsItIs) {
    EXPECT_EQ(ops.api_apply_mac_filter_mode(1, 15, 7), 0);
    EXPECT_THAT(door.trace(),
                ElementsAre("log api_apply_mac_filter_mode: Entering... radio:1 vap:15 mode:7",
                            "set wireless.wifi1vap15.macfilter=7",
                            "log api_apply_mac_filter_mode: End Successfully"));
    EXPECT_THAT(staged(), ElementsAre("wireless.wifi1vap15.macfilter=7"));
    for (int mode : {1, 2, 3, 4, 0, -1, INT_MAX, INT_MIN}) {
        EXPECT_EQ(ops.api_apply_mac_filter_mode(0, 0, mode), 0);
        EXPECT_EQ(staged_value("wireless.wifi0vap0.macfilter"), std::to_string(mode));
    }
}

TEST_F(MacFilter, MarksTheNetworkForTheNextSaveOnSuccessOnly) {
    door.fail(Call::uci_set);
    ASSERT_EQ(ops.api_apply_mac_filter_mode(0, 1, 1), -1);
    EXPECT_FALSE(saving_restarts_network());
    ASSERT_EQ(ops.api_apply_mac_filter_mode(0, 1, 1), 0);
    EXPECT_TRUE(saving_restarts_network());
    EXPECT_EQ(committed_value("wireless.wifi0vap1.macfilter"), "1");
}

TEST_F(MacFilter, ThatCannotBeWrittenDiscardsEverything) {
    ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
    door.forget();
    door.fail(Call::uci_set);
    EXPECT_EQ(ops.api_apply_mac_filter_mode(0, 2, 3), -1);
    EXPECT_THAT(door.trace(),
                ElementsAre("log api_apply_mac_filter_mode: Entering... radio:0 vap:2 mode:3",
                            "set wireless.wifi0vap2.macfilter=3 (failed)",
                            "log api_apply_mac_filter_mode: Error: Set Value Failed",
                            "revert all"));
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(MacFilter, OfAVapThatDoesNotExistIsRefusedByTheStore) {
    const std::pair<int, int> rows[] = {{2, 0}, {0, 16}, {-1, -1}, {INT_MIN, INT_MAX}};
    for (const auto& [radio, vap] : rows) {
        EXPECT_EQ(ops.api_apply_mac_filter_mode(radio, vap, 1), -1) << radio << " " << vap;
        EXPECT_EQ(door.trace().back(), "revert all");
        EXPECT_THAT(staged(), IsEmpty());
    }
}

// ---- MAC authentication: the servers ----

class MacAuthentication : public AccessPoint {
protected:
    // A primary server with a fixed password.
    mac_auth_radius_server server_ = {1,        "10.0.0.1", "secret",         1812,
                                      "hyphen", "lower",    "fixed-password", "open sesame"};

    const char* wild_; // where nothing may be read

    const std::string own_ = "log api_apply_mac_auth_radius_server: ";
    const std::string own_error_ = "log 5/1 api_apply_mac_auth_radius_server: ";

    MacAuthentication() { memset(&wild_, 0x5a, sizeof wild_); }

    int apply(int radio = 0, int vap = 5) {
        door.forget();
        return ops.api_apply_mac_auth_radius_server(radio, vap, &server_);
    }
};

TEST_F(MacAuthentication, APrimaryServerIsStagedInOrder) {
    EXPECT_EQ(apply(), 0);
    EXPECT_THAT(door.trace(),
                ElementsAre(own_ + "Entering...", "set wireless.wifi0vap5.mac_auth_server=10.0.0.1",
                            "set wireless.wifi0vap5.mac_auth_secret=secret",
                            "set wireless.wifi0vap5.mac_auth_port=1812",
                            "set wireless.wifi0vap5.mac_auth_username_separator=hyphen",
                            "set wireless.wifi0vap5.mac_auth_username_case=lower",
                            "set wireless.wifi0vap5.mac_auth_password_format=fixed-password",
                            "set wireless.wifi0vap5.mac_auth_password=open sesame",
                            own_ + "End return 0"));
}

TEST_F(MacAuthentication, OfASecondaryServerOnlyAddressAndKeyAreRead) {
    ASSERT_EQ(apply(1, 14), 0);
    server_ = {2, "10.0.0.2", "other", 9, wild_, wild_, wild_, wild_};
    EXPECT_EQ(apply(1, 14), 0);
    EXPECT_THAT(door.trace(), ElementsAre(own_ + "Entering...",
                                          "set wireless.wifi1vap14.mac_auth_server_second=10.0.0.2",
                                          "set wireless.wifi1vap14.mac_auth_secret_second=other",
                                          own_ + "End return 0"));
    const std::pair<const char*, const char*> kept[] = {
        {"server", "10.0.0.1"},
        {"secret", "secret"},
        {"port", "1812"},
        {"username_separator", "hyphen"},
        {"username_case", "lower"},
        {"password_format", "fixed-password"},
        {"password", "open sesame"},
        {"server_second", "10.0.0.2"},
        {"secret_second", "other"},
    };
    for (const auto& [option, value] : kept) {
        EXPECT_EQ(staged_value(std::string("wireless.wifi1vap14.mac_auth_") + option), value);
    }
}

TEST_F(MacAuthentication, APasswordIsReadWithTheFixedFormatOnly) {
    configure("wireless.wifi0vap5.mac_auth_password", "old");
    server_.password = wild_;
    for (const char* format : {"username", "Fixed-password", "fixed-password ", "fixed", ""}) {
        server_.password_format = format;
        EXPECT_EQ(apply(), 0);
        EXPECT_EQ(door.trace({"set"}).back(),
                  std::string("set wireless.wifi0vap5.mac_auth_password_format=") + format);
        EXPECT_EQ(staged_value("wireless.wifi0vap5.mac_auth_password"), "old");
    }
}

TEST_F(MacAuthentication, AnotherIndexIsRefusedAndLeavesStagedChangesInPlace) {
    ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
    for (uint32_t index : {0U, 3U, UINT32_MAX}) {
        server_ = {index, wild_, wild_, 0, wild_, wild_, wild_, wild_};
        EXPECT_EQ(apply(), -1);
        EXPECT_THAT(door.trace(), ElementsAre(own_ + "Entering...", own_ + "End return -1"));
    }
    EXPECT_EQ(ops.api_apply_mac_auth_radius_server(0, 0, nullptr), -1) << "nor without a record";
    EXPECT_THAT(staged(), ElementsAre("orloagent.agent.confighash=abc"));
    EXPECT_FALSE(saving_restarts_network());
}

TEST_F(MacAuthentication, EachFailedWriteOfAPrimaryServerDiscardsEverything) {
    const struct {
        const char* edit;
        const char* message;
    } rows[] = {
        {"server=10.0.0.1", "Failed to set ip address 10.0.0.1 to wifi0vap5.mac_auth_server"},
        {"secret=secret", "Failed to set radius key secret to wifi0vap5.mac_auth_secret"},
        {"port=1812", "Failed to set port 1812 to wifi0vap5.mac_auth_port"},
        {"username_separator=hyphen",
         "Failed to set separator hyphen to wifi0vap5.mac_auth_username_separator"},
        {"username_case=lower",
         "Failed to set character case lower to wifi0vap5.mac_auth_username_case"},
        {"password_format=fixed-password",
         "Failed to set password fixed-password to wifi0vap5.mac_auth_password_format"},
        {"password=open sesame",
         "Failed to set fixed password open sesame to wifi0vap5.mac_auth_password"},
    };
    int nth = 0;
    for (const auto& row : rows) {
        ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
        door.fail(Call::uci_set, ++nth);
        EXPECT_EQ(apply(), -1);
        EXPECT_EQ(door.trace({"set"}).back(),
                  std::string("set wireless.wifi0vap5.mac_auth_") + row.edit + " (failed)");
        EXPECT_THAT(door.trace({"log", "revert"}),
                    ElementsAre(own_ + "Entering...", own_error_ + row.message, "revert all",
                                own_ + "End return -1"));
        EXPECT_THAT(staged(), IsEmpty());
    }
    EXPECT_FALSE(saving_restarts_network());
    door.fail(Call::uci_set, ++nth);
    EXPECT_EQ(apply(), 0) << "there is no other write";
}

TEST_F(MacAuthentication, EachFailedWriteOfASecondaryServerDiscardsEverything) {
    const char* const rows[] = {
        "Failed to set ip address 10.0.0.1 to wifi0vap5.mac_auth_server_second",
        "Failed to set radius key secret to wifi0vap5.mac_auth_secret_second",
    };
    server_.index = 2;
    int nth = 0;
    for (const char* message : rows) {
        ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
        door.fail(Call::uci_set, ++nth);
        EXPECT_EQ(apply(), -1);
        EXPECT_THAT(door.trace({"log", "revert"}),
                    ElementsAre(own_ + "Entering...", own_error_ + message, "revert all",
                                own_ + "End return -1"));
        EXPECT_THAT(staged(), IsEmpty());
    }
}

TEST_F(MacAuthentication, ATextThatIsNotGivenFailsAtItsOwnWrite) {
    const struct {
        const char* mac_auth_radius_server::*text;
        size_t edits_before;
        const char* message;
    } rows[] = {
        {&mac_auth_radius_server::ip, 0,
         "Failed to set ip address NULL to wifi0vap5.mac_auth_server"},
        {&mac_auth_radius_server::key, 1,
         "Failed to set radius key NULL to wifi0vap5.mac_auth_secret"},
        {&mac_auth_radius_server::username_separator, 3,
         "Failed to set separator NULL to wifi0vap5.mac_auth_username_separator"},
        {&mac_auth_radius_server::username_case, 4,
         "Failed to set character case NULL to wifi0vap5.mac_auth_username_case"},
        {&mac_auth_radius_server::password_format, 5,
         "Failed to set password NULL to wifi0vap5.mac_auth_password_format"},
        {&mac_auth_radius_server::password, 6,
         "Failed to set fixed password NULL to wifi0vap5.mac_auth_password"},
    };
    const mac_auth_radius_server valid = server_;
    for (const auto& row : rows) {
        server_.*row.text = nullptr;
        EXPECT_EQ(apply(), -1);
        EXPECT_EQ(door.trace({"set"}).size(), row.edits_before) << row.message;
        EXPECT_THAT(door.trace(), testing::Contains(own_error_ + row.message));
        EXPECT_THAT(door.trace(), testing::Contains("revert all"));
        EXPECT_EQ(door.trace().back(), own_ + "End return -1");
        EXPECT_THAT(staged(), IsEmpty());
        server_ = valid;
    }
}

TEST_F(MacAuthentication, EmptyTextsTakeTheirOptionsAway) {
    ASSERT_EQ(apply(), 0);
    server_ = {1, "", "", 1812, "hyphen", "lower", "username", ""};
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi0vap5.mac_auth_server"), "(none)");
    EXPECT_EQ(staged_value("wireless.wifi0vap5.mac_auth_secret"), "(none)");
    EXPECT_EQ(staged_value("wireless.wifi0vap5.mac_auth_password"), "open sesame") << "not written";
    EXPECT_THAT(door.trace({"set"}), testing::Contains("set wireless.wifi0vap5.mac_auth_server="));
}

TEST_F(MacAuthentication, SevenDigitsOfAPortAreStored) {
    const std::pair<uint32_t, const char*> rows[] = {
        {0, "0"}, {65536, "65536"}, {9999999, "9999999"}, {UINT32_MAX, "4294967"}};
    for (const auto& [port, text] : rows) {
        server_.port = port;
        EXPECT_EQ(apply(), 0);
        EXPECT_EQ(staged_value("wireless.wifi0vap5.mac_auth_port"), text);
    }
    server_.port = UINT32_MAX;
    door.fail(Call::uci_set, 3);
    EXPECT_EQ(apply(), -1);
    EXPECT_THAT(door.trace(), testing::Contains(own_error_ + "Failed to set port 4294967295 to "
                                                             "wifi0vap5.mac_auth_port"));
}

TEST_F(MacAuthentication, AServerMarksTheNetworkForTheNextSave) {
    ASSERT_EQ(apply(), 0);
    EXPECT_TRUE(saving_restarts_network());
    EXPECT_EQ(committed_value("wireless.wifi0vap5.mac_auth_server"), "10.0.0.1");
    server_.index = 2;
    ASSERT_EQ(apply(), 0);
    EXPECT_TRUE(saving_restarts_network()) << "a secondary one too";
}

TEST_F(MacAuthentication, AServerOfAVapThatDoesNotExistIsRefusedByTheStore) {
    EXPECT_EQ(apply(INT_MIN, INT_MAX), -1);
    EXPECT_EQ(door.trace().back(), own_ + "End return -1");
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(MacAuthentication, ALongTextIsCutByTheStoresLimit) {
    const std::string text(600, 'x');
    const std::string path = "wireless.wifi0vap5.mac_auth_secret";
    server_.key = text.c_str();
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value(path), text.substr(0, 511 - path.size() - 1));
}

// ---- MAC authentication: the critical mode ----

TEST_F(MacAuthentication, TheCriticalModeIsStagedInSilenceAndMarksNothing) {
    EXPECT_EQ(ops.api_apply_mac_auth_critical_mode(1, 0, 1), 0);
    EXPECT_THAT(door.trace(), ElementsAre("set wireless.wifi1vap0.mac_critical_mode=1"));
    EXPECT_FALSE(saving_restarts_network());
    EXPECT_EQ(committed_value("wireless.wifi1vap0.mac_critical_mode"), "1") << "saved all the same";
}

TEST_F(MacAuthentication, SevenCharactersOfTheCriticalModeAreStored) {
    const std::pair<int, const char*> rows[] = {
        {0, "0"}, {-1, "-1"}, {9999999, "9999999"}, {INT_MAX, "2147483"}, {INT_MIN, "-214748"}};
    for (const auto& [mode, text] : rows) {
        EXPECT_EQ(ops.api_apply_mac_auth_critical_mode(1, 0, mode), 0);
        EXPECT_EQ(staged_value("wireless.wifi1vap0.mac_critical_mode"), text);
    }
}

TEST_F(MacAuthentication, ACriticalModeThatCannotBeWrittenDiscardsEverything) {
    ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
    door.forget();
    door.fail(Call::uci_set);
    EXPECT_EQ(ops.api_apply_mac_auth_critical_mode(0, 3, INT_MIN), -1);
    EXPECT_THAT(door.trace(),
                ElementsAre("set wireless.wifi0vap3.mac_critical_mode=-214748 (failed)",
                            "log 5/1 api_apply_mac_auth_critical_mode: Failed to set critical mode "
                            "-2147483648 to wifi0vap3.mac_critical_mode",
                            "revert all"));
    EXPECT_THAT(staged(), IsEmpty());
}

} // namespace orlo::test
