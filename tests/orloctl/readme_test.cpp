// SPDX-License-Identifier: MIT
// The sessions that README.md shows are what the programs print.
#include "on_the_access_point.h"

#include <regex>
#include <sstream>

namespace {

using Lines = std::vector<std::string>;

// Log lines without the number of their source line, which moves.
Lines lines_of(const std::string& text) {
    static const std::regex source_line("^(log +[a-z_A-Z]+):[0-9]+: ");
    Lines lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(std::regex_replace(line, source_line, "$1: "));
    }
    return lines;
}

// The fenced blocks of README.md.
std::vector<Lines> blocks() {
    std::vector<Lines> blocks;
    bool inside = false;
    for (const std::string& line : lines_of(file_text(README))) {
        if (line.rfind("```", 0) == 0) {
            inside = !inside;
            if (inside) {
                blocks.emplace_back();
            }
        } else if (inside) {
            blocks.back().push_back(line);
        }
    }
    return blocks;
}

bool begins_with(const Lines& block, const std::string& beginning) {
    return !block.empty() && block[0].rfind(beginning, 0) == 0;
}

// Each line follows the one before at once, but behind "...", which stands for any lines.
void expect_excerpt(const Lines& excerpt, const Lines& whole) {
    size_t next = 0;
    bool skips = true;
    for (const std::string& line : excerpt) {
        if (line.find_first_not_of(" .") == std::string::npos &&
            line.find("...") != std::string::npos) {
            skips = true;
            continue;
        }
        while (skips && next < whole.size() && whole[next] != line) {
            next++;
        }
        ASSERT_LT(next, whole.size()) << "not printed: " << line;
        EXPECT_EQ(whole[next], line);
        next++;
        skips = line.empty(); // sections may be left out
    }
}

class Readme : public OnTheAccessPoint {
protected:
    // Holds the blocks that begin so against what a command prints; returns how many there are.
    static int excerpts_of(const std::string& command, const std::string& beginning) {
        const Lines whole = lines_of(there(command + " 2>&1").out);
        int shown = 0;
        for (const Lines& block : blocks()) {
            if (begins_with(block, beginning)) {
                expect_excerpt(block, whole);
                shown++;
            }
        }
        return shown;
    }
};

} // namespace

TEST_F(Readme, shows_the_radio_profile_of_the_demo_as_it_is) {
    EXPECT_EQ(excerpts_of("/usr/share/demo/radio-profile", "== The access point before"), 1);
}

TEST_F(Readme, shows_the_office_of_the_demo_as_it_is) {
    EXPECT_EQ(excerpts_of("/usr/share/demo/office", "radio  VAP  state"), 1);
}

TEST_F(Readme, shows_previews_and_traces_as_they_are) {
    int shown = 0;
    for (Lines block : blocks()) {
        if (!begins_with(block, "ap# orloctl preview") &&
            !begins_with(block, "ap# orloctl trace")) {
            continue;
        }
        const std::string command = block[0].substr(std::string("ap# ").size());
        block.erase(block.begin());
        expect_excerpt(block, lines_of(there(command + " 2>&1").out));
        shown++;
    }
    EXPECT_EQ(shown, 2);
}
