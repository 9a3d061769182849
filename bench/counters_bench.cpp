// SPDX-License-Identifier: MIT
// Traffic counters of all VAPs against reading the same 192 files.
#include "access_point.h"
#include "ratios.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

const std::vector<std::string>& counter_files() {
    static const std::vector<std::string> files = [] {
        std::vector<std::string> all;
        for (int radio = 0; radio < 2; radio++) {
            for (int vap = 0; vap < 16; vap++) {
                for (const char* counter : {"tx_bytes", "rx_bytes", "tx_packets", "rx_packets",
                                            "tx_errors", "rx_errors"}) {
                    all.push_back("/sys/class/net/wdev" + std::to_string(radio) + "ap" +
                                  std::to_string(vap) + "/statistics/" + counter);
                }
            }
        }
        return all;
    }();
    return files;
}

void count_traffic() {
    for (const std::string& file : counter_files()) {
        std::filesystem::create_directories(std::filesystem::path(file).parent_path());
        orlo::bench::write_file(file, "123456789\n");
    }
}

void vap_counters(benchmark::State& state) {
    static vap_statistics all[ORLO_VAPS];
    for (auto step : state) {
        orlo::bench::operations().api_get_vap_statistics(all);
    }
}

void reading_the_files(benchmark::State& state) {
    for (auto step : state) {
        for (const std::string& path : counter_files()) {
            char text[24];
            const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
            static_cast<void>(!read(file, text, sizeof text));
            close(file);
        }
    }
}

BENCHMARK(vap_counters);
BENCHMARK(reading_the_files);

} // namespace

int main(int argc, char** argv) {
    orlo::bench::enter_access_point();
    count_traffic();
    return orlo::bench::compare(
        argc, argv, {{"counters of all VAPs", "vap_counters", "reading_the_files", 1.1}});
}
