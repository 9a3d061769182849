// What it costs to begin: loading the library, and entering a virtual access point.
#include "ratios.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

// What load-probe tells of a library, in seconds.
double seconds_to_load(const char* library_and_symbol) {
    const std::string command = std::string(ORLO_LOAD_PROBE " ") + library_and_symbol;
    FILE* const output = popen(command.c_str(), "r");
    long long nanoseconds = 0;
    if (output == nullptr || fscanf(output, "%lld", &nanoseconds) != 1 || pclose(output) != 0) {
        abort();
    }
    return static_cast<double>(nanoseconds) * 1e-9;
}

void measure_loading(benchmark::State& state, const char* library_and_symbol) {
    for (auto step : state) {
        state.SetIterationTime(seconds_to_load(library_and_symbol));
    }
}

void load_library(benchmark::State& state) {
    measure_loading(state, ORLO_LIBRARY " Vendor_Ops");
}

void load_empty_library(benchmark::State& state) {
    measure_loading(state, ORLO_EMPTY_LIBRARY);
}

void measure_command(benchmark::State& state, const char* command) {
    for (auto step : state) {
        if (system(command) != 0) {
            abort();
        }
    }
}

void enter(benchmark::State& state) {
    measure_command(state, ORLO_VIRTUAL_AP " -- true");
}

void wait_150_ms(benchmark::State& state) {
    measure_command(state, "sleep 0.15");
}

BENCHMARK(load_library)->UseManualTime()->Iterations(20);
BENCHMARK(load_empty_library)->UseManualTime()->Iterations(20);
BENCHMARK(enter)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(wait_150_ms)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    return orlo::bench::compare(
        argc, argv,
        {{"load and find Vendor_Ops / empty library", "load_library", "load_empty_library", 1.1},
         {"enter a virtual access point / 150 ms", "enter", "wait_150_ms", 1}});
}
