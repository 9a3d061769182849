// SPDX-License-Identifier: MIT
// The time zone, whose POSIX text the device's script makes.
#include "system/service.h"

namespace orlo::test {

class TimeZone : public SystemService {
protected:
    const std::string own_ = "log api_apply_timezone: ";

    int apply(const char* zonename) {
        door.forget();
        return ops.api_apply_timezone(zonename);
    }

    static void answer(const std::string& script) { replace_tool("chtimezone.lua", script); }

    static std::string file() { return read_file("/etc/TZ"); }
};

TEST_F(TimeZone, IsStagedAndWritten) {
    configure("system.systime.dst_enable", "1");
    EXPECT_EQ(apply("Europe/Vienna"), 0);
    const std::string command = "/usr/bin/lua /usr/lib/lua/luci/chtimezone.lua "
                                "\"Europe/Vienna\" 0 60 \"3,2,0,2,0\" \"11,1,0,2,0\"";
    EXPECT_THAT(door.trace(),
                ElementsAre(own_ + "Entering...", own_ + "zonename: Europe/Vienna",
                            "set system.systime.zonename=Europe/Vienna",
                            "set system.systime.dst_enable=0",
                            "log generate_timezone: cmd: " + command, "read " + command,
                            "set system.systime.timezone=CET-1", own_ + "End... return: Success"));
    EXPECT_EQ(file(), "CET-1");
    EXPECT_EQ(committed_value("system.systime.timezone"), "UTC0");
    EXPECT_EQ(restarted(), "") << "no service";
}

TEST_F(TimeZone, IsMadeFromTheStoredRule) {
    configure("system.systime.dst_offset", "30");
    configure("system.systime.dst_start", "1,2,3,4,5");
    configure("system.systime.dst_end", "6,5,4,3,2");
    answer("printf '%s|' \"$@\"");
    EXPECT_EQ(apply("Zone"), 0);
    EXPECT_EQ(file(), "Zone|0|30|1,2,3,4,5|6,5,4,3,2|");
}

TEST_F(TimeZone, IsMadeFromUsualValuesWhereNoneAreStored) {
    for (const char* option : {"dst_offset", "dst_start", "dst_end"}) {
        configure(std::string("system.systime.") + option, "");
    }
    answer("printf '%s|' \"$@\"");
    EXPECT_EQ(apply("Zone"), 0);
    EXPECT_EQ(file(), "Zone|0|60|3,2,0,2,0|11,1,0,2,0|");
}

TEST_F(TimeZone, IsMadeFromAUsualValueInPlaceOfEachThatCannotBeRead) {
    configure("system.systime.dst_offset", "30");
    configure("system.systime.dst_start", "1,2,3,4,5");
    configure("system.systime.dst_end", "6,5,4,3,2");
    answer("printf '%s|' \"$@\"");
    const char* const texts[] = {
        "UTC|0|30|1,2,3,4,5|6,5,4,3,2|",   "Zone|0|30|1,2,3,4,5|6,5,4,3,2|",
        "Zone|0|60|1,2,3,4,5|6,5,4,3,2|",  "Zone|0|30|3,2,0,2,0|6,5,4,3,2|",
        "Zone|0|30|1,2,3,4,5|11,1,0,2,0|",
    };
    for (int i = 0; i < 5; i++) {
        door.fail(Call::uci_lookup_ptr, 3 + i); // after those of the two writes
        EXPECT_EQ(apply("Zone"), 0);
        EXPECT_EQ(file(), texts[i]);
    }
}

TEST_F(TimeZone, WithoutAnAnswerIsNone) {
    for (const char* script : {"exit 0", "exit 1", "kill -9 $PPID", "echo"}) {
        configure("system.systime.timezone", "UTC0");
        write_file("/etc/TZ", "UTC0\n");
        answer(script);
        EXPECT_EQ(apply("Europe/Vienna"), 0) << script;
        EXPECT_EQ(staged_value("system.systime.timezone"), "(none)");
        EXPECT_TRUE(exists("/etc/TZ"));
        EXPECT_EQ(file(), "");
    }
}

TEST_F(TimeZone, IsTheFirstLineOfTheAnswerWhateverTheScriptEndsWith) {
    for (const char* script :
         {"echo ABC1; echo DEF2", "printf ABC1", "echo ABC1; exit 3", "echo ABC1; kill -9 $PPID"}) {
        answer(script);
        write_file("/etc/TZ", "a longer text than the new one\n");
        EXPECT_EQ(apply("Europe/Vienna"), 0) << script;
        EXPECT_EQ(file(), "ABC1") << script;
        EXPECT_EQ(staged_value("system.systime.timezone"), "ABC1");
    }
}

TEST_F(TimeZone, IsCutAt127Characters) {
    answer("printf '%0127d\\n' 0");
    EXPECT_EQ(apply("Europe/Vienna"), 0);
    EXPECT_EQ(file(), std::string(127, '0'));
    answer("printf '%0300d\\n' 0");
    EXPECT_EQ(apply("Europe/Vienna"), 0);
    EXPECT_EQ(file(), std::string(127, '0'));
    EXPECT_EQ(staged_value("system.systime.timezone"), std::string(127, '0'));
}

TEST_F(TimeZone, OfSixtyFourCharactersReachesTheScript) {
    answer("printf %s \"$1\"");
    const std::string name = std::string(63, 'a') + "bc";
    EXPECT_EQ(apply(name.c_str()), 0);
    EXPECT_EQ(file(), std::string(63, 'a') + "b");
    EXPECT_EQ(staged_value("system.systime.zonename"), name);
}

TEST_F(TimeZone, OptionsThatFillTheirBuffersReachTheScriptCut) {
    configure("system.systime.dst_offset", "1234567890");
    configure("system.systime.dst_start", std::string(32, 's') + "cut");
    configure("system.systime.dst_end", std::string(32, 'e') + "cut");
    answer("printf '%s|' \"$@\"");
    EXPECT_EQ(apply(std::string(64, 'z').c_str()), 0);
    EXPECT_EQ(door.trace({"read"}),
              Trace{"read /usr/bin/lua /usr/lib/lua/luci/chtimezone.lua \"" + std::string(64, 'z') +
                    "\" 0 12345678 \"" + std::string(32, 's') + "\" \"" + std::string(32, 'e') +
                    "\""});
    EXPECT_EQ(file().size(), 127U);
}

TEST_F(TimeZone, NeedsAName) {
    stage_another_change();
    EXPECT_EQ(apply(nullptr), -1);
    EXPECT_THAT(door.trace(),
                ElementsAre(own_ + "Entering...", own_ + "Error: zonename is NULL", "revert all"));
    EXPECT_THAT(staged(), IsEmpty());
    EXPECT_EQ(file(), "UTC0\n");
}

TEST_F(TimeZone, ThatCannotBeStagedIsDiscarded) {
    const struct {
        int nth;
        const char* write;
        const char* message;
    } rows[] = {
        {1, "zonename=Europe/Vienna", "Set Value Failed"},
        {2, "dst_enable=0", "Set Value Failed"},
        {3, "timezone=CET-1", "Error: failed to generate timezone"},
    };
    for (const auto& row : rows) {
        stage_another_change();
        door.fail(Call::uci_set, row.nth);
        EXPECT_EQ(apply("Europe/Vienna"), -1);
        const Trace lines = door.trace();
        EXPECT_THAT(Trace(lines.end() - 4, lines.end()),
                    ElementsAre(std::string("set system.systime.") + row.write + " (failed)",
                                own_ + row.message, "revert all", own_ + "End... return: Fail"));
        EXPECT_THAT(door.trace({"read"}), testing::SizeIs(row.nth == 3 ? 1 : 0));
        EXPECT_THAT(staged(), IsEmpty());
        EXPECT_EQ(file(), "UTC0\n");
    }
}

TEST_F(TimeZone, WithoutARunningScriptIsDiscarded) {
    stage_another_change();
    door.fail(Call::popen);
    EXPECT_EQ(apply("Europe/Vienna"), -1);
    const Trace lines = door.trace();
    EXPECT_THAT(Trace(lines.end() - 4, lines.end()),
                ElementsAre("log generate_timezone: Error: timezone generate process can't run.",
                            own_ + "Set Value Failed", "revert all", own_ + "End... return: Fail"));
    EXPECT_THAT(staged(), IsEmpty());
    EXPECT_EQ(file(), "UTC0\n");
}

TEST_F(TimeZone, IsStagedEvenWhenItsFileCannotBeWritten) {
    door.fail(Call::fopen);
    EXPECT_EQ(apply("Europe/Vienna"), 0);
    EXPECT_EQ(staged_value("system.systime.timezone"), "CET-1");
    EXPECT_EQ(file(), "UTC0\n");
}

TEST_F(TimeZone, ThatTheDeviceDoesNotKnowIsNone) {
    EXPECT_EQ(apply("Europe/Atlantis"), 0);
    EXPECT_EQ(file(), "");
    EXPECT_EQ(staged_value("system.systime.timezone"), "(none)");
}

} // namespace orlo::test
