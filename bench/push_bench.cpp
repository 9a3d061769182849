// Pushing a configuration. The floor is what the store must be asked for, asked without the
// operation; what people do without the library is a script of "uci" lines.
#include "access_point.h"
#include "profiles.h"
#include "ratios.h"
#include "store_calls.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <unistd.h>

namespace {

using orlo::bench::operations;
using orlo::bench::StoreCall;
using orlo::bench::vaps_of_radio;

vap_settings vaps[vaps_of_radio];
quilt_settings quilt;

void push_vaps() {
    if (operations().api_apply_vap(1, vaps) != 0) {
        abort();
    }
}

void push_quilt() {
    if (operations().api_apply_channel_quilt(&quilt) != 0) {
        abort();
    }
}

// Each push starts from what is committed.
void discard_staged() {
    unlink("/tmp/.uci/wireless");
    unlink("/tmp/.uci/quilt");
}

void measure(benchmark::State& state, void (*push)()) {
    for (auto step : state) {
        push();
        discard_staged();
    }
}

void measure_calls(benchmark::State& state, void (*push)()) {
    const std::vector<StoreCall> calls = orlo::bench::store_calls_of(push);
    discard_staged();
    for (auto step : state) {
        orlo::bench::repeat(calls);
        discard_staged();
    }
}

void vaps_pushed(benchmark::State& state) {
    orlo::bench::fill(vaps, static_cast<int>(state.range(0)));
    measure(state, push_vaps);
}

void vaps_in_bare_calls(benchmark::State& state) {
    orlo::bench::fill(vaps, vaps_of_radio);
    measure_calls(state, push_vaps);
}

void vaps_by_script(benchmark::State& state) {
    orlo::bench::fill(vaps, vaps_of_radio);
    orlo::bench::write_file("/tmp/push.sh",
                            "set -e\n" + as_script(orlo::bench::store_calls_of(push_vaps)));
    discard_staged();
    for (auto step : state) {
        if (system("sh /tmp/push.sh") != 0) {
            abort();
        }
        discard_staged();
    }
}

void quilt_pushed(benchmark::State& state) {
    measure(state, push_quilt);
}

void quilt_in_bare_calls(benchmark::State& state) {
    measure_calls(state, push_quilt);
}

BENCHMARK(vaps_pushed)->Arg(1)->Arg(2)->Arg(4)->Arg(8)->Arg(16)->UseRealTime();
BENCHMARK(vaps_in_bare_calls)->UseRealTime();
BENCHMARK(vaps_by_script)->UseRealTime();
BENCHMARK(quilt_pushed)->UseRealTime();
BENCHMARK(quilt_in_bare_calls)->UseRealTime();

} // namespace

int main(int argc, char** argv) {
    orlo::bench::enter_access_point();
    orlo::bench::fill(quilt);
    return orlo::bench::compare(
        argc, argv,
        {{"push of 16 VAPs / bare libuci calls", "vaps_pushed/16", "vaps_in_bare_calls", 1.05},
         {"push of 16 VAPs / script of uci lines", "vaps_pushed/16", "vaps_by_script", 1.0 / 8},
         {"push of a quilt / bare libuci calls", "quilt_pushed", "quilt_in_bare_calls", 1.05}},
        {{"push of the VAPs of a radio", "vaps_pushed", "enabled VAPs", {1, 2, 4, 8, 16}}});
}
