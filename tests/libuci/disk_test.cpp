// SPDX-License-Identifier: MIT
// Promises about disks that are full, read-only or somewhere else: the calls fail with their codes,
// and files, staged changes and directories are what they were.
#include "processes.h"
#include "sandbox.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

constexpr const char* kConfig = "config a b\n\toption x 1\n\tlist l 1\n";
constexpr const char* kStaged = "p.b.x='2'\n|p.b.l='2'\n";
constexpr const char* kCommitted = "\nconfig a 'b'\n\toption x '2'\n\tlist l '1'\n\tlist l '2'\n\n";

class Disk : public testing::Test {
protected:
    void SetUp() override { make_store(); }

    void make_store() const {
        fs::create_directories(sandbox_.config);
        fs::create_directories(sandbox_.staged);
        write_file(sandbox_.config + "/p", kConfig);
        write_file(sandbox_.staged + "/p", kStaged);
    }

    /// All files of the store, as text.
    [[nodiscard]] std::string files() const {
        std::ostringstream text;
        for (const std::string& directory : {sandbox_.config, sandbox_.staged}) {
            for (const auto& [name, contents] : files_of(directory)) {
                text << name << ":\n" << contents;
            }
        }
        return text.str();
    }

    static std::string untouched() { return std::string("p:\n") + kConfig + "p:\n" + kStaged; }

    Sandbox sandbox_;
};

/// Lets no file grow beyond that size: a disk that becomes full within a file.
void limit_files(rlim_t size) {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit limit = {size, RLIM_INFINITY};
    setrlimit(RLIMIT_FSIZE, &limit);
}

TEST_F(Disk, a_commit_that_does_not_fit_on_the_disk_fails_and_keeps_file_and_changes) {
    EXPECT_EQ(in_child([this] {
                  limit_files(40);
                  return commit(sandbox_, "p");
              }),
              UCI_ERR_IO);
    EXPECT_EQ(files_of(sandbox_.config), (std::map<std::string, std::string>{{"p", kConfig}}));
    EXPECT_EQ(read_file(sandbox_.staged + "/p"), kStaged);
}

TEST_F(Disk, a_save_that_does_not_fit_on_the_disk_fails_and_leaves_no_part_of_a_change) {
    EXPECT_EQ(in_child([this] {
                  limit_files(30);
                  return change(sandbox_, uci_set, "p.b.name=a rather long value");
              }),
              UCI_ERR_IO);
    EXPECT_EQ(read_file(sandbox_.staged + "/p"), kStaged);
}

TEST_F(Disk, a_revert_that_does_not_fit_on_the_disk_fails_and_keeps_the_changes) {
    EXPECT_EQ(in_child([this] {
                  limit_files(5);
                  return revert(sandbox_, "p.b.x");
              }),
              UCI_ERR_IO);
    EXPECT_EQ(files_of(sandbox_.staged), (std::map<std::string, std::string>{{"p", kStaged}}));
}

/// The store lies on a disk of its own, so small that it can be filled.
class SmallDisk : public Disk {
protected:
    void SetUp() override {
        disk_ = sandbox_.root + "/disk";
        fs::create_directory(disk_);
        sandbox_.config = disk_ + "/config";
        sandbox_.staged = disk_ + "/staged";
    }

    /// What acting on the store with the disk in a state returns, and whether that left it as it
    /// was. Then the disk is mended, and the changes must still be there to be committed.
    void expect_failure(const std::string& options, const std::function<void()>& spoil,
                        const std::function<void()>& mend, const std::function<int()>& act) {
        const auto report = on_small_disk(disk_, options, [&] {
            make_store();
            spoil();
            std::ostringstream text;
            text << "result " << act() << (files() == untouched() ? "" : ", damage:\n" + files());
            mend();
            text << "; then " << commit(sandbox_, "p") << "\n" << read_file(sandbox_.config + "/p");
            return text.str();
        });
        if (!report) {
            GTEST_SKIP() << "no small disk: mounts are not allowed here";
        }
        EXPECT_EQ(*report, std::string("result 4; then 0\n") + kCommitted);
    }

    void expect_failure_when_full(const std::function<int()>& act) {
        expect_failure(
            "size=64k", [this] { fill(); }, [this] { fs::remove(disk_ + "/filler"); }, act);
    }

    void fill() const {
        std::ofstream filler(disk_ + "/filler");
        while (filler << std::string(512, 'f') << std::flush) {
        }
    }

    std::string disk_;
};

TEST_F(SmallDisk, a_commit_fails_when_it_is_full) {
    expect_failure_when_full([this] { return commit(sandbox_, "p"); });
}

