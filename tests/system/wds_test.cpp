// SPDX-License-Identifier: MIT
// Links between access points over the air.
#include "support/access_point.h"

#include <climits>
#include <cstring>

namespace orlo::test {

class Wds : public AccessPoint {
protected:
    wds_settings links_[2];
    const std::string own_ = "log api_apply_wds: ";

    // No links. Of an entry without one nothing else may be read: the rest is wild.
    Wds() {
        memset(links_, 0x5a, sizeof links_);
        links_[0].radio_intf = nullptr;
        links_[1].radio_intf = nullptr;
    }

    // A link with WPA2 and frame protection.
    wds_settings& link(int index, const char* radio_intf) {
        links_[index] = {radio_intf, "wpa", "parent", "Backhaul", {"open sesame", 2, 2, 1, 3600}};
        return links_[index];
    }

    // One without security: its WPA settings are wild.
    wds_settings& open_link(int index, const char* radio_intf) {
        memset(&links_[index], 0x5a, sizeof links_[index]);
        links_[index].radio_intf = radio_intf;
        links_[index].security = "none";
        links_[index].wds_mode = "child";
        links_[index].ssid = "Open";
        return links_[index];
    }

    int apply() {
        door.forget();
        return ops.api_apply_wds(links_);
    }

    // A write, and the line about it.
    Trace write(const std::string& option, const std::string& value) const {
        std::string edit = "set wireless.";
        edit += option;
        return {edit + "=" + value, own_ + "Set config option " + option + " to " + value + "."};
    }

    // The line about a write that fails.
    static std::string failed_write(const std::string& option, const std::string& value,
                                    const char* who = "") {
        std::string line = "error: ";
        line += who;
        line += "set config option ";
        return line + option + " to " + value + " failed.";
    }

    using Writes = std::vector<std::pair<std::string, std::string>>;

    Trace write_all(const Writes& writes) const {
        Trace lines;
        for (const auto& [option, value] : writes) {
            const Trace pair = write(option, value);
            lines.insert(lines.end(), pair.begin(), pair.end());
        }
        return lines;
    }

    static Writes others_disabled(const std::string& radio) {
        Writes writes;
        for (int vap = 1; vap < 16; vap++) {
            writes.emplace_back(radio + "vap" + std::to_string(vap) + ".disabled", "1");
        }
        return writes;
    }

    static Writes joined(const std::vector<Writes>& parts) {
        Writes all;
        for (const Writes& part : parts) {
            all.insert(all.end(), part.begin(), part.end());
        }
        return all;
    }

    const Writes reset_ = {{"wifi0vap0.mode", "ap"}, {"wifi1vap0.mode", "ap"}};
    const Writes link_on_radio_0_ = {
        {"wifi0vap0.ssid", "Backhaul"},
        {"wifi0vap0.wds", "1"},
        {"wifi0vap0.mode", "ap"},
        {"wifi0vap0.security", "wpa-psk"},
        {"wifi0vap0.wpaversion", "wpa2"},
        {"wifi0vap0.cipher", "ccmp"},
        {"wifi0vap0.encryption", "psk2+ccmp"},
        {"wifi0vap0.key", "open sesame"},
        {"wifi0vap0.wpakey", "open sesame"},
        {"wifi0vap0.ieee80211w", "1"},
        {"wifi0vap0.wpa_group_rekey", "3600"},
    };
    const Writes open_link_on_radio_1_ = {
        {"wifi1vap0.ssid", "Open"},     {"wifi1vap0.wds", "1"},           {"wifi1vap0.mode", "sta"},
        {"wifi1vap0.security", "none"}, {"wifi1vap0.encryption", "none"},
    };

    Trace no_link(int index) const {
        return {own_ + "info: wds_settings[" + std::to_string(index) +
                "].radio_intf is NULL, go to next."};
    }

    Trace whole(const std::vector<Trace>& parts) const {
        Trace all = {own_ + "Entering..."};
        for (const Trace& part : parts) {
            all.insert(all.end(), part.begin(), part.end());
        }
        all.push_back(own_ + "End, apply WDS: Success");
        return all;
    }

