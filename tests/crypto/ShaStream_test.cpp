// SPDX-License-Identifier: MIT
// The lengths that SHA-1 and SHA-2 hash at the end, with block counts that no test could reach by hashing.
#include "crypto/ShaStream.h"

#include "tests/helpers/Bytes.h"
#include "tests/reference/Sha.h"

#include <gtest/gtest.h>

namespace {

// The digest of a message when `before` blocks are counted before it.
template <class Stream>
struct Counted : Stream {
    static std::string Digest(std::uint64_t before, std::span<const std::uint8_t> message) {
        Counted stream;
        stream.Reset();
        stream.blocks_ = before;
        stream.Update(message.data(), message.size());
        std::uint8_t digest[Stream::digestSize];
        stream.Finish(digest);
        return helpers::ToHex(digest);
    }
};

// The 32-bit count of blocks wraps, and the length that is hashed with it: a deliberate departure from the
// standard for files of 256 GiB and more.
TEST(ShaStream, BlockCountOfSha1AndSha256WrapsAtTwoToThe32) {
    for (std::uint32_t distance = 0; distance <= 4; ++distance) {
        const std::uint32_t before = 0u - distance;
        const helpers::Bytes message = helpers::PseudoRandomBytes(2 * 64 + 17, distance);
        const std::uint64_t length = std::uint64_t{before + 2u} * 64 + 17;
        EXPECT_EQ(Counted<sha::Sha1Stream>::Digest(before, message),
                  helpers::ToHex(reference::Sha1WithLength(message, length)));
        EXPECT_EQ(Counted<sha::Sha256Stream>::Digest(before, message),
                  helpers::ToHex(reference::Sha256WithLength(message, length)));
    }
    EXPECT_LT(std::uint64_t{std::uint32_t{0u - 1u} + 2u} * 64, 64u * 2) << "the count has wrapped";
}

// Below the wrap the length takes all of its 41 bits.
TEST(ShaStream, LengthJustBelowTheWrapIsTheStandards) {
    const helpers::Bytes message = helpers::PseudoRandomBytes(64 + 63, 1);
    const std::uint64_t length = 0xffffffffull * 64 + 63;
    EXPECT_EQ(Counted<sha::Sha1Stream>::Digest(0xfffffffe, message),
              helpers::ToHex(reference::Sha1WithLength(message, length)));
    EXPECT_EQ(Counted<sha::Sha256Stream>::Digest(0xfffffffe, message),
              helpers::ToHex(reference::Sha256WithLength(message, length)));
}

// 2^32 blocks of 2^10 bits: a count of 32 bits would lose them.
TEST(ShaStream, BlockCountOfSha512HasNoSuchWrap) {
    const helpers::Bytes message = helpers::PseudoRandomBytes(128 + 17, 2);
    const std::uint64_t before = (std::uint64_t{1} << 32) + 5;
    const std::uint64_t bits = (before + 1) * 1024 + 17 * 8;
    const helpers::Bytes sha512 = reference::Sha512WithLength(message, 0, bits);
    EXPECT_EQ(Counted<sha::Sha512Stream>::Digest(before, message), helpers::ToHex(sha512));
    EXPECT_NE(Counted<sha::Sha384Stream>::Digest(before, message),
              Counted<sha::Sha384Stream>::Digest(5, message));
}

} // namespace
