// SPDX-License-Identifier: MIT
// The settings of a channel quilt as the agent hands them over, and what applying them does.
#pragma once

#include "support/access_point.h"

#include <cstring>

namespace orlo::test {

// What forgets a VAP's servers of MAC authentication. Empty texts take the options away, as the
// store does.
extern const Trace edits_that_forget_servers;

class QuiltRecord : public AccessPoint {
protected:
    QuiltRecord();

    // Valid options of the quilt, and 32 entries that are all skipped. Of those, and of texts and
    // members that do not count, nothing may be read: they are wild.
    quilt_settings quilt_;

    // Enables an entry with valid settings and no security; returns it for more.
    quilt_vap& enable(int entry, int radio = 1, int vap = 3);

    quilt_vap& enable_personal(int entry, uint32_t wpa, uint32_t cipher_suites);
    quilt_vap& enable_enterprise(int entry, uint32_t wpa, uint32_t cipher_suites);

    // Writes a text and its end; what is behind stays wild.
    template <size_t N>
    static void put(char (&field)[N], const char* text) {
        ASSERT_LT(strlen(text), N);
        memcpy(field, text, strlen(text) + 1);
    }

    int apply();

    // The edits of a VAP's section, by option: "security=none", "-key" for a deletion.
    Trace edits_of(const std::string& section) const;

    // The operation's own last line; with a failure, why.
    std::string refusal() const;

    // Whether the operation has logged a line itself.
    testing::AssertionResult logged(const std::string& message) const;
};

} // namespace orlo::test
