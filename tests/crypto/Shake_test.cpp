// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Shake.h"

#include "tests/helpers/DigestText.h"
#include "tests/helpers/ScratchFiles.h"
#include "tests/helpers/ShaRows.h"
#include "tests/reference/Keccak.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

struct ShakePeer {
    static void Reset(CCrypto_Shake& engine, CCrypto_Shake::EnumShakeModeBufferLen mode) {
        engine.Reset(mode);
    }
    static bool Absorb(CCrypto_Shake& engine, const unsigned char* bytes, std::uint64_t count) {
        return engine.Shake_Absorb(bytes, count);
    }
    static bool Squeeze(CCrypto_Shake& engine, unsigned char* output, std::uint64_t count) {
        return engine.Shake_Squeeze(output, count);
    }
    static std::span<const unsigned char> BlockBuffer(const CCrypto_Shake& engine) {
        return {engine.blockBuffer_, engine.blockBuffer_ == nullptr ? std::size_t{0} : engine.rate_};
    }
};

namespace {

using helpers::Bytes;
using helpers::ShakeRow;

class Shake : public testing::Test {
  protected:
    std::string Of(const ShakeRow& row, std::span<const std::uint8_t> message) {
        return helpers::ShakeText(row, engine_, files_.Write("file", message).c_str());
    }

