// SPDX-License-Identifier: MIT
// The clients that the whole device knows.
#include "support/access_point.h"

#include <cstring>
#include <deque>

namespace orlo::test {

class KnownClients : public AccessPoint {
protected:
    knownClient_setup setup_ = {};
    const std::string own_ = "log api_apply_known_clients: ";

    // Texts may fill their places, without an end.
    template <size_t N>
    static void fill(char (&place)[N], std::string text) {
        text.resize(N);
        memcpy(place, text.data(), N);
    }

    void list(const std::vector<std::string>& macs) {
        nodes_.clear();
        setup_.mac_list = nullptr;
        known_client_node** place = &setup_.mac_list;
        for (const std::string& mac : macs) {
            known_client_node& node = nodes_.emplace_back();
            memset(&node, 0x5a, sizeof node); // also behind the address
            fill(node.mac, mac);
            node.next = nullptr;
            *place = &node;
            place = &node.next;
        }
    }

    int apply() {
        door.forget();
        return ops.api_apply_known_clients(&setup_);
    }

    int apply(const std::vector<std::string>& macs) {
        list(macs);
        return apply();
    }

    void apply_and_save(const std::vector<std::string>& macs) {
        ASSERT_EQ(apply(macs), 0);
        ASSERT_EQ(ops.api_save_config(), 0);
    }

    static std::vector<std::string> many(int count) {
        std::vector<std::string> macs;
        for (int i = 0; i < count; i++) {
            char octets[16];
            snprintf(octets, sizeof octets, "%02x:%02x", i / 256, i % 256);
            macs.push_back(std::string("02:00:00:00:") + octets);
        }
        return macs;
    }

    static std::string joined(const std::vector<std::string>& texts) {
        std::string all;
        for (const std::string& text : texts) {
            all += (all.empty() ? "" : " ") + text;
        }
        return all;
    }

