// SPDX-License-Identifier: MIT
#include "tests/reference/Blake2b.h"

#include "tests/helpers/KernelSuite.h"
#include "tests/helpers/LaneSuite.h"

namespace {

using Chain = std::array<std::uint64_t, 8>;

constexpr std::uint64_t allOnes = ~std::uint64_t{0};

struct Blake2bFamily {
    static constexpr const char* name = "Blake2b";
    using State = fyrn::kernels::Blake2bState;
    static constexpr std::size_t blockSize = 128;
    static constexpr std::size_t maxBlocks = 20;
    static auto Candidates() { return fyrn::kernels::KernelCandidates().blake2b; }

    // Random chain and counter; every other state is in its last block.
    static State RandomState(std::uint64_t seed) {
        State state{};
        std::memcpy(&state, helpers::PseudoRandomBytes(80, seed).data(), 80);
        state.flags[0] = seed % 2 == 0 ? 0 : allOnes;
        return state;
    }
    static void Run(fyrn::kernels::Blake2bCompress* kernel, State& state, const std::uint8_t* blocks,
                    std::size_t count) {
        kernel(state, blocks, count, 128);
    }
    static void Reference(State& state, const std::uint8_t* blocks, std::size_t count) {
        Chain h;
        std::copy_n(state.chain, 8, h.begin());
        reference::Blake2bCounter counter{state.counter[0], state.counter[1]};
        for (; count != 0; --count, blocks += blockSize) {
            counter.Add(128);
            const std::span<const std::uint8_t, blockSize> block(blocks, blockSize);
            reference::Blake2bCompress(h, block, counter, state.flags[0] != 0);
        }
        std::copy_n(h.begin(), 8, state.chain);
        state.counter[0] = counter.low;
        state.counter[1] = counter.high;
    }
    static auto LaneCandidates() { return fyrn::kernels::LaneKernels().blake2b; }
    static void RunLanes(const auto& candidate, State* const states[], const std::uint8_t* const blocks[],
                         std::size_t count) {
        candidate.function(states, blocks, count, 128);
    }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Blake2b, KernelSuite, Blake2bFamily, helpers::FamilyNames);
INSTANTIATE_TYPED_TEST_SUITE_P(Blake2b, LaneSuite, Blake2bFamily, helpers::FamilyNames);

std::string ChainAsBytes(const fyrn::kernels::Blake2bState& state) {
    helpers::Bytes bytes;
    for (int i = 0; i < 64; ++i)
        bytes.push_back(static_cast<std::uint8_t>(state.chain[i / 8] >> (8 * (i % 8))));
    return helpers::ToHex(bytes);
}

// RFC 7693, appendix A: the only block of "abc" with a digest of 64 bytes.
TEST(Blake2bCompress, CompressesTheExampleOfRfc7693) {
    for (const auto& candidate : helpers::RunnableCandidates<Blake2bFamily>()) {
        fyrn::kernels::Blake2bState state{};
        std::copy_n(fyrn::kernels::blake2bInitialValues, 8, state.chain);
        state.chain[0] ^= 0x01010040;
        state.flags[0] = allOnes;
        const std::uint8_t block[128] = {'a', 'b', 'c'};
        candidate.function(state, block, 1, 3);
        EXPECT_EQ(ChainAsBytes(state), "ba80a53f981c4d0d6a2797b69f12f6e94c212f14685ac4b74b12bb6fdbffa2d1"
                                       "7d87c5392aab792dc252d5de4533cc9518d38aa8dbf1925ab92386edd4009923")
            << candidate.name;
        EXPECT_EQ(state.counter[0], 3u) << candidate.name;
    }
}

TEST(Blake2bCompress, CarriesTheCounterIntoItsHighWord) {
    const helpers::Bytes blocks = helpers::PseudoRandomBytes(4 * 128, 7);
    for (const auto& candidate : helpers::RunnableCandidates<Blake2bFamily>()) {
        for (const std::uint64_t start :
             {allOnes, allOnes - 127, allOnes - 128, allOnes - 255, allOnes - 256}) {
            fyrn::kernels::Blake2bState state{};
            state.counter[0] = start;
            state.counter[1] = 5;
            fyrn::kernels::Blake2bState expected = state;
            candidate.function(state, blocks.data(), 4, 128);
            Blake2bFamily::Reference(expected, blocks.data(), 4);
            EXPECT_EQ(expected.counter[1], start + 512 < start ? 6u : 5u);
            EXPECT_TRUE(state == expected) << candidate.name << ", counter from " << start;
        }
    }
}

// Each lane's counter carries, or does not, alone; what is added need not be a block.
TEST(Blake2bLanes, CountEachMessageAlone) {
    const helpers::Bytes block = helpers::PseudoRandomBytes(128, 8);
    for (const auto& candidate : helpers::RunnableLaneCandidates<Blake2bFamily>()) {
        for (const std::uint64_t added : {std::uint64_t{0}, std::uint64_t{5}, std::uint64_t{128}, allOnes}) {
            std::vector<Blake2bFamily::State> states(candidate.lanes);
            std::vector<Blake2bFamily::State*> pointers;
            for (std::size_t lane = 0; lane < candidate.lanes; ++lane) {
                states[lane].counter[0] = lane % 2 == 0 ? allOnes - 4 + lane / 2 : std::uint64_t{1} << 63;
                states[lane].counter[1] = lane;
                pointers.push_back(&states[lane]);
            }
            std::vector<Blake2bFamily::State> expected = states;
            const std::vector<const std::uint8_t*> blocks(candidate.lanes, block.data());
            candidate.function(pointers.data(), blocks.data(), 1, added);
            for (std::size_t lane = 0; lane < candidate.lanes; ++lane) {
                fyrn::kernels::Blake2b_Compress_Portable(expected[lane], block.data(), 1, added);
                EXPECT_TRUE(states[lane] == expected[lane])
                    << candidate.name << ", lane " << lane << ", " << added << " bytes added";
            }
        }
    }
}

TEST(Blake2bCompress, UsesTheLastNodeFlag) {
    const std::uint8_t block[128] = {};
    for (const auto& candidate : helpers::RunnableCandidates<Blake2bFamily>()) {
        fyrn::kernels::Blake2bState plain{};
        fyrn::kernels::Blake2bState lastNode{};
        lastNode.flags[1] = allOnes;
        candidate.function(plain, block, 1, 128);
        candidate.function(lastNode, block, 1, 128);
        EXPECT_NE(ChainAsBytes(plain), ChainAsBytes(lastNode)) << candidate.name;
        EXPECT_EQ(lastNode.flags[1], allOnes) << candidate.name;
    }
}

} // namespace
