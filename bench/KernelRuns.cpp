// SPDX-License-Identifier: MIT
#include "bench/KernelRuns.h"

#include "hash/kernels/KernelSelect.h"

#include <type_traits>

namespace bench {
namespace {

using Bytes = const std::uint8_t*;

// Whether a kernel is one of those chosen on this machine.
template <class Function>
bool IsInUse(Function* kernel) {
    bool found = false;
    fyrn::kernels::ForEachAlgorithm([&](const char*, auto member) {
        if constexpr (std::is_same_v<decltype(member(fyrn::kernels::Kernels())), Function* const&>)
            found = found || member(fyrn::kernels::Kernels()) == kernel;
    });
    return found;
}

// Adds every candidate that this machine can run; run(kernel, bytes, count) hashes a message with one of them.
template <class Candidates, class Run>
void Add(std::vector<KernelRun>& runs, const std::string& algorithm, Candidates candidates, Run run) {
    for (const auto& candidate : candidates)
        if ((candidate.needs & ~fyrn::kernels::AvailableCpuFeatures()) == 0)
            runs.push_back({algorithm, candidate.name, IsInUse(candidate.function),
                            [run, kernel = candidate.function](Bytes bytes, std::size_t count) {
                                run(kernel, bytes, count);
                            }});
}

// All kernels of the form (state, blocks, count).
void AddBlocks(std::vector<KernelRun>& runs) {
    fyrn::kernels::ForEachAlgorithm([&](const char* algorithm, auto member) {
        if constexpr (requires { typename decltype(member)::Form; }) {
            using Form = typename decltype(member)::Form;
            Add(runs, algorithm, member(fyrn::kernels::KernelCandidates()),
                [](auto* kernel, Bytes bytes, std::size_t count) {
                    typename Form::State state = {};
                    kernel(state.words, bytes, count / Form::blockSize);
                });
        }
    });
}

template <std::size_t words, class Candidates>
void AddSkein(std::vector<KernelRun>& runs, const std::string& algorithm, Candidates candidates) {
    Add(runs, algorithm, candidates, [](auto* kernel, Bytes bytes, std::size_t count) {
        std::uint64_t chain[words] = {};
        std::uint64_t tweak[2] = {};
        kernel(chain, tweak, bytes, count / (8 * words), 8 * words);
    });
}

void AddKeccak(std::vector<KernelRun>& runs, std::size_t rate) {
    Add(runs, "Keccak-" + std::to_string(rate), fyrn::kernels::KernelCandidates().keccak,
        [rate](auto* kernel, Bytes bytes, std::size_t count) {
            std::uint64_t state[25] = {};
            kernel(state, bytes, rate / 8, count / rate);
        });
}

// The lowest level of the tree: three quarters of the work on a message.
void AddMd6(std::vector<KernelRun>& runs, int rounds) {
    Add(runs, "Md6-" + std::to_string(rounds), fyrn::kernels::KernelCandidates().md6,
        [rounds](auto* kernel, Bytes bytes, std::size_t count) {
            static const std::uint64_t prefix[23] = {};
            static std::uint8_t chainingValues[longestMessage / 4];
            fyrn::kernels::Md6Batch batch{};
            batch.prefix = prefix;
            batch.rounds = rounds;
            kernel(chainingValues, bytes, count / 512, batch);
        });
}

fyrn::kernels::CrcTables MakeCrcTables() {
    fyrn::kernels::CrcTables tables{};
    for (unsigned int i = 0; i < 256; ++i)
        tables.slices[0][i] = i * 0x01b0000000000000u;
    fyrn::kernels::Crc_CompleteTables(tables);
    return tables;
}

} // namespace

std::vector<KernelRun> KernelRuns() {
    std::vector<KernelRun> runs;
    AddBlocks(runs);
    Add(runs, "Blake2b", fyrn::kernels::KernelCandidates().blake2b,
        [](auto* kernel, Bytes bytes, std::size_t count) {
            fyrn::kernels::Blake2bState state{};
            kernel(state, bytes, count / 128, 128);
        });
    Add(runs, "Blake3", fyrn::kernels::KernelCandidates().blake3,
        [](auto* kernel, Bytes bytes, std::size_t count) {
            std::uint32_t words[16] = {};
            for (std::size_t at = 0; at + 64 <= count; at += 64)
                kernel(words, words, bytes + at, 64, 0, 0);
        });
    Add(runs, "Blake3Nodes", fyrn::kernels::KernelCandidates().blake3Nodes,
        [](auto* kernel, Bytes bytes, std::size_t count) {
            static std::uint8_t values[longestMessage / 32];
            kernel(values, bytes, count / 1024, fyrn::kernels::Blake3Level::chunks, 0);
        });
    Add(runs, "Crc", fyrn::kernels::KernelCandidates().crc, [](auto* kernel, Bytes bytes, std::size_t count) {
        static const fyrn::kernels::CrcTables tables = MakeCrcTables();
        kernel(tables, 0, bytes, count);
    });
    for (const unsigned int rate : {72u, 104u, 136u, 144u, 168u})
        AddKeccak(runs, rate);
    for (const int rounds : {72, 104, 168})
        AddMd6(runs, rounds);
    AddSkein<4>(runs, "Skein256", fyrn::kernels::KernelCandidates().skein256);
    AddSkein<8>(runs, "Skein512", fyrn::kernels::KernelCandidates().skein512);
    AddSkein<16>(runs, "Skein1024", fyrn::kernels::KernelCandidates().skein1024);
    return runs;
}

} // namespace bench
