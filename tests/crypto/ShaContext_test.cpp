// SPDX-License-Identifier: MIT
// SHA-1 and SHA-2 of messages in pieces, with block counts that no test could reach by hashing.
#include "crypto/CCrypto_Sha_Context.h"

#include "tests/helpers/Bytes.h"
#include "tests/reference/Sha.h"

#include <gtest/gtest.h>

namespace sha {

struct ContextPeer {
    template <class Function>
    static void SetCompressed(Context<Function>& context, typename Function::BlockCount count) {
        context.compressed_ = count;
    }
    // Fills the block buffer without compressing it, as an update never leaves it.
    template <class Function>
    static void FillBuffer(Context<Function>& context, std::span<const std::uint8_t> block) {
        std::copy(block.begin(), block.end(), context.buffer_);
        context.fill_ = block.size();
    }
    template <class Function>
    static std::size_t Fill(const Context<Function>& context) {
        return context.fill_;
    }
};

} // namespace sha

namespace {

using helpers::Bytes;

template <class Function>
std::string Finished(sha::Context<Function>& context) {
    unsigned char digest[Function::digestSize];
    context.Finalize(digest);
    return helpers::ToHex(digest);
}

template <class Function>
std::string InTwoUpdates(std::span<const std::uint8_t> message, std::size_t split) {
    sha::Context<Function> context;
    context.Reset();
    context.Update(message.data(), split);
    context.Update(message.data() + split, message.size() - split);
    return Finished(context);
}

TEST(ShaContext, EverySplitIntoTwoUpdatesGivesTheSameDigest) {
    for (std::size_t length = 0; length <= 260; ++length) {
        Bytes message = helpers::PseudoRandomBytes(length, 1);
        message.reserve(1); // so that the empty message has an address
        const std::string expected[] = {
            helpers::ToHex(reference::Sha1(message)), helpers::ToHex(reference::Sha256(message)),
            helpers::ToHex(reference::Sha384(message)), helpers::ToHex(reference::Sha512(message))};
        for (std::size_t split = 0; split <= length; ++split) {
            ASSERT_EQ(InTwoUpdates<sha::Sha1>(message, split), expected[0]) << length << " at " << split;
            ASSERT_EQ(InTwoUpdates<sha::Sha256>(message, split), expected[1]) << length << " at " << split;
            ASSERT_EQ(InTwoUpdates<sha::Sha384>(message, split), expected[2]) << length << " at " << split;
            ASSERT_EQ(InTwoUpdates<sha::Sha512>(message, split), expected[3]) << length << " at " << split;
        }
    }
}

TEST(ShaContext, ByteForByteGivesTheSameDigest) {
    const Bytes message = helpers::PseudoRandomBytes(500, 2);
    sha::Context<sha::Sha384> context;
    context.Reset();
    for (const std::uint8_t& byte : message)
        context.Update(&byte, 1);
    EXPECT_EQ(Finished(context), helpers::ToHex(reference::Sha384(message)));
}

TEST(ShaContext, UpdateWithoutDataCompressesAFullBuffer) {
    const Bytes message = helpers::PseudoRandomBytes(64, 3);
    sha::Context<sha::Sha256> context;
    context.Reset();
    sha::ContextPeer::FillBuffer(context, message);
    context.Update(nullptr, 0);
    EXPECT_EQ(sha::ContextPeer::Fill(context), 0u);
    EXPECT_EQ(Finished(context), helpers::ToHex(reference::Sha256(message)));
}

TEST(ShaContext, UpdateWithoutDataLeavesAPartOfABlockAlone) {
    const Bytes message = helpers::PseudoRandomBytes(63, 3);
    sha::Context<sha::Sha256> context;
    context.Reset();
    context.Update(message.data(), message.size());
    context.Update(nullptr, 5);
    EXPECT_EQ(sha::ContextPeer::Fill(context), 63u);
    EXPECT_EQ(Finished(context), helpers::ToHex(reference::Sha256(message)));
}

TEST(ShaContext, FullBufferIsCompressedByTheNextUpdateOrByTheFinaliser) {
    const Bytes message = helpers::PseudoRandomBytes(150, 4);
    sha::Context<sha::Sha512> context;
    context.Reset();
    sha::ContextPeer::FillBuffer(context, std::span(message).first(128));
    context.Update(message.data() + 128, 22);
    EXPECT_EQ(Finished(context), helpers::ToHex(reference::Sha512(message)));

    context.Reset();
    sha::ContextPeer::FillBuffer(context, std::span(message).first(128));
    EXPECT_EQ(Finished(context), helpers::ToHex(reference::Sha512(std::span(message).first(128))));
}

// The digest of `blocks` blocks and a rest when `before` blocks are counted before them.
template <class Function>
std::string WithBlocksBefore(typename Function::BlockCount before, std::span<const std::uint8_t> message) {
    sha::Context<Function> context;
    context.Reset();
    sha::ContextPeer::SetCompressed(context, before);
    context.Update(message.data(), message.size());
    return Finished(context);
}

// The 32-bit count of blocks wraps, and the length that is hashed with it: a deliberate departure from the
// standard for files of 256 GiB and more.
TEST(ShaContext, BlockCountOfSha1AndSha256WrapsAtTwoToThe32) {
    for (std::uint32_t distance = 0; distance <= 4; ++distance) {
        const std::uint32_t before = 0u - distance;
        const Bytes message = helpers::PseudoRandomBytes(2 * 64 + 17, distance);
        const std::uint64_t length = std::uint64_t{before + 2u} * 64 + 17;
        EXPECT_EQ(WithBlocksBefore<sha::Sha1>(before, message),
                  helpers::ToHex(reference::Sha1WithLength(message, length)));
        EXPECT_EQ(WithBlocksBefore<sha::Sha256>(before, message),
                  helpers::ToHex(reference::Sha256WithLength(message, length)));
    }
    EXPECT_LT(std::uint64_t{std::uint32_t{0u - 1u} + 2u} * 64, 64u * 2) << "the count has wrapped";
}

// Below the wrap the length takes all of its 41 bits.
TEST(ShaContext, LengthJustBelowTheWrapIsTheStandards) {
    const Bytes message = helpers::PseudoRandomBytes(64 + 63, 1);
    const std::uint64_t length = 0xffffffffull * 64 + 63;
    EXPECT_EQ(WithBlocksBefore<sha::Sha256>(0xfffffffe, message),
              helpers::ToHex(reference::Sha256WithLength(message, length)));
}

// 2^54 blocks of 2^10 bits reach into the upper half of the length field.
TEST(ShaContext, LengthOfSha512Has128Bits) {
    reference::Sha512State state = {0x6a09e667f3bcc908, 0xbb67ae8584caa73b, 0x3c6ef372fe94f82b,
                                    0xa54ff53a5f1d36f1, 0x510e527fade682d1, 0x9b05688c2b3e6c1f,
                                    0x1f83d9abfb41bd6b, 0x5be0cd19137e2179};
    std::uint8_t block[128] = {0x77, 0x80};
    block[118] = 0x02; // 2^(54 + 3) blocks: bit 67 of the length, and
    block[119] = 0x08; // 2^63 blocks: bit 73
    block[127] = 8;
    reference::Sha512Compress(state, block);
    const std::uint8_t message[] = {0x77};
    const std::string digest =
        WithBlocksBefore<sha::Sha512>(std::uint64_t{1} << 63 | std::uint64_t{1} << 57, message);
    for (std::size_t i = 0; i < 64; ++i)
        EXPECT_EQ(std::stoul(digest.substr(2 * i, 2), nullptr, 16),
                  state[i / 8] >> (56 - 8 * (i % 8)) & 0xff);
}

TEST(ShaContext, ResetForgetsTheMessageBefore) {
    const Bytes message = helpers::PseudoRandomBytes(200, 1);
    sha::Context<sha::Sha1> context;
    context.Reset();
    context.Update(message.data(), message.size());
    context.Reset();
    context.Update(message.data(), 100);
    EXPECT_EQ(Finished(context), helpers::ToHex(reference::Sha1(std::span(message).first(100))));
}

} // namespace
