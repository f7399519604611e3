// Writes, reads and the opening of the section against their floors. Figures: docs/benchmarks.md.
#include "bench/floor.hpp"
#include "core/ccore.hpp"
#include "core/channels/section_access.hpp"
#include "platform/platform.hpp"
#include "tests/support/counted_memory.hpp"

#include <benchmark/benchmark.h>
#include <tallowmere/tallowmere.h>

#include <cstdlib>
#include <string>

using namespace tallowmere;

namespace {

/// The section that the shared library of this process works on, mapped a second time.
SharedArea& area() {
    static const auto section = platform::hostPlatform().openSection(sectionName(), kSharedAreaBytes);
    return *reinterpret_cast<SharedArea*>(section->view());
}

void useBoats(std::int64_t boats) {
    writeOnce(area().boatCount, static_cast<std::uint32_t>(boats));
}

void FloorWrite(benchmark::State& state) {
    useBoats(state.range(0));
    double speed = 6.4;
    for (auto _ : state) bench::bareWrite(area(), speed += 1e-6, static_cast<std::uint32_t>(state.range(0)));
}

void SetZanVarDouble(benchmark::State& state) {
    useBoats(state.range(0));
    double speed = 6.4;
    const std::size_t before = test::allocationsMade();
    for (auto _ : state) SetZanVar(ZAN_BSP, speed += 1e-6, 0);
    state.counters["allocations"] = static_cast<double>(test::allocationsMade() - before);
}

void FloorRead(benchmark::State& state) {
    useBoats(2);
    SetZanVar(ZAN_BSP, 6.4, 0);
    ChannelValue record;
    for (auto _ : state) {
        bench::bareCopy(area(), record);
        benchmark::DoNotOptimize(record);
    }
}

void GetZanVarDouble(benchmark::State& state) {
    useBoats(2);
    SetZanVar(ZAN_BSP, 6.4, 0);
    double value = 0;
    std::uint16_t source = 0;
    const std::size_t before = test::allocationsMade();
    for (auto _ : state) {
        benchmark::DoNotOptimize(GetZanVar(ZAN_BSP, &value, 0, &source));
        benchmark::DoNotOptimize(value);
    }
    state.counters["allocations"] = static_cast<double>(test::allocationsMade() - before);
}

void FloorOpen(benchmark::State& state) {
    const std::string path = std::string(std::getenv("XDG_RUNTIME_DIR")) + "/ZanCore_363_253336";
    for (auto _ : state)
        if (!bench::bareOpen(path)) state.SkipWithError("no section file: run through scripts/bench");
}

void OpenCore(benchmark::State& state) {
    for (auto _ : state) {
        const CCore core(false);
        benchmark::DoNotOptimize(core.area());
    }
}

BENCHMARK(FloorWrite)->Arg(2)->Arg(100);
BENCHMARK(SetZanVarDouble)->Arg(2)->Arg(100);
BENCHMARK(FloorRead);
BENCHMARK(GetZanVarDouble);
BENCHMARK(FloorOpen);
BENCHMARK(OpenCore);

} // namespace

BENCHMARK_MAIN();
