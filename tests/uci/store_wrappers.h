// SPDX-License-Identifier: MIT
// The library's exported store functions, as an agent binds them.
#pragma once

#include "support/access_point.h"

namespace orlo::test {

class StoreWrappers : public AccessPoint {
protected:
    decltype(::uciSetValue)* const set = exported<decltype(::uciSetValue)>("uciSetValue");
    decltype(::uciGetValue)* const get = exported<decltype(::uciGetValue)>("uciGetValue");
    decltype(::uciAddListElement)* const add_list =
        exported<decltype(::uciAddListElement)>("uciAddListElement");
    decltype(::uciDelListElement)* const del_list =
        exported<decltype(::uciDelListElement)>("uciDelListElement");
    decltype(::uciDeleteValue)* const remove =
        exported<decltype(::uciDeleteValue)>("uciDeleteValue");
    decltype(::uciCommitValue)* const commit =
        exported<decltype(::uciCommitValue)>("uciCommitValue");
    decltype(::uciRevertValue)* const revert =
        exported<decltype(::uciRevertValue)>("uciRevertValue");
    decltype(::uciGetChanges)* const changes = exported<decltype(::uciGetChanges)>("uciGetChanges");

    // The outcome of a call that must fail: what it wrote to standard error.
    static std::string failure_of(const std::function<int()>& call) {
        int result = 0;
        std::string text = stderr_of([&] { result = call(); });
        EXPECT_EQ(result, -1) << text;
        return text;
    }
};

} // namespace orlo::test
