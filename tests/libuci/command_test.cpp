// SPDX-License-Identifier: MIT
// The uci command: what it prints and what it returns.
#include "sandbox.h"

#include <array>
#include <cstdio>
#include <gtest/gtest.h>
#include <sys/wait.h>

namespace {

struct Result {
    int status;
    std::string output; // both streams
};

class Command : public testing::Test {
protected:
    void SetUp() override {
        write_file(sandbox_.config + "/p", "config a b\n"
                                           "\toption x \"it's\"\n"
                                           "\tlist l 1\n"
                                           "\tlist l '2 3'\n"
                                           "config a\n"
                                           "\toption q 9\n"
                                           "config t n\n");
    }

    /// @param arguments  as for a shell
    [[nodiscard]] Result uci(const std::string& arguments) const {
        const std::string line = std::string(UCI_COMMAND) + " -c " + sandbox_.config + " -P " +
                                 sandbox_.staged + " " + arguments + " 2>&1";
        FILE* const pipe = popen(line.c_str(), "r");
        Result result{};
        std::array<char, 4096> piece{};
        while (const size_t size = fread(piece.data(), 1, piece.size(), pipe)) {
            result.output.append(piece.data(), size);
        }
        const int status = pclose(pipe);
        result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        return result;
    }

    void expect(const std::string& arguments, const std::string& output, int status = 0) const {
        const Result result = uci(arguments);
        EXPECT_EQ(result.output, output) << arguments;
        EXPECT_EQ(result.status, status) << arguments;
    }

    Sandbox sandbox_;
};

TEST_F(Command, shows_packages_sections_and_options) {
    const std::string all = "p.b=a\n"
                            "p.b.x='it'\\''s'\n"
                            "p.b.l='1' '2 3'\n"
                            "p.@a[1]=a\n"
                            "p.@a[1].q='9'\n"
                            "p.n=t\n";
    expect("show", all);
    expect("show p", all);
    expect("show p.b.x", "p.b.x='it'\\''s'\n");
    expect("show p.@a[-1]", "p.@a[1]=a\np.@a[1].q='9'\n");
    expect("show p.@a[1].q", "p.@a[1].q='9'\n");
    expect("-X show p.@a[1]", "p.cfg02b606=a\np.cfg02b606.q='9'\n");
    expect("-d , show p.b.l", "p.b.l='1','2 3'\n");
}

TEST_F(Command, gets_bare_values) {
    expect("get p.b.x", "it's\n");
    expect("get p.b.l", "1 2 3\n");
    expect("get p.@a[1].q", "9\n");
    expect("get p.b", "a\n");
    expect("get p.b.x p.n", "it's\nt\n");
}

TEST_F(Command, stages_changes_and_lists_them) {
    expect("set p.b.x=2 p.new=t", "");
    expect("add_list p.b.l='4 5'", "");
    expect("del_list p.b.l=1", "");
    expect("delete p.@a[1]", "");
    expect("delete p.b.x", "");
    const std::string all =
        "p.b.x='2'\np.new='t'\np.b.l+='4 5'\np.b.l-='1'\n-p.cfg02b606\n-p.b.x\n";
    expect("changes", all);
    expect("changes p", all);
    expect("get p.b.l", "2 3 4 5\n");
}

TEST_F(Command, commits_and_reverts) {
    expect("set p.b.x=2", "");
    expect("set p.b.y=3", "");
    expect("revert p.b.x", "");
    expect("changes", "p.b.y='3'\n");
    expect("commit", "");
    expect("changes", "");
    EXPECT_EQ(get(sandbox_, "p.b.x"), "it's");
    EXPECT_EQ(get(sandbox_, "p.b.y"), "3");
    expect("set p.b.y=4", "");
    expect("commit p", "");
    EXPECT_EQ(get(sandbox_, "p.b.y"), "4");
}

TEST_F(Command, reads_changes_of_further_directories) {
    ASSERT_EQ(change(sandbox_, uci_set, "p.b.x=2"), UCI_OK);
    const std::string staged = sandbox_.staged;
    sandbox_.staged = sandbox_.root + "/tmp/elsewhere";
    expect("get p.b.x", "it's\n");
    expect("-p " + staged + " get p.b.x", "2\n");
}

TEST_F(Command, tells_what_went_wrong) {
    expect("get p.b.none", "uci: Entry not found\n", 1);
    expect("show none", "uci: Entry not found\n", 1);
    expect("delete p.none", "uci: Entry not found\n", 1);
    expect("set p.none.x=1", "uci: Invalid argument\n", 1);
    expect("set p.b.x", "uci: Invalid argument\n", 1);
    expect("get p.b.x..", "uci: Parse error\n", 1);
    expect("commit p.b", "uci: Invalid argument\n", 1);
    expect("-q get p.b.none", "", 1);
    expect("get p.b.none p.n", "uci: Entry not found\nt\n", 1);
}

TEST_F(Command, tells_where_a_file_is_broken) {
    write_file(sandbox_.config + "/p", "config a b\n\toption x 'a\nb'\n\toption y '1' '2'\n");
    expect("show p", "uci: Parse error (too many words) at line 4\n", 1);
    expect("get p.b.x", "uci: Parse error (too many words) at line 4\n", 1);
}

TEST_F(Command, explains_itself) {
    const Result help = uci("--help");
    EXPECT_EQ(help.output.substr(0, 10), "Usage: uci");
    expect("-h", help.output, 0);
    expect("", help.output, 1);
    expect("frobnicate", help.output, 1);
    expect("get", help.output, 1);
}

TEST_F(Command, takes_values_that_look_like_options) {
    expect("set p.b.x=-c", "");
    expect("get p.b.x", "-c\n");
}

} // namespace
