// SPDX-License-Identifier: MIT
// Every candidate of every kernel over 1 MiB that stays in the cache: bytes per second, and time stamp counter cycles
// per byte where the processor has such a counter.
#include "bench/CycleCounter.h"
#include "bench/KernelRuns.h"

#include <benchmark/benchmark.h>

namespace {

void Measure(benchmark::State& state, const bench::KernelRun& run) {
    static const std::vector<std::uint8_t> message(bench::longestMessage, 0x5a);
    const std::uint64_t start = bench::CycleCounter();
    for (auto _ : state)
        run.hash(message.data(), message.size());
    const std::uint64_t cycles = bench::CycleCounter() - start;
    const auto bytes = static_cast<double>(state.iterations()) * static_cast<double>(message.size());
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes));
    if (cycles != 0)
        state.counters["cycles/byte"] = static_cast<double>(cycles) / bytes;
}

} // namespace

int main(int argc, char* argv[]) {
    for (const bench::KernelRun& run : bench::KernelRuns())
        benchmark::RegisterBenchmark((run.algorithm + "/" + run.kernel).c_str(),
                                     [run](benchmark::State& state) { Measure(state, run); });
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
