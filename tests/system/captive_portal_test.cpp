// SPDX-License-Identifier: MIT
// The captive portal of a VAP.
#include "captive_portal.h"

#include <climits>

namespace orlo::test {

TEST_F(CaptivePortal, ThatIsOffTouchesNothingElse) {
    memset(&portal_, 0x5a, sizeof portal_);
    for (int enable : {0, 2, -1, INT_MIN}) {
        portal_.enable = enable;
        EXPECT_EQ(apply(), 0);
        EXPECT_THAT(door.trace(), ElementsAre(own_ + "Entering... radio:1 vap:3",
                                              "set wireless.wifi1vap3.captive_portal=0",
                                              own_ + "End Successfully"));
    }
    stage_something();
    door.fail(Call::uci_set);
    EXPECT_EQ(apply(), -1);
    expect_refused("Error: Set Value Failed");
}

TEST_F(CaptivePortal, WithAClickIsStagedInOrder) {
    configure(option("cp_acct_en"), "1");
    EXPECT_EQ(apply(), 0);
    EXPECT_THAT(door.trace(),
                ElementsAre(own_ + "Entering... radio:1 vap:3",
                            "set wireless.wifi1vap3.cp_http_proxy=0",
                            "set wireless.wifi1vap3.cp_redirect_mode=disabled",
                            "set wireless.wifi1vap3.captive_portal=1",
                            "delete wireless.wifi1vap3.cp_acct_en", own_ + "End Successfully"));
    EXPECT_EQ(staged_value(option("cp_acct_en")), "(none)");
}

TEST_F(CaptivePortal, WithRadiusIsStagedInOrder) {
    portal_ = make("radius");
    EXPECT_EQ(apply(), 0);
    EXPECT_THAT(door.trace(),
                ElementsAre(own_ + "Entering... radio:1 vap:3",
                            "set wireless.wifi1vap3.cp_http_proxy=0",
                            "set wireless.wifi1vap3.cp_redirect_mode=disabled",
                            "set wireless.wifi1vap3.captive_portal=2",
                            "set wireless.wifi1vap3.cp_auth_port=1812", own_ + "End Successfully"));
}

TEST_F(CaptivePortal, WithEverythingIsStagedInOrder) {
    configure(option("cp_walled_garden"), "old.example");
    portal_ = make_full();
    EXPECT_EQ(ops.api_apply_captive_portal_to_vap(0, 15, &portal_), 0);
    EXPECT_THAT(
        door.trace(),
        ElementsAre(
            own_ + "Entering... radio:0 vap:15", "set wireless.wifi0vap15.cp_http_proxy=1",
            "set wireless.wifi0vap15.cp_http_proxy_base_url=http://proxy.example/",
            "set wireless.wifi0vap15.cp_redirect_mode=fixed-url",
            "set wireless.wifi0vap15.cp_redirect_url=http://welcome.example/",
            "set wireless.wifi0vap15.cp_session_timeout=3600",
            "set wireless.wifi0vap15.cp_session_timeout_action=logout",
            "set wireless.wifi0vap15.captive_portal=3",
            "set wireless.wifi0vap15.cp_ext_page_url=http://portal.example/",
            "set wireless.wifi0vap15.cp_auth_port=1812", "set wireless.wifi0vap15.cp_acct_en=1",
            "set wireless.wifi0vap15.cp_acct_port=1813",
            "set wireless.wifi0vap15.cp_pri_auth_server=10.0.0.1",
            "set wireless.wifi0vap15.cp_pri_auth_secret=first",
            "set wireless.wifi0vap15.cp_sec_auth_server=10.0.0.2",
            "set wireless.wifi0vap15.cp_sec_auth_secret=second",
            "add wireless.wifi0vap15.cp_walled_garden=a.example",
            "add wireless.wifi0vap15.cp_walled_garden=b.example", own_ + "End Successfully"));
    EXPECT_EQ(staged_value(option("cp_walled_garden")), "old.example") << "of another VAP";
    EXPECT_EQ(ops.api_is_captive_portal_enabled(0, 15), 1);
}

TEST_F(CaptivePortal, OfAnUnknownModeIsRefused) {
    for (const char* mode : {"Radius", "click", "", "ext-page-redirect ", "1"}) {
        stage_something();
        portal_.auth_mode = mode;
        EXPECT_EQ(apply(), -1);
        EXPECT_THAT(edits(), IsEmpty());
        expect_refused(std::string("error: cp->auth_mode: Unknown value ") + mode);
    }
    portal_.auth_mode = nullptr;
    EXPECT_EQ(apply(), -1);
    expect_refused("error: cp->auth_mode: Unknown value NULL");
}

TEST_F(CaptivePortal, WithoutARecordIsRefusedAndLeavesStagedChangesInPlace) {
    stage_something();
    door.forget();
    EXPECT_EQ(ops.api_apply_captive_portal_to_vap(1, 3, nullptr), -1);
    EXPECT_THAT(door.trace(), ElementsAre(own_ + "Entering... radio:1 vap:3"));
    EXPECT_THAT(staged(), ElementsAre("orloagent.agent.confighash=abc"));
}

TEST_F(CaptivePortal, AProxyThatIsOffKeepsItsAddress) {
    configure(option("cp_http_proxy_base_url"), "old");
    for (int enable : {0, 2, -1, INT_MAX}) {
        portal_.http_proxy_enable = enable;
        EXPECT_EQ(apply(), 0);
        EXPECT_EQ(edits()[0], "cp_http_proxy=0");
        EXPECT_EQ(edits()[1], "cp_redirect_mode=disabled");
    }
    EXPECT_EQ(staged_value(option("cp_http_proxy_base_url")), "old");
}

TEST_F(CaptivePortal, RedirectionsAreTranslated) {
    const struct {
        const char* redirect_mode;
        Trace expected;
    } rows[] = {
        {"disable", {"cp_redirect_mode=disabled"}},
        {"session-keep", {"cp_redirect_mode=session-keep"}},
        {"fixed-url", {"cp_redirect_mode=fixed-url", "cp_redirect_url=http://x"}},
    };
    for (const auto& row : rows) {
        portal_ = make("click-through");
        portal_.redirect_mode = row.redirect_mode;
        if (row.expected.size() > 1) {
            portal_.redirect_url = "http://x";
        }
        EXPECT_EQ(apply(), 0);
        Trace expected = {"cp_http_proxy=0"};
        expected.insert(expected.end(), row.expected.begin(), row.expected.end());
        expected.emplace_back("captive_portal=1");
        EXPECT_EQ(edits(), expected);
    }
}

TEST_F(CaptivePortal, OfAnUnknownRedirectionIsRefused) {
    for (const char* mode : {"disabled", "Disable", "", "session", "fixed-url2"}) {
        stage_something();
        portal_.redirect_mode = mode;
        EXPECT_EQ(apply(), -1);
        EXPECT_THAT(edits(), ElementsAre("cp_http_proxy=0"));
        expect_refused(std::string("error: cp->redirect_mode: Unknown value ") + mode);
    }
    portal_.redirect_mode = nullptr;
    EXPECT_EQ(apply(), -1);
    expect_refused("error: cp->redirect_mode: Unknown value NULL");
}

TEST_F(CaptivePortal, ASessionsEndIsOptional) {
    const struct {
        int timeout;
        const char* action;
        Trace expected;
    } rows[] = {
        {-1, nullptr, {}},
        {INT_MIN, "logout", {"cp_session_timeout_action=logout"}},
        {0, nullptr, {"cp_session_timeout=0"}},
        {9999999, nullptr, {"cp_session_timeout=9999999"}},
        {INT_MAX, "", {"cp_session_timeout=2147483", "cp_session_timeout_action="}},
    };
    for (const auto& row : rows) {
        portal_.session_timeout = row.timeout;
        portal_.session_timeout_action = row.action;
        EXPECT_EQ(apply(), 0);
        Trace expected = {"cp_http_proxy=0", "cp_redirect_mode=disabled"};
        expected.insert(expected.end(), row.expected.begin(), row.expected.end());
        expected.emplace_back("captive_portal=1");
        EXPECT_EQ(edits(), expected);
    }
}

TEST_F(CaptivePortal, AccountingMayStayAsItIs) {
    const struct {
        int acct_enable;
        int acct_port;
        Trace expected;
    } rows[] = {
        {-1, 0, {}},
        {1, 1813, {"cp_acct_en=1", "cp_acct_port=1813"}},
        {1, INT_MIN, {"cp_acct_en=1", "cp_acct_port=-2147483648"}},
        {0, 1, {"cp_acct_en=0"}},
        {2, 1, {"cp_acct_en=0"}},
        {-2, 1, {"cp_acct_en=0"}},
    };
    for (const char* mode : {"radius", "ext-page-redirect"}) {
        for (const auto& row : rows) {
            portal_ = make(mode);
            portal_.acct_enable = row.acct_enable;
            portal_.acct_port = row.acct_port;
            EXPECT_EQ(apply(), 0);
            const Trace all = edits();
            const auto port = std::find(all.begin(), all.end(), "cp_auth_port=1812");
            ASSERT_NE(port, all.end());
            EXPECT_EQ(Trace(port + 1, all.end()), row.expected);
        }
    }
}

TEST_F(CaptivePortal, APortIsNotChecked) {
    portal_ = make("radius");
    for (int port : {0, -1, 65536, INT_MIN, INT_MAX}) {
        portal_.auth_port = port;
        EXPECT_EQ(apply(), 0);
        EXPECT_EQ(staged_value(option("cp_auth_port")), std::to_string(port));
    }
}

TEST_F(CaptivePortal, AServerThatIsNotGivenIsDeleted) {
    const char* const options[] = {"cp_pri_auth_server", "cp_pri_auth_secret", "cp_sec_auth_server",
                                   "cp_sec_auth_secret"};
    const struct {
        const char* primary;
        const char* secondary;
        const char* left[4];
    } rows[] = {
        {"10.0.0.1", "10.0.0.2", {"10.0.0.1", "new", "10.0.0.2", "new"}},
        {"10.0.0.1", nullptr, {"10.0.0.1", "new", "(none)", "(none)"}},
        {"", "10.0.0.2", {"(none)", "(none)", "10.0.0.2", "new"}},
        {nullptr, "", {"(none)", "(none)", "(none)", "(none)"}},
    };
    for (const auto& row : rows) {
        for (const char* name : options) {
            configure(option(name), "old");
        }
        portal_ = make("radius");
        portal_.auth_servers[0] = {row.primary, "new"};
        portal_.auth_servers[1] = {row.secondary, "new"};
        EXPECT_EQ(apply(), 0);
        for (int i = 0; i < 4; i++) {
            EXPECT_EQ(staged_value(option(options[i])), row.left[i]) << options[i];
        }
        ASSERT_EQ(ops.api_save_config(), 0);
    }
    portal_ = make("radius");
    EXPECT_EQ(apply(), 0);
    EXPECT_THAT(edits(), ElementsAre("cp_http_proxy=0", "cp_redirect_mode=disabled",
                                     "captive_portal=2", "cp_auth_port=1812"))
        << "nothing is left to delete";
}

TEST_F(CaptivePortal, AServersSecretMayBeEmptyButNotMissing) {
    portal_ = make("radius");
    portal_.auth_servers[0] = {"10.0.0.1", ""};
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(edits().back(), "cp_pri_auth_secret=");
    stage_something();
    portal_.auth_servers[0] = {"10.0.0.1", nullptr};
    EXPECT_EQ(apply(), -1);
    EXPECT_EQ(edits().back(), "cp_pri_auth_server=10.0.0.1");
    expect_refused("Error: Set Value Failed");
}

TEST_F(CaptivePortal, ATextThatItsModeNeedsMayNotBeMissing) {
    const struct {
        const char* cp_settings::*text;
        const char* last_edit;
    } rows[] = {
        {&cp_settings::http_proxy_base_url, "cp_http_proxy=1"},
        {&cp_settings::redirect_url, "cp_redirect_mode=fixed-url"},
        {&cp_settings::ext_page_url, "captive_portal=3"},
    };
    for (const auto& row : rows) {
        stage_something();
        portal_ = make_full();
        portal_.*row.text = nullptr;
        EXPECT_EQ(apply(), -1);
        EXPECT_EQ(edits().back(), row.last_edit);
        expect_refused("Error: Set Value Failed");
    }
}

// ---- Failures ----

TEST_F(CaptivePortal, EachFailedWriteDiscardsEverything) {
    portal_ = make_full();
    ASSERT_EQ(apply(), 0);
    const Trace sets = door.trace({"set"});
    ASSERT_EQ(sets.size(), 15U);
    for (size_t i = 0; i < sets.size(); i++) {
        stage_something();
        door.fail(Call::uci_set, static_cast<int>(i) + 1);
        EXPECT_EQ(apply(), -1);
        EXPECT_EQ(door.trace({"set", "add", "delete"}).back(), sets[i] + " (failed)");
        expect_refused("Error: Set Value Failed");
    }
}

TEST_F(CaptivePortal, EachFailedWriteOfWhatIsOffDiscardsEverything) {
    const char* const rows[] = {
        "cp_http_proxy=0", "cp_redirect_mode=disabled", "captive_portal=2", "cp_auth_port=1812",
        "cp_acct_en=0",
    };
    int nth = 0;
    for (const char* edit : rows) {
        stage_something();
        portal_ = make("radius");
        portal_.acct_enable = 0;
        door.fail(Call::uci_set, ++nth);
        EXPECT_EQ(apply(), -1);
        EXPECT_EQ(edits().back(), std::string(edit) + " (failed)");
        expect_refused("Error: Set Value Failed");
    }
}

TEST_F(CaptivePortal, EachFailedDeletionDiscardsEverything) {
    const struct {
        const char* auth_mode;
        const char* name;
        int nth;
    } rows[] = {
        {"click-through", "cp_acct_en", 1},
        {"click-through", "cp_walled_garden", 2},
        {"radius", "cp_pri_auth_server", 1},
        {"radius", "cp_pri_auth_secret", 2},
        {"radius", "cp_sec_auth_server", 3},
        {"ext-page-redirect", "cp_sec_auth_secret", 4},
        {"ext-page-redirect", "cp_walled_garden", 5},
    };
    for (const auto& row : rows) {
        configure(option(row.name), "old");
    }
    for (const auto& row : rows) {
        stage_something();
        portal_ = make(row.auth_mode);
        portal_.walled_garden_enable = 1;
        door.fail(Call::uci_delete, row.nth);
        EXPECT_EQ(apply(), -1);
        EXPECT_EQ(edits().back(), std::string("-") + row.name + " (failed)");
        expect_refused("Error: Delete Value Failed");
    }
}

TEST_F(CaptivePortal, OfAVapThatDoesNotExistIsRefusedByTheStore) {
    const std::pair<int, int> rows[] = {{2, 0}, {0, 16}, {INT_MIN, INT_MIN}};
    for (const auto& [radio, vap] : rows) {
        EXPECT_EQ(apply(radio, vap), -1);
        EXPECT_EQ(door.trace({"log"}).back(), own_ + "Error: Set Value Failed");
        EXPECT_THAT(staged(), IsEmpty());
    }
}

TEST_F(CaptivePortal, MarksTheNetworkForTheNextSaveOnSuccessOnly) {
    portal_.redirect_mode = "disabled";
    ASSERT_EQ(apply(), -1);
    EXPECT_FALSE(saving_restarts_network());
    portal_.redirect_mode = "disable";
    ASSERT_EQ(apply(), 0);
    EXPECT_TRUE(saving_restarts_network());
    EXPECT_EQ(committed_value(option("captive_portal")), "1");
    portal_.enable = 0;
    ASSERT_EQ(apply(), 0);
    EXPECT_TRUE(saving_restarts_network());
    EXPECT_EQ(committed_value(option("captive_portal")), "0");
}

} // namespace orlo::test
