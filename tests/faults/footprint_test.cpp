// SPDX-License-Identifier: MIT
// What an operation takes of the agent's memory: how deep its stack gets, and that the heap is what
// it was however often it is called.
#include "faults/cases.h"
#include "json.h"
#include "operations.h"
#include "support/access_point.h"

#include <cstring>
#include <filesystem>
#include <malloc.h>
#include <map>
#include <pthread.h>
#include <sys/mman.h>

namespace orlo::test {

namespace {

constexpr size_t stack_size = 1024UL * 1024;
constexpr size_t most_stack = 256UL * 1024;
constexpr int warm_up = 3;       // what is kept for good is there by then
constexpr long least_block = 16; // what a call that leaves anything leaves at least
constexpr long unsteady = 6000;  // bytes: a block is not always the smallest one that fits
constexpr char paint = 0x5a;

// A thread's stack, painted in order to see how much of it has been used.
class PaintedStack {
public:
    PaintedStack()
        : bytes_(static_cast<char*>(mmap(nullptr, stack_size, PROT_READ | PROT_WRITE,
                                         MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))) {}
    ~PaintedStack() { munmap(bytes_, stack_size); }
    PaintedStack(const PaintedStack&) = delete;
    PaintedStack& operator=(const PaintedStack&) = delete;

    // How many bytes a call uses, with those of the thread itself.
    size_t used_by(const std::function<void()>& call) {
        memset(bytes_, paint, stack_size);
        pthread_attr_t attributes;
        pthread_attr_init(&attributes);
        pthread_attr_setstack(&attributes, bytes_, stack_size);
        pthread_t thread = {};
        EXPECT_EQ(pthread_create(
                      &thread, &attributes,
                      [](void* function) -> void* {
                          (*static_cast<const std::function<void()>*>(function))();
                          return nullptr;
                      },
                      const_cast<std::function<void()>*>(&call)),
                  0);
        pthread_join(thread, nullptr);
        pthread_attr_destroy(&attributes);
        size_t untouched = 0;
        while (untouched < stack_size && bytes_[untouched] == paint) {
            untouched++;
        }
        return stack_size - untouched;
    }

private:
    char* const bytes_;
};

size_t heap_in_use() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

int calls_to_make() {
    const char* const calls = getenv("ORLO_CALLS");
    return calls == nullptr ? 100 : atoi(calls);
}

class Footprint : public AccessPoint, public testing::WithParamInterface<Case> {
protected:
    Footprint() : operation_(orloctl::find_operation(GetParam().operation)) {
        const std::string script = std::string("set -e\n") + GetParam().setup + "\n";
        EXPECT_EQ(system(script.c_str()), 0);
        door.on_sleep = [](int) { unlink("/tmp/orlo_network_restarting"); };
        for (const std::string& name : GetParam().before) {
            const orloctl::Operation& before = orloctl::find_operation(name);
            std::vector<orloctl::Argument> none = orloctl::read_arguments(before, {}, false);
            before.call(ops, none);
        }
    }

    // One call as an agent makes it: what it gets it releases. Commands are taken for run, and for
    // their output as it was the first time: they are not what is measured.
    void call(const std::function<void(const std::function<void()>&)>& made_by) {
        std::vector<orloctl::Argument> arguments =
            orloctl::read_arguments(operation_, GetParam().words, true);
        made_by([&] { operation_.call(ops, arguments); });
        const Trace trace = door.trace({"fork"});
        if (!trace.empty()) {
            door.child();
        }
        door.forget();
        std::filesystem::remove_all("/tmp/.uci");
        door.on_run = [](const std::string&) { return 0; };
        door.on_read = [this](const std::string& command) { return known_output(command); };
    }

    std::string known_output(const std::string& command) {
        std::string& path = outputs_[command];
        if (path.empty()) {
            path = "/output-" + std::to_string(outputs_.size());
            EXPECT_NE(system(("(" + command + ") >" + path + " 2>/dev/null").c_str()), -1);
        }
        return path;
    }

    const orloctl::Operation& operation_;
    std::map<std::string, std::string> outputs_;
};

} // namespace

TEST_P(Footprint, Of) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "a sanitizer has a heap and stacks of its own";
#endif
    PaintedStack painted;
    size_t stack = 0;
    for (int i = 0; i < warm_up; i++) {
        call([&](const auto& operation) { stack = std::max(stack, painted.used_by(operation)); });
    }
    stack -= painted.used_by([] {});
    const auto directly = [](const auto& operation) { operation(); };
    for (int i = 0; i < warm_up; i++) { // a thread has a heap of its own
        call(directly);
    }
    const size_t before = heap_in_use();
    const int calls = calls_to_make();
    for (int i = 0; i < calls; i++) {
        call(directly);
    }
    const auto grown = static_cast<long>(heap_in_use() - before);
    EXPECT_LT(stack, most_stack);
    EXPECT_LT(grown, least_block * calls + unsteady);
    printf("%-40s stack %6.1f kB, heap %+ld bytes after %d calls\n", GetParam().operation,
           static_cast<double>(stack) / 1024, grown, calls);
}

INSTANTIATE_TEST_SUITE_P(Operations, Footprint, testing::ValuesIn(all_cases()),
                         [](const auto& info) { return std::string(info.param.operation); });

} // namespace orlo::test
