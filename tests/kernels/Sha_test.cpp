// SPDX-License-Identifier: MIT
#include "tests/reference/Sha.h"

#include "tests/helpers/KernelSuite.h"
#include "tests/helpers/LaneSuite.h"

namespace {

struct Sha1Family {
    static constexpr const char* name = "Sha1";
    using State = reference::Sha1State;
    static constexpr std::size_t blockSize = 64;
    static constexpr std::size_t maxBlocks = 40;
    static auto Candidates() { return fyrn::kernels::KernelCandidates().sha1; }
    static void Run(fyrn::kernels::Sha1Blocks* kernel, State& state, const std::uint8_t* blocks,
                    std::size_t count) {
        kernel(state.data(), blocks, count);
    }
    static void Reference(State& state, const std::uint8_t* blocks, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i)
            reference::Sha1Compress(state, blocks + blockSize * i);
    }
    static auto LaneCandidates() { return fyrn::kernels::LaneKernels().sha1; }
    static void RunLanes(const auto& candidate, State* const states[], const std::uint8_t* const blocks[],
                         std::size_t count) {
        helpers::RunLanes(candidate, states, blocks, count);
    }
};

struct Sha256Family {
    static constexpr const char* name = "Sha256";
    using State = reference::Sha256State;
    static constexpr std::size_t blockSize = 64;
    static constexpr std::size_t maxBlocks = 40;
    static auto Candidates() { return fyrn::kernels::KernelCandidates().sha256; }
    static void Run(fyrn::kernels::Sha256Blocks* kernel, State& state, const std::uint8_t* blocks,
                    std::size_t count) {
        kernel(state.data(), blocks, count);
    }
    static void Reference(State& state, const std::uint8_t* blocks, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i)
            reference::Sha256Compress(state, blocks + blockSize * i);
    }
    static auto LaneCandidates() { return fyrn::kernels::LaneKernels().sha256; }
    static void RunLanes(const auto& candidate, State* const states[], const std::uint8_t* const blocks[],
                         std::size_t count) {
        helpers::RunLanes(candidate, states, blocks, count);
    }
};

struct Sha512Family {
    static constexpr const char* name = "Sha512";
    using State = reference::Sha512State;
    static constexpr std::size_t blockSize = 128;
    static constexpr std::size_t maxBlocks = 40;
    static auto Candidates() { return fyrn::kernels::KernelCandidates().sha512; }
    static void Run(fyrn::kernels::Sha512Blocks* kernel, State& state, const std::uint8_t* blocks,
                    std::size_t count) {
        kernel(state.data(), blocks, count);
    }
    static void Reference(State& state, const std::uint8_t* blocks, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i)
            reference::Sha512Compress(state, blocks + blockSize * i);
    }
    static auto LaneCandidates() { return fyrn::kernels::LaneKernels().sha512; }
    static void RunLanes(const auto& candidate, State* const states[], const std::uint8_t* const blocks[],
                         std::size_t count) {
        helpers::RunLanes(candidate, states, blocks, count);
    }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Sha1, KernelSuite, Sha1Family, helpers::FamilyNames);
INSTANTIATE_TYPED_TEST_SUITE_P(Sha1, LaneSuite, Sha1Family, helpers::FamilyNames);
INSTANTIATE_TYPED_TEST_SUITE_P(Sha256, KernelSuite, Sha256Family, helpers::FamilyNames);
INSTANTIATE_TYPED_TEST_SUITE_P(Sha256, LaneSuite, Sha256Family, helpers::FamilyNames);
INSTANTIATE_TYPED_TEST_SUITE_P(Sha512, KernelSuite, Sha512Family, helpers::FamilyNames);
INSTANTIATE_TYPED_TEST_SUITE_P(Sha512, LaneSuite, Sha512Family, helpers::FamilyNames);

// The examples "abc" of FIPS 180-4, which are one padded block: "abc", a one bit, zeros and the length of
// 24 bits.
template <std::size_t blockSize>
struct PaddedAbc {
    std::uint8_t block[blockSize] = {'a', 'b', 'c', 0x80};
    PaddedAbc() { block[blockSize - 1] = 24; }
};

TEST(ShaBlocks, Sha1CompressesTheExampleOfTheStandard) {
    const PaddedAbc<64> abc;
    const reference::Sha1State expected = {0xa9993e36, 0x4706816a, 0xba3e2571, 0x7850c26c, 0x9cd0d89d};
    for (const auto& candidate : helpers::RunnableCandidates<Sha1Family>()) {
        reference::Sha1State state = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476, 0xc3d2e1f0};
        candidate.function(state.data(), abc.block, 1);
        EXPECT_EQ(state, expected) << candidate.name;
    }
}

TEST(ShaBlocks, Sha256CompressesTheExampleOfTheStandard) {
    const PaddedAbc<64> abc;
    const reference::Sha256State expected = {0xba7816bf, 0x8f01cfea, 0x414140de, 0x5dae2223,
                                             0xb00361a3, 0x96177a9c, 0xb410ff61, 0xf20015ad};
    for (const auto& candidate : helpers::RunnableCandidates<Sha256Family>()) {
        reference::Sha256State state = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                        0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
        candidate.function(state.data(), abc.block, 1);
        EXPECT_EQ(state, expected) << candidate.name;
    }
}

TEST(ShaBlocks, Sha512CompressesTheExampleOfTheStandard) {
    const PaddedAbc<128> abc;
    const reference::Sha512State expected = {0xddaf35a193617aba, 0xcc417349ae204131, 0x12e6fa4e89a97ea2,
                                             0x0a9eeee64b55d39a, 0x2192992a274fc1a8, 0x36ba3c23a3feebbd,
                                             0x454d4423643ce80e, 0x2a9ac94fa54ca49f};
    for (const auto& candidate : helpers::RunnableCandidates<Sha512Family>()) {
        reference::Sha512State state = {0x6a09e667f3bcc908, 0xbb67ae8584caa73b, 0x3c6ef372fe94f82b,
                                        0xa54ff53a5f1d36f1, 0x510e527fade682d1, 0x9b05688c2b3e6c1f,
                                        0x1f83d9abfb41bd6b, 0x5be0cd19137e2179};
        candidate.function(state.data(), abc.block, 1);
        EXPECT_EQ(state, expected) << candidate.name;
    }
}

} // namespace