TEST_F(SmallDisk, a_save_fails_when_it_is_full) {
    // Longer than what is left of the block that the file ends in.
    expect_failure_when_full(
        [this] { return change(sandbox_, uci_set, "p.b.y=" + std::string(6000, 'v')); });
}

TEST_F(SmallDisk, a_revert_fails_when_it_is_full) {
    expect_failure_when_full([this] { return revert(sandbox_, "p.b.x"); });
}

TEST_F(SmallDisk, a_commit_fails_when_no_file_can_be_created) {
    expect_failure(
        "nr_inodes=8",
        [this] {
            int count = 0;
            while (std::ofstream(disk_ + "/filler" + std::to_string(count))) {
                count++;
            }
        },
        [this] { fs::remove(disk_ + "/filler0"); }, [this] { return commit(sandbox_, "p"); });
}

TEST_F(SmallDisk, nothing_is_written_when_it_is_read_only) {
    const auto remount = [this](unsigned long flags) {
        mount("small", disk_.c_str(), "tmpfs", MS_REMOUNT | flags, nullptr);
    };
    for (const auto& act : std::vector<std::function<int()>>{
             [this] { return commit(sandbox_, "p"); },
             [this] { return change(sandbox_, uci_set, "p.b.y=1"); },
             [this] { return revert(sandbox_, "p.b.x"); },
         }) {
        expect_failure(
            "size=64k", [&] { remount(MS_RDONLY); }, [&] { remount(0); }, act);
    }
}

TEST_F(Disk, a_commit_fails_when_the_file_is_a_link_to_another_disk) {
    const Sandbox elsewhere(fs::temp_directory_path());
    const std::string target = elsewhere.config + "/p";
    write_file(target, kConfig);
    fs::remove(sandbox_.config + "/p");
    fs::create_symlink(target, sandbox_.config + "/p");
    if (device_of(target) == device_of(sandbox_.config)) {
        GTEST_SKIP() << "there is only one disk here";
    }
    for (const char* const unfinished : {"", "p.b.y='3'", "p.b.y='open quotes\np.b.z=3\n"}) {
        write_file(sandbox_.staged + "/p", std::string(kStaged) + unfinished);
        EXPECT_EQ(commit(sandbox_, "p"), UCI_ERR_IO);
        EXPECT_TRUE(fs::is_symlink(sandbox_.config + "/p"));
        EXPECT_EQ(files(), untouched() + unfinished);
    }
}

/// Makes the store nobody's, a directory of it read-only, and acts as nobody.
int act_without_permission(const Sandbox& sandbox, const std::string& read_only,
                           const std::function<int()>& act) {
    constexpr uid_t kNobody = 65534;
    const bool root = geteuid() == 0;
    bool prepared = true;
    const auto give_away = [&](const std::string& path) {
        prepared = (!root || chown(path.c_str(), kNobody, kNobody) == 0) && prepared;
    };
    give_away(sandbox.root);
    for (const auto& entry : fs::recursive_directory_iterator(sandbox.root)) {
        give_away(entry.path());
    }
    prepared = chmod(read_only.c_str(), 0555) == 0 && prepared;
    return in_child([&] { return prepared && (!root || setuid(kNobody) == 0) ? act() : -1; });
}

TEST_F(Disk, a_commit_into_a_read_only_directory_fails) {
    EXPECT_EQ(
        act_without_permission(sandbox_, sandbox_.config, [this] { return commit(sandbox_, "p"); }),
        UCI_ERR_IO);
    EXPECT_EQ(files(), untouched());
}

TEST_F(Disk, a_revert_in_a_read_only_directory_fails) {
    EXPECT_EQ(act_without_permission(sandbox_, sandbox_.staged,
                                     [this] { return revert(sandbox_, "p.b.x"); }),
              UCI_ERR_IO);
    EXPECT_EQ(files(), untouched());
}

TEST_F(Disk, a_save_into_a_read_only_directory_fails_and_keeps_the_change_for_a_second_try) {
    fs::remove(sandbox_.staged + "/p");
    EXPECT_EQ(act_without_permission(sandbox_, sandbox_.staged,
                                     [this] {
                                         const ContextPtr ctx = sandbox_.open();
                                         const int code = change(ctx.get(), uci_set, "p.b.y=1");
                                         if (code != UCI_ERR_IO || exists(sandbox_.staged + "/p") ||
                                             chmod(sandbox_.staged.c_str(), 0755) != 0) {
                                             return 99;
                                         }
                                         return uci_save(ctx.get(),
                                                         uci_lookup_package(ctx.get(), "p"));
                                     }),
              UCI_OK);
    EXPECT_EQ(read_file(sandbox_.staged + "/p"), "p.b.y='1'\n");
}

} // namespace
