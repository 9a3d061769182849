// SPDX-License-Identifier: MIT
// Whatever a file holds, it is read in bounded time and memory, the same however it is written, or
// refused; and what has been refused is never overwritten.
#include "sandbox.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <malloc.h>
#include <sstream>
#include <vector>

namespace {

namespace fs = std::filesystem;

class Robustness : public testing::Test {
protected:
    void SetUp() override { fs::create_directories(sandbox_.staged); }

    void configure(const std::string& text) const { write_file(sandbox_.config + "/p", text); }
    void stage(const std::string& records) const { write_file(sandbox_.staged + "/p", records); }

    Sandbox sandbox_;
};

TEST_F(Robustness, a_broken_file_is_refused_by_all_calls_and_stays_as_it_is) {
    std::vector<std::string> broken = {
        "broken\n",
        "config a b\n\toption x 'open\n",
        "config a b\n\toption x \"open",
        "config a b\n\toption x '1' '2'\n",
        "config a b\n\toption x '1'\n\toption x-y '2'\n",
        "\toption x '1'\n",
        "config a b\nconfig c b\n",
        "config a b\n\toption x '1'\n\tlist\n",
    };
    broken.emplace_back("config a b\n\toption x '\0'\n", 25);
    for (const std::string& text : broken) {
        configure("config a b\n\toption x 1\n");
        stage("p.b.x='2'\n");
        const ContextPtr before = sandbox_.open(); // has loaded the file when it was whole
        uci_ptr ptr{};
        std::string package = "p";
        ASSERT_EQ(uci_lookup_ptr(before.get(), &ptr, package.data(), true), UCI_OK);
        configure(text);
        EXPECT_EQ(uci_commit(before.get(), &ptr.p, false), UCI_ERR_PARSE) << text;
        EXPECT_EQ(commit(sandbox_, "p"), UCI_ERR_PARSE) << text;
        EXPECT_EQ(revert(sandbox_, "p"), UCI_ERR_PARSE) << text;
        EXPECT_EQ(change(sandbox_, uci_set, "p.b.x=3"), UCI_ERR_PARSE) << text;
        EXPECT_EQ(files_of(sandbox_.config), (std::map<std::string, std::string>{{"p", text}}));
        EXPECT_EQ(read_file(sandbox_.staged + "/p"), "p.b.x='2'\n") << text;
    }
}

/// A text with something in the place of each '%'.
std::string filled(const char* pattern, const std::string& text) {
    std::string all;
    for (const char* c = pattern; *c; c++) {
        *c == '%' ? all += text : all += *c;
    }
    return all;
}

/// Text in the way the store writes it, and in another one.
std::string quoted(const std::string& value) {
    std::string text = "'";
    for (const char c : value) {
        text += c == '\'' ? "'\\''" : std::string(1, c);
    }
    return text + "'";
}

std::string escaped(const std::string& value) {
    std::string text = "\"";
    for (const char c : value) {
        text += (c == '"' || c == '\\' ? "\\" : "") + std::string(1, c);
    }
    return text + "\"";
}

std::vector<std::string> values() {
    std::vector<std::string> all = {
        "it's",       "'",     "''",     "a\nb",     "\ttab",   "\r",     "a # b; c", "\\",
        "\"quotes\"", "a\\'b", "=.x='y", "\xc3\xa4", " blank ", "\x01 x", "'''",      "\n"};
    for (size_t size = 1; size < 140; size++) {
        all.emplace_back(size, 'v');
        all.push_back(std::string(size, 'v') + "'w");
    }
    return all;
}

TEST_F(Robustness, a_value_reads_the_same_however_its_line_is_written) {
    for (const std::string& value : values()) {
        for (const char* const end : {"\n", "", " \n", " # comment\n", "\r\n"}) {
            for (const std::string& text : {quoted(value), escaped(value)}) {
                configure(
                    filled("config a b\n\toption before '1'\n\toption x %", text).append(end));
                EXPECT_EQ(get(sandbox_, "p.b.x"), value) << text << end;
            }
        }
        configure(filled("config a 'b'\n\tlist x %", quoted(value)) +
                  filled("\n\tlist x %\n\toption y '2'\n", escaped(value)));
        EXPECT_EQ(get(sandbox_, "p.b.x"), filled("%|", value).append(value));
        EXPECT_EQ(get(sandbox_, "p.b.y"), "2");
    }
}

TEST_F(Robustness, a_staged_value_reads_the_same_however_its_record_is_written) {
    configure("config a b\n");
    for (const std::string& value : values()) {
        const bool allowed = value.find('\x01') == std::string::npos;
        for (const std::string& text : {quoted(value), escaped(value)}) {
            for (const char* const rest : {"\np.b.y='2'\n", "\n  p.b.y=2\n"}) {
                stage("p.b.x=" + text + rest);
                EXPECT_EQ(get(sandbox_, "p.b.x"), allowed ? value : "(none)") << text;
                EXPECT_EQ(get(sandbox_, "p.b.y"), "2") << text;
            }
        }
    }
}

TEST_F(Robustness, names_of_any_length_are_found) {
    for (size_t size = 1; size < 80; size++) {
        const std::string name(size, 'n');
        configure(filled("config a '%'\n\toption % 'v'\n\toption %2 'w'\n"
                         "\toption % 'x'\n\tlist l% 'y'\n",
                         name));
        EXPECT_EQ(get(sandbox_, filled("p.%.%", name)), "x");
        stage(filled("p.%.%='staged'\n|p.%.l%='z'\n", name));
        EXPECT_EQ(get(sandbox_, filled("p.%.%", name)), "staged");
        EXPECT_EQ(get(sandbox_, filled("p.%.%2", name)), "w");
        EXPECT_EQ(get(sandbox_, filled("p.%.l%", name)), "y|z");
        stage("");
    }
}

/// What a context that has loaded the package has in memory.
size_t memory_of_context(const Sandbox& sandbox) {
    const auto in_use = [] {
        const struct mallinfo2 info = mallinfo2();
        return info.uordblks + info.hblkhd;
    };
    uci_ptr ptr{};
    std::string package = "p";
    const size_t before = in_use();
    const ContextPtr ctx = sandbox.open();
    EXPECT_EQ(uci_lookup_ptr(ctx.get(), &ptr, package.data(), true), UCI_OK);
    const size_t after = in_use();
    if (after == before) {
        return 0; // a checking allocator, which counts nothing
    }
    return after - before;
}

std::string repeated(const std::string& text, size_t times) {
    std::string all;
    for (size_t i = 0; i < times; i++) {
        all += text;
    }
    return all;
}

TEST_F(Robustness, a_context_of_1300_options_and_600_changes_takes_less_than_200_kB) {
    std::ostringstream config;
    std::ostringstream records;
    for (int i = 0; i < 1300; i++) {
        const int section = i / 38;
        const int option = i % 38;
        if (option == 0) {
            config << "\nconfig wifi-iface 'section" << section << "'\n";
        }
        config << "\toption option_" << option << " 'value " << option << "'\n";
        if (i < 600) {
            records << "p.section" << section << ".option_" << option << "='staged " << i << "'\n";
        }
    }
    configure(config.str() + "\n");
    EXPECT_LT(memory_of_context(sandbox_), 150'000U);
    stage(records.str());
    EXPECT_LT(memory_of_context(sandbox_), 200'000U);
}

TEST_F(Robustness, memory_stays_in_proportion_to_the_size_of_the_files) {
    constexpr size_t kTimes = 50'000;
    for (const std::string line : {"c a\n", "c a b\n", "o x y\n", "l x y\n", "l x\n", "#\n"}) {
        configure("c a\n" + repeated(line, kTimes));
        EXPECT_LT(memory_of_context(sandbox_), 40 * kTimes * line.size()) << line;
    }
    configure("config a b\n");
    for (const std::string record : {"p.b.x=1\n", "-p.b\n", "|p.b.x=\n", "\n", "p.b='\n"}) {
        stage(repeated(record, kTimes));
        EXPECT_LT(memory_of_context(sandbox_), 40 * kTimes * record.size()) << record;
    }
}

TEST_F(Robustness, a_file_beyond_all_reason_is_not_read) {
    configure("config a b\n\toption x 1\n");
    stage("");
    fs::resize_file(sandbox_.staged + "/p", uintmax_t{1} << 32); // holes take no space
    EXPECT_EQ(commit(sandbox_, "p"), UCI_ERR_MEM);
    EXPECT_EQ(fs::file_size(sandbox_.staged + "/p"), uintmax_t{1} << 32);
    stage("");
    fs::resize_file(sandbox_.config + "/p", uintmax_t{1} << 32);
    EXPECT_EQ(commit(sandbox_, "p"), UCI_ERR_MEM);
    EXPECT_EQ(fs::file_size(sandbox_.config + "/p"), uintmax_t{1} << 32);
}

TEST_F(Robustness, long_words_and_references_take_no_longer_than_their_length) {
    const std::string pieces = repeated("'a'\"b\"\\c", 100'000);
    configure("config a b\n\toption x " + pieces + "\n");
    EXPECT_EQ(get(sandbox_, "p.b.x").size(), 300'000U);
    configure("config a b\n" + repeated("\\\n", 500'000));
    EXPECT_EQ(get(sandbox_, "p.b.x"), "(none)");
    configure("config a b\n" + repeated("option x '1' ; ", 100'000));
    EXPECT_EQ(get(sandbox_, "p.b.x"), "1");
    configure("config a b\n");
    stage("p.b.x=" + pieces + "\n" + repeated("'", 300'001));
    EXPECT_EQ(get(sandbox_, "p.b.x").size(), 300'000U);
    stage("");
    EXPECT_EQ(get(sandbox_, "p.@" + std::string(500'000, 'a') + "[0].x"), "(none)");
    EXPECT_EQ(change(sandbox_, uci_set, "p.b.x=" + std::string(500'000, '\'')), UCI_OK);
    EXPECT_EQ(get(sandbox_, "p.b.x").size(), 500'000U);
}

} // namespace
