// SPDX-License-Identifier: MIT
// Fast roaming of VAPs: 802.11r, k and v.
#include "vap/vap_profile.h"

#include <climits>
#include <cstdlib>

namespace orlo::test {

class RoamingVap : public VapProfile {
protected:
    ~RoamingVap() override {
        while (mac_list_node* node = list().head) {
            list().head = node->next;
            free(node);
        }
    }

    fast_roaming& roaming() { return vaps_[0].fast_roaming; }
    mac_list& list() { return roaming().key_holder_list; }

    void add_key_holder(const char* mac) {
        auto* node = static_cast<mac_list_node*>(malloc(sizeof(mac_list_node)));
        *node = {mac, nullptr};
        mac_list_node*& place = list().tail == nullptr ? list().head : list().tail->next;
        place = node;
        list().tail = node;
        list().count++;
    }

    void enable_roaming() {
        while (mac_list_node* node = list().head) {
            list().head = node->next;
            free(node);
        }
        enable(0);
        roaming().status = 1;
        roaming().ft = {1, 0, "a1b2", 10000, 1000};
        roaming().aes_key = "0123456789abcdef";
        roaming().rrm.status = 1;
        roaming().wnm.status = 0;
        list().count = 0;
        list().tail = nullptr;
        add_key_holder("02:00:00:00:00:01");
        add_key_holder("02:00:00:00:00:02");
    }

    RoamingVap() {
        list().head = nullptr;
        list().tail = nullptr;
    }

    Trace roaming_edits() const {
        Trace edits;
        bool reached = false;
        for (const std::string& line : door.trace({"set", "add", "delete"})) {
            reached = reached || line.find("ieee80211r=") != std::string::npos;
            if (reached && line.find("wifi1vap0.") != std::string::npos) {
                edits.push_back(line);
            }
        }
        return edits;
    }

    Trace roaming_log() const {
        Trace lines;
        for (const std::string& line : own_log()) {
            if (line.find("fast_roaming") != std::string::npos ||
                line.find("key_holder") != std::string::npos) {
                lines.push_back(line);
            }
        }
        return lines;
    }
};

TEST_F(RoamingVap, IsStagedInOrderAndItsListConsumed) {
    enable_roaming();
    EXPECT_EQ(apply(), 0);
    EXPECT_THAT(
        roaming_edits(),
        ElementsAre("set wireless.wifi1vap0.ieee80211r=1", "set wireless.wifi1vap0.ft_over_ds=0",
                    "set wireless.wifi1vap0.mobility_domain=a1b2",
                    "set wireless.wifi1vap0.r0_key_lifetime=10000",
                    "set wireless.wifi1vap0.reassociation_deadline=1000",
                    "set wireless.wifi1vap0.aes_key=0123456789abcdef",
                    "add wireless.wifi1vap0.key_holder_list=02:00:00:00:00:01",
                    "add wireless.wifi1vap0.key_holder_list=02:00:00:00:00:02",
                    "set wireless.wifi1vap0.ieee80211k=1", "set wireless.wifi1vap0.ieee80211v=0"));
    EXPECT_THAT(roaming_log(),
                ElementsAre("info: vap_settings[0].fast_roaming.status: 1",
                            "info: vap_settings[0].fast_roaming.ft.status: 1",
                            "info: vap_settings[0].fast_roaming.ft.ft_over_ds: 0",
                            "info: vap_settings[0].fast_roaming.ft.mobility_domain: a1b2",
                            "info: vap_settings[0].fast_roaming.ft.r0_key_lifetime: 10000",
                            "info: vap_settings[0].fast_roaming.ft.reassoc_deadline: 1000",
                            "info: vap_settings[0].fast_roaming.aes_key: 0123456789abcdef",
                            "info: Set wireless config wifi1vap0.key_holder_list option to "
                            "02:00:00:00:00:01 successful.",
                            "info: Set wireless config wifi1vap0.key_holder_list option to "
                            "02:00:00:00:00:02 successful.",
                            "info: vap_settings[0].fast_roaming.rrm.status:1",
                            "info: vap_settings[0].fast_roaming.wnm.status:0"));
    EXPECT_EQ(list().head, nullptr);
    EXPECT_EQ(list().tail, nullptr);
    EXPECT_EQ(list().count, 0);
}

TEST_F(RoamingVap, TheCountIsOnlyCountedDown) {
    enable_roaming();
    list().count = -5;
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(list().count, -7);
    enable_roaming();
    list().count = INT_MIN;
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(list().count, INT_MAX - 1) << "whatever the agent counts";
}

TEST_F(RoamingVap, ItsKeyHoldersReplaceTheOldOnes) {
    configure("wireless.wifi1vap0.key_holder_list", "a plain option");
    enable_roaming();
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi1vap0.key_holder_list"),
              "02:00:00:00:00:01 02:00:00:00:00:02");
    ASSERT_EQ(ops.api_save_config(), 0);
    enable_roaming();
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(staged_value("wireless.wifi1vap0.key_holder_list"),
              "02:00:00:00:00:01 02:00:00:00:00:02");
}

