// SPDX-License-Identifier: MIT
// The staged changes as a person reads them.
#include "uci/store_wrappers.h"

namespace orlo::test {

using ShowChanges = StoreWrappers;

TEST_F(ShowChanges, PrintsEachKindOfChangeInOrder) {
    set("wireless", "wifi0.channel", "11");
    add_list("wireless", "wifi0.l", "one");
    del_list("wireless", "wifi0.l", "one");
    remove("wireless", "wifi0.txpower", 1);
    remove("wireless", "wifi0vap15", 1);
    int result = -1;
    EXPECT_EQ(stderr_of([&] { result = changes("wireless"); }), "wireless.wifi0.channel=11\n"
                                                                "wireless.wifi0.l+=one\n"
                                                                "wireless.wifi0.l-=one\n"
                                                                "-wireless.wifi0.txpower\n"
                                                                "-wireless.wifi0vap15\n");
    EXPECT_EQ(result, 0);
}

TEST_F(ShowChanges, PrintsANewSectionByItsNameAlone) {
    set("wireless", "guest", "wifi-iface");
    EXPECT_EQ(stderr_of([&] { changes("wireless"); }), "wireless.guest\n");
}

TEST_F(ShowChanges, PrintsNothingWhenNothingIsStaged) {
    EXPECT_EQ(stderr_of([&] { EXPECT_EQ(changes("wireless"), 0); }), "");
}

TEST_F(ShowChanges, PrintsAnyOtherChangeAsAPlainOne) {
    ASSERT_EQ(system("mkdir -p /tmp/.uci"), 0);
    write_file("/tmp/.uci/wireless", "@wireless.wifi0='renamed'\n"
                                     "@wireless.wifi1.channel='canal'\n"
                                     "+wireless.cfg0499aa='wifi-iface'\n"
                                     "^wireless.wifi0vap3='0'\n");
    EXPECT_EQ(stderr_of([&] { changes("wireless"); }), "wireless.wifi0\n"
                                                       "wireless.wifi1.channel=canal\n"
                                                       "wireless.cfg0499aa\n"
                                                       "wireless.wifi0vap3\n");
}

TEST_F(ShowChanges, CutsTheNameAt255Characters) {
    const std::string name(300, 'p');
    EXPECT_EQ(failure_of([&] { return changes(name.c_str()); }),
              "uciGetChanges (510): Failed to lookup value: " + name.substr(0, 255) + "\n");
}

TEST_F(ShowChanges, NamesThePlaceOfAFailure) {
    EXPECT_EQ(failure_of([&] { return changes(nullptr); }),
              "uciGetChanges (494): The input value is not correct.\n");
    door.fail(Call::uci_alloc_context);
    EXPECT_EQ(failure_of([&] { return changes("wireless"); }),
              "uciGetChanges (501): Out of memory.\n");
    EXPECT_EQ(failure_of([&] { return changes("nowhere"); }),
              "uciGetChanges (510): Failed to lookup value: nowhere\n");
}

} // namespace orlo::test
