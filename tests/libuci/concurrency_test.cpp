// SPDX-License-Identifier: MIT
// Promises about processes that meet: nobody's change is lost, repeated or spoilt, whoever saves,
// commits or reverts at the same time.
#include "sandbox.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <spawn.h>
#include <sstream>
#include <sys/file.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

class Concurrency : public testing::Test {
protected:
    void SetUp() override {
        write_file(sandbox_.config + "/p", "config a b\n\toption x 1\n\tlist l 1\n");
        fs::create_directories(sandbox_.staged);
    }

    /// Staged changes as left by someone else.
    void stage(const std::string& records) const { write_file(sandbox_.staged + "/p", records); }

    Sandbox sandbox_;
};

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

TEST_F(Concurrency, a_reader_that_waited_reads_the_file_that_took_the_place) {
    std::string seen;
    replace_while_waiting(sandbox_.config + "/p", "config a b\n\toption y new\n",
                          [&] { seen = get(sandbox_, "p.b.y"); });
    EXPECT_EQ(seen, "new");
}

TEST_F(Concurrency, a_commit_that_waited_keeps_the_file_that_took_the_place) {
    stage("p.b.x='2'\n|p.b.l='2'\n");
    int code = -1;
    replace_while_waiting(sandbox_.config + "/p", "config a b\n\toption y new\n",
                          [&] { code = commit(sandbox_, "p"); });
    EXPECT_EQ(code, UCI_OK);
    EXPECT_EQ(read_file(sandbox_.config + "/p"),
              "\nconfig a 'b'\n\toption y 'new'\n\toption x '2'\n\tlist l '2'\n\n");
}

TEST_F(Concurrency, a_save_that_waited_appends_to_the_file_that_took_the_place) {
    stage("p.b.x='2'\n");
    int code = -1;
    replace_while_waiting(sandbox_.staged + "/p", "p.b.x='3'\n",
                          [&] { code = change(sandbox_, uci_set, "p.b.z=4"); });
    EXPECT_EQ(code, UCI_OK);
    EXPECT_EQ(read_file(sandbox_.staged + "/p"), "p.b.x='3'\np.b.z='4'\n");
}

TEST_F(Concurrency, all_of_the_first_saves_succeed_whoever_makes_the_directory) {
    constexpr int kSavers = 4;
    for (int round = 0; round < 100 && !HasFailure(); round++) {
        fs::remove_all(sandbox_.staged);
        std::atomic<int> ready{0};
        std::vector<std::thread> savers;
        savers.reserve(kSavers);
        for (int i = 0; i < kSavers; i++) {
            savers.emplace_back([&, i] {
                const ContextPtr ctx = sandbox_.open();
                uci_ptr ptr{};
                std::string text = "p.b.saver" + std::to_string(i) + "=1";
                EXPECT_EQ(uci_lookup_ptr(ctx.get(), &ptr, text.data(), true), UCI_OK);
                EXPECT_EQ(uci_set(ctx.get(), &ptr), UCI_OK);
                ready++;
                while (ready < kSavers) {
                    std::this_thread::yield(); // so that all of them save at once
                }
                EXPECT_EQ(uci_save(ctx.get(), ptr.p), UCI_OK) << "in round " << round;
            });
        }
        for (std::thread& saver : savers) {
            saver.join();
        }
        for (int i = 0; i < kSavers; i++) {
            EXPECT_EQ(get(sandbox_, "p.b.saver" + std::to_string(i)), "1");
        }
    }
}

/// The uci command; whether it succeeded.
bool run_uci(const Sandbox& sandbox, std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {UCI_COMMAND, "-c", sandbox.config, "-P", sandbox.staged});
    std::vector<char*> argv;
    argv.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) {
        argv.push_back(argument.data());
    }
    argv.push_back(nullptr);
    pid_t pid = 0;
    int status = 0;
    return posix_spawn(&pid, UCI_COMMAND, nullptr, nullptr, argv.data(), environ) == 0 &&
           waitpid(pid, &status, 0) == pid && status == 0;
}

