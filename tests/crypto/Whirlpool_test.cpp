// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Whirlpool.h"

#include "tests/helpers/EngineSuite.h"
#include "tests/reference/Whirlpool.h"

namespace {

struct WhirlpoolFunction {
    static constexpr const char* name = "Whirlpool";
    using Engine = CCrypto_Whirlpool;
    static constexpr std::size_t digestSize = 64;
    static constexpr std::size_t readBufferSize = 1'000'000;
    static constexpr const char* sourceFile = "crypto/CCrypto_Whirlpool.cpp";
    static constexpr const char* getFromFileSignature =
        "bool __cdecl CCrypto_Whirlpool::GetFromFile(const wchar_t *,unsigned char [])";
    static constexpr int getFromFileLine = 0; // not fixed

    static bool GetFromFile(Engine& engine, const wchar_t* path, unsigned char* digest) {
        return engine.GetFromFile(path, digest);
    }
    static bool GetFromFileAsString(Engine& engine, const wchar_t* path, char* text) {
        return engine.GetFromFileAsString(path, text);
    }
    static helpers::Bytes Reference(std::span<const std::uint8_t> message) {
        return reference::Whirlpool(message);
    }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Whirlpool, EngineSuite, WhirlpoolFunction, helpers::FamilyNames);

// A deliberate quirk: the count of bits of one update is a 32-bit number with a sign, which is widened to 64 bits.
TEST(WhirlpoolStream, CountsTheBitsOfOneUpdateWithASign) {
    EXPECT_EQ(WhirlpoolStream::CountedBits(0), 0u);
    EXPECT_EQ(WhirlpoolStream::CountedBits(0x0fff'ffff), 0x7fff'fff8u);
    EXPECT_EQ(WhirlpoolStream::CountedBits(0x1000'0000), 0xffff'ffff'8000'0000u);
    EXPECT_EQ(WhirlpoolStream::CountedBits(0x1fff'ffff), 0xffff'ffff'ffff'fff8u);
    EXPECT_EQ(WhirlpoolStream::CountedBits(0x2000'0000), 0u);
    EXPECT_EQ(WhirlpoolStream::CountedBits(0x2000'0001), 8u);
}

// The standard's function with a length of our own.
struct WithLength : fyrn::hash::BlockStream<fyrn::hash::Whirlpool> {
    std::string DigestWith(std::uint64_t blocks, std::size_t bytes) {
        std::uint8_t digest[digestSize];
        Pad(blocks, bytes);
        StoreDigest(digest);
        return helpers::ToHex(digest);
    }
};

// Not inlined, since GCC 12 would warn of a tail as long as the whole.
template <class Stream>
__attribute__((noinline)) void UpdateTwice(Stream& stream, const helpers::Bytes& piece) {
    stream.Reset();
    stream.Update(piece.data(), piece.size());
    stream.Update(piece.data(), piece.size());
}

// Two updates as long: 2 * (2^64 - 2^31 + 8) bits, which also carries into the 65th bit of the length.
TEST(WhirlpoolStreamSlow, LongUpdatesAreMiscounted) {
    const helpers::Bytes piece(0x1000'0001, 'x');
    WhirlpoolStream stream;
    WithLength expected;
    UpdateTwice(stream, piece);
    UpdateTwice(expected, piece);
    std::uint8_t digest[WhirlpoolStream::digestSize];
    stream.Finish(digest);
    EXPECT_EQ(helpers::ToHex(digest),
              expected.DigestWith((std::uint64_t{1} << 56) - (std::uint64_t{1} << 23), 2));
}

// What waits in the block buffer stays there.
TEST(WhirlpoolStream, TransformCompressesTheBufferAsItIs) {
    WhirlpoolStream stream{};
    helpers::Bytes block = helpers::PseudoRandomBytes(40, 5);
    stream.Update(block.data(), block.size());
    stream.Transform();
    block.resize(64);
    std::uint64_t state[8] = {};
    fyrn::hash::Whirlpool::Compress(state, block.data(), 1);
    EXPECT_TRUE(std::equal(state, state + 8, stream.State()));
    EXPECT_EQ(stream.Length(), 40u);
}

} // namespace
