// SPDX-License-Identifier: MIT
// orloctl system, block, release and wait-vaps, with a double of the vendor library.
#include "program.h"

using testing::EndsWith;
using testing::HasSubstr;

TEST_F(Orloctl, system_shows_what_the_device_is) {
    const Ended ended = orloctl({"system"});
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.out, "model             a text\n"
                         "platform          a text\n"
                         "country           a text\n"
                         "MAC address       a text\n"
                         "firmware version  a text\n"
                         "agent state       0\n"
                         "crash log         no\n"
                         "upgrade flagged   no\n");
    EXPECT_EQ(journal(), "api_get_system_information 'model'\n"
                         "api_get_system_information 'platform'\n"
                         "api_get_system_information 'country'\n"
                         "api_get_system_information 'base-mac'\n"
                         "api_get_fw_version 'version'\n"
                         "api_get_orloagent_state\n"
                         "api_check_crashlog\n"
                         "api_get_fwupgrade_status\n");
}

TEST_F(Orloctl, system_calls_what_cannot_be_read_not_available) {
    let_fail("api_get_fw_version");
    EXPECT_THAT(orloctl({"system"}).out, HasSubstr("firmware version  not available\n"));
    EXPECT_EQ(orloctl({"system"}).status, 0);
    const Json object = parsed(orloctl({"system", "--json"}).out);
    EXPECT_TRUE(json_is_null(json_object_get(object.get(), "firmware_version")));
    EXPECT_EQ(text_member(object, "model"), "a text");
}

TEST_F(Orloctl, system_as_json_holds_what_the_table_shows) {
    let_fail("api_get_fwupgrade_status");
    EXPECT_THAT(orloctl({"system"}).out, EndsWith("upgrade flagged   not available\n"));
    const Json object = parsed(orloctl({"system", "--json"}).out);
    EXPECT_EQ(json_object_size(object.get()), 8U);
    for (const char* member : {"model", "platform", "country", "mac_address", "firmware_version"}) {
        EXPECT_EQ(text_member(object, member), "a text");
    }
    const json_t* state = json_object_get(object.get(), "agent_state");
    EXPECT_TRUE(json_is_integer(state));
    EXPECT_EQ(json_integer_value(state), 0);
    EXPECT_TRUE(json_is_false(json_object_get(object.get(), "crash_log")));
    EXPECT_TRUE(json_is_null(json_object_get(object.get(), "upgrade_flagged")));
}

TEST_F(Orloctl, block_release_and_wait_vaps_say_what_came_of_them) {
    const struct {
        const char* command;
        const char* operation;
        const char* member;
        const char* yes;
        const char* no;
    } rows[] = {
        {"block", "api_is_config_applying_check", "blocked",
         "the web interface is blocked until 'orloctl release'\n",
         "not blocked: the web interface is busy, or is blocked already\n"},
        {"release", "api_release_web_ui_block", "released", "the web interface is free again\n",
         "not released: the web interface is not blocked\n"},
        {"wait-vaps", "api_is_vap_established_check", "established", "every configured VAP is up\n",
         "given up: not every configured VAP is up\n"},
    };
    for (const auto& row : rows) {
        const Ended done = orloctl({row.command});
        EXPECT_EQ(done.status, 0);
        EXPECT_EQ(done.out, row.yes);
        EXPECT_THAT(journal(), EndsWith(row.operation + std::string("\n")));
        const Json yes = parsed(orloctl({row.command, "--json"}).out);
        EXPECT_TRUE(json_is_true(json_object_get(yes.get(), row.member)));
        EXPECT_EQ(json_array_size(json_object_get(yes.get(), "log")), 0U);
    }
    for (const auto& row : rows) {
        let_fail(row.operation);
        const Ended refused = orloctl({row.command});
        EXPECT_EQ(refused.status, 1);
        EXPECT_EQ(refused.out, row.no);
        const std::string reason = std::string(row.operation) + " does not like it.";
        EXPECT_THAT(refused.err, HasSubstr(row.operation +
                                           std::string(": info: looking at it\n"
                                                       "  error: ") +
                                           reason + "\n"));
        const Ended as_json = orloctl({row.command, "--json"});
        EXPECT_EQ(as_json.status, 1);
        const Json no = parsed(as_json.out);
        EXPECT_TRUE(json_is_false(json_object_get(no.get(), row.member)));
        EXPECT_EQ(json_array_size(json_object_get(no.get(), "log")), 2U);
    }
}

TEST_F(Orloctl, system_and_the_commands_around_an_apply_take_no_words) {
    for (const char* command : {"system", "block", "release", "wait-vaps", "status"}) {
        const Ended ended = orloctl({command, "now"});
        EXPECT_EQ(ended.status, 2);
        EXPECT_EQ(ended.err, std::string("orloctl: 'orloctl ") + command +
                                 "' takes no argument, 'now' given\n");
    }
    EXPECT_EQ(journal(), "");
}

TEST_F(Orloctl, system_and_the_commands_around_an_apply_have_help) {
    for (const char* command : {"system", "block", "release", "wait-vaps"}) {
        const Ended ended = bare({command, "--help"});
        EXPECT_EQ(ended.status, 0);
        EXPECT_THAT(ended.out, HasSubstr("Exit codes:"));
        std::istringstream lines(ended.out);
        for (std::string line; std::getline(lines, line);) {
            EXPECT_LE(line.size(), 80U) << line;
        }
        EXPECT_THAT(bare({"--help"}).out, HasSubstr(std::string("orloctl ") + command));
    }
}