/// Processes that do the same thing again and again for a while, each counting how often.
class Crowd {
public:
    explicit Crowd(const Sandbox& sandbox) : sandbox_(sandbox) {}

    /// @param act  is told how often it has been called; false when it failed
    void add(const std::string& name, const std::function<bool(int)>& act) {
        const pid_t pid = fork();
        if (pid == 0) {
            _exit(repeat(name, act));
        }
        pids_.push_back(pid);
    }

    /// Waits for all of them; whether nothing failed.
    bool finish() {
        bool good = true;
        for (const pid_t pid : pids_) {
            int status = -1;
            good = waitpid(pid, &status, 0) == pid && status == 0 && good;
        }
        return good;
    }

    [[nodiscard]] int count_of(const std::string& name) const {
        return std::stoi(read_file(sandbox_.root + "/count-" + name));
    }

private:
    int repeat(const std::string& name, const std::function<bool(int)>& act) const {
        int count = 0;
        for (; Clock::now() < end_; count++) {
            if (!act(count)) {
                return 1;
            }
        }
        write_file(sandbox_.root + "/count-" + name, std::to_string(count));
        return 0;
    }

    const Sandbox& sandbox_;
    Clock::time_point end_ = Clock::now() + 2s;
    std::vector<pid_t> pids_;
};

std::vector<std::string> difference(const std::multiset<std::string>& all,
                                    const std::multiset<std::string>& known) {
    std::vector<std::string> rest;
    std::set_difference(all.begin(), all.end(), known.begin(), known.end(),
                        std::back_inserter(rest));
    return rest;
}

TEST_F(Concurrency, writers_and_committers_lose_nothing_to_each_other) {
    Crowd crowd(sandbox_);
    for (const char* const name : {"library_1_", "library_2_"}) {
        crowd.add(name, [&](int count) {
            std::this_thread::sleep_for(1ms); // so that the list does not become a long one
            return change(sandbox_, uci_add_list, "p.b.l=" + (name + std::to_string(count))) ==
                   UCI_OK;
        });
    }
    for (const char* const name : {"command_1_", "command_2_"}) {
        crowd.add(name, [&](int count) {
            return run_uci(sandbox_, {"add_list", "p.b.l=" + (name + std::to_string(count))});
        });
    }
    // Reverting something that is not staged any more, or is, rewrites the staged changes.
    crowd.add("committer", [&](int count) {
        return change(sandbox_, uci_set, "p.b.x=" + std::to_string(count)) == UCI_OK &&
               revert(sandbox_, "p.b.x") == UCI_OK && commit(sandbox_, "p") == UCI_OK;
    });
    crowd.add("command_committer", [&](int) { return run_uci(sandbox_, {"commit", "p"}); });
    ASSERT_TRUE(crowd.finish());
    ASSERT_EQ(commit(sandbox_, "p"), UCI_OK);

    std::multiset<std::string> seen;
    std::istringstream list(get(sandbox_, "p.b.l"));
    for (std::string element; std::getline(list, element, '|');) {
        seen.insert(element);
    }
    std::multiset<std::string> wanted = {"1"};
    for (const char* const name : {"library_1_", "library_2_", "command_1_", "command_2_"}) {
        const int count = crowd.count_of(name);
        EXPECT_GT(count, 2) << name;
        for (int i = 0; i < count; i++) {
            wanted.insert(name + std::to_string(i));
        }
    }
    EXPECT_GT(crowd.count_of("committer"), 2);
    EXPECT_GT(crowd.count_of("command_committer"), 2);
    EXPECT_EQ(difference(wanted, seen), std::vector<std::string>{}) << "lost";
    EXPECT_EQ(difference(seen, wanted), std::vector<std::string>{}) << "repeated";
    EXPECT_EQ(files_of(sandbox_.config).size(), 1U);
    EXPECT_EQ(files_of(sandbox_.staged), (std::map<std::string, std::string>{{"p", ""}}));
}

} // namespace
