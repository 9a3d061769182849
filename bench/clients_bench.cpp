// The reports of associated clients, on an access point that is as full as it can be: 32 VAPs with
// 341 stations each. The least that could do is ask the driver and write or copy the result; what
// the agent is promised on top is measured apart: each record flushed as it is written, and every
// setting read anew.
#include "access_point.h"
#include "orlo/exports.h"
#include "ratios.h"
#include "store_calls.h"

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
constexpr int most_stations = 341;
constexpr size_t record_size = sizeof(assoc_client_record);

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

void fill_access_point(int stations) {
    for_each_interface([stations](const std::string& interface) {
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

int generate_files() {
    return orlo::bench::operations().api_generate_assoc_client_file();
}

void ask_for_all() {
    for_each_interface([](const std::string& interface) {
        if (ask_driver(interface) != most_stations * 88) {
            abort();
        }
    });
}

int create(const char* path) {
    return open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
}

void rebuild(benchmark::State& state) {
    fill_access_point(static_cast<int>(state.range(0)));
    for (auto step : state) {
        generate_files();
    }
}

// One write for both files: as many bytes as they have.
void replies_and_write(benchmark::State& state) {
    fill_access_point(most_stations);
    const std::vector<char> bytes(std::size_t{radios} * vaps * most_stations * (record_size + 18));
    for (auto step : state) {
        ask_for_all();
        const int file = create("/tmp/plain");
        static_cast<void>(!write(file, bytes.data(), bytes.size()));
        close(file);
    }
}

void replies_reads_and_flushes(benchmark::State& state) {
    fill_access_point(most_stations);
    const auto store_calls = orlo::bench::store_calls_of(generate_files);
    const std::vector<char> addresses(std::size_t{radios} * vaps * most_stations * 18);
    const char record[record_size] = {};
    for (auto step : state) {
        ask_for_all();
        orlo::bench::repeat(store_calls);
        int file = create("/tmp/plain");
        static_cast<void>(!write(file, addresses.data(), addresses.size()));
        close(file);
        file = create("/tmp/plain");
        for (int i = 0; i < radios * vaps * most_stations; i++) {
            static_cast<void>(!write(file, record, record_size));
        }
        close(file);
    }
}

void counters(benchmark::State& state) {
    static auto* const get = orlo::bench::exported<decltype(::get_all_associated_clients_info)>(
        "get_all_associated_clients_info");
    fill_access_point(most_stations);
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
    fill_access_point(most_stations);
    for (auto step : state) {
        for_each_interface([](const std::string& interface) {
            ask_driver(interface);
            std::vector<char> copy(table, table + most_stations * sizeof(ORLOClientInfoList));
            benchmark::DoNotOptimize(copy.data());
        });
    }
}

BENCHMARK(rebuild)->Arg(1)->Arg(16)->Arg(64)->Arg(128)->Arg(256)->Arg(most_stations);
BENCHMARK(replies_and_write);
BENCHMARK(replies_reads_and_flushes);
BENCHMARK(counters);
BENCHMARK(replies_and_copy);

} // namespace

int main(int argc, char** argv) {
    orlo::bench::enter_access_point();
    return orlo::bench::compare(
        argc, argv,
        {{"rebuild of the client list / driver, one write", "rebuild/341", "replies_and_write",
          1.3},
         {"the same / what the agent is promised", "rebuild/341", "replies_reads_and_flushes", 1.3},
         {"counters of all clients / driver, copy", "counters", "replies_and_copy", 1.2}},
        {{"rebuild of the client list and both files",
          "rebuild",
          "stations a VAP",
          {1, 16, 64, 128, 256, most_stations}}});
}
