// SPDX-License-Identifier: MIT
#include "tests/reference/Md4.h"

#include "tests/helpers/KernelSuite.h"
#include "tests/helpers/LaneSuite.h"

namespace {

struct Md4Family {
    static constexpr const char* name = "Md4";
    using State = reference::State32x4;
    static constexpr std::size_t blockSize = 64;
    static constexpr std::size_t maxBlocks = 40;
    static auto Candidates() { return fyrn::kernels::KernelCandidates().md4; }
    static void Run(fyrn::kernels::Md4Blocks* kernel, State& state, const std::uint8_t* blocks,
                    std::size_t count) {
        kernel(state.data(), blocks, count);
    }
    static void Reference(State& state, const std::uint8_t* blocks, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i)
            reference::Md4Compress(state, blocks + 64 * i);
    }
    static auto LaneCandidates() { return fyrn::kernels::LaneKernels().md4; }
    static void RunLanes(const auto& candidate, State* const states[], const std::uint8_t* const blocks[],
                         std::size_t count) {
        helpers::RunLanes(candidate, states, blocks, count);
    }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Md4, KernelSuite, Md4Family, helpers::FamilyNames);
INSTANTIATE_TYPED_TEST_SUITE_P(Md4, LaneSuite, Md4Family, helpers::FamilyNames);

// The compression of the padded empty message, from the suite of RFC 1320.
TEST(Md4Blocks, CompressesThePaddedEmptyMessage) {
    for (const auto& candidate : helpers::RunnableCandidates<Md4Family>()) {
        reference::State32x4 state = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};
        const std::uint8_t block[64] = {0x80};
        candidate.function(state.data(), block, 1);
        EXPECT_EQ(helpers::ToHex(reference::LittleEndianDigest(state)), "31d6cfe0d16ae931b73c59d7e0c089c0")
            << candidate.name;
    }
}

} // namespace
