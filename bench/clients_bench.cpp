// SPDX-License-Identifier: MIT
// The reports of associated clients, on an access point that is as full as it can be: 32 VAPs with
// 341 stations each. The least that could do is ask the driver and write or copy the result.
#include "access_point.h"
#include "orlo/exports.h"
#include "ratios.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

constexpr int radios = 2;
constexpr int vaps = 16;
constexpr int stations = 341;

std::string interface_of(int radio, int vap) {
    return "wdev" + std::to_string(radio) + "ap" + std::to_string(vap);
}

template <class Step>
void for_each_interface(Step step) {
    for (int radio = 0; radio < radios; radio++) {
        for (int vap = 0; vap < vaps; vap++) {
            step(interface_of(radio, vap));
        }
    }
}

void fill_access_point() {
    for_each_interface([](const std::string& interface) {
        std::string lines;
        for (int i = 0; i < stations; i++) {
            char line[128];
            snprintf(line, sizeof line,
                     "02:00:00:00:%02x:%02x signal=-50 rate=144 ipv4=10.0.%d.%d rx-bytes=%d\n",
                     static_cast<unsigned>(i >> 8), static_cast<unsigned>(i & 255), i >> 8, i & 255,
                     i);
            lines += line;
        }
        orlo::bench::write_file("/var/run/device/stations/" + interface, lines);
    });
}

char table[0x16000];

int ask_driver(const std::string& interface) {
    static auto* const get =
        orlo::bench::exported<decltype(::mwl_get_assoclist)>("mwl_get_assoclist");
    int length = 0;
    get(interface.c_str(), table, &length);
    return length;
}

void rebuild(benchmark::State& state) {
    for (auto step : state) {
        orlo::bench::operations().api_generate_assoc_client_file();
    }
}

// One write for both files: as many bytes as they have.
void replies_and_write(benchmark::State& state) {
    const std::vector<char> bytes(std::size_t{radios} * vaps * stations * (134 + 18));
    for (auto step : state) {
        for_each_interface([](const std::string& interface) {
            if (ask_driver(interface) != stations * 88) {
                abort();
            }
        });
        const int file = open("/tmp/plain", O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        static_cast<void>(!write(file, bytes.data(), bytes.size()));
        close(file);
    }
}

void counters(benchmark::State& state) {
    static auto* const get = orlo::bench::exported<decltype(::get_all_associated_clients_info)>(
        "get_all_associated_clients_info");
    for (auto step : state) {
        ORLOClientInfoList* block = get();
        while (block != nullptr) {
            ORLOClientInfoList* next = block->next;
            free(block);
            block = next;
        }
    }
}

void replies_and_copy(benchmark::State& state) {
    for (auto step : state) {
        for_each_interface([](const std::string& interface) {
            ask_driver(interface);
            std::vector<char> copy(table, table + stations * sizeof(ORLOClientInfoList));
            benchmark::DoNotOptimize(copy.data());
        });
    }
}

BENCHMARK(rebuild)->Unit(benchmark::kMillisecond);
BENCHMARK(replies_and_write)->Unit(benchmark::kMillisecond);
BENCHMARK(counters)->Unit(benchmark::kMillisecond);
BENCHMARK(replies_and_copy)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    orlo::bench::enter_access_point();
    fill_access_point();
    return orlo::bench::compare(
        argc, argv,
        {{"clients: rebuild and both files, 32 x 341 stations", "rebuild", "replies_and_write",
          1.3},
         {"clients: counters, 32 x 341 stations", "counters", "replies_and_copy", 1.2}});
}
