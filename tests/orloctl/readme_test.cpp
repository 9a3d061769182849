// The sessions that README.md shows are what the programs print.
#include "on_the_access_point.h"

#include <sstream>

namespace {

using Lines = std::vector<std::string>;

Lines lines_of(const std::string& text) {
    Lines lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
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

using Readme = OnTheAccessPoint;

} // namespace

TEST_F(Readme, shows_the_demo_as_it_is) {
    const Lines profile = lines_of(there("/usr/share/demo/radio-profile 2>&1").out);
    const Lines office = lines_of(there("/usr/share/demo/office 2>&1").out);
    int shown = 0;
    for (const Lines& block : blocks()) {
        if (begins_with(block, "== The access point before")) {
            expect_excerpt(block, profile);
            shown++;
        } else if (begins_with(block, "radio  VAP  state")) {
            expect_excerpt(block, office);
            shown++;
        }
    }
    EXPECT_EQ(shown, 2);
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
