// SPDX-License-Identifier: MIT
// Promises about disks that fill up, processes that are killed and processes that meet: a file is
// old or new, never in between, and no staged change is lost or applied twice.
#include "sandbox.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <sys/file.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr const char* kText = "config a b\n\toption x 1\n\tlist l 1\n";

/// Runs something in a child process; its result.
int in_child(const std::function<int()>& act) {
    const pid_t pid = fork();
    if (pid == 0) {
        _exit(act());
    }
    int status = 0;
    waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

enum class Fate { kKilled, kFinished, kUntraceable };

/// Runs something in a child process that is killed at its n-th step: a step is the way into or out
/// of a system call.
Fate killed_at(int step, const std::function<int()>& act) {
    const pid_t pid = fork();
    if (pid == 0) {
        if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) {
            _exit(99);
        }
        raise(SIGSTOP);
        _exit(act());
    }
    int status = 0;
    waitpid(pid, &status, 0);
    if (WIFEXITED(status)) {
        return Fate::kUntraceable;
    }
    for (int i = 0; i < step && WIFSTOPPED(status); i++) {
        ptrace(PTRACE_SYSCALL, pid, nullptr, nullptr);
        waitpid(pid, &status, 0);
    }
    if (WIFSTOPPED(status)) {
        kill(pid, SIGKILL);
        waitpid(pid, &status, 0);
        return Fate::kKilled;
    }
    return Fate::kFinished;
}

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

/// Lets no file grow beyond that size, as a full disk would.
void fill_disk(rlim_t size) {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit limit = {size, RLIM_INFINITY};
    setrlimit(RLIMIT_FSIZE, &limit);
}

TEST_F(Durability, a_commit_to_a_full_disk_fails_and_keeps_file_and_changes) {
    EXPECT_EQ(in_child([this] {
                  fill_disk(40);
                  return commit(sandbox_, "p");
              }),
              UCI_ERR_IO);
    EXPECT_EQ(files_of(sandbox_.config), (std::map<std::string, std::string>{{"p", kText}}));
    EXPECT_EQ(read_file(sandbox_.staged + "/p"), "p.b.x='2'\n|p.b.l='2'\n");
}

TEST_F(Durability, a_save_to_a_full_disk_fails_and_leaves_no_part_of_a_change) {
    EXPECT_EQ(in_child([this] {
                  fill_disk(30);
                  return change(sandbox_, uci_set, "p.b.name=a rather long value");
              }),
              UCI_ERR_IO);
    EXPECT_EQ(read_file(sandbox_.staged + "/p"), "p.b.x='2'\n|p.b.l='2'\n");
}

TEST_F(Durability, a_revert_on_a_full_disk_fails_and_keeps_the_changes) {
    EXPECT_EQ(in_child([this] {
                  fill_disk(5);
                  return revert(sandbox_, "p.b.x");
              }),
              UCI_ERR_IO);
    EXPECT_EQ(files_of(sandbox_.staged),
              (std::map<std::string, std::string>{{"p", "p.b.x='2'\n|p.b.l='2'\n"}}));
}

TEST_F(Durability, a_commit_into_a_read_only_directory_fails_and_keeps_file_and_changes) {
    constexpr uid_t kNobody = 65534;
    const bool root = geteuid() == 0;
    if (root) {
        for (const auto& entry : fs::recursive_directory_iterator(sandbox_.root)) {
            ASSERT_EQ(chown(entry.path().c_str(), kNobody, kNobody), 0);
        }
        ASSERT_EQ(chown(sandbox_.root.c_str(), kNobody, kNobody), 0);
    }
    ASSERT_EQ(chmod(sandbox_.config.c_str(), 0555), 0);
    EXPECT_EQ(in_child([&] {
                  if (root && setuid(kNobody) != 0) {
                      return -1;
                  }
                  return commit(sandbox_, "p");
              }),
              UCI_ERR_IO);
    EXPECT_EQ(read_file(sandbox_.config + "/p"), kText);
    EXPECT_EQ(read_file(sandbox_.staged + "/p"), "p.b.x='2'\n|p.b.l='2'\n");
}

/// Holds the lock of a file while a thread runs into it, replaces the file and lets go.
void replace_while_waiting(const std::string& path, const std::string& text,
                           const std::function<void()>& act) {
    const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(fd, LOCK_EX), 0);
    std::thread waiting(act);
    std::this_thread::sleep_for(100ms);
    write_file(path + ".new", text);
    fs::rename(path + ".new", path);
    close(fd);
    waiting.join();
}

TEST_F(Durability, a_reader_that_waited_reads_the_file_that_took_the_place) {
    std::string seen;
    replace_while_waiting(sandbox_.config + "/p", "config a b\n\toption y new\n",
                          [&] { seen = get(sandbox_, "p.b.y"); });
    EXPECT_EQ(seen, "new");
}

TEST_F(Durability, a_commit_that_waited_keeps_the_file_that_took_the_place) {
    int code = -1;
    replace_while_waiting(sandbox_.config + "/p", "config a b\n\toption y new\n",
                          [&] { code = commit(sandbox_, "p"); });
    EXPECT_EQ(code, UCI_OK);
    EXPECT_EQ(read_file(sandbox_.config + "/p"),
              "\nconfig a 'b'\n\toption y 'new'\n\toption x '2'\n\tlist l '2'\n\n");
}

TEST_F(Durability, a_save_that_waited_appends_to_the_file_that_took_the_place) {
    int code = -1;
    replace_while_waiting(sandbox_.staged + "/p", "p.b.x='3'\n",
                          [&] { code = change(sandbox_, uci_set, "p.b.z=4"); });
    EXPECT_EQ(code, UCI_OK);
    EXPECT_EQ(read_file(sandbox_.staged + "/p"), "p.b.x='3'\np.b.z='4'\n");
}

/// Appends elements until the time is over; committing and reverting (something else) now and then.
int append_for(const Sandbox& sandbox, char who, std::chrono::milliseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    int count = 0;
    for (; std::chrono::steady_clock::now() < end; count++) {
        const std::string value = who + std::to_string(count);
        if (change(sandbox, uci_add_list, "p.b.l=" + value) != UCI_OK ||
            (count % 5 == 1 && commit(sandbox, "p") != UCI_OK) ||
            (count % 3 == 1 && revert(sandbox, "p.b.x") != UCI_OK)) {
            return 1;
        }
    }
    write_file(sandbox.root + "/count-" + who, std::to_string(count));
    return 0;
}

TEST_F(Durability, two_processes_lose_nothing_to_each_other) {
    const std::string writers = "ab";
    std::map<pid_t, int> children;
    for (const char who : writers) {
        const pid_t pid = fork();
        if (pid == 0) {
            _exit(append_for(sandbox_, who, 800ms));
        }
        children[pid] = -1;
    }
    for (auto& [pid, status] : children) {
        waitpid(pid, &status, 0);
        EXPECT_EQ(status, 0);
    }
    ASSERT_EQ(commit(sandbox_, "p"), UCI_OK);

    std::multiset<std::string> seen;
    std::istringstream list(get(sandbox_, "p.b.l"));
    for (std::string element; std::getline(list, element, '|');) {
        seen.insert(element);
    }
    std::multiset<std::string> wanted = {"1", "2"};
    for (const char who : writers) {
        const int count = std::stoi(read_file(sandbox_.root + "/count-" + who));
        EXPECT_GT(count, 10);
        for (int i = 0; i < count; i++) {
            wanted.insert(who + std::to_string(i));
        }
    }
    EXPECT_EQ(seen, wanted);
}

} // namespace
