// SPDX-License-Identifier: MIT
// The agent lives long: what a call opens it closes again, however the call ends.
#include "system/snmp_settings.h"

#include <cstdlib>
#include <fcntl.h>
#include <functional>
#include <iterator>

namespace orlo::test {

class OpenFiles : public SnmpSettings {
protected:
    // The descriptors that a call leaves behind, beside what its first run sets up for good.
    int left_by(const std::function<void()>& call) {
        call();
        const int before = count();
        call();
        return count() - before;
    }

private:
    static int count() {
        int open = 0;
        for (int fd = 0; fd < 256; fd++) {
            open += fcntl(fd, F_GETFD) != -1 ? 1 : 0;
        }
        return open;
    }
};

TEST_F(OpenFiles, AreClosed) {
    dst_rule rule = {"last", "Sunday", "March", 2, 0};
    const std::function<void()> calls[] = {
        [this] { free(ops.api_get_fw_version("version")); },
        [this] { free(ops.api_get_system_information("base-mac")); },
        [this] { ops.api_get_management_ip(nullptr); },
        [this] { ops.api_get_2ndchannel(0); },
        [this] { ops.api_get_country_configurable(); },
        [this] { ops.api_set_country_configurable(1); },
        [this] { ops.api_apply_timezone("Europe/Vienna"); },
        [this, &rule] { ops.api_apply_daylight_saving(1, &rule, &rule, 60); },
        [this] { ops.api_apply_systime_manual(0, 2031, 5, 6, 7, 8); },
        [this] { ops.api_set_ap_detection(0, "on"); },
        [this] { apply(); },
    };
    for (size_t i = 0; i < std::size(calls); i++) {
        EXPECT_EQ(left_by(calls[i]), 0) << i;
    }
    for (const char* tool :
         {"fw_printenv", "fw_setenv", "ifconfig", "iwpriv", "chtimezone.lua", "date"}) {
        replace_tool(tool, "exit 1");
    }
    write_file("/etc/version", "");
    for (size_t i = 0; i < std::size(calls); i++) {
        EXPECT_EQ(left_by(calls[i]), 0) << i << " without an answer";
    }
}

TEST_F(OpenFiles, AreClosedWhenTheLastWriteFails) {
    for (const auto& call : std::initializer_list<std::function<void()>>{
             [this] {
                 door.fail(Call::uci_set, 3); // that of the zone's text
                 EXPECT_EQ(ops.api_apply_timezone("Europe/Vienna"), -1);
             },
             [this] {
                 door.fail(Call::uci_list_configs);
                 EXPECT_EQ(ops.api_set_ap_detection(0, "on"), -1);
             },
         }) {
        EXPECT_EQ(left_by(call), 0);
    }
}

} // namespace orlo::test
