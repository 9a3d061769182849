// SPDX-License-Identifier: MIT
// orloctl at a terminal, and where its output goes elsewhere.
#include "on_the_access_point.h"

#include <cstdlib>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

using testing::HasSubstr;
using testing::Not;

namespace {

const std::string escape = "\033[";

class AtATerminal : public OnTheAccessPoint {
protected:
    // What a person sees of a shell script there.
    static std::string seen(const std::string& script, const std::string& terminal,
                            const char* no_color = nullptr) {
        int master = -1;
        const pid_t child = forkpty(&master, nullptr, nullptr, nullptr);
        if (child == 0) {
            setenv("TERM", terminal.c_str(), 1);
            unsetenv("NO_COLOR");
            if (no_color != nullptr) {
                setenv("NO_COLOR", no_color, 1);
            }
            execl(VIRTUAL_AP, VIRTUAL_AP, "--", "/bin/sh", "-c", script.c_str(), nullptr);
            _exit(127);
        }
        std::string text;
        char part[1024];
        for (ssize_t count = 0; (count = read(master, part, sizeof part)) > 0;) {
            text.append(part, static_cast<size_t>(count));
        }
        close(master);
        waitpid(child, nullptr, 0);
        return text;
    }
};

const std::string trace = "orloctl trace api_set_Channel 1 170";

} // namespace

TEST_F(AtATerminal, colours_tell_what_went_wrong) {
    EXPECT_THAT(seen(trace, "xterm"), HasSubstr(escape + "31mresult  failed (-1)"));
    EXPECT_THAT(
        seen("orloctl preview /usr/share/examples/radio-profile.json", "xterm"),
        HasSubstr(escape + "32mwireless.wifi1.secondchannel: (none) -> '149'" + escape + "0m\r\n"));
}

TEST_F(AtATerminal, there_are_no_colours_where_they_are_not_wanted) {
    EXPECT_THAT(seen(trace, "xterm", "1"), Not(HasSubstr(escape)));
    EXPECT_THAT(seen(trace, "xterm", ""), HasSubstr(escape)) << "an empty NO_COLOR wants nothing";
    EXPECT_THAT(seen(trace, "dumb"), Not(HasSubstr(escape)));
    EXPECT_THAT(seen(trace + " | cat", "xterm"), Not(HasSubstr(escape)));
    EXPECT_THAT(seen(trace + " --json", "xterm"), Not(HasSubstr(escape)));
}

TEST_F(AtATerminal, watching_clears_the_screen_where_there_is_one) {
    const std::string watch = "timeout -s INT 0.3 orloctl clients --watch";
    EXPECT_THAT(seen(watch, "xterm"), HasSubstr(escape + "H" + escape + "2J"));
    EXPECT_THAT(seen(watch, "xterm", "1"), HasSubstr(escape + "2J"));
    EXPECT_THAT(seen(watch, "dumb"), Not(HasSubstr(escape)));
}

TEST_F(AtATerminal, every_table_fits) {
    const Ended ended = there(
        "orloctl apply --no-save /usr/share/examples/mesh-branch.json >/dev/null; uci commit; "
        "for view in status clients counters mesh 'mesh statistics' system; "
        "do orloctl $view; done");
    std::istringstream lines(ended.out);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_LE(line.size(), 80U) << line;
    }
}
