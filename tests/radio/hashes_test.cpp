// SPDX-License-Identifier: MIT
// Fingerprints of what the agent applied.
#include "support/access_point.h"

#include <climits>
#include <memory>

namespace orlo::test {

class Hashes : public AccessPoint {
protected:
    static std::string text(char* heap_text) {
        const std::unique_ptr<char, decltype(&free)> owned(heap_text, free);
        return owned == nullptr ? "(NULL)" : owned.get();
    }
};

TEST_F(Hashes, AreZeroUntilStored) {
    configure("orloagent.agent.confighash", "");
    configure("orloagent.agent.profilehash", "");
    EXPECT_EQ(text(ops.api_config_get_hash()), "0");
    EXPECT_EQ(text(ops.api_profile_get_hash()), "0");
    EXPECT_THAT(door.trace(), ElementsAre("log api_config_get_hash: Entering...",
                                          "log api_config_get_hash: Get agent.confighash Failed",
                                          "log api_profile_get_hash: Entering...",
                                          "log api_profile_get_hash: Get agent.confighash Failed"));
}

TEST_F(Hashes, OfTheConfigurationAreStagedAndRead) {
    EXPECT_EQ(ops.api_config_set_hash("abc"), 0);
    EXPECT_EQ(ops.api_config_set_hash("def"), 0);
    EXPECT_EQ(text(ops.api_config_get_hash()), "def");
    EXPECT_THAT(
        door.trace(),
        ElementsAre(
            "log api_config_set_hash: Entering... config_hash:  now/new = []/[abc]",
            "set orloagent.agent.confighash=abc", "log api_config_set_hash: End... config_hash:abc",
            "log api_config_set_hash: Entering... config_hash:  now/new = [abc]/[def]",
            "set orloagent.agent.confighash=def", "log api_config_set_hash: End... config_hash:def",
            "log api_config_get_hash: Entering...",
            "log api_config_get_hash: End... config_hash:def"));
    EXPECT_NE(committed_value("orloagent.agent.confighash"), "def") << "with the next commit";
}

TEST_F(Hashes, OfTheProfileAreStagedAndRead) {
    EXPECT_EQ(ops.api_profile_set_hash("abc"), 0);
    EXPECT_EQ(text(ops.api_profile_get_hash()), "abc");
    EXPECT_THAT(
        door.trace(),
        ElementsAre("log api_profile_set_hash: Entering... profile_hash:  now/new = []/[abc]",
                    "set orloagent.agent.profilehash=abc",
                    "log api_profile_set_hash: End... profile_hash: abc",
                    "log api_profile_get_hash: Entering...",
                    "log api_profile_get_hash: End, Prof_hash: [abc]"));
}

TEST_F(Hashes, ReadFromTheConfigurationAreRemembered) {
    configure("orloagent.agent.confighash", "stored");
    EXPECT_EQ(text(ops.api_config_get_hash()), "stored");
    ops.api_config_set_hash("new");
    EXPECT_THAT(door.trace(),
                testing::Contains("log api_config_set_hash: Entering... config_hash:  now/new = "
                                  "[stored]/[new]"));
}

TEST_F(Hashes, ThatCannotBeWrittenAreForgotten) {
    ASSERT_EQ(ops.api_config_set_hash("old"), 0);
    ASSERT_EQ(ops.api_profile_set_hash("old"), 0);
    for (const char* hash : {"new", static_cast<const char*>(nullptr)}) {
        const std::string shown = hash == nullptr ? "NULL" : hash;
        door.forget();
        door.fail(Call::uci_set);
        EXPECT_EQ(ops.api_config_set_hash(hash), -1);
        door.fail(Call::uci_set);
        EXPECT_EQ(ops.api_profile_set_hash(hash), -1);
        EXPECT_THAT(door.trace({"log", "revert"}),
                    ElementsAre("log api_config_set_hash: Entering... config_hash:  now/new = "
                                "[old]/[" +
                                    shown + "]",
                                "log api_config_set_hash: Set Value Failed",
                                "log api_profile_set_hash: Entering... profile_hash:  now/new = "
                                "[old]/[" +
                                    shown + "]",
                                "log api_profile_set_hash: Set Value Failed"))
            << "and nothing is discarded";
    }
    EXPECT_EQ(text(ops.api_config_get_hash()), "old");
}

TEST_F(Hashes, AreRememberedUpTo127Characters) {
    const std::string hash(200, 'h');
    EXPECT_EQ(ops.api_config_set_hash(hash.c_str()), 0);
    EXPECT_EQ(door.trace().back(),
              "log api_config_set_hash: End... config_hash:" + hash.substr(0, 127));
    EXPECT_EQ(text(ops.api_config_get_hash()), hash.substr(0, 128)) << "and read up to 128";
    EXPECT_EQ(text(ops.api_config_get_hash()), hash.substr(0, 128));
    EXPECT_EQ(staged_value("orloagent.agent.confighash"), hash) << "and stored whole";
}

TEST_F(Hashes, OfTheProfileAreRememberedLikewise) {
    const std::string hash(200, 'h');
    EXPECT_EQ(ops.api_profile_set_hash(hash.c_str()), 0);
    EXPECT_EQ(door.trace().back(),
              "log api_profile_set_hash: End... profile_hash: " + hash.substr(0, 127));
    EXPECT_EQ(text(ops.api_profile_get_hash()), hash.substr(0, 128));
}

TEST_F(Hashes, TheProfileIdLivesInMemory) {
    EXPECT_EQ(ops.api_get_profile_id(), -1);
    for (int id : {7, 0, INT_MIN}) {
        EXPECT_EQ(ops.api_set_profile_id(id), 0);
        EXPECT_EQ(ops.api_get_profile_id(), id);
    }
    const Trace lines = door.trace();
    EXPECT_THAT(Trace(lines.begin(), lines.begin() + 6),
                ElementsAre("log api_get_profile_id: Entering...",
                            "log api_get_profile_id: End... return: -1",
                            "log api_set_profile_id: Entering... profile_id:  now/new=-1/7",
                            "log api_set_profile_id: End, prof_id = 7",
                            "log api_get_profile_id: Entering...",
                            "log api_get_profile_id: End... return: 7"));
    EXPECT_THAT(staged(), IsEmpty());
}

} // namespace orlo::test
