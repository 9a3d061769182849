// SPDX-License-Identifier: MIT
// Reading and staging single options.
#include "uci/store_wrappers.h"

#include <cstring>

namespace orlo::test {

using StageOption = StoreWrappers;

TEST_F(StageOption, StagesAValueAndLeavesTheFileAlone) {
    EXPECT_EQ(set("wireless", "wifi0.channel", "11"), 0);
    EXPECT_THAT(staged(), ElementsAre("wireless.wifi0.channel=11"));
    EXPECT_EQ(staged_value("wireless.wifi0.channel"), "11");
    EXPECT_NE(committed_value("wireless.wifi0.channel"), "11");
}

TEST_F(StageOption, AcceptsASectionByItsTypeAndIndex) {
    EXPECT_EQ(set("wireless", "@wifi-device[1].channel", "40"), 0);
    EXPECT_EQ(staged_value("wireless.wifi1.channel"), "40");
}

TEST_F(StageOption, StagesNothingForTheValueThatIsThereAlready) {
    const std::string channel = committed_value("wireless.wifi0.channel");
    EXPECT_EQ(set("wireless", "wifi0.channel", channel.c_str()), 0);
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(StageOption, AnEmptyValueTakesTheOptionAway) {
    configure("wireless.wifi1.secondchannel", "149");
    EXPECT_EQ(set("wireless", "wifi1.secondchannel", ""), 0);
    EXPECT_EQ(staged_value("wireless.wifi1.secondchannel"), "(none)");
    EXPECT_EQ(set("wireless", "wifi1.secondchannel", ""), 0) << "also when it is not there";
}

TEST_F(StageOption, RefusesAMissingArgument) {
    const std::string message = "uciSetValue (43): The input value are not correct.\n";
    EXPECT_EQ(failure_of([&] { return set(nullptr, "wifi0.channel", "1"); }), message);
    EXPECT_EQ(failure_of([&] { return set("wireless", nullptr, "1"); }), message);
    EXPECT_EQ(failure_of([&] { return set("wireless", "wifi0.channel", nullptr); }), message);
    EXPECT_THAT(door.trace(), IsEmpty()) << "the store is not touched";
}

TEST_F(StageOption, NamesThePlaceAndThePathOfAFailure) {
    door.fail(Call::uci_alloc_context);
    EXPECT_EQ(failure_of([&] { return set("wireless", "wifi0.channel", "1"); }),
              "uciSetValue (50): Out of memory.\n");
    EXPECT_EQ(failure_of([&] { return set("nowhere", "wifi0.channel", "1"); }),
              "uciSetValue (58): Failed to lookup value: nowhere.wifi0.channel=1\n");
    EXPECT_EQ(failure_of([&] { return set("wireless", "wifi0.chan-nel", "1"); }),
              "uciSetValue (58): Failed to lookup value: wireless.wifi0.chan-nel=1\n");
    EXPECT_EQ(failure_of([&] { return set("wireless", "wifi7.channel", "1"); }),
              "uciSetValue (67): Failed to set value: wireless.wifi7.channel=1\n");
    door.fail(Call::uci_save);
    EXPECT_EQ(failure_of([&] { return set("wireless", "wifi0.channel", "1"); }),
              "uciSetValue (76): Failed to save value: wireless.wifi0.channel=1\n");
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(StageOption, CutsWhatIsLongerThanTheStoreIsTold) {
    const std::string value(600, 'x');
    EXPECT_EQ(set("wireless", "wifi0vap0.ssid", value.c_str()), 0);
    const size_t room = 511 - strlen("wireless.wifi0vap0.ssid=");
    EXPECT_EQ(staged_value("wireless.wifi0vap0.ssid"), std::string(room, 'x'));
}

TEST_F(StageOption, KeepsQuotesBlanksAndLineEnds) {
    const std::string value = "it's \"a\" $(network)\nof = mine.";
    EXPECT_EQ(set("wireless", "wifi0vap0.ssid", value.c_str()), 0);
    EXPECT_EQ(commit("wireless"), 0);
    EXPECT_EQ(committed_value("wireless.wifi0vap0.ssid"), value);
}

using ReadOption = StoreWrappers;

TEST_F(ReadOption, SeesStagedChanges) {
    char value[16] = {};
    EXPECT_EQ(set("wireless", "wifi0.channel", "11"), 0);
    EXPECT_EQ(get("wireless", "wifi0.channel", value, sizeof value), 0);
    EXPECT_STREQ(value, "11");
}

TEST_F(ReadOption, FillsTheRestOfTheBufferWithZeros) {
    configure("wireless.wifi0.channel", "11");
    char value[16];
    memset(value, '#', sizeof value);
    EXPECT_EQ(get("wireless", "wifi0.channel", value, 8), 0);
    EXPECT_EQ(std::string(value, 16), std::string("11\0\0\0\0\0\0########", 16));
}

TEST_F(ReadOption, LeavesAValueThatFillsTheBufferUnterminated) {
    configure("wireless.wifi0vap0.ssid", "abcdefgh");
    char value[16];
    memset(value, '#', sizeof value);
    EXPECT_EQ(get("wireless", "wifi0vap0.ssid", value, 4), 0);
    EXPECT_EQ(std::string(value, 5), "abcd#");
}

TEST_F(ReadOption, CopiesAtMost256Bytes) {
    configure("wireless.wifi0vap0.ssid", std::string(300, 'x'));
    char value[512];
    memset(value, '#', sizeof value);
    EXPECT_EQ(get("wireless", "wifi0vap0.ssid", value, sizeof value), 0);
    EXPECT_EQ(std::string(value, 257), std::string(256, 'x') + "#");
}

TEST_F(ReadOption, NamesThePlaceAndThePathOfAFailure) {
    char value[16] = "untouched";
    const auto read = [&](const char* package, const char* key) {
        return failure_of([&] { return get(package, key, value, sizeof value); });
    };
    EXPECT_EQ(read(nullptr, "wifi0.channel"),
              "uciGetValue (95): The input value are not correct.\n");
    EXPECT_EQ(read("wireless", nullptr), "uciGetValue (95): The input value are not correct.\n");
    door.fail(Call::uci_alloc_context);
    EXPECT_EQ(read("wireless", "wifi0.channel"), "uciGetValue (102): Out of memory.\n");
    EXPECT_EQ(read("nowhere", "wifi0.channel"),
              "uciGetValue (111): Failed to lookup value: nowhere.wifi0.channel\n");
    EXPECT_EQ(read("wireless", "wifi0.nothing"),
              "uciGetValue (119): Failed to lookup value: wireless.wifi0.nothing\n");
    EXPECT_EQ(read("wireless", "wifi7.channel"),
              "uciGetValue (119): Failed to lookup value: wireless.wifi7.channel\n");
    EXPECT_EQ(read("wireless", "wifi0"),
              "uciGetValue (128): Failed to lookup value: wireless.wifi0\n");
    EXPECT_EQ(add_list("wireless", "wifi0vap0.maclist", "02:00:00:00:00:01"), 0);
    EXPECT_EQ(read("wireless", "wifi0vap0.maclist"),
              "uciGetValue (128): Failed to lookup value: wireless.wifi0vap0.maclist\n");
    EXPECT_STREQ(value, "untouched");
}

TEST_F(ReadOption, CutsTheKeyAt255Characters) {
    const std::string key = "wifi0." + std::string(300, 'k');
    char value[16] = {};
    const std::string seen = ("wireless." + key).substr(0, 255);
    EXPECT_EQ(failure_of([&] { return get("wireless", key.c_str(), value, sizeof value); }),
              "uciGetValue (119): Failed to lookup value: " + seen + "\n");
}

TEST_F(ReadOption, AcceptsASectionByItsTypeAndIndex) {
    char value[16] = {};
    configure("wireless.wifi1.channel", "44");
    EXPECT_EQ(get("wireless", "@wifi-device[-1].channel", value, sizeof value), 0);
    EXPECT_STREQ(value, "44");
}

TEST_F(ReadOption, WithoutABufferCopiesNothing) {
    EXPECT_EQ(get("wireless", "wifi0.channel", nullptr, 16), 0);
}

using StageList = StoreWrappers;

TEST_F(StageList, AppendsInOrderAndRemovesByValue) {
    for (const char* element : {"one", "two", "three"}) {
        EXPECT_EQ(add_list("wireless", "wifi0vap0.maclist", element), 0);
    }
    EXPECT_EQ(staged_value("wireless.wifi0vap0.maclist"), "one two three");
    EXPECT_EQ(del_list("wireless", "wifi0vap0.maclist", "two"), 0);
    EXPECT_EQ(staged_value("wireless.wifi0vap0.maclist"), "one three");
}

TEST_F(StageList, TurnsAPlainOptionIntoAList) {
    configure("wireless.wifi0vap0.maclist", "zero");
    EXPECT_EQ(add_list("wireless", "wifi0vap0.maclist", "one"), 0);
    EXPECT_EQ(staged_value("wireless.wifi0vap0.maclist"), "zero one");
}

TEST_F(StageList, NamesThePlaceAndThePathOfAFailedAddition) {
    const auto add = [&](const char* package, const char* key, const char* value) {
        return failure_of([&] { return add_list(package, key, value); });
    };
    const std::string message = "uciAddListElement (150): The input value are not correct.\n";
    EXPECT_EQ(add(nullptr, "wifi0.l", "1"), message);
    EXPECT_EQ(add("wireless", nullptr, "1"), message);
    EXPECT_EQ(add("wireless", "wifi0.l", nullptr), message);
    door.fail(Call::uci_alloc_context);
    EXPECT_EQ(add("wireless", "wifi0.l", "1"), "uciAddListElement (157): Out of memory.\n");
    EXPECT_EQ(add("nowhere", "wifi0.l", "1"),
              "uciAddListElement (166): Failed to lookup list element: nowhere.wifi0.l=1\n");
    EXPECT_EQ(add("wireless", "wifi7.l", "1"),
              "uciAddListElement (175): Failed to add list element: wireless.wifi7.l=1\n");
    door.fail(Call::uci_save);
    EXPECT_EQ(add("wireless", "wifi0.l", "1"),
              "uciAddListElement (184): Failed to save list element: wireless.wifi0.l=1\n");
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(StageList, NamesThePlaceAndThePathOfAFailedRemoval) {
    const auto del = [&](const char* package, const char* key, const char* value) {
        return failure_of([&] { return del_list(package, key, value); });
    };
    const std::string message = "uciDelListElement (204): The input value are not correct.\n";
    EXPECT_EQ(del(nullptr, "wifi0.l", "1"), message);
    EXPECT_EQ(del("wireless", nullptr, "1"), message);
    EXPECT_EQ(del("wireless", "wifi0.l", nullptr), message);
    door.fail(Call::uci_alloc_context);
    EXPECT_EQ(del("wireless", "wifi0.l", "1"), "uciDelListElement (211): Out of memory.\n");
    EXPECT_EQ(del("nowhere", "wifi0.l", "1"),
              "uciDelListElement (220): Failed to lookup list element: nowhere.wifi0.l=1\n");
    EXPECT_EQ(del("wireless", "wifi7.l", "1"),
              "uciDelListElement (229): Failed to delete list element: wireless.wifi7.l=1\n");
    EXPECT_EQ(add_list("wireless", "wifi0.l", "1"), 0);
    door.fail(Call::uci_save);
    EXPECT_EQ(del("wireless", "wifi0.l", "1"),
              "uciDelListElement (238): Failed to save \"delete list element\": "
              "wireless.wifi0.l=1\n");
    EXPECT_EQ(staged_value("wireless.wifi0.l"), "1");
}

TEST_F(StageList, AdditionsTakeLongerTextsThanRemovals) {
    const std::string longest(255 - strlen("wireless.wifi0.l="), 'x');
    const std::string longer = longest + "y";
    EXPECT_EQ(add_list("wireless", "wifi0.l", longer.c_str()), 0);
    EXPECT_EQ(add_list("wireless", "wifi0.l", "kept"), 0);
    EXPECT_EQ(del_list("wireless", "wifi0.l", longer.c_str()), 0);
    EXPECT_EQ(staged_value("wireless.wifi0.l"), longer + " kept")
        << "255 characters reach the store";
    EXPECT_EQ(add_list("wireless", "wifi0.l", longest.c_str()), 0);
    EXPECT_EQ(del_list("wireless", "wifi0.l", longest.c_str()), 0);
    EXPECT_EQ(staged_value("wireless.wifi0.l"), longer + " kept");
}

TEST_F(StageList, AdditionsAreCutAt511Characters) {
    const std::string element(600, 'x');
    EXPECT_EQ(add_list("wireless", "wifi0.l", element.c_str()), 0);
    EXPECT_EQ(staged_value("wireless.wifi0.l").size(), 511 - strlen("wireless.wifi0.l="));
}

using DeleteOption = StoreWrappers;

TEST_F(DeleteOption, StagesTheRemovalOfAnOptionOrASection) {
    EXPECT_EQ(remove("wireless", "wifi0.channel", 1), 0);
    EXPECT_EQ(remove("wireless", "wifi0vap15", 0), 0);
    EXPECT_THAT(staged(), ElementsAre("-wireless.wifi0.channel", "-wireless.wifi0vap15"));
}

TEST_F(DeleteOption, WhatIsMissingIsAFailureOnlyWhereItMustExist) {
    std::string text = stderr_of([&] { EXPECT_EQ(remove("wireless", "wifi0.nothing", 0), 0); });
    EXPECT_EQ(text, "");
    EXPECT_EQ(failure_of([&] { return remove("wireless", "wifi0.nothing", 1); }),
              "uciDeleteValue (366): Can not lookup value: wireless.wifi0.nothing\n");
    EXPECT_EQ(failure_of([&] { return remove("wireless", "wifi7.channel", 1); }),
              "uciDeleteValue (366): Can not lookup value: wireless.wifi7.channel\n");
    EXPECT_EQ(failure_of([&] { return remove("wireless", "wifi7", 1); }),
              "uciDeleteValue (366): Can not lookup value: wireless.wifi7\n");
    EXPECT_EQ(remove("wireless", "wifi7", 0), 0);
    EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(DeleteOption, CutsTheKeyAt255Characters) {
    const std::string key = "wifi0." + std::string(300, 'k');
    EXPECT_EQ(failure_of([&] { return remove("wireless", key.c_str(), 1); }),
              "uciDeleteValue (366): Can not lookup value: " + ("wireless." + key).substr(0, 255) +
                  "\n");
}

TEST_F(DeleteOption, AcceptsASectionByItsTypeAndIndex) {
    EXPECT_EQ(remove("wireless", "@wifi-device[1].channel", 1), 0);
    EXPECT_THAT(staged(), ElementsAre("-wireless.wifi1.channel"));
}

TEST_F(DeleteOption, NamesThePlaceOfAFailure) {
    const auto del = [&](const char* package, const char* key) {
        return failure_of([&] { return remove(package, key, 0); });
    };
    EXPECT_EQ(del(nullptr, "wifi0.channel"),
              "uciDeleteValue (340): The input value are not correct.\n");
    EXPECT_EQ(del("wireless", nullptr), "uciDeleteValue (340): The input value are not correct.\n");
    door.fail(Call::uci_alloc_context);
    EXPECT_EQ(del("wireless", "wifi0.channel"), "uciDeleteValue (347): Out of memory.\n");
    EXPECT_EQ(del("nowhere", "wifi0.channel"),
              "uciDeleteValue (356): Failed to lookup value: nowhere.wifi0.channel\n");
    door.fail(Call::uci_delete);
    EXPECT_EQ(del("wireless", "wifi0.channel"), "uciDeleteValue (379): Failed to delete.\n");
    door.fail(Call::uci_save);
    EXPECT_EQ(del("wireless", "wifi0.channel"), "uciDeleteValue (386): Failed to save.\n");
    EXPECT_THAT(staged(), IsEmpty());
}

} // namespace orlo::test
