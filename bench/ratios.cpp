// SPDX-License-Identifier: MIT
#include "ratios.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
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

// "push", or "push/16" when it has an argument.
std::string name_of(const benchmark::BenchmarkReporter::Run& run) {
    const std::string& arguments = run.run_name.args;
    return run.run_name.function_name + (arguments.empty() ? "" : "/" + arguments);
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
                medians_[name_of(run)] = microseconds(run);
            }
        }
    }

private:
    Medians& medians_;
};

// A time in a unit that suits it: "2.7 ns", "604.3 us", "23.6 ms".
std::string readable(double microseconds) {
    const bool is_short = microseconds < 1;
    const bool is_long = microseconds >= 10000;
    char text[32];
    snprintf(text, sizeof text, "%.1f %s",
             is_short  ? microseconds * 1000
             : is_long ? microseconds / 1000
                       : microseconds,
             is_short  ? "ns"
             : is_long ? "ms"
                       : "us");
    return text;
}

void print_heading() {
    printf("%-50s %13s %13s %7s %7s\n", "", "it takes", "the least", "ratio", "target");
}

void print(const Ratio& ratio, const Medians& medians) {
    const double measured = medians.at(ratio.measured);
    const double against = medians.at(ratio.against);
    const double times = measured / against;
    printf("%-50s %13s %13s %7.3f %7.3f%s\n", ratio.what, readable(measured).c_str(),
           readable(against).c_str(), times, ratio.at_most,
           times <= ratio.at_most ? "" : "  missed");
}

json_t* described(const Ratio& ratio, const Medians& medians) {
    const double measured = medians.at(ratio.measured);
    const double against = medians.at(ratio.against);
    return json_pack("{s:s, s:f, s:f, s:f, s:f}", "what", ratio.what, "measured_us", measured,
                     "against_us", against, "ratio", measured / against, "at_most", ratio.at_most);
}

// Prints how a cost grows and describes it; a run that was filtered has nothing to tell.
json_t* grown(const Growth& growth, const Medians& medians) {
    json_t* points = json_array();
    printf("\n%s\n%20s %13s\n", growth.what, growth.size, "it takes");
    for (const long size : growth.sizes) {
        const auto found = medians.find(growth.benchmark + ("/" + std::to_string(size)));
        if (found != medians.end()) {
            printf("%20ld %13s\n", size, readable(found->second).c_str());
            json_array_append_new(points, json_pack("[I, f]", json_int_t{size}, found->second));
        }
    }
    return json_pack("{s:s, s:s, s:o}", "what", growth.what, "size", growth.size, "points_us",
                     points);
}

// Takes "--json N" out of the arguments: a descriptor, because a program that has entered an access
// point cannot open files outside.
int take_json_descriptor(int& argc, char** argv) {
    for (int i = 1; i + 1 < argc; i++) {
        if (strcmp(argv[i], "--json") == 0) {
            const int descriptor = atoi(argv[i + 1]);
            memmove(argv + i, argv + i + 2, sizeof(char*) * static_cast<size_t>(argc - i - 1));
            argc -= 2;
            return descriptor;
        }
    }
    return -1;
}

// What a run does unless the caller's own arguments, which come later, say otherwise.
std::vector<char*> with_defaults(int argc, char** argv) {
    static char repetitions[] = "--benchmark_repetitions=25";
    static char interleaved[] = "--benchmark_enable_random_interleaving=true";
    static char time[] = "--benchmark_min_time=0.05";
    std::vector<char*> arguments = {argv[0], repetitions, interleaved, time};
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    return arguments;
}

} // namespace

int compare(int argc, char** argv, const std::vector<Ratio>& ratios,
            const std::vector<Growth>& growths) {
    const int json_descriptor = take_json_descriptor(argc, argv);
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
    print_heading();
    for (const Ratio& ratio : ratios) {
        if (medians.count(ratio.measured) != 0 && medians.count(ratio.against) != 0) {
            print(ratio, medians);
            json_array_append_new(all, described(ratio, medians));
        }
    }
    for (const Growth& growth : growths) {
        json_array_append_new(all, grown(growth, medians));
    }
    const bool written =
        json_descriptor < 0 || json_dumpfd(all, json_descriptor, JSON_INDENT(2)) == 0;
    if (!written) {
        fprintf(stderr, "cannot write to descriptor %d\n", json_descriptor);
    }
    json_decref(all);
    return written ? 0 : 1;
}

} // namespace orlo::bench
