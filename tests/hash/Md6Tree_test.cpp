// SPDX-License-Identifier: MIT
// What MD6's tree can do beyond its functions in the table: keys, digests of any number of bits, and messages of any
// number of bits. It works in batches, so lengths around their borders count.
#include "hash/Md6Tree.h"

#include "tests/helpers/Bytes.h"
#include "tests/reference/Md6.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

using fyrn::hash::Md6Tree;
using helpers::Bytes;
using Message = std::span<const std::uint8_t>;

constexpr unsigned int seed = 20240606;

std::string Finish(Md6Tree& tree, unsigned int digestBits) {
    Bytes digest((digestBits + 7) / 8 + 1, 0xa5);
    tree.Finish(digest.data());
    EXPECT_EQ(digest.back(), 0xa5);
    digest.pop_back();
    return helpers::ToHex(digest);
}

std::string Expected(const Bytes& bytes, std::size_t bitCount, unsigned int digestBits,
                     const Bytes& key = {}) {
    return helpers::ToHex(
        reference::Md6(bytes, bitCount, {.digestBits = static_cast<int>(digestBits), .key = key}));
}

// The bits from `first` on, moved to the start of a buffer; behind them, one bits that must not count.
Bytes CutBits(const Bytes& bytes, std::size_t first, std::size_t count) {
    Bytes piece((count + 7) / 8 + 1, 0xff);
    for (std::size_t i = 0; i < count; ++i)
        if ((bytes[(first + i) / 8] >> (7 - (first + i) % 8) & 1) == 0)
            piece[i / 8] = static_cast<std::uint8_t>(piece[i / 8] & ~(0x80 >> i % 8));
    return piece;
}

// Lengths around every multiple of the data under one node of the lowest levels, and under eight of them.
void ExpectBorderLengths(std::size_t multiples, std::initializer_list<unsigned int> digestSizes) {
    const Bytes bytes = helpers::PseudoRandomBytes(65536 * multiples + 1, seed);
    for (const unsigned int digestBits : digestSizes)
        for (const Bytes& key : {Bytes(), helpers::BytesOf("abcde12345")}) {
            Md6Tree tree(digestBits, key.data(), key.size());
            for (const std::size_t unit : {512u, 2048u, 4096u, 16384u, 65536u})
                for (std::size_t k = 1; k <= multiples; ++k)
                    for (std::size_t length = k * unit - 1; length <= k * unit + 1; ++length) {
                        tree.Reset();
                        tree.Update(bytes.data(), length);
                        EXPECT_EQ(Finish(tree, digestBits), Expected(bytes, 8 * length, digestBits, key))
                            << length << " bytes, " << digestBits << " bits, key of " << key.size();
                    }
        }
}

TEST(Md6Tree, LengthsAroundTheBordersOfNodesAndBatches) {
    ExpectBorderLengths(4, {256});
}

TEST(Md6TreeSlow, LengthsAroundTheBordersOfNodesAndBatchesForAllSizes) {
    ExpectBorderLengths(9, {128, 160, 192, 224, 256, 384, 512});
}

TEST(Md6Tree, EveryDigestSizeFrom1To512Bits) {
    const Bytes bytes = helpers::PseudoRandomBytes(1500, 2);
    Md6Tree tree(1);
    for (unsigned int digestBits = 1; digestBits <= 512; ++digestBits) {
        tree.Begin(digestBits, nullptr, 0);
        tree.Update(bytes.data(), bytes.size());
        EXPECT_EQ(Finish(tree, digestBits), Expected(bytes, 8 * bytes.size(), digestBits)) << digestBits;
    }
}

TEST(Md6Tree, KeysOfEveryLength) {
    const Bytes bytes = helpers::PseudoRandomBytes(600, 3);
    for (std::size_t size = 0; size <= 64; ++size) {
        const Bytes key = helpers::PseudoRandomBytes(size, size);
        Md6Tree tree(128, key.data(), size);
        tree.Update(bytes.data(), bytes.size());
        EXPECT_EQ(Finish(tree, 128), Expected(bytes, 8 * bytes.size(), 128, key)) << size;
    }
}

TEST(Md6Tree, AnyNumberOfBits) {
    const Bytes bytes = helpers::PseudoRandomBytes(520, seed);
    Md6Tree tree(224);
    for (std::size_t count = 0; count <= 4150; ++count) {
        const Bytes message = CutBits(bytes, 0, count);
        tree.Reset();
        tree.UpdateBits(message.data(), count);
        EXPECT_EQ(Finish(tree, 224), Expected(bytes, count, 224)) << count;
    }
}

TEST(Md6Tree, BitsInRandomPieces) {
    std::mt19937 random(seed);
    const Bytes bytes = helpers::PseudoRandomBytes(30'000, seed);
    Md6Tree tree(256);
    for (int round = 0; round < 60; ++round) {
        const std::size_t count = random() % (8 * bytes.size());
        const std::size_t longest = round % 3 == 0 ? 50 : 50'000;
        tree.Reset();
        for (std::size_t position = 0; position < count;) {
            const std::size_t piece = std::min<std::size_t>(random() % longest, count - position);
            tree.UpdateBits(CutBits(bytes, position, piece).data(), piece);
            position += piece;
        }
        EXPECT_EQ(Finish(tree, 256), Expected(bytes, count, 256))
            << "seed " << seed << ", round " << round << ", " << count << " bits";
    }
}

} // namespace
