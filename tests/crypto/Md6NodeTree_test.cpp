// SPDX-License-Identifier: MIT
// MD6's tree, which is built in batches, seen node by node.
#include "tests/crypto/Md6Support.h"

#include "hash/kernels/ByteOrder.h"
#include "tests/reference/Md6Stack.h"

#include <cstring>
#include <random>

namespace {

using namespace md6_tests;

constexpr unsigned int seed = 20240606;

std::vector<bool> Bits(const Bytes& bytes, std::size_t count) {
    std::vector<bool> bits;
    for (std::size_t i = 0; i < count; ++i)
        bits.push_back((bytes[i / 8] >> (7 - i % 8) & 1) != 0);
    return bits;
}

// The members that work on single nodes see the tree of the plain algorithm, at any moment.
TEST(Md6NodeTree, MembersOnSingleNodesDoWhatTheStackDoes) {
    std::mt19937 random(seed);
    const Bytes bytes = helpers::PseudoRandomBytes(20'000, seed);
    CCrypto_Md6 engine(nullptr);
    for (int round = 0; round < 300; ++round) {
        const auto d = static_cast<unsigned short>(1 + random() % 512);
        reference::Md6Stack stack({.digestBits = d});
        engine.Initialize(d, 0);
        for (int call = 0; call < 6; ++call) {
            const auto level = static_cast<int>(random() % 5);
            const bool flag = random() % 4 == 0;
            const std::size_t count = 8 * (random() % bytes.size()) + (round % 2 == 0 ? 0 : random() % 8);
            std::vector<std::uint64_t> value;
            std::uint64_t ours[16];
            switch (random() % 4) {
            case 0: {
                const int result = engine.Md6_Process(level, flag);
                ASSERT_EQ(result, stack.Process(level, flag)) << "level " << level;
                EXPECT_EQ(helpers::ToHex({engine.HashValue(), 128}), helpers::ToHex(stack.HashValue()));
                if (result != md6Success) { // the words of level 0 did not fit into level 1
                    stack = reference::Md6Stack({.digestBits = d});
                    engine.Initialize(d, 0);
                }
                break;
            }
            case 1:
                EXPECT_EQ(engine.Md6_CompressBlock(ours, level, flag),
                          stack.CompressBlock(value, level, flag));
                EXPECT_TRUE(std::equal(value.begin(), value.end(), ours)) << "level " << level;
                break;
            default:
                engine.Md6_Update(bytes.data(), count);
                stack.Update(Bits(bytes, count));
            }
        }
        engine.Md6_Update(bytes.data(), 8);
        stack.Update(Bits(bytes, 8));
        EXPECT_EQ(engine.Md6_Final(), 0);
        EXPECT_EQ(Digest(engine, d), helpers::ToHex(stack.Final())) << "seed " << seed << ", round " << round;
    }
}

// Worked out from the compression alone: level 1 takes a chaining value as it lies in memory, and reads it as
// bytes, high-order byte first, as it reads the message.
TEST(Md6NodeTree, Level0PassesItsWordsOnAsTheyLieInMemory) {
    const auto input = [](std::uint64_t id, std::uint64_t control, const std::vector<std::uint64_t>& block) {
        std::vector<std::uint64_t> words = reference::Md6Q();
        words.resize(23); // no key
        words.push_back(id);
        words.push_back(control);
        words.insert(words.end(), block.begin(), block.end());
        words.resize(89);
        return words;
    };
    constexpr int rounds = 40 + 256 / 4;
    constexpr std::uint64_t control = std::uint64_t{rounds} << 48 | 64ull << 40 | 256;
    const auto inner = reference::Md6Compress(input(0, control | 4096ull << 20, {}), rounds);
    std::vector<std::uint64_t> block;
    for (const std::uint64_t word : inner) {
        unsigned char bytes[8];
        std::memcpy(bytes, &word, 8);
        block.push_back(fyrn::kernels::LoadBig<std::uint64_t>(bytes));
    }
    const auto root = reference::Md6Compress(
        input(std::uint64_t{1} << 56, control | 1ull << 36 | 3072ull << 20, block), rounds);

    CCrypto_Md6 engine(nullptr);
    ASSERT_EQ(engine.Initialize(256, 0), 0);
    ASSERT_EQ(engine.Md6_Process(0, true), 0);
    EXPECT_EQ(std::memcmp(engine.HashValue(), root.data(), 128), 0) << "words, not yet bytes of a digest";
}

// The stack and the reference with whole levels are two readings of the report.
TEST(Md6NodeTree, TheTwoReferencesAgree) {
    const Bytes bytes = helpers::PseudoRandomBytes(70'000, seed);
    for (const std::size_t length :
         {0u, 1u, 512u, 513u, 2048u, 2049u, 8192u, 8193u, 40'000u, 65'536u, 70'000u}) {
        reference::Md6Stack stack({.digestBits = 256});
        stack.Update(Bits(bytes, 8 * length));
        EXPECT_EQ(helpers::ToHex(stack.Final()), Expected(Message(bytes).first(length), 256)) << length;
    }
}

} // namespace
