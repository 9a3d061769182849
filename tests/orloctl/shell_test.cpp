// SPDX-License-Identifier: MIT
// Texts that reach a shell command.
#include "shell.h"

#include <gtest/gtest.h>

#include "exit.h"
#include "operations.h"

using namespace orloctl;

namespace {

std::string refusal(const std::string& operation, const std::vector<std::string>& words,
                    bool checked = true) {
    try {
        read_arguments(find_operation(operation), words, checked);
    } catch (const Refusal& refused) {
        return refused.what();
    }
    return "accepted";
}

} // namespace

TEST(Shell, without_quotes_it_acts_on_all_that_is_not_a_plain_word) {
    for (const char c : std::string("|&;<>()$`\\\"'*?[]#~!{}")) {
        EXPECT_EQ(acting_part(std::string("a") + c + "b", Shell::bare), std::string(1, c));
    }
    EXPECT_EQ(acting_part("a b", Shell::bare), "a blank");
    EXPECT_EQ(acting_part("a\tb", Shell::bare), "a tab");
    EXPECT_EQ(acting_part("a\nb", Shell::bare), "a line end");
    EXPECT_EQ(acting_part("/tmp/fw-1.2_3:4,5=6@7%8+9^", Shell::bare), "");
    EXPECT_EQ(acting_part("", Shell::bare), "");
}

TEST(Shell, in_quotes_it_acts_on_what_ends_or_expands_them) {
    EXPECT_EQ(acting_part("a b;c$(d)`e`\"f\"\\*", Shell::single_quotes), "");
    EXPECT_EQ(acting_part("a'b", Shell::single_quotes), "'");
    for (const char c : std::string("$`\\\"")) {
        EXPECT_EQ(acting_part(std::string("a") + c, Shell::double_quotes), std::string(1, c));
    }
    EXPECT_EQ(acting_part("a b;c'd'*", Shell::double_quotes), "");
    for (const char c : std::string("'\"\\")) {
        EXPECT_EQ(acting_part(std::string("a") + c, Shell::json), std::string(1, c));
    }
    EXPECT_EQ(acting_part("a\nb", Shell::json), "a line end");
    EXPECT_EQ(acting_part("a b;c$(d)*", Shell::json), "");
    EXPECT_EQ(acting_part("a;b'c\"$\n", Shell::never), "");
}

TEST(Shell, a_text_of_a_call_on_which_it_would_act_is_refused_by_name) {
    const struct {
        const char* operation;
        std::vector<std::string> words;
        const char* sentence;
    } cases[] = {
        {"api_fw_validate",
         {"/tmp/fw;reboot"},
         "argument 1 (path): the shell would act on ; in it"},
        {"api_fw_upgrade", {"/tmp/it's"}, "argument 1 (path): the shell would act on ' in it"},
        {"api_fw_upgrade", {"/tmp/\"x"}, "argument 1 (path): the shell would act on \" in it"},
        {"api_disassociate_client",
         {"02:00:00:00:00:01 &", "0", "1"},
         "argument 1 (sta_mac_addr): the shell would act on a blank in it"},
        {"api_apply_system_login",
         {"admin", "a'b"},
         "argument 2 (password): the shell would act on ' in it"},
        {"api_apply_system_login",
         {"a'", "b'"},
         "argument 1 (username): the shell would act on ' in it\n"
         "argument 2 (password): the shell would act on ' in it"},
        {"api_apply_timezone", {"$(id)"}, "argument 1 (zonename): the shell would act on $ in it"},
        {"api_get_CQ_status",
         {"1", "/tmp/a|b"},
         "argument 2 (path): the shell would act on | in it"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(refusal(each.operation, each.words), each.sentence);
        EXPECT_EQ(refusal(each.operation, each.words, false), "accepted");
    }
}

TEST(Shell, texts_must_fit_into_their_command) {
    const auto longest = [](size_t size) { return std::string(size, 'x'); };
    EXPECT_EQ(refusal("api_fw_validate", {longest(28)}), "accepted");
    EXPECT_EQ(refusal("api_fw_validate", {longest(29)}),
              "argument 1 (path): the command has room for 28 bytes of text, not for 29");
    EXPECT_EQ(refusal("api_fw_upgrade", {longest(190)}), "accepted");
    EXPECT_EQ(refusal("api_fw_upgrade", {longest(191)}),
              "argument 1 (path): the command has room for 190 bytes of text, not for 191");
    EXPECT_EQ(refusal("api_apply_system_login", {longest(40), longest(38)}), "accepted");
    EXPECT_EQ(refusal("api_apply_system_login", {longest(40), longest(39)}),
              "argument 2 (password): the command has room for 78 bytes of text, not for 79");
    EXPECT_EQ(refusal("api_apply_timezone", {longest(64)}), "accepted");
    EXPECT_EQ(refusal("api_apply_timezone", {longest(65)}),
              "argument 1 (zonename): the command has room for 64 bytes of text, not for 65");
    EXPECT_EQ(refusal("api_apply_timezone", {longest(65)}, false), "accepted");
}

TEST(Shell, every_text_of_such_an_operation_is_covered_and_no_other_operation_is) {
    size_t count = 0;
    for (const Operation& operation : operations()) {
        if (operation.shell == nullptr) {
            continue;
        }
        count++;
        bool has_text = false;
        for (const Parameter& parameter : operation.parameters) {
            has_text = has_text || parameter.kind == Kind::text;
        }
        EXPECT_TRUE(has_text) << operation.name;
        EXPECT_STRNE(shell_help(operation.shell->place), "") << operation.name;
    }
    EXPECT_EQ(count, 6U);
    EXPECT_EQ(shell_command("api_apply_systime_ntp"), nullptr);
    EXPECT_EQ(refusal("api_apply_systime_ntp", {"a;b$(c)", "0"}), "accepted");
    EXPECT_EQ(refusal("api_apply_timezone", {"@null"}), "accepted");
}
