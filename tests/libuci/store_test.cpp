// SPDX-License-Identifier: MIT
// What the vectors do not reach: arguments, several calls in one context, odd files and bytes.
#include "sandbox.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <random>
#include <sys/stat.h>
#include <vector>

namespace {

namespace fs = std::filesystem;

class Store : public testing::Test {
protected:
    void SetUp() override { write_file(sandbox_.config + "/p", kText); }

    int look_up(uci_context* ctx, const char* what, bool extended = true) {
        text_ = what;
        return uci_lookup_ptr(ctx, &ptr_, text_.data(), extended);
    }

    /// Result of loading a package with that text.
    int load(const std::string& text) {
        write_file(sandbox_.config + "/q", text);
        return look_up(sandbox_.open().get(), "q");
    }

    static constexpr const char* kText = "config a b\n\toption x 1\n\tlist l 1\nconfig a\n";
    Sandbox sandbox_;
    uci_ptr ptr_{};
    std::string text_;
};

TEST_F(Store, refuses_missing_arguments) {
    const ContextPtr ctx = sandbox_.open();
    uci_package* none = nullptr;
    char** names = nullptr;
    EXPECT_EQ(uci_lookup_ptr(nullptr, &ptr_, nullptr, true), UCI_ERR_INVAL);
    EXPECT_EQ(uci_lookup_ptr(ctx.get(), nullptr, nullptr, true), UCI_ERR_INVAL);
    EXPECT_EQ(ctx->err, UCI_ERR_INVAL);
    EXPECT_EQ(uci_set(nullptr, &ptr_), UCI_ERR_INVAL);
    EXPECT_EQ(uci_set(ctx.get(), nullptr), UCI_ERR_INVAL);
    EXPECT_EQ(uci_add_list(nullptr, &ptr_), UCI_ERR_INVAL);
    EXPECT_EQ(uci_del_list(nullptr, &ptr_), UCI_ERR_INVAL);
    EXPECT_EQ(uci_delete(nullptr, &ptr_), UCI_ERR_INVAL);
    EXPECT_EQ(uci_revert(nullptr, &ptr_), UCI_ERR_INVAL);
    EXPECT_EQ(uci_revert(ctx.get(), nullptr), UCI_ERR_INVAL);
    EXPECT_EQ(uci_save(nullptr, nullptr), UCI_ERR_INVAL);
    EXPECT_EQ(uci_save(ctx.get(), nullptr), UCI_ERR_INVAL);
    EXPECT_EQ(uci_commit(nullptr, &none, false), UCI_ERR_INVAL);
    EXPECT_EQ(uci_commit(ctx.get(), nullptr, false), UCI_ERR_INVAL);
    EXPECT_EQ(uci_commit(ctx.get(), &none, false), UCI_ERR_INVAL);
    EXPECT_EQ(uci_unload(nullptr, nullptr), UCI_ERR_INVAL);
    EXPECT_EQ(uci_unload(ctx.get(), nullptr), UCI_ERR_INVAL);
    EXPECT_EQ(uci_list_configs(nullptr, &names), UCI_ERR_INVAL);
    EXPECT_EQ(uci_list_configs(ctx.get(), nullptr), UCI_ERR_INVAL);
    EXPECT_EQ(uci_set_confdir(ctx.get(), nullptr), UCI_ERR_INVAL);
    EXPECT_EQ(uci_set_savedir(nullptr, "x"), UCI_ERR_INVAL);
    uci_free_context(nullptr);
}

TEST_F(Store, looks_up_texts_that_the_caller_filled_in) {
    const ContextPtr ctx = sandbox_.open();
    ptr_.package = "p";
    ptr_.section = "@a[0]";
    ptr_.option = "x";
    ptr_.value = "7";
    ASSERT_EQ(uci_set(ctx.get(), &ptr_), UCI_OK);
    EXPECT_STREQ(ptr_.o->v.string, "7");
    EXPECT_STREQ(ptr_.section, "b");
}

TEST_F(Store, leaves_the_texts_of_an_unresolved_reference_in_place_without_extended_syntax) {
    const ContextPtr ctx = sandbox_.open();
    EXPECT_EQ(look_up(ctx.get(), "p.@a[0].x", false), UCI_ERR_INVAL);
    EXPECT_STREQ(ptr_.section, "@a[0]");
    EXPECT_NE(ptr_.p, nullptr);
    EXPECT_EQ(ptr_.flags, 5);
}

TEST_F(Store, keeps_one_package_per_context_until_it_is_unloaded) {
    const ContextPtr ctx = sandbox_.open();
    ASSERT_EQ(look_up(ctx.get(), "p.b.x"), UCI_OK);
    uci_package* const first = ptr_.p;
    write_file(sandbox_.config + "/p", "config a b\n\toption x 2\n");
    ASSERT_EQ(look_up(ctx.get(), "p.b.x"), UCI_OK);
    EXPECT_EQ(ptr_.p, first);
    EXPECT_STREQ(ptr_.o->v.string, "1");
    EXPECT_EQ(uci_unload(ctx.get(), first), UCI_OK);
    ASSERT_EQ(look_up(ctx.get(), "p.b.x"), UCI_OK);
    EXPECT_STREQ(ptr_.o->v.string, "2");
}

TEST_F(Store, edits_a_thousand_times_in_one_context_as_in_many) {
    const ContextPtr ctx = sandbox_.open();
    for (int i = 0; i < 1000; i++) {
        const std::string name = "p.b.o" + std::to_string(i % 100);
        ASSERT_EQ(change(ctx.get(), uci_set, name + "=" + std::to_string(i)), UCI_OK);
        if (i % 7 == 0) {
            ASSERT_EQ(change(ctx.get(), uci_delete, name), UCI_OK);
        }
    }
    ASSERT_EQ(look_up(ctx.get(), "p"), UCI_OK);
    ASSERT_EQ(uci_commit(ctx.get(), &ptr_.p, false), UCI_OK);
    for (int i = 900; i < 1000; i++) {
        const std::string wanted = i % 7 == 0 ? "(none)" : std::to_string(i);
        EXPECT_EQ(get(sandbox_, "p.b.o" + std::to_string(i % 100)), wanted);
    }
    EXPECT_EQ(read_file(sandbox_.staged + "/p"), "");
}

TEST_F(Store, records_nothing_for_edits_that_change_nothing) {
    const ContextPtr ctx = sandbox_.open();
    for (const char* const same : {"p.b.x=1", "p.b=a", "p.b.none=", "p.none="}) {
        ASSERT_EQ(look_up(ctx.get(), same), UCI_OK) << same;
        EXPECT_EQ(uci_set(ctx.get(), &ptr_), UCI_OK) << same;
    }
    ASSERT_EQ(look_up(ctx.get(), "p.b.x=1"), UCI_OK);
    EXPECT_EQ(uci_del_list(ctx.get(), &ptr_), UCI_OK);
    EXPECT_TRUE(uci_list_empty(&ptr_.p->delta));
    EXPECT_EQ(uci_save(ctx.get(), ptr_.p), UCI_OK);
    EXPECT_FALSE(exists(sandbox_.staged));
}

TEST_F(Store, reads_staged_changes_of_all_directories_in_order_and_empties_its_own_only) {
    const std::string first = sandbox_.root + "/first";
    fs::create_directories(first);
    fs::create_directories(sandbox_.staged);
    write_file(first + "/p", "p.b.x='first'\np.b.y='first'\n");
    write_file(sandbox_.staged + "/p", "p.b.x='second'\n");
    const ContextPtr ctx = sandbox_.open();
    ASSERT_EQ(uci_add_delta_path(ctx.get(), first.c_str()), UCI_OK);
    EXPECT_EQ(uci_add_delta_path(ctx.get(), first.c_str()), UCI_ERR_DUPLICATE);
    ASSERT_EQ(uci_set_savedir(ctx.get(), sandbox_.staged.c_str()), UCI_OK); // last again
    ASSERT_EQ(look_up(ctx.get(), "p"), UCI_OK);
    ASSERT_EQ(uci_commit(ctx.get(), &ptr_.p, false), UCI_OK);
    EXPECT_EQ(read_file(first + "/p"), "p.b.x='first'\np.b.y='first'\n");
    EXPECT_EQ(read_file(sandbox_.staged + "/p"), "");
    EXPECT_EQ(get(sandbox_, "p.b.x"), "second");
    EXPECT_EQ(get(sandbox_, "p.b.y"), "first");
}

TEST_F(Store, overwrites_a_changed_file_only_when_told_to) {
    const ContextPtr ctx = sandbox_.open();
    ASSERT_EQ(change(ctx.get(), uci_set, "p.b.x=2"), UCI_OK);
    ASSERT_EQ(look_up(ctx.get(), "p"), UCI_OK);
    write_file(sandbox_.config + "/p", "config other o\n");
    ASSERT_EQ(uci_commit(ctx.get(), &ptr_.p, true), UCI_OK);
    EXPECT_EQ(read_file(sandbox_.config + "/p"),
              "\nconfig a 'b'\n\toption x '2'\n\tlist l '1'\n\nconfig a\n\n");
    EXPECT_EQ(read_file(sandbox_.staged + "/p"), "");
}

TEST_F(Store, writes_a_file_named_by_absolute_path_at_once) {
    const std::string path = sandbox_.root + "/plain";
    write_file(path, kText);
    const ContextPtr ctx = sandbox_.open();
    ASSERT_EQ(look_up(ctx.get(), (path + "=x").c_str()),
              path.find('.') == std::string::npos ? UCI_OK : UCI_ERR_PARSE);
    ASSERT_EQ(change(ctx.get(), uci_set, path + ".b.x=2"), UCI_OK);
    EXPECT_EQ(read_file(path), "\nconfig a 'b'\n\toption x '2'\n\tlist l '1'\n\nconfig a\n\n");
    ASSERT_EQ(look_up(ctx.get(), path.c_str()), UCI_OK);
    EXPECT_FALSE(ptr_.p->has_delta);
    EXPECT_EQ(uci_revert(ctx.get(), &ptr_), UCI_ERR_INVAL);
    EXPECT_FALSE(exists(sandbox_.staged));
}

TEST_F(Store, takes_only_regular_files_for_packages) {
    fs::create_directory(sandbox_.config + "/dir");
    ASSERT_EQ(mkfifo((sandbox_.config + "/pipe").c_str(), 0600), 0);
    fs::create_symlink("/nonexistent", sandbox_.config + "/dangling");
    for (const char* const name : {"dir", "pipe", "dangling", "missing"}) {
        EXPECT_EQ(look_up(sandbox_.open().get(), name), UCI_ERR_NOTFOUND) << name;
    }
    const std::string long_name(5000, 'n');
    EXPECT_EQ(look_up(sandbox_.open().get(), long_name.c_str()), UCI_ERR_NOTFOUND);
}

TEST_F(Store, ignores_staging_that_is_no_regular_file) {
    fs::create_directories(sandbox_.staged);
    ASSERT_EQ(mkfifo((sandbox_.staged + "/p").c_str(), 0600), 0);
    EXPECT_EQ(get(sandbox_, "p.b.x"), "1");
    EXPECT_EQ(change(sandbox_, uci_set, "p.b.x=2"), UCI_ERR_IO);
}

TEST_F(Store, refuses_files_with_errors_of_any_kind) {
    for (const char* const text : {"config\n",
                                   "config \n",
                                   "config a 'b\n",
                                   "config a b c\n",
                                   "config a b-b\n",
                                   "config a\n\toption\n",
                                   "config a\n\toption x y z\n",
                                   "option x 1\n",
                                   "list x 1\n",
                                   "config a b\nconfig c b\n",
                                   "Config a\n",
                                   "conf a\n",
                                   "'config' a\n",
                                   "config\r\n",
                                   "package\n",
                                   "package a b\n",
                                   "package a.b\n",
                                   "config a 'b';\n",
                                   "config a ; option x\n",
                                   "\357\273\277config a\n",
                                   "config a\n\toption x \"1\n",
                                   "config a\n\toption x-y 1\n",
                                   "config \xe4\n",
                                   ";\n"}) {
        EXPECT_EQ(load(text), UCI_ERR_PARSE) << text;
    }
    EXPECT_EQ(load(std::string("config a b\n\toption x 'a\0b'\n", 27)), UCI_ERR_PARSE);
}

TEST_F(Store, accepts_files_at_the_edge_of_the_grammar) {
    for (const char* const text :
         {"", "\n", "#", "# config", " \t\v\f\r\n", "config a", "config a b;", "config a 'b' ; ",
          "config a b # c", "c a\no x\nl y", "package x-y\n", "config a b;option", "config a \\\n",
          "config a 'b' ; # c\n", "config a;junk 'open\n"}) {
        EXPECT_EQ(load(text), UCI_OK) << text;
    }
}

TEST_F(Store, does_not_rename_onto_a_neighbour) {
    fs::create_directories(sandbox_.staged);
    write_file(sandbox_.config + "/p", "config a b\n\toption x 1\n\toption y 2\nconfig a c\n");
    write_file(sandbox_.staged + "/p", "@p.b='c'\n@p.b.x='y'\n@p.b.x='x'\n@p.c='d'\n");
    ASSERT_EQ(commit(sandbox_, "p"), UCI_OK);
    EXPECT_EQ(read_file(sandbox_.config + "/p"),
              "\nconfig a 'b'\n\toption x '1'\n\toption y '2'\n\nconfig a 'd'\n\n");
}

TEST_F(Store, finds_its_way_in_large_packages_quickly) {
    std::string text = "config a b\n";
    for (int i = 0; i < 50000; i++) {
        text += "\toption o" + std::to_string(i) + " '" + std::to_string(i) + "'\n";
    }
    write_file(sandbox_.config + "/p", text);
    EXPECT_EQ(get(sandbox_, "p.b.o49999"), "49999");
    fs::create_directories(sandbox_.staged);
    std::string staged;
    for (int i = 0; i < 50000; i += 2) {
        staged += "-p.b.o" + std::to_string(i) + "\n";
    }
    write_file(sandbox_.staged + "/p", staged);
    EXPECT_EQ(get(sandbox_, "p.b.o49998"), "(none)");
    EXPECT_EQ(get(sandbox_, "p.b.o49999"), "49999");
    ASSERT_EQ(commit(sandbox_, "p"), UCI_OK);
    EXPECT_EQ(get(sandbox_, "p.b.o1"), "1");
}

/// Random texts of the characters that mean something.
std::string noise(std::mt19937& random, size_t size) {
    static const std::vector<std::string> kPieces = {
        "config ", "option ", "list ", "package ", "a",  "b",  "x1", "'", "\"", "\\",  "#",
        ";",       " ",       "\t",    "\n",       "\n", "p",  ".",  "=", "-p", "|p",  "~p",
        "@",       "[0]",     "^p",    "+p",       "\r", "\v", "",   "'", "a",  "\xff"};
    std::string text;
    while (text.size() < size) {
        text += kPieces[random() % kPieces.size()];
        if (random() % 200 == 0) {
            text += '\0';
        }
    }
    return text;
}

TEST_F(Store, survives_noise_in_files_and_references_and_reads_back_what_it_wrote) {
    std::mt19937 random(1);
    fs::create_directories(sandbox_.staged);
    int loaded = 0;
    for (int i = 0; i < 400; i++) {
        write_file(sandbox_.config + "/p",
                   (i % 2 ? "config a b\n" : "") + noise(random, random() % 15));
        write_file(sandbox_.staged + "/p", noise(random, random() % 200) + "\np.n='t'\n");
        change(sandbox_, uci_set, noise(random, random() % 20));
        change(sandbox_, uci_delete, "p." + noise(random, random() % 20));
        change(sandbox_, uci_add_list, "p.b." + noise(random, random() % 20));
        revert(sandbox_, "p." + noise(random, random() % 10));
        if (commit(sandbox_, "p") == UCI_OK) {
            loaded++;
            EXPECT_EQ(look_up(sandbox_.open().get(), "p"), UCI_OK);
        }
    }
    EXPECT_GT(loaded, 20);
}

} // namespace
