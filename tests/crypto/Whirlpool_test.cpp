// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Whirlpool.h"

#include "tests/helpers/EngineSuite.h"
#include "tests/helpers/WhirlpoolTestPeer.h"
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

// The digest of pieces fed one after the other.
helpers::Bytes DigestOf(std::initializer_list<std::span<const std::uint8_t>> pieces) {
    CCrypto_Whirlpool engine(nullptr);
    for (const auto piece : pieces)
        engine.AddDataBlock(piece.data(), static_cast<int>(piece.size()));
    engine.Finalize();
    return WhirlpoolTestPeer::Digest(engine);
}

TEST(Whirlpool, EmptyFileGivesTheStandardDigestOfTheEmptyMessage) {
    EXPECT_EQ(helpers::ToHex(DigestOf({})),
              "19fa61d75522a4669b44e39c1d2e1726c530232130d407f89afee0964997f7a7"
              "3e83be698b288febcf88e3e03c4f0757ea8964e59b63d93708b138cc42a66eb3");
}

TEST(Whirlpool, ThirtyOneBytesTakeOneBlockAndThirtyTwoTakeTwo) {
    for (const std::size_t length : {31u, 32u, 33u, 63u, 64u, 95u, 96u}) {
        const helpers::Bytes message = helpers::PseudoRandomBytes(length, 4);
        EXPECT_EQ(DigestOf({message}), reference::Whirlpool(message)) << length << " bytes";
    }
}

TEST(Whirlpool, SaltBeforeAndBehindIsCountedTwice) {
    const helpers::ScratchFiles files;
    CCrypto_Whirlpool engine(nullptr);
    const helpers::Bytes salt = helpers::PseudoRandomBytes(70, 5);
    ASSERT_EQ(engine.SetSalt_FromFile(files.Write("salt", salt).c_str(), EnumSaltType::Both), 70u);
    helpers::EngineText<WhirlpoolFunction>(engine, helpers::PseudoRandomBytes(11, 6));
    WhirlpoolTestPeer::Length expected{};
    expected[30] = (70 + 11 + 70) * 8 >> 8;
    expected[31] = (70 + 11 + 70) * 8 & 0xff;
    EXPECT_EQ(WhirlpoolTestPeer::BitLength(engine), expected);
}

TEST(Whirlpool, EverySplitIntoTwoPiecesGivesTheSameDigest) {
    for (std::size_t length = 0; length <= 260; ++length) {
        const helpers::Bytes message = helpers::PseudoRandomBytes(length, 7);
        const std::span<const std::uint8_t> whole(message);
        const helpers::Bytes expected = DigestOf({whole});
        for (std::size_t split = 0; split <= length; ++split)
            EXPECT_EQ(DigestOf({whole.first(split), whole.subspan(split)}), expected)
                << length << " bytes, split at " << split;
    }
}

// 62 shares only the factor 2 with the block, so that every even position of the buffer comes up.
TEST(Whirlpool, PiecesOf62BytesGiveTheSameDigest) {
    const helpers::Bytes message = helpers::PseudoRandomBytes(62 * 100, 8);
    CCrypto_Whirlpool engine(nullptr);
    for (std::size_t at = 0; at < message.size(); at += 62)
        engine.AddDataBlock(message.data() + at, 62);
    engine.Finalize();
    EXPECT_EQ(WhirlpoolTestPeer::Digest(engine), reference::Whirlpool(message));
}

// The counter is a part of the padding, so the digest shows whether it is right.
TEST(Whirlpool, CounterCarriesThroughItsBytes) {
    const helpers::Bytes message = helpers::PseudoRandomBytes(40, 9); // 0x140 bits
    for (int ones = 1; ones <= 32; ++ones) {
        WhirlpoolTestPeer::Length length{};
        std::fill(length.end() - ones, length.end(), std::uint8_t{0xff});
        CCrypto_Whirlpool engine(nullptr);
        WhirlpoolTestPeer::PresetLength(engine, length);
        engine.AddDataBlock(message.data(), 40);

        WhirlpoolTestPeer::Length expected{};
        expected[31] = 0x3f;
        expected[30] = ones == 1 ? 0x02 : 0x01;
        if (ones > 1 && ones < 32)
            expected[31 - static_cast<std::size_t>(ones)] = 0x01;
        EXPECT_EQ(WhirlpoolTestPeer::BitLength(engine), expected) << ones << " bytes of ones";
        engine.Finalize();
        EXPECT_EQ(WhirlpoolTestPeer::Digest(engine), reference::WhirlpoolOfBits(message, 320, expected));
    }
}

// A deliberate quirk: the count of bits of one call is a 32-bit number with a sign, which is widened to 64 bits.
TEST(Whirlpool, CountsTheBitsOfOneCallWithASign) {
    const auto counted = [](int length) {
        CCrypto_Whirlpool engine(nullptr);
        WhirlpoolTestPeer::CountBits(engine, length);
        const WhirlpoolTestPeer::Length bits = WhirlpoolTestPeer::BitLength(engine);
        EXPECT_EQ(bits[23], 0) << "no more than 64 bits were added";
        return helpers::ToHex(std::span(bits).last(8));
    };
    EXPECT_EQ(counted(0x0fff'ffff), "000000007ffffff8");
    EXPECT_EQ(counted(0x1000'0000), "ffffffff80000000");
    EXPECT_EQ(counted(0x1fff'ffff), "fffffffffffffff8");
    EXPECT_EQ(counted(0x2000'0000), "0000000000000000");
    EXPECT_EQ(counted(0x2000'0001), "0000000000000008");
}

// The same through a call that is as long.
TEST(WhirlpoolSlow, CountsTheBitsOfOneCallWithThirtyTwoBits) {
    const helpers::Bytes message(0x1000'0001);
    CCrypto_Whirlpool engine(nullptr);
    engine.AddDataBlock(message.data(), 0x1000'0001);
    WhirlpoolTestPeer::Length expected{};
    std::fill(expected.begin() + 24, expected.begin() + 28, std::uint8_t{0xff});
    expected[28] = 0x80;
    expected[31] = 0x08;
    EXPECT_EQ(WhirlpoolTestPeer::BitLength(engine), expected);
}

TEST(Whirlpool, BufferIsBitGranular) {
    for (int bits = 1; bits < 8; ++bits) {
        for (const std::size_t length : {0u, 1u, 30u, 31u, 62u, 63u, 64u, 200u}) {
            const helpers::Bytes bytes = helpers::PseudoRandomBytes(length, 10);
            const auto head = static_cast<std::uint8_t>(0xb5 & ~(0xff >> bits));
            CCrypto_Whirlpool engine(nullptr);
            WhirlpoolTestPeer::PresetBits(engine, head, bits);
            engine.AddDataBlock(bytes.data(), static_cast<int>(length));
            engine.Finalize();

            helpers::Bytes message(length + 1);
            message[0] = head;
            for (std::size_t i = 0; i < length; ++i) {
                message[i] = static_cast<std::uint8_t>(message[i] | bytes[i] >> bits);
                message[i + 1] = static_cast<std::uint8_t>(bytes[i] << (8 - bits));
            }
            const std::size_t total = 8 * length + static_cast<std::size_t>(bits);
            WhirlpoolTestPeer::Length counter{};
            counter[30] = static_cast<std::uint8_t>(total >> 8);
            counter[31] = static_cast<std::uint8_t>(total);
            EXPECT_EQ(WhirlpoolTestPeer::Digest(engine), reference::WhirlpoolOfBits(message, total, counter))
                << bits << " bits and " << length << " bytes";
        }
    }
}

} // namespace