    helpers::ScratchFiles files_;
    CCrypto_Shake engine_{nullptr};
};

TEST_F(Shake, EmptyFileGivesTheDigestsOfTheEmptyMessage) {
    EXPECT_EQ(Of(helpers::ShakeRows()[0], {}), "7f9c2ba4e88f827d616045507605853e");
    EXPECT_EQ(Of(helpers::ShakeRows()[1], {}),
              "46b9dd2b0ba88d13233b3feb743eeb243fcd52ea62b81b82b50c27646ed5762f");
}

// Not in the standard: the sponge of SHA3-512 with the padding of SHAKE.
TEST_F(Shake, Shake512OfTheEmptyFileIsThatOfTheSpongeWithRate72) {
    EXPECT_EQ(Of(helpers::ShakeRows()[2], {}),
              "ae1b4eea1eaf5ea633e66045f03ff11b8b7d3193119075442117bd786dfd939f"
              "25a53a30fae503488d42683c1917b3964f6b1cf5d27c2b40cbaf53c5b749666a");
}

TEST_F(Shake, LengthsAroundTheRateAndTheReadBufferAgreeWithTheReference) {
    for (const ShakeRow& row : helpers::ShakeRows())
        for (const std::size_t border : {std::size_t{row.mode}, std::size_t{1'000'000}})
            for (std::size_t length = border - 1; length <= border + 1; ++length) {
                const Bytes message = helpers::PseudoRandomBytes(length, length);
                EXPECT_EQ(Of(row, message), helpers::ExpectedText(row, message))
                    << row.name << ", " << length;
            }
}

TEST_F(Shake, FileOfExactlyOneBlockIsFollowedByABlockOfPaddingAlone) {
    const Bytes block = helpers::PseudoRandomBytes(168, 1);
    Bytes padding(168);
    padding[0] = 0x1f;
    padding[167] = 0x80;
    reference::KeccakState state = {};
    reference::KeccakAbsorb(state, block.data(), 21);
    reference::KeccakAbsorb(state, padding.data(), 21);
    unsigned char output[16];
    ASSERT_TRUE(engine_.Shake_GetFromFile(files_.Write("file", block).c_str(), output, sizeof output,
                                          CCrypto_Shake::ShakeBufferLen_128));
    for (std::size_t i = 0; i < sizeof output; ++i)
        EXPECT_EQ(output[i], state[i / 8] >> 8 * (i % 8) & 0xff) << i;
}

TEST_F(Shake, EverySplitIntoTwoPiecesGivesTheSameOutput) {
    for (const ShakeRow& row : helpers::ShakeRows())
        for (std::size_t length = 0; length <= 260; ++length) {
            const Bytes message = helpers::PseudoRandomBytes(length, 1);
            const std::string expected = helpers::ExpectedText(row, message);
            for (std::size_t split = 0; split <= length; ++split) {
                Bytes output(row.digestSize);
                ShakePeer::Reset(engine_, row.mode);
                ASSERT_TRUE(ShakePeer::Absorb(engine_, message.data(), split));
                ASSERT_TRUE(ShakePeer::Absorb(engine_, message.data() + split, length - split));
                ASSERT_TRUE(ShakePeer::Squeeze(engine_, output.data(), output.size()));
                ASSERT_EQ(helpers::ToHex(output), expected) << row.name << ", " << length << " at " << split;
            }
        }
}

TEST_F(Shake, OutputOfAnyLengthAgreesWithTheReference) {
    const std::wstring path = files_.Write("file", std::string_view("some bytes"));
    const Bytes message = helpers::BytesOf("some bytes");
    for (const ShakeRow& row : helpers::ShakeRows())
        for (const std::size_t count : {1u, 71u, 72u, 73u, 136u, 167u, 168u, 169u, 200u, 1000u}) {
            Bytes output(count + 1, 0xa5);
            ASSERT_TRUE(engine_.Shake_GetFromFile(path.c_str(), output.data(), count, row.mode));
            EXPECT_EQ(output.back(), 0xa5);
            output.pop_back();
            EXPECT_EQ(output, reference::Sponge(row.mode, 0x1f, message, count)) << row.name << ", " << count;
        }
}

// The enumeration has three values, but any rate fits its type.
TEST_F(Shake, AnyRateUpToTheStateIsASponge) {
    const Bytes message = helpers::PseudoRandomBytes(1003, 5);
    const std::wstring path = files_.Write("file", message);
    for (std::size_t rate = 1; rate <= 200; ++rate) {
        Bytes output(401, 0xa5);
        const auto mode = static_cast<CCrypto_Shake::EnumShakeModeBufferLen>(rate);
        ASSERT_TRUE(engine_.Shake_GetFromFile(path.c_str(), output.data(), 400, mode)) << rate;
        EXPECT_EQ(output.back(), 0xa5);
        output.pop_back();
        EXPECT_EQ(output, reference::Sponge(rate, 0x1f, message, 400)) << "rate " << rate;
    }
}

TEST_F(Shake, RatesThatNoStateHasAreRefused) {
    const std::wstring path = files_.Write("file", std::string_view("some bytes"));
    unsigned char output[16] = {0x5a};
    for (const std::uint32_t rate : {0u, 201u, 255u, 256u, 0xffffffffu}) {
        const auto mode = static_cast<CCrypto_Shake::EnumShakeModeBufferLen>(rate);
        EXPECT_FALSE(engine_.Shake_GetFromFile(path.c_str(), output, sizeof output, mode)) << rate;
    }
    EXPECT_EQ(output[0], 0x5a);
}

TEST_F(Shake, NoOutputWantedGivesTrue) {
    const std::wstring path = files_.Write("file", std::string_view("some bytes"));
    unsigned char output[1] = {0x5a};
    char text[4] = "old";
    EXPECT_TRUE(engine_.Shake_GetFromFile(path.c_str(), output, 0, CCrypto_Shake::ShakeBufferLen_128));
    EXPECT_EQ(output[0], 0x5a);
    EXPECT_TRUE(
        engine_.Shake_GetFromFileAsString(path.c_str(), 0, text, 4, CCrypto_Shake::ShakeBufferLen_128));
    EXPECT_STREQ(text, "");
}

TEST_F(Shake, MissingFileAndNullPointersGiveFalseAndWriteNothing) {
    const std::wstring path = files_.Write("file", std::string_view("some bytes"));
    const std::wstring missing = files_.Path("missing");
    const auto mode = CCrypto_Shake::ShakeBufferLen_256;
    unsigned char output[32] = {0x5a};
    char text[65] = "as it was";
    EXPECT_FALSE(engine_.Shake_GetFromFile(nullptr, output, 32, mode));
    EXPECT_FALSE(engine_.Shake_GetFromFile(missing.c_str(), output, 32, mode));
    EXPECT_FALSE(engine_.Shake_GetFromFile(path.c_str(), nullptr, 32, mode));
    EXPECT_FALSE(engine_.Shake_GetFromFileAsString(nullptr, 32, text, 65, mode));
    EXPECT_FALSE(engine_.Shake_GetFromFileAsString(missing.c_str(), 32, text, 65, mode));
    EXPECT_EQ(output[0], 0x5a);
    EXPECT_STREQ(text, "as it was");
    EXPECT_TRUE(engine_.Shake_GetFromFileAsString(path.c_str(), 32, nullptr, 65, mode));
}

TEST_F(Shake, BlockBufferStaysWhenTheFileCannotBeOpened) {
    EXPECT_TRUE(ShakePeer::BlockBuffer(engine_).empty()) << "none before the first file";
    unsigned char output[16];
    EXPECT_FALSE(engine_.Shake_GetFromFile(files_.Path("missing").c_str(), output, sizeof output,
                                           CCrypto_Shake::ShakeBufferLen_256));
    const auto buffer = ShakePeer::BlockBuffer(engine_);
    EXPECT_EQ(buffer.size(), 136u);
    EXPECT_TRUE(std::all_of(buffer.begin(), buffer.end(), [](unsigned char byte) { return byte == 0; }));
}

TEST_F(Shake, TextCapacityIsNotLookedAt) {
    const std::wstring path = files_.Write("file", std::string_view("some bytes"));
    for (const unsigned int capacity : {0u, 1u, 5u, 1024u}) {
        char text[33] = "";
        EXPECT_TRUE(engine_.Shake_GetFromFileAsString(path.c_str(), 16, text, capacity,
                                                      CCrypto_Shake::ShakeBufferLen_128));
        EXPECT_EQ(std::string(text).size(), 32u) << capacity;
    }
}

TEST_F(Shake, TextEndsAt1023Characters) {
    const std::wstring path = files_.Write("file", std::string_view("some bytes"));
    std::string text(2000, '!');
    ASSERT_TRUE(engine_.Shake_GetFromFileAsString(path.c_str(), 600, text.data(), 2000,
                                                  CCrypto_Shake::ShakeBufferLen_512));
    EXPECT_EQ(std::string(text.c_str()),
              helpers::ToHex(reference::Sponge(72, 0x1f, helpers::BytesOf("some bytes"), 511)));
}

TEST_F(Shake, CountsThatDoNotFitTheTextGiveFalse) {
    const std::wstring path = files_.Write("file", std::string_view("some bytes"));
    char text[16] = "as it was";
    for (const std::uint64_t count :
         {std::uint64_t{1} << 31, std::uint64_t{1} << 32, (std::uint64_t{1} << 63) + 16, ~std::uint64_t{0}})
        EXPECT_FALSE(engine_.Shake_GetFromFileAsString(path.c_str(), count, text, sizeof text,
                                                       CCrypto_Shake::ShakeBufferLen_128));
    EXPECT_STREQ(text, "as it was");
    EXPECT_TRUE(ShakePeer::BlockBuffer(engine_).empty()) << "nothing was hashed";
}

TEST_F(Shake, SecondFileStartsFresh) {
    for (std::size_t i = 0; i < 1000; ++i) {
        const ShakeRow& row = helpers::ShakeRows()[i % 3];
        const Bytes message = helpers::PseudoRandomBytes(i * 37 % 331, i);
        ASSERT_EQ(Of(row, message), helpers::ExpectedText(row, message)) << row.name << ", file " << i;
    }
}

} // namespace
