// SPDX-License-Identifier: MIT
// The program with the real library, in a virtual access point of the test's own.
#pragma once

#include <gmock/gmock.h>

#include "run_program.h"

// Behind orloctl: its exit status and the staged changes as they lie there.
inline const std::string show_staged = "; echo \"status $?\"; cat /tmp/.uci/* 2>/dev/null";

class OnTheAccessPoint : public testing::Test {
protected:
    // Runs a shell script there, in an access point of its own.
    static Ended there(const std::string& script, const std::string& input = "") {
        return run_program({{VIRTUAL_AP, "--", "/bin/sh", "-c", script}, input, {}});
    }

    void SetUp() override {
        const Ended ended = there("true");
        if (ended.status == 77) {
            GTEST_SKIP() << ended.err;
        }
        ASSERT_EQ(ended.status, 0) << ended.err;
    }
};