    std::deque<known_client_node> nodes_; // which stay where they are
};

TEST_F(KnownClients, AnAllowListIsStagedInTheAgentsOrder) {
    fill(setup_.action, "white");
    EXPECT_EQ(apply({"02:00:00:00:00:0b", "02:00:00:00:00:0a"}), 0);
    EXPECT_THAT(door.trace(),
                ElementsAre("set wireless.macaddrlist.action=allow",
                            own_ + "Set wireless config macaddrlist.action option to allow "
                                   "successful.",
                            "add wireless.macaddrlist.maclist=02:00:00:00:00:0b",
                            own_ + "Set wireless config macaddrlist.maclist option to "
                                   "02:00:00:00:00:0b successful.",
                            "add wireless.macaddrlist.maclist=02:00:00:00:00:0a",
                            own_ + "Set wireless config macaddrlist.maclist option to "
                                   "02:00:00:00:00:0a successful."));
    EXPECT_EQ(staged_value("wireless.macaddrlist.action"), "allow");
    EXPECT_EQ(staged_value("wireless.macaddrlist.maclist"), "02:00:00:00:00:0b 02:00:00:00:00:0a");
}

TEST_F(KnownClients, BlackIsADenyList) {
    configure("wireless.macaddrlist.action", "allow");
    fill(setup_.action, "black");
    EXPECT_EQ(apply({}), 0);
    EXPECT_THAT(door.trace(),
                ElementsAre("set wireless.macaddrlist.action=deny",
                            own_ + "Set wireless config macaddrlist.action option to deny "
                                   "successful."));
}

TEST_F(KnownClients, WithoutAnActionItStaysAndAnEmptyListClears) {
    apply_and_save({"02:00:00:00:00:01"});
    ASSERT_EQ(committed_value("wireless.macaddrlist.maclist"), "02:00:00:00:00:01");
    EXPECT_EQ(apply({}), 0);
    EXPECT_THAT(door.trace(), ElementsAre("delete wireless.macaddrlist.maclist"));
    EXPECT_EQ(staged_value("wireless.macaddrlist.action"), "deny");
    EXPECT_EQ(staged_value("wireless.macaddrlist.maclist"), "(none)");
    ASSERT_EQ(ops.api_save_config(), 0);
    EXPECT_EQ(apply({}), 0) << "nothing to clear";
    EXPECT_THAT(door.trace(), IsEmpty());
}

TEST_F(KnownClients, OtherActionsAreRefusedAndDiscardEverything) {
    for (const char* action :
         {"grey", "White", "BLACK", "whit", "white ", "allow", "whitewhite", "blackbla", " "}) {
        ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
        fill(setup_.action, action);
        EXPECT_EQ(apply({"02:00:00:00:00:01"}), -1) << action;
        EXPECT_THAT(door.trace(),
                    ElementsAre(own_ + "error: Authentication Action incorrect.", "revert all"));
        EXPECT_THAT(staged(), IsEmpty());
    }
}

TEST_F(KnownClients, WithoutARecordAreRefusedAndDiscardEverything) {
    ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
    door.forget();
    EXPECT_EQ(ops.api_apply_known_clients(nullptr), -1);
    EXPECT_THAT(door.trace(),
                ElementsAre(own_ + "error: knownClient_setup is NULL.", "revert all"));
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(KnownClients, AListOfAnyLengthReplacesTheStoredOne) {
    for (int count : {1, 50, 51, 300, 2}) {
        const std::vector<std::string> macs = many(count);
        apply_and_save(macs);
        EXPECT_EQ(committed_value("wireless.macaddrlist.maclist"), joined(macs));
    }
    EXPECT_THAT(read_file("/etc/config/wireless"),
                HasSubstr("\tlist maclist '02:00:00:00:00:00'\n"
                          "\tlist maclist '02:00:00:00:00:01'\n"));
}

TEST_F(KnownClients, AListReplacesOneThatIsOnlyStaged) {
    ASSERT_EQ(apply(many(3)), 0);
    EXPECT_EQ(apply({"02:00:00:00:00:0f"}), 0);
    EXPECT_EQ(staged_value("wireless.macaddrlist.maclist"), "02:00:00:00:00:0f");
    EXPECT_EQ(door.trace().front(), "delete wireless.macaddrlist.maclist");
}

TEST_F(KnownClients, AListReplacesAnOptionThatIsNone) {
    configure("wireless.macaddrlist.maclist", "02:00:00:00:00:09");
    apply_and_save({"02:00:00:00:00:0b"});
    EXPECT_EQ(committed_value("wireless.macaddrlist.maclist"), "02:00:00:00:00:0b");
    const std::string file = read_file("/etc/config/wireless");
    EXPECT_THAT(file, HasSubstr("\tlist maclist '02:00:00:00:00:0b'\n"));
    EXPECT_THAT(file, testing::Not(HasSubstr("option maclist")));
}

TEST_F(KnownClients, AStoredListThatCannotBeDeletedIsAddedTo) {
    apply_and_save({"02:00:00:00:00:01"});
    door.fail(Call::uci_delete);
    EXPECT_EQ(apply({"02:00:00:00:00:02"}), 0);
    EXPECT_THAT(door.trace(),
                ElementsAre("delete wireless.macaddrlist.maclist (failed)",
                            own_ + "Info: There is no mac in wireless config list "
                                   "macaddrlist.maclist.",
                            "add wireless.macaddrlist.maclist=02:00:00:00:00:02",
                            own_ + "Set wireless config macaddrlist.maclist option to "
                                   "02:00:00:00:00:02 successful."));
    EXPECT_EQ(staged_value("wireless.macaddrlist.maclist"), "02:00:00:00:00:01 02:00:00:00:00:02");
}

TEST_F(KnownClients, AClientWithoutAnAddressIsRefusedAndDiscardsTheOthers) {
    ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
    EXPECT_EQ(apply({"02:00:00:00:00:01", "", "02:00:00:00:00:03"}), -1);
    EXPECT_THAT(door.trace(),
                ElementsAre("add wireless.macaddrlist.maclist=02:00:00:00:00:01",
                            own_ + "Set wireless config macaddrlist.maclist option to "
                                   "02:00:00:00:00:01 successful.",
                            own_ + "error: This node is a null string in mac list.", "revert all"));
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(KnownClients, AnAddressMayFillItsPlaceWithoutAnEnd) {
    EXPECT_EQ(apply({std::string(18, 'a'), "not an address"}), 0);
    EXPECT_EQ(staged_value("wireless.macaddrlist.maclist"),
              std::string(18, 'a') + " not an address");
}

TEST_F(KnownClients, EachClientThatCannotBeAddedDiscardsEverything) {
    fill(setup_.action, "white");
    const std::vector<std::string> macs = many(3);
    for (size_t i = 0; i < macs.size(); i++) {
        ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
        door.fail(Call::uci_add_list, static_cast<int>(i) + 1);
        EXPECT_EQ(apply(macs), -1);
        EXPECT_EQ(door.trace({"add"}).size(), i + 1);
        EXPECT_EQ(door.trace({"log"}).back(),
                  own_ + "error: Add Mac Address " + macs[i] + " to mac list failed.");
        EXPECT_EQ(door.trace().back(), "revert all");
        EXPECT_THAT(staged(), IsEmpty());
    }
}

TEST_F(KnownClients, AnActionThatCannotBeWrittenDiscardsEverything) {
    const std::pair<const char*, const char*> rows[] = {{"white", "allow"}, {"black", "deny"}};
    for (const auto& [action, value] : rows) {
        ASSERT_EQ(ops.api_config_set_hash("abc"), 0);
        fill(setup_.action, action);
        door.fail(Call::uci_set);
        EXPECT_EQ(apply(many(1)), -1);
        EXPECT_THAT(
            door.trace(),
            ElementsAre(std::string("set wireless.macaddrlist.action=") + value + " (failed)",
                        own_ + "error: Set wireless config macaddrlist.action option to " + value +
                            " failed.",
                        "revert all"));
        EXPECT_THAT(staged(), IsEmpty());
    }
}

TEST_F(KnownClients, MarkTheNetworkForTheNextSaveOnSuccessOnly) {
    ASSERT_EQ(apply({""}), -1);
    EXPECT_FALSE(saving_restarts_network());
    ASSERT_EQ(apply({}), 0);
    EXPECT_TRUE(saving_restarts_network());
}

TEST_F(KnownClients, TheListStaysTheAgents) {
    list(many(2));
    const std::deque<known_client_node> before = nodes_;
    ASSERT_EQ(apply(), 0);
    EXPECT_EQ(setup_.mac_list, &nodes_[0]);
    for (size_t i = 0; i < before.size(); i++) {
        EXPECT_STREQ(nodes_[i].mac, before[i].mac);
        EXPECT_EQ(nodes_[i].next, before[i].next);
    }
}

} // namespace orlo::test
