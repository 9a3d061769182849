// SPDX-License-Identifier: MIT
// A VAP's captive portal as the agent describes it, and what applying it did.
#pragma once

#include "support/access_point.h"

#include <cstring>

namespace orlo::test {

class CaptivePortal : public AccessPoint {
protected:
    // A portal of a mode that sets as little as can be. What the mode does not need is wild.
    cp_settings portal_ = make("click-through");
    const std::string own_ = "log api_apply_captive_portal_to_vap: ";

    static cp_settings make(const char* auth_mode) {
        cp_settings portal;
        memset(&portal, 0x5a, sizeof portal);
        portal.enable = 1;
        portal.auth_mode = auth_mode;
        portal.http_proxy_enable = 0;
        portal.redirect_mode = "disable";
        portal.walled_garden_enable = 0;
        portal.session_timeout = -1;
        portal.session_timeout_action = nullptr;
        if (strcmp(auth_mode, "click-through") != 0) {
            portal.auth_servers[0] = {nullptr, portal.redirect_url};
            portal.auth_servers[1] = {"", portal.redirect_url};
            portal.auth_port = 1812;
            portal.acct_enable = -1;
        }
        if (strcmp(auth_mode, "ext-page-redirect") == 0) {
            portal.ext_page_url = "http://portal.example/";
        }
        return portal;
    }

    // Everything that can be set.
    static cp_settings make_full() {
        cp_settings portal = make("ext-page-redirect");
        portal.http_proxy_enable = 1;
        portal.http_proxy_base_url = "http://proxy.example/";
        portal.redirect_mode = "fixed-url";
        portal.redirect_url = "http://welcome.example/";
        portal.auth_servers[0] = {"10.0.0.1", "first"};
        portal.auth_servers[1] = {"10.0.0.2", "second"};
        portal.acct_enable = 1;
        portal.acct_port = 1813;
        portal.walled_garden_enable = 1;
        portal.walled_garden[0] = "a.example";
        portal.walled_garden[1] = "b.example";
        portal.walled_garden[2] = nullptr;
        portal.session_timeout = 3600;
        portal.session_timeout_action = "logout";
        return portal;
    }

    int apply(int radio = 1, int vap = 3) {
        door.forget();
        return ops.api_apply_captive_portal_to_vap(radio, vap, &portal_);
    }

    // The edits of the last apply, by option: "cp_http_proxy=0", "-cp_acct_en".
    Trace edits() const {
        Trace lines;
        for (const std::string& line : door.trace({"set", "add", "delete"})) {
            const std::string section = " wireless.wifi1vap3.";
            const size_t place = line.find(section);
            EXPECT_NE(place, std::string::npos) << line;
            const std::string verb = line.substr(0, place);
            const char* mark = verb == "delete" ? "-" : verb == "add" ? "+" : "";
            lines.push_back(mark + line.substr(place + section.size()));
        }
        return lines;
    }

    // The last apply has refused, with this line, and discarded everything.
    void expect_refused(const std::string& message) {
        const Trace lines = door.trace({"log", "revert"});
        EXPECT_THAT(lines,
                    ElementsAre(own_ + "Entering... radio:1 vap:3", own_ + message, "revert all"));
        EXPECT_THAT(staged(), IsEmpty());
    }

    static std::string option(const std::string& name) { return "wireless.wifi1vap3." + name; }

    void stage_something() { ASSERT_EQ(ops.api_config_set_hash("abc"), 0); }
};

} // namespace orlo::test
