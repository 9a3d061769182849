// SPDX-License-Identifier: MIT
// Promises about processes that are killed: a file is old or new, never in between, and no staged
// change is lost or applied twice.
#include "processes.h"
#include "sandbox.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;

constexpr const char* kText = "config a b\n\toption x 1\n\tlist l 1\n";

class Durability : public testing::Test {
protected:
    void SetUp() override { reset(); }

    /// x is 1 in the file and 2 in the staging, l gets a second element.
    void reset() const {
        fs::remove_all(sandbox_.config);
        fs::remove_all(sandbox_.staged);
        fs::create_directories(sandbox_.config);
        fs::create_directories(sandbox_.staged);
        write_file(sandbox_.config + "/p", kText);
        write_file(sandbox_.staged + "/p", staged_);
    }

    /// Kills the action at every step in turn and checks what it leaves behind.
    void kill_everywhere(const std::function<int()>& act, const std::function<void()>& check) {
        int step = 1;
        for (; step < 1000; step++) {
            reset();
            const Fate fate = killed_at(step, act);
            if (fate == Fate::kUntraceable) {
                GTEST_SKIP() << "processes cannot be traced here";
            }
            check();
            if (HasFailure()) {
                FAIL() << "killed at step " << step;
            }
            if (fate == Fate::kFinished) {
                break;
            }
        }
        EXPECT_GT(step, 20);
    }

    Sandbox sandbox_;
    std::string staged_ = "p.b.x='2'\n|p.b.l='2'\n";
};

TEST_F(Durability, a_killed_commit_neither_loses_nor_repeats_a_change) {
    kill_everywhere([this] { return commit(sandbox_, "p"); },
                    [this] {
                        const std::string text = read_file(sandbox_.config + "/p");
                        EXPECT_TRUE(text == kText || text ==
                                                         "\nconfig a 'b'\n\toption x '2'\n\tlist "
                                                         "l '1'\n\tlist l '2'\n\n")
                            << text;
                        EXPECT_EQ(get(sandbox_, "p.b.x"), "2");
                        EXPECT_EQ(get(sandbox_, "p.b.l"), "1|2");
                        EXPECT_EQ(change(sandbox_, uci_add_list, "p.b.l=3"), UCI_OK);
                        EXPECT_EQ(commit(sandbox_, "p"), UCI_OK);
                        EXPECT_EQ(get(sandbox_, "p.b.l"), "1|2|3");
                        EXPECT_EQ(read_file(sandbox_.staged + "/p"), "");
                    });
}

TEST_F(Durability, a_killed_commit_copes_with_staging_that_ends_in_the_middle) {
    for (const char* const end : {"p.b.y='open", "p.b.x='2'", "p.b.x=2 junk \"open"}) {
        staged_ = std::string("p.b.x='2'\n|p.b.l='2'\n") + end;
        kill_everywhere([this] { return commit(sandbox_, "p"); },
                        [this] {
                            EXPECT_EQ(get(sandbox_, "p.b.l"), "1|2");
                            EXPECT_EQ(commit(sandbox_, "p"), UCI_OK);
                            EXPECT_EQ(get(sandbox_, "p.b.x"), "2");
                            EXPECT_EQ(get(sandbox_, "p.b.l"), "1|2");
                        });
    }
}

TEST_F(Durability, a_change_saved_right_behind_a_killed_commit_is_kept) {
    kill_everywhere([this] { return commit(sandbox_, "p"); },
                    [this] {
                        // As a process does that had loaded the package before the commit began.
                        std::string staged = read_file(sandbox_.staged + "/p");
                        write_file(sandbox_.staged + "/p", staged + "|p.b.l='3'\n");
                        EXPECT_EQ(get(sandbox_, "p.b.l"), "1|2|3");
                        EXPECT_EQ(commit(sandbox_, "p"), UCI_OK);
                        EXPECT_EQ(get(sandbox_, "p.b.l"), "1|2|3");
                    });
}

TEST_F(Durability, a_killed_save_leaves_earlier_changes_alone) {
    kill_everywhere([this] { return change(sandbox_, uci_add_list, "p.b.l=3"); },
                    [this] {
                        EXPECT_EQ(get(sandbox_, "p.b.x"), "2");
                        const std::string list = get(sandbox_, "p.b.l");
                        EXPECT_TRUE(list == "1|2" || list == "1|2|3") << list;
                    });
}

TEST_F(Durability, a_killed_revert_drops_all_or_nothing_of_what_it_was_asked_to) {
    kill_everywhere([this] { return revert(sandbox_, "p.b.x"); },
                    [this] {
                        const std::string x = get(sandbox_, "p.b.x");
                        EXPECT_TRUE(x == "1" || x == "2") << x;
                        EXPECT_EQ(get(sandbox_, "p.b.l"), "1|2");
                    });
}

TEST_F(Durability, a_commit_has_everything_on_the_disk_before_it_takes_the_next_step) {
    const auto steps = traced(sandbox_.root, [this] { return commit(sandbox_, "p"); });
    if (!steps) {
        GTEST_SKIP() << "processes cannot be traced here";
    }
    EXPECT_EQ(*steps, (std::vector<std::string>{
                          "write etc/config/.p.uci", // the new file
                          "fsync etc/config/.p.uci",
                          "write tmp/.uci/p", // the mark that tells that it holds the changes
                          "fdatasync tmp/.uci/p", "rename",
                          "fsync etc/config",     // its name
                          "ftruncate tmp/.uci/p", // only now are the changes dispensable
                      }));
}

TEST_F(Durability, a_revert_has_the_changes_that_stay_on_the_disk_before_they_replace_the_others) {
    const auto steps = traced(sandbox_.root, [this] { return revert(sandbox_, "p.b.x"); });
    if (!steps) {
        GTEST_SKIP() << "processes cannot be traced here";
    }
    EXPECT_EQ(*steps, (std::vector<std::string>{"write tmp/.uci/.p.uci", "fsync tmp/.uci/.p.uci",
                                                "rename"}));
}

} // namespace
