// SPDX-License-Identifier: MIT
#include "tests/reference/Skein.h"

#include "hash/kernels/SkeinInitialValue.h"
#include "tests/helpers/KernelSuite.h"
#include "tests/helpers/LaneSuite.h"

namespace {

using Words = std::vector<std::uint64_t>;

template <std::size_t words>
struct SkeinState {
    std::uint64_t chain[words];
    std::uint64_t tweak[2];

    bool operator==(const SkeinState&) const = default;
};

template <std::size_t words>
struct SkeinFamily {
    static constexpr const char* name = words == 4 ? "256" : words == 8 ? "512" : "1024";
    using State = SkeinState<words>;
    static constexpr std::size_t blockSize = 8 * words;
    static constexpr std::size_t maxBlocks = 20;
    static auto Candidates() {
        return words == 4   ? fyrn::kernels::KernelCandidates().skein256
               : words == 8 ? fyrn::kernels::KernelCandidates().skein512
                            : fyrn::kernels::KernelCandidates().skein1024;
    }
    static void Run(fyrn::kernels::SkeinBlocks* kernel, State& state, const std::uint8_t* blocks,
                    std::size_t count) {
        kernel(state.chain, state.tweak, blocks, count, blockSize);
    }
    static void Reference(State& state, const std::uint8_t* blocks, std::size_t count) {
        for (; count != 0; --count, blocks += blockSize)
            ReferenceBlock(state, blocks, blockSize);
    }
    static void ReferenceBlock(State& state, const std::uint8_t* block, std::uint64_t added) {
        Words plain(words);
        for (std::size_t i = 0; i < blockSize; ++i)
            plain[i / 8] |= std::uint64_t{block[i]} << (8 * (i % 8));
        state.tweak[0] += added;
        const Words key(state.chain, state.chain + words);
        const Words cipher = reference::Threefish(key, state.tweak[0], state.tweak[1], plain);
        for (std::size_t i = 0; i < words; ++i)
            state.chain[i] = cipher[i] ^ plain[i];
        state.tweak[1] &= ~(std::uint64_t{1} << 62);
    }
    static auto LaneCandidates() {
        return words == 4   ? fyrn::kernels::LaneKernels().skein256
               : words == 8 ? fyrn::kernels::LaneKernels().skein512
                            : fyrn::kernels::LaneKernels().skein1024;
    }
    static void RunLanes(const auto& candidate, State* const states[], const std::uint8_t* const blocks[],
                         std::size_t count, std::uint64_t added = blockSize) {
        std::uint64_t* chains[helpers::mostLanes];
        std::uint64_t* tweaks[helpers::mostLanes];
        for (std::size_t lane = 0; lane < candidate.lanes; ++lane) {
            chains[lane] = states[lane]->chain;
            tweaks[lane] = states[lane]->tweak;
        }
        candidate.function(chains, tweaks, blocks, count, added);
    }
};

using SkeinFamilies = testing::Types<SkeinFamily<4>, SkeinFamily<8>, SkeinFamily<16>>;
INSTANTIATE_TYPED_TEST_SUITE_P(Skein, KernelSuite, SkeinFamilies, helpers::FamilyNames);
INSTANTIATE_TYPED_TEST_SUITE_P(Skein, LaneSuite, SkeinFamilies, helpers::FamilyNames);

template <class Family>
class SkeinBlocks : public testing::Test {};

TYPED_TEST_SUITE(SkeinBlocks, SkeinFamilies, helpers::FamilyNames);

TYPED_TEST(SkeinBlocks, AddAnyNumberOfBytesToThePosition) {
    const helpers::Bytes block = helpers::PseudoRandomBytes(TypeParam::blockSize, 3);
    for (const auto& candidate : helpers::RunnableCandidates<TypeParam>()) {
        for (const std::uint64_t added : {0u, 1u, 8u, 31u}) {
            auto state = helpers::RandomState<TypeParam>(added);
            auto expected = state;
            candidate.function(state.chain, state.tweak, block.data(), 1, added);
            TypeParam::ReferenceBlock(expected, block.data(), added);
            EXPECT_TRUE(state == expected) << candidate.name << ", " << added << " bytes added";
        }
    }
}

TYPED_TEST(SkeinBlocks, ClearTheFirstFlagAndNoOther) {
    const helpers::Bytes block(TypeParam::blockSize);
    for (const auto& candidate : helpers::RunnableCandidates<TypeParam>()) {
        typename TypeParam::State state{};
        state.tweak[1] = ~std::uint64_t{0};
        candidate.function(state.chain, state.tweak, block.data(), 1, 0);
        EXPECT_EQ(state.tweak[1], 0xbfff'ffff'ffff'ffffu) << candidate.name;
    }
}

template <class Family>
class SkeinLanes : public testing::Test {};

TYPED_TEST_SUITE(SkeinLanes, SkeinFamilies, helpers::FamilyNames);

TYPED_TEST(SkeinLanes, AddAnyNumberOfBytesToEachPosition) {
    const helpers::Bytes block = helpers::PseudoRandomBytes(TypeParam::blockSize, 4);
    const std::vector<const std::uint8_t*> blocks(helpers::mostLanes, block.data());
    for (const auto& candidate : helpers::RunnableLaneCandidates<TypeParam>()) {
        for (const std::uint64_t added : {0u, 1u, 8u, 31u}) {
            std::vector<typename TypeParam::State> states;
            for (std::size_t lane = 0; lane < candidate.lanes; ++lane)
                states.push_back(helpers::RandomState<TypeParam>(lane));
            auto expected = states;
            std::vector<typename TypeParam::State*> pointers;
            for (auto& state : states)
                pointers.push_back(&state);
            TypeParam::RunLanes(candidate, pointers.data(), blocks.data(), 1, added);
            for (std::size_t lane = 0; lane < candidate.lanes; ++lane) {
                TypeParam::ReferenceBlock(expected[lane], block.data(), added);
                EXPECT_TRUE(states[lane] == expected[lane])
                    << candidate.name << ", lane " << lane << ", " << added << " bytes added";
            }
        }
    }
}

template <std::size_t words>
Words InitialValue() {
    const auto value = fyrn::kernels::SkeinInitialValue<words>();
    return {value.begin(), value.end()};
}

// Skein 1.3, appendix B.
TEST(SkeinInitialValue, IsThePublishedOne) {
    EXPECT_EQ(InitialValue<4>(),
              (Words{0xFC9DA860D048B449, 0x2FCA66479FA7D833, 0xB33BC3896656840F, 0x6A54E920FDE8DA69}));
    EXPECT_EQ(InitialValue<8>(),
              (Words{0x4903ADFF749C51CE, 0x0D95DE399746DF03, 0x8FD1934127C79BCE, 0x9A255629FF352CB1,
                     0x5DB62599DF6CA7B0, 0xEABE394CA9D5C3F4, 0x991112C71A75B523, 0xAE18A40B660FCC33}));
    EXPECT_EQ(InitialValue<16>(),
              (Words{0xD593DA0741E72355, 0x15B5E511AC73E00C, 0x5180E5AEBAF2C4F0, 0x03BD41D3FCBCAFAF,
                     0x1CAEC6FD1983A898, 0x6E510B8BCDD0589F, 0x77E2BDFDC6394ADA, 0xC11E1DB524DCB0A3,
                     0xD6D14AF9C6329AB5, 0x6A9B0BFC6EB67E0D, 0x9243C60DCCFF1332, 0x1A1F1DDE743F02D4,
                     0x0996753C10ED0BB8, 0x6572DD22F2B4969A, 0x61FD3062D00A579A, 0x1DE0536E8682E539}));
}

TEST(SkeinInitialValue, IsWhatTheReferenceDerivesAtRunTime) {
    EXPECT_EQ(InitialValue<4>(), reference::SkeinInitialValue(4, 256));
    EXPECT_EQ(InitialValue<8>(), reference::SkeinInitialValue(8, 512));
    EXPECT_EQ(InitialValue<16>(), reference::SkeinInitialValue(16, 1024));
}

} // namespace
