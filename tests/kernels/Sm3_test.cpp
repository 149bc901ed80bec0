// SPDX-License-Identifier: MIT
#include "tests/reference/Sm3.h"

#include "tests/helpers/KernelSuite.h"

namespace {

struct Sm3Family {
    static constexpr const char* name = "Sm3";
    using State = reference::Sm3State;
    static constexpr std::size_t blockSize = 64;
    static constexpr std::size_t maxBlocks = 40;
    static auto Candidates() { return fyrn::kernels::KernelCandidates().sm3; }
    static void Run(fyrn::kernels::Sm3Blocks* kernel, State& state, const std::uint8_t* blocks,
                    std::size_t count) {
        kernel(state.data(), blocks, count);
    }
    static void Reference(State& state, const std::uint8_t* blocks, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i)
            reference::Sm3Compress(state, blocks + blockSize * i);
    }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Sm3, KernelSuite, Sm3Family, helpers::FamilyNames);

// The first example of the standard, "abc", is one padded block.
TEST(Sm3Blocks, CompressesTheExampleOfTheStandard) {
    const reference::Sm3State expected = {0x66c7f0f4, 0x62eeedd9, 0xd1f2d46b, 0xdc10e4e2,
                                          0x4167c487, 0x5cf2f7a2, 0x297da02b, 0x8f4ba8e0};
    std::uint8_t block[64] = {'a', 'b', 'c', 0x80};
    block[63] = 24;
    for (const auto& candidate : helpers::RunnableCandidates<Sm3Family>()) {
        reference::Sm3State state = {0x7380166f, 0x4914b2b9, 0x172442d7, 0xda8a0600,
                                     0xa96f30bc, 0x163138aa, 0xe38dee4d, 0xb0fb0e4e};
        candidate.function(state.data(), block, 1);
        EXPECT_EQ(state, expected) << candidate.name;
    }
}

} // namespace
