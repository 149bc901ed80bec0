// SPDX-License-Identifier: MIT
// The tree that MD6 builds in batches is the report's, whatever the length and however the message comes.
#include "tests/crypto/Md6Support.h"

#include "hash/kernels/ByteOrder.h"
#include "tests/reference/Md6Stack.h"

#include <cstring>
#include <random>

namespace {

using namespace md6_tests;

constexpr unsigned int seed = 20240606;

// The bits from `first` on, moved to the start of a buffer; behind them, one bits that must not count.
Bytes CutBits(const Bytes& bytes, std::size_t first, std::size_t count) {
    Bytes piece((count + 7) / 8 + 1, 0xff);
    for (std::size_t i = 0; i < count; ++i)
        if ((bytes[(first + i) / 8] >> (7 - (first + i) % 8) & 1) == 0)
            piece[i / 8] = static_cast<std::uint8_t>(piece[i / 8] & ~(0x80 >> i % 8));
    return piece;
}

std::vector<bool> Bits(const Bytes& bytes, std::size_t count) {
    std::vector<bool> bits;
    for (std::size_t i = 0; i < count; ++i)
        bits.push_back((bytes[i / 8] >> (7 - i % 8) & 1) != 0);
    return bits;
}

// Lengths around every multiple of the data under one node of the lowest levels, and under eight of them.
std::vector<std::size_t> BorderLengths(std::size_t multiples) {
    std::vector<std::size_t> lengths;
    for (const std::size_t unit : {512u, 2048u, 4096u, 16384u, 65536u})
        for (std::size_t k = 1; k <= multiples; ++k)
            for (std::size_t length = k * unit - 1; length <= k * unit + 1; ++length)
                lengths.push_back(length);
    return lengths;
}

void ExpectTree(const Bytes& bytes, std::size_t length, unsigned short d, const Bytes& key,
                CCrypto_Md6& engine) {
    ASSERT_EQ(engine.Initialize(d, 0), 0);
    ASSERT_EQ(engine.Md6_Update(bytes.data(), 8 * length), 0);
    ASSERT_EQ(engine.Md6_Final(), 0);
    EXPECT_EQ(Digest(engine, d), Expected(Message(bytes).first(length), d, key))
        << length << " bytes, " << d << " bits, key of " << key.size();
}

void ExpectBorderLengths(std::size_t multiples, std::span<const unsigned short> sizes) {
    const helpers::ScratchFiles files;
    const Bytes bytes = helpers::PseudoRandomBytes(65536 * multiples + 1, seed);
    const Bytes key = helpers::BytesOf("abcde12345");
    CCrypto_Md6 plain(nullptr), keyed(nullptr);
    keyed.SetSalt_FromFile(files.Write("salt", key).c_str(), EnumSaltType::None);
    for (const std::size_t length : BorderLengths(multiples))
        for (const unsigned short d : sizes) {
            ExpectTree(bytes, length, d, {}, plain);
            ExpectTree(bytes, length, d, key, keyed);
        }
}

TEST(Md6Tree, LengthsAroundTheBordersOfNodesAndBatches) {
    ExpectBorderLengths(4, std::initializer_list<unsigned short>{256});
}

TEST(Md6TreeSlow, LengthsAroundTheBordersOfNodesAndBatchesForAllSizes) {
    ExpectBorderLengths(9, digestSizes);
}

TEST(Md6Tree, EverySplitOf260BytesIntoTwoUpdates) {
    const Bytes bytes = helpers::PseudoRandomBytes(260, seed);
    CCrypto_Md6 engine(nullptr);
    for (std::size_t length = 0; length <= bytes.size(); ++length) {
        const std::string expected = Expected(Message(bytes).first(length), 256);
        for (std::size_t first = 0; first <= length; ++first) {
            engine.Initialize(256, 0);
            engine.Md6_Update(bytes.data(), 8 * first);
            engine.Md6_Update(bytes.data() + first, 8 * (length - first));
            engine.Md6_Final();
            EXPECT_EQ(Digest(engine, 256), expected) << first << " of " << length;
        }
    }
}

TEST(Md6Tree, WholeBytesInRandomPieces) {
    std::mt19937 random(seed);
    const Bytes bytes = helpers::PseudoRandomBytes(100'000, seed);
    CCrypto_Md6 engine(nullptr);
    for (int round = 0; round < 60; ++round) {
        const std::size_t length = random() % bytes.size();
        const std::size_t longest = round % 2 == 0 ? 1500 : 40'000;
        engine.Initialize(256, 0);
        for (std::size_t position = 0; position < length;) {
            const std::size_t piece = std::min<std::size_t>(random() % longest, length - position);
            ASSERT_EQ(engine.Md6_Update(bytes.data() + position, 8 * piece), 0);
            position += piece;
        }
        engine.Md6_Final();
        EXPECT_EQ(Digest(engine, 256), Expected(Message(bytes).first(length), 256))
            << "seed " << seed << ", round " << round;
    }
}

TEST(Md6Tree, AnyNumberOfBits) {
    const Bytes bytes = helpers::PseudoRandomBytes(520, seed);
    CCrypto_Md6 engine(nullptr);
    for (std::size_t count = 0; count <= 4150; ++count) {
        engine.Initialize(224, 0);
        const Bytes message = CutBits(bytes, 0, count);
        engine.Md6_Update(message.data(), count);
        engine.Md6_Final();
        EXPECT_EQ(Digest(engine, 224), helpers::ToHex(reference::Md6(bytes, count, {.digestBits = 224})))
            << count;
    }
}

TEST(Md6Tree, BitsInRandomPieces) {
    std::mt19937 random(seed);
    const Bytes bytes = helpers::PseudoRandomBytes(30'000, seed);
    CCrypto_Md6 engine(nullptr);
    for (int round = 0; round < 60; ++round) {
        const std::size_t count = random() % (8 * bytes.size());
        const std::size_t longest = round % 3 == 0 ? 50 : 50'000;
        engine.Initialize(256, 0);
        for (std::size_t position = 0; position < count;) {
            const std::size_t piece = std::min<std::size_t>(random() % longest, count - position);
            ASSERT_EQ(engine.Md6_Update(CutBits(bytes, position, piece).data(), piece), 0);
            position += piece;
        }
        engine.Md6_Final();
        EXPECT_EQ(Digest(engine, 256), helpers::ToHex(reference::Md6(bytes, count, {.digestBits = 256})))
            << "seed " << seed << ", round " << round << ", " << count << " bits";
    }
}

// The members that work on single nodes see the tree of the plain algorithm, at any moment.
TEST(Md6Tree, MembersOnSingleNodesDoWhatTheStackDoes) {
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
TEST(Md6Tree, Level0PassesItsWordsOnAsTheyLieInMemory) {
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
TEST(Md6Tree, TheTwoReferencesAgree) {
    const Bytes bytes = helpers::PseudoRandomBytes(70'000, seed);
    for (const std::size_t length :
         {0u, 1u, 512u, 513u, 2048u, 2049u, 8192u, 8193u, 40'000u, 65'536u, 70'000u}) {
        reference::Md6Stack stack({.digestBits = 256});
        stack.Update(Bits(bytes, 8 * length));
        EXPECT_EQ(helpers::ToHex(stack.Final()), Expected(Message(bytes).first(length), 256)) << length;
    }
}

} // namespace
