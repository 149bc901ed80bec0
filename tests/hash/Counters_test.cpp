// SPDX-License-Identifier: MIT
// Streams that start in the middle of a message too long to be hashed: with counts beyond 2^32 and 2^61 bytes. What they
// compress follows the references; the blocks before left the state as it is.
#include "hash/Blake2bStream.h"
#include "hash/BlockAlgorithms.h"
#include "hash/BlockStream.h"
#include "hash/Md6Tree.h"
#include "hash/SkeinStream.h"
#include "tests/helpers/Bytes.h"
#include "tests/reference/Blake2b.h"
#include "tests/reference/Md4.h"
#include "tests/reference/Md5.h"
#include "tests/reference/Md6.h"
#include "tests/reference/Sha.h"
#include "tests/reference/Skein.h"
#include "tests/reference/Tiger.h"
#include "tests/reference/Whirlpool.h"

#include <gtest/gtest.h>

namespace {

using namespace fyrn::hash;
using helpers::Bytes;
using Message = std::span<const std::uint8_t>;

template <class Stream>
std::string Digest(Stream& stream, Message message, std::size_t digestSize) {
    Bytes digest(digestSize);
    stream.Update(message.data(), message.size());
    stream.Finish(digest.data());
    return helpers::ToHex(digest);
}

// Numbers of bytes, each a multiple of every block size.
constexpr std::uint64_t starts[] = {
    0,
    (std::uint64_t{1} << 32) - 128,
    std::uint64_t{1} << 32,
    std::uint64_t{1} << 38, // 2^32 blocks of 64 bytes
    (std::uint64_t{1} << 61) - 128,
    std::uint64_t{1} << 61,
    (std::uint64_t{1} << 61) + (std::uint64_t{1} << 33),
    0u - std::uint64_t{512},
};

template <class Algorithm>
struct Counted : BlockStream<Algorithm> {
    explicit Counted(std::uint64_t blocks) {
        this->Reset();
        this->blocks_ = blocks;
    }
};

// With lengths that end in the last block, before it and behind it.
template <class Algorithm, class Reference>
void ExpectCount(const char* name, Reference reference) {
    const Bytes bytes = helpers::PseudoRandomBytes(300, 9);
    for (const std::uint64_t start : starts)
        for (const std::size_t length : {0u, 17u, 60u, 64u, 130u, 250u, 300u}) {
            Counted<Algorithm> stream(start / Algorithm::blockSize);
            const Message message = Message(bytes).first(length);
            Bytes expected = reference(message, start + length);
            expected.resize(Algorithm::digestSize);
            EXPECT_EQ(Digest(stream, message, Algorithm::digestSize), helpers::ToHex(expected))
                << name << ", " << length << " bytes after " << start;
        }
}

// Beyond 2^61 bytes the length in bits is taken modulo 2^64.
TEST(Counters, LengthsOf64BitsAreModulo) {
    ExpectCount<Md4>("MD4", reference::Md4WithLength);
    ExpectCount<Md5>("MD5", reference::Md5WithLength);
    ExpectCount<Sha1>("SHA-1", reference::Sha1WithLength);
    ExpectCount<Sha256>("SHA-256", reference::Sha256WithLength);
    ExpectCount<Tiger1<24>>("Tiger", [](Message message, std::uint64_t length) {
        return reference::Tiger(message, reference::tiger1Padding, length);
    });
    ExpectCount<Tiger2<16>>("Tiger2", [](Message message, std::uint64_t length) {
        return reference::Tiger(message, reference::tiger2Padding, length);
    });
}

TEST(Counters, Sha512AndWhirlpoolGoOnBeyond64Bits) {
    ExpectCount<Sha512>("SHA-512", [](Message message, std::uint64_t length) {
        return reference::Sha512WithLength(message, length >> 61, length << 3);
    });
    ExpectCount<Whirlpool>("Whirlpool", [](Message message, std::uint64_t length) {
        std::array<std::uint8_t, 32> bits{};
        bits[23] = static_cast<std::uint8_t>(length >> 61);
        for (std::size_t i = 0; i < 8; ++i)
            bits[31 - i] = static_cast<std::uint8_t>(length << 3 >> 8 * i);
        return reference::WhirlpoolOfBits(message, 8 * message.size(), bits);
    });
}

// As many blocks as a count of 64 bits holds: 2^71 bytes of SHA-512.
TEST(Counters, Sha512CountsAllBlocks) {
    const Bytes message = helpers::PseudoRandomBytes(100, 10);
    Counted<Sha512> stream(~std::uint64_t{0});
    EXPECT_EQ(Digest(stream, message, 64),
              helpers::ToHex(reference::Sha512WithLength(message, 0x3ff, (0u - std::uint64_t{1024}) + 800)));
}

struct CountedBlake2b : Blake2bStream {
    explicit CountedBlake2b(std::uint64_t low, std::uint64_t high) : Blake2bStream(64) {
        state_.counter[0] = low;
        state_.counter[1] = high;
    }
};

TEST(Counters, Blake2bCarriesInto128Bits) {
    const Bytes bytes = helpers::PseudoRandomBytes(1000, 11);
    for (const std::uint64_t start : starts)
        for (const std::uint64_t high : {0u, 1u}) {
            CountedBlake2b stream(start, high);
            EXPECT_EQ(Digest(stream, bytes, 64),
                      helpers::ToHex(reference::Blake2b(bytes, 64, {}, {.low = start, .high = high})))
                << start << " and " << high;
        }
}

template <std::size_t words>
struct CountedSkein : SkeinStream<words> {
    explicit CountedSkein(std::uint64_t position) {
        this->Reset();
        this->State()->tweak[0] = position;
    }
};

template <std::size_t words>
void ExpectPosition() {
    const Bytes bytes = helpers::PseudoRandomBytes(400, 12);
    for (const std::uint64_t start : starts) {
        CountedSkein<words> stream(start);
        EXPECT_EQ(Digest(stream, bytes, 8 * words),
                  helpers::ToHex(reference::Skein(bytes, 8 * words, 8 * words, start)))
            << words << " words after " << start;
    }
}

TEST(Counters, SkeinCountsIn64Bits) {
    ExpectPosition<4>();
    ExpectPosition<8>();
    ExpectPosition<16>();
}

struct CountedMd6 : Md6Tree {
    explicit CountedMd6(std::uint64_t nodes) : Md6Tree(256) {
        for (; nodes != 0; nodes -= std::uint64_t{1} << 31)
            levels_[1].CountNodes(std::uint32_t{1} << 31);
    }
};

// One padded node, compressed as number `index` of its level.
std::vector<std::uint64_t> RootWithIndex(const Bytes& message, std::uint64_t index) {
    std::vector<std::uint64_t> input = reference::Md6Q();
    input.resize(input.size() + 8); // no key
    input.push_back((std::uint64_t{1} << 56) + index);
    const std::uint64_t padding = 4096 - 8 * message.size();
    input.push_back(std::uint64_t{104} << 48 | std::uint64_t{64} << 40 | std::uint64_t{1} << 36 |
                    padding << 20 | 256);
    Bytes block = message;
    block.resize(512);
    for (std::size_t i = 0; i < block.size(); i += 8) {
        std::uint64_t word = 0;
        for (std::size_t byte = 0; byte < 8; ++byte)
            word = word << 8 | block[i + byte];
        input.push_back(word);
    }
    return reference::Md6Compress(input, 104);
}

TEST(Counters, NodesOfMd6AreNumberedBeyond32Bits) {
    const Bytes message = helpers::PseudoRandomBytes(300, 13);
    for (const std::uint64_t index : {std::uint64_t{0}, std::uint64_t{1} << 32, std::uint64_t{3} << 32}) {
        CountedMd6 tree(index);
        const std::vector<std::uint64_t> root = RootWithIndex(message, index);
        Bytes expected;
        for (std::size_t i = 12; i < 16; ++i)
            for (unsigned int shift = 64; shift != 0; shift -= 8)
                expected.push_back(static_cast<std::uint8_t>(root[i] >> (shift - 8)));
        EXPECT_EQ(Digest(tree, message, 32), helpers::ToHex(expected)) << index;
    }
}

} // namespace
