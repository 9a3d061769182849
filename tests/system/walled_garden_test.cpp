// SPDX-License-Identifier: MIT
// The destinations that a captive portal leaves open.
#include "captive_portal.h"

namespace orlo::test {

using WalledGarden = CaptivePortal;

TEST_F(WalledGarden, IsReplacedOnlyWhenItsFlagIsSet) {
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

TEST_F(WalledGarden, IsStagedLastInEachMode) {
    for (const char* mode : {"click-through", "radius", "ext-page-redirect"}) {
        portal_ = make(mode);
        portal_.walled_garden_enable = 1;
        portal_.walled_garden[0] = mode;
        portal_.walled_garden[1] = nullptr;
        EXPECT_EQ(apply(), 0);
        EXPECT_EQ(edits().back(), std::string("+cp_walled_garden=") + mode);
        EXPECT_EQ(staged_value(option("cp_walled_garden")), mode);
    }
}

TEST_F(WalledGarden, MayBeEmpty) {
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

TEST_F(WalledGarden, MayBeFull) {
    std::vector<std::string> names(50);
    std::string all;
    for (size_t i = 0; i < names.size(); i++) {
        names[i] = "site" + std::to_string(i) + ".example";
        portal_.walled_garden[i] = names[i].c_str();
        all += (i == 0 ? "" : " ") + names[i];
    }
    portal_.walled_garden_enable = 1;
    EXPECT_EQ(apply(), 0);
    EXPECT_EQ(door.trace({"add"}).size(), 50U);
    EXPECT_EQ(staged_value(option("cp_walled_garden")), all);
}

TEST_F(WalledGarden, ReplacesAnOptionThatIsNoList) {
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

TEST_F(WalledGarden, EachEntryThatCannotBeAddedDiscardsEverything) {
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

} // namespace orlo::test
