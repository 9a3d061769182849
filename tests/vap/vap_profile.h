// SPDX-License-Identifier: MIT
// A VAP profile as the agent hands it over, and what applying it does.
#pragma once

#include "support/access_point.h"

namespace orlo::test {

class VapProfile : public AccessPoint {
protected:
    VapProfile();

    // 16 VAPs, all disabled. Of a disabled VAP nothing but its status may be read: the rest is
    // wild.
    vap_settings vaps_[16];

    // Enables a VAP with valid settings and no security; returns it for more.
    vap_settings& enable(int vap, const char* ssid = "Office");

    vap_settings& enable_personal(int vap, uint32_t wpa, uint32_t cipher_suites);
    vap_settings& enable_enterprise(int vap, uint32_t wpa, uint32_t cipher_suites);

    int apply(int radio = 1);

    // The same, with the i-th write of the first VAP's security failing.
    int apply_with_failed_write(size_t i);

    // What applying VAP 0 (enabled) of radio 1 stages for its security: the edits between proxy ARP
    // and fast roaming, by option. "security=none", "-key" for a deletion.
    Trace security_edits() const;

    // The log lines of the operation itself, without its name.
    Trace own_log() const;

    // The operation's own last line; with a failure, why.
    std::string refusal() const;

    // The line of a VAP's log, as in "vap_settings[0].mfp:1".
    testing::AssertionResult logged(const std::string& message) const;
};

} // namespace orlo::test
