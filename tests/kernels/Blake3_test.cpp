// SPDX-License-Identifier: MIT
#include "tests/reference/Blake3.h"

#include "hash/kernels/ByteOrder.h"
#include "tests/helpers/KernelSuite.h"

#include <array>
#include <bit>

namespace {

using fyrn::kernels::Blake3Level;

// The values of all nodes so far, mixed such that their order matters, and the number of the next one.
struct NodesState {
    std::uint64_t next;
    std::array<std::uint64_t, 4> values;

    bool operator==(const NodesState&) const = default;

    void Absorb(std::size_t word, std::uint64_t value) { values[word] = std::rotl(values[word], 9) ^ value; }
};

template <Blake3Level level>
struct NodesFamily {
    static constexpr const char* name = level == Blake3Level::chunks ? "Blake3Chunks" : "Blake3Parents";
    using State = NodesState;
    static constexpr std::size_t blockSize = level == Blake3Level::chunks ? 1024 : 64;
    static constexpr std::size_t maxBlocks = 35;
    static auto Candidates() { return fyrn::kernels::KernelCandidates().blake3Nodes; }
    static void Run(fyrn::kernels::Blake3Nodes* kernel, State& state, const std::uint8_t* nodes,
                    std::size_t count) {
        helpers::GuardedBuffer buffer(count * 32);
        std::uint8_t* const values = buffer.Rear(count * 32);
        kernel(values, nodes, count, level, state.next);
        state.next += count;
        for (std::size_t i = 0; i < 4 * count; ++i)
            state.Absorb(i % 4, fyrn::kernels::LoadLittle<std::uint64_t>(values + 8 * i));
    }
    static void Reference(State& state, const std::uint8_t* nodes, std::size_t count) {
        for (; count != 0; --count, nodes += blockSize) {
            const std::span node(nodes, blockSize);
            const reference::Blake3Value value = level == Blake3Level::chunks
                                                     ? reference::Blake3Chunk(node, state.next)
                                                     : reference::Blake3Parent(node);
            ++state.next;
            for (std::size_t i = 0; i < 4; ++i)
                state.Absorb(i, std::uint64_t{value[2 * i + 1]} << 32 | value[2 * i]);
        }
    }
};

using ChunksFamily = NodesFamily<Blake3Level::chunks>;
using ParentsFamily = NodesFamily<Blake3Level::parents>;

INSTANTIATE_TYPED_TEST_SUITE_P(Blake3Chunks, KernelSuite, ChunksFamily, helpers::FamilyNames);
INSTANTIATE_TYPED_TEST_SUITE_P(Blake3Parents, KernelSuite, ParentsFamily, helpers::FamilyNames);

// The compression of single blocks: the state takes in the first 8 words of each result.
struct CompressFamily {
    static constexpr const char* name = "Blake3";
    using State = reference::Blake3Value;
    static constexpr std::size_t blockSize = 64;
    static constexpr std::size_t maxBlocks = 20;
    static constexpr std::uint64_t counter = 0x0123'4567'89ab'cdef;
    static constexpr std::uint32_t flags = 11;
    static auto Candidates() { return fyrn::kernels::KernelCandidates().blake3; }
    static void Run(fyrn::kernels::Blake3Compress* kernel, State& state, const std::uint8_t* blocks,
                    std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            std::uint32_t out[16];
            kernel(out, state.data(), blocks + 64 * i, 64, counter, flags);
            std::copy_n(out, 8, state.begin());
        }
    }
    static void Reference(State& state, const std::uint8_t* blocks, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            const auto out = reference::Blake3Compress(state, {blocks + 64 * i, 64}, counter, flags);
            std::copy_n(out.begin(), 8, state.begin());
        }
    }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Blake3, KernelSuite, CompressFamily, helpers::FamilyNames);

// Short blocks, all 16 words of the result, and a result that takes the value's place.
TEST(Blake3Compress, GivesSixteenWordsForABlockOfAnyLength) {
    const helpers::Bytes message = helpers::PseudoRandomBytes(64, helpers::kernelSuiteSeed);
    for (const auto& candidate : helpers::RunnableCandidates<CompressFamily>())
        for (std::uint32_t size = 0; size <= 64; ++size) {
            std::array<std::uint8_t, 64> block{};
            std::copy_n(message.begin(), size, block.begin());
            const reference::Blake3Value value = {1, 2, 3, 4, 5, 6, 7, ~0u};
            std::array<std::uint32_t, 16> words{};
            std::copy(value.begin(), value.end(), words.begin());
            candidate.function(words.data(), words.data(), block.data(), size, size, 8);
            EXPECT_EQ(words, reference::Blake3Compress(value, {block.data(), size}, size, 8))
                << candidate.name << ", " << size << " bytes";
        }
}

} // namespace
