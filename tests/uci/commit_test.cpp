// SPDX-License-Identifier: MIT
// Keeping and discarding staged changes.
#include "uci/store_wrappers.h"

namespace orlo::test {

using Commit = StoreWrappers;

TEST_F(Commit, WritesOnePackageAndLeavesTheOthersStaged) {
    set("wireless", "wifi0.channel", "11");
    set("orloagent", "agent.confighash", "abc");
    EXPECT_EQ(commit("wireless"), 0);
    EXPECT_EQ(committed_value("wireless.wifi0.channel"), "11");
    EXPECT_THAT(staged(), ElementsAre("orloagent.agent.confighash=abc"));
}

TEST_F(Commit, WritesEveryPackageWithoutAName) {
    for (const char* all : {static_cast<const char*>(nullptr), ""}) {
        const std::string channel = all == nullptr ? "11" : "1";
        const std::string hash = all == nullptr ? "abc" : "def";
        set("wireless", "wifi0.channel", channel.c_str());
        set("orloagent", "agent.confighash", hash.c_str());
        EXPECT_EQ(commit(all), 0);
        EXPECT_EQ(committed_value("wireless.wifi0.channel"), channel);
        EXPECT_EQ(committed_value("orloagent.agent.confighash"), hash);
        EXPECT_THAT(staged(), IsEmpty());
    }
}

TEST_F(Commit, KeepsWhatOthersHaveWrittenMeanwhile) {
    set("wireless", "wifi0.channel", "11");
    EXPECT_EQ(commit("wireless"), 0);
    EXPECT_EQ(commit(nullptr), 0);
    EXPECT_THAT(door.trace({"commit"}), ElementsAre("commit wireless", "commit all"))
        << "never overwriting";
}

TEST_F(Commit, CutsTheNameAt255Characters) {
    const std::string name(300, 'p');
    EXPECT_EQ(failure_of([&] { return commit(name.c_str()); }),
              "uciCommitValue (307): Failed to lookup value: " + name.substr(0, 255) + "\n");
}

TEST_F(Commit, NamesThePlaceOfAFailureOfOnePackage) {
    door.fail(Call::uci_alloc_context);
    EXPECT_EQ(failure_of([&] { return commit("wireless"); }),
              "uciCommitValue (256): Out of memory.\n");
    EXPECT_EQ(failure_of([&] { return commit("nowhere"); }),
              "uciCommitValue (307): Failed to lookup value: nowhere\n");
    set("wireless", "wifi0.channel", "11");
    door.fail(Call::uci_commit);
    EXPECT_EQ(failure_of([&] { return commit("wireless"); }),
              "uciCommitValue (314): Failed to commit.\n");
    EXPECT_THAT(staged(), ElementsAre("wireless.wifi0.channel=11"));
}

TEST_F(Commit, AmongAllTheFirstFailureLeavesTheRestStaged) {
    set("network", "lan.ipaddr", "192.168.1.77");
    set("orloagent", "agent.confighash", "abc");
    set("wireless", "wifi0.channel", "11");
    write_file("/etc/config/orloagent", "this is no configuration\n");
    EXPECT_EQ(failure_of([&] { return commit(nullptr); }),
              "uciCommitValue (282): Failed to lookup.\n");
    EXPECT_EQ(committed_value("network.lan.ipaddr"), "192.168.1.77") << "came before";
    EXPECT_THAT(staged(), ElementsAre("wireless.wifi0.channel=11")) << "comes after";
}

TEST_F(Commit, AmongAllAFailedCommitEndsTheCall) {
    set("network", "lan.ipaddr", "192.168.1.77");
    set("wireless", "wifi0.channel", "11");
    door.fail(Call::uci_commit);
    EXPECT_EQ(failure_of([&] { return commit(""); }), "uciCommitValue (292): Failed to commit.\n");
    EXPECT_THAT(staged(),
                ElementsAre("network.lan.ipaddr=192.168.1.77", "wireless.wifi0.channel=11"));
}

TEST_F(Commit, FailsWhenThereIsNoPackageAtAll) {
    const std::string message = "uciCommitValue (270): Failed to list config file.\n";
    door.fail(Call::uci_list_configs);
    EXPECT_EQ(failure_of([&] { return commit(nullptr); }), message);
    ASSERT_EQ(rename("/etc/config", "/etc/config.away"), 0);
    EXPECT_EQ(failure_of([&] { return commit(nullptr); }), message);
    ASSERT_EQ(system("mkdir /etc/config && touch /etc/config/not.listed"), 0);
    EXPECT_EQ(failure_of([&] { return commit(nullptr); }), message) << "an empty list is a failure";
}

using Revert = StoreWrappers;

TEST_F(Revert, DiscardsEverythingOfEveryPackage) {
    set("wireless", "wifi0.channel", "11");
    set("orloagent", "agent.confighash", "abc");
    EXPECT_EQ(revert(nullptr, nullptr), 0);
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(Revert, DiscardsOnePackage) {
    set("wireless", "wifi0.channel", "11");
    set("orloagent", "agent.confighash", "abc");
    EXPECT_EQ(revert("wireless", nullptr), 0);
    EXPECT_THAT(staged(), ElementsAre("orloagent.agent.confighash=abc"));
}

TEST_F(Revert, DiscardsOneOptionOrOneSection) {
    set("wireless", "wifi0.channel", "11");
    set("wireless", "wifi0.txpower", "Min");
    set("wireless", "wifi1.channel", "44");
    EXPECT_EQ(revert("wireless", "wifi0.channel"), 0);
    EXPECT_THAT(staged(), ElementsAre("wireless.wifi0.txpower=Min", "wireless.wifi1.channel=44"));
    EXPECT_EQ(revert("wireless", "wifi0"), 0);
    EXPECT_THAT(staged(), ElementsAre("wireless.wifi1.channel=44"));
}

TEST_F(Revert, WithoutAPackageIgnoresTheKey) {
    set("wireless", "wifi0.channel", "11");
    set("orloagent", "agent.confighash", "abc");
    EXPECT_EQ(revert(nullptr, "wifi0.channel"), 0);
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(Revert, AcceptsASectionByItsTypeAndIndex) {
    set("wireless", "wifi0.channel", "11");
    set("wireless", "wifi1.channel", "44");
    EXPECT_EQ(revert("wireless", "@wifi-device[1].channel"), 0);
    EXPECT_THAT(staged(), ElementsAre("wireless.wifi0.channel=11"));
}

TEST_F(Revert, CutsThePathAt255Characters) {
    const std::string path = "nowhere." + std::string(300, 'k');
    EXPECT_EQ(failure_of([&] { return revert("nowhere", path.c_str() + 8); }),
              "uciRevertValue (466): Failed to lookup value: " + path.substr(0, 255) + "\n");
}

TEST_F(Revert, NamesThePlaceOfAFailure) {
    set("wireless", "wifi0.channel", "11");
    door.fail(Call::uci_alloc_context);
    EXPECT_EQ(failure_of([&] { return revert(nullptr, nullptr); }),
              "uciRevertValue (406): Out of memory.\n");
    EXPECT_EQ(failure_of([&] { return revert("nowhere", nullptr); }),
              "uciRevertValue (466): Failed to lookup value: nowhere\n");
    EXPECT_EQ(failure_of([&] { return revert("nowhere", "wifi0.channel"); }),
              "uciRevertValue (466): Failed to lookup value: nowhere.wifi0.channel\n");
    EXPECT_EQ(failure_of([&] { return revert("", nullptr); }),
              "uciRevertValue (466): Failed to lookup value: \n");
    door.fail(Call::uci_revert);
    EXPECT_EQ(failure_of([&] { return revert("wireless", nullptr); }),
              "uciRevertValue (473): Failed to revert.\n");
    door.fail(Call::uci_list_configs);
    EXPECT_EQ(failure_of([&] { return revert(nullptr, nullptr); }),
              "uciRevertValue (420): Failed to list config file.\n");
    door.fail(Call::uci_revert);
    EXPECT_EQ(failure_of([&] { return revert(nullptr, nullptr); }),
              "uciRevertValue (442): Failed to commit.\n");
    door.fail(Call::uci_lookup_ptr);
    EXPECT_EQ(failure_of([&] { return revert(nullptr, nullptr); }),
              "uciRevertValue (432): Failed to lookup.\n");
    EXPECT_THAT(staged(), ElementsAre("wireless.wifi0.channel=11"));
}

TEST_F(Revert, AmongAllTheFirstFailureLeavesTheRestStaged) {
    set("network", "lan.ipaddr", "192.168.1.77");
    set("wireless", "wifi0.channel", "11");
    write_file("/etc/config/orloagent", "this is no configuration\n");
    EXPECT_EQ(failure_of([&] { return revert(nullptr, nullptr); }),
              "uciRevertValue (432): Failed to lookup.\n");
    EXPECT_THAT(staged(), ElementsAre("wireless.wifi0.channel=11"));
}

TEST_F(Revert, AnEmptyListOfPackagesIsNoFailure) {
    ASSERT_EQ(rename("/etc/config", "/etc/config.away"), 0);
    ASSERT_EQ(system("mkdir /etc/config && touch /etc/config/not.listed"), 0);
    EXPECT_EQ(revert(nullptr, nullptr), 0);
}

} // namespace orlo::test
