// SPDX-License-Identifier: MIT
// Applying a quilt of all 32 VAPs, each with settings, servers and a portal of its own.
#include "quilt/quilt_record.h"

#include <algorithm>
#include <array>

namespace orlo::test {

namespace {

constexpr int last = 31;

// Entries and VAPs do not go hand in hand: the first one's is the last VAP of radio 0.
constexpr int radio_of(int entry) {
    return entry % 2;
}

constexpr int vap_of(int entry) {
    return 15 - entry / 2;
}

std::string section_of(int entry) {
    return "wifi" + std::to_string(radio_of(entry)) + "vap" + std::to_string(vap_of(entry));
}

// What the 32 have as texts of their own.
struct Texts {
    std::string primary, primary_secret, secondary, secondary_secret, portal, portal_secret;
};

} // namespace

class WholeQuilt : public QuiltRecord {
protected:
    WholeQuilt() {
        for (int i = 0; i <= last; i++) {
            const std::string own = std::to_string(i);
            texts_[static_cast<size_t>(i)] = {"10.1.0." + own, "primary " + own,
                                              "10.2.0." + own, "secondary " + own,
                                              "10.3.0." + own, "portal " + own};
            fill(i);
        }
    }

    void fill(int i) {
        const Texts& texts = texts_[static_cast<size_t>(i)];
        quilt_vap& vap = enable(i, radio_of(i), vap_of(i));
        put(vap.ssid, ("Quilt " + std::to_string(i)).c_str());
        vap.vlan_id = 100 + i;
        vap.mac_filter_mode = 2 + i % 2;
        vap.mac_auth_server[0] = {1,
                                  texts.primary.c_str(),
                                  texts.primary_secret.c_str(),
                                  port(i),
                                  "colon",
                                  "upper",
                                  "username",
                                  ""};
        vap.mac_auth_server[1] = {2,
                                  texts.secondary.c_str(),
                                  texts.secondary_secret.c_str(),
                                  0,
                                  nullptr,
                                  nullptr,
                                  nullptr,
                                  nullptr};
        vap.cp = {};
        vap.cp.enable = 1;
        vap.cp.auth_mode = "radius";
        vap.cp.redirect_mode = "disable";
        vap.cp.auth_servers[0] = {texts.portal.c_str(), texts.portal_secret.c_str()};
        vap.cp.auth_port = 3000 + i;
        vap.cp.acct_enable = ORLO_NOT_GIVEN;
        vap.cp.session_timeout = 60 + i;
    }

    static constexpr uint32_t port(int entry) { return 2000U + static_cast<uint32_t>(entry); }

    // All that is written of an entry's VAP, in its order.
    Trace edits_expected_of(int i) const {
        const Texts& texts = texts_[static_cast<size_t>(i)];
        const std::string own = std::to_string(i);
        const Trace basic = {
            "mode=quilt",        "disabled=0", "bssid=02:00:00:00:0c:00",
            "ssid=Quilt " + own, "hidden=0",   "vlan_id=" + std::to_string(100 + i),
        };
        const Trace behind = {
            "macfilter=" + std::to_string(2 + i % 2),
            "mac_auth_server=" + texts.primary,
            "mac_auth_secret=" + texts.primary_secret,
            "mac_auth_port=" + std::to_string(port(i)),
            "mac_auth_username_separator=colon",
            "mac_auth_username_case=upper",
            "mac_auth_password_format=username",
            "mac_auth_server_second=" + texts.secondary,
            "mac_auth_secret_second=" + texts.secondary_secret,
            "security=none",
            "encryption=none",
            "ieee80211r=0",
            "ieee80211k=0",
            "ieee80211v=0",
            "cp_http_proxy=0",
            "cp_redirect_mode=disabled",
            "cp_session_timeout=" + std::to_string(60 + i),
            "captive_portal=2",
            "cp_auth_port=" + std::to_string(3000 + i),
            "cp_pri_auth_server=" + texts.portal,
            "cp_pri_auth_secret=" + texts.portal_secret,
        };
        Trace edits;
        for (const Trace& part : {basic, edits_that_forget_servers, behind}) {
            edits.insert(edits.end(), part.begin(), part.end());
        }
        return edits;
    }

