// SPDX-License-Identifier: MIT
// A session over all operations: after every save the configuration is what the calls have made it,
// and the process stays as small as it was.
#include "json.h"
#include "operations.h"
#include "soak/health.h"
#include "soak/session.h"
#include "support/access_point.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace orlo::test {

namespace {

constexpr int warming_rounds = 2; // every buffer has its size, every file is there
constexpr int short_rounds = 3;
constexpr long allowed_growth = 1L << 20;

int number_of(const char* variable, int otherwise) {
    const char* const text = getenv(variable);
    return text == nullptr ? otherwise : atoi(text);
}

// What tools and wrappers print is of no interest here. What a sanitizer prints is.
class Silence {
public:
    Silence() : out_(dup(STDOUT_FILENO)), error_(dup(STDERR_FILENO)) {
        fflush(stdout);
        const int nothing = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(nothing, STDOUT_FILENO);
#ifndef __SANITIZE_ADDRESS__
        dup2(nothing, STDERR_FILENO);
#endif
        close(nothing);
    }
    ~Silence() {
        fflush(stdout);
        dup2(out_, STDOUT_FILENO);
        dup2(error_, STDERR_FILENO);
        close(out_);
        close(error_);
    }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;

private:
    int out_;
    int error_;
};

} // namespace

class Soak : public AccessPoint {
protected:
    Soak() {
        door.on_sleep = [](int /*sleeps*/) { usleep(500); };
    }

    orloctl::Result called(const orloctl::Operation& operation,
                           std::vector<orloctl::Argument>& arguments) const {
        const Silence silence;
        return operation.call(ops, arguments);
    }

    // By the words of a call; the answer as JSON.
    std::string answer_of(const std::string& name, const std::vector<std::string>& words) {
        const orloctl::Operation& operation = orloctl::find_operation(name);
        std::vector<orloctl::Argument> arguments = orloctl::read_arguments(operation, words, true);
        const orloctl::Result result = called(operation, arguments);
        const Trace forks = door.trace({"fork"});
        if (!forks.empty()) {
            door.child(); // the agent waits for its children
        }
        door.forget();
        std::string answer = orloctl::json_line(orloctl::result_json(result));
        answer.pop_back(); // its line end
        return answer;
    }

    void run_round(Session& session) {
        for (const std::string& operation : session.round()) {
            const Session::Words words = session.call(operation);
            const std::string wanted = session.answer();
            const std::string answer = answer_of(operation, words);
            calls_++;
            if (!wanted.empty()) {
                ASSERT_EQ(answer, wanted) << operation << " " << testing::PrintToString(words);
            }
            if (operation == "api_save_config") {
                saves_++;
                ASSERT_THAT(session.expected().differences(actual_configuration()), IsEmpty());
                ASSERT_THAT(staged(), IsEmpty());
            }
        }
        write_file("/var/log/journal", ""); // the device's, not the library's
    }

    static void expect_flat(const Health& before, const Health& now) {
#ifndef __SANITIZE_ADDRESS__
        EXPECT_LE(now.resident - before.resident, allowed_growth) << "bytes of memory";
#endif
        EXPECT_EQ(now.descriptors, before.descriptors);
        EXPECT_EQ(now.ended_children, 0);
        std::vector<std::string> stray;
        std::set_difference(now.temporary_files.begin(), now.temporary_files.end(),
                            before.temporary_files.begin(), before.temporary_files.end(),
                            std::back_inserter(stray));
        EXPECT_THAT(stray, IsEmpty()) << "in /tmp";
    }

    int calls_ = 0;
    int saves_ = 0;
};

TEST_F(Soak, LeavesTheConfigurationAsExpectedAndTheProcessAsSmallAsBefore) {
    const int seconds = number_of("ORLO_SOAK_SECONDS", 0);
    const int seed = number_of("ORLO_SOAK_SEED", 1);
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    printf("seed %d\n", seed);
    Session session(static_cast<unsigned>(seed));
    Health warm;
    Health now;
    std::set<std::string> files;
    int rounds = 0;
    while (rounds < short_rounds || std::chrono::steady_clock::now() < end) {
        ASSERT_NO_FATAL_FAILURE(run_round(session))
            << "in round " << rounds + 1 << " of seed " << seed;
        rounds++;
        now = health_now();
        files.insert(now.temporary_files.begin(), now.temporary_files.end());
        if (rounds == warming_rounds) {
            warm = now;
            warm.temporary_files = files;
            warm.temporary_files.insert("radio_setting"); // while the web interface is blocked
        }
    }
    expect_flat(warm, now);
    printf("%d rounds, %d calls, %d saves, %zu options compared after each; memory %ld kB, %+ld kB "
           "since round %d; %d descriptors\n",
           rounds, calls_, saves_, session.expected().size(), now.resident / 1024,
           (now.resident - warm.resident) / 1024, warming_rounds, now.descriptors);
}

} // namespace orlo::test
