// SPDX-License-Identifier: MIT
#include "tests/reference/Whirlpool.h"

#include "hash/kernels/WhirlpoolTables.h"
#include "tests/helpers/KernelSuite.h"

namespace {

struct WhirlpoolFamily {
    static constexpr const char* name = "Whirlpool";
    using State = std::array<std::uint64_t, 8>;
    static constexpr std::size_t blockSize = 64;
    static constexpr std::size_t maxBlocks = 20;
    static auto Candidates() { return fyrn::kernels::KernelCandidates().whirlpool; }
    static void Run(fyrn::kernels::WhirlpoolBlocks* kernel, State& state, const std::uint8_t* blocks,
                    std::size_t count) {
        kernel(state.data(), blocks, count);
    }
    static void Reference(State& state, const std::uint8_t* blocks, std::size_t count) {
        reference::WhirlpoolMatrix matrix;
        for (std::size_t i = 0; i < 64; ++i)
            matrix[i / 8][i % 8] = static_cast<std::uint8_t>(state[i / 8] >> (56 - 8 * (i % 8)));
        for (; count != 0; --count, blocks += blockSize)
            reference::WhirlpoolCompress(matrix, std::span<const std::uint8_t, blockSize>(blocks, blockSize));
        state.fill(0);
        for (std::size_t i = 0; i < 64; ++i)
            state[i / 8] = state[i / 8] << 8 | matrix[i / 8][i % 8];
    }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Whirlpool, KernelSuite, WhirlpoolFamily, helpers::FamilyNames);

// The padded empty message, from the test vectors of ISO/IEC 10118-3.
TEST(WhirlpoolBlocks, CompressThePaddedEmptyMessage) {
    for (const auto& candidate : helpers::RunnableCandidates<WhirlpoolFamily>()) {
        WhirlpoolFamily::State state{};
        const std::uint8_t block[64] = {0x80};
        candidate.function(state.data(), block, 1);
        EXPECT_EQ(state, (WhirlpoolFamily::State{0x19FA61D75522A466, 0x9B44E39C1D2E1726, 0xC530232130D407F8,
                                                 0x9AFEE0964997F7A7, 0x3E83BE698B288FEB, 0xCF88E3E03C4F0757,
                                                 0xEA8964E59B63D937, 0x08B138CC42A66EB3}))
            << candidate.name;
    }
}

// The product of polynomials first, and its remainder by long division then.
unsigned int ProductInTheField(unsigned int a, unsigned int b) {
    unsigned int product = 0;
    for (unsigned int bit = 0; bit < 8; ++bit)
        product ^= (b >> bit & 1) * (a << bit);
    for (unsigned int bit = 15; bit >= 8; --bit)
        product ^= (product >> bit & 1) * (0x11Du << (bit - 8));
    return product;
}

TEST(WhirlpoolTables, ProductsAreThoseOfTheField) {
    for (unsigned int a = 0; a < 256; ++a) {
        for (unsigned int b = 0; b < 256; ++b)
            ASSERT_EQ(fyrn::kernels::whirlpool::Multiply(a, b), ProductInTheField(a, b))
                << a << " times " << b;
    }
}

TEST(WhirlpoolTables, BeginAsPublished) {
    constexpr auto tables = fyrn::kernels::whirlpool::DeriveTables();
    EXPECT_EQ(tables[0][0], 0x18186018C07830D8u);
    EXPECT_EQ(tables[0][1], 0x23238C2305AF4626u);
    EXPECT_EQ(tables[1][0], 0xD818186018C07830u);
    EXPECT_EQ(tables[7][255], std::rotr(tables[0][255], 56));
}

TEST(WhirlpoolTables, SBoxIsAPermutationThatBeginsAsPublished) {
    constexpr auto box = fyrn::kernels::whirlpool::DeriveSBox();
    EXPECT_EQ(helpers::ToHex(std::span(box).first(16)), "1823c6e887b8014f36a6d2f5796f9152");
    helpers::Bytes sorted(box.begin(), box.end());
    std::sort(sorted.begin(), sorted.end());
    for (std::size_t i = 0; i < 256; ++i) {
        EXPECT_EQ(sorted[i], i);
        EXPECT_EQ(box[i], reference::WhirlpoolSBox(static_cast<std::uint8_t>(i))) << i;
    }
}

TEST(WhirlpoolTables, RoundConstantsAreTheStartOfTheSBox) {
    constexpr auto constants = fyrn::kernels::whirlpool::DeriveRoundConstants();
    EXPECT_EQ(constants[0], 0x1823C6E887B8014Fu);
    EXPECT_EQ(constants[1], 0x36A6D2F5796F9152u);
    EXPECT_EQ(constants[9], 0xCA2DBF07AD5A8333u);
}

} // namespace
