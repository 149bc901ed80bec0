// SPDX-License-Identifier: MIT
// What holds for each function of the SHA engine.
#include "tests/helpers/ScratchFiles.h"
#include "tests/helpers/ShaRows.h"

#include <gtest/gtest.h>

namespace {

using helpers::Bytes;
using helpers::ShaRow;

class Sha : public testing::Test {
  protected:
    std::string Of(const ShaRow& row, std::span<const std::uint8_t> message) {
        return helpers::ShaText(row, engine_, files_.Write("file", message).c_str());
    }
    helpers::ScratchFiles files_;
    CCrypto_Sha engine_{nullptr};
};

using ShaSlow = Sha;

TEST_F(Sha, LengthsAroundTheBlockTakeBothPaddingBranches) {
    for (const ShaRow& row : helpers::ShaRows())
        for (const std::size_t length : {55u, 56u, 63u, 64u, 65u, 111u, 112u, 127u, 128u, 129u}) {
            const Bytes message = helpers::PseudoRandomBytes(length, length);
            EXPECT_EQ(Of(row, message), helpers::ExpectedText(row, message)) << row.name << ", " << length;
        }
}

TEST_F(ShaSlow, LengthsAroundTheReadBufferDoNotMatter) {
    for (const ShaRow& row : helpers::ShaRows())
        for (std::size_t length = row.readBufferSize - 1; length <= row.readBufferSize + 1; ++length) {
            const Bytes message = helpers::PseudoRandomBytes(length, length);
            EXPECT_EQ(Of(row, message), helpers::ExpectedText(row, message)) << row.name << ", " << length;
        }
}

TEST_F(Sha, BytesAndTextAreTheSameDigestAndNoMoreIsWritten) {
    const std::wstring path = files_.Write("file", std::string_view("some bytes"));
    for (const ShaRow& row : helpers::ShaRows()) {
        Bytes digest(row.digestSize + 1, 0xa5);
        std::string text(2 * row.digestSize + 2, '!');
        ASSERT_TRUE(row.getFromFile(engine_, path.c_str(), digest.data()));
        ASSERT_TRUE(row.getFromFileAsString(engine_, path.c_str(), text.data()));
        EXPECT_EQ(digest.back(), 0xa5) << row.name;
        EXPECT_EQ(text.back(), '!') << row.name;
        EXPECT_STREQ(text.c_str(), helpers::ToHex(std::span(digest).first(row.digestSize)).c_str())
            << row.name;
    }
}

TEST_F(Sha, MissingFileAndNullPointersGiveFalseAndWriteNothing) {
    const std::wstring path = files_.Write("file", std::string_view("some bytes"));
    const std::wstring missing = files_.Path("missing");
    for (const ShaRow& row : helpers::ShaRows()) {
        unsigned char digest[64] = {0x5a};
        char text[129] = "as it was";
        EXPECT_FALSE(row.getFromFile(engine_, nullptr, digest)) << row.name;
        EXPECT_FALSE(row.getFromFile(engine_, missing.c_str(), digest)) << row.name;
        EXPECT_FALSE(row.getFromFile(engine_, path.c_str(), nullptr)) << row.name;
        EXPECT_FALSE(row.getFromFileAsString(engine_, nullptr, text)) << row.name;
        EXPECT_FALSE(row.getFromFileAsString(engine_, missing.c_str(), text)) << row.name;
        EXPECT_FALSE(row.getFromFileAsString(engine_, missing.c_str(), nullptr)) << row.name;
        EXPECT_EQ(digest[0], 0x5a) << row.name;
        EXPECT_STREQ(text, "as it was") << row.name;
    }
}

// The file is hashed before anybody looks at the text pointer.
TEST_F(Sha, NullTextWithAReadableFileGivesTrue) {
    const std::wstring path = files_.Write("file", std::string_view("some bytes"));
    for (const ShaRow& row : helpers::ShaRows())
        EXPECT_TRUE(row.getFromFileAsString(engine_, path.c_str(), nullptr)) << row.name;
}

TEST_F(Sha, OneEngineServesAThousandFilesWithAndWithoutSalt) {
    const Bytes salt = helpers::PseudoRandomBytes(100, 3);
    const std::wstring saltPath = files_.Write("salt", salt);
    for (std::size_t i = 0; i < 1000; ++i) {
        const ShaRow& row = helpers::ShaRows()[i * 7 % helpers::ShaRows().size()];
        const Bytes message = helpers::PseudoRandomBytes(i * 37 % 331, i);
        engine_.SetSalt_FromFile(saltPath.c_str(), i % 2 != 0 ? EnumSaltType::Before : EnumSaltType::None);
        const std::string text = Of(row, message);
        if (i % 2 == 0)
            EXPECT_EQ(text, helpers::ExpectedText(row, message)) << row.name << ", file " << i;
        else
            EXPECT_NE(text, helpers::ExpectedText(row, message)) << row.name << ", file " << i;
    }
}

} // namespace
