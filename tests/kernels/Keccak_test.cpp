// SPDX-License-Identifier: MIT
#include "tests/reference/Keccak.h"

#include "tests/helpers/KernelSuite.h"
#include "tests/helpers/LaneSuite.h"

namespace {

template <std::size_t lanes>
struct KeccakFamily {
    using State = reference::KeccakState;
    static constexpr std::size_t blockSize = 8 * lanes;
    static constexpr std::size_t maxBlocks = 10;
    static auto Candidates() { return fyrn::kernels::KernelCandidates().keccak; }
    static void Run(fyrn::kernels::KeccakBlocks* kernel, State& state, const std::uint8_t* blocks,
                    std::size_t count) {
        kernel(state.data(), blocks, lanes, count);
    }
    static void Reference(State& state, const std::uint8_t* blocks, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i)
            reference::KeccakAbsorb(state, blocks + blockSize * i, lanes);
    }
    static auto LaneCandidates() { return fyrn::kernels::LaneKernels().keccak; }
    static void RunLanes(const auto& candidate, State* const states[], const std::uint8_t* const blocks[],
                         std::size_t count) {
        std::uint64_t* words[helpers::mostLanes];
        for (std::size_t lane = 0; lane < candidate.lanes; ++lane)
            words[lane] = states[lane]->data();
        candidate.function(words, blocks, lanes, count);
    }
};

// The rates in use: 72, 104, 136, 144 and 168 bytes.
struct Rate72 : KeccakFamily<9> {
    static constexpr const char* name = "Rate72";
};
struct Rate104 : KeccakFamily<13> {
    static constexpr const char* name = "Rate104";
};
struct Rate136 : KeccakFamily<17> {
    static constexpr const char* name = "Rate136";
};
struct Rate144 : KeccakFamily<18> {
    static constexpr const char* name = "Rate144";
};
struct Rate168 : KeccakFamily<21> {
    static constexpr const char* name = "Rate168";
};

using Families = testing::Types<Rate72, Rate104, Rate136, Rate144, Rate168>;
INSTANTIATE_TYPED_TEST_SUITE_P(Keccak, KernelSuite, Families, helpers::FamilyNames);
INSTANTIATE_TYPED_TEST_SUITE_P(Keccak, LaneSuite, Families, helpers::FamilyNames);

TEST(KeccakBlocks, AbsorbsAnyNumberOfLanes) {
    for (std::size_t lanes = 1; lanes <= 25; ++lanes) {
        const helpers::Bytes blocks = helpers::PseudoRandomBytes(3 * 8 * lanes, lanes);
        reference::KeccakState expected = {};
        for (std::size_t i = 0; i < 3; ++i)
            reference::KeccakAbsorb(expected, blocks.data() + 8 * lanes * i, lanes);
        for (const auto& candidate : helpers::RunnableCandidates<Rate136>()) {
            reference::KeccakState state = {};
            candidate.function(state.data(), blocks.data(), lanes, 3);
            EXPECT_EQ(state, expected) << candidate.name << ", " << lanes << " lanes";
        }
    }
}

TEST(KeccakLanes, AbsorbAnyNumberOfWordsAndNoMore) {
    for (const auto& candidate : helpers::RunnableLaneCandidates<Rate136>()) {
        for (std::size_t words = 0; words <= 25; ++words) {
            helpers::GuardedBuffer buffer(3 * 8 * words);
            const helpers::Bytes message = helpers::PseudoRandomBytes(3 * 8 * words, words);
            std::uint8_t* const place = buffer.Rear(message.size());
            std::copy(message.begin(), message.end(), place);
            reference::KeccakState expected = {};
            for (std::size_t i = 0; i < 3; ++i)
                reference::KeccakAbsorb(expected, place + 8 * words * i, words);
            std::vector<reference::KeccakState> states(candidate.lanes);
            std::vector<std::uint64_t*> pointers;
            for (reference::KeccakState& state : states)
                pointers.push_back(state.data());
            const std::vector<const std::uint8_t*> blocks(candidate.lanes, place);
            candidate.function(pointers.data(), blocks.data(), words, 3);
            for (std::size_t lane = 0; lane < candidate.lanes; ++lane)
                EXPECT_EQ(states[lane], expected)
                    << candidate.name << ", lane " << lane << ", " << words << " words";
        }
    }
}

// The first lanes of the permuted all-zero state and of that permuted again, from the file
// KeccakF-1600-IntermediateValues.txt of the Keccak submission.
TEST(KeccakBlocks, WithoutLanesIsTheBarePermutation) {
    for (const auto& candidate : helpers::RunnableCandidates<Rate136>()) {
        reference::KeccakState state = {};
        candidate.function(state.data(), nullptr, 0, 1);
        EXPECT_EQ(state[0], 0xf1258f7940e1dde7u) << candidate.name;
        EXPECT_EQ(state[1], 0x84d5ccf933c0478au) << candidate.name;
        EXPECT_EQ(state[24], 0xeaf1ff7b5ceca249u) << candidate.name;
        candidate.function(state.data(), nullptr, 0, 1);
        EXPECT_EQ(state[0], 0x2d5c954df96ecb3cu) << candidate.name;
        EXPECT_EQ(state[1], 0x6a332cd07057b56du) << candidate.name;
        EXPECT_EQ(state[24], 0x20d06cd26a8fbf5cu) << candidate.name;
    }
}

} // namespace
