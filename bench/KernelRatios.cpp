// SPDX-License-Identifier: MIT
// usage: fyrn_bench_ratios [ROUNDS [ALGORITHM...]]
// Prints for every kernel that this machine can run how many times as fast as the portable one it is, its MB/s,
// and whether it is in use.
// The kernels of an algorithm take turns of a fraction of a millisecond, and the best turn of each counts: so another
// program on the same core, and a clock that changes, meet all of them and are left out.
#include "bench/KernelRuns.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <limits>

namespace {

constexpr std::size_t messageSize = 1 << 16;
constexpr int defaultRounds = 200;

using Clock = std::chrono::steady_clock;

double SecondsOfOneTurn(const bench::KernelRun& run) {
    static const std::vector<std::uint8_t> message(messageSize, 0x5a);
    const Clock::time_point start = Clock::now();
    run.hash(message.data(), message.size());
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// The best turn of each kernel of one algorithm.
std::vector<double> BestTurns(const bench::KernelRun* first, std::size_t count, int rounds) {
    std::vector<double> best(count, std::numeric_limits<double>::infinity());
    for (int round = 0; round < rounds; ++round)
        for (std::size_t i = 0; i < count; ++i)
            best[i] = std::min(best[i], SecondsOfOneTurn(first[i]));
    return best;
}

void Report(const bench::KernelRun* first, std::size_t count, int rounds) {
    const std::vector<double> best = BestTurns(first, count, rounds);
    for (std::size_t i = 0; i < count; ++i)
        std::printf("%-12s %-10s %6.2f %8.0f%s\n", first[i].algorithm.c_str(), first[i].kernel.c_str(),
                    best.back() / best[i], messageSize / best[i] / 1e6, first[i].inUse ? "  in use" : "");
    std::fflush(stdout);
}

} // namespace

int main(int argc, char* argv[]) {
    const int rounds = argc > 1 ? std::atoi(argv[1]) : defaultRounds;
    const std::vector<std::string> wanted(argv + std::min(argc, 2), argv + argc);
    const std::vector<bench::KernelRun> runs = bench::KernelRuns();
    for (std::size_t first = 0, end; first < runs.size(); first = end) {
        const std::string& algorithm = runs[first].algorithm;
        for (end = first; end < runs.size() && runs[end].algorithm == algorithm;)
            ++end;
        if (wanted.empty() || std::find(wanted.begin(), wanted.end(), algorithm) != wanted.end())
            Report(&runs[first], end - first, rounds);
    }
    return 0;
}
