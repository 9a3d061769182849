// The captive portal of a VAP, and its virtual address.
#include "support/access_point.h"

#include <climits>
#include <cstring>

namespace orlo::test {

class CaptivePortal : public AccessPoint {
protected:
    // A portal of a mode that sets as little as can be. What the mode does not need is wild.
    cp_settings portal_ = make("click-through");
    const std::string own_ = "log api_apply_captive_portal_to_vap: ";

    static cp_settings make(const char* auth_mode) {
        cp_settings portal;
        memset(&portal, 0x5a, sizeof portal);
        portal.enable = 1;
        portal.auth_mode = auth_mode;
        portal.http_proxy_enable = 0;
        portal.redirect_mode = "disable";
        portal.walled_garden_enable = 0;
        portal.session_timeout = -1;
        portal.session_timeout_action = nullptr;
        if (strcmp(auth_mode, "click-through") != 0) {
            portal.auth_servers[0] = {nullptr, portal.redirect_url};
            portal.auth_servers[1] = {"", portal.redirect_url};
            portal.auth_port = 1812;
            portal.acct_enable = -1;
        }
        if (strcmp(auth_mode, "ext-page-redirect") == 0) {
            portal.ext_page_url = "http://portal.example/";
        }
        return portal;
    }

    // Everything that can be set.
    static cp_settings make_full() {
        cp_settings portal = make("ext-page-redirect");
        portal.http_proxy_enable = 1;
        portal.http_proxy_base_url = "http://proxy.example/";
        portal.redirect_mode = "fixed-url";
        portal.redirect_url = "http://welcome.example/";
        portal.auth_servers[0] = {"10.0.0.1", "first"};
        portal.auth_servers[1] = {"10.0.0.2", "second"};
        portal.acct_enable = 1;
        portal.acct_port = 1813;
        portal.walled_garden_enable = 1;
        portal.walled_garden[0] = "a.example";
        portal.walled_garden[1] = "b.example";
        portal.walled_garden[2] = nullptr;
        portal.session_timeout = 3600;
        portal.session_timeout_action = "logout";
        return portal;
    }

    int apply(int radio = 1, int vap = 3) {
        door.forget();
        return ops.api_apply_captive_portal_to_vap(radio, vap, &portal_);
    }

    // The edits of the last apply, by option: "cp_http_proxy=0", "-cp_acct_en".
    Trace edits() const {
        Trace lines;
        for (const std::string& line : door.trace({"set", "add", "delete"})) {
            const std::string section = " wireless.wifi1vap3.";
            const size_t place = line.find(section);
            EXPECT_NE(place, std::string::npos) << line;
            const std::string verb = line.substr(0, place);
            const char* mark = verb == "delete" ? "-" : verb == "add" ? "+" : "";
            lines.push_back(mark + line.substr(place + section.size()));
        }
        return lines;
    }

    // The last apply has refused, with this line, and discarded everything.
    void expect_refused(const std::string& message) {
        const Trace lines = door.trace({"log", "revert"});
        EXPECT_THAT(lines,
                    ElementsAre(own_ + "Entering... radio:1 vap:3", own_ + message, "revert all"));
        EXPECT_THAT(staged(), IsEmpty());
    }

    static std::string option(const std::string& name) { return "wireless.wifi1vap3." + name; }

