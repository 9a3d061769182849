// Benchmarks that compare: each prints how much longer a thing of ours takes than the least that
// could do the same, both measured in the same run.
#pragma once

#include <vector>

namespace orlo::bench {

// The names are those of two benchmarks of the program.
struct Ratio {
    const char* what;
    const char* measured;
    const char* against;
    double at_most;
};

// How a cost grows: the benchmark is registered with each of the sizes as its argument.
struct Growth {
    const char* what;
    const char* benchmark;
    const char* size; // what the argument counts
    std::vector<long> sizes;
};

// Runs the program's benchmarks, interleaved, and prints the ratios of their medians as a table,
// then what grows.
// "--json N" writes them to descriptor N too; other arguments are Google Benchmark's.
// Returns the exit status: 0 also when a target is missed, as another machine may be busy.
int compare(int argc, char** argv, const std::vector<Ratio>& ratios,
            const std::vector<Growth>& growths = {});

} // namespace orlo::bench