    std::array<Texts, last + 1> texts_;
};

TEST_F(WholeQuilt, HasEachVapStagedWithItsOwnFilterServersAndPortal) {
    EXPECT_EQ(apply(), 0);
    for (int i = 0; i <= last; i++) {
        EXPECT_EQ(edits_of(section_of(i)), edits_expected_of(i)) << "entry " << i;
    }
    ASSERT_TRUE(saving_restarts_network());
    for (int i = 0; i <= last; i++) {
        const std::string section = "wireless." + section_of(i);
        EXPECT_EQ(committed_value(section + ".macfilter"), std::to_string(2 + i % 2));
        EXPECT_EQ(committed_value(section + ".mac_auth_server"),
                  texts_[static_cast<size_t>(i)].primary);
        EXPECT_EQ(committed_value(section + ".mac_auth_secret_second"),
                  texts_[static_cast<size_t>(i)].secondary_secret);
        EXPECT_EQ(committed_value(section + ".mac_auth_port"), std::to_string(port(i)));
        EXPECT_EQ(committed_value(section + ".captive_portal"), "2");
        EXPECT_EQ(committed_value(section + ".cp_pri_auth_server"),
                  texts_[static_cast<size_t>(i)].portal);
    }
}

TEST_F(WholeQuilt, IsStagedEntryByEntry) {
    EXPECT_EQ(apply(), 0);
    Trace expected;
    for (int i = 0; i <= last; i++) {
        expected.insert(expected.end(), edits_expected_of(i).size(), section_of(i));
    }
    Trace sections;
    for (const std::string& line : door.trace({"set", "add", "delete"})) {
        const size_t begin = line.find(".wifi") + 1;
        const std::string section = line.substr(begin, line.find('.', begin) - begin);
        if (section.find("vap") != std::string::npos) {
            sections.push_back(section);
        }
    }
    EXPECT_EQ(sections, expected);
}

TEST_F(WholeQuilt, AVapsFilterServersAndPortalAreLoggedInOrder) {
    EXPECT_EQ(apply(), 0);
    Trace lines;
    for (const std::string& line : door.trace({"log"})) {
        if (line.compare(0, 14, "log api_apply_") == 0) {
            lines.push_back(line.substr(4));
        }
    }
    const auto heading =
        std::find(lines.begin(), lines.end(), "api_apply_channel_quilt: info: " + section_of(last));
    EXPECT_THAT(Trace(heading, lines.end()),
                ElementsAre("api_apply_channel_quilt: info: wifi1vap0",
                            "api_apply_mac_auth_radius_server: Entering...",
                            "api_apply_mac_auth_radius_server: End return 0",
                            "api_apply_mac_auth_radius_server: Entering...",
                            "api_apply_mac_auth_radius_server: End return 0",
                            "api_apply_mac_filter_mode: Entering... radio:1 vap:0 mode:3",
                            "api_apply_mac_filter_mode: End Successfully",
                            "api_apply_mac_auth_radius_server: Entering...",
                            "api_apply_mac_auth_radius_server: End return 0",
                            "api_apply_mac_auth_radius_server: Entering...",
                            "api_apply_mac_auth_radius_server: End return 0",
                            "api_apply_channel_quilt: quilt_settings->quilt_radio[31].band_steer:0",
                            "api_apply_channel_quilt: Security is not \"wpa-personal\" or "
                            "\"wpa-enterprise\"ignore quilt_settings->quilt_radio[31].mfp:0",
                            "api_apply_captive_portal_to_vap: Entering... radio:1 vap:0",
                            "api_apply_captive_portal_to_vap: End Successfully",
                            "api_apply_channel_quilt: End, return 0"));
}

TEST_F(WholeQuilt, IsDiscardedWhenTheLastVapFails) {
    const struct {
        void (*change)(quilt_vap*);
        const char* message;
    } rows[] = {
        {[](quilt_vap* v) { v->mac_auth_server[1].index = 3; },
         "error: Set MAC Auth Server Failed! (prio:3)"},
        {[](quilt_vap* v) { v->mac_auth_server[0].ip = nullptr; },
         "error: Set MAC Auth Server Failed! (prio:1)"},
        {[](quilt_vap* v) { v->band_steer = 2; },
         "error: quilt_settings->quilt_radio[31].band_steer is not correct : 2!"},
        {[](quilt_vap* v) { v->cp.redirect_mode = "disabled"; },
         "error: Set captive portal Failed"},
    };
    for (const auto& row : rows) {
        fill(last);
        row.change(&quilt_.quilt_radio[last]);
        EXPECT_EQ(apply(), -1);
        EXPECT_TRUE(logged("info: " + section_of(last)));
        EXPECT_EQ(refusal(), row.message);
        EXPECT_EQ(door.trace().back(), "revert all");
        EXPECT_THAT(staged(), IsEmpty());
    }
}

} // namespace orlo::test
