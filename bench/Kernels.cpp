// SPDX-License-Identifier: MIT
// Every candidate of every kernel over 1 MiB that stays in the cache: bytes per second of processor time, and the least
// time stamp counter cycles per byte of any turn, where the processor has such a counter.
#include "bench/CycleCounter.h"
#include "bench/KernelRuns.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <limits>

namespace {

void Measure(benchmark::State& state, const bench::KernelRun& run) {
    static const std::vector<std::uint8_t> message(bench::longestMessage, 0x5a);
    std::uint64_t leastCycles = std::numeric_limits<std::uint64_t>::max();
    for (auto _ : state) {
        const std::uint64_t start = bench::CycleCounter();
        run.hash(message.data(), message.size());
        leastCycles = std::min(leastCycles, bench::CycleCounter() - start);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(message.size()));
    if (leastCycles != 0)
        state.counters["cycles/byte"] =
            static_cast<double>(leastCycles) / static_cast<double>(message.size());
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
