// SPDX-License-Identifier: MIT
#include "ratios.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstring>
#include <jansson.h>
#include <map>
#include <string>

namespace orlo::bench {

namespace {

using Medians = std::map<std::string, double>; // by benchmark, in microseconds

double microseconds(const benchmark::BenchmarkReporter::Run& run) {
    return run.GetAdjustedRealTime() / benchmark::GetTimeUnitMultiplier(run.time_unit) * 1e6;
}

class MedianReporter : public benchmark::BenchmarkReporter {
public:
    explicit MedianReporter(Medians& medians) : medians_(medians) {}

    bool ReportContext(const Context& /*context*/) override { return true; }

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.error_occurred) {
                fprintf(stderr, "%s: %s\n", run.benchmark_name().c_str(),
                        run.error_message.c_str());
            } else if (run.aggregate_name == "median") {
                medians_[run.run_name.function_name] = microseconds(run);
            }
        }
    }

private:
    Medians& medians_;
};

void print(const Ratio& ratio, const Medians& medians) {
    const double measured = medians.at(ratio.measured);
    const double against = medians.at(ratio.against);
    const double times = measured / against;
    printf("%-58s %10.1f us %10.1f us %7.2f  %s %.2f\n", ratio.what, measured, against, times,
           times <= ratio.at_most ? "within" : "MISSES", ratio.at_most);
}

json_t* described(const Ratio& ratio, const Medians& medians) {
    const double measured = medians.at(ratio.measured);
    const double against = medians.at(ratio.against);
    return json_pack("{s:s, s:f, s:f, s:f, s:f}", "what", ratio.what, "measured_us", measured,
                     "against_us", against, "ratio", measured / against, "at_most", ratio.at_most);
}

// Takes "--json FILE" out of the arguments.
const char* take_json_path(int& argc, char** argv) {
    for (int i = 1; i + 1 < argc; i++) {
        if (strcmp(argv[i], "--json") == 0) {
            const char* path = argv[i + 1];
            memmove(argv + i, argv + i + 2, sizeof(char*) * static_cast<size_t>(argc - i - 1));
            argc -= 2;
            return path;
        }
    }
    return nullptr;
}

// What a run does unless the caller's own arguments, which come later, say otherwise.
std::vector<char*> with_defaults(int argc, char** argv) {
    static char repetitions[] = "--benchmark_repetitions=9";
    static char interleaved[] = "--benchmark_enable_random_interleaving=true";
    static char time[] = "--benchmark_min_time=0.05";
    std::vector<char*> arguments = {argv[0], repetitions, interleaved, time};
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    return arguments;
}

} // namespace

int compare(int argc, char** argv, const std::vector<Ratio>& ratios) {
    const char* json_path = take_json_path(argc, argv);
    std::vector<char*> arguments = with_defaults(argc, argv);
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) {
        return 2;
    }
    Medians medians;
    MedianReporter reporter(medians);
    benchmark::RunSpecifiedBenchmarks(&reporter);

    json_t* all = json_array();
    for (const Ratio& ratio : ratios) {
        if (medians.count(ratio.measured) != 0 && medians.count(ratio.against) != 0) {
            print(ratio, medians);
            json_array_append_new(all, described(ratio, medians));
        }
    }
    const bool written =
        json_path == nullptr || json_dump_file(all, json_path, JSON_INDENT(2)) == 0;
    if (!written) {
        fprintf(stderr, "cannot write %s\n", json_path);
    }
    const bool complete = json_array_size(all) > 0;
    json_decref(all);
    return written && complete ? 0 : 1;
}

} // namespace orlo::bench
