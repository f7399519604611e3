// The C++ header against the C calls that it stands on: the same work on a client's side of the library.
#include "bench/wrapper_clients.hpp"

#include <benchmark/benchmark.h>

namespace {

constexpr int kCalls = 100;

template <auto Client> void run(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(Client(kCalls));
    state.SetItemsProcessed(state.iterations() * kCalls);
}

using namespace tallowmere::bench;
BENCHMARK(run<readInC>);
BENCHMARK(run<readInCpp>);
BENCHMARK(run<writeInC>);
BENCHMARK(run<writeInCpp>);

} // namespace

BENCHMARK_MAIN();
