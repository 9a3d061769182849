// SPDX-License-Identifier: MIT
// What helps a person at the prompt: what may have been meant, and completion.
#include "completion.h"
#include "nearest.h"
#include "program.h"

#include <unistd.h>

#include "operations.h"

using namespace orloctl;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;

TEST(Nearest, names_are_those_with_the_fewest_letters_wrong) {
    const std::vector<std::string> names = {"status", "system", "records", "trace"};
    EXPECT_THAT(nearest("staus", names), ElementsAre("status"));
    EXPECT_THAT(nearest("SYSTEM", names), ElementsAre("system"));
    EXPECT_THAT(nearest("frobnicate", names), IsEmpty());
    EXPECT_THAT(nearest("x", names), IsEmpty()) << "nothing is left of so short a word";
    EXPECT_THAT(nearest(std::string(1000, 'a'), names), IsEmpty());
    EXPECT_THAT(nearest("cat", {"car", "can", "cap", "cab", "dog"}),
                ElementsAre("car", "can", "cap"));
}

TEST(Nearest, advice_reads_like_a_sentence) {
    EXPECT_EQ(proposal("staus", {"status"}), "; did you mean status?");
    EXPECT_EQ(advice("staus", {"status"}, "help lists them"),
              "; did you mean status? (help lists them)");
    EXPECT_EQ(advice("zzz", {"status"}, "help lists them"), "; help lists them");
}

TEST_F(Orloctl, errors_say_what_may_have_been_meant) {
    EXPECT_EQ(bare({"aply"}).err,
              "orloctl: unknown command 'aply'; did you mean apply? ('orloctl --help' lists "
              "them)\n");
    EXPECT_EQ(bare({"apply", "--dryrun"}).err,
              "orloctl: unknown option '--dryrun'; did you mean --dry-run? ('orloctl --help' lists "
              "them)\n");
    EXPECT_EQ(bare({"records", "vap_setings"}).err,
              "orloctl: unknown record 'vap_setings'; did you mean vap_settings?\n");
    EXPECT_EQ(bare({"ops", "api_get_chanel"}).status, 2);
}

TEST(Completion, knows_the_commands_and_their_options) {
    EXPECT_THAT(completions({"st"}), ElementsAre("status"));
    EXPECT_THAT(completions({""}), IsSupersetOf({"apply", "call", "help", "preview", "trace"}));
    EXPECT_THAT(completions({"help", "pre"}), ElementsAre("preview"));
    EXPECT_THAT(completions({"preview", "--"}),
                IsSupersetOf({"--config", "--json", "--no-save", "--show-keys"}));
    EXPECT_THAT(completions({"status", "--w"}), IsEmpty());
    EXPECT_THAT(completions({"clients", "--w"}), ElementsAre("--watch"));
    EXPECT_THAT(completions({"frobnicate", ""}), IsEmpty());
    EXPECT_THAT(completions({}), Contains("ops"));
}

TEST(Completion, knows_all_operations_and_records) {
    EXPECT_EQ(completions({"call", "api_"}).size() + completions({"call", "create_"}).size() +
                  completions({"call", "is_"}).size() + completions({"call", ""}).size(),
              2 * operations().size())
        << "every name is complete by its own beginning, too";
    EXPECT_THAT(completions({"trace", "api_set_Ch"}), ElementsAre("api_set_Channel"));
    EXPECT_THAT(completions({"--json", "records", "vap_s"}), ElementsAre("vap_settings"));
    EXPECT_THAT(completions({"mesh", ""}), ElementsAre("status", "statistics"));
}

TEST(Completion, knows_radios_and_vaps) {
    EXPECT_THAT(completions({"call", "api_set_Channel", ""}), ElementsAre("0", "1"));
    EXPECT_THAT(completions({"call", "80", ""}), ElementsAre("0", "1"));
    EXPECT_THAT(completions({"call", "api_set_Channel", "1", ""}), IsEmpty());
    EXPECT_THAT(completions({"call", "no_such_operation", ""}), IsEmpty());
}

TEST(Completion, leaves_the_values_of_options_to_the_shell) {
    EXPECT_THAT(completions({"preview", "--config", ""}), IsEmpty());
    EXPECT_THAT(completions({"--library", "status", "ca"}), ElementsAre("call"));
    EXPECT_THAT(completions({"--library=x", "ca"}), ElementsAre("call"));
    EXPECT_THAT(completions({"call", "--", "--j"}), IsEmpty()) << "a word, no option";
}

TEST_F(Orloctl, completion_prints_the_candidates_one_a_line) {
    const Ended ended = bare({"completion", "--", "records", "wpa_"});
    EXPECT_EQ(ended.out, "wpa_personal\nwpa_enterprise\n");
    EXPECT_EQ(ended.status, 0);
}

TEST_F(Orloctl, bash_completes_what_is_typed) {
    if (access("/bin/bash", X_OK) != 0) {
        GTEST_SKIP() << "bash is not installed";
    }
    const std::string script = ". '" COMPLETION "/orloctl.bash'; complete -p orloctl; "
                               "COMP_WORDS=('" ORLOCTL "' call api_set_Chan); COMP_CWORD=2; "
                               "_orloctl; printf '%s\\n' \"${COMPREPLY[@]}\"; "
                               "COMP_WORDS=('" ORLOCTL "' --json ''); _orloctl; "
                               "printf '%s\\n' \"${COMPREPLY[@]}\" | grep -c .";
    const Ended ended = run_program({{"/bin/bash", "-c", script}, "", {}});
    EXPECT_THAT(ended.out, testing::StartsWith("complete -F _orloctl orloctl\napi_set_Channel\n"));
    EXPECT_THAT(ended.out, Not(testing::EndsWith("\n0\n")));
    EXPECT_EQ(ended.err, "");
}

TEST_F(Orloctl, zsh_completes_what_is_typed) {
    if (access("/bin/zsh", X_OK) != 0 && access("/usr/bin/zsh", X_OK) != 0) {
        GTEST_SKIP() << "zsh is not installed";
    }
    const std::string script = "words=('" ORLOCTL "' call api_set_Chan); CURRENT=3; "
                               "compadd() { print -l -- ${(P)@[-1]}; }; "
                               "_files() { print files; }; . '" COMPLETION "/_orloctl'; "
                               "words=('" ORLOCTL "' preview --config ''); CURRENT=4; "
                               ". '" COMPLETION "/_orloctl'";
    const Ended ended = run_program({{"/usr/bin/env", "zsh", "-fc", script}, "", {}});
    EXPECT_EQ(ended.out, "api_set_Channel\nfiles\n") << ended.err;
}

TEST_F(Orloctl, help_may_come_first) {
    EXPECT_EQ(bare({"help", "preview"}).out, bare({"preview", "--help"}).out);
    EXPECT_EQ(bare({"help"}).out, bare({"--help"}).out);
    EXPECT_EQ(bare({"help", "frobnicate"}).status, 2);
}
