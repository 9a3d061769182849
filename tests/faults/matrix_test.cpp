// SPDX-License-Identifier: MIT
// Every operation, with every step that it takes outside itself failing in turn: nothing crashes,
// nothing stays open or allocated, and the answer, the log and what is staged are the operation's
// own for such a failure.
#include "faults/cases.h"
#include "faults/device_files.h"
#include "faults/expectation.h"
#include "faults/observation.h"
#include "support/access_point.h"

#include <algorithm>
#include <set>

namespace orlo::test {

namespace {

// Staged by another operation before, in a package and an option of nobody else.
constexpr const char* foreign = "openflow.config.foreign";
constexpr const char* foreign_value = "staged before";

// A sanitizer makes each run a hundred times as long, and looks for other things: then every fifth
// step of the store has to do, which is another one of the four steps of each use in turn.
#ifdef __SANITIZE_ADDRESS__
constexpr size_t stride = 5;
#else
constexpr size_t stride = 1;
#endif

std::string shown(const std::vector<Step>& steps, const Fault& fault) {
    int n = 0;
    for (const Step& step : steps) {
        n += step.call == fault.call ? 1 : 0;
        if (step.call == fault.call && n == fault.n) {
            return kind_of(step, fault.manner) + " " + std::to_string(n) + " (" + step.what + ")";
        }
    }
    return "a step that is not taken";
}

// Those lines of the log that the undisturbed call does not write.
Trace new_lines(const Trace& trace, const Trace& usual) {
    std::multiset<std::string> known(usual.begin(), usual.end());
    Trace lines;
    for (const std::string& line : trace) {
        const auto found = known.find(line);
        if (found != known.end()) {
            known.erase(found);
        } else if (line.find("log ") == 0) {
            lines.push_back(line);
        }
    }
    return lines;
}

bool is_error(const std::string& line) {
    return line.find("log 5/1 ") == 0 || line.find("log 8/1 ") == 0;
}

// The edits of the store, each as it was meant.
Trace edits(const Trace& trace) {
    Trace lines;
    for (const std::string& line : trace) {
        for (const char* verb : {"set ", "add ", "del ", "delete "}) {
            if (line.find(verb) == 0) {
                lines.push_back(line.substr(0, line.find(" (failed)")));
            }
        }
    }
    return lines;
}

} // namespace

class FaultMatrix : public AccessPoint, public testing::WithParamInterface<Case> {
protected:
    FaultMatrix()
        : wanted_(read_expectations(GetParam().failures)), invocation_{GetParam().operation,
                                                                       GetParam().words,
                                                                       GetParam().before, foreign} {
        write_file("/long-line", std::string(1000000, '7'));
        const std::string script = std::string("set -e\nuci set '") + foreign + "=" +
                                   foreign_value + "'\n" + GetParam().setup + "\n";
        EXPECT_EQ(system(script.c_str()), 0);
        files_ = std::make_unique<DeviceFiles>();
        usual_ = run({});
    }

    Observation run(const std::vector<Fault>& faults) {
        Observation seen = observe(invocation_, faults);
        added_ = files_->restore();
        return seen;
    }

    // What holds whatever fails.
    void expect_sound(const Observation& seen) const {
        EXPECT_EQ(seen.end, "") << seen.printed;
        EXPECT_EQ(seen.leftover, "") << seen.printed;
        EXPECT_LE(seen.blocks, usual_.blocks) << "blocks of memory are left";
    }

    void expect_answer(const std::string& kind, const std::string& command,
                       const Expectation& wanted, const Observation& seen) const {
        const bool goes_on = wanted.answer == "same";
        if (wanted.answer == "*") {
            EXPECT_NE(seen.answer, "null");
        } else if (wanted.answer == "command") {
            EXPECT_EQ(seen.answer, "\"" + command + "\"");
        } else {
            EXPECT_EQ(seen.answer, goes_on ? usual_.answer : wanted.answer);
        }
        if (wanted.discards) {
            EXPECT_THAT(seen.staged, IsEmpty());
        } else {
            EXPECT_EQ(seen.marker, foreign_value);
        }
        const Trace lines = new_lines(seen.trace, usual_.trace);
        EXPECT_EQ(std::any_of(lines.begin(), lines.end(), is_error), wanted.logs_error)
            << testing::PrintToString(lines);
        if (!goes_on && wanted.answer != "*" && must_be_told(kind)) {
            EXPECT_EQ(lines.empty() && seen.printed == usual_.printed, wanted.is_silent)
                << "whether anything tells so";
        }
    }