TEST_F(RoamingVap, OldKeyHoldersThatCannotBeDeletedAreNoted) {
    configure("wireless.wifi1vap0.key_holder_list", "02:00:00:00:00:99");
    enable_roaming();
    door.fail(Call::uci_delete);
    EXPECT_EQ(apply(), 0);
    EXPECT_TRUE(logged("warning: Delete key holder list failed. Maybe empty"));
    EXPECT_EQ(staged_value("wireless.wifi1vap0.key_holder_list"),
              "02:00:00:00:00:99 02:00:00:00:00:01 02:00:00:00:00:02");
}

TEST_F(RoamingVap, SwitchedOffWritesThreeZerosAndReadsNothingElse) {
    for (int status : {0, 2, -1}) {
        enable(0);
        memset(static_cast<void*>(&roaming()), 0x5a, sizeof roaming());
        roaming().status = status;
        EXPECT_EQ(apply(), 0);
        EXPECT_THAT(roaming_edits(), ElementsAre("set wireless.wifi1vap0.ieee80211r=0",
                                                 "set wireless.wifi1vap0.ieee80211k=0",
                                                 "set wireless.wifi1vap0.ieee80211v=0"));
        EXPECT_TRUE(logged("info: vap_settings[0].fast_roaming.status: " + std::to_string(status)));
        EXPECT_EQ(exported<decltype(::uciRevertValue)>("uciRevertValue")(nullptr, nullptr), 0);
    }
    list().head = nullptr;
}

TEST_F(RoamingVap, SwitchingOffThatFailsEndsThePush) {
    const char* const options[] = {"ieee80211r", "ieee80211k", "ieee80211v"};
    for (int i = 0; i < 3; i++) {
        enable(0);
        roaming().status = 0;
        door.fail(Call::uci_set, 9 + i + 1);
        EXPECT_EQ(apply(), -1);
        EXPECT_EQ(refusal(), std::string("error: Set Value Failed : wireless.wifi1vap0.") +
                                 options[i] + "=0!");
        EXPECT_THAT(staged(), IsEmpty());
    }
}

TEST_F(RoamingVap, EachWrongSettingIsRefusedAndDiscardsEverything) {
    const struct {
        void (*change)(fast_roaming*);
        const char* message;
        bool consumed; // the list of key holders
    } rows[] = {
        {[](fast_roaming* r) { r->ft.status = 2; }, "error: The ieee80211r status is error!",
         false},
        {[](fast_roaming* r) { r->ft.status = -1; }, "error: The ieee80211r status is error!",
         false},
        {[](fast_roaming* r) { r->ft.ft_over_ds = 2; },
         "error: The ieee80211r ft_over_ds is error!", false},
        {[](fast_roaming* r) { r->ft.ft_over_ds = -1; },
         "error: The ieee80211r ft_over_ds is error!", false},
        {[](fast_roaming* r) { r->ft.mobility_domain = nullptr; },
         "error: The ieee80211r mobility_domain is error!", false},
        {[](fast_roaming* r) { r->ft.r0_key_lifetime = 0; },
         "error: The ieee80211r r0_key_lifetime is error!", false},
        {[](fast_roaming* r) { r->ft.r0_key_lifetime = 65536; },
         "error: The ieee80211r r0_key_lifetime is error!", false},
        {[](fast_roaming* r) { r->ft.reassoc_deadline = 999; },
         "error: The ieee80211r reassociation_deadline is error!", false},
        {[](fast_roaming* r) { r->ft.reassoc_deadline = 65536; },
         "error: The ieee80211r reassociation_deadline is error!", false},
        {[](fast_roaming* r) { r->aes_key = nullptr; }, "error: The ieee80211r aes_key is error!",
         false},
        {[](fast_roaming* r) { r->key_holder_list.head->mac = ""; },
         "error: This node is a null string in mac list.", false},
        {[](fast_roaming* r) { r->key_holder_list.tail->mac = ""; },
         "error: This node is a null string in mac list.", false},
        {[](fast_roaming* r) { r->key_holder_list.tail->mac = nullptr; },
         "error: This node is a null string in mac list.", false},
        {[](fast_roaming* r) { r->rrm.status = 2; }, "error: The ieee80211k status is error!",
         true},
        {[](fast_roaming* r) { r->rrm.status = -1; }, "error: The ieee80211k status is error!",
         true},
        {[](fast_roaming* r) { r->wnm.status = 2; }, "error: The ieee80211v status is error!",
         true},
        {[](fast_roaming* r) { r->wnm.status = -1; }, "error: The ieee80211v status is error!",
         true},
    };
    for (const auto& row : rows) {
        enable_roaming();
        row.change(&roaming());
        EXPECT_EQ(apply(), -1);
        EXPECT_EQ(refusal(), row.message);
        EXPECT_EQ(door.trace().back(), "revert all");
        EXPECT_THAT(staged(), IsEmpty());
        EXPECT_THAT(own_log(), testing::Not(testing::Contains(HasSubstr("NULL"))))
            << "a missing text is not logged";
        EXPECT_EQ(list().head == nullptr, row.consumed) << row.message;
        EXPECT_EQ(list().count, row.consumed ? 0 : 2);
    }
}

