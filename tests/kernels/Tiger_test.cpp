// SPDX-License-Identifier: MIT
#include "tests/reference/Tiger.h"

#include "hash/kernels/ByteOrder.h"
#include "tests/helpers/KernelSuite.h"
#include "tests/helpers/LaneSuite.h"

namespace {

struct TigerFamily {
    static constexpr const char* name = "Tiger";
    using State = reference::TigerState;
    static constexpr std::size_t blockSize = 64;
    static constexpr std::size_t maxBlocks = 40;
    static auto Candidates() { return fyrn::kernels::KernelCandidates().tiger; }
    static void Run(fyrn::kernels::TigerBlocks* kernel, State& state, const std::uint8_t* blocks,
                    std::size_t count) {
        kernel(state.data(), blocks, count);
    }
    static void Reference(State& state, const std::uint8_t* blocks, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i)
            reference::TigerCompress(state, blocks + 64 * i);
    }
    static auto LaneCandidates() { return fyrn::kernels::LaneKernels().tiger; }
    static void RunLanes(const auto& candidate, State* const states[], const std::uint8_t* const blocks[],
                         std::size_t count) {
        helpers::RunLanes(candidate, states, blocks, count);
    }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Tiger, KernelSuite, TigerFamily, helpers::FamilyNames);
INSTANTIATE_TYPED_TEST_SUITE_P(Tiger, LaneSuite, TigerFamily, helpers::FamilyNames);

// The first and last entries of the tables that the authors published.
TEST(TigerBoxes, BeginAndEndAsPublished) {
    const fyrn::kernels::TigerBoxes& boxes = fyrn::kernels::TigerSBoxes();
    EXPECT_EQ(boxes.box[0][0], 0x02aab17cf7e90c5eu);
    EXPECT_EQ(boxes.box[0][1], 0xac424b03e243a8ecu);
    EXPECT_EQ(boxes.box[3][254], 0xc83223f1720aef96u);
    EXPECT_EQ(boxes.box[3][255], 0xc3a0396f7363a51fu);
}

TEST(TigerBoxes, AreThoseOfTheAuthorsProgram) {
    for (std::size_t box = 0; box < 4; ++box)
        for (std::size_t i = 0; i < 256; ++i)
            EXPECT_EQ(fyrn::kernels::TigerSBoxes().box[box][i], reference::TigerSBox(box, i))
                << box << " " << i;
}

// The padded empty message; digest from the NESSIE test vectors of Tiger.
TEST(TigerBlocks, CompressesThePaddedEmptyMessage) {
    for (const auto& candidate : helpers::RunnableCandidates<TigerFamily>()) {
        reference::TigerState state = reference::tigerInitialState;
        const std::uint8_t block[64] = {0x01};
        candidate.function(state.data(), block, 1);
        std::uint8_t digest[24];
        for (std::size_t i = 0; i < 3; ++i)
            fyrn::kernels::StoreLittle(digest + 8 * i, state[i]);
        EXPECT_EQ(helpers::ToHex(digest), "3293ac630c13f0245f92bbb1766e16167a4e58492dde73f3")
            << candidate.name;
    }
}

} // namespace
