// SPDX-License-Identifier: MIT
// Every candidate of every kernel over 1 MiB that stays in the cache: bytes per second, and time stamp counter cycles
// per byte where the processor has such a counter.
#include "bench/CycleCounter.h"
#include "crypto/kernels/KernelSelect.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

namespace {

constexpr std::size_t messageSize = 1 << 20;

std::vector<std::uint8_t>& Message() {
    static std::vector<std::uint8_t> message(messageSize, 0x5a);
    return message;
}

// Registers one benchmark for each candidate that this machine can run. run(kernel, bytes, size) hashes the message.
template <class Candidates, class Run>
void Register(const std::string& algorithm, Candidates candidates, Run run) {
    for (const auto& candidate : candidates) {
        if ((candidate.needs & ~kernels::AvailableCpuFeatures()) != 0)
            continue;
        const auto kernel = candidate.function;
        benchmark::RegisterBenchmark(
            (algorithm + "/" + candidate.name).c_str(), [=](benchmark::State& state) {
                const std::uint64_t start = bench::CycleCounter();
                for (auto _ : state)
                    run(kernel, Message().data(), messageSize);
                const std::uint64_t cycles = bench::CycleCounter() - start;
                const auto bytes = static_cast<double>(state.iterations()) * messageSize;
                state.SetBytesProcessed(static_cast<std::int64_t>(bytes));
                if (cycles != 0)
                    state.counters["cycles/byte"] = static_cast<double>(cycles) / bytes;
            });
    }
}

// Kernels of the shape (state, blocks, count).
template <class Word, std::size_t words, std::size_t blockSize, class Candidates>
void RegisterBlocks(const std::string& algorithm, Candidates candidates) {
    Register(algorithm, candidates, [](auto* kernel, const std::uint8_t* bytes, std::size_t size) {
        Word state[words] = {};
        kernel(state, bytes, size / blockSize);
        benchmark::DoNotOptimize(state);
    });
}

template <std::size_t words, class Candidates>
void RegisterSkein(const std::string& algorithm, Candidates candidates) {
    Register(algorithm, candidates, [](auto* kernel, const std::uint8_t* bytes, std::size_t size) {
        std::uint64_t chain[words] = {};
        std::uint64_t tweak[2] = {};
        kernel(chain, tweak, bytes, size / (8 * words), 8 * words);
        benchmark::DoNotOptimize(chain);
    });
}

void RegisterKeccak(std::size_t rate) {
    Register("Keccak rate " + std::to_string(rate), kernels::KeccakCandidates(),
             [rate](auto* kernel, const std::uint8_t* bytes, std::size_t size) {
                 std::uint64_t state[25] = {};
                 kernel(state, bytes, rate / 8, size / rate);
                 benchmark::DoNotOptimize(state);
             });
}

// The lowest level of the tree: three quarters of the work on a message.
void RegisterMd6(int rounds) {
    Register("MD6 " + std::to_string(rounds) + " rounds", kernels::Md6Candidates(),
             [rounds](auto* kernel, const std::uint8_t* bytes, std::size_t size) {
                 static const std::uint64_t prefix[23] = {};
                 std::uint8_t chainingValues[messageSize / 4];
                 kernels::Md6Batch batch{};
                 batch.prefix = prefix;
                 batch.rounds = rounds;
                 kernel(chainingValues, bytes, size / 512, batch);
                 benchmark::DoNotOptimize(chainingValues);
             });
}

void RegisterAll() {
    Register("Blake2b", kernels::Blake2bCandidates(),
             [](auto* kernel, const std::uint8_t* bytes, std::size_t size) {
                 kernels::Blake2bState state{};
                 kernel(state, bytes, size / 128, 128);
                 benchmark::DoNotOptimize(state);
             });
    Register("Crc", kernels::CrcCandidates(), [](auto* kernel, const std::uint8_t* bytes, std::size_t size) {
        static kernels::CrcTables tables = [] {
            kernels::CrcTables made{};
            for (unsigned int i = 0; i < 256; ++i)
                made.slices[0][i] = i * 0x01b0000000000000u;
            kernels::Crc_CompleteTables(made);
            return made;
        }();
        benchmark::DoNotOptimize(kernel(tables, 0, bytes, size));
    });
    for (const std::size_t rate : {72, 104, 136, 144, 168})
        RegisterKeccak(rate);
    RegisterBlocks<std::uint32_t, 4, 64>("Md4", kernels::Md4Candidates());
    RegisterBlocks<std::uint32_t, 4, 64>("Md5", kernels::Md5Candidates());
    for (const int rounds : {72, 104, 168})
        RegisterMd6(rounds);
    RegisterBlocks<std::uint32_t, 5, 64>("Sha1", kernels::Sha1Candidates());
    RegisterBlocks<std::uint32_t, 8, 64>("Sha256", kernels::Sha256Candidates());
    RegisterBlocks<std::uint64_t, 8, 128>("Sha512", kernels::Sha512Candidates());
    RegisterSkein<4>("Skein256", kernels::Skein256Candidates());
    RegisterSkein<8>("Skein512", kernels::Skein512Candidates());
    RegisterSkein<16>("Skein1024", kernels::Skein1024Candidates());
    RegisterBlocks<std::uint64_t, 3, 64>("Tiger", kernels::TigerCandidates());
    RegisterBlocks<std::uint64_t, 8, 64>("Whirlpool", kernels::WhirlpoolCandidates());
}

} // namespace

int main(int argc, char* argv[]) {
    RegisterAll();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
