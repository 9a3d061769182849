// SPDX-License-Identifier: MIT
// The public header: sizes and names that programs rely on, in C and in C++.
#include "header_c.h"
#include "sandbox.h"

#include <gtest/gtest.h>

namespace {

static_assert(uci_ptr::UCI_LOOKUP_DONE == 1 && uci_ptr::UCI_LOOKUP_COMPLETE == 2 &&
              uci_ptr::UCI_LOOKUP_EXTENDED == 4);
static_assert(UCI_OK == 0 && UCI_ERR_MEM == 1 && UCI_ERR_INVAL == 2 && UCI_ERR_NOTFOUND == 3 &&
              UCI_ERR_IO == 4 && UCI_ERR_PARSE == 5 && UCI_ERR_DUPLICATE == 6 &&
              UCI_ERR_UNKNOWN == 7 && UCI_ERR_LAST == 8);
static_assert(UCI_TYPE_STRING == 0 && UCI_TYPE_LIST == 1);
static_assert(sizeof(void*) != 8 || (sizeof(uci_element) == 32 && sizeof(uci_package) == 128 &&
                                     sizeof(uci_section) == 72 && sizeof(uci_option) == 64 &&
                                     sizeof(uci_delta) == 56 && sizeof(uci_ptr) == 72));

TEST(Header, serves_c_programs) {
    const Sandbox sandbox;
    write_file(sandbox.config + "/p", "config a b\n\toption x 1\n\tlist l 2\nconfig a\n");
    EXPECT_EQ(count_everything(sandbox.config.c_str(), "p"), 1 + 2 + 2 + 100 + 1000);
    EXPECT_EQ(count_everything(sandbox.config.c_str(), "missing"), -1);
}

TEST(Header, offers_shortcuts_to_loaded_elements) {
    const Sandbox sandbox;
    write_file(sandbox.config + "/p", "config a b\n\toption x 1\n\tlist l 2\n");
    const ContextPtr ctx = sandbox.open();
    EXPECT_EQ(uci_lookup_package(ctx.get(), "p"), nullptr);
    uci_ptr ptr{};
    char text[] = "p";
    ASSERT_EQ(uci_lookup_ptr(ctx.get(), &ptr, text, false), UCI_OK);
    EXPECT_EQ(uci_lookup_package(ctx.get(), "p"), ptr.p);
    EXPECT_STREQ(text_of(ctx.get(), ptr.p, "b", "x"), "1");
    EXPECT_EQ(text_of(ctx.get(), ptr.p, "b", "l"), nullptr);
    EXPECT_EQ(text_of(ctx.get(), ptr.p, "b", "y"), nullptr);
    EXPECT_EQ(text_of(ctx.get(), ptr.p, "c", "x"), nullptr);
}

TEST(Header, gives_every_command_its_character) {
    EXPECT_EQ(std::string(uci_command_char, __UCI_CMD_MAX), std::string("+-\0@^|~", 7));
}

TEST(Header, describes_a_fresh_context) {
    const ContextPtr ctx(uci_alloc_context());
    ASSERT_TRUE(ctx);
    EXPECT_EQ(ctx->flags, 9);
    EXPECT_STREQ(ctx->confdir, "/etc/config");
    EXPECT_STREQ(ctx->savedir, "/tmp/.uci");
    EXPECT_STREQ(ctx->conf2dir, "/var/run/uci");
    EXPECT_TRUE(uci_list_empty(&ctx->root));
    const uci_element* const path = list_to_element(ctx->delta_path.next);
    EXPECT_EQ(path->type, UCI_TYPE_PATH);
    EXPECT_STREQ(path->name, "/tmp/.uci");
    EXPECT_EQ(path->list.next, &ctx->delta_path);
}

} // namespace