    void stage_something() { ASSERT_EQ(ops.api_config_set_hash("abc"), 0); }

    // Applying refuses, with this line last, and discards everything.
    void expect_refusal(const std::string& message) {
        EXPECT_EQ(apply(), -1) << message;
        EXPECT_EQ(door.trace({"log"}).back(), own_ + message);
        EXPECT_EQ(door.trace({"revert"}), Trace{"revert all"});
        EXPECT_EQ(door.trace().back(), "revert all");
        EXPECT_THAT(staged(), IsEmpty());
    }

    std::string last_edit() const { return door.trace({"set", "delete"}).back(); }
};

TEST_F(Wds, WithoutLinksResetsTheFirstVaps) {
    configure("wireless.wifi0vap0.mode", "sta");
    configure("wireless.wifi0vap0.wds", "1");
    configure("wireless.wifi1vap0.wds", "anything");
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(
        door.trace(),
        whole({{"delete wireless.wifi0vap0.wds", own_ + "Delete config option wifi0vap0.wds."},
               write("wifi0vap0.mode", "ap"),
               {"delete wireless.wifi1vap0.wds", own_ + "Delete config option wifi1vap0.wds."},
               write("wifi1vap0.mode", "ap"),
               no_link(0),
               no_link(1)}));
    EXPECT_THAT(staged(), ElementsAre("-wireless.wifi0vap0.wds", "wireless.wifi0vap0.mode=ap",
                                      "-wireless.wifi1vap0.wds"));
}

TEST_F(Wds, LinksOnBothRadiosAreStagedInOrder) {
    configure("wireless.wifi1vap0.key", "old");
    link(0, "wlan0");
    open_link(1, "wlan1");
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(door.trace(), whole({write_all(reset_),
                                   write_all(link_on_radio_0_),
                                   write_all(others_disabled("wifi0")),
                                   write_all(open_link_on_radio_1_),
                                   {"delete wireless.wifi1vap0.key"},
                                   write_all(others_disabled("wifi1"))}));
    EXPECT_EQ(staged_value("wireless.wifi1vap0.key"), "(none)");
}

TEST_F(Wds, LinksMayComeInEitherOrder) {
    open_link(0, "wlan1");
    link(1, "wlan0");
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(door.trace(), whole({write_all(reset_), write_all(open_link_on_radio_1_),
                                   write_all(others_disabled("wifi1")), write_all(link_on_radio_0_),
                                   write_all(others_disabled("wifi0"))}));
}

TEST_F(Wds, OneLinkLeavesTheOtherRadioReset) {
    configure("wireless.wifi1vap0.wds", "1");
    configure("wireless.wifi1vap5.disabled", "0");
    link(0, "wlan0");
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi0vap0.wds"), "1");
    EXPECT_EQ(staged_value("wireless.wifi1vap0.wds"), "(none)");
    EXPECT_EQ(staged_value("wireless.wifi1vap5.disabled"), "0");
    EXPECT_EQ(door.trace()[door.trace().size() - 2], no_link(1)[0]);

    links_[0].radio_intf = nullptr;
    open_link(1, "wlan1");
    ASSERT_EQ(ops.api_save_config(), 0);
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(door.trace(), whole({{"delete wireless.wifi0vap0.wds",
                                    own_ + "Delete config option wifi0vap0.wds."},
                                   write_all(reset_),
                                   no_link(0),
                                   write_all(open_link_on_radio_1_),
                                   write_all(others_disabled("wifi1"))}));
    EXPECT_EQ(staged_value("wireless.wifi0vap15.disabled"), "1") << "never enabled again";
}

TEST_F(Wds, OfTwoLinksOnOneRadioTheSecondStands) {
    link(0, "wlan1");
    open_link(1, "wlan1");
    EXPECT_EQ(apply(), 0);
    const Writes left = joined({open_link_on_radio_1_,
                                {{"wifi1vap0.key", "(none)"},
                                 {"wifi1vap0.wpakey", "open sesame"},
                                 {"wifi1vap0.wpaversion", "wpa2"},
                                 {"wifi0vap0.wds", "(none)"}}});
    for (const auto& [option, value] : left) {
        EXPECT_EQ(staged_value("wireless." + option), value) << option;
    }
    link(1, "wlan1").ssid = "Second";
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi1vap0.ssid"), "Second");
    EXPECT_EQ(staged_value("wireless.wifi1vap0.security"), "wpa-psk");
}

TEST_F(Wds, EachVersionAndCipherIsTranslated) {
    const struct {
        int version;
        int cipher;
        const char* wpaversion;
        const char* pairwise;
        const char* encryption;
    } rows[] = {
        {2, 2, "wpa2", "ccmp", "psk2+ccmp"},
        {2, 3, "wpa2", "tkip+ccmp", "psk2+tkip+ccmp"},
        {3, 2, "mixed", "ccmp", "psk-mixed+ccmp"},
        {3, 3, "mixed", "tkip+ccmp", "psk-mixed+tkip+ccmp"},
    };
    for (const auto& row : rows) {
        wds_settings& settings = link(0, "wlan0");
        settings.wpa = {"k", row.version, row.cipher, 0, 0};
        EXPECT_EQ(apply(), 0);
        const Writes expected = {
            {"wifi0vap0.ssid", "Backhaul"},
            {"wifi0vap0.wds", "1"},
            {"wifi0vap0.mode", "ap"},
            {"wifi0vap0.security", "wpa-psk"},
            {"wifi0vap0.wpaversion", row.wpaversion},
            {"wifi0vap0.cipher", row.pairwise},
            {"wifi0vap0.encryption", row.encryption},
            {"wifi0vap0.key", "k"},
            {"wifi0vap0.wpakey", "k"},
            {"wifi0vap0.ieee80211w", "0"},
            {"wifi0vap0.wpa_group_rekey", "0"},
        };
        const Trace trace = door.trace();
        const Trace lines = write_all(expected);
        EXPECT_NE(std::search(trace.begin(), trace.end(), lines.begin(), lines.end()), trace.end())
            << row.encryption;
        ASSERT_EQ(ops.api_save_config(), 0);
    }
}

TEST_F(Wds, AnUnknownInterfaceIsRefused) {
    for (const char* name : {"wlan2", "", "wlan", "WLAN0", "wifi0", "wlan00"}) {
        link(1, name);
        stage_something();
        expect_refusal(std::string("error: wds_settings[1].radio_intf should not be \"") + name +
                       "\".");
        EXPECT_EQ(last_edit(), "set wireless.wifi1vap0.mode=ap");
    }
}

// Each way to refuse an entry: what it logs, and how far it came.
TEST_F(Wds, EachRefusalDiscardsEverything) {
    const struct {
        void (*spoil)(wds_settings*);
        const char* message;
        const char* last_edit;
    } rows[] = {
        {[](wds_settings* s) { s->ssid = nullptr; }, "error: wds_settings[1].ssid is NULL.",
         "wifi1vap0.mode=ap"},
        {[](wds_settings* s) { s->wds_mode = nullptr; }, "error: wds_settings[1].wds_mode is NULL.",
         "wifi0vap0.wds=1"},
        {[](wds_settings* s) { s->wds_mode = "Parent"; },
         "error: config option wifi0vap0.mode is not suppot Parent mode.", "wifi0vap0.wds=1"},
        {[](wds_settings* s) { s->wds_mode = ""; },
         "error: config option wifi0vap0.mode is not suppot  mode.", "wifi0vap0.wds=1"},
        {[](wds_settings* s) { s->security = nullptr; }, "error: wds_settings[1].security is NULL.",
         "wifi0vap0.mode=ap"},
        {[](wds_settings* s) { s->security = "wep"; }, "error: There is no wep encryption for WDS.",
         "wifi0vap0.mode=ap"},
        {[](wds_settings* s) { s->security = ""; }, "error: There is no  encryption for WDS.",
         "wifi0vap0.mode=ap"},
        {[](wds_settings* s) { s->wpa.version = 1; },
         "error: R7710's WDS is not support only WPA setting. It is support WAP2 or WPA+WPA2.",
         "wifi0vap0.security=wpa-psk"},
        {[](wds_settings* s) { s->wpa.version = 0; },
         "error: The versoin 0 doesn't exist in WPA versoin.", "wifi0vap0.security=wpa-psk"},
        {[](wds_settings* s) { s->wpa.version = 4; },
         "error: The versoin 4 doesn't exist in WPA versoin.", "wifi0vap0.security=wpa-psk"},
        {[](wds_settings* s) { s->wpa.version = INT_MIN; },
         "error: The versoin -2147483648 doesn't exist in WPA versoin.",
         "wifi0vap0.security=wpa-psk"},
        {[](wds_settings* s) { s->wpa.cipher = 1; },
         "error: R7710's WDS is not support only TKIP setting. It is support CCMP or CCMP+TKIP",
         "wifi0vap0.wpaversion=wpa2"},
        {[](wds_settings* s) { s->wpa.cipher = 0; }, "error: Cipher type doesn't exist in WPA.",
         "wifi0vap0.wpaversion=wpa2"},
        {[](wds_settings* s) { s->wpa.cipher = 4; }, "error: Cipher type doesn't exist in WPA.",
         "wifi0vap0.wpaversion=wpa2"},
        {[](wds_settings* s) { s->wpa.cipher = INT_MIN; },
         "error: Cipher type doesn't exist in WPA.", "wifi0vap0.wpaversion=wpa2"},
        {[](wds_settings* s) { s->wpa.key = nullptr; }, "error: wds_settings[1].wpa.key is NULL.",
         "wifi0vap0.encryption=psk2+ccmp"},
        {[](wds_settings* s) { s->wpa.version = 3; },
         "error: wifi0vap0 MFP can be enabled only on WPA2. It cannot be enabled WPA or WPA+WPA2.",
         "wifi0vap0.wpakey=open sesame"},
        {[](wds_settings* s) { s->wpa.mfp = 2; }, "error: wds_settings[1].wpa.mfp is 2.",
         "wifi0vap0.wpakey=open sesame"},
        {[](wds_settings* s) { s->wpa.mfp = -1; }, "error: wds_settings[1].wpa.mfp is -1.",
         "wifi0vap0.wpakey=open sesame"},
        {[](wds_settings* s) { s->wpa.bcast_key_refresh_rate = 86401; },
         "error: wds_settings[1].wpa.bcast_key_refresh_rate 86401 is not in range 0 ~ 86400.",
         "wifi0vap0.ieee80211w=1"},
        {[](wds_settings* s) { s->wpa.bcast_key_refresh_rate = -1; },
         "error: wds_settings[1].wpa.bcast_key_refresh_rate -1 is not in range 0 ~ 86400.",
         "wifi0vap0.ieee80211w=1"},
        {[](wds_settings* s) { s->wpa.bcast_key_refresh_rate = INT_MAX; },
         "error: wds_settings[1].wpa.bcast_key_refresh_rate 2147483647 is not in range 0 ~ 86400.",
         "wifi0vap0.ieee80211w=1"},
    };
    for (const auto& row : rows) {
        row.spoil(&link(1, "wlan0"));
        stage_something();
        expect_refusal(row.message);
        EXPECT_EQ(last_edit(), std::string("set wireless.") + row.last_edit) << row.message;
    }
}

TEST_F(Wds, AKeyMayBeRenewedOnceADay) {
    link(0, "wlan0").wpa.bcast_key_refresh_rate = 86400;
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi0vap0.wpa_group_rekey"), "86400");
}

TEST_F(Wds, ARefusedSecondLinkDiscardsTheFirst) {
    link(0, "wlan0");
    link(1, "wlan1").wds_mode = "neither";
    stage_something();
    expect_refusal("error: config option wifi1vap0.mode is not suppot neither mode.");
    EXPECT_THAT(door.trace(), testing::Contains("set wireless.wifi0vap15.disabled=1"));
}

TEST_F(Wds, EachFailedWriteDiscardsEverything) {
    const Writes writes = joined({reset_, link_on_radio_0_, others_disabled("wifi0"),
                                  open_link_on_radio_1_, others_disabled("wifi1")});
    link(0, "wlan0");
    open_link(1, "wlan1");
    for (size_t i = 0; i < writes.size(); i++) {
        const auto& [option, value] = writes[i];
        // The mode is written three times over: once to reset it, once by each kind of link.
        const bool by_link = i >= reset_.size() && option.find(".mode") != std::string::npos;
        const char* const who = !by_link ? "" : value == "ap" ? "WDS parent - " : "WDS child - ";
        stage_something();
        door.fail(Call::uci_set, static_cast<int>(i) + 1);
        expect_refusal(failed_write(option, value, who));
        EXPECT_EQ(last_edit(), write(option, value)[0] + " (failed)");
    }
    door.fail(Call::uci_set, static_cast<int>(writes.size()) + 1);
    EXPECT_EQ(apply(), 0) << "there is no other write";
}

TEST_F(Wds, EachFailedWriteOfAMixedLinkDiscardsEverything) {
    wds_settings& settings = link(0, "wlan1");
    settings.wpa = {"k", 3, 3, 0, 60};
    const Writes writes = {
        {"wpaversion", "mixed"},
        {"cipher", "tkip+ccmp"},
        {"encryption", "psk-mixed+tkip+ccmp"},
        {"key", "k"},
        {"wpakey", "k"},
        {"ieee80211w", "0"},
        {"wpa_group_rekey", "60"},
    };
    int nth = 6;
    for (const auto& [option, value] : writes) {
        stage_something();
        door.fail(Call::uci_set, ++nth);
        expect_refusal(failed_write("wifi1vap0." + option, value));
    }
}

TEST_F(Wds, EachFailedDeletionDiscardsEverything) {
    configure("wireless.wifi0vap0.wds", "1");
    configure("wireless.wifi1vap0.wds", "1");
    configure("wireless.wifi1vap0.key", "old");
    open_link(0, "wlan1");
    const char* const messages[] = {
        "error: delete config option wifi0vap0.wds failed.",
        "error: delete config option wifi1vap0.wds failed.",
        "error: Delete config option wifi1vap0.key failed.",
    };
    int nth = 0;
    for (const char* message : messages) {
        stage_something();
        door.fail(Call::uci_delete, ++nth);
        expect_refusal(message);
    }
}

TEST_F(Wds, AStateThatCannotBeReadIsNotDeleted) {
    configure("wireless.wifi0vap0.wds", "1");
    door.fail(Call::uci_lookup_ptr);
    EXPECT_EQ(apply(), 0);
    EXPECT_THAT(door.trace({"delete"}), IsEmpty());
    EXPECT_EQ(staged_value("wireless.wifi0vap0.wds"), "1");
}

TEST_F(Wds, WithoutRecordsIsRefusedAndLeavesStagedChangesInPlace) {
    stage_something();
    door.forget();
    EXPECT_EQ(ops.api_apply_wds(nullptr), -1);
    EXPECT_THAT(door.trace(), ElementsAre(own_ + "Entering..."));
    EXPECT_THAT(staged(), ElementsAre("orloagent.agent.confighash=abc"));
}

TEST_F(Wds, EmptyTextsTakeTheirOptionsAway) {
    link(0, "wlan0").ssid = "";
    links_[0].wpa.key = "";
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi0vap0.ssid"), "(none)");
    EXPECT_EQ(staged_value("wireless.wifi0vap0.key"), "(none)");
    EXPECT_THAT(door.trace(), testing::Contains("set wireless.wifi0vap0.ssid="));
}

TEST_F(Wds, ALongNameIsCutByTheStoresLimit) {
    const std::string ssid(1000, 'x');
    const std::string path = "wireless.wifi0vap0.ssid";
    link(0, "wlan0").ssid = ssid.c_str();
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value(path), ssid.substr(0, 511 - path.size() - 1));
}

TEST_F(Wds, MarksTheNetworkForTheNextSaveOnSuccessOnly) {
    link(0, "wlan2");
    ASSERT_EQ(apply(), -1);
    EXPECT_FALSE(saving_restarts_network());
    links_[0].radio_intf = nullptr;
    ASSERT_EQ(apply(), 0);
    EXPECT_TRUE(saving_restarts_network()) << "the reset alone too";
}

} // namespace orlo::test
