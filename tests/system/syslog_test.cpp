// SPDX-License-Identifier: MIT
// Remote logging.
#include "system/service.h"

#include <climits>
#include <regex>

namespace orlo::test {

class Syslog : public SystemService {
protected:
    const std::string own_ = "log api_apply_syslog: ";
    const std::string section_ = "set system.@system[0].";

    int apply(int status, const char* host, int port, int severity,
              const char* facility = "local0") {
        door.forget();
        return ops.api_apply_syslog(status, host, port, severity, facility);
    }

    // What happened, without the name that the store gives to the section.
    Trace lines() const {
        const std::regex name("set system[.]cfg[0-9a-f]+[.]");
        Trace lines = door.trace();
        for (std::string& line : lines) {
            line = std::regex_replace(line, name, section_);
        }
        return lines;
    }

    static std::string option(const std::string& name) {
        return staged_value("system.@system[0]." + name);
    }
};

TEST_F(Syslog, IsStaged) {
    EXPECT_EQ(apply(1, "log.example", 1514, 4), 0);
    EXPECT_THAT(lines(),
                ElementsAre(own_ + "Entering... status:1 host:log.example port:1514 severity:4 "
                                   "fixed_facility:local0",
                            section_ + "severity=4", section_ + "log_remote=1",
                            section_ + "log_ip=log.example", section_ + "log_port=1514",
                            own_ + "End... return: Success"));
    EXPECT_EQ(option("log_ip"), "log.example");
    EXPECT_EQ(committed_value("system.@system[0].log_remote"), "0");
    EXPECT_EQ(restarted(), "log_relay-0");
}

TEST_F(Syslog, TakesSeveritiesUpToSevenAndPassesOverOthers) {
    for (int severity = 0; severity <= 7; severity++) {
        EXPECT_EQ(apply(1, "host", 514, severity), 0);
        EXPECT_EQ(option("severity"), std::to_string(severity));
    }
    for (int severity : {8, -1, INT_MAX, INT_MIN}) {
        EXPECT_EQ(apply(1, "host", 514, severity), 0);
        EXPECT_THAT(lines(),
                    ElementsAre(own_ + "Entering... status:1 host:host port:514 severity:" +
                                    std::to_string(severity) + " fixed_facility:local0",
                                own_ + "info: bypass applying severity due to out of range",
                                section_ + "log_remote=1", section_ + "log_ip=host",
                                section_ + "log_port=514", own_ + "End... return: Success"));
        EXPECT_EQ(option("severity"), "7");
    }
}

TEST_F(Syslog, HasNoReceiverWithoutAHostAndAPort) {
    const struct {
        const char* host;
        int port;
    } rows[] = {{"host", 0},       {"host", 65536}, {"host", -1},   {"host", INT_MIN},
                {"host", INT_MAX}, {nullptr, 514},  {nullptr, 1514}};
    for (const auto& row : rows) {
        EXPECT_EQ(apply(1, "host", 99, 6), 0);
        EXPECT_EQ(apply(1, row.host, row.port, 6), 0);
        EXPECT_EQ(option("log_remote"), "1");
        EXPECT_EQ(option("log_ip"), "(none)") << row.port;
        EXPECT_EQ(option("log_port"), "514");
        EXPECT_THAT(lines(), testing::Contains(section_ + "log_ip="));
    }
    for (int port : {1, 65535}) {
        EXPECT_EQ(apply(1, "host", port, 6), 0);
        EXPECT_EQ(option("log_ip"), "host");
        EXPECT_EQ(option("log_port"), std::to_string(port));
    }
}

TEST_F(Syslog, AnEmptyHostIsAHost) {
    EXPECT_EQ(apply(1, "", 1514, 6), 0);
    EXPECT_EQ(option("log_ip"), "(none)");
    EXPECT_EQ(option("log_port"), "1514");
}

TEST_F(Syslog, TakesAnyStatusOfSevenCharacters) {
    for (int status : {0, 2, -1, 1234567}) {
        EXPECT_EQ(apply(status, "host", 514, 6), 0);
        EXPECT_EQ(option("log_remote"), std::to_string(status));
    }
    EXPECT_EQ(apply(-12345678, "host", 514, 6), 0);
    EXPECT_EQ(option("log_remote"), "-123456");
}

TEST_F(Syslog, NeedsNoTexts) {
    EXPECT_EQ(apply(0, nullptr, 514, 6, nullptr), 0);
    EXPECT_EQ(door.trace().front(),
              own_ + "Entering... status:0 host:NULL port:514 severity:6 fixed_facility:NULL");
}

TEST_F(Syslog, TriesEveryWriteAndDiscardsAllWhenOneFails) {
    for (int nth = 1; nth <= 4; nth++) {
        stage_another_change();
        door.fail(Call::uci_set, nth);
        EXPECT_EQ(apply(1, "host", 1514, 4), -1);
        EXPECT_THAT(door.trace({"set"}), testing::SizeIs(4)) << nth;
        const Trace all = door.trace();
        EXPECT_THAT(Trace(all.end() - 2, all.end()),
                    ElementsAre("revert all", own_ + "End... return: Fail"));
        EXPECT_THAT(staged(), IsEmpty());
    }
    EXPECT_EQ(restarted(), "");
}

} // namespace orlo::test