    void stage_something() { ASSERT_EQ(ops.api_config_set_hash("abc"), 0); }
};

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

// ---- The walled garden ----

TEST_F(CaptivePortal, AWalledGardenIsReplacedOnlyWhenItsFlagIsSet) {
    portal_.walled_garden_enable = 1;
    portal_.walled_garden[0] = "a.example";
    portal_.walled_garden[1] = "b.example";
    portal_.walled_garden[2] = "";
    ASSERT_EQ(apply(), 0);
    ASSERT_EQ(ops.api_save_config(), 0);
    ASSERT_EQ(committed_value(option("cp_walled_garden")), "a.example b.example");

    portal_ = make("click-through");
    ASSERT_EQ(apply(), 0);
    EXPECT_EQ(staged_value(option("cp_walled_garden")), "a.example b.example") << "flag 0";

    for (int flag : {1, 2, -1}) {
        portal_.walled_garden_enable = flag;
        portal_.walled_garden[0] = "c.example";
        portal_.walled_garden[1] = nullptr;
        EXPECT_EQ(apply(), 0);
        EXPECT_EQ(staged_value(option("cp_walled_garden")), "c.example");
        EXPECT_THAT(edits(),
                    ElementsAre("cp_http_proxy=0", "cp_redirect_mode=disabled", "captive_portal=1",
                                "-cp_walled_garden", "+cp_walled_garden=c.example"));
    }
}

TEST_F(CaptivePortal, AWalledGardenMayBeEmpty) {
    for (const char* first : {static_cast<const char*>(nullptr), ""}) {
        configure(option("cp_walled_garden"), "old.example");
        portal_.walled_garden_enable = 1;
        portal_.walled_garden[0] = first; // and the rest is wild
        EXPECT_EQ(apply(), 0);
        EXPECT_EQ(edits().back(), "-cp_walled_garden");
        EXPECT_EQ(staged_value(option("cp_walled_garden")), "(none)");
        ASSERT_EQ(ops.api_save_config(), 0);
    }
}

TEST_F(CaptivePortal, AWalledGardenMayBeFull) {
    std::vector<std::string> names;
    for (int i = 0; i < 50; i++) {
        names.push_back("site" + std::to_string(i) + ".example");
    }
    std::string all;
    for (int i = 0; i < 50; i++) {
        portal_.walled_garden[i] = names[i].c_str();
        all += (i == 0 ? "" : " ") + names[i];
    }
    portal_.walled_garden_enable = 1;
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(door.trace({"add"}).size(), 50U);
    EXPECT_EQ(staged_value(option("cp_walled_garden")), all);
}

TEST_F(CaptivePortal, AWalledGardenReplacesAnOptionThatIsNoList) {
    configure(option("cp_walled_garden"), "old.example");
    portal_.walled_garden_enable = 1;
    portal_.walled_garden[0] = "a.example";
    portal_.walled_garden[1] = nullptr;
    ASSERT_EQ(apply(), 0);
    ASSERT_EQ(ops.api_save_config(), 0);
    const std::string file = read_file("/etc/config/wireless");
    EXPECT_THAT(file, HasSubstr("\tlist cp_walled_garden 'a.example'\n"));
    EXPECT_THAT(file, testing::Not(HasSubstr("old.example")));
}

TEST_F(CaptivePortal, EachEntryThatCannotBeAddedDiscardsEverything) {
    const char* const entries[] = {"a.example", "b.example"};
    int nth = 0;
    for (const char* entry : entries) {
        stage_something();
        portal_ = make_full();
        door.fail(Call::uci_add_list, ++nth);
        EXPECT_EQ(apply(), -1);
        EXPECT_EQ(edits().back(), std::string("+cp_walled_garden=") + entry + " (failed)");
        expect_refused(std::string("error: Add walled garden entry ") + entry + " failed.");
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

// ---- The virtual address ----

TEST_F(CaptivePortal, AVirtualAddressIsStagedAsItIs) {
    EXPECT_EQ(ops.api_apply_cp_virt_ip("1.1.1.300"), 0);
    EXPECT_THAT(door.trace(), ElementsAre("log api_apply_cp_virt_ip: Entering... addr:1.1.1.300",
                                          "set network.lan.cp_virt_ip=1.1.1.300",
                                          "log api_apply_cp_virt_ip: End Successfully"));
    EXPECT_TRUE(saving_restarts_network());
    EXPECT_EQ(committed_value("network.lan.cp_virt_ip"), "1.1.1.300");
}

TEST_F(CaptivePortal, AnEmptyVirtualAddressIsDeleted) {
    for (const char* address : {static_cast<const char*>(nullptr), ""}) {
        configure("network.lan.cp_virt_ip", "1.1.1.1");
        door.forget();
        EXPECT_EQ(ops.api_apply_cp_virt_ip(address), 0);
        EXPECT_THAT(door.trace(),
                    ElementsAre(std::string("log api_apply_cp_virt_ip: Entering... addr:") +
                                    (address == nullptr ? "NULL" : ""),
                                "delete network.lan.cp_virt_ip",
                                "log api_apply_cp_virt_ip: End Successfully"));
        EXPECT_TRUE(saving_restarts_network());
        EXPECT_EQ(committed_value("network.lan.cp_virt_ip"), "(none)");
    }
    EXPECT_EQ(ops.api_apply_cp_virt_ip(""), 0) << "also when there is none";
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(CaptivePortal, AVirtualAddressThatCannotBeWrittenDiscardsEverything) {
    stage_something();
    door.forget();
    door.fail(Call::uci_set);
    EXPECT_EQ(ops.api_apply_cp_virt_ip("1.1.1.1"), -1);
    EXPECT_THAT(door.trace(),
                ElementsAre("log api_apply_cp_virt_ip: Entering... addr:1.1.1.1",
                            "set network.lan.cp_virt_ip=1.1.1.1 (failed)",
                            "log api_apply_cp_virt_ip: Error: Set Value Failed", "revert all"));
    EXPECT_THAT(staged(), IsEmpty());
    configure("network.lan.cp_virt_ip", "1.1.1.1");
    stage_something();
    door.forget();
    door.fail(Call::uci_delete);
    EXPECT_EQ(ops.api_apply_cp_virt_ip(""), -1);
    EXPECT_THAT(door.trace(),
                ElementsAre("log api_apply_cp_virt_ip: Entering... addr:",
                            "delete network.lan.cp_virt_ip (failed)",
                            "log api_apply_cp_virt_ip: Error: Delete Value Failed", "revert all"));
    EXPECT_THAT(staged(), IsEmpty());
    EXPECT_FALSE(saving_restarts_network());
}

// ---- What is not served ----

TEST_F(CaptivePortal, ItsStateAndDeviceWideSettingsAreNotServed) {
    int touched = 42;
    EXPECT_EQ(ops.api_get_captive_portal_status(&touched), 0);
    EXPECT_EQ(ops.api_get_captive_portal_statistics(nullptr), 0);
    EXPECT_EQ(ops.api_apply_captive_portal_status(INT_MIN), 0);
    EXPECT_EQ(ops.api_apply_captive_portal(&touched, nullptr, &touched), 0);
    EXPECT_EQ(touched, 42);
    Trace expected;
    for (const char* name : {"api_get_captive_portal_status", "api_get_captive_portal_statistics",
                             "api_apply_captive_portal_status", "api_apply_captive_portal"}) {
        const std::string own = std::string("log ") + name;
        expected.push_back(own + ": Entering, do nothing - not support CP yet");
        expected.push_back(own + ": End... return: 0");
    }
    EXPECT_EQ(door.trace(), expected);
    EXPECT_FALSE(saving_restarts_network());
}

} // namespace orlo::test
