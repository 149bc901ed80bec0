// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Shake.h"

#include "tests/helpers/DigestText.h"
#include "tests/helpers/ScratchFiles.h"
#include "tests/helpers/ShaRows.h"
#include "tests/reference/Keccak.h"

#include <gtest/gtest.h>

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

TEST_F(Shake, FilesAroundTheReadBufferAgreeWithTheReference) {
    for (const ShakeRow& row : helpers::ShakeRows())
        for (const std::size_t length : {999'999u, 1'000'000u, 1'000'001u}) {
            const Bytes message = helpers::PseudoRandomBytes(length, length);
            EXPECT_EQ(Of(row, message), helpers::ExpectedText(row, message)) << row.name << ", " << length;
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

TEST_F(Shake, NothingIsAbsorbedOrSqueezedBeforeTheFirstFile) {
    unsigned char output[1] = {0x5a};
    EXPECT_FALSE(engine_.Shake_Absorb(output, 1));
    EXPECT_FALSE(engine_.Shake_Squeeze(output, 1));
    EXPECT_EQ(output[0], 0x5a);
}

// Also where the file could not be opened: the message is empty then.
TEST_F(Shake, AbsorbAndSqueezeGoOnWithTheMode) {
    unsigned char output[300];
    EXPECT_FALSE(engine_.Shake_GetFromFile(files_.Path("missing").c_str(), output, 1,
                                           CCrypto_Shake::ShakeBufferLen_256));
    const Bytes message = helpers::PseudoRandomBytes(500, 6);
    EXPECT_TRUE(engine_.Shake_Absorb(message.data(), 135));
    EXPECT_TRUE(engine_.Shake_Absorb(message.data() + 135, 365));
    EXPECT_TRUE(engine_.Shake_Squeeze(output, sizeof output));
    EXPECT_EQ(helpers::ToHex(output), helpers::ToHex(reference::Sponge(136, 0x1f, message, sizeof output)));
}

// The state is permuted behind the last block of output, too.
TEST_F(Shake, WhatFollowsAFileIsAnotherMessageInTheSameState) {
    const Bytes block = helpers::PseudoRandomBytes(168, 1);
    Bytes padding(168);
    padding[0] = 0x1f;
    padding[167] = 0x80;
    reference::KeccakState state = {};
    reference::KeccakAbsorb(state, block.data(), 21);
    reference::KeccakAbsorb(state, padding.data(), 21);
    for (int squeezed = 0; squeezed < 2; ++squeezed) // two blocks of output
        reference::KeccakPermute(state);
    reference::KeccakAbsorb(state, padding.data(), 21);

    unsigned char output[169];
    ASSERT_TRUE(engine_.Shake_GetFromFile(files_.Write("file", block).c_str(), output, sizeof output,
                                          CCrypto_Shake::ShakeBufferLen_128));
    EXPECT_TRUE(engine_.Shake_Squeeze(output, 8));
    for (std::size_t i = 0; i < 8; ++i)
        EXPECT_EQ(output[i], state[0] >> 8 * i & 0xff) << i;
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
    EXPECT_FALSE(engine_.Shake_Absorb(nullptr, 0)) << "nothing was hashed";
}

TEST_F(Shake, SecondFileStartsFresh) {
    for (std::size_t i = 0; i < 1000; ++i) {
        const ShakeRow& row = helpers::ShakeRows()[i % 3];
        const Bytes message = helpers::PseudoRandomBytes(i * 37 % 331, i);
        ASSERT_EQ(Of(row, message), helpers::ExpectedText(row, message)) << row.name << ", file " << i;
    }
}

} // namespace