TEST_F(RoamingVap, WithoutAKeyHolderIsRefusedBeforeTheListIsTouched) {
    configure("wireless.wifi1vap0.key_holder_list", "02:00:00:00:00:99");
    enable_roaming();
    while (mac_list_node* node = list().head) {
        list().head = node->next;
        free(node);
    }
    EXPECT_EQ(apply(), -1);
    EXPECT_EQ(refusal(), "error: The ieee80211r key holder list is error!");
    EXPECT_EQ(roaming_edits().size(), 6U);
    EXPECT_EQ(roaming_edits().back(), "set wireless.wifi1vap0.aes_key=0123456789abcdef");
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(RoamingVap, TextsAreNotChecked) {
    enable_roaming();
    roaming().ft.mobility_domain = "";
    roaming().aes_key = "";
    EXPECT_EQ(apply(), 0);
    EXPECT_THAT(roaming_edits(), testing::Contains("set wireless.wifi1vap0.mobility_domain="));
    EXPECT_THAT(roaming_edits(), testing::Contains("set wireless.wifi1vap0.aes_key="));
}

TEST_F(RoamingVap, TheBoundsThemselvesAreAccepted) {
    enable_roaming();
    roaming().ft.r0_key_lifetime = 1;
    roaming().ft.reassoc_deadline = 65535;
    EXPECT_EQ(apply(), 0);
    enable_roaming();
    roaming().ft.r0_key_lifetime = 65535;
    EXPECT_EQ(apply(), 0);
}

TEST_F(RoamingVap, EachFailedWriteEndsThePush) {
    const char* const lines[] = {
        "error: Set Value Failed : wireless.wifi1vap0.ieee80211r=1!",
        "error: Set Value Failed : wireless.wifi1vap0.ft_over_ds=0!",
        "error: Set Value Failed : wireless.wifi1vap0.mobility_domain=a1b2!",
        "error: Set Value Failed : wireless.wifi1vap0.r0_key_lifetime=10000!",
        "error: Set Value Failed : wireless.wifi1vap0.reassociation_deadline=1000!",
        "error: Set Value Failed : wireless.wifi1vap0.aes_key=0123456789abcdef!",
        "error: Set Value Failed : wireless.wifi1vap0.ieee80211k=1!",
        "error: Set Value Failed : wireless.wifi1vap0.ieee80211v=0!",
    };
    for (int i = 0; i < 8; i++) {
        enable_roaming();
        door.fail(Call::uci_set, 9 + i + 1);
        EXPECT_EQ(apply(), -1);
        EXPECT_EQ(refusal(), lines[i]);
        EXPECT_EQ(list().head == nullptr, i >= 6);
        EXPECT_THAT(staged(), IsEmpty());
    }
}

TEST_F(RoamingVap, AKeyHolderThatCannotBeAddedEndsThePush) {
    enable_roaming();
    door.fail(Call::uci_add_list, 2);
    EXPECT_EQ(apply(), -1);
    EXPECT_EQ(refusal(), "error: Add Mac Address 02:00:00:00:00:02 to key holder failed.");
    EXPECT_EQ(list().count, 2) << "the list stays the agent's";
    EXPECT_THAT(staged(), IsEmpty());
}

} // namespace orlo::test