    static bool must_be_told(const std::string& kind) {
        return kind != "look" && kind != "memory" && kind != "json";
    }

    // A change that cannot be staged ends the operation, or is left out.
    void expect_edits(const Expectation& wanted, const Observation& seen) const {
        const Trace usual = edits(usual_.trace);
        const Trace now = edits(seen.trace);
        if (wanted.answer != "same" && !wanted.takes_the_rest) {
            ASSERT_LE(now.size(), usual.size());
            EXPECT_EQ(now, Trace(usual.begin(), usual.begin() + static_cast<long>(now.size())));
        } else {
            EXPECT_GE(now.size() + 1, usual.size());
        }
    }

    void try_fault(const Step& step, const Fault& fault) {
        const std::string kind = kind_of(step, fault.manner);
        SCOPED_TRACE(invocation_.operation + ", failing: " + shown(usual_.steps, fault));
        const Observation seen = run({fault});
        pairs_++;
        expect_sound(seen);
        const auto* wanted = find_expectation(wanted_, kind, step.what);
        ASSERT_NE(wanted, nullptr) << "no expectation: " << kind << ", answers " << seen.answer
                                   << (seen.staged.empty() ? "!" : "");
        taken_.insert(wanted->first);
        if (wanted->second.varies) {
            return;
        }
        expect_answer(kind, step.what, wanted->second, seen);
        if (kind == "set") {
            expect_edits(wanted->second, seen);
        }
        if (wanted->second.discards && kind == "set" && first_discarded_.empty()) {
            first_discarded_ = {fault};
            reverting_ = seen;
        }
    }

    // Discarding fails as well: the answer is the same.
    void try_reverts() {
        std::map<Call, int> counts;
        for (size_t i = 0; i < reverting_.steps.size(); i++) {
            const Step& step = reverting_.steps[i];
            const Fault second = {step.call, ++counts[step.call], Manner::fails};
            if (step.use != StoreUse::revert || i % stride != 0) {
                continue;
            }
            SCOPED_TRACE(invocation_.operation +
                         ", failing to discard: " + shown(reverting_.steps, second));
            const Observation seen = run({first_discarded_[0], second});
            pairs_++;
            expect_sound(seen);
            EXPECT_EQ(seen.answer, reverting_.answer);
            EXPECT_EQ(edits(seen.trace), edits(reverting_.trace));
        }
    }

    Expectations wanted_;
    Invocation invocation_;
    std::unique_ptr<DeviceFiles> files_;
    std::vector<std::string> added_;
    Observation usual_;
    std::set<std::string> taken_;
    std::vector<Fault> first_discarded_;
    Observation reverting_;
    int pairs_ = 0;
};

TEST_P(FaultMatrix, Of) {
    expect_sound(usual_);
    const std::string answer = GetParam().answer;
    if (answer == "*") {
        EXPECT_NE(usual_.answer, "null");
    } else {
        EXPECT_EQ(usual_.answer, answer);
    }
    std::map<Call, int> counts;
    for (size_t i = 0; i < usual_.steps.size(); i++) {
        const Step& step = usual_.steps[i];
        const int n = ++counts[step.call];
        if (step.use != StoreUse::none && i % stride != 0) {
            continue;
        }
        for (const Manner manner : manners_of(step)) {
            try_fault(step, {step.call, n, manner});
        }
    }
    try_reverts();
    for (const auto& [kind, expectation] : wanted_) {
        // Compilers and sanitizers decide which memory the door sees.
        const bool is_memory = kind == "memory";
        EXPECT_TRUE(stride > 1 || is_memory || taken_.count(kind) == 1)
            << "no such step is taken: " << kind;
    }
    printf("%s: %d faults\n", invocation_.operation.c_str(), pairs_);
}

INSTANTIATE_TEST_SUITE_P(Operations, FaultMatrix, testing::ValuesIn(all_cases()),
                         [](const auto& info) { return std::string(info.param.operation); });

TEST(FaultCases, CoverEverySlotOnce) {
    const std::vector<Case> cases = all_cases();
    ASSERT_EQ(cases.size(), 132U);
    for (size_t i = 0; i < cases.size(); i++) {
        EXPECT_EQ(cases[i].slot, static_cast<int>(i)) << cases[i].operation;
    }
}

} // namespace orlo::test
