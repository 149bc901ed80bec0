// SPDX-License-Identifier: MIT
#include "tests/reference/Md5.h"

#include "tests/helpers/KernelSuite.h"
#include "tests/helpers/LaneSuite.h"

namespace {

struct Md5Family {
    static constexpr const char* name = "Md5";
    using State = reference::State32x4;
    static constexpr std::size_t blockSize = 64;
    static constexpr std::size_t maxBlocks = 40;
    static auto Candidates() { return fyrn::kernels::KernelCandidates().md5; }
    static void Run(fyrn::kernels::Md5Blocks* kernel, State& state, const std::uint8_t* blocks,
                    std::size_t count) {
        kernel(state.data(), blocks, count);
    }
    static void Reference(State& state, const std::uint8_t* blocks, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i)
            reference::Md5Compress(state, blocks + 64 * i);
    }
    static auto LaneCandidates() { return fyrn::kernels::LaneKernels().md5; }
    static void RunLanes(const auto& candidate, State* const states[], const std::uint8_t* const blocks[],
                         std::size_t count) {
        helpers::RunLanes(candidate, states, blocks, count);
    }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Md5, KernelSuite, Md5Family, helpers::FamilyNames);
INSTANTIATE_TYPED_TEST_SUITE_P(Md5, LaneSuite, Md5Family, helpers::FamilyNames);

// The compression of the padded empty message, from the suite of RFC 1321.
TEST(Md5Blocks, CompressesThePaddedEmptyMessage) {
    for (const auto& candidate : helpers::RunnableCandidates<Md5Family>()) {
        reference::State32x4 state = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};
        const std::uint8_t block[64] = {0x80};
        candidate.function(state.data(), block, 1);
        EXPECT_EQ(helpers::ToHex(reference::LittleEndianDigest(state)), "d41d8cd98f00b204e9800998ecf8427e")
            << candidate.name;
    }
}

} // namespace
