// SPDX-License-Identifier: MIT
#include "tests/reference/Ripemd160.h"

#include "tests/helpers/KernelSuite.h"

namespace {

struct Ripemd160Family {
    static constexpr const char* name = "Ripemd160";
    using State = reference::Ripemd160State;
    static constexpr std::size_t blockSize = 64;
    static constexpr std::size_t maxBlocks = 40;
    static auto Candidates() { return fyrn::kernels::KernelCandidates().ripemd160; }
    static void Run(fyrn::kernels::Ripemd160Blocks* kernel, State& state, const std::uint8_t* blocks,
                    std::size_t count) {
        kernel(state.data(), blocks, count);
    }
    static void Reference(State& state, const std::uint8_t* blocks, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i)
            reference::Ripemd160Compress(state, blocks + blockSize * i);
    }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Ripemd160, KernelSuite, Ripemd160Family, helpers::FamilyNames);

// The first vector of the authors' paper, the empty message: 9c1185a5c5e9fc54612808977ee8f548b2258d31.
TEST(Ripemd160Blocks, CompressesThePaddedEmptyMessage) {
    const reference::Ripemd160State expected = {0xa585119c, 0x54fce9c5, 0x97082861, 0x48f5e87e, 0x318d25b2};
    const std::uint8_t block[64] = {0x80};
    for (const auto& candidate : helpers::RunnableCandidates<Ripemd160Family>()) {
        reference::Ripemd160State state = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476, 0xc3d2e1f0};
        candidate.function(state.data(), block, 1);
        EXPECT_EQ(state, expected) << candidate.name;
    }
}

} // namespace
