// A trace line that nobody keeps: operations log several, so that it must cost next to nothing.
#include "orlo/debug.h"
#include "ratios.h"

#include <benchmark/benchmark.h>

namespace {

__attribute__((noinline)) void nothing() {
    asm volatile(""); // keeps the call
}

void dropped_line(benchmark::State& state) {
    int radio = 0;
    for (auto step : state) {
        orlo_agent_debug_log(5, 5, "api_set_Channel", 42, "Entering... radio: %d\n", radio);
        benchmark::DoNotOptimize(radio++);
    }
}

void empty_call(benchmark::State& state) {
    int radio = 0;
    for (auto step : state) {
        nothing();
        benchmark::DoNotOptimize(radio++);
    }
}

BENCHMARK(dropped_line);
BENCHMARK(empty_call);

} // namespace

int main(int argc, char** argv) {
    return orlo::bench::compare(
        argc, argv, {{"dropped trace line / empty function", "dropped_line", "empty_call", 3}});
}
